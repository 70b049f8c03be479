// SPDX-License-Identifier: MIT
#include "serial/serialcontroller.h"
#include "tests/support/stagetest.h"

#include <QFile>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

#include <cerrno>
#include <chrono>
#include <cstring>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace qx::test;
using qx::Language;
using qx::SimulatorBehaviour;
using qx::UiLanguage;

namespace {

using Act = void (*)(Stage &);

const QString grey = u"background:#747a7e;border-radius:6px;"_s;
const QString blue = u"background:#1479e8;border-radius:6px;"_s;

// What shows the link: lamp, channel text, handshake row, panel.
QStringList displays(Stage &stage)
{
    const Operator &hand = stage.hand();
    return {hand.lamp()->styleSheet(), hand.linkText()->text(), hand.row(1)->text(),
            hand.panelConnection()->text()};
}

QStringList disconnected()
{
    const QString text = either(u"Disconnected"_s, u"未连接"_s);
    return {grey, text, text, either(u"Not handshaken"_s, u"未握手"_s)};
}

QStringList handshaking(int attempt)
{
    return {grey, either(u"Handshaking (%1)"_s, u"握手中（%1）"_s).arg(attempt),
            either(u"Handshaking"_s, u"握手中"_s), either(u"Not handshaken"_s, u"未握手"_s)};
}

QStringList linked(Stage &stage)
{
    return {blue, either(u"Handshake complete"_s, u"握手完成"_s), u"QXUSB OK"_s, stage.portPath()};
}

QStringList demo()
{
    return {blue, either(u"Offline demo"_s, u"离线演示"_s), u"DEMO"_s, u"DEMO"_s};
}

QString opened(Stage &stage)
{
    return either(u"Opened %1; host settings 115200 / 8N1"_s, u"已打开 %1，主机参数 115200 / 8N1"_s)
        .arg(stage.portPath());
}

QString disconnectedFrom(Stage &stage)
{
    return either(u"Disconnected from %1"_s, u"已断开 %1"_s).arg(stage.portPath());
}

QString lineLost()
{
    return either(u"macOS serial port failed: %1"_s, u"macOS串口失败：%1"_s)
        .arg(QString::fromLocal8Bit(std::strerror(EIO)));
}

QString connectText()
{
    return either(u"Connect && Handshake"_s, u"连接并握手"_s);
}

QString disconnectText()
{
    return either(u"Disconnect"_s, u"断开"_s);
}

QString demoOn()
{
    return either(u"SYS   Offline demo: generate real 20-byte frames without writing to the "
                  "serial port"_s,
                  u"SYS   离线演示：生成真实20字节帧，但不写入串口"_s);
}

QString demoOff()
{
    return either(u"SYS   Offline demo mode disabled"_s, u"SYS   已退出离线演示模式"_s);
}

QString frameText(int hy)
{
    return u"HY: %1  Frame: 0  R: 0  G: 0  B: 0  W: 0"_s.arg(hy);
}

SimulatorBehaviour answeringNoHello()
{
    SimulatorBehaviour behaviour;
    behaviour.answerHelloNumber = 0;
    return behaviour;
}

SimulatorBehaviour answeringNoFrame()
{
    SimulatorBehaviour behaviour;
    behaviour.dropEvery = 1;
    return behaviour;
}

void beHandshaking(Stage &stage)
{
    stage.player().setBehaviour(answeringNoHello());
    QVERIFY(stage.connectPort());
}

void beLinked(Stage &stage)
{
    QVERIFY(stage.connectPlayer());
}

void haveFrames(Stage &stage)
{
    stage.player().setBehaviour(answeringNoFrame());
    QVERIFY(stage.connectPlayer());
    stage.hand().offer(1);
    stage.hand().offer(2);
    QTRY_COMPARE(stage.player().frames().size(), 1);
}

void bePlaying(Stage &stage)
{
    QVERIFY(stage.connectPlayer());
    stage.hand().click(stage.hand().play());
    QTRY_VERIFY(stage.hand().frame()->value() >= 2);
}

void bePaused(Stage &stage)
{
    bePlaying(stage);
    stage.hand().click(stage.hand().pause());
}

void beStopped(Stage &stage)
{
    bePlaying(stage);
    stage.hand().click(stage.hand().stop());
}

// A stage whose status bar is watched: how long its latest message lasted.
struct Wait
{
    explicit Wait(const QString &language)
        : stage(language)
    {
        QObject::connect(stage.window().statusBar(), &QStatusBar::messageChanged,
                         [this](const QString &message) {
                             if (message.isEmpty()) {
                                 gone = true;
                                 return;
                             }
                             gone = false;
                             const auto *bar = stage.window().statusBar();
                             if (const auto *clock = bar->findChild<QTimer *>())
                                 lifetime = clock->intervalAsDuration();
                         });
    }

