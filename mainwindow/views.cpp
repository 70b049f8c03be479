// SPDX-License-Identifier: MIT
// MainWindow, views: the status rows, the traffic row, the log, the pace of painting.
#include "mainwindow/mainwindow.h"
#include "widgets/playerpanel.h"

#include <QDateTime>
#include <QEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSpinBox>
#include <QStatusBar>
#include <QTimer>

namespace qx {

namespace {

constexpr qsizetype channelWidth = 5;
constexpr qint64 paintIntervalMs = 16; // 60 Hz

// A log entry stays one line, whatever a device or a file name puts into it.
QString onOneLine(QString message)
{
    message.replace(u'\n', QChar(0x240A)); // the visible symbols of the two characters
    message.replace(u'\r', QChar(0x240D));
    message.replace(QChar::LineSeparator, u' ');
    message.replace(QChar::ParagraphSeparator, u' ');
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
    statusBar()->showMessage(message, lifetimeMs);
}

// Painting keeps to the pace of a screen: with a fast device every frame would repaint the
// window, and painting is what limits the frame rate then. What the widgets hold is always up to
// date; only its painting waits, one paint interval at most.
bool MainWindow::event(QEvent *event)
{
    if (event->type() == QEvent::UpdateRequest) {
        const qint64 wait = sincePainting.isValid() ? paintIntervalMs - sincePainting.elapsed() : 0;
        if (wait > 0) {
            if (!paintTimer->isActive())
                paintTimer->start(static_cast<int>(wait));
            return true;
        }
        paintTimer->stop();
        sincePainting.start();
    }
    return QMainWindow::event(event);
}

} // namespace qx
