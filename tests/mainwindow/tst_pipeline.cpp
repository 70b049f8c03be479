// SPDX-License-Identifier: MIT
#include "serial/serialcontroller.h"
#include "tests/support/stagetest.h"

#include <QStatusBar>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <functional>

using namespace Qt::StringLiterals;
using namespace qx::test;
using qx::Protocol;
using qx::SimulatedFrame;
using qx::SimulatorBehaviour;

namespace {

constexpr std::chrono::milliseconds answerWindow{800}; // after each write

QString success()
{
    return either(u"ESP accepted the frame and invoked A39 transmission"_s,
                  u"ESP已接收并调用A39发送"_s);
}

QString forwardingFailure()
{
    return either(u"ESP reported an A39 forwarding failure"_s, u"ESP报告A39转发失败"_s);
}

QString timedOut()
{
    return either(u"Timed out waiting for ESP acknowledgement"_s, u"等待ESP确认超时"_s);
}

QString outcome(const QString &message, int succeeded, int failed)
{
    return either(u"%1; succeeded %2, failed %3"_s, u"%1；成功 %2，失败 %3"_s)
        .arg(message, QString::number(succeeded), QString::number(failed));
}

QString queued()
{
    return either(u"QUEUE Waiting for QXUSB RX OK; the queued frame was replaced by the latest "
                  "frame"_s,
                  u"QUEUE 等待QXUSB RX OK，已用最新帧覆盖队列"_s);
}

QString retained()
{
    return either(u"WAIT  Not handshaken; the latest frame has been retained"_s,
                  u"WAIT  尚未握手，已保留最新一帧"_s);
}

QString refusedDisconnected()
{
    return either(u"ERR   Frame not sent: serial port is disconnected"_s,
                  u"ERR   串口未连接，帧未发送"_s);
}

QString written(int hy)
{
    return u"TX    HY: %1  Frame: 0  R: 0  G: 0  B: 0  W: 0"_s.arg(hy);
}

QString rewritten(int hy)
{
    return u"RETRY HY: %1  Frame: 0  R: 0  G: 0  B: 0  W: 0"_s.arg(hy);
}

// A log line of what the player said.
QString heard(const QByteArray &line)
{
    return u"RX    "_s + QString::fromLatin1(line);
}

// A player that takes frames without a word, and completes handshakes by itself or not.
SimulatorBehaviour leavesAnswersToUs(bool completesHandshakes)
{
    SimulatorBehaviour behaviour;
    behaviour.dropEvery = 1;
    behaviour.answerHelloNumber = completesHandshakes ? 1 : 0;
    return behaviour;
}

} // namespace

// The player leaves the answers to the test. Frames are told apart by their HY, which a stopped
// player keeps.
class PipelineTest : public StageTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void oneFrameOneAnswer();
    void aDeviceThatNeverAnswers();
    void timeoutsAndComplaintsShareOneCounter_data();
    void timeoutsAndComplaintsShareOneCounter();
    void aComplaintStartsTheWindowAnew();
    void anAnsweredFrameIsNotSentAgain();
    void onlyTheNewestFrameWaits();
    void theWaitingFrameFollowsEveryOutcome_data();
    void theWaitingFrameFollowsEveryOutcome();
    void theWaitingFrameIsOfferedOnTheNextTurn();
    void theFrameOfferedAgainIsNotLostToANewerOne();
    void theFrameOfferedAgainMeetsEveryCheck_data();
    void theFrameOfferedAgainMeetsEveryCheck();
    void strayAcknowledgement();
    void strayFailureCounts();
    void strayComplaint();
    void needHelloTakesTheFrameBack_data();
    void needHelloTakesTheFrameBack();
    void framesWaitForTheHandshake();
    void aFailureBeforeTheHandshakeKeepsTheWaitingFrame();
    void withoutAPort();
    void demoSucceedsAtOnce();
    void invalidFrames_data();
    void invalidFrames();
    void anInvalidFrameDisplacesNothing();
    void anInvalidReservedFieldIsNotSent();

private:
    void offer(int hy) { hand().offer(hy); }
    void link();
    QTimer *ackTimer() { return stage->window().findChild<QTimer *>(u"ackTimer"_s); }
    void onNextTurnAfterStatus(const QString &message, std::function<void()> act);
    void compareWindowWithTheAnswer();
    bool nothingMoreFollows();
    QList<int> arrivedHys() const;

    QList<SimulatedFrame> arrived; // whatever the player made of them
    QTimer sinceAnswer;            // as long as the window of a write, from the first answer on
    QStringList over;              // which of the two was over, in order
};

