// SPDX-License-Identifier: MIT
// MainWindow, playback: play, pause, stop, the step of each interval, the seek slider.
// Owns playbackTimer, resumeAfterSeek and stopFollows. The state itself lives in the player panel,
// the frame number in the current-frame editor.
#include "mainwindow/mainwindow.h"
#include "widgets/playerpanel.h"

#include <QSpinBox>
#include <QTimer>

#include <utility>

namespace qx {

bool MainWindow::canPlay() const
{
    return isUsbTransmissionReady() || hasSelectedMedia();
}

void MainWindow::refusePlayback()
{
    appendLog(QStringLiteral("ERR"), Language::text(UiText::CompleteHandshakeFirst));
}

void MainWindow::startPlaybackTimer()
{
    playbackTimer->start(playerPanel->intervalMs());
}

void MainWindow::startPlayback()
{
    if (!canPlay())
        return refusePlayback();
    finishTotal();
    restoreConfiguredRgbwForPlayback();
    playerPanel->setPlaybackState(PlaybackState::Playing);
    startPlaybackTimer();
    playSelectedMedia();
    updateLocalStatus();
    updateFramePreview();
    if (isUsbTransmissionReady())
        sendCurrentFrame();
    else
        appendLog(QStringLiteral("MEDIA"), Language::text(UiText::MediaWithoutUsb));
}

void MainWindow::pausePlayback()
{
    if (!canPlay())
        return refusePlayback();
    const bool ready = isUsbTransmissionReady();
    playerPanel->setPlaybackState(PlaybackState::Paused);
    playbackTimer->setInterval(playerPanel->intervalMs());
    if (ready)
        playbackTimer->start();
    else
        playbackTimer->stop();
    pauseSelectedMedia();
    updateLocalStatus();
    updateFramePreview();
    if (ready) {
        sendCurrentFrame();
        appendLog(QStringLiteral("SYS"), Language::text(UiText::PausedResending));
    }
}

void MainWindow::stopPlayback(bool resendStopFrame)
{
    stopSelectedMedia();
    if (!playerPanel || !frameSpin) {
        playbackTimer->stop();
        return;
    }
    playerPanel->setPlaybackState(PlaybackState::Stopped);
    frameSpin->setValue(0);
    playerPanel->setCurrentFrame(0);
    if (resendStopFrame)
        zeroRgbwForStop();
    updateLocalStatus();
    updateFramePreview();
    const bool sends = resendStopFrame && isUsbTransmissionReady();
    stopFollows = resendStopFrame && !sends && !pendingFrame.isEmpty();
    if (!sends) {
        playbackTimer->stop();
        resumeAfterSeek = false; // the line may be lost while the slider is held
        return;
    }
    startPlaybackTimer();
    sendCurrentFrame();
    appendLog(QStringLiteral("SYS"), Language::text(UiText::StoppedResendingZero));
}

// A frame that waited for the handshake has just gone out, and it may be lit; but Stop was pressed
// meanwhile.
void MainWindow::followWithStop()
{
    if (!std::exchange(stopFollows, false) ||
        playerPanel->playbackState() != PlaybackState::Stopped)
        return;
    startPlaybackTimer();
    appendLog(QStringLiteral("SYS"), Language::text(UiText::StoppedResendingZero));
}

void MainWindow::playbackTick()
{
    const PlaybackState state = playerPanel->playbackState();
    if (state == noPlaybackState)
        return;
    if (!isDemo() && !inFlightFrame.isEmpty())
        return;
    if (state == PlaybackState::Playing) {
        const int frame = frameSpin->value();
        const bool atEnd = frame >= lastFrame();
        if (atEnd && !playerPanel->repeatEnabled()) {
            stopPlayback(true);
            return;
        }
        frameSpin->setValue(atEnd ? 0 : frame + 1);
    }
    if (isUsbTransmissionReady())
        sendCurrentFrame();
}

void MainWindow::chooseFile(int index)
{
    headerSpin->setValue(index);
    frameSpin->setValue(0);
    if (isUsbTransmissionReady())
        sendCurrentFrame();
}

void MainWindow::changeInterval(int ms)
{
    if (playbackTimer->isActive())
        playbackTimer->start(ms);
    else
        playbackTimer->setInterval(ms);
    updateLocalStatus();
}

void MainWindow::beginSeek()
{
    resumeAfterSeek = playbackTimer->isActive();
    playbackTimer->stop();
}

void MainWindow::previewSeek(int frame)
{
    frameSpin->setValue(frame);
    if (playerPanel->playbackState() == PlaybackState::Paused)
        seekSelectedMedia(frame);
}

void MainWindow::finishSeek(int frame)
{
    previewSeek(frame);
    if (isUsbTransmissionReady())
        sendCurrentFrame();
    if (playerPanel->playbackState() == PlaybackState::Playing || resumeAfterSeek)
        startPlaybackTimer();
    resumeAfterSeek = false;
}

} // namespace qx
