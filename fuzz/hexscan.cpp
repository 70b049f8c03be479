// SPDX-License-Identifier: MIT
// Any text typed into the manual field and the reserved field.
#include "mainwindow/hexscan.h"

#include "fuzz/fuzzwindow.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>

namespace {

qx::MainWindow *window;
QLineEdit *manual;
QLineEdit *reserved;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qx::fuzz::startApplication(argc, argv);
    window = new qx::MainWindow;
    manual = window->findChild<QGroupBox *>(QStringLiteral("logGroup"))->findChild<QLineEdit *>();
    reserved = static_cast<QLineEdit *>(
        window->findChild<QLabel *>(QStringLiteral("reservedCaption"))->buddy());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    if (const auto digits = qx::hexDigits(text)) {
        qx::fuzz::require(digits->size() <= text.size());
        qx::fuzz::require(QByteArray::fromHex(*digits).size() == (digits->size() + 1) / 2);
    }
    manual->setText(text);
    window->sendManualFrame();
    reserved->setText(text);
    bool ok = false;
    window->frameFromEditors(&ok);
    qx::fuzz::require(ok == qx::hexBytes(reserved->text(), 6).has_value());
    return 0;
}
