// SPDX-License-Identifier: MIT
#include "i18n/language.h"
#include "tests/support/grips.h"
#include "tests/support/panelcontrols.h"
#include "tests/widgets/magnified.h"

#include <QApplication>
#include <QTest>
#include <QWheelEvent>

#include <utility>

using qx::Language;
using qx::PlaybackState;
using qx::PlayerPanel;
using qx::TransportButton;
using qx::UiLanguage;
using namespace qx::test;

namespace {

const auto byDefault = Qt::AlignLeft | Qt::AlignVCenter;

QString textOf(const PanelControls &controls, PanelLabel which)
{
    return controls.label(which)->text();
}

QString sheetOf(const PanelControls &controls, PanelLabel which)
{
    return controls.label(which)->styleSheet();
}

// What the panel emits, in order, as text: "seekRequested(7)".
class Emitted
{
public:
    explicit Emitted(PlayerPanel &panel)
    {
        QObject::connect(&panel, &PlayerPanel::playRequested, &panel, [this] { add("play"); });
        QObject::connect(&panel, &PlayerPanel::pauseRequested, &panel, [this] { add("pause"); });
        QObject::connect(&panel, &PlayerPanel::stopRequested, &panel, [this] { add("stop"); });
        QObject::connect(&panel, &PlayerPanel::homeRequested, &panel, [this] { add("home"); });
        QObject::connect(&panel, &PlayerPanel::fileChanged, &panel,
                         [this](int index) { add("file %1", index); });
        QObject::connect(&panel, &PlayerPanel::repeatChanged, &panel,
                         [this](bool on) { add(on ? "repeat on" : "repeat off"); });
        QObject::connect(&panel, &PlayerPanel::intervalChanged, &panel,
                         [this](int ms) { add("interval %1", ms); });
        QObject::connect(&panel, &PlayerPanel::seekStarted, &panel, [this] { add("grab"); });
        QObject::connect(&panel, &PlayerPanel::seekPreviewRequested, &panel,
                         [this](int frame) { add("preview %1", frame); });
        QObject::connect(&panel, &PlayerPanel::seekRequested, &panel,
                         [this](int frame) { add("seek %1", frame); });
    }

    QStringList take() { return std::exchange(signalsSeen, {}); }

private:
    void add(const char *what) { signalsSeen.append(QLatin1String(what)); }
    void add(const char *what, int number)
    {
        signalsSeen.append(QString::fromLatin1(what).arg(number));
    }

    QStringList signalsSeen;
};

} // namespace

class TestPlayerPanel : public QObject
{
    Q_OBJECT

private slots:
    void init() { Language::setCurrent(UiLanguage::English); }

    void panelIsAFixedStyledScreen();
    void panelPaintsItsOwnBackground();
    void childrenStandWhereTheyBelong();
    void labels_data();
    void labels();
    void boxesHaveNamesAndTitles();
    void transportButtonsStandInTheirBox_data();
    void transportButtonsStandInTheirBox();
    void fileButtonsAndSwitch();
    void slidersBeginWhereTheyBelong();
    void thereIsNoHomeButton();
    void initialState();
    void operableControlsHaveNames();

    void transportClicksAreRequests();
    void replaySwitchReportsAndShows();
    void fileButtonsStepThroughTheFiles();
    void fileButtonsStopAtTheLastKnownFile();
    void withUnknownCountTheFilesEndAt9999();

    void dragOfTheSeekHandle();
    void pressAndReleaseOfTheSeekHandle();
    void dragOfTheTimeHandle();
    void keyboardAndGrooveRequestNothingAndTheWheelDoesNothing_data();
    void keyboardAndGrooveRequestNothingAndTheWheelDoesNothing();

    void currentFrameIsClamped_data();
    void currentFrameIsClamped();
    void totalIsClampedAndTakesTheFrameAlong_data();
    void totalIsClampedAndTakesTheFrameAlong();
    void fileIndexIsClamped_data();
    void fileIndexIsClamped();
    void fileCountKeepsTheName();
    void intervalIsClamped_data();
    void intervalIsClamped();
    void connectionShowsTextAndColour_data();
    void connectionShowsTextAndColour();
    void stateShowsTextAndColours_data();
    void stateShowsTextAndColours();
    void repeatIsShown();
    void whiteLevelIsNotShown();
    void settersEmitNothing();
    void settersLeaveBlockedChildrenBlocked();
    void languageChange();
};

