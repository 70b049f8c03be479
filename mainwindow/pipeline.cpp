// SPDX-License-Identifier: MIT
// MainWindow, pipeline: one frame in flight, the newest one waiting behind it.
// Owns inFlightFrame, pendingFrame, ackRetries, ackTimer and the counters.
// Enter by transmitFrame(); every outcome leaves by finishPendingFrame().
#include "mainwindow/mainwindow.h"
#include "mainwindow/messagelifetimes.h"
#include "serial/serialcontroller.h"

#include <QTimer>

#include <chrono>
#include <utility>

namespace qx {

namespace {

constexpr std::chrono::milliseconds ackTimeout{800};
constexpr int retransmissionLimit = 2;
constexpr quint64 ackLineSize = 12; // "QXUSB RX OK" and its line feed

} // namespace

void MainWindow::transmitFrame(const QByteArray &frame)
{
    if (!Protocol::isValidControlFrame(frame)) {
        appendLog(QStringLiteral("ERR"), Language::text(UiText::FrameNotSentInvalid));
        return;
    }
    if (isDemo()) {
        transmitDemoFrame(frame);
    } else if (!serialController->isOpen()) {
        appendLog(QStringLiteral("ERR"), Language::text(UiText::FrameNotSentDisconnected));
    } else if (!usbLinked) {
        pendingFrame = frame;
        appendLog(QStringLiteral("WAIT"), Language::text(UiText::NotHandshakenFrameRetained));
        beginHandshake();
    } else if (inFlightFrame.isEmpty()) {
        inFlightFrame = frame;
        ackRetries = 0;
        sendPendingFrame(false);
    } else {
        pendingFrame = frame;
        appendLog(QStringLiteral("QUEUE"), Language::text(UiText::WaitingAckFrameReplaced));
    }
}

void MainWindow::transmitDemoFrame(const QByteArray &frame)
{
    txBytes += static_cast<quint64>(frame.size());
    rxBytes += ackLineSize;
    ++framesSucceeded;
    appendLog(QStringLiteral("TX"), Protocol::frameSummary(frame));
    appendLog(QStringLiteral("RX"), QStringLiteral("QXUSB RX OK  (DEMO)"));
    updateTrafficLabel();
}

void MainWindow::sendPendingFrame(bool retry)
{
    if (inFlightFrame.isEmpty() || !serialController->isOpen())
        return;
    if (retry) {
        if (ackRetries >= retransmissionLimit) {
            finishPendingFrame(false, Language::text(UiText::AckTimeout));
            return;
        }
        ++ackRetries;
    }
    appendLog(retry ? QStringLiteral("RETRY") : QStringLiteral("TX"),
              Protocol::frameSummary(inFlightFrame));
    if (serialController->send(inFlightFrame) < 0)
        finishPendingFrame(false, Language::text(UiText::SerialWriteFailed));
    else if (!inFlightFrame.isEmpty()) // the device can vanish while it is written to
        ackTimer->start(ackTimeout);
}

void MainWindow::finishPendingFrame(bool success, const QString &message)
{
    if (success && inFlightFrame.isEmpty())
        return;
    ackTimer->stop();
    inFlightFrame.clear();
    ++(success ? framesSucceeded : framesFailed);
    updateTrafficLabel();
    showStatus(Language::text(UiText::ResultWithCounts)
                   .arg(message, QString::number(framesSucceeded), QString::number(framesFailed)),
               lifetimes::frameOutcome);
    if (!pendingFrame.isEmpty() && (usbLinked || isDemo()))
        offerAgain(std::exchange(pendingFrame, {}));
}

// On the next turn of the event loop, so that reply, outcome and next write do not nest. Until then
// the frame holds its place: no step may slip in before it.
void MainWindow::offerAgain(const QByteArray &frame)
{
    ++framesToOffer;
    QTimer::singleShot(0, this, [this, frame] {
        --framesToOffer;
        transmitFrame(frame);
        tellMedia();
    });
}

bool MainWindow::isLineBusy() const
{
    return !isDemo() && (!inFlightFrame.isEmpty() || framesToOffer > 0);
}

void MainWindow::releasePendingFrame()
{
    if (!pendingFrame.isEmpty() && inFlightFrame.isEmpty())
        transmitFrame(std::exchange(pendingFrame, {}));
}

void MainWindow::requeueInFlightFrame()
{
    if (!inFlightFrame.isEmpty())
        pendingFrame = std::exchange(inFlightFrame, {});
    ackTimer->stop();
}

void MainWindow::clearFrames()
{
    ackTimer->stop();
    inFlightFrame.clear();
    pendingFrame.clear();
}

void MainWindow::handleAckTimeout()
{
    if (!inFlightFrame.isEmpty())
        sendPendingFrame(true);
}

void MainWindow::sendCurrentFrame()
{
    bool ok = false;
    const ControlFrame frame = outgoingFrame(&ok);
    if (!ok) {
        appendLog(QStringLiteral("ERR"), Language::text(UiText::FrameNotSentReserved));
        return;
    }
    transmitFrame(Protocol::encodeControlFrame(frame));
}

void MainWindow::countReceived(const QByteArray &data)
{
    rxBytes += static_cast<quint64>(data.size());
    updateTrafficLabel();
}

void MainWindow::countTransmitted(qint64 count)
{
    txBytes += static_cast<quint64>(count);
    updateTrafficLabel();
}

} // namespace qx