void PipelineTest::init()
{
    StageTest::init();
    arrived.clear();
    player().setBehaviour(leavesAnswersToUs(true));
    connect(&player(), &qx::PlayerSimulator::frameArrived, this,
            [this](const SimulatedFrame &frame) { arrived.append(frame); });
}

void PipelineTest::cleanup()
{
    if (!QTest::currentTestFailed())
        QCOMPARE(player().unknownBytes() + player().checksumErrors(), 0);
    StageTest::cleanup();
}

void PipelineTest::link()
{
    QVERIFY(stage->connectPlayer());
    clearLog();
}

// Acts once, on the turn of the event loop after the status bar showed the message.
void PipelineTest::onNextTurnAfterStatus(const QString &message, std::function<void()> act)
{
    auto *once = new QObject(&stage->window());
    connect(stage->window().statusBar(), &QStatusBar::messageChanged, once,
            [once, message, act](const QString &shown) {
                if (shown != message)
                    return;
                once->disconnect();
                QMetaObject::invokeMethod(
                    once,
                    [once, act] {
                        act();
                        once->deleteLater();
                    },
                    Qt::QueuedConnection);
            });
}

// A window that began before the player's answer is over before one that begins with it, however
// slow the machine is: timers that are late run out in the order in which they were due.
void PipelineTest::compareWindowWithTheAnswer()
{
    over.clear();
    sinceAnswer.setSingleShot(true);
    sinceAnswer.setTimerType(Qt::PreciseTimer);
    sinceAnswer.setInterval(answerWindow);
    sinceAnswer.callOnTimeout(&stage->window(), [this] { over.append(u"since the answer"_s); });
    const auto *controller = stage->window().findChild<qx::SerialController *>();
    connect(controller, &qx::SerialController::rawReceived, &sinceAnswer,
            qOverload<>(&QTimer::start), Qt::SingleShotConnection);
    connect(ackTimer(), &QTimer::timeout, this, [this] { over.append(u"window"_s); });
}

// A line that means nothing to a linked window makes the way through the event loops; whatever was
// under way comes before it.
bool PipelineTest::nothingMoreFollows()
{
    clearLog();
    return stage->hear("QXUSB READY") && hand().log() == QStringList{heard("QXUSB READY")};
}

QList<int> PipelineTest::arrivedHys() const
{
    QList<int> hys;
    for (const SimulatedFrame &frame : arrived)
        hys.append(frame.hy);
    return hys;
}

void PipelineTest::oneFrameOneAnswer()
{
    link();
    offer(1);
    QTRY_COMPARE(arrivedHys(), QList<int>{1});
    QCOMPARE(arrived.first().bytes,
             QByteArray::fromHex("FFFF171234170100000000000000000000000027"));
    QVERIFY(stage->hear("QXUSB RX OK"));
    QCOMPARE(hand().log(), QStringList({written(1), heard("QXUSB RX OK")}));
    QCOMPARE(hand().statusBar(), outcome(success(), 1, 0));
    QCOMPARE(hand().statusLifetimeMs(), 4500);
    // HELLO and the frame; OK and the acknowledgement.
    QCOMPARE(hand().row(6)->text(), u"TX 32 B / RX 21 B · OK 1 / FAIL 0"_s);
}