void TestPlayerPanel::panelIsAFixedStyledScreen()
{
    const PlayerPanel panel;
    QCOMPARE(panel.objectName(), QStringLiteral("playerMirror"));
    QCOMPARE(panel.sizeHint(), QSize(680, 520));
    QCOMPARE(panel.minimumSize(), QSize(680, 520));
    QCOMPARE(panel.maximumSize(), QSize(680, 520));
    QCOMPARE(
        panel.styleSheet(),
        QStringLiteral(
            "QWidget#playerMirror {  background:#191c1f;  border:1px solid #3b4045;  "
            "border-radius:16px;}QGroupBox#summaryGroup {  color:#1479e8; background:transparent; "
            "border:1px solid #1479e8;  border-radius:8px; margin-top:14px; padding-top:8px;}"
            "QGroupBox#summaryGroup::title {  subcontrol-origin:margin; left:16px; padding:0 "
            "6px;}QGroupBox#transportGroup {  color:#1479e8; background:transparent; border:1px "
            "solid #1479e8;  border-radius:8px; margin-top:14px; padding-top:8px;}"
            "QGroupBox#transportGroup::title {  subcontrol-origin:margin; left:16px; padding:0 "
            "6px;}QLabel { color:#f1f3f5; background:transparent; }QSlider::groove:horizontal {  "
            "height:10px; border-radius:5px; background:#101214;  border:1px solid #3b4045;}"
            "QSlider::sub-page:horizontal {  background:#1479e8; border-radius:5px;}"
            "QSlider::handle:horizontal {  width:22px; margin:-7px 0; border-radius:11px;  "
            "background:#f1f3f5; border:2px solid #1479e8;}QSlider::handle:horizontal:hover { "
            "background:#ffffff; border-color:#2994ff; }"));
}

void TestPlayerPanel::panelPaintsItsOwnBackground()
{
    PlayerPanel panel;
    const Magnified picture(panel);
    QVERIFY(picture.shows({600, 460}, QColor(0x191c1f)));
    QVERIFY(picture.shows({340, 0.5}, QColor(0x3b4045))); // the border
    QCOMPARE(picture.at({1.5, 1.5}).alpha(), 0);          // outside the round corner
}

void TestPlayerPanel::childrenStandWhereTheyBelong()
{
    const PlayerPanel panel;
    const PanelControls controls(panel);
    const auto label = [&controls](PanelLabel which) { return controls.label(which); };
    const QList<std::pair<const QWidget *, QRect>> places = {
        {controls.summaryBox, {9, 5, 652, 100}},
        {label(PanelLabel::FileTotal), {22, 28, 190, 26}},
        {label(PanelLabel::FrameTotal), {214, 28, 150, 26}},
        {label(PanelLabel::Time), {22, 60, 280, 28}},
        {label(PanelLabel::StateBadge), {370, 26, 92, 30}},
        {label(PanelLabel::Connection), {472, 26, 178, 30}},
        {controls.transportBox, {18, 128, 362, 186}},
        {controls.replay, {304, 62, 74, 34}},
        {label(PanelLabel::Replay), {230, 64, 70, 30}},
        {label(PanelLabel::ReplayState), {386, 64, 48, 30}},
        {controls.increase, {520, 117, 78, 68}},
        {label(PanelLabel::FileName), {504, 189, 128, 42}},
        {label(PanelLabel::FileCaption), {520, 229, 96, 28}},
        {controls.decrease, {520, 261, 78, 68}},
        {controls.seekSlider, {38, 356, 480, 42}},
        {label(PanelLabel::Position), {224, 331, 160, 30}},
        {label(PanelLabel::TimeCaption), {24, 419, 62, 34}},
        {controls.timeSlider, {86, 414, 395, 42}},
        {label(PanelLabel::ModelLine), {24, 480, 350, 22}},
    };
    QCOMPARE(panel.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly).size(),
             places.size());
    for (const auto &[child, rect] : places) {
        QVERIFY(child);
        QCOMPARE(child->parentWidget(), &panel);
        QCOMPARE(child->geometry(), rect);
    }
}

