// SPDX-License-Identifier: MIT
// An evening at the player, from the first start to a pulled cable: real window, real mouse and
// keyboard events, the player in a process of its own. Each stop leaves a picture, numbered, in
// one folder a language.
//
// TESSALY_TOUR_DIRECTORY puts the pictures elsewhere, with a list of their captions;
// TESSALY_TOUR_PAUSE_MS lets a spectator follow.
#include "tests/endtoend/playerprocess.h"
#include "tests/support/stage.h"
#include "widgets/paintthrottle.h"

#include <QDir>
#include <QFile>
#include <QFontInfo>
#include <QIcon>
#include <QMainWindow>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

using namespace qx;
using namespace qx::test;

class TestJourney : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void anEveningAtThePlayer_data();
    void anEveningAtThePlayer();

private:
    void startUp();
    void playOffline();
    void connectAndShakeHands();
    void playOnTheDevice();
    void pauseAndSeek();
    void changeTheInterval();
    void replayAShortFile();
    void changeTheFile();
    void stopDark();
    void sendByHand();
    void switchLanguageInMidPlay();
    void pullTheCable();
    void plugInAgain();

    void picture(const char *name, const char *english, const char *chinese);
    QString own(UiText text) const { return Language::text(text); }

    QString language;
    QTemporaryDir directory{QDir::tempPath() + QStringLiteral("/dev-XXXXXX")};
    std::unique_ptr<PlayerProcess> device;
    std::unique_ptr<MainWindow> window;
    std::unique_ptr<Operator> hand;
    int pictures = 0;
};

void TestJourney::initTestCase()
{
    takeIdentity();
    const QFont font = takeFont();
    QFont::insertSubstitutions(font.family(),
                               {QFontInfo(font).family(), QStringLiteral("Noto Sans CJK SC")});
}

void TestJourney::anEveningAtThePlayer_data()
{
    QTest::addColumn<QString>("code");
    QTest::newRow("in English") << QStringLiteral("en");
    QTest::newRow("in Chinese") << QStringLiteral("zh_CN");
}

void TestJourney::anEveningAtThePlayer()
{
    QFETCH(QString, code);
    language = code;
    pictures = 0;
    freshSettings(code);
    const QString port = directory.filePath(QStringLiteral("ttyACM0"));
    qputenv("TESSALY_SERIAL_PORTS", port.toUtf8());
    device = std::make_unique<PlayerProcess>(port);
    QVERIFY(device->plugIn());

    const std::pair<const char *, void (TestJourney::*)()> stops[] = {
        {"start", &TestJourney::startUp},
        {"offline", &TestJourney::playOffline},
        {"handshake", &TestJourney::connectAndShakeHands},
        {"play", &TestJourney::playOnTheDevice},
        {"pause and seek", &TestJourney::pauseAndSeek},
        {"interval", &TestJourney::changeTheInterval},
        {"replay", &TestJourney::replayAShortFile},
        {"file", &TestJourney::changeTheFile},
        {"stop", &TestJourney::stopDark},
        {"manual frame", &TestJourney::sendByHand},
        {"language", &TestJourney::switchLanguageInMidPlay},
        {"pulled cable", &TestJourney::pullTheCable},
        {"plugged in again", &TestJourney::plugInAgain},
    };
    for (const auto &[name, stop] : stops) {
        (this->*stop)();
        if (QTest::currentTestFailed()) {
            qWarning("The journey ended at: %s", name);
            break;
        }
    }
    hand.reset();
    window.reset();
    device.reset();
}

void TestJourney::startUp()
{
    window = std::make_unique<MainWindow>();
    hand = std::make_unique<Operator>(*window);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    QCOMPARE(window->size(), QSize(1420, 900));
    QVERIFY(hand->demo()->isChecked());
    QCOMPARE(hand->row(1)->text(), QStringLiteral("DEMO"));
    QCOMPARE(hand->lastLog(), QStringLiteral("SYS   ") + own(UiText::DemoModeDescription));
    picture("window", "The program starts in offline demo mode: no player is needed.",
            "程序启动后处于离线演示模式，无需连接播放器。");
}

void TestJourney::playOffline()
{
    hand->typeLevels(200, 100, 50, 25);
    hand->click(hand->play());
    QTRY_VERIFY(hand->frame()->value() >= 3);
    QVERIFY(hand->log("RX").contains(QStringLiteral("QXUSB RX OK  (DEMO)")));
    picture("demo", "Played offline: real frames, written to nobody.",
            "离线播放：生成真实的帧，但不写入串口。");
    hand->click(hand->stop());
    QVERIFY(device->frames().isEmpty());
}