// Each write opens a whole window, and only its end brings the next write.
void PipelineTest::aDeviceThatNeverAnswers()
{
    link();
    QList<qsizetype> rewrites;
    QList<bool> windowOpen;
    QObject listener;
    connect(ackTimer(), &QTimer::timeout, &listener, [&] {
        rewrites.append(hand().log("RETRY").size());
        windowOpen.append(ackTimer()->isActive());
    });
    offer(1);
    QVERIFY(ackTimer()->isActive());
    QVERIFY(ackTimer()->isSingleShot());
    QCOMPARE(ackTimer()->timerType(), Qt::PreciseTimer);
    QCOMPARE(ackTimer()->intervalAsDuration(), answerWindow);
    QCOMPARE(hand().log("RETRY").size(), 0);
    QTRY_COMPARE(rewrites, QList<qsizetype>({1, 2, 2}));
    QCOMPARE(windowOpen, QList<bool>({true, true, false}));
    QCOMPARE(ackTimer()->intervalAsDuration(), answerWindow);
    QCOMPARE(hand().statusBar(), outcome(timedOut(), 0, 1));
    QCOMPARE(hand().statusLifetimeMs(), 4500);
    QCOMPARE(hand().log(), QStringList({written(1), rewritten(1), rewritten(1)}));
    QTRY_COMPARE(arrived.size(), 3);
    QCOMPARE(arrived.at(1).bytes, arrived.at(0).bytes);
    QCOMPARE(arrived.at(2).bytes, arrived.at(0).bytes);
    QTRY_COMPARE(hand().row(6)->text(), u"TX 72 B / RX 9 B · OK 0 / FAIL 1"_s);
}

void PipelineTest::timeoutsAndComplaintsShareOneCounter_data()
{
    QTest::addColumn<QString>("triggers"); // T: the window passes, C: the player complains
    QTest::newRow("complaints only") << u"CCC"_s;
    QTest::newRow("a timeout first") << u"TCC"_s;
    QTest::newRow("a timeout between") << u"CTC"_s;
    QTest::newRow("a timeout last") << u"CCT"_s;
}

// The third write was the last, whatever brought it; the message speaks of a timeout.
void PipelineTest::timeoutsAndComplaintsShareOneCounter()
{
    QFETCH(QString, triggers);
    link();
    offer(1);
    qsizetype writes = 1;
    for (const QChar trigger : triggers) {
        QTRY_COMPARE(arrived.size(), writes);
        if (trigger == u'C')
            QVERIFY(stage->hear("QXUSB BAD CHECKSUM"));
        if (writes < 3)
            QTRY_VERIFY(hand().log("RETRY").size() >= writes);
        ++writes;
    }
    QTRY_COMPARE(hand().statusBar(), outcome(timedOut(), 0, 1));
    QCOMPARE(arrived.size(), 3);
    QCOMPARE(hand().log("TX").size(), 1);
    QCOMPARE(hand().log("RETRY").size(), 2);

    offer(2); // the next frame has its own three writes
    QTRY_COMPARE(arrived.size(), 4);
    QVERIFY(stage->hear("QXUSB BAD CHECKSUM"));
    QVERIFY(stage->hear("QXUSB BAD CHECKSUM"));
    QCOMPARE(hand().logCount(rewritten(2)), 2);
}

void PipelineTest::aComplaintStartsTheWindowAnew()
{
    link();
    compareWindowWithTheAnswer();
    offer(1);
    QTRY_COMPARE(arrived.size(), 1);
    QVERIFY(stage->hear("QXUSB BAD CHECKSUM"));
    QTRY_COMPARE(hand().log().size(), 4);
    QCOMPARE(over.first(2), QStringList({u"since the answer"_s, u"window"_s}));
    QCOMPARE(hand().log(),
             QStringList({written(1), heard("QXUSB BAD CHECKSUM"), rewritten(1), rewritten(1)}));
}

// The window of a frame that was answered does not run on into the next frame's.
void PipelineTest::anAnsweredFrameIsNotSentAgain()
{
    link();
    compareWindowWithTheAnswer();
    offer(1);
    offer(2);
    QTRY_COMPARE(arrived.size(), 1);
    QVERIFY(stage->hear("QXUSB RX OK"));
    QTRY_VERIFY(arrived.size() >= 3);
    QCOMPARE(over.first(2), QStringList({u"since the answer"_s, u"window"_s}));
    QCOMPARE(arrivedHys().first(3), QList<int>({1, 2, 2}));
    QCOMPARE(hand().logCount(rewritten(1)), 0);
}

void PipelineTest::onlyTheNewestFrameWaits()
{
    link();
    for (int hy : {1, 2, 3, 4})
        offer(hy);
    QCOMPARE(hand().log(), QStringList({written(1), queued(), queued(), queued()}));
    QTRY_COMPARE(arrived.size(), 1);
    QVERIFY(stage->hear("QXUSB RX OK"));
    QTRY_COMPARE(hand().logCount(written(4)), 1);
    QTRY_COMPARE(arrivedHys(), QList<int>({1, 4}));
    QVERIFY(stage->hear("QXUSB RX OK"));
    QCOMPARE(hand().statusBar(), outcome(success(), 2, 0));
    QVERIFY(nothingMoreFollows());
}

