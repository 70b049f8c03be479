// SPDX-License-Identifier: MIT
#include "tests/support/operator.h"

#include "tests/support/finding.h"
#include "tests/support/grips.h"

#include <QAction>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <algorithm>

namespace qx::test {

namespace {

constexpr qsizetype stampSize = 15; // "[HH:mm:ss.zzz] "

} // namespace

Operator::Operator(MainWindow &window)
    : window(window)
    , onPanel(*panel())
{}

QAbstractButton *Operator::navigation(const char *name) const
{
    return window.findChild<QToolButton *>(QLatin1String(name));
}

PlayerPanel *Operator::panel() const
{
    return window.findChild<PlayerPanel *>();
}

QComboBox *Operator::ports() const
{
    return captionedBy<QComboBox>(window, "portCaption");
}

QComboBox *Operator::hostSettings() const
{
    return captionedBy<QComboBox>(window, "hostCaption");
}

QPushButton *Operator::refresh() const
{
    return nameless<QPushButton>(group("connectionGroup")).value(0);
}

QPushButton *Operator::connectButton() const
{
    return window.findChild<QPushButton *>(QStringLiteral("primaryButton"));
}

QCheckBox *Operator::demo() const
{
    return group("connectionGroup").findChild<QCheckBox *>();
}

QLabel *Operator::lamp() const
{
    return nameless<QLabel>(group("connectionGroup")).value(0);
}

QLabel *Operator::linkText() const
{
    return nameless<QLabel>(group("connectionGroup")).value(1);
}

QSpinBox *Operator::header() const
{
    return spokenAs<QSpinBox>(group("frameGroup"), QStringLiteral("HY"));
}

QSpinBox *Operator::frame() const
{
    return spokenAs<QSpinBox>(group("frameGroup"), QStringLiteral("Frame"));
}

QSpinBox *Operator::total() const
{
    return spokenAs<QSpinBox>(group("frameGroup"), QStringLiteral("Total"));
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
    return captionedBy<QLineEdit>(window, "reservedCaption");
}

QLineEdit *Operator::summary() const
{
    return captionedBy<QLineEdit>(window, "completeFrameCaption");
}

QLabel *Operator::row(int index) const
{
    return group("deviceStatusGroup")
        .findChildren<QLabel *>(QStringLiteral("valueLabel"))
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
    return group("logGroup").findChild<QPlainTextEdit *>();
}

QLineEdit *Operator::manual() const
{
    return group("logGroup").findChild<QLineEdit *>();
}

QPushButton *Operator::sendHex() const
{
    return nameless<QPushButton>(group("logGroup")).value(0);
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
        QTest::mouseClick(box, Qt::LeftButton, {}, boxOf(box));
}

void Operator::choosePort(const QString &path) const
{
    click(refresh());
    ports()->setCurrentIndex(ports()->findData(path));
}

void Operator::chooseLanguage(UiLanguage language) const
{
    window
        .findChild<QAction *>(language == UiLanguage::English
                                  ? QStringLiteral("languageEnglishAction")
                                  : QStringLiteral("languageChineseAction"))
        ->trigger();
}

void Operator::typeLevels(int redLevel, int greenLevel, int blueLevel, int whiteLevel) const
{
    type(red(), redLevel);
    type(green(), greenLevel);
    type(blue(), blueLevel);
    type(white(), whiteLevel);
}

void Operator::offer(int hy) const
{
    type(header(), hy);
    click(sendFrame());
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
    QTest::mousePress(slider, Qt::LeftButton, {}, handleOf(slider, fromValue));
    moveHandle(slider, toValue);
    letGo(slider);
}

void Operator::dragTo(QSlider *slider, int value) const
{
    drag(slider, slider->value(), value);
}

void Operator::grab(QSlider *slider) const
{
    QTest::mousePress(slider, Qt::LeftButton, {}, handleOf(slider, slider->value()));
}

// The handle does not stand exactly where the mouse holds it: a hand corrects the last pixels.
void Operator::moveHandle(QSlider *slider, int toValue) const
{
    constexpr int mostCorrections = 20;
    QPoint at = handleOf(slider, toValue);
    QTest::mouseMove(slider, at);
    for (int i = 0; i < mostCorrections && slider->sliderPosition() != toValue; ++i) {
        at.rx() += slider->sliderPosition() < toValue ? 1 : -1;
        QTest::mouseMove(slider, at);
    }
}

void Operator::letGo(QSlider *slider) const
{
    QTest::mouseRelease(slider, Qt::LeftButton, {}, handleOf(slider, slider->value()));
}

QGroupBox &Operator::group(const char *name) const
{
    return *window.findChild<QGroupBox *>(QLatin1String(name));
}

} // namespace qx::test
