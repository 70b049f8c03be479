// SPDX-License-Identifier: MIT
#include "tests/serial/serialtest.h"

#include "i18n/language.h"

#include <QRegularExpression>
#include <QTest>

namespace qx {

void SerialTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    Language::setCurrent(UiLanguage::English);
    peer = std::make_unique<RawPeer>();
    controller = std::make_unique<ScriptedController>();
    history = std::make_unique<ControllerHistory>(*controller);
}

void SerialTest::cleanup()
{
    if (controller)
        controller->disconnect(this); // what a test connects does not outlive it
    const QStringList contradictions = history ? history->contradictions : QStringList();
    history.reset();
    controller.reset();
    peer.reset();
    QCOMPARE(contradictions, QStringList());
}

void SerialTest::openPort()
{
    QVERIFY(controller->open(peer->path(), 115200));
    history->clear();
}

} // namespace qx
