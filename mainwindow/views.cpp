// SPDX-License-Identifier: MIT
// MainWindow, views: the status rows, the traffic row, the log, the pace of the screen.
#include "mainwindow/loglayout.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/screenpace.h"
#include "mainwindow/steadylayout.h"
#include "widgets/playerpanel.h"

#include <QDateTime>
#include <QEvent>
#include <QFont>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSpinBox>
#include <QStatusBar>
#include <QStringBuilder>

#include <utility>

namespace qx {

namespace {

constexpr qsizetype channelWidth = 5;
constexpr int readableLines = 16; // between two paintings: a thousand a second

// Line, paragraph, and the two marks at which Qt's text documents break a line as well.
constexpr char16_t otherSeparators[] = {0x2028, 0x2029, 0xfdd0, 0xfdd1};

// A log entry stays one line, whatever a device or a file name puts into it.
QString onOneLine(QString message)
{
    message.replace(u'\n', QChar(0x240A)); // the visible symbols of the two characters
    message.replace(u'\r', QChar(0x240D));
    for (const char16_t separator : otherSeparators)
        message.replace(QChar(separator), u' ');
    return message;
}

} // namespace

void MainWindow::appendLog(const QString &channel, const QString &message, const QString &detail)
{
    Q_UNUSED(detail)
    if (!logView)
        return;
    ++newLogLines;
    const bool first = logLayout->append(u'[' % timeStamp() % u"] " %
                                         channel.leftJustified(channelWidth, u' ', true) % u' ' %
                                         onOneLine(message));
    if (!logRushes || newLogLines <= readableLines || !logView->isVisible())
        catchUpLog();
    else if (first)
        logView->viewport()->update(); // and prepareLog() before that
}

// Local time is looked up once a second: the system reads its time zone again each time.
QString MainWindow::timeStamp()
{
    constexpr qint64 second = 1000;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (now / second != stampedSecond) {
        stampedSecond = now / second;
        stampOfSecond = QDateTime::fromMSecsSinceEpoch(now).toString(QStringLiteral("HH:mm:ss."));
    }
    return stampOfSecond + QString::number(now % second).rightJustified(3, u'0');
}

void MainWindow::catchUpLog()
{
    QScrollBar *scrollBar = logView->verticalScrollBar();
    if (logLayout->catchUp())
        scrollBar->setValue(scrollBar->maximum());
}

// Of lines that come faster than anyone can read, all but the first few are laid out together from
// now on.
void MainWindow::prepareLog()
{
    catchUpLog();
    logRushes = std::exchange(newLogLines, 0) > readableLines;
}

void MainWindow::keepLogAtEnd()
{
    QScrollBar *scrollBar = logView->verticalScrollBar();
    connect(scrollBar, &QScrollBar::valueChanged, this,
            [this, scrollBar](int value) { logAtEnd = value == scrollBar->maximum(); });
    connect(scrollBar, &QScrollBar::rangeChanged, this, [this, scrollBar](int, int maximum) {
        if (logAtEnd)
            scrollBar->setValue(maximum);
    });
}

void MainWindow::updateLocalStatus()
{
    if (!playerPanel || !headerSpin || !frameSpin || !totalSpin)
        return;
    const bool zero = showsZeroFrame();
    const RgbwLevels levels = zero ? RgbwLevels{} : rgbwFromEditors();
    const auto number = [](int value) { return QString::number(value); };
    statusValueLabels.at(2)->setText(Protocol::playbackStateText(playerPanel->playbackState()));
    statusValueLabels.at(3)->setText(number(headerSpin->value()));
    statusValueLabels.at(4)->setText(QStringLiteral("%1 / %2").arg(
        number(zero ? 0 : frameSpin->value()), number(totalSpin->value())));
    statusValueLabels.at(5)->setText(QStringLiteral("%1 / %2 / %3 / %4")
                                         .arg(number(levels.red), number(levels.green),
                                              number(levels.blue), number(levels.white)));
}

void MainWindow::updateTrafficLabel()
{
    const auto number = [](quint64 value) { return QString::number(value); };
    statusValueLabels.at(6)->setText(u"TX " % number(txBytes) % u" B / RX " % number(rxBytes) %
                                     u" B · OK " % number(framesSucceeded) % u" / FAIL " %
                                     number(framesFailed));
}

void MainWindow::showStatus(const QString &message, int lifetimeMs)
{
    // The bar ignores a message that it shows already: cleared, it lives its whole time again.
    if (statusBar()->currentMessage() == message)
        statusBar()->clearMessage();
    // A new message would be painted at once, before anything else of the frame happens.
    statusBar()->setUpdatesEnabled(false);
    statusBar()->showMessage(message, lifetimeMs);
    statusBar()->setUpdatesEnabled(true);
}

// Nothing here has a status tip; the empty one of a menu would wipe out the message that stands
// in the status bar.
bool MainWindow::event(QEvent *event)
{
    return event->type() == QEvent::StatusTip || QMainWindow::event(event);
}

// These change with every frame, and a text is laid out when it changes. Shaping, which joins and
// kerns letters, is more than half of that and does nothing for digits and short words.
void MainWindow::lightenFrameTexts()
{
    QWidgetList widgets{logView, frameSpin->findChild<QLineEdit *>(), completeFrameEdit};
    widgets += playerPanel->frameDisplays();
    for (QLabel *value : statusValueLabels)
        widgets.append(value);
    for (QWidget *widget : widgets) {
        QFont font = widget->font();
        font.setStyleStrategy(QFont::PreferNoShaping);
        widget->setFont(font);
    }
}

void MainWindow::holdScreenPace()
{
    auto *pace = new ScreenPace(this);
    connect(pace, &ScreenPace::due, this, &MainWindow::prepareLog);
    statusLayout = new SteadyLayout(statusValueLabels.first()->parentWidget());
}

} // namespace qx