    Stage stage;
    std::chrono::milliseconds lifetime{};
    bool gone = false;
};

} // namespace

Q_DECLARE_METATYPE(Act)

class LinkTest : public StageTest
{
    Q_OBJECT

private slots:
    void startsInDemo();
    void connectingOpensAndSaysHello();
    void showsTheOpenPortBeforeTheHandshake();
    void repeatsHelloEverySecond();
    void anotherLanguageKeepsTheAttempt();
    void readyBringsAHelloAtOnce();
    void readyWhileLinkedDoesNothing();
    void okCompletes_data();
    void okCompletes();
    void otherLinesAreOnlyLogged_data();
    void otherLinesAreOnlyLogged();
    void aFloodOfTextIsReported();
    void okWhileLinkedRepeatsTheDisplays();
    void theSameMessageLivesItsWholeTimeAgain();
    void needHelloStartsAgain();
    void handshakeAgain();
    void handshakeAgainWithoutALine_data();
    void handshakeAgainWithoutALine();
    void theButtonDisconnects_data();
    void theButtonDisconnects();
    void aNewConnectionStartsFromNothing();
    void losingTheDevice_data();
    void losingTheDevice();
    void losingTheDeviceWhileWritingToIt_data();
    void losingTheDeviceWhileWritingToIt();
    void aPortThatDoesNotOpen_data();
    void aPortThatDoesNotOpen();
    void demoTakesOver_data();
    void demoTakesOver();
    void leavingDemo();
    void messagesLeaveTheStatusBarInTime();
    void quitting_data();
    void quitting();
};

void LinkTest::startsInDemo()
{
    QCOMPARE(displays(*stage), demo());
    QVERIFY(hand().demo()->isChecked());
    QCOMPARE(hand().row(0)->text(), u"USB Serial/JTAG"_s);
    const QString found = either(u"SYS   Found %1 serial port(s)"_s, u"SYS   发现 %1 个串口"_s);
    QCOMPARE(hand().log(), QStringList({found.arg(hand().ports()->count()), demoOn()}));
    QCOMPARE(hand().statusBar(), either(u"V0.3.5: Select a USB Serial/JTAG port"_s,
                                        u"V0.3.5：等待选择 USB Serial/JTAG 端口"_s));
    QCOMPARE(hand().statusLifetimeMs(), 0);
    for (QWidget *control :
         {static_cast<QWidget *>(hand().ports()), static_cast<QWidget *>(hand().hostSettings()),
          static_cast<QWidget *>(hand().connectButton()), static_cast<QWidget *>(hand().refresh())})
        QVERIFY(!control->isEnabled());
}

void LinkTest::connectingOpensAndSaysHello()
{
    player().setBehaviour(answeringNoHello());
    hand().setDemo(false);
    hand().choosePort(stage->portPath());
    clearLog();
    hand().click(hand().connectButton());
    QCOMPARE(hand().log(), QStringList({u"SYS   "_s + opened(*stage), helloLine(1)}));
    QCOMPARE(displays(*stage), handshaking(1));
    QCOMPARE(hand().connectButton()->text(), disconnectText());
    QCOMPARE(hand().statusBar(), opened(*stage));
    QCOMPARE(hand().statusLifetimeMs(), 5000);
    QTRY_VERIFY(player().received().startsWith("QXUSB HELLO\n"));
}

// The state between two calls of one click is seen by whoever else hears of the connection.
void LinkTest::showsTheOpenPortBeforeTheHandshake()
{
    player().setBehaviour(answeringNoHello());
    hand().setDemo(false);
    hand().choosePort(stage->portPath());
    QStringList seen;
    QObject listener;
    connect(stage->window().findChild<qx::SerialController *>(),
            &qx::SerialController::connectionChanged, &listener, [&] { seen = displays(*stage); });
    hand().click(hand().connectButton());
    QCOMPARE(
        seen,
        QStringList(
            {grey, either(u"Serial port open; waiting for handshake"_s, u"串口已打开，等待握手"_s),
             either(u"Disconnected"_s, u"未连接"_s), either(u"Handshaking"_s, u"握手中"_s)}));
}

