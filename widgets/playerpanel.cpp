// SPDX-License-Identifier: MIT
#include "widgets/playerpanel.h"

#include "i18n/language.h"
#include "widgets/colours.h"
#include "widgets/dragslider.h"
#include "widgets/framedisplay.h"
#include "widgets/toggleswitch.h"
#include "widgets/transportbutton.h"

#include <QGroupBox>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>

namespace qx {

namespace {

constexpr QSize panelSize(680, 520);
constexpr int shortestInterval = 30; // ms
constexpr int longestInterval = 150; // ms
constexpr int defaultInterval = 50;  // ms
constexpr int lastFileOfUnknownCount = 9999;

const char panelSheet[] =
    "QWidget#playerMirror {  background:#191c1f;  border:1px solid #3b4045;  border-radius:16px;}"
    "QGroupBox#summaryGroup {  color:#1479e8; background:transparent; border:1px solid #1479e8;"
    "  border-radius:8px; margin-top:14px; padding-top:8px;}"
    "QGroupBox#summaryGroup::title {  subcontrol-origin:margin; left:16px; padding:0 6px;}"
    "QGroupBox#transportGroup {  color:#1479e8; background:transparent; border:1px solid #1479e8;"
    "  border-radius:8px; margin-top:14px; padding-top:8px;}"
    "QGroupBox#transportGroup::title {  subcontrol-origin:margin; left:16px; padding:0 6px;}"
    "QLabel { color:#f1f3f5; background:transparent; }"
    "QSlider::groove:horizontal {  height:10px; border-radius:5px; background:#101214;"
    "  border:1px solid #3b4045;}"
    "QSlider::sub-page:horizontal {  background:#1479e8; border-radius:5px;}"
    "QSlider::handle:horizontal {  width:22px; margin:-7px 0; border-radius:11px;"
    "  background:#f1f3f5; border:2px solid #1479e8;}"
    "QSlider::handle:horizontal:hover { background:#ffffff; border-color:#2994ff; }";

// The sliders show the panel behind them and, worked by keyboard, that they have the focus.
const char sliderSheet[] = "QSlider { background:transparent; }"
                           "QSlider::handle:horizontal:focus { border-color:#78b8ff; }"
                           "QSlider::groove:horizontal:focus { border-color:#2994ff; }";

QString badgeRule(PlaybackState state)
{
    switch (state) {
    case PlaybackState::Stopped:
        return QStringLiteral("background:#2a2e32;color:#f1f3f5;border:1px solid #3b4045;");
    case PlaybackState::Playing:
        return QStringLiteral("background:#1479e8;color:#f1f3f5;border:1px solid #2994ff;");
    case PlaybackState::Paused:
        return QStringLiteral("background:#a8adb0;color:#1a1c1e;border:1px solid #c4c7c8;");
    }
    return QStringLiteral("background:#202428;color:#a8adb0;border:1px solid #3b4045;");
}

QString badgeSheet(PlaybackState state)
{
    return badgeRule(state) + QStringLiteral("border-radius:14px;");
}

} // namespace

PlayerPanel::PlayerPanel(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("playerMirror"));
    setAttribute(Qt::WA_StyledBackground);
    setFixedSize(panelSize);
    setStyleSheet(QLatin1String(panelSheet));

    // The boxes first: the labels lie over them as siblings.
    summaryBox = new QGroupBox(this);
    summaryBox->setObjectName(QStringLiteral("summaryGroup"));
    summaryBox->setGeometry(9, 5, 652, 100);
    transportBox = new QGroupBox(this);
    transportBox->setObjectName(QStringLiteral("transportGroup"));
    transportBox->setGeometry(18, 128, 362, 186);
    createSummary();
    createTransport();
    createFileSelector();
    createSliders();
    QLabel *modelLine =
        makeLabel(QStringLiteral("Tessaly-Master"), QRect(24, 480, 350, 22), 8, false);
    modelLine->setStyleSheet(QStringLiteral("color:#747a7e;"));

    connectChildren();
    retranslateUi();
    updateFileDisplay();
    updatePositionDisplay();
}

QSize PlayerPanel::sizeHint() const
{
    return panelSize;
}

QLabel *PlayerPanel::makeLabel(const QString &text, const QRect &rect, int pointSize, bool bold)
{
    auto *label = new QLabel(text, this);
    label->setTextFormat(Qt::PlainText); // a port may have any name
    label->setGeometry(rect);
    QFont font = label->font();
    font.setPointSize(pointSize);
    font.setWeight(bold ? QFont::Bold : QFont::Normal);
    label->setFont(font);
    return label;
}

