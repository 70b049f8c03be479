// SPDX-License-Identifier: MIT
// MainWindow, playback: play, pause, stop, the step of each interval, the seek slider.
// Owns playbackTimer, resumeAfterSeek and stopFollows. The state itself lives in the player panel,
// the frame number in the current-frame editor.
#include "mainwindow/mainwindow.h"
#include "serial/serialcontroller.h"
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
    takeTypedNumbers();
    restoreConfiguredRgbwForPlayback();
    stopFollows = false;
    playerPanel->setPlaybackState(PlaybackState::Playing);
    startPlaybackTimer();
    updateLocalStatus();
    updateFramePreview();
    requestMedia(&MainWindow::playSelectedMedia);
    if (isUsbTransmissionReady())
        sendCurrentFrame();
    else
        appendLog(QStringLiteral("MEDIA"), Language::text(UiText::MediaWithoutUsb));
    tellMedia();
}

void MainWindow::pausePlayback()
{
    if (!canPlay())
        return refusePlayback();
    const bool ready = isUsbTransmissionReady();
    stopFollows = false;
    playerPanel->setPlaybackState(PlaybackState::Paused);
    playbackTimer->setInterval(playerPanel->intervalMs());
    if (ready)
        playbackTimer->start();
    else
        playbackTimer->stop();
    updateLocalStatus();
    updateFramePreview();
    requestMedia(&MainWindow::pauseSelectedMedia);
    if (ready) {
        sendCurrentFrame();
        appendLog(QStringLiteral("SYS"), Language::text(UiText::PausedResending));
    }
    tellMedia();
}

void MainWindow::stopPlayback(bool resendStopFrame)
{
    if (!playerPanel || !frameSpin) {
        playbackTimer->stop();
        stopSelectedMedia();
        return;
    }
    playerPanel->setPlaybackState(PlaybackState::Stopped);
    frameSpin->setValue(0);
    playerPanel->setCurrentFrame(0);
    const bool keepsLevels = resendStopFrame && zeroRgbwForStop();
    updateLocalStatus();
    updateFramePreview();
    const bool sends = resendStopFrame && isUsbTransmissionReady();
    stopFollows = resendStopFrame && !sends && serialController->isOpen();
    requestMedia(&MainWindow::stopSelectedMedia);
    if (sends) {
        resendStopped();
    } else {
        playbackTimer->stop();
        resumeAfterSeek = false; // the line may be lost while the slider is held
    }
    tellMedia();
    if (keepsLevels) // writing them may take its time: the frame is out by now
        persistConfiguredRgbw();
}

void MainWindow::resendStopped()
{
    startPlaybackTimer();
    sendCurrentFrame();
    appendLog(QStringLiteral("SYS"), Language::text(UiText::StoppedResendingZero));
}

// Stop was pressed while there was no handshake: now that it is complete the player is to end dark,
// whatever waited for it and may be lit.
void MainWindow::followWithStop()
{
    if (std::exchange(stopFollows, false))
        resendStopped();
}

void MainWindow::playbackTick()
{
    const PlaybackState state = playerPanel->playbackState();
    if (state == noPlaybackState)
        return;
    if (isLineBusy())
        return;
    if (state == PlaybackState::Playing) {
        const int frame = frameSpin->value();
        const bool atEnd = frame >= totalSpin->value();
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
