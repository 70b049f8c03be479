// SPDX-License-Identifier: MIT
#include "tests/support/stage.h"

#include <QTest>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <functional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace qx::test;
using qx::MainWindow;
using qx::PlaybackState;
using qx::PlayerSimulator;
using qx::SimulatedFrame;
using qx::SimulatorBehaviour;

namespace {

const QString english = u"en"_s;
const QString chinese = u"zh_CN"_s;

QString playing()
{
    return either(u"Playing"_s, u"发送中"_s);
}

QString paused()
{
    return either(u"Paused"_s, u"已暂停"_s);
}

QString stopped()
{
    return either(u"Stopped"_s, u"已停止"_s);
}

QString pausedLine()
{
    return either(
        u"SYS   Frame increment paused; resending the current frame at the Time interval"_s,
        u"SYS   已暂停帧号递增；按Time间隔循环发送当前帧"_s);
}

QString stoppedLine()
{
    return either(u"SYS   Stopped; resending Frame=0 and RGBW=0 at the Time interval"_s,
                  u"SYS   已停止；按Time间隔循环发送Frame=0、RGBW=0"_s);
}

QString handshakeFirst()
{
    return either(u"ERR   Complete the QXUSB handshake first"_s, u"ERR   请先完成QXUSB握手"_s);
}

QTimer *stepTimer(const MainWindow &window)
{
    return window.findChild<QTimer *>(u"playbackTimer"_s);
}

QList<int> numbers(const QList<SimulatedFrame> &frames)
{
    QList<int> result;
    for (const SimulatedFrame &frame : frames)
        result.append(frame.number);
    return result;
}

QList<int> counting(int first, int last)
{
    QList<int> result;
    for (int number = first; number <= last; ++number)
        result.append(number);
    return result;
}

bool hasLevels(const SimulatedFrame &frame, int red, int green, int blue, int white)
{
    return frame.red == red && frame.green == green && frame.blue == blue && frame.white == white;
}

// The frame that the player got last; one that nothing expects if it got none.
SimulatedFrame latest(Stage &stage)
{
    const QList<SimulatedFrame> frames = stage.player().frames();
    SimulatedFrame none;
    none.number = 65535;
    return frames.isEmpty() ? none : frames.last();
}

bool isDark(const SimulatedFrame &frame)
{
    return frame.number == 0 && hasLevels(frame, 0, 0, 0, 0);
}

bool isLit(const SimulatedFrame &frame)
{
    return hasLevels(frame, 10, 20, 30, 40);
}

void light(const Operator &hand)
{
    hand.typeLevels(10, 20, 30, 40);
}

// A connected player, colours set, the shortest interval, frames 0 to `total`.
void prepare(Stage &stage, int total)
{
    QVERIFY(stage.connectPlayer());
    light(stage.hand());
    stage.hand().type(stage.hand().total(), total);
    stage.hand().dragTo(stage.hand().timeSlider(), 30);
}

// The same, played until it has come to a frame at least.
void playTo(Stage &stage, int total, int frame)
{
    prepare(stage, total);
    stage.hand().click(stage.hand().play());
    QTRY_VERIFY(stage.hand().frame()->value() >= frame);
}

void playUnanswered(Stage &stage)
{
    prepare(stage, 1000);
    SimulatorBehaviour mute;
    mute.silent = true;
    stage.player().setBehaviour(mute);
    stage.hand().click(stage.hand().play());
}

QStringList editorLevels(const Operator &hand)
{
    return {hand.red()->text(), hand.green()->text(), hand.blue()->text(), hand.white()->text()};
}

const QStringList litLevels = {u"10"_s, u"20"_s, u"30"_s, u"40"_s};
const QStringList darkLevels = {u"0"_s, u"0"_s, u"0"_s, u"0"_s};

} // namespace