void TestPlayerPanel::labels_data()
{
    QTest::addColumn<PanelLabel>("which");
    QTest::addColumn<int>("pointSize");
    QTest::addColumn<bool>("bold");
    QTest::addColumn<Qt::Alignment>("alignment");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("chinese");
    QTest::addColumn<QString>("sheet");
    const auto row = [](const char *name, PanelLabel which, int pointSize, bool bold,
                        Qt::Alignment alignment, const char *english, const char *chinese,
                        const char *sheet = "") {
        QTest::newRow(name) << which << pointSize << bold << alignment << QString::fromUtf8(english)
                            << QString::fromUtf8(chinese) << QString::fromUtf8(sheet);
    };
    const auto right = Qt::AlignRight | Qt::AlignVCenter;
    row("file total", PanelLabel::FileTotal, 12, true, byDefault, "File Total: 0", "文件总数：0");
    row("frame total", PanelLabel::FrameTotal, 12, true, byDefault, "Total: 0", "总帧数：0");
    row("time", PanelLabel::Time, 11, false, byDefault, "Time: 50 ms   20.00 fps",
        "间隔：50 ms   20.00 fps");
    row("state badge", PanelLabel::StateBadge, 10, true, Qt::AlignCenter, "Stopped", "已停止",
        "background:#2a2e32;color:#f1f3f5;border:1px solid #3b4045;border-radius:14px;");
    row("connection", PanelLabel::Connection, 10, false, right, "Not connected", "未连接",
        "color:#a8adb0;");
    row("replay", PanelLabel::Replay, 10, true, right, "Replay", "循环");
    row("replay state", PanelLabel::ReplayState, 10, true, byDefault, "OFF", "OFF",
        "color:#747a7e;");
    row("file name", PanelLabel::FileName, 17, true, Qt::AlignCenter, "0.bin", "0.bin");
    row("file caption", PanelLabel::FileCaption, 10, true, Qt::AlignCenter, "FILE", "文件");
    row("position", PanelLabel::Position, 10, true, Qt::AlignCenter, "0 / 0", "0 / 0");
    row("time caption", PanelLabel::TimeCaption, 10, true, Qt::AlignCenter, "Time", "间隔");
    row("model line", PanelLabel::ModelLine, 8, false, byDefault, "Tessaly-Master",
        "Tessaly-Master", "color:#747a7e;");
}

void TestPlayerPanel::labels()
{
    QFETCH(const PanelLabel, which);
    QFETCH(const bool, bold);
    PlayerPanel panel;
    const PanelControls controls(panel);
    const QLabel *label = controls.label(which);
    QVERIFY(label);
    QTEST(label->font().pointSize(), "pointSize");
    QCOMPARE(label->font().weight(), bold ? QFont::Bold : QFont::Normal);
    QTEST(label->alignment(), "alignment");
    QTEST(label->text(), "english");
    QTEST(label->styleSheet(), "sheet");
    Language::setCurrent(UiLanguage::Chinese);
    panel.retranslateUi();
    QTEST(label->text(), "chinese");
    const PlayerPanel another;
    QTEST(textOf(PanelControls(another), which), "chinese");
}

void TestPlayerPanel::boxesHaveNamesAndTitles()
{
    PlayerPanel panel;
    const PanelControls controls(panel);
    const auto *summary = controls.summaryBox;
    const auto *transport = controls.transportBox;
    QCOMPARE(summary->objectName(), QStringLiteral("summaryGroup"));
    QCOMPARE(summary->title(), QStringLiteral("Information"));
    QCOMPARE(transport->objectName(), QStringLiteral("transportGroup"));
    QCOMPARE(transport->title(), QStringLiteral("Playback Controls"));

    // Created first, so that nothing that stands in them is covered.
    const auto children = panel.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(children.at(0), summary);
    QCOMPARE(children.at(1), transport);
}

void TestPlayerPanel::transportButtonsStandInTheirBox_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<QString>("kind");
    QTest::newRow("stop") << QStringLiteral("transportStopButton") << QRect(18, 48, 88, 76)
                          << QStringLiteral("Stop");
    QTest::newRow("pause") << QStringLiteral("transportPauseButton") << QRect(124, 48, 88, 76)
                           << QStringLiteral("Pause");
    QTest::newRow("play") << QStringLiteral("transportPlayButton") << QRect(230, 48, 88, 76)
                          << QStringLiteral("Play");
}

void TestPlayerPanel::transportButtonsStandInTheirBox()
{
    QFETCH(const QString, name);
    const PlayerPanel panel;
    const PanelControls controls(panel);
    const auto *button = panel.findChild<TransportButton *>(name);
    QVERIFY(button);
    QCOMPARE(button->parentWidget(), controls.transportBox);
    QTEST(button->geometry(), "rect");
    QTEST(button->accessibleName(), "kind");
}

void TestPlayerPanel::fileButtonsAndSwitch()
{
    const PlayerPanel panel;
    const PanelControls controls(panel);
    QCOMPARE(controls.increase->accessibleName(), QStringLiteral("Increase"));
    QCOMPARE(controls.decrease->accessibleName(), QStringLiteral("Decrease"));
    QVERIFY(!controls.replay->isChecked());
}

void TestPlayerPanel::slidersBeginWhereTheyBelong()
{
    const PlayerPanel panel;
    const PanelControls controls(panel);
    const auto *seek = controls.seekSlider;
    QCOMPARE(seek->objectName(), QStringLiteral("frameSeekSlider"));
    QCOMPARE(seek->orientation(), Qt::Horizontal);
    QCOMPARE(seek->minimum(), 0);
    QCOMPARE(seek->maximum(), 0);
    const auto *interval = controls.timeSlider;
    QCOMPARE(interval->orientation(), Qt::Horizontal);
    QCOMPARE(interval->minimum(), 30);
    QCOMPARE(interval->maximum(), 150);
    QCOMPARE(interval->value(), 50);
}