void PipelineTest::theWaitingFrameFollowsEveryOutcome_data()
{
    QTest::addColumn<QByteArrayList>("answers");
    QTest::addColumn<int>("failed");
    QTest::newRow("accepted") << QByteArrayList{"QXUSB RX OK"} << 0;
    QTest::newRow("A39 failed") << QByteArrayList{"QXUSB AC39 FAIL"} << 1;
    QTest::newRow("given up") << QByteArrayList(3, "QXUSB BAD CHECKSUM") << 1;
    QTest::newRow("accepted at the second write")
        << QByteArrayList{"QXUSB BAD CHECKSUM", "QXUSB RX OK"} << 0;
}

void PipelineTest::theWaitingFrameFollowsEveryOutcome()
{
    QFETCH(QByteArrayList, answers);
    QFETCH(int, failed);
    link();
    offer(1);
    offer(2);
    for (const QByteArray &answer : answers)
        QVERIFY(stage->hear(answer));
    QTRY_COMPARE(hand().logCount(written(2)), 1);
    QCOMPARE(hand().row(6)->text().section(u" · "_s, 1),
             u"OK %1 / FAIL %2"_s.arg(1 - failed).arg(failed));
    QTRY_COMPARE(arrived.last().hy, 2);
    QVERIFY(stage->hear("QXUSB RX OK"));
    QCOMPARE(hand().statusBar(), outcome(success(), 2 - failed, failed));
}

void PipelineTest::theWaitingFrameIsOfferedOnTheNextTurn()
{
    link();
    offer(1);
    offer(2);
    QString lastLog;
    onNextTurnAfterStatus(outcome(success(), 1, 0), [&] { lastLog = hand().lastLog(); });
    QVERIFY(stage->hear("QXUSB RX OK"));
    QTRY_COMPARE(hand().logCount(written(2)), 1);
    QCOMPARE(lastLog, heard("QXUSB RX OK"));
}

void PipelineTest::theFrameOfferedAgainIsNotLostToANewerOne()
{
    link();
    offer(1);
    offer(2);
    onNextTurnAfterStatus(outcome(success(), 1, 0), [this] { offer(3); });
    clearLog();
    QVERIFY(stage->hear("QXUSB RX OK"));
    QTRY_COMPARE(hand().log(), QStringList({heard("QXUSB RX OK"), written(3), queued()}));
    QVERIFY(stage->hear("QXUSB RX OK"));
    QTRY_COMPARE(hand().logCount(written(2)), 1);
    QTRY_COMPARE(arrivedHys(), QList<int>({1, 3, 2}));
}

void PipelineTest::theFrameOfferedAgainMeetsEveryCheck_data()
{
    QTest::addColumn<QString>("meanwhile");
    QTest::newRow("the port was closed") << u"closed"_s;
    QTest::newRow("demo mode was switched on") << u"demo"_s;
    QTest::newRow("the handshake was restarted") << u"handshake"_s;
}

void PipelineTest::theFrameOfferedAgainMeetsEveryCheck()
{
    QFETCH(QString, meanwhile);
    link();
    offer(1);
    offer(2);
    onNextTurnAfterStatus(outcome(success(), 1, 0), [this, meanwhile] {
        if (meanwhile == u"closed")
            hand().click(hand().connectButton());
        else if (meanwhile == u"demo")
            hand().setDemo(true);
        else
            hand().click(hand().handshakeAgain());
        clearLog();
    });
    QTRY_COMPARE(arrived.size(), 1);
    player().say("QXUSB RX OK\n");
    if (meanwhile == u"closed") {
        QTRY_COMPARE(hand().log(), QStringList({refusedDisconnected()}));
    } else if (meanwhile == u"demo") {
        QTRY_COMPARE(hand().log(), QStringList({written(2), u"RX    QXUSB RX OK  (DEMO)"_s}));
    } else {
        QTRY_COMPARE(hand().logCount(written(2)), 1);
        QCOMPARE(hand().log().first(2), QStringList({retained(), helloLine(1)}));
        QTRY_COMPARE(arrivedHys(), QList<int>({1, 2}));
    }
}