class TestPlayback : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void onePass_data();
    void onePass();
    void endlessPasses_data();
    void endlessPasses();
    void longFile_data();
    void longFile();
    void fromTheMiddle();
    void firstFrameAtOnce();
    void slowAnswersStretchPlayback();
    void lostAnswersRepeatTheSameFrame();

    void pauseResendsTheFrame_data();
    void pauseResendsTheFrame();
    void playAfterPauseGoesOn();
    void stopResendsDarkness_data();
    void stopResendsDarkness();
    void stopTwiceKeepsTheColours();
    void homeIsStop();
    void withoutLink_data();
    void withoutLink();
    void withoutState();

    void timerIsPrecise();
    void newIntervalWhilePlaying();
    void newIntervalAtRest();
    void newIntervalWhileStoppedResends();
    void otherFile();
    void otherFileWhilePlaying();
    void otherFileWithoutLink();
    void replayShownInStatus();

    void dragAtRest();
    void dragWhileStoppedResends();
    void dragWhilePlaying();
    void dragWhilePaused();
    void dragWithoutLink();
    void lineLostDuringDrag();

    void totalAboveTheStandard();
    void totalBelowTheFrame_data();
    void totalBelowTheFrame();

    void totalIsTypedWhilePlaying();
    void totalActsAtOnce_data();
    void totalActsAtOnce();
    void stopWhileTheHandshakeIsMissing();
    void handshakeAfterAnIdleStop();
    void stepBetweenReplyAndTheFrameThatWaited();
    void lostLineStopsQuietly();
    void leavingDemoStopsQuietly();
};

void TestPlayback::initTestCase()
{
    takeIdentity();
}

void TestPlayback::onePass_data()
{
    QTest::addColumn<int>("total");
    QTest::newRow("one frame") << 0;
    QTest::newRow("two frames") << 1;
    QTest::newRow("six frames") << 5;
}

// Without Replay: every frame up to the last one, once; then Stop, frame 0 and dark for good.
void TestPlayback::onePass()
{
    QFETCH(int, total);
    Stage stage;
    const Operator &hand = stage.hand();
    prepare(stage, total);
    stage.player().forget();

    hand.click(hand.play());
    const int pass = total + 1;
    QTRY_VERIFY(stage.player().frames().size() >= pass + 4);

    const QList<SimulatedFrame> frames = stage.player().frames();
    QCOMPARE(numbers(frames.first(pass)), counting(0, total));
    QVERIFY(std::all_of(frames.cbegin(), frames.cbegin() + pass, isLit));
    QVERIFY(std::all_of(frames.cbegin() + pass, frames.cend(), isDark));
    QCOMPARE(hand.state(), stopped());
    QCOMPARE(hand.frame()->value(), 0);
    QCOMPARE(hand.position()->text(), u"0 / %1"_s.arg(total));
    QCOMPARE(hand.seekSlider()->value(), 0);
    QCOMPARE(hand.logCount(stoppedLine()), 1);
    QCOMPARE(hand.log("QUEUE"), QStringList());
}

void TestPlayback::endlessPasses_data()
{
    onePass_data();
}

// With Replay: the frame after the last one is frame 0.
void TestPlayback::endlessPasses()
{
    QFETCH(int, total);
    Stage stage;
    const Operator &hand = stage.hand();
    prepare(stage, total);
    hand.click(hand.replay());
    stage.player().forget();

    hand.click(hand.play());
    const int pass = total + 1;
    QTRY_VERIFY(stage.player().frames().size() >= 2 * pass + 2);

    const QList<SimulatedFrame> frames = stage.player().frames();
    for (qsizetype i = 0; i < frames.size(); ++i)
        QCOMPARE(int{frames[i].number}, static_cast<int>(i % pass));
    QVERIFY(std::all_of(frames.cbegin(), frames.cend(), isLit));
    QCOMPARE(hand.state(), playing());
    QCOMPARE(hand.logCount(stoppedLine()), 0);
}

void TestPlayback::longFile_data()
{
    QTest::addColumn<int>("total");
    QTest::addColumn<bool>("replay");
    QTest::newRow("standard length, once") << 1800 << false;
    QTest::newRow("standard length, again and again") << 1800 << true;
    QTest::newRow("longer, once") << 2500 << false;
    QTest::newRow("longer, again and again") << 2500 << true;
}

// The steps to the last but two frames are made by hand, the end is the timer's.
void TestPlayback::longFile()
{
    QFETCH(int, total);
    QFETCH(bool, replay);
    Stage stage;
    const Operator &hand = stage.hand();
    hand.type(hand.total(), total);
    hand.dragTo(hand.timeSlider(), 30);
    if (replay)
        hand.click(hand.replay());
    QList<int> shown;
    connect(hand.frame(), &QSpinBox::valueChanged, this, [&](int frame) {
        shown.append(frame);
        QCOMPARE(hand.seekSlider()->value(), frame);
    });

    hand.click(hand.play());
    for (int step = 2; step < total; ++step)
        stage.window().playbackTick();
    QCOMPARE(hand.frame()->value(), total - 2);
    QTRY_VERIFY(shown.contains(0) && (!replay || shown.last() >= 2));

    QList<int> expected = counting(1, total) + QList<int>{0};
    if (replay)
        expected += counting(1, static_cast<int>(shown.size() - expected.size()));
    QCOMPARE(shown, expected);
    QCOMPARE(hand.state(), replay ? playing() : stopped());
    QCOMPARE(hand.log("TX").filter(u"Frame: %1 "_s.arg(total)).size(), 1);
}