void TestPlayerPanel::thereIsNoHomeButton()
{
    const PlayerPanel panel;
    QStringList names;
    const auto buttons = panel.findChildren<TransportButton *>();
    for (const TransportButton *button : buttons)
        names.append(button->accessibleName());
    names.sort();
    QCOMPARE(names, (QStringList{QStringLiteral("Decrease"), QStringLiteral("Increase"),
                                 QStringLiteral("Pause"), QStringLiteral("Play"),
                                 QStringLiteral("Stop")}));
}

void TestPlayerPanel::initialState()
{
    const PlayerPanel panel;
    QCOMPARE(panel.playbackState(), PlaybackState::Stopped);
    QCOMPARE(panel.currentFrame(), 0);
    QCOMPARE(panel.totalFrames(), 0);
    QCOMPARE(panel.intervalMs(), 50);
    QCOMPARE(panel.fileIndex(), 0);
    QVERIFY(!panel.repeatEnabled());
}

void TestPlayerPanel::operableControlsHaveNames()
{
    PlayerPanel panel;
    const PanelControls controls(panel);
    QCOMPARE(controls.seekSlider->accessibleName(), QStringLiteral("Frame"));
    QCOMPARE(controls.timeSlider->accessibleName(), QStringLiteral("Time"));
    QCOMPARE(controls.replay->accessibleName(), QStringLiteral("Replay"));
    Language::setCurrent(UiLanguage::Chinese);
    panel.retranslateUi();
    QCOMPARE(controls.timeSlider->accessibleName(), QStringLiteral("间隔"));
    QCOMPARE(controls.replay->accessibleName(), QStringLiteral("循环"));
}

void TestPlayerPanel::transportClicksAreRequests()
{
    PlayerPanel panel;
    const PanelControls controls(panel);
    Emitted emitted(panel);
    QTest::mouseClick(controls.play, Qt::LeftButton);
    QTest::mouseClick(controls.pause, Qt::LeftButton);
    QTest::mouseClick(controls.stop, Qt::LeftButton);
    QCOMPARE(emitted.take(), (QStringList{QStringLiteral("play"), QStringLiteral("pause"),
                                          QStringLiteral("stop")}));
    // It shows what it is told, not what it was asked for.
    QCOMPARE(panel.playbackState(), PlaybackState::Stopped);
}

void TestPlayerPanel::replaySwitchReportsAndShows()
{
    PlayerPanel panel;
    const PanelControls controls(panel);
    Emitted emitted(panel);
    auto *toggle = controls.replay;
    QTest::mouseClick(toggle, Qt::LeftButton);
    QCOMPARE(emitted.take(), QStringList{QStringLiteral("repeat on")});
    QVERIFY(panel.repeatEnabled());
    QCOMPARE(textOf(controls, PanelLabel::ReplayState), QStringLiteral("ON"));
    QCOMPARE(sheetOf(controls, PanelLabel::ReplayState), QStringLiteral("color:#1479e8;"));
    QTest::mouseClick(toggle, Qt::LeftButton);
    QCOMPARE(emitted.take(), QStringList{QStringLiteral("repeat off")});
    QCOMPARE(textOf(controls, PanelLabel::ReplayState), QStringLiteral("OFF"));
    QCOMPARE(sheetOf(controls, PanelLabel::ReplayState), QStringLiteral("color:#747a7e;"));
}

void TestPlayerPanel::fileButtonsStepThroughTheFiles()
{
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.setFileCount(256);
    panel.setTotalFrames(100);
    panel.setCurrentFrame(60);
    panel.setFileIndex(4, QStringLiteral("show.bin"));
    Emitted emitted(panel);
    QTest::mouseClick(controls.increase, Qt::LeftButton);
    QCOMPARE(emitted.take(), QStringList{QStringLiteral("file 5")});
    QCOMPARE(textOf(controls, PanelLabel::FileName), QStringLiteral("5.bin"));
    QCOMPARE(panel.currentFrame(), 0);
    QCOMPARE(controls.seekSlider->value(), 0);
    QCOMPARE(textOf(controls, PanelLabel::Position), QStringLiteral("0 / 100"));
    QTest::mouseClick(controls.decrease, Qt::LeftButton);
    QCOMPARE(emitted.take(), QStringList{QStringLiteral("file 4")});
    QCOMPARE(textOf(controls, PanelLabel::FileName), QStringLiteral("4.bin"));
}

