// SPDX-License-Identifier: MIT
#include "i18n/language.h"
#include "tests/serial/serialtest.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <memory>

using qx::RawPeer;
using qx::SerialController;
using namespace std::chrono_literals;

namespace {

// How often the event loop has woken when a clock of its own has ticked ten times: about as often,
// unless something keeps it busy.
int turnsInTenTicks()
{
    constexpr int ticks = 10;
    QEventLoop loop;
    int turns = 0;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &loop,
                     [&turns] { ++turns; });
    int ticked = 0;
    QTimer clock;
    clock.callOnTimeout(&loop, [&] {
        if (++ticked == ticks)
            loop.quit();
    });
    clock.start(100ms);
    loop.exec();
    return turns;
}

constexpr int fewTurns = 100; // a line that is not let go makes hundreds of thousands of them

qsizetype openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::System | QDir::Files).size();
}

/// The signal inside which the cable is pulled.
enum class Inside { Connected, Chunk, Line, Transmitted, Error };

/// What the program does with a port that vanished at once.
enum class FirstUse { Wait, Send, Close, OpenAgain };

} // namespace

class TestLineLoss : public qx::SerialTest
{
    Q_OBJECT

private slots:
    void init();

    void healthyLineCostsNothing();
    void idleLine();
    void withUnreadBytes();
    void sendingToALostLine();
    void withBytesStillQueued();
    void insideASlot_data();
    void insideASlot();
    void insideTheDisconnection();
    void betweenOpenAndFirstUse_data();
    void betweenOpenAndFirstUse();
    void closingALostLine();
    void destructionOnALostLine();
    void eitherLookAloneSuffices_data();
    void eitherLookAloneSuffices();
    void speaksChinese();
    void argumentOfSendMayVanish();
    void fiveHundredLosses();
    void receiverThatReconnectsAtOnce_data();
    void receiverThatReconnectsAtOnce();

private:
    void expectOneLoss();
    void expectQuiet();
};

void TestLineLoss::init()
{
    SerialTest::init();
    openPort();
}

/// The loss is noticed, told once, and nothing goes on afterwards.
void TestLineLoss::expectOneLoss()
{
    QTRY_VERIFY(!controller->isOpen());
    expectQuiet();
    QCOMPARE(history->events, qx::lineLost());
    QCOMPARE(controller->portName(), QString());
}

void TestLineLoss::expectQuiet()
{
    const int turns = turnsInTenTicks();
    QVERIFY2(turns < fewTurns, qPrintable(QString::number(turns)));
}

void TestLineLoss::healthyLineCostsNothing()
{
    expectQuiet();
    QVERIFY(controller->isOpen());
    QCOMPARE(history->events, QStringList());
}

void TestLineLoss::idleLine()
{
    peer->unplug();
    expectOneLoss();
}

void TestLineLoss::withUnreadBytes()
{
    QVERIFY(peer->write(QByteArray("text\n").repeated(400)) > 0);
    peer->unplug();
    expectOneLoss();
}

void TestLineLoss::sendingToALostLine()
{
    peer->unplug();
    controller->send("QXUSB HELLO\n");
    expectOneLoss();
}

void TestLineLoss::withBytesStillQueued()
{
    QCOMPARE(controller->send(QByteArray(1024 * 1024, 'x')), 1024 * 1024);
    QCoreApplication::processEvents();
    peer->unplug();
    expectOneLoss();
}

void TestLineLoss::insideASlot_data()
{
    QTest::addColumn<Inside>("inside");
    QTest::newRow("connectionChanged") << Inside::Connected;
    QTest::newRow("rawReceived") << Inside::Chunk;
    QTest::newRow("lineReceived") << Inside::Line;
    QTest::newRow("bytesTransmitted") << Inside::Transmitted;
    QTest::newRow("errorOccurred") << Inside::Error;
}

