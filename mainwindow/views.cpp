// SPDX-License-Identifier: MIT
// MainWindow, views: the status rows, the traffic row, the log, the pace of the screen.
#include "mainwindow/mainwindow.h"
#include "widgets/logview.h"
#include "widgets/paintthrottle.h"
#include "widgets/playerpanel.h"
#include "widgets/steadylayout.h"
#include "widgets/valuelabel.h"

#include <QEvent>
#include <QLabel>
#include <QSpinBox>
#include <QStatusBar>
#include <QStringBuilder>

namespace qx {

void MainWindow::appendLog(const QString &channel, const QString &message, const QString &detail)
{
    Q_UNUSED(detail)
    if (logView)
        logView->appendEntry(channel, message);
}

void MainWindow::updateLocalStatus()
{
    if (!playerPanel || !headerSpin || !frameSpin || !totalSpin || !redSpin || !greenSpin ||
        !blueSpin || !whiteSpin || !reservedEdit)
        return;
    const ControlFrame frame = outgoingFrame(nullptr);
    const auto number = [](int value) { return QString::number(value); };
    statusValueLabels.at(2)->showValue(Protocol::playbackStateText(playerPanel->playbackState()));
    statusValueLabels.at(3)->showValue(number(headerSpin->value()));
    statusValueLabels.at(4)->showValue(
        QStringLiteral("%1 / %2").arg(number(frame.frame), number(totalSpin->value())));
    statusValueLabels.at(5)->showValue(
        QStringLiteral("%1 / %2 / %3 / %4")
            .arg(number(frame.red), number(frame.green), number(frame.blue), number(frame.white)));
}

void MainWindow::updateTrafficLabel()
{
    const auto number = [](quint64 value) { return QString::number(value); };
    statusValueLabels.at(6)->showValue(u"TX " % number(txBytes) % u" B / RX " % number(rxBytes) %
                                       u" B · OK " % number(framesSucceeded) % u" / FAIL " %
                                       number(framesFailed));
}

void MainWindow::showStatus(const QString &message, std::chrono::milliseconds lifetime)
{
    // The bar ignores a message that it shows already: cleared, it lives its whole time again.
    if (statusBar()->currentMessage() == message)
        statusBar()->clearMessage();
    // A new message would be painted at once, before anything else of the frame happens.
    statusBar()->setUpdatesEnabled(false);
    statusBar()->showMessage(message, static_cast<int>(lifetime.count()));
    statusBar()->setUpdatesEnabled(true);
}

// Nothing here has a status tip; the empty one of a menu would wipe out the message that stands
// in the status bar.
bool MainWindow::event(QEvent *event)
{
    return event->type() == QEvent::StatusTip || QMainWindow::event(event);
}

void MainWindow::throttlePainting()
{
    auto *throttle = new PaintThrottle(this);
    connect(throttle, &PaintThrottle::aboutToPaint, logView, &LogView::prepareToPaint);
    new SteadyLayout(statusValueLabels.first()->parentWidget());
}

} // namespace qx