void PipelineTest::strayAcknowledgement()
{
    link();
    stage->window().statusBar()->clearMessage();
    QVERIFY(stage->hear("QXUSB RX OK"));
    QCOMPARE(hand().row(6)->text(), u"TX 12 B / RX 21 B · OK 0 / FAIL 0"_s);
    QCOMPARE(hand().statusBar(), QString());
    QCOMPARE(hand().log(), QStringList({heard("QXUSB RX OK")}));
}

void PipelineTest::strayFailureCounts()
{
    link();
    QVERIFY(stage->hear("QXUSB AC39 FAIL"));
    QCOMPARE(hand().row(6)->text(), u"TX 12 B / RX 25 B · OK 0 / FAIL 1"_s);
    QCOMPARE(hand().statusBar(), outcome(forwardingFailure(), 0, 1));
    QCOMPARE(hand().log(), QStringList({heard("QXUSB AC39 FAIL")}));
}

void PipelineTest::strayComplaint()
{
    link();
    const QString message = hand().statusBar();
    QVERIFY(stage->hear("QXUSB BAD CHECKSUM"));
    QCOMPARE(hand().log(), QStringList({heard("QXUSB BAD CHECKSUM")}));
    QCOMPARE(hand().row(6)->text(), u"TX 12 B / RX 28 B · OK 0 / FAIL 0"_s);
    QCOMPARE(hand().statusBar(), message);
}

void PipelineTest::needHelloTakesTheFrameBack_data()
{
    QTest::addColumn<bool>("another");
    QTest::newRow("nothing waits") << false;
    QTest::newRow("another frame waits: it is replaced") << true;
}

void PipelineTest::needHelloTakesTheFrameBack()
{
    QFETCH(bool, another);
    link();
    offer(1);
    QVERIFY(stage->hear("QXUSB BAD CHECKSUM"));
    QVERIFY(stage->hear("QXUSB BAD CHECKSUM")); // no write is left
    if (another)
        offer(2);
    QTRY_COMPARE(arrived.size(), 3);
    player().setBehaviour(leavesAnswersToUs(false));
    clearLog();
    QVERIFY(stage->hear("QXUSB NEED HELLO"));
    QTRY_COMPARE(hand().logCount(helloLine(2)), 1); // a second later, more than the 800 ms
    QCOMPARE(hand().log().first(3),
             QStringList({heard("QXUSB NEED HELLO"), helloLine(1), helloLine(2)}));
    QVERIFY(hand().row(6)->text().endsWith(u"OK 0 / FAIL 0"_s));

    QString afterOk;
    onNextTurnAfterStatus(either(u"QXUSB handshake succeeded; playback frames can now be sent"_s,
                                 u"QXUSB 握手成功，可以发送播放帧"_s),
                          [&] { afterOk = hand().lastLog(); });
    clearLog();
    QVERIFY(stage->hear("QXUSB OK"));
    QTRY_VERIFY(!afterOk.isEmpty());
    QCOMPARE(afterOk, written(1)); // at once, not on a later turn
    QVERIFY(stage->hear("QXUSB BAD CHECKSUM"));
    QVERIFY(stage->hear("QXUSB BAD CHECKSUM"));
    QCOMPARE(hand().logCount(rewritten(1)), 2); // a fresh count
    QVERIFY(stage->hear("QXUSB RX OK"));
    QCOMPARE(hand().statusBar(), outcome(success(), 1, 0));
    QVERIFY(nothingMoreFollows());
    QVERIFY(!arrivedHys().contains(2));
}

void PipelineTest::framesWaitForTheHandshake()
{
    player().setBehaviour(leavesAnswersToUs(false));
    QVERIFY(stage->connectPort());
    QVERIFY(stage->hear("QXUSB READY")); // attempt 2
    clearLog();
    offer(1);
    offer(2);
    QCOMPARE(hand().log(), QStringList({retained(), helloLine(1), retained(), helloLine(1)}));
    QCOMPARE(hand().linkText()->text(), either(u"Handshaking (1)"_s, u"握手中（1）"_s));
    QTRY_VERIFY(player().helloCount() >= 4);
    QCOMPARE(arrived.size(), 0);
    QVERIFY(stage->hear("QXUSB OK"));
    QCOMPARE(hand().log().last(2), QStringList({heard("QXUSB OK"), written(2)}));
    QTRY_COMPARE(arrivedHys(), QList<int>{2});
}