void TestLineLoss::insideASlot()
{
    QFETCH(Inside, inside);
    const auto unplugAt = [this](auto signal) {
        connect(controller.get(), signal, this, [this] { peer->unplug(); });
    };
    switch (inside) {
    case Inside::Connected:
        controller->close();
        unplugAt(&SerialController::connectionChanged);
        QVERIFY(controller->open(peer->path(), 115200));
        history->clear();
        break;
    case Inside::Chunk:
        unplugAt(&SerialController::rawReceived);
        peer->write("QXUSB OK\n");
        break;
    case Inside::Line:
        unplugAt(&SerialController::lineReceived);
        peer->write("QXUSB OK\nQXUSB READY\n");
        break;
    case Inside::Transmitted:
        unplugAt(&SerialController::bytesTransmitted);
        controller->send("QXUSB HELLO\n");
        controller->send("QXUSB HELLO\n");
        break;
    case Inside::Error:
        connect(
            controller.get(), &SerialController::errorOccurred, this,
            [this] {
                peer->unplug();
                history->clear();
            },
            Qt::SingleShotConnection);
        controller->port().deliver(QByteArray(4097, 'x'));
        break;
    }
    QTRY_VERIFY(!peer->isPluggedIn());
    expectOneLoss();
}

void TestLineLoss::insideTheDisconnection()
{
    connect(controller.get(), &SerialController::connectionChanged, this,
            [this] { peer->unplug(); });

    controller->close();

    QVERIFY(!peer->isPluggedIn());
    expectQuiet();
    QCOMPARE(history->events, QStringList({qx::disconnectedFrom(peer->path())}));
}

void TestLineLoss::betweenOpenAndFirstUse_data()
{
    QTest::addColumn<bool>("whileOpening");
    QTest::addColumn<FirstUse>("use");
    QTest::newRow("lost while opening") << true << FirstUse::Wait;
    QTest::newRow("lost while opening, then sent") << true << FirstUse::Send;
    QTest::newRow("lost while opening, then closed") << true << FirstUse::Close;
    QTest::newRow("lost while opening, then opened again") << true << FirstUse::OpenAgain;
    QTest::newRow("lost after opening") << false << FirstUse::Wait;
    QTest::newRow("lost after opening, then sent") << false << FirstUse::Send;
    QTest::newRow("lost after opening, then closed") << false << FirstUse::Close;
    QTest::newRow("lost after opening, then opened again") << false << FirstUse::OpenAgain;
}

void TestLineLoss::betweenOpenAndFirstUse()
{
    QFETCH(bool, whileOpening);
    QFETCH(FirstUse, use);
    controller->close();
    history->clear();
    if (whileOpening)
        controller->port().afterOpen = [this] { peer->unplug(); };
    QVERIFY(controller->open(peer->path(), 115200));
    QCOMPARE(history->events, QStringList({qx::connectedTo(peer->path())}));
    peer->unplug();
    history->clear();

    switch (use) {
    case FirstUse::Wait:
        expectOneLoss();
        break;
    case FirstUse::Send:
        controller->send("QXUSB HELLO\n");
        expectOneLoss();
        break;
    case FirstUse::Close:
        controller->close();
        QCOMPARE(history->events, QStringList({qx::disconnectedFrom(peer->path())}));
        break;
    case FirstUse::OpenAgain: {
        QVERIFY(!controller->open(peer->path(), 115200));
        const QString reason = qt_error_string(ENOENT);
        QCOMPARE(history->events,
                 QStringList({qx::disconnectedFrom(peer->path())}) +
                     qx::failedOpen(peer->path(),
                                    QStringLiteral("macOS serial port failed: ") + reason, reason));
        break;
    }
    }
}

void TestLineLoss::closingALostLine()
{
    QVERIFY(peer->write("unread\n") > 0);
    peer->unplug();

    controller->close();

    QVERIFY(!controller->isOpen());
    expectQuiet();
    QCOMPARE(history->events, QStringList({qx::disconnectedFrom(peer->path())}));
}

void TestLineLoss::destructionOnALostLine()
{
    controller->send("QXUSB HELLO\n");
    peer->unplug();
    controller.reset();
    QCOMPARE(history->events, QStringList({qx::disconnectedFrom(peer->path())}));
}

void TestLineLoss::eitherLookAloneSuffices_data()
{
    QTest::addColumn<bool>("quick");
    QTest::newRow("the line announces its end") << true;
    QTest::newRow("the line is looked at now and then") << false;
}