void TestPlayback::fromTheMiddle()
{
    Stage stage;
    const Operator &hand = stage.hand();
    prepare(stage, 6);
    hand.type(hand.frame(), 4);
    stage.player().forget();

    hand.click(hand.play());
    QTRY_VERIFY(stage.player().frames().size() >= 5);
    QCOMPARE(numbers(stage.player().frames().first(5)), (QList<int>{4, 5, 6, 0, 0}));
}

void TestPlayback::firstFrameAtOnce()
{
    Stage stage;
    const Operator &hand = stage.hand();
    prepare(stage, 100);
    const qsizetype before = hand.log("TX").size();
    hand.click(hand.play());
    QCOMPARE(hand.log("TX").size(), before + 1);
    QCOMPARE(hand.log("TX").last(), u"HY: 0  Frame: 0  R: 10  G: 20  B: 30  W: 40"_s);
    QCOMPARE(hand.state(), playing());
    QCOMPARE(hand.row(2)->text(), playing());
    QCOMPARE(hand.row(4)->text(), u"0 / 100"_s);
    QCOMPARE(hand.row(5)->text(), u"10 / 20 / 30 / 40"_s);
    QCOMPARE(stepTimer(stage.window())->interval(), 30);
}

void TestPlayback::slowAnswersStretchPlayback()
{
    Stage stage;
    const Operator &hand = stage.hand();
    prepare(stage, 4);
    SimulatorBehaviour slow;
    slow.replyDelay = 100ms; // more than three intervals
    stage.player().setBehaviour(slow);
    QStringList seen; // by the player
    connect(&stage.player(), &PlayerSimulator::frameArrived, this,
            [&seen](const SimulatedFrame &frame) { seen.append(QString::number(frame.number)); });
    connect(&stage.player(), &PlayerSimulator::frameReplied, this,
            [&seen] { seen.append(u"reply"_s); });

    hand.click(hand.play());
    QTRY_VERIFY(seen.size() >= 13);

    QCOMPARE(seen.first(13).join(u' '), u"0 reply 1 reply 2 reply 3 reply 4 reply 0 reply 0"_s);
    QCOMPARE(hand.log("QUEUE"), QStringList());
    QCOMPARE(hand.log("RETRY"), QStringList());
}

void TestPlayback::lostAnswersRepeatTheSameFrame()
{
    Stage stage;
    const Operator &hand = stage.hand();
    prepare(stage, 100);
    SimulatorBehaviour forgetful;
    forgetful.dropEvery = 3;
    stage.player().setBehaviour(forgetful);
    stage.player().forget();

    hand.click(hand.play());
    QTRY_VERIFY(stage.player().frames().size() >= 6);
    QCOMPARE(numbers(stage.player().frames().first(6)), (QList<int>{0, 1, 2, 2, 3, 4}));
    QCOMPARE(hand.log("RETRY").size(), 1);
    QCOMPARE(hand.log("QUEUE"), QStringList());
}

void TestPlayback::pauseResendsTheFrame_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << english;
    QTest::newRow("Chinese") << chinese;
}

void TestPlayback::pauseResendsTheFrame()
{
    QFETCH(QString, language);
    Stage stage(language);
    const Operator &hand = stage.hand();
    playTo(stage, 1000, 3);

    hand.click(hand.pause());
    const int frame = hand.frame()->value();
    QCOMPARE(hand.lastLog(), pausedLine());
    QCOMPARE(hand.state(), paused());
    QCOMPARE(hand.row(2)->text(), paused());
    QCOMPARE(hand.row(4)->text(), u"%1 / 1000"_s.arg(frame));

    // The frame before may have been on its way.
    QTRY_COMPARE(int{latest(stage).number}, frame);
    stage.player().forget();
    QTRY_VERIFY(stage.player().frames().size() >= 5);
    const QList<SimulatedFrame> frames = stage.player().frames();
    QCOMPARE(numbers(frames), QList<int>(frames.size(), frame));
    QVERIFY(std::all_of(frames.cbegin(), frames.cend(), isLit));
    QCOMPARE(hand.frame()->value(), frame);
    QCOMPARE(hand.logCount(pausedLine()), 1);
}

