// SPDX-License-Identifier: MIT
#include "i18n/language.h"
#include "tests/serial/serialtest.h"

#include <QTest>
#include <QTimer>

#include <memory>

using qx::SerialController;

namespace {

QByteArray numberedFrame(int number)
{
    return QByteArray::number(number).rightJustified(19, '.') + '\n';
}

} // namespace

class TestSerialSending : public qx::SerialTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void closedPortRefuses_data();
    void closedPortRefuses();
    void bytesArriveAndAreCountedLater();
    void nothingToSendIsNoError();
    void largeArrayArrivesWhole();
    void deviceThatDoesNotReadKeepsItsPort();
    void closingDiscardsWhatWasNotSent();
    void receiverOfTheCountMaySend();
    void partialWriteIsReported_data();
    void partialWriteIsReported();
    void failedWriteCloses_data();
    void failedWriteCloses();

private:
    void readOn();

    QTimer reader; ///< the device, while it reads
};

void TestSerialSending::initTestCase()
{
    reader.callOnTimeout([this] { peer->received(); });
}

void TestSerialSending::init()
{
    SerialTest::init();
    openPort();
}

void TestSerialSending::cleanup()
{
    reader.stop();
    SerialTest::cleanup();
}

void TestSerialSending::readOn()
{
    reader.start(0);
}

void TestSerialSending::closedPortRefuses_data()
{
    QTest::addColumn<qx::UiLanguage>("language");
    QTest::addColumn<QString>("message");
    QTest::newRow("English") << qx::UiLanguage::English
                             << QStringLiteral("Command not sent: serial port is disconnected");
    QTest::newRow("Chinese") << qx::UiLanguage::Chinese << QStringLiteral("串口未连接，命令未发送");
}

void TestSerialSending::closedPortRefuses()
{
    QFETCH(qx::UiLanguage, language);
    QFETCH(QString, message);
    controller->close();
    history->clear();
    bool touched = false;
    controller->port().write = [&touched](qint64 size) {
        touched = true;
        return size;
    };
    qx::Language::setCurrent(language);

    QCOMPARE(controller->send("QXUSB HELLO\n"), -1);

    QCOMPARE(history->events, QStringList({qx::errorEvent(message)}));
    QVERIFY(!touched);
    QCOMPARE(history->transmitted, 0);
}

void TestSerialSending::bytesArriveAndAreCountedLater()
{
    QByteArray all;
    for (int number = 0; number < 10; ++number) {
        const QByteArray frame = numberedFrame(number);
        QCOMPARE(controller->send(frame), frame.size());
        all += frame;
        QVERIFY2(history->transmitted < all.size(), "send() itself counts nothing");
    }
    QTRY_COMPARE(peer->received(), all);
    QTRY_COMPARE(history->transmitted, all.size());
    QCOMPARE(history->events, QStringList());
}

void TestSerialSending::nothingToSendIsNoError()
{
    QCOMPARE(controller->send(QByteArray()), 0);
    QCOMPARE(controller->send("A"), 1);
    QTRY_COMPARE(peer->received(), QByteArray("A"));
    QTRY_COMPARE(history->transmitted, 1);
    QCOMPARE(history->events, QStringList());
}

void TestSerialSending::largeArrayArrivesWhole()
{
    QByteArray large;
    while (large.size() < 1024 * 1024)
        large += numberedFrame(static_cast<int>(large.size()));

    QCOMPARE(controller->send(large), large.size());

    readOn();
    QTRY_COMPARE_WITH_TIMEOUT(peer->received().size(), large.size(), 30000);
    QCOMPARE(peer->received(), large);
    QTRY_COMPARE(history->transmitted, large.size());
    QCOMPARE(history->events, QStringList());
}