// Each time the second has passed, and at no other time.
void LinkTest::repeatsHelloEverySecond()
{
    player().setBehaviour(answeringNoHello());
    const auto *second = stage->window().findChild<QTimer *>(u"handshakeTimer"_s);
    QVERIFY(second);
    QList<QStringList> shownAfterASecond;
    QList<qsizetype> saidAfterASecond;
    QObject listener;
    connect(second, &QTimer::timeout, &listener, [&] {
        shownAfterASecond.append(displays(*stage));
        saidAfterASecond.append(hand().log("TX").size());
    });
    QVERIFY(stage->connectPort());
    QCOMPARE(hand().log("TX").size(), 1); // the first one goes out at once
    QVERIFY(second->isActive());
    QVERIFY(!second->isSingleShot());
    QCOMPARE(second->intervalAsDuration(), 1s);
    QTRY_VERIFY(player().helloCount() >= 3);
    QCOMPARE(shownAfterASecond.first(2), QList<QStringList>({handshaking(2), handshaking(3)}));
    QCOMPARE(saidAfterASecond.first(2), QList<qsizetype>({2, 3}));
    for (int attempt : {1, 2, 3})
        QCOMPARE(hand().logCount(helloLine(attempt)), 1);
}

void LinkTest::anotherLanguageKeepsTheAttempt()
{
    beHandshaking(*stage);
    QVERIFY(stage->hear("QXUSB READY"));
    QVERIFY(stage->hear("QXUSB READY"));
    QCOMPARE(displays(*stage), handshaking(3));
    const bool english = Language::current() == UiLanguage::English;
    hand().chooseLanguage(english ? UiLanguage::Chinese : UiLanguage::English);
    QStringList expected = handshaking(3);
    expected[3] = either(u"Handshaking"_s, u"握手中"_s); // the panel follows the link from here on
    QCOMPARE(displays(*stage), expected);
    QCOMPARE(hand().connectButton()->text(), disconnectText());
    QVERIFY(stage->hear("QXUSB READY"));
    QCOMPARE(hand().lastLog(), helloLine(4));
}

void LinkTest::readyBringsAHelloAtOnce()
{
    beHandshaking(*stage);
    QTRY_VERIFY(player().helloCount() >= 1);
    clearLog();
    QVERIFY(stage->hear("QXUSB READY"));
    QCOMPARE(hand().log(), QStringList({u"RX    QXUSB READY"_s, helloLine(2)}));
    QCOMPARE(displays(*stage), handshaking(2));
    QTRY_VERIFY(player().helloCount() >= 2);
}

void LinkTest::readyWhileLinkedDoesNothing()
{
    beLinked(*stage);
    clearLog();
    const QStringList before = displays(*stage);
    QVERIFY(stage->hear("QXUSB READY"));
    QCOMPARE(hand().log(), QStringList({u"RX    QXUSB READY"_s}));
    QCOMPARE(displays(*stage), before);
}

void LinkTest::okCompletes_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("logged");

    QTest::newRow("as it is") << "QXUSB OK\n"_ba << u"QXUSB OK"_s;
    QTest::newRow("with a carriage return") << "QXUSB OK\r\n"_ba << u"QXUSB OK"_s;
    QTest::newRow("small letters between blanks") << "  qxusb ok \r\n"_ba << u"  qxusb ok "_s;
    QTest::newRow("mixed letters behind a tab") << "\tQxUsB Ok\n"_ba << u"\u2409QxUsB Ok"_s;
    QTest::newRow("behind boot text") << "rst:0x1\nQXUSB OK\n"_ba << u"QXUSB OK"_s;
}

void LinkTest::okCompletes()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, logged);
    beHandshaking(*stage);
    player().say(line);
    QTRY_COMPARE(displays(*stage), linked(*stage));
    QCOMPARE(hand().lastLog(), u"RX    "_s + logged);
    QCOMPARE(hand().statusBar(),
             either(u"QXUSB handshake succeeded; playback frames can now be sent"_s,
                    u"QXUSB 握手成功，可以发送播放帧"_s));
    QCOMPARE(hand().statusLifetimeMs(), 4000);
}