void TestPlayback::playAfterPauseGoesOn()
{
    Stage stage;
    const Operator &hand = stage.hand();
    prepare(stage, 1000);
    hand.type(hand.frame(), 7);
    hand.click(hand.pause());
    QTRY_VERIFY(stage.player().frames().size() >= 3);
    QCOMPARE(numbers(stage.player().frames().first(3)), (QList<int>{7, 7, 7}));
    hand.click(hand.play());
    QTRY_VERIFY(numbers(stage.player().frames()).contains(10));
    QList<int> seen = numbers(stage.player().frames());
    seen.remove(0, seen.lastIndexOf(7));
    QCOMPARE(seen.first(4), counting(7, 10));
}

void TestPlayback::stopResendsDarkness_data()
{
    pauseResendsTheFrame_data();
}

void TestPlayback::stopResendsDarkness()
{
    QFETCH(QString, language);
    Stage stage(language);
    const Operator &hand = stage.hand();
    playTo(stage, 1000, 3);

    hand.click(hand.stop());
    QCOMPARE(hand.lastLog(), stoppedLine());
    QCOMPARE(hand.state(), stopped());
    QCOMPARE(hand.frame()->value(), 0);
    QCOMPARE(editorLevels(hand), darkLevels);
    QCOMPARE(hand.row(2)->text(), stopped());
    QCOMPARE(hand.row(4)->text(), u"0 / 1000"_s);
    QCOMPARE(hand.row(5)->text(), u"0 / 0 / 0 / 0"_s);
    QCOMPARE(hand.summary()->text(), u"HY: 0  Frame: 0  R: 0  G: 0  B: 0  W: 0"_s);

    QTRY_VERIFY(isDark(latest(stage)));
    stage.player().forget();
    QTRY_VERIFY(stage.player().frames().size() >= 4);
    const QList<SimulatedFrame> frames = stage.player().frames();
    QVERIFY(std::all_of(frames.cbegin(), frames.cend(), isDark));
    QCOMPARE(hand.logCount(stoppedLine()), 1);
}

void TestPlayback::stopTwiceKeepsTheColours()
{
    Stage stage;
    const Operator &hand = stage.hand();
    prepare(stage, 1000);
    hand.click(hand.play());
    hand.click(hand.stop());
    hand.click(hand.stopZero());
    QCOMPARE(hand.logCount(stoppedLine()), 2);
    QCOMPARE(editorLevels(hand), darkLevels);
    QTRY_VERIFY(isDark(latest(stage)));

    hand.click(hand.play());
    QCOMPARE(editorLevels(hand), litLevels);
    QTRY_VERIFY(isLit(latest(stage)));
}

void TestPlayback::homeIsStop()
{
    Stage stage;
    const Operator &hand = stage.hand();
    hand.type(hand.frame(), 9);
    hand.click(hand.play());
    emit hand.panel()->homeRequested();
    QCOMPARE(hand.state(), stopped());
    QCOMPARE(hand.frame()->value(), 0);
    QCOMPARE(hand.lastLog(), stoppedLine());
}

void TestPlayback::withoutLink_data()
{
    pauseResendsTheFrame_data();
}

// Neither a link nor media: Play and Pause change nothing and say why; Stop stays quiet.
void TestPlayback::withoutLink()
{
    QFETCH(QString, language);
    Stage stage(language);
    const Operator &hand = stage.hand();
    QTimer *timer = stepTimer(stage.window());
    hand.setDemo(false);
    light(hand);
    hand.type(hand.frame(), 5);
    const QStringList before = hand.log();

    hand.click(hand.play());
    QCOMPARE(hand.log(), before + QStringList{handshakeFirst()});
    hand.click(hand.pause());
    QCOMPARE(hand.log(), before + QStringList({handshakeFirst(), handshakeFirst()}));
    QCOMPARE(hand.state(), stopped());
    QCOMPARE(hand.frame()->value(), 5);
    QCOMPARE(editorLevels(hand), litLevels);
    QVERIFY(!timer->isActive());

    hand.click(hand.stop());
    QCOMPARE(hand.log(), before + QStringList({handshakeFirst(), handshakeFirst()}));
    QCOMPARE(hand.frame()->value(), 0);
    QCOMPARE(editorLevels(hand), darkLevels);
    QVERIFY(!timer->isActive());
}