void TestJourney::connectAndShakeHands()
{
    hand->setDemo(false);
    hand->choosePort(directory.filePath(QStringLiteral("ttyACM0")));
    hand->click(hand->connectButton());
    QTRY_COMPARE(hand->row(1)->text(), QStringLiteral("QXUSB OK"));
    QVERIFY(hand->lampIsLit());
    QTRY_COMPARE(device->hellos(), 1);
    picture("handshake", "Connected: the handshake is complete and the lamp is blue.",
            "已连接：握手完成，指示灯变蓝。");
}

void TestJourney::playOnTheDevice()
{
    device->forget();
    hand->click(hand->play());
    QTRY_VERIFY(device->frames().size() >= 20);
    for (int i = 0; i < 20; ++i)
        QCOMPARE(device->frames().at(i), (PrintedFrame{i, 0, 200, 100, 50, 25}));
    QCOMPARE(hand->state(), own(UiText::StatePlaying));
    picture("playing", "Play: the frames go out one by one, each acknowledged by the player.",
            "播放：逐帧发送，每一帧都由播放器确认。");
}

void TestJourney::pauseAndSeek()
{
    hand->click(hand->pause());
    const int held = hand->frame()->value();
    QTRY_COMPARE(device->frames().last().number, held);
    device->forget();
    QTRY_VERIFY(device->frames().size() >= 3);
    QCOMPARE(device->frames().last().number, held);
    hand->dragTo(hand->seekSlider(), 900);
    const int sought = hand->frame()->value();
    const int handleWidth = 1800 * 26 / 480; // frames that the handle covers
    QVERIFY2(std::abs(sought - 900) < handleWidth / 2, qPrintable(QString::number(sought)));
    QTRY_COMPARE(device->frames().last().number, sought);
    picture("paused", "Pause holds a frame; the slider moves to any other.",
            "暂停时保持当前帧，拖动滑块可定位到任意帧。");
    hand->click(hand->play());
    QTRY_VERIFY(device->frames().last().number > sought + 2);
}

void TestJourney::changeTheInterval()
{
    hand->dragTo(hand->timeSlider(), 30);
    QTRY_COMPARE(hand->panel()->intervalMs(), 30);
    device->forget();
    QTRY_VERIFY(device->frames().size() >= 10);
    const QList<PrintedFrame> frames = device->frames();
    for (int i = 1; i < frames.size(); ++i)
        QCOMPARE(frames.at(i).number, frames.at(i - 1).number + 1);
    picture("interval", "The Time slider sets the interval, from 30 to 150 ms.",
            "“间隔”滑块设定发送间隔，范围为 30 至 150 ms。");
}

void TestJourney::replayAShortFile()
{
    hand->click(hand->stop());
    hand->type(hand->total(), 4);
    hand->click(hand->replay());
    QVERIFY(hand->panel()->repeatEnabled());
    QTRY_COMPARE(device->frames().last().red, 0); // what follows is of the next pass
    device->forget();
    hand->click(hand->play());
    QTRY_VERIFY(device->frames().size() >= 13);
    QList<int> lit;
    for (const PrintedFrame &frame : device->frames()) {
        if (frame.red == 200)
            lit.append(frame.number);
    }
    for (int i = 0; i < lit.size(); ++i)
        QCOMPARE(lit.at(i), i % 5);
    picture("replay", "Replay starts over after the last frame.", "循环：最后一帧之后从头开始。");
    hand->click(hand->replay());
    QTRY_COMPARE(hand->state(), own(UiText::StateStopped));
    hand->type(hand->total(), 2500);
}

void TestJourney::changeTheFile()
{
    hand->click(hand->increase());
    QTRY_COMPARE(device->frames().last().hy, 1);
    hand->click(hand->decrease());
    QTRY_COMPARE(device->frames().last().hy, 0);
}

void TestJourney::stopDark()
{
    hand->click(hand->play());
    QTRY_COMPARE(device->frames().last().red, 200);
    hand->click(hand->stopZero());
    const PrintedFrame dark{};
    QTRY_COMPARE(device->frames().last(), dark);
    device->forget();
    QTRY_VERIFY(device->frames().size() >= 3);
    QCOMPARE(device->frames().last(), dark);
    QCOMPARE(hand->row(5)->text(), QStringLiteral("0 / 0 / 0 / 0"));
    picture("stopped", "Stop sends frame 0 with all channels off; the levels are remembered.",
            "停止：循环发送第 0 帧且所有通道为 0，原来的亮度会被记住。");
}