void PlayerPanel::createSummary()
{
    fileTotalLabel = makeLabel(QString(), QRect(22, 28, 190, 26), 12, true);
    frameTotalLabel = makeLabel(QString(), QRect(214, 28, 150, 26), 12, true);
    timeLabel = makeLabel(QString(), QRect(22, 60, 280, 28), 11, false);
    stateBadge = makeLabel(QString(), QRect(370, 26, 92, 30), 10, true);
    stateBadge->setAlignment(Qt::AlignCenter);
    stateBadge->setStyleSheet(badgeSheet(state.playbackState));
    connectionLabel = makeLabel(QString(), QRect(472, 26, 178, 30), 10, false);
    connectionLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    connectionLabel->setStyleSheet(QStringLiteral("color:#a8adb0;"));
    repeatSwitch = new ToggleSwitch(this);
    repeatSwitch->setGeometry(304, 62, 74, 34);
    repeatLabel = makeLabel(QString(), QRect(230, 64, 70, 30), 10, true);
    repeatLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    repeatStateLabel = makeLabel(QString(), QRect(386, 64, 48, 30), 10, true);
    showRepeat(false);
}

void PlayerPanel::createTransport()
{
    const auto make = [this](TransportButton::Kind kind, const QString &name, int x) {
        auto *button = new TransportButton(kind, transportBox);
        button->setObjectName(name);
        button->setGeometry(x, 48, 88, 76);
        return button;
    };
    stopButton = make(TransportButton::Kind::Stop, QStringLiteral("transportStopButton"), 18);
    pauseButton = make(TransportButton::Kind::Pause, QStringLiteral("transportPauseButton"), 124);
    playButton = make(TransportButton::Kind::Play, QStringLiteral("transportPlayButton"), 230);
}

void PlayerPanel::createFileSelector()
{
    increaseButton = new TransportButton(TransportButton::Kind::Increase, this);
    increaseButton->setGeometry(520, 117, 78, 68);
    fileNameLabel = makeLabel(QString(), QRect(504, 189, 128, 42), 17, true);
    fileNameLabel->setAlignment(Qt::AlignCenter);
    fileCaption = makeLabel(QString(), QRect(520, 229, 96, 28), 10, true);
    fileCaption->setAlignment(Qt::AlignCenter);
    decreaseButton = new TransportButton(TransportButton::Kind::Decrease, this);
    decreaseButton->setGeometry(520, 261, 78, 68);
}

void PlayerPanel::createSliders()
{
    positionLabel = makeLabel(QString(), QRect(224, 331, 160, 30), 10, true);
    positionLabel->setAlignment(Qt::AlignCenter);
    prepareFrameDisplay(positionLabel, colours::surface);
    seekSlider = new DragSlider(Qt::Horizontal, this);
    seekSlider->setObjectName(QStringLiteral("frameSeekSlider"));
    seekSlider->setGeometry(38, 356, 480, 42);
    seekSlider->setRange(0, 0);
    seekSlider->setStyleSheet(QLatin1String(sliderSheet));
    prepareFrameDisplay(seekSlider, colours::surface);
    timeCaption = makeLabel(QString(), QRect(24, 419, 62, 34), 10, true);
    timeCaption->setAlignment(Qt::AlignCenter);
    intervalSlider = new DragSlider(Qt::Horizontal, this);
    intervalSlider->setGeometry(86, 414, 395, 42);
    intervalSlider->setRange(shortestInterval, longestInterval);
    intervalSlider->setValue(defaultInterval);
    intervalSlider->setStyleSheet(QLatin1String(sliderSheet));
}

void PlayerPanel::connectChildren()
{
    connect(stopButton, &TransportButton::clicked, this, &PlayerPanel::stopRequested);
    connect(pauseButton, &TransportButton::clicked, this, &PlayerPanel::pauseRequested);
    connect(playButton, &TransportButton::clicked, this, &PlayerPanel::playRequested);
    connect(repeatSwitch, &ToggleSwitch::toggled, this, [this](bool on) {
        showRepeat(on);
        emit repeatChanged(on);
    });
    connect(increaseButton, &TransportButton::clicked, this, [this] { changeFile(+1); });
    connect(decreaseButton, &TransportButton::clicked, this, [this] { changeFile(-1); });
    connect(seekSlider, &QSlider::valueChanged, this, [this](int frame) {
        state.currentFrame = frame;
        updatePositionDisplay();
    });
    connect(seekSlider, &QSlider::sliderPressed, this, &PlayerPanel::seekStarted);
    connect(seekSlider, &QSlider::sliderMoved, this, &PlayerPanel::seekPreviewRequested);
    connect(seekSlider, &QSlider::sliderReleased, this,
            [this] { emit seekRequested(seekSlider->value()); });
    connect(intervalSlider, &QSlider::valueChanged, this, &PlayerPanel::updateStatistics);
    connect(intervalSlider, &QSlider::sliderReleased, this,
            [this] { emit intervalChanged(intervalSlider->value()); });
}

PlaybackState PlayerPanel::playbackState() const
{
    return state.playbackState;
}

int PlayerPanel::currentFrame() const
{
    return state.currentFrame;
}

int PlayerPanel::totalFrames() const
{
    return state.totalFrames;
}

int PlayerPanel::intervalMs() const
{
    return intervalSlider->value();
}

int PlayerPanel::fileIndex() const
{
    return state.fileIndex;
}

bool PlayerPanel::repeatEnabled() const
{
    return repeatSwitch->isChecked();
}

void PlayerPanel::setConnected(bool connected, const QString &text)
{
    state.connected = connected;
    state.connectionText = text;
    updateConnectionText();
    connectionLabel->setStyleSheet(connected ? QStringLiteral("color:#78b8ff;")
                                             : QStringLiteral("color:#747a7e;"));
}