void PipelineTest::aFailureBeforeTheHandshakeKeepsTheWaitingFrame()
{
    player().setBehaviour(leavesAnswersToUs(false));
    QVERIFY(stage->connectPort());
    offer(1);
    QVERIFY(stage->hear("QXUSB AC39 FAIL"));
    QCOMPARE(hand().statusBar(), outcome(forwardingFailure(), 0, 1));
    QVERIFY(stage->hear("boot")); // and nothing else happened until then
    QCOMPARE(hand().log().last(2), QStringList({heard("QXUSB AC39 FAIL"), heard("boot")}));
    QVERIFY(stage->hear("QXUSB OK"));
    QCOMPARE(hand().lastLog(), written(1));
}

void PipelineTest::withoutAPort()
{
    hand().setDemo(false);
    clearLog();
    offer(1);
    QCOMPARE(hand().log(), QStringList({refusedDisconnected()}));
    link();
    QVERIFY(stage->hear("QXUSB OK")); // would release a frame that waits
    QCOMPARE(hand().log(), QStringList({heard("QXUSB OK")}));
    offer(2);
    QTRY_COMPARE(arrivedHys(), QList<int>{2});
}

void PipelineTest::demoSucceedsAtOnce()
{
    const QString message = hand().statusBar();
    clearLog();
    for (int hy : {1, 2, 3})
        offer(hy);
    const QString answer = u"RX    QXUSB RX OK  (DEMO)"_s;
    QCOMPARE(hand().log(),
             QStringList({written(1), answer, written(2), answer, written(3), answer}));
    QCOMPARE(hand().row(6)->text(), u"TX 60 B / RX 36 B · OK 3 / FAIL 0"_s);
    QCOMPARE(hand().statusBar(), message);
    QCoreApplication::processEvents();
    QCOMPARE(player().counts().bytesReceived, 0);
}

void PipelineTest::invalidFrames_data()
{
    QTest::addColumn<QByteArray>("frame");
    const QByteArray good = Protocol::encodeControlFrame({});
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("one byte short") << good.first(19);
    QTest::newRow("one byte too many") << good + '\0';
    QTest::newRow("wrong header") << good.left(5) + '\x18' + good.mid(6, 13) + '\x29';
    QTest::newRow("wrong checksum") << good.first(19) + '\x27';
}

// Refused in demo mode, disconnected, linked alike.
void PipelineTest::invalidFrames()
{
    QFETCH(QByteArray, frame);
    const QString refused =
        either(u"ERR   Frame not sent: invalid 20-byte header or XOR checksum"_s,
               u"ERR   20字节帧头或XOR无效，未发送"_s);
    clearLog();
    stage->window().transmitFrame(frame);
    hand().setDemo(false);
    stage->window().transmitFrame(frame);
    QCOMPARE(hand().log("ERR").size(), 2);
    QCOMPARE(hand().logCount(refused), 2);
    link();
    stage->window().transmitFrame(frame);
    QCOMPARE(hand().log(), QStringList({refused}));
    QCOMPARE(hand().row(6)->text(), u"TX 12 B / RX 9 B · OK 0 / FAIL 0"_s);
    QVERIFY(nothingMoreFollows());
    QCOMPARE(player().counts().bytesReceived, 12);
}

void PipelineTest::anInvalidFrameDisplacesNothing()
{
    link();
    offer(1);
    offer(2);
    onNextTurnAfterStatus(outcome(success(), 1, 0),
                          [this] { stage->window().transmitFrame("no frame"); });
    QVERIFY(stage->hear("QXUSB RX OK"));
    QTRY_COMPARE(hand().logCount(written(2)), 1);
}

void PipelineTest::anInvalidReservedFieldIsNotSent()
{
    link();
    hand().type(hand().reserved(), u"00 00 00 00 00"_s);
    hand().click(hand().sendFrame());
    QCOMPARE(hand().log(),
             QStringList({either(u"ERR   Frame not sent: the reserved field is not 6 HEX bytes"_s,
                                 u"ERR   保留字段不是6个HEX字节，未发送"_s)}));
    QVERIFY(nothingMoreFollows());
    QCOMPARE(arrived.size(), 0);
}

QTEST_MAIN(PipelineTest)
#include "tst_pipeline.moc"