void TestJourney::sendByHand()
{
    hand->type(hand->manual(), QStringLiteral("FF FF 17 12 34 17 03 12 34 0A 14 1E 28 01 02 03 04 "
                                              "05 06 2C"));
    QTest::keyClick(hand->manual(), Qt::Key_Return);
    const PrintedFrame typed{0x1234, 3, 10, 20, 30, 40};
    QTRY_VERIFY(device->frames().contains(typed));
    picture("manual", "A frame typed by hand goes out as it is.", "手动输入的帧按原样发送。");
}

void TestJourney::switchLanguageInMidPlay()
{
    hand->click(hand->play());
    const UiLanguage before = Language::current();
    const bool english = before == UiLanguage::English;
    device->forget();
    hand->chooseLanguage(english ? UiLanguage::Chinese : UiLanguage::English);
    QTRY_VERIFY(device->frames().size() >= 5);
    QCOMPARE(hand->state(), own(UiText::StatePlaying));
    picture("language", "The language changes in mid-play; the frames go on.",
            "播放中切换语言，发送不会中断。");
    hand->chooseLanguage(before);
    const QList<PrintedFrame> frames = device->frames();
    QList<int> numbers;
    for (const PrintedFrame &frame : frames) {
        if (frame.red == 200)
            numbers.append(frame.number);
    }
    QVERIFY(numbers.size() >= 3);
    for (int i = 1; i < numbers.size(); ++i)
        QCOMPARE(numbers.at(i), numbers.at(i - 1) + 1);
}

void TestJourney::pullTheCable()
{
    const int errorsBefore = static_cast<int>(hand->log("ERR").size());
    device->pullCable();
    QTRY_COMPARE(hand->row(1)->text(), own(UiText::Disconnected));
    QCOMPARE(hand->log("ERR").size(), errorsBefore + 1);
    QCOMPARE(hand->state(), own(UiText::StateStopped));
    QVERIFY(!hand->lampIsLit());
    picture("unplugged", "A pulled cable: one clear message, and the port is closed.",
            "拔掉数据线：一条明确的提示，串口随即关闭。");
}

void TestJourney::plugInAgain()
{
    QVERIFY(device->plugIn());
    hand->choosePort(directory.filePath(QStringLiteral("ttyACM0")));
    hand->click(hand->connectButton());
    QTRY_COMPARE(hand->row(1)->text(), QStringLiteral("QXUSB OK"));
    hand->click(hand->play());
    QTRY_VERIFY(device->frames().size() >= 5);
    for (int i = 0; i < 5; ++i)
        QCOMPARE(device->frames().at(i), (PrintedFrame{i, 0, 200, 100, 50, 25}));
    picture("again", "Plugged in again: connect, and the show goes on.",
            "重新插上：再次连接，继续播放。");
    hand->click(hand->stop());
}

void TestJourney::picture(const char *name, const char *english, const char *chinese)
{
    QTest::qWait(qEnvironmentVariableIntValue("TESSALY_TOUR_PAUSE_MS"));
    const QString base =
        qEnvironmentVariable("TESSALY_TOUR_DIRECTORY", QStringLiteral(PICTURE_DIRECTORY));
    const QDir folder(base + u'/' + language);
    QVERIFY(folder.mkpath(QStringLiteral(".")));
    const QString fileName = QStringLiteral("%1-%2.png")
                                 .arg(++pictures, 2, 10, QLatin1Char('0'))
                                 .arg(QLatin1String(name));
    QSignalSpy painted(window->findChild<PaintThrottle *>(), &PaintThrottle::aboutToPaint);
    window->update();
    QVERIFY(painted.wait()); // what came since is laid out before a painting, not before a grab
    QVERIFY(window->grab().save(folder.filePath(fileName)));
    QFile captions(folder.filePath(QStringLiteral("captions.txt")));
    QVERIFY(captions.open(pictures == 1 ? QIODevice::WriteOnly : QIODevice::Append));
    QTextStream(&captions) << fileName << '\t'
                           << QString::fromUtf8(language == QLatin1String("en") ? english : chinese)
                           << '\n';
}

QTEST_MAIN(TestJourney)
#include "tst_journey.moc"
