// SPDX-License-Identifier: MIT
#include "tests/support/stage.h"

#include "i18n/language.h"

#include <QApplication>
#include <QFontDatabase>
#include <QSettings>
#include <QTest>

namespace qx::test {

void takeIdentity()
{
    QCoreApplication::setApplicationName(QStringLiteral("Tessaly Player"));
    QCoreApplication::setOrganizationName(QStringLiteral("Corvessa Electronic CO."));
}

QFont takeFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPointSize(10);
    QApplication::setFont(font);
    return font;
}

void freshSettings(const QString &languageCode)
{
    QSettings settings;
    settings.clear();
    settings.setValue(QStringLiteral("ui/language"), languageCode);
    settings.sync();
}

QString either(const QString &english, const QString &chinese)
{
    return Language::current() == UiLanguage::English ? english : chinese;
}

// The backslash and the n are two visible characters.
QString helloLine(int attempt)
{
    return either(QStringLiteral("TX    QXUSB HELLO\\n  (handshake %1)"),
                  QStringLiteral("TX    QXUSB HELLO\\n  (握手 %1)"))
        .arg(attempt);
}

Stage::Stage(const QString &languageCode)
    : linkPath(directory.filePath(QStringLiteral("player")))
{
    takeIdentity();
    if (!languageCode.isEmpty())
        freshSettings(languageCode);
    qputenv("TESSALY_SERIAL_PORTS", linkPath.toUtf8());
    plugIn();
    start();
}

Stage::~Stage() = default;

void Stage::start()
{
    mainWindow = std::make_unique<MainWindow>();
    person = std::make_unique<Operator>(*mainWindow);
    mainWindow->show();
    if (!QTest::qWaitForWindowActive(mainWindow.get())) // keys go where the focus is
        qFatal("the window did not become active");
}

void Stage::restart()
{
    quit();
    start();
}

void Stage::quit()
{
    person.reset();
    mainWindow.reset();
}

bool Stage::connectPort()
{
    person->setDemo(false);
    person->choosePort(linkPath);
    person->click(person->connectButton());
    return !person->log("SYS").last().contains(QLatin1String("Disconnected")) &&
           person->log("TX").size() > 0;
}

bool Stage::connectPlayer()
{
    return connectPort() &&
           QTest::qWaitFor([this] { return person->row(1)->text() == QLatin1String("QXUSB OK"); });
}

bool Stage::hear(const QByteArray &line)
{
    const QString shown = QStringLiteral("RX    ") + QString::fromLatin1(line);
    const int before = person->logCount(shown);
    device.say(line + '\n');
    return QTest::qWaitFor([this, &shown, before] { return person->logCount(shown) > before; });
}

void Stage::plugIn()
{
    device.plugIn(linkPath);
}

void Stage::unplug()
{
    device.unplug();
}

} // namespace qx::test
