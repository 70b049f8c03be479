// SPDX-License-Identifier: MIT
#include "tests/support/operator.h"

#include <QGroupBox>
#include <QRegularExpression>
#include <QStatusBar>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <algorithm>

namespace qx::test {

namespace {

constexpr qsizetype stampSize = 15; // "[HH:mm:ss.zzz] "

// Children of one kind in the order of the eye: from top to bottom, then from left to right.
template<typename Widget>
QList<Widget *> inReadingOrder(const QObject *parent)
{
    QList<Widget *> widgets = parent->findChildren<Widget *>();
    const auto at = [](const QWidget *widget) { return widget->mapTo(widget->window(), QPoint()); };
    std::sort(widgets.begin(), widgets.end(), [at](const Widget *a, const Widget *b) {
        const QPoint p = at(a);
        const QPoint q = at(b);
        return std::abs(p.y() - q.y()) > 6 ? p.y() < q.y() : p.x() < q.x();
    });
    return widgets;
}

QGroupBox *group(const MainWindow &window, const char *name)
{
    return window.findChild<QGroupBox *>(QLatin1String(name));
}

QPoint handleAt(const QSlider *slider, int value)
{
    QStyleOptionSlider option;
    option.initFrom(slider);
    option.orientation = slider->orientation();
    option.minimum = slider->minimum();
    option.maximum = slider->maximum();
    option.sliderPosition = value;
    option.sliderValue = value;
    option.subControls = QStyle::SC_All;
    const QRect handle = slider->style()->subControlRect(QStyle::CC_Slider, &option,
                                                         QStyle::SC_SliderHandle, slider);
    return {handle.center().x(), slider->height() / 2};
}

} // namespace

Operator::Operator(MainWindow &window)
    : window(window)
{}

QAbstractButton *Operator::navigation(const char *name) const
{
    return window.findChild<QToolButton *>(QLatin1String(name));
}

PlayerPanel *Operator::panel() const
{
    return window.findChild<PlayerPanel *>();
}

TransportButton *Operator::play() const
{
    return window.findChild<TransportButton *>(QStringLiteral("transportPlayButton"));
}

TransportButton *Operator::pause() const
{
    return window.findChild<TransportButton *>(QStringLiteral("transportPauseButton"));
}

TransportButton *Operator::stop() const
{
    return window.findChild<TransportButton *>(QStringLiteral("transportStopButton"));
}

TransportButton *Operator::increase() const
{
    return static_cast<TransportButton *>(panel()->childAt(559, 151));
}

TransportButton *Operator::decrease() const
{
    return static_cast<TransportButton *>(panel()->childAt(559, 295));
}

ToggleSwitch *Operator::replay() const
{
    return window.findChild<ToggleSwitch *>();
}

QSlider *Operator::seekSlider() const
{
    return window.findChild<QSlider *>(QStringLiteral("frameSeekSlider"));
}

QSlider *Operator::timeSlider() const
{
    return static_cast<QSlider *>(panel()->childAt(283, 435));
}

QLabel *Operator::stateBadge() const
{
    return static_cast<QLabel *>(panel()->childAt(416, 41));
}

QLabel *Operator::panelConnection() const
{
    return static_cast<QLabel *>(panel()->childAt(561, 41));
}

QLabel *Operator::position() const
{
    return static_cast<QLabel *>(panel()->childAt(304, 346));
}

QComboBox *Operator::ports() const
{
    return inReadingOrder<QComboBox>(group(window, "connectionGroup")).at(0);
}

QComboBox *Operator::hostSettings() const
{
    return inReadingOrder<QComboBox>(group(window, "connectionGroup")).at(1);
}

QPushButton *Operator::refresh() const
{
    return inReadingOrder<QPushButton>(group(window, "connectionGroup")).at(0);
}

QPushButton *Operator::connectButton() const
{
    return window.findChild<QPushButton *>(QStringLiteral("primaryButton"));
}

QCheckBox *Operator::demo() const
{
    return group(window, "connectionGroup")->findChild<QCheckBox *>();
}

QLabel *Operator::lamp() const
{
    const auto labels = group(window, "connectionGroup")->findChildren<QLabel *>();
    const auto lamp = std::find_if(labels.cbegin(), labels.cend(), [](const QLabel *label) {
        return label->maximumSize() == QSize(12, 12);
    });
    return lamp == labels.cend() ? nullptr : *lamp;
}

QLabel *Operator::linkText() const
{
    return inReadingOrder<QLabel>(group(window, "connectionGroup")).last();
}

QSpinBox *Operator::header() const
{
    return inReadingOrder<QSpinBox>(group(window, "frameGroup")).at(0);
}

QSpinBox *Operator::frame() const
{
    return inReadingOrder<QSpinBox>(group(window, "frameGroup")).at(1);
}

QSpinBox *Operator::total() const
{
    return inReadingOrder<QSpinBox>(group(window, "frameGroup")).at(2);
}

QSpinBox *Operator::red() const
{
    return window.findChild<QSpinBox *>(QStringLiteral("redSpin"));
}

QSpinBox *Operator::green() const
{
    return window.findChild<QSpinBox *>(QStringLiteral("greenSpin"));
}

QSpinBox *Operator::blue() const
{
    return window.findChild<QSpinBox *>(QStringLiteral("blueSpin"));
}

QSpinBox *Operator::white() const
{
    return window.findChild<QSpinBox *>(QStringLiteral("whiteSpin"));
}

QLineEdit *Operator::reserved() const
{
    return static_cast<QLineEdit *>(
        window.findChild<QLabel *>(QStringLiteral("reservedCaption"))->buddy());
}

QLineEdit *Operator::summary() const
{
    return static_cast<QLineEdit *>(
        window.findChild<QLabel *>(QStringLiteral("completeFrameCaption"))->buddy());
}

QLabel *Operator::row(int index) const
{
    return group(window, "deviceStatusGroup")
        ->findChildren<QLabel *>(QStringLiteral("valueLabel"))
        .at(index);
}

QPushButton *Operator::stopZero() const
{
    return window.findChild<QPushButton *>(QStringLiteral("stopZeroButton"));
}

QPushButton *Operator::sendFrame() const
{
    return window.findChild<QPushButton *>(QStringLiteral("sendFrameButton"));
}

QPushButton *Operator::handshakeAgain() const
{
    return window.findChild<QPushButton *>(QStringLiteral("handshakeButton"));
}

QPlainTextEdit *Operator::logView() const
{
    return group(window, "logGroup")->findChild<QPlainTextEdit *>();
}

QLineEdit *Operator::manual() const
{
    return group(window, "logGroup")->findChild<QLineEdit *>();
}

QPushButton *Operator::sendHex() const
{
    return inReadingOrder<QPushButton>(group(window, "logGroup")).at(0);
}

QPushButton *Operator::clearLog() const
{
    return window.findChild<QPushButton *>(QStringLiteral("clearLogButton"));
}

QMediaPlayer *Operator::media() const
{
    return window.findChild<QMediaPlayer *>(QStringLiteral("mediaPlayer"));
}

QStringList Operator::log() const
{
    QStringList lines;
    const QString all = logView()->toPlainText();
    if (all.isEmpty())
        return lines;
    const QStringList stamped = all.split(u'\n');
    for (const QString &line : stamped)
        lines.append(line.mid(stampSize));
    return lines;
}

QStringList Operator::log(const char *tag) const
{
    const QString prefix = QString::fromLatin1(tag).leftJustified(6);
    QStringList messages;
    const QStringList lines = log();
    for (const QString &line : lines) {
        if (line.startsWith(prefix))
            messages.append(line.mid(6));
    }
    return messages;
}

int Operator::logCount(const QString &line) const
{
    return static_cast<int>(log().count(line));
}

QString Operator::lastLog() const
{
    const QStringList lines = log();
    return lines.isEmpty() ? QString() : lines.last();
}

bool Operator::everyLogLineIsStamped() const
{
    static const QRegularExpression line(
        QStringLiteral("^\\[([01]\\d|2[0-3]):[0-5]\\d:[0-5]\\d\\.\\d{3}\\] "
                       "(SYS  |ERR  |TX   |RX   |RETRY|WAIT |QUEUE|MEDIA) .+$"));
    const QStringList lines = logView()->toPlainText().split(u'\n', Qt::SkipEmptyParts);
    return std::all_of(lines.cbegin(), lines.cend(),
                       [](const QString &text) { return line.match(text).hasMatch(); });
}

QString Operator::statusBar() const
{
    return window.statusBar()->currentMessage();
}

int Operator::statusLifetimeMs() const
{
    const auto *timer = window.statusBar()->findChild<QTimer *>();
    return timer && timer->isActive() ? timer->interval() : 0;
}

bool Operator::lampIsLit() const
{
    return lamp()->styleSheet() == QLatin1String("background:#1479e8;border-radius:6px;");
}

void Operator::click(QAbstractButton *button) const
{
    QTest::mouseClick(button, Qt::LeftButton);
}

void Operator::setDemo(bool on) const
{
    QCheckBox *box = demo();
    if (box->isChecked() != on)
        QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
}

void Operator::choosePort(const QString &path) const
{
    click(refresh());
    ports()->setCurrentIndex(ports()->findData(path));
}

void Operator::type(QSpinBox *spin, int value) const
{
    spin->setFocus();
    spin->selectAll();
    QTest::keyClicks(spin, QString::number(value));
    QTest::keyClick(spin, Qt::Key_Tab);
}

void Operator::type(QLineEdit *edit, const QString &text) const
{
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

void Operator::drag(QSlider *slider, int fromValue, int toValue) const
{
    QTest::mousePress(slider, Qt::LeftButton, {}, handleAt(slider, fromValue));
    moveHandle(slider, toValue);
    letGo(slider);
}

void Operator::dragTo(QSlider *slider, int value) const
{
    drag(slider, slider->value(), value);
}

void Operator::grab(QSlider *slider) const
{
    QTest::mousePress(slider, Qt::LeftButton, {}, handleAt(slider, slider->value()));
}

// The handle does not stand exactly where the mouse holds it: a hand corrects the last pixels.
void Operator::moveHandle(QSlider *slider, int toValue) const
{
    constexpr int mostCorrections = 20;
    QPoint at = handleAt(slider, toValue);
    QTest::mouseMove(slider, at);
    for (int i = 0; i < mostCorrections && slider->sliderPosition() != toValue; ++i) {
        at.rx() += slider->sliderPosition() < toValue ? 1 : -1;
        QTest::mouseMove(slider, at);
    }
}

void Operator::letGo(QSlider *slider) const
{
    QTest::mouseRelease(slider, Qt::LeftButton, {}, handleAt(slider, slider->value()));
}

QString Operator::text(const QLabel *label)
{
    return label->text();
}

} // namespace qx::test