void TestPlayback::withoutState()
{
    Stage stage;
    const Operator &hand = stage.hand();
    hand.panel()->setPlaybackState(PlaybackState{});
    const QStringList before = hand.log();
    stage.window().playbackTick();
    QCOMPARE(hand.log(), before);
    QCOMPARE(hand.frame()->value(), 0);
}

void TestPlayback::timerIsPrecise()
{
    Stage stage;
    const QTimer *timer = stepTimer(stage.window());
    QVERIFY(timer);
    QCOMPARE(timer->timerType(), Qt::PreciseTimer);
    QVERIFY(!timer->isSingleShot());
    QVERIFY(!timer->isActive());
    QCOMPARE(stage.window().findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly).size(),
             3);
}

void TestPlayback::newIntervalWhilePlaying()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QTimer *timer = stepTimer(stage.window());
    hand.dragTo(hand.timeSlider(), 150);
    hand.click(hand.play());
    QCOMPARE(timer->interval(), 150);
    QVERIFY(timer->isActive());

    hand.dragTo(hand.timeSlider(), 30);
    QCOMPARE(timer->interval(), 30);
    QVERIFY(timer->isActive());
    QVERIFY(timer->remainingTime() <= 30); // it does not wait for the end of the old interval
    QTRY_VERIFY(hand.frame()->value() >= 3);
    QCOMPARE(hand.state(), playing());
}

void TestPlayback::newIntervalAtRest()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QTimer *timer = stepTimer(stage.window());
    hand.dragTo(hand.timeSlider(), 77);
    QCOMPARE(timer->interval(), 77);
    QVERIFY(!timer->isActive());
    QCOMPARE(hand.log("TX"), QStringList());
}

void TestPlayback::newIntervalWhileStoppedResends()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QTimer *timer = stepTimer(stage.window());
    hand.click(hand.stop());
    hand.dragTo(hand.timeSlider(), 120);
    QCOMPARE(timer->interval(), 120);
    QVERIFY(timer->isActive());
}

void TestPlayback::otherFile()
{
    Stage stage;
    const Operator &hand = stage.hand();
    prepare(stage, 1000);
    hand.click(hand.pause());
    hand.type(hand.frame(), 8);

    hand.click(hand.increase());
    QCOMPARE(hand.header()->value(), 1);
    QCOMPARE(hand.frame()->value(), 0);
    QTRY_COMPARE(int{latest(stage).hy}, 1);
    QCOMPARE(int{latest(stage).number}, 0);
    QVERIFY(isLit(latest(stage)));

    hand.click(hand.decrease());
    QCOMPARE(hand.header()->value(), 0);
    hand.type(hand.frame(), 8);
    hand.click(hand.decrease()); // there is no file before the first
    QCOMPARE(hand.header()->value(), 0);
    QCOMPARE(hand.frame()->value(), 8);
}

void TestPlayback::otherFileWhilePlaying()
{
    Stage stage;
    const Operator &hand = stage.hand();
    playTo(stage, 1000, 4);
    hand.click(hand.increase());
    QCOMPARE(hand.frame()->value(), 0);
    QCOMPARE(hand.state(), playing());
    QTRY_VERIFY(hand.frame()->value() >= 3);

    QList<int> ofTheOther;
    for (const SimulatedFrame &frame : stage.player().frames()) {
        if (frame.hy == 1)
            ofTheOther.append(frame.number);
    }
    QCOMPARE(ofTheOther, counting(0, static_cast<int>(ofTheOther.size()) - 1));
}

void TestPlayback::otherFileWithoutLink()
{
    Stage stage;
    const Operator &hand = stage.hand();
    hand.setDemo(false);
    hand.type(hand.frame(), 8);
    const QStringList before = hand.log();
    hand.click(hand.increase());
    QCOMPARE(hand.header()->value(), 1);
    QCOMPARE(hand.frame()->value(), 0);
    QCOMPARE(hand.log(), before);
}

void TestPlayback::replayShownInStatus()
{
    Stage stage;
    const Operator &hand = stage.hand();
    hand.row(2)->setText(u"stale"_s);
    hand.click(hand.replay());
    QCOMPARE(hand.row(2)->text(), stopped());
}