void TestSerialSending::deviceThatDoesNotReadKeepsItsPort()
{
    QByteArray all;
    for (int number = 0; number < 20000; ++number) {
        const QByteArray frame = numberedFrame(number);
        QCOMPARE(controller->send(frame), frame.size());
        all += frame;
        if (number % 100 == 0)
            QCoreApplication::processEvents();
    }
    QCOMPARE(history->events, QStringList());
    QVERIFY(controller->isOpen());
    QVERIFY2(history->transmitted < all.size(), "the line was never full");

    readOn();
    QTRY_COMPARE_WITH_TIMEOUT(peer->received().size(), all.size(), 30000);
    QCOMPARE(peer->received(), all);
    QTRY_COMPARE(history->transmitted, all.size());
    QCOMPARE(history->events, QStringList());

    QCOMPARE(controller->send("and on"), 6);
    QTRY_VERIFY(peer->received().endsWith("and on"));
}

void TestSerialSending::closingDiscardsWhatWasNotSent()
{
    controller->send(QByteArray(1024 * 1024, 'x'));
    controller->close();
    QVERIFY(controller->open(peer->path(), 115200));
    controller->send("new");

    QTRY_VERIFY(peer->received().endsWith("new"));
    QVERIFY(peer->received().size() < 1024 * 1024);
}

void TestSerialSending::receiverOfTheCountMaySend()
{
    int left = 100;
    connect(controller.get(), &SerialController::bytesTransmitted, this, [&] {
        if (left > 0)
            controller->send(numberedFrame(left--));
    });
    controller->send("first\n");

    readOn();
    QTRY_COMPARE(peer->received().size(), 6 + 100 * 20);
    QVERIFY(peer->received().endsWith(numberedFrame(1)));
    QTRY_COMPARE(history->transmitted, 6 + 100 * 20);
    QCOMPARE(history->events, QStringList());
}

void TestSerialSending::partialWriteIsReported_data()
{
    QTest::addColumn<qx::UiLanguage>("language");
    QTest::addColumn<qint64>("accepted");
    QTest::addColumn<QString>("message");
    QTest::newRow("some bytes") << qx::UiLanguage::English << qint64{7}
                                << QStringLiteral("Serial port accepted only 7/20 bytes");
    QTest::newRow("no byte") << qx::UiLanguage::English << qint64{0}
                             << QStringLiteral("Serial port accepted only 0/20 bytes");
    QTest::newRow("in Chinese") << qx::UiLanguage::Chinese << qint64{19}
                                << QStringLiteral("串口仅接受19/20字节");
}

void TestSerialSending::partialWriteIsReported()
{
    QFETCH(qx::UiLanguage, language);
    QFETCH(qint64, accepted);
    QFETCH(QString, message);
    qx::Language::setCurrent(language);
    controller->port().write = [accepted](qint64) { return accepted; };

    QCOMPARE(controller->send(numberedFrame(1)), -1);

    QCOMPARE(history->events, QStringList({qx::errorEvent(message)}));
    QVERIFY(controller->isOpen());
    QCOMPARE(controller->portName(), peer->path());

    controller->port().write = nullptr;
    QCOMPARE(controller->send("still there"), 11);
    QTRY_COMPARE(peer->received(), QByteArray("still there"));
}

void TestSerialSending::failedWriteCloses_data()
{
    QTest::addColumn<qx::UiLanguage>("language");
    QTest::addColumn<QString>("message");
    // The placeholder in the port's own words must survive.
    QTest::newRow("English") << qx::UiLanguage::English
                             << QStringLiteral("Serial write failed: cable 50%2 cut");
    QTest::newRow("Chinese") << qx::UiLanguage::Chinese
                             << QStringLiteral("串口写入失败：cable 50%2 cut");
}

void TestSerialSending::failedWriteCloses()
{
    QFETCH(qx::UiLanguage, language);
    QFETCH(QString, message);
    qx::Language::setCurrent(language);
    controller->port().write = [this](qint64) {
        controller->port().setErrorString(QStringLiteral("cable 50%2 cut"));
        return qint64{-1};
    };

    QCOMPARE(controller->send(numberedFrame(1)), -1);

    QCOMPARE(history->events,
             QStringList({qx::errorEvent(message), qx::disconnectionEvent(message)}));
    QVERIFY(!controller->isOpen());
    QCOMPARE(controller->portName(), QString());
}

QTEST_GUILESS_MAIN(TestSerialSending)
#include "tst_serialsending.moc"