void TestPlayerPanel::fileButtonsStopAtTheLastKnownFile()
{
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.setTotalFrames(100);
    panel.setFileCount(3);
    panel.setFileIndex(2, QStringLiteral("last.bin"));
    panel.setCurrentFrame(7);
    Emitted emitted(panel);
    QTest::mouseClick(controls.increase, Qt::LeftButton);
    QCOMPARE(emitted.take(), QStringList());
    QCOMPARE(textOf(controls, PanelLabel::FileName), QStringLiteral("last.bin"));
    QCOMPARE(panel.currentFrame(), 7);
    QTest::mouseClick(controls.decrease, Qt::LeftButton);
    QCOMPARE(emitted.take(), QStringList{QStringLiteral("file 1")});
    QCOMPARE(textOf(controls, PanelLabel::FileName), QStringLiteral("1.bin"));
    QCOMPARE(panel.currentFrame(), 0);
}

void TestPlayerPanel::withUnknownCountTheFilesEndAt9999()
{
    PlayerPanel panel;
    const PanelControls controls(panel);
    Emitted emitted(panel);
    QTest::mouseClick(controls.decrease, Qt::LeftButton);
    QCOMPARE(emitted.take(), QStringList());
    panel.setFileIndex(9998, QString());
    QTest::mouseClick(controls.increase, Qt::LeftButton);
    QCOMPARE(emitted.take(), QStringList{QStringLiteral("file 9999")});
    QTest::mouseClick(controls.increase, Qt::LeftButton);
    QCOMPARE(emitted.take(), QStringList());
    QCOMPARE(textOf(controls, PanelLabel::FileName), QStringLiteral("9999.bin"));
}

void TestPlayerPanel::dragOfTheSeekHandle()
{
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    panel.setTotalFrames(1800);
    panel.setCurrentFrame(300);
    auto *slider = controls.seekSlider;
    Emitted emitted(panel);

    QPoint hand = handleOf(slider, 300);
    QTest::mousePress(slider, Qt::LeftButton, {}, hand);
    QCOMPARE(emitted.take(), QStringList{QStringLiteral("grab")});
    int last = 300;
    for (int step = 0; step < 12; ++step) {
        hand += QPoint(step < 8 ? 9 : -5, 0); // forth and a little back
        QTest::mouseMove(slider, hand);
        const int now = slider->value();
        QVERIFY(step < 8 ? now > last : now < last);
        QCOMPARE(emitted.take(), QStringList{QStringLiteral("preview %1").arg(now)});
        QCOMPARE(panel.currentFrame(), now);
        QCOMPARE(textOf(controls, PanelLabel::Position), QStringLiteral("%1 / 1800").arg(now));
        last = now;
    }
    QTest::mouseRelease(slider, Qt::LeftButton, {}, hand);
    QCOMPARE(emitted.take(), QStringList{QStringLiteral("seek %1").arg(last)});
}

void TestPlayerPanel::pressAndReleaseOfTheSeekHandle()
{
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.setTotalFrames(100);
    panel.setCurrentFrame(40);
    auto *slider = controls.seekSlider;
    Emitted emitted(panel);
    QTest::mousePress(slider, Qt::LeftButton, {}, handleOf(slider, 40));
    QTest::mouseRelease(slider, Qt::LeftButton, {}, handleOf(slider, 40));
    QCOMPARE(emitted.take(), (QStringList{QStringLiteral("grab"), QStringLiteral("seek 40")}));
}

void TestPlayerPanel::dragOfTheTimeHandle()
{
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    auto *slider = controls.timeSlider;
    Emitted emitted(panel);
    QPoint hand = handleOf(slider, 50);
    QTest::mousePress(slider, Qt::LeftButton, {}, hand);
    for (int step = 0; step < 8; ++step) {
        hand += QPoint(20, 0);
        QTest::mouseMove(slider, hand);
        const int ms = slider->value();
        QCOMPARE(textOf(controls, PanelLabel::Time),
                 QStringLiteral("Time: %1 ms   %2 fps")
                     .arg(ms)
                     .arg(1000.0 / ms, 0, 'f', 2)); // follows at once
        QCOMPARE(emitted.take(), QStringList());
    }
    const int released = slider->value();
    QVERIFY(released > 80);
    QTest::mouseRelease(slider, Qt::LeftButton, {}, hand);
    QCOMPARE(emitted.take(), QStringList{QStringLiteral("interval %1").arg(released)});
    QCOMPARE(panel.intervalMs(), released);
}

void TestPlayerPanel::keyboardAndGrooveRequestNothingAndTheWheelDoesNothing_data()
{
    QTest::addColumn<bool>("frameSlider");
    QTest::newRow("frame slider") << true;
    QTest::newRow("Time slider") << false;
}