void TestPlayback::dragAtRest()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QTimer *timer = stepTimer(stage.window());
    prepare(stage, 100);
    stage.player().forget();

    hand.grab(hand.seekSlider());
    hand.moveHandle(hand.seekSlider(), 60);
    QCOMPARE(hand.frame()->value(), 60);
    QCOMPARE(hand.log("TX").size(), 1); // the HELLO
    hand.letGo(hand.seekSlider());
    QCOMPARE(hand.frame()->value(), 60);
    QCOMPARE(hand.log("TX").size(), 2);
    QVERIFY(!timer->isActive());
    QTRY_COMPARE(stage.player().frames().size(), 1);
    QVERIFY(isDark(stage.player().frames().first())); // it is still Stopped
}

void TestPlayback::dragWhileStoppedResends()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QTimer *timer = stepTimer(stage.window());
    prepare(stage, 100);
    hand.click(hand.stop());
    QVERIFY(timer->isActive());
    hand.grab(hand.seekSlider());
    QVERIFY(!timer->isActive());
    hand.moveHandle(hand.seekSlider(), 60);
    QVERIFY(!timer->isActive());
    hand.letGo(hand.seekSlider());
    QVERIFY(timer->isActive());
    QCOMPARE(timer->interval(), 30);
    QCOMPARE(hand.frame()->value(), 60);
    QCOMPARE(hand.state(), stopped());
}

void TestPlayback::dragWhilePlaying()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QTimer *timer = stepTimer(stage.window());
    playTo(stage, 100, 2);

    hand.grab(hand.seekSlider());
    QVERIFY(!timer->isActive());
    QTRY_COMPARE(stage.player().frames().size(), hand.log("TX").size() - 1); // the HELLO
    stage.player().forget();
    for (const int value : {20, 50, 40}) {
        hand.moveHandle(hand.seekSlider(), value);
        QCOMPARE(hand.frame()->value(), value);
    }
    QCOMPARE(hand.state(), playing());
    QVERIFY(!timer->isActive());
    hand.letGo(hand.seekSlider());
    QVERIFY(timer->isActive());
    QTRY_VERIFY(stage.player().frames().size() >= 4);
    QCOMPARE(numbers(stage.player().frames().first(4)), counting(40, 43));
}

void TestPlayback::dragWhilePaused()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QTimer *timer = stepTimer(stage.window());
    prepare(stage, 100);
    hand.click(hand.pause());
    QTRY_VERIFY(stage.player().frames().size() >= 2);

    hand.grab(hand.seekSlider());
    hand.moveHandle(hand.seekSlider(), 70);
    QVERIFY(!timer->isActive());
    hand.letGo(hand.seekSlider());
    QVERIFY(timer->isActive());
    QCOMPARE(hand.state(), paused());
    QTRY_VERIFY(numbers(stage.player().frames()).count(70) >= 4);
    QCOMPARE(hand.frame()->value(), 70);
}

void TestPlayback::dragWithoutLink()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QTimer *timer = stepTimer(stage.window());
    hand.setDemo(false);
    hand.type(hand.total(), 100);
    const QStringList before = hand.log();
    hand.dragTo(hand.seekSlider(), 30);
    QCOMPARE(hand.frame()->value(), 30);
    QCOMPARE(hand.log(), before);
    QVERIFY(!timer->isActive());
}

// Letting the slider go afterwards must not bring the timer of a stopped player back.
void TestPlayback::lineLostDuringDrag()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QTimer *timer = stepTimer(stage.window());
    prepare(stage, 100);
    hand.click(hand.play());
    hand.grab(hand.seekSlider());
    stage.unplug();
    QTRY_COMPARE(hand.state(), stopped());
    hand.moveHandle(hand.seekSlider(), 30);
    hand.letGo(hand.seekSlider());
    QVERIFY(!timer->isActive());
}

void TestPlayback::totalAboveTheStandard()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QCOMPARE(hand.frame()->maximum(), 1800);
    hand.type(hand.total(), 2500);
    QCOMPARE(hand.frame()->maximum(), 2500);
    QCOMPARE(hand.seekSlider()->maximum(), 2500);
    hand.type(hand.frame(), 2400);
    QCOMPARE(hand.position()->text(), u"2400 / 2500"_s);
    hand.type(hand.frame(), 0);
    hand.type(hand.total(), 100);
    QCOMPARE(hand.frame()->maximum(), 1800);
    QCOMPARE(hand.seekSlider()->maximum(), 100);
}

