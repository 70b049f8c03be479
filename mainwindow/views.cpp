// SPDX-License-Identifier: MIT
// MainWindow, views: the status rows, the traffic row, the log, the pace of the screen.
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

namespace qx {

namespace {

constexpr qsizetype channelWidth = 5;

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
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("HH:mm:ss.zzz"));
    logView->appendPlainText(
        QStringLiteral("[%1] %2 %3")
            .arg(time, channel.leftJustified(channelWidth, u' ', true), onOneLine(message)));
    QScrollBar *scrollBar = logView->verticalScrollBar();
    scrollBar->setValue(scrollBar->maximum());
}

void MainWindow::updateLocalStatus()
{
    if (!playerPanel || !frameSpin)
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
    statusValueLabels.at(6)->setText(QStringLiteral("TX %1 B / RX %2 B · OK %3 / FAIL %4")
                                         .arg(QString::number(txBytes), QString::number(rxBytes),
                                              QString::number(framesSucceeded),
                                              QString::number(framesFailed)));
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
    for (QWidget *widget : {static_cast<QWidget *>(logView), static_cast<QWidget *>(frameSpin),
                            static_cast<QWidget *>(completeFrameEdit)}) {
        QFont font = widget->font();
        font.setStyleStrategy(QFont::PreferNoShaping);
        widget->setFont(font);
    }
}

void MainWindow::holdScreenPace()
{
    new ScreenPace(this);
    statusLayout = new SteadyLayout(statusValueLabels.first()->parentWidget());
}

} // namespace qx