void TestPlayerPanel::keyboardAndGrooveRequestNothingAndTheWheelDoesNothing()
{
    QFETCH(const bool, frameSlider);
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.setTotalFrames(1800);
    auto *slider = frameSlider ? controls.seekSlider : controls.timeSlider;
    Emitted emitted(panel);
    const QString before =
        textOf(controls, PanelLabel::Position) + textOf(controls, PanelLabel::Time);

    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Up, Qt::Key_PageUp, Qt::Key_Left, Qt::Key_End,
                              Qt::Key_Home, Qt::Key_End}) {
        const int value = slider->value();
        QTest::keyClick(slider, key);
        QVERIFY(slider->value() != value);
    }
    const QPointF middle = QRectF(slider->rect()).center();
    QWheelEvent wheel(middle, slider->mapToGlobal(middle), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    const int value = slider->value();
    QApplication::sendEvent(slider, &wheel);
    QCOMPARE(slider->value(), value); // left to what lies around it
    QVERIFY(!wheel.isAccepted());

    QTest::mouseClick(slider, Qt::LeftButton, {}, handleOf(slider, slider->minimum()));
    QVERIFY(slider->value() < value);

    QVERIFY(textOf(controls, PanelLabel::Position) + textOf(controls, PanelLabel::Time) !=
            before); // the read-out follows
    if (frameSlider)
        QCOMPARE(panel.currentFrame(), slider->value());
    QCOMPARE(emitted.take(), QStringList());
}

void TestPlayerPanel::currentFrameIsClamped_data()
{
    QTest::addColumn<int>("frame");
    QTest::addColumn<int>("shown");
    QTest::newRow("negative") << -1 << 0;
    QTest::newRow("first") << 0 << 0;
    QTest::newRow("inside") << 55 << 55;
    QTest::newRow("last") << 100 << 100;
    QTest::newRow("behind the last") << 101 << 100;
    QTest::newRow("far behind the last") << 500 << 100;
}

void TestPlayerPanel::currentFrameIsClamped()
{
    QFETCH(const int, frame);
    QFETCH(const int, shown);
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.setTotalFrames(100);
    panel.setCurrentFrame(frame);
    QCOMPARE(panel.currentFrame(), shown);
    QCOMPARE(controls.seekSlider->value(), shown);
    QCOMPARE(textOf(controls, PanelLabel::Position), QStringLiteral("%1 / 100").arg(shown));
}

void TestPlayerPanel::totalIsClampedAndTakesTheFrameAlong_data()
{
    QTest::addColumn<int>("total");
    QTest::addColumn<int>("shownTotal");
    QTest::addColumn<int>("shownFrame");
    QTest::newRow("negative") << -5 << 0 << 0;
    QTest::newRow("zero") << 0 << 0 << 0;
    QTest::newRow("below the frame") << 30 << 30 << 30;
    QTest::newRow("at the frame") << 40 << 40 << 40;
    QTest::newRow("above the frame") << 65535 << 65535 << 40;
}

void TestPlayerPanel::totalIsClampedAndTakesTheFrameAlong()
{
    QFETCH(const int, total);
    QFETCH(const int, shownTotal);
    QFETCH(const int, shownFrame);
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.setTotalFrames(100);
    panel.setCurrentFrame(40);
    panel.setTotalFrames(total);
    QCOMPARE(panel.totalFrames(), shownTotal);
    QCOMPARE(panel.currentFrame(), shownFrame);
    const auto *slider = controls.seekSlider;
    QCOMPARE(slider->minimum(), 0);
    QCOMPARE(slider->maximum(), shownTotal);
    QCOMPARE(slider->value(), shownFrame);
    QCOMPARE(textOf(controls, PanelLabel::FrameTotal), QStringLiteral("Total: %1").arg(shownTotal));
    QCOMPARE(textOf(controls, PanelLabel::Position),
             QStringLiteral("%1 / %2").arg(shownFrame).arg(shownTotal));
}

void TestPlayerPanel::fileIndexIsClamped_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("keptIndex");
    QTest::addColumn<QString>("shown");
    const QString none;
    const QString named = QStringLiteral("show.bin");
    QTest::newRow("named") << 256 << 4 << named << 4 << named;
    QTest::newRow("without a name") << 256 << 4 << none << 4 << QStringLiteral("4.bin");
    QTest::newRow("negative") << 256 << -3 << none << 0 << QStringLiteral("0.bin");
    QTest::newRow("behind the last") << 3 << 7 << none << 2 << QStringLiteral("2.bin");
    QTest::newRow("behind the last, named") << 3 << 7 << named << 2 << named;
    QTest::newRow("count unknown") << 0 << 9999 << none << 9999 << QStringLiteral("9999.bin");
    QTest::newRow("count unknown, too large")
        << 0 << 10000 << none << 9999 << QStringLiteral("9999.bin");
    QTest::newRow("name with a placeholder")
        << 256 << 4 << QStringLiteral("50%1.bin") << 4 << QStringLiteral("50%1.bin");
}