void TestPlayback::totalBelowTheFrame_data()
{
    QTest::addColumn<bool>("replay");
    QTest::newRow("the next step is Stop") << false;
    QTest::newRow("the next step is frame 0") << true;
}

void TestPlayback::totalBelowTheFrame()
{
    QFETCH(bool, replay);
    Stage stage;
    const Operator &hand = stage.hand();
    if (replay)
        hand.click(hand.replay());
    hand.type(hand.total(), 2500);
    hand.type(hand.frame(), 2400);
    hand.type(hand.total(), 100);
    QCOMPARE(hand.frame()->value(), 2400);
    hand.click(hand.play());
    QCOMPARE(hand.log("TX").last(), u"HY: 0  Frame: 2400  R: 0  G: 0  B: 0  W: 0"_s);
    stage.window().playbackTick();
    QCOMPARE(hand.frame()->value(), 0);
    QCOMPARE(hand.state(), replay ? playing() : stopped());
}

void TestPlayback::totalIsTypedWhilePlaying()
{
    Stage stage;
    const Operator &hand = stage.hand();
    hand.type(hand.frame(), 300);
    hand.click(hand.play());
    stage.window().activateWindow();
    hand.total()->setFocus();
    QTRY_VERIFY(hand.total()->hasFocus());
    hand.total()->selectAll();
    for (const char digit : {'2', '4', '0', '0'}) {
        QTest::keyClick(hand.total(), digit);
        stage.window().playbackTick();
        QCOMPARE(hand.state(), playing());
    }
    QVERIFY(hand.frame()->value() >= 304);

    hand.total()->selectAll();
    QTest::keyClicks(hand.total(), u"100"_s);
    stage.window().playbackTick();
    QCOMPARE(hand.state(), playing());
    QTest::keyClick(hand.total(), Qt::Key_Return);
    stage.window().playbackTick();
    QCOMPARE(hand.state(), stopped());

    QVERIFY(hand.total()->hasFocus());
    hand.total()->selectAll();
    QTest::keyClicks(hand.total(), u"200"_s);
    stage.quit(); // in the middle of typing
}

// Only digits that are being typed do not count yet.
void TestPlayback::totalActsAtOnce_data()
{
    QTest::addColumn<std::function<void(const Operator &)>>("makeItThree");
    QTest::newRow("typed before Play") << std::function([](const Operator &hand) {
        hand.total()->selectAll();
        QTest::keyClick(hand.total(), '3');
        QTest::keyClick(hand.play(), Qt::Key_Space); // the focus stays
    });
    QTest::newRow("stepped down while playing") << std::function([](const Operator &hand) {
        hand.total()->setValue(4);
        hand.click(hand.play());
        hand.total()->setFocus();
        QTest::keyClick(hand.total(), Qt::Key_Down);
    });
    QTest::newRow("typed and stepped down while playing")
        << std::function([](const Operator &hand) {
               hand.click(hand.play());
               hand.total()->setFocus();
               hand.total()->selectAll();
               QTest::keyClick(hand.total(), '4');
               QTest::keyClick(hand.total(), Qt::Key_Down);
           });
}

void TestPlayback::totalActsAtOnce()
{
    QFETCH(std::function<void(const Operator &)>, makeItThree);
    Stage stage;
    const Operator &hand = stage.hand();
    stage.window().activateWindow();
    hand.total()->setFocus();
    QTRY_VERIFY(hand.total()->hasFocus());
    makeItThree(hand);
    QCOMPARE(hand.total()->value(), 3);
    QVERIFY(hand.total()->hasFocus());
    for (int step = 0; step < 4; ++step) {
        QCOMPARE(hand.state(), playing());
        stage.window().playbackTick();
    }
    QCOMPARE(hand.state(), stopped());
}