void LinkTest::otherLinesAreOnlyLogged_data()
{
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("two blanks inside") << "QXUSB  OK"_ba;
    QTest::newRow("more behind it") << "QXUSB OK 1"_ba;
    QTest::newRow("more before it") << "> QXUSB OK"_ba;
    QTest::newRow("an echo of HELLO") << "QXUSB HELLO"_ba;
    QTest::newRow("half a keyword") << "QXUSB"_ba;
    QTest::newRow("one blank") << " "_ba;
    QTest::newRow("Latin-1") << "\xE9t\xE9 \xB0"_ba;
    QTest::newRow("percent signs") << "50%1 %2 %%"_ba;
    QTest::newRow("markup") << "<b>OK</b> &amp;"_ba;
}

void LinkTest::otherLinesAreOnlyLogged()
{
    QFETCH(QByteArray, line);
    beHandshaking(*stage);
    clearLog();
    const QString message = hand().statusBar();
    QVERIFY(stage->hear(line));
    QCOMPARE(hand().log(), QStringList({u"RX    "_s + QString::fromLatin1(line)}));
    QCOMPARE(displays(*stage), handshaking(1));
    QCOMPARE(hand().statusBar(), message);
}

// An error of the controller that does not end the connection.
void LinkTest::aFloodOfTextIsReported()
{
    beLinked(*stage);
    clearLog();
    const QString message = either(u"ESP text response buffer exceeded 4 KiB and was cleared"_s,
                                   u"ESP文本响应缓存超过4 KiB，已清空"_s);
    player().say(QByteArray(4097, 'x'));
    QTRY_COMPARE(hand().log(), QStringList({u"ERR   "_s + message}));
    QCOMPARE(hand().statusBar(), message);
    QCOMPARE(hand().statusLifetimeMs(), 5000);
    QCOMPARE(displays(*stage), linked(*stage));
    QVERIFY(hand().row(6)->text().startsWith(u"TX 12 B / RX 4106 B"_s));
}

void LinkTest::okWhileLinkedRepeatsTheDisplays()
{
    haveFrames(*stage);
    stage->window().statusBar()->clearMessage();
    clearLog();
    QVERIFY(stage->hear("QXUSB OK"));
    QCOMPARE(displays(*stage), linked(*stage));
    QCOMPARE(hand().statusLifetimeMs(), 4000);
    QCOMPARE(hand().log(), QStringList({u"RX    QXUSB OK"_s})); // the frame in flight stays there
    QVERIFY(stage->hear("QXUSB RX OK"));
    QTRY_COMPARE(hand().logCount(u"TX    "_s + frameText(2)), 1);
}

// A status bar gives a message that it shows already no more time: it has to be shown anew.
void LinkTest::theSameMessageLivesItsWholeTimeAgain()
{
    beLinked(*stage);
    const QString message = hand().statusBar();
    QSignalSpy shown(stage->window().statusBar(), &QStatusBar::messageChanged);
    QVERIFY(stage->hear("QXUSB OK"));
    QCOMPARE(shown, (QList<QVariantList>{{QString()}, {message}}));
    QCOMPARE(hand().statusLifetimeMs(), 4000);
}

void LinkTest::needHelloStartsAgain()
{
    beLinked(*stage);
    player().setBehaviour(answeringNoHello());
    clearLog();
    QVERIFY(stage->hear("QXUSB NEED HELLO"));
    QCOMPARE(hand().log(), QStringList({u"RX    QXUSB NEED HELLO"_s, helloLine(1)}));
    QCOMPARE(displays(*stage), handshaking(1));
    QTRY_COMPARE(hand().logCount(helloLine(2)), 1); // and repeats it
    QVERIFY(stage->hear("QXUSB OK"));
    QCOMPARE(displays(*stage), linked(*stage));
}

void LinkTest::handshakeAgain()
{
    beLinked(*stage);
    player().setBehaviour(answeringNoHello());
    clearLog();
    hand().click(hand().handshakeAgain());
    QCOMPARE(displays(*stage), handshaking(1));
    QVERIFY(stage->hear("QXUSB READY"));
    QCOMPARE(displays(*stage), handshaking(2));
    hand().click(hand().handshakeAgain());
    QCOMPARE(displays(*stage), handshaking(1));
    QCOMPARE(hand().log(),
             QStringList({helloLine(1), u"RX    QXUSB READY"_s, helloLine(2), helloLine(1)}));
    QTRY_VERIFY(player().helloCount() >= 4);
    QVERIFY(stage->hear("QXUSB OK"));
    QCOMPARE(displays(*stage), linked(*stage));
}