void TestPlayerPanel::fileIndexIsClamped()
{
    QFETCH(const int, count);
    QFETCH(const int, index);
    QFETCH(const QString, name);
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.setFileCount(count);
    panel.setFileIndex(index, name);
    QTEST(panel.fileIndex(), "keptIndex");
    QTEST(textOf(controls, PanelLabel::FileName), "shown");
}

void TestPlayerPanel::fileCountKeepsTheName()
{
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.setFileIndex(9, QString());
    panel.setFileCount(3);
    QCOMPARE(panel.fileIndex(), 2);
    QCOMPARE(textOf(controls, PanelLabel::FileName), QStringLiteral("9.bin"));
    QCOMPARE(textOf(controls, PanelLabel::FileTotal), QStringLiteral("File Total: 3"));
    panel.setFileCount(-1);
    QCOMPARE(panel.fileIndex(), 2);
    QCOMPARE(textOf(controls, PanelLabel::FileTotal), QStringLiteral("File Total: 0"));
}

void TestPlayerPanel::intervalIsClamped_data()
{
    QTest::addColumn<int>("ms");
    QTest::addColumn<int>("kept");
    QTest::addColumn<QString>("shown");
    QTest::newRow("too short") << 10 << 30 << QStringLiteral("Time: 30 ms   33.33 fps");
    QTest::newRow("shortest") << 30 << 30 << QStringLiteral("Time: 30 ms   33.33 fps");
    QTest::newRow("between") << 51 << 51 << QStringLiteral("Time: 51 ms   19.61 fps");
    QTest::newRow("longest") << 150 << 150 << QStringLiteral("Time: 150 ms   6.67 fps");
    QTest::newRow("too long") << 1000 << 150 << QStringLiteral("Time: 150 ms   6.67 fps");
}

void TestPlayerPanel::intervalIsClamped()
{
    QFETCH(const int, ms);
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.setIntervalMs(ms);
    QTEST(panel.intervalMs(), "kept");
    QTEST(textOf(controls, PanelLabel::Time), "shown");
}

void TestPlayerPanel::connectionShowsTextAndColour_data()
{
    QTest::addColumn<bool>("connected");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("chinese");
    QTest::addColumn<QString>("sheet");
    const QString blue = QStringLiteral("color:#78b8ff;");
    const QString grey = QStringLiteral("color:#747a7e;");
    const QString port = QStringLiteral("ttyACM0");
    QTest::newRow("connected") << true << QString() << QStringLiteral("Connected")
                               << QStringLiteral("已连接") << blue;
    QTest::newRow("connected with a text") << true << port << port << port << blue;
    QTest::newRow("not connected") << false << QString() << QStringLiteral("Not connected")
                                   << QStringLiteral("未连接") << grey;
    QTest::newRow("not connected with a text") << false << port << port << port << grey;
}

void TestPlayerPanel::connectionShowsTextAndColour()
{
    QFETCH(const bool, connected);
    QFETCH(const QString, text);
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.setConnected(!connected, QStringLiteral("before"));
    panel.setConnected(connected, text);
    QTEST(textOf(controls, PanelLabel::Connection), "english");
    QTEST(sheetOf(controls, PanelLabel::Connection), "sheet");
    Language::setCurrent(UiLanguage::Chinese);
    panel.retranslateUi();
    QTEST(textOf(controls, PanelLabel::Connection), "chinese");
    QTEST(sheetOf(controls, PanelLabel::Connection), "sheet");
}

void TestPlayerPanel::stateShowsTextAndColours_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("chinese");
    QTest::addColumn<QString>("sheet");
    const auto row = [](const char *name, int state, const char *english, const char *chinese,
                        const char *rule) {
        QTest::newRow(name) << state << QString::fromUtf8(english) << QString::fromUtf8(chinese)
                            << QString::fromUtf8(rule) + QStringLiteral("border-radius:14px;");
    };
    const char fallback[] = "background:#202428;color:#a8adb0;border:1px solid #3b4045;";
    row("stopped", 1, "Stopped", "已停止",
        "background:#2a2e32;color:#f1f3f5;border:1px solid #3b4045;");
    row("playing", 2, "Playing", "发送中",
        "background:#1479e8;color:#f1f3f5;border:1px solid #2994ff;");
    row("paused", 3, "Paused", "已暂停",
        "background:#a8adb0;color:#1a1c1e;border:1px solid #c4c7c8;");
    row("none", 0, "Unknown", "未知", fallback);
    row("beyond", 4, "Unknown", "未知", fallback);
}

void TestPlayerPanel::stateShowsTextAndColours()
{
    QFETCH(const int, state);
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.setPlaybackState(static_cast<PlaybackState>(state));
    QCOMPARE(static_cast<int>(panel.playbackState()), state);
    QTEST(textOf(controls, PanelLabel::StateBadge), "english");
    QTEST(sheetOf(controls, PanelLabel::StateBadge), "sheet");
    Language::setCurrent(UiLanguage::Chinese);
    panel.retranslateUi();
    QTEST(textOf(controls, PanelLabel::StateBadge), "chinese");
    QTEST(sheetOf(controls, PanelLabel::StateBadge), "sheet");
}