// Some versions of Qt say nothing of a lost line: reading and writing are switched off here.
void TestLineLoss::eitherLookAloneSuffices()
{
    QFETCH(bool, quick);
    const QList<QSocketNotifier *> notifiers = controller->findChildren<QSocketNotifier *>();
    QVERIFY(notifiers.size() >= 2);
    for (QSocketNotifier *notifier : notifiers) {
        if (!quick || notifier->type() != QSocketNotifier::Exception)
            notifier->setEnabled(false);
    }
    auto *timer = controller->findChild<QTimer *>();
    QVERIFY(timer);
    QVERIFY(timer->intervalAsDuration() <= 1s);
    if (quick)
        timer->stop();
    peer->unplug();
    expectOneLoss();
}

void TestLineLoss::speaksChinese()
{
    qx::Language::setCurrent(qx::UiLanguage::Chinese);
    peer->unplug();
    QTRY_VERIFY(!controller->isOpen());
    const QString message = QStringLiteral("macOS串口失败：") + qt_error_string(EIO);
    QCOMPARE(history->events,
             QStringList({qx::errorEvent(message), qx::disconnectionEvent(message)}));
}

// A receiver of the loss may clear the very queue whose head is being sent.
void TestLineLoss::argumentOfSendMayVanish()
{
    auto queue = std::make_unique<QByteArray>("QXUSB HELLO\n");
    connect(controller.get(), &SerialController::errorOccurred, this, [&queue] { queue.reset(); });
    peer->unplug();

    const qint64 accepted = controller->send(*queue);

    QVERIFY(accepted == 12 || accepted == -1);
    QTRY_VERIFY(!controller->isOpen());
    QCOMPARE(history->events, qx::lineLost());
}

void TestLineLoss::fiveHundredLosses()
{
    controller->close();
    peer->unplug();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const qsizetype descriptors = openDescriptors();
    for (int round = 0; round < 500; ++round) {
        RawPeer next;
        QVERIFY(controller->open(next.path(), 115200));
        history->clear();
        if (round % 3 == 1)
            next.write("QXUSB OK\n");
        next.unplug();
        if (round % 3 == 2)
            controller->send("QXUSB HELLO\n");
        QVERIFY(QTest::qWaitFor([this] { return !controller->isOpen(); }));
        QCOMPARE(history->events, qx::lineLost());
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(openDescriptors(), descriptors);
    QCOMPARE(controller->findChildren<QSocketNotifier *>().size(), 1);
}

void TestLineLoss::receiverThatReconnectsAtOnce_data()
{
    QTest::addColumn<bool>("atTheError");
    QTest::newRow("at the error") << true;
    QTest::newRow("at the disconnection") << false;
}

void TestLineLoss::receiverThatReconnectsAtOnce()
{
    QFETCH(bool, atTheError);
    const auto reconnect = [this] {
        peer = std::make_unique<RawPeer>();
        controller->open(peer->path(), 115200);
    };
    if (atTheError) {
        connect(controller.get(), &SerialController::errorOccurred, this, reconnect);
    } else {
        connect(controller.get(), &SerialController::connectionChanged, this,
                [reconnect](bool connected) {
                    if (!connected)
                        reconnect();
                });
    }
    for (int round = 0; round < 100; ++round) {
        history->clear();
        peer->unplug();
        if (round % 2 == 1)
            controller->send("QXUSB HELLO\n");
        QVERIFY(QTest::qWaitFor([this] { return peer->isPluggedIn() && controller->isOpen(); }));
        QCOMPARE(controller->portName(), peer->path());
        QCOMPARE(history->events, qx::lineLost() + QStringList({qx::connectedTo(peer->path())}));

        QVERIFY(peer->write("QXUSB OK\n") == 9);
        QVERIFY(QTest::qWaitFor([this] { return !history->lines.isEmpty(); }));
        QCOMPARE(history->lines, QByteArrayList({"QXUSB OK"}));
    }
}

QTEST_GUILESS_MAIN(TestLineLoss)
#include "tst_lineloss.moc"