void LinkTest::handshakeAgainWithoutALine_data()
{
    QTest::addColumn<bool>("inDemo");
    QTest::newRow("in demo mode") << true;
    QTest::newRow("disconnected") << false;
}

void LinkTest::handshakeAgainWithoutALine()
{
    QFETCH(bool, inDemo);
    hand().setDemo(inDemo);
    clearLog();
    const QStringList before = displays(*stage);
    hand().click(hand().handshakeAgain());
    const QString line =
        inDemo
            ? either(u"SYS   Handshake is not required in demo mode"_s, u"SYS   演示模式无需握手"_s)
            : either(u"ERR   Cannot handshake because the serial port is disconnected"_s,
                     u"ERR   串口未连接，无法握手"_s);
    QCOMPARE(hand().log(), QStringList({line}));
    QCOMPARE(displays(*stage), before);
    QCOMPARE(player().counts().bytesReceived, 0);
}

void LinkTest::theButtonDisconnects_data()
{
    QTest::addColumn<Act>("prepare");
    QTest::newRow("handshaking") << Act(beHandshaking);
    QTest::newRow("linked") << Act(beLinked);
    QTest::newRow("a frame in flight, one waiting") << Act(haveFrames);
    QTest::newRow("playing") << Act(bePlaying);
    QTest::newRow("paused") << Act(bePaused);
    QTest::newRow("stopped and resending") << Act(beStopped);
}

void LinkTest::theButtonDisconnects()
{
    QFETCH(Act, prepare);
    hand().type(hand().red(), 10);
    prepare(*stage);
    const int red = hand().red()->value();
    clearLog();
    hand().click(hand().connectButton());
    QCOMPARE(hand().log(), QStringList({u"SYS   "_s + disconnectedFrom(*stage)}));
    QCOMPARE(displays(*stage), disconnected());
    QCOMPARE(hand().connectButton()->text(), connectText());
    QCOMPARE(hand().statusBar(), disconnectedFrom(*stage));
    QCOMPARE(hand().statusLifetimeMs(), 5000);
    QCOMPARE(hand().state(), either(u"Stopped"_s, u"已停止"_s));
    QCOMPARE(hand().frame()->value(), 0);
    QCOMPARE(hand().red()->value(), red);
}

// Nothing of the last connection reaches the next: no frame, no attempt, no timer.
void LinkTest::aNewConnectionStartsFromNothing()
{
    haveFrames(*stage);
    player().setBehaviour(answeringNoHello());
    QVERIFY(stage->hear("QXUSB NEED HELLO")); // the frame waits for the handshake now
    QTRY_VERIFY(player().helloCount() >= 2);
    hand().click(hand().connectButton());
    player().forget();
    QVERIFY(stage->connectPort());
    QCOMPARE(displays(*stage), handshaking(1));
    QTRY_VERIFY(player().helloCount() >= 1);
    QVERIFY(stage->hear("QXUSB OK"));
    hand().offer(9);
    QTRY_COMPARE(player().counts().framesArrived, 1);
    QCOMPARE(player().received().right(20).at(6), 9);
    QCOMPARE(hand().log("RETRY").size(), 0);
}

void LinkTest::losingTheDevice_data()
{
    theButtonDisconnects_data();
}

void LinkTest::losingTheDevice()
{
    QFETCH(Act, prepare);
    prepare(*stage);
    clearLog();
    stage->unplug();
    QTRY_COMPARE(displays(*stage), disconnected());
    QCOMPARE(hand().log("ERR"), QStringList({lineLost()}));
    QCOMPARE(hand().log("SYS"), QStringList({lineLost()}));
    QCOMPARE(hand().lastLog(), u"SYS   "_s + lineLost());
    QCOMPARE(hand().statusBar(), lineLost());
    QCOMPARE(hand().statusLifetimeMs(), 5000);
    QCOMPARE(hand().connectButton()->text(), connectText());
    QCOMPARE(hand().state(), either(u"Stopped"_s, u"已停止"_s));
    QCOMPARE(hand().frame()->value(), 0);

    stage->plugIn();
    player().setBehaviour({});
    QVERIFY(stage->connectPlayer());
    QCOMPARE(displays(*stage), linked(*stage));
}