// The player asks for a new handshake while a frame is under way, and Stop is pressed before that
// is complete: what has not arrived yet is still sent, even while the editors hold no valid frame,
// and then the lights go dark.
void TestPlayback::stopWhileTheHandshakeIsMissing()
{
    Stage stage;
    const Operator &hand = stage.hand();
    const QTimer *timer = stepTimer(stage.window());
    playUnanswered(stage);
    const QString sent = hand.log("TX").last();
    QVERIFY(stage.hear("QXUSB NEED HELLO"));
    QVERIFY(!stage.window().isUsbTransmissionReady());
    hand.type(hand.reserved(), u"01 02"_s);
    hand.click(hand.stop());
    QCOMPARE(hand.state(), stopped());
    QVERIFY(!timer->isActive());
    const QStringList before = hand.log("TX");
    QVERIFY(stage.hear("QXUSB OK"));
    QCOMPARE(hand.log("TX").size(), before.size() + 1);
    QCOMPARE(hand.log("TX").last(), sent);
    QCOMPARE(hand.log("SYS").last(),
             u"Stopped; resending Frame=0 and RGBW=0 at the Time interval"_s);
    hand.type(hand.reserved(), u"00 00 00 00 00 00"_s);
    QVERIFY(stage.hear("QXUSB RX OK"));
    QTRY_COMPARE(hand.log("TX").last(), u"HY: 0  Frame: 0  R: 0  G: 0  B: 0  W: 0"_s);
}

// Nothing waits for the handshake: the player is sent darkness all the same.
void TestPlayback::handshakeAfterAnIdleStop()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QVERIFY(stage.connectPlayer());
    hand.click(hand.handshakeAgain());
    hand.click(hand.stop());
    QTRY_VERIFY(stage.window().isUsbTransmissionReady());
    QVERIFY(stepTimer(stage.window())->isActive());
    QTRY_VERIFY(stage.player().frames().size() >= 2);
    for (const qx::SimulatedFrame &frame : stage.player().frames())
        QCOMPARE(qx::Protocol::frameSummary(frame.bytes),
                 u"HY: 0  Frame: 0  R: 0  G: 0  B: 0  W: 0"_s);
    QCOMPARE(hand.log("SYS").last(),
             u"Stopped; resending Frame=0 and RGBW=0 at the Time interval"_s);
}

// Between a reply and the frame that waited for it nothing is in flight, but that frame holds its
// place: no step slips in before it.
void TestPlayback::stepBetweenReplyAndTheFrameThatWaited()
{
    Stage stage;
    const Operator &hand = stage.hand();
    playUnanswered(stage);
    hand.type(hand.red(), 77);
    hand.click(hand.sendFrame()); // waits behind the first one
    hand.type(hand.red(), 78);
    const auto sent = hand.log("TX").size();
    stage.window().processReceivedLine("QXUSB RX OK");
    stage.window().playbackTick(); // due in the same moment
    QCOMPARE(hand.log("TX").size(), sent);
    QTRY_COMPARE(hand.log("TX").size(), sent + 1);
    QCOMPARE(hand.log("TX").last(), u"HY: 0  Frame: 0  R: 77  G: 20  B: 30  W: 40"_s);
    QCOMPARE(hand.log("QUEUE").size(), 1);
    stage.window().processReceivedLine("QXUSB RX OK");
    stage.window().playbackTick(); // nothing waits any more
    QCOMPARE(hand.log("TX").size(), sent + 2);
    QCOMPARE(hand.log("TX").last(), u"HY: 0  Frame: 1  R: 78  G: 20  B: 30  W: 40"_s);
}

void TestPlayback::lostLineStopsQuietly()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QTimer *timer = stepTimer(stage.window());
    playTo(stage, 1000, 2);
    stage.unplug();
    QTRY_COMPARE(hand.state(), stopped());
    QCOMPARE(hand.frame()->value(), 0);
    QCOMPARE(editorLevels(hand), litLevels);
    QVERIFY(!timer->isActive());
    QCOMPARE(hand.logCount(stoppedLine()), 0);

    stage.plugIn();
    stage.player().forget();
    QVERIFY(stage.connectPlayer());
    QVERIFY(!timer->isActive());
    QCOMPARE(stage.player().frames().size(), 0);
}

void TestPlayback::leavingDemoStopsQuietly()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QTimer *timer = stepTimer(stage.window());
    light(hand);
    hand.click(hand.play());
    QTRY_VERIFY(hand.frame()->value() >= 1);
    hand.setDemo(false);
    QCOMPARE(hand.state(), stopped());
    QCOMPARE(hand.frame()->value(), 0);
    QCOMPARE(editorLevels(hand), litLevels);
    QVERIFY(!timer->isActive());
    QCOMPARE(hand.logCount(stoppedLine()), 0);
}

QTEST_MAIN(TestPlayback)

#include "tst_playback.moc"