void TestPlayerPanel::repeatIsShown()
{
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.setRepeatEnabled(true);
    QVERIFY(panel.repeatEnabled());
    QCOMPARE(textOf(controls, PanelLabel::ReplayState), QStringLiteral("ON"));
    QCOMPARE(sheetOf(controls, PanelLabel::ReplayState), QStringLiteral("color:#1479e8;"));
    panel.setRepeatEnabled(false);
    QVERIFY(!panel.repeatEnabled());
    QCOMPARE(textOf(controls, PanelLabel::ReplayState), QStringLiteral("OFF"));
    QCOMPARE(sheetOf(controls, PanelLabel::ReplayState), QStringLiteral("color:#747a7e;"));
}

void TestPlayerPanel::whiteLevelIsNotShown()
{
    PlayerPanel panel;
    const QImage before = panel.grab().toImage();
    for (const int level : {-1, 0, 128, 255, 300})
        panel.setWhiteLevel(level);
    QCOMPARE(panel.grab().toImage(), before);
}

void TestPlayerPanel::settersEmitNothing()
{
    PlayerPanel panel;
    Emitted emitted(panel);
    for (const int value : {-10, 0, 1, 42, 300, 100000}) {
        panel.setTotalFrames(value);
        panel.setCurrentFrame(value / 2);
        panel.setFileCount(value);
        panel.setFileIndex(value, QString());
        panel.setWhiteLevel(value);
        panel.setIntervalMs(value);
        panel.setRepeatEnabled(value > 0);
        panel.setConnected(value > 0, QString());
        panel.setPlaybackState(static_cast<PlaybackState>(value % 5));
        panel.retranslateUi();
    }
    QCOMPARE(emitted.take(), QStringList());
}

void TestPlayerPanel::settersLeaveBlockedChildrenBlocked()
{
    for (const bool blocked : {true, false}) {
        PlayerPanel panel;
        const PanelControls controls(panel);
        auto *seek = controls.seekSlider;
        auto *interval = controls.timeSlider;
        auto *toggle = controls.replay;
        for (QWidget *child : {static_cast<QWidget *>(seek), static_cast<QWidget *>(interval),
                               static_cast<QWidget *>(toggle)})
            child->blockSignals(blocked);
        panel.setTotalFrames(100);
        panel.setCurrentFrame(50);
        panel.setIntervalMs(60);
        panel.setRepeatEnabled(true);
        QCOMPARE(seek->signalsBlocked(), blocked);
        QCOMPARE(interval->signalsBlocked(), blocked);
        QCOMPARE(toggle->signalsBlocked(), blocked);
    }
}

void TestPlayerPanel::languageChange()
{
    PlayerPanel panel;
    const PanelControls controls(panel);
    panel.setFileCount(256);
    panel.setTotalFrames(1800);
    panel.setCurrentFrame(12);
    panel.setFileIndex(3, QStringLiteral("show.bin"));
    panel.setIntervalMs(40);
    Language::setCurrent(UiLanguage::Chinese);
    QCOMPARE(textOf(controls, PanelLabel::FileTotal),
             QStringLiteral("File Total: 256")); // not before it is told
    panel.retranslateUi();
    QCOMPARE(controls.summaryBox->title(), QStringLiteral("信息"));
    QCOMPARE(controls.transportBox->title(), QStringLiteral("播放控制"));
    QCOMPARE(textOf(controls, PanelLabel::FileTotal), QStringLiteral("文件总数：256"));
    QCOMPARE(textOf(controls, PanelLabel::FrameTotal), QStringLiteral("总帧数：1800"));
    QCOMPARE(textOf(controls, PanelLabel::Time), QStringLiteral("间隔：40 ms   25.00 fps"));
    QCOMPARE(textOf(controls, PanelLabel::FileName), QStringLiteral("show.bin"));
    QCOMPARE(textOf(controls, PanelLabel::Position), QStringLiteral("12 / 1800"));
    QCOMPARE(controls.play->toolTip(), QStringLiteral("播放：逐帧循环发送"));
    QCOMPARE(controls.pause->accessibleName(), QStringLiteral("暂停"));
    QCOMPARE(controls.stop->accessibleName(), QStringLiteral("停止"));
    QCOMPARE(controls.increase->accessibleName(), QStringLiteral("增加"));
    QCOMPARE(controls.decrease->accessibleName(), QStringLiteral("减少"));
}

QTEST_MAIN(TestPlayerPanel)
#include "tst_playerpanel.moc"