void LinkTest::losingTheDeviceWhileWritingToIt_data()
{
    QTest::addColumn<Act>("prepare");
    QTest::addColumn<Act>("write");
    const Act handshake = [](Stage &s) { s.hand().click(s.hand().handshakeAgain()); };
    const Act frame = [](Stage &s) { s.hand().offer(5); };
    QTest::newRow("HELLO") << Act(beLinked) << handshake;
    QTest::newRow("HELLO again") << Act(beHandshaking) << handshake;
    QTest::newRow("a frame") << Act(beLinked) << frame;
    QTest::newRow("a frame that is kept for the handshake") << Act(beHandshaking) << frame;
    QTest::newRow("the button") << Act(beLinked)
                                << Act([](Stage &s) { s.hand().click(s.hand().connectButton()); });
}

// The write finds the loss before the window could hear of it.
void LinkTest::losingTheDeviceWhileWritingToIt()
{
    QFETCH(Act, prepare);
    QFETCH(Act, write);
    prepare(*stage);
    stage->unplug();
    write(*stage);
    QCOMPARE(displays(*stage), disconnected());
    QCOMPARE(hand().connectButton()->text(), connectText());
    stage->plugIn();
    player().forget();
    player().setBehaviour({});
    QVERIFY(stage->connectPlayer());
    QCOMPARE(displays(*stage), linked(*stage));
    QCOMPARE(player().counts().framesArrived, 0); // the lost frame is not sent to the next player
}

void LinkTest::aPortThatDoesNotOpen_data()
{
    QTest::addColumn<Act>("spoil");
    QTest::newRow("vanished since the list was made") << Act([](Stage &s) { s.unplug(); });
    QTest::newRow("not a serial line") << Act([](Stage &s) {
        s.unplug();
        QFile file(s.portPath());
        QVERIFY(file.open(QIODevice::WriteOnly));
    });
}

void LinkTest::aPortThatDoesNotOpen()
{
    QFETCH(Act, spoil);
    hand().setDemo(false);
    hand().choosePort(stage->portPath());
    spoil(*stage);
    clearLog();
    hand().click(hand().connectButton());
    const QString beginning = either(u"Failed to open serial port %1: "_s, u"打开串口 %1 失败："_s)
                                  .arg(stage->portPath());
    const QString message = hand().log("SYS").value(0);
    QVERIFY2(message.startsWith(beginning), qPrintable(message));
    QCOMPARE(hand().log("SYS").size(), 1);
    QCOMPARE(hand().log("ERR").last(), message);
    QCOMPARE(hand().log("TX").size(), 0);
    QCOMPARE(hand().statusBar(), message);
    QCOMPARE(hand().statusLifetimeMs(), 5000);
    QCOMPARE(displays(*stage), disconnected());
    QCOMPARE(hand().connectButton()->text(), connectText());
    QFile::remove(stage->portPath());
}

void LinkTest::demoTakesOver_data()
{
    theButtonDisconnects_data();
}

void LinkTest::demoTakesOver()
{
    QFETCH(Act, prepare);
    prepare(*stage);
    clearLog();
    const QStringList before = displays(*stage);
    QStringList whenDisconnected;
    QObject listener;
    connect(stage->window().findChild<qx::SerialController *>(),
            &qx::SerialController::connectionChanged, &listener,
            [&] { whenDisconnected = displays(*stage); });
    hand().setDemo(true);
    QCOMPARE(whenDisconnected, before); // no "Disconnected" flashes up
    QCOMPARE(hand().log(), QStringList({u"SYS   "_s + disconnectedFrom(*stage), demoOn()}));
    QCOMPARE(displays(*stage), demo());
    QCOMPARE(hand().connectButton()->text(), connectText());
    QVERIFY(!hand().connectButton()->isEnabled());
    QVERIFY(!hand().ports()->isEnabled());
    QVERIFY(!hand().hostSettings()->isEnabled());
    QVERIFY(!hand().refresh()->isEnabled());
    QCOMPARE(hand().state(), either(u"Stopped"_s, u"已停止"_s));

    clearLog(); // nothing is left of the frames
    const qint64 received = player().counts().bytesReceived;
    hand().offer(7);
    QCOMPARE(hand().log(),
             QStringList({u"TX    "_s + frameText(7), u"RX    QXUSB RX OK  (DEMO)"_s}));
    stage->player().unplug(); // by now the device has read whatever there was
    QCOMPARE(player().counts().bytesReceived, received);
}