void PlayerPanel::setPlaybackState(PlaybackState playbackState)
{
    state.playbackState = playbackState;
    stateBadge->setText(Protocol::playbackStateText(playbackState));
    stateBadge->setStyleSheet(badgeSheet(playbackState));
}

void PlayerPanel::setCurrentFrame(int frame)
{
    state.currentFrame = qBound(0, frame, state.totalFrames);
    moveSeekSlider();
    updatePositionDisplay();
}

void PlayerPanel::setTotalFrames(int total)
{
    state.totalFrames = qMax(total, 0);
    state.currentFrame = qBound(0, state.currentFrame, state.totalFrames);
    {
        const QSignalBlocker blocker(seekSlider);
        seekSlider->setRange(0, state.totalFrames);
    }
    moveSeekSlider();
    updateStatistics();
    updatePositionDisplay();
}

void PlayerPanel::setFileCount(int count)
{
    state.fileCount = qMax(count, 0);
    if (state.fileCount > 0)
        state.fileIndex = qBound(0, state.fileIndex, state.fileCount - 1);
    updateStatistics();
    updateFileDisplay();
}

void PlayerPanel::setFileIndex(int index, const QString &name)
{
    state.fileIndex = qBound(0, index, lastFileIndex());
    state.fileName = name.isEmpty() ? QStringLiteral("%1.bin").arg(state.fileIndex) : name;
    updateFileDisplay();
}

void PlayerPanel::setWhiteLevel(int level)
{
    state.whiteLevel = qBound(0, level, 255);
}

void PlayerPanel::setRepeatEnabled(bool on)
{
    const QSignalBlocker blocker(repeatSwitch);
    repeatSwitch->setChecked(on);
    showRepeat(on);
}

void PlayerPanel::setIntervalMs(int ms)
{
    const QSignalBlocker blocker(intervalSlider);
    intervalSlider->setValue(qBound(shortestInterval, ms, longestInterval));
    updateStatistics();
}

void PlayerPanel::retranslateUi()
{
    summaryBox->setTitle(Language::text(UiText::InformationTitle));
    transportBox->setTitle(Language::text(UiText::PlaybackControlsTitle));
    repeatLabel->setText(Language::text(UiText::Replay));
    repeatSwitch->setAccessibleName(Language::text(UiText::Replay));
    fileCaption->setText(Language::text(UiText::FileLabel));
    timeCaption->setText(Language::text(UiText::TimeLabel));
    intervalSlider->setAccessibleName(Language::text(UiText::TimeLabel));
    seekSlider->setAccessibleName(QStringLiteral("Frame"));
    stateBadge->setText(Protocol::playbackStateText(state.playbackState));
    updateConnectionText();
    for (TransportButton *button :
         {playButton, pauseButton, stopButton, increaseButton, decreaseButton})
        button->retranslateUi();
    for (TransportButton *button : {increaseButton, decreaseButton})
        button->setAccessibleDescription(Language::text(UiText::FileLabel));
    updateStatistics();
}

int PlayerPanel::lastFileIndex() const
{
    return state.fileCount > 0 ? state.fileCount - 1 : lastFileOfUnknownCount;
}

void PlayerPanel::changeFile(int delta)
{
    const int target = qBound(0, state.fileIndex + delta, lastFileIndex());
    if (target == state.fileIndex)
        return;
    setFileIndex(target, QString());
    setCurrentFrame(0);
    emit fileChanged(target);
}

void PlayerPanel::moveSeekSlider()
{
    const QSignalBlocker blocker(seekSlider);
    seekSlider->setValue(state.currentFrame);
}

void PlayerPanel::showRepeat(bool on)
{
    repeatStateLabel->setText(on ? QStringLiteral("ON") : QStringLiteral("OFF"));
    repeatStateLabel->setStyleSheet(on ? QStringLiteral("color:#1479e8;")
                                       : QStringLiteral("color:#747a7e;"));
}

void PlayerPanel::updateConnectionText()
{
    const UiText standard = state.connected ? UiText::Connected : UiText::NotConnected;
    connectionLabel->setText(state.connectionText.isEmpty() ? Language::text(standard)
                                                            : state.connectionText);
}

void PlayerPanel::updateFileDisplay()
{
    fileNameLabel->setText(state.fileName);
}

void PlayerPanel::updatePositionDisplay()
{
    positionLabel->setText(QStringLiteral("%1 / %2").arg(QString::number(state.currentFrame),
                                                         QString::number(state.totalFrames)));
}

void PlayerPanel::updateStatistics()
{
    fileTotalLabel->setText(Language::text(UiText::FileTotal).arg(state.fileCount));
    frameTotalLabel->setText(Language::text(UiText::TotalFrames).arg(state.totalFrames));
    const int ms = intervalMs();
    const double framesPerSecond = ms < 1 ? 0.0 : 1000.0 / ms;
    timeLabel->setText(Language::text(UiText::TimeInterval)
                           .arg(QString::number(ms), QString::number(framesPerSecond, 'f', 2)));
}

} // namespace qx