void LinkTest::leavingDemo()
{
    hand().click(hand().play());
    QTRY_VERIFY(hand().frame()->value() >= 2);
    clearLog();
    hand().setDemo(false);
    QCOMPARE(hand().log(), QStringList({demoOff()}));
    QCOMPARE(displays(*stage), disconnected());
    QCOMPARE(hand().state(), either(u"Stopped"_s, u"已停止"_s));
    QCOMPARE(hand().row(2)->text(), either(u"Stopped"_s, u"已停止"_s));
    QCOMPARE(hand().frame()->value(), 0);
    QVERIFY(hand().connectButton()->isEnabled());
    QVERIFY(hand().ports()->isEnabled());
    QVERIFY(hand().hostSettings()->isEnabled());
    QVERIFY(hand().refresh()->isEnabled());
    QCOMPARE(hand().connectButton()->text(), connectText()); // the port is not opened again
}

// One window for each lifetime, all waiting at the same time. What a busy machine makes of it is
// not asked: the status bar's own timer tells.
void LinkTest::messagesLeaveTheStatusBarInTime()
{
    QFETCH_GLOBAL(QString, language);
    if (language != u"en")
        return; // the lifetimes do not depend on the language
    Wait outcome(language);
    QVERIFY(outcome.stage.connectPlayer());
    outcome.stage.hand().offer(1);
    Wait handshake(language);
    QVERIFY(handshake.stage.connectPlayer());
    Wait connection(language);
    QVERIFY(connection.stage.connectPlayer());
    connection.stage.hand().click(connection.stage.hand().connectButton());

    QTRY_COMPARE(outcome.lifetime, 4500ms);
    QTRY_COMPARE(handshake.lifetime, 4s);
    QTRY_COMPARE(connection.lifetime, 5s);
    for (Wait *wait : {&outcome, &handshake, &connection}) {
        QTRY_VERIFY_WITH_TIMEOUT(wait->gone, 15000);
        // In these seconds no timer of a handshake that is over said HELLO again.
        QCOMPARE(wait->stage.player().helloCount(), 1);
    }
}

void LinkTest::quitting_data()
{
    QTest::addColumn<Act>("prepare");
    QTest::newRow("in demo mode") << Act([](Stage &) {});
    QTest::newRow("playing in demo mode") << Act([](Stage &s) { s.hand().click(s.hand().play()); });
    QTest::newRow("disconnected") << Act([](Stage &s) { s.hand().setDemo(false); });
    QTest::newRow("handshaking") << Act(beHandshaking);
    QTest::newRow("linked") << Act(beLinked);
    QTest::newRow("a frame in flight, one waiting") << Act(haveFrames);
    QTest::newRow("a frame about to be offered again") << Act([](Stage &s) {
        haveFrames(s);
        s.window().processReceivedLine("QXUSB RX OK");
    });
    QTest::newRow("playing") << Act(bePlaying);
    QTest::newRow("paused") << Act(bePaused);
    QTest::newRow("stopped and resending") << Act(beStopped);
    QTest::newRow("dragging the frame slider") << Act([](Stage &s) {
        bePlaying(s);
        s.hand().grab(s.hand().seekSlider());
    });
    QTest::newRow("unplugged, not noticed yet") << Act([](Stage &s) {
        beLinked(s);
        s.unplug();
    });
    QTest::newRow("unplugged") << Act([](Stage &s) {
        beLinked(s);
        s.unplug();
        QTRY_COMPARE(s.hand().log("ERR").size(), 1);
    });
    QTest::newRow("the device does not read") << Act([](Stage &s) {
        beLinked(s);
        s.player().setPaused(true);
        s.hand().offer(1);
    });
}

// Nothing more is sent, and nothing comes back to a window that is gone.
void LinkTest::quitting()
{
    QFETCH(Act, prepare);
    prepare(*stage);
    const qint64 written = hand().demo()->isChecked() ? 0 : hand().log("TX").size();
    stage->quit();
    player().setPaused(false);
    player().say("QXUSB RX OK\nQXUSB NEED HELLO\n");
    QCoreApplication::processEvents();
    QVERIFY(player().helloCount() + player().counts().framesArrived <= written);
    QCOMPARE(player().unknownBytes() + player().checksumErrors(), 0);
    stage.reset();
}

QTEST_MAIN(LinkTest)
#include "tst_link.moc"
