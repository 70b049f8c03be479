// SPDX-License-Identifier: MIT
// MainWindow, media sync: the loaded media follows play, pause, stop and seek.
// Owns mediaTargetPositionMs, mediaSeekWarningShown, mediaRepeatInProgress and what the media is to
// be told after the frames.
#include "mainwindow/mainwindow.h"
#include "mainwindow/messagelifetimes.h"
#include "media/frametime.h"
#include "media/mediatransport.h"
#include "widgets/playerpanel.h"

#include <QMediaPlayer>
#include <QTimer>
#include <QUrl>
#include <QVideoWidget>

#include <chrono>
#include <utility>

namespace qx {

namespace {

constexpr std::chrono::milliseconds framePatience{100};

} // namespace

bool MainWindow::hasSelectedMedia() const
{
    return mediaPlayer && !selectedMediaPath.isEmpty() && !mediaPlayer->source().isEmpty();
}

void MainWindow::playSelectedMedia()
{
    if (!hasSelectedMedia())
        return;
    if (mediaTransport->hasEnded())
        mediaTargetPositionMs = 0;
    mediaTransport->play();
}

void MainWindow::pauseSelectedMedia()
{
    if (hasSelectedMedia())
        mediaTransport->pause();
}

void MainWindow::stopSelectedMedia()
{
    if (!mediaPlayer)
        return;
    mediaRequest = nullptr; // what was asked for before has no say any more
    mediaTargetPositionMs = 0;
    mediaTransport->stop();
    if (mediaVideoWidget && !mediaIsVideo)
        mediaVideoWidget->hide();
}

void MainWindow::seekSelectedMedia(int frame)
{
    if (!hasSelectedMedia() || playerPanel->playbackState() != PlaybackState::Paused)
        return;
    tellMediaNow(); // the pause that comes first
    mediaTargetPositionMs = mediaPositionForFrame(frame);
    if (mediaTransport->seek(mediaTargetPositionMs) || mediaSeekWarningShown)
        return;
    mediaSeekWarningShown = true;
    showStatus(Language::text(UiText::MediaNotSeekable), lifetimes::notice);
}

qint64 MainWindow::mediaPositionForFrame(int frame) const
{
    return framePosition(frame, playerPanel ? playerPanel->intervalMs() : 1,
                         mediaPlayer ? mediaTransport->durationMs() : 0);
}

// Frames before media: an audio server, a disk or a backend that hangs keeps this thread for as
// long as it hangs, so the player gets its frame before the media is told anything.
void MainWindow::requestMedia(MediaCall call)
{
    mediaRequest = call;
    ++mediaRequestNumber;
}

void MainWindow::tellMedia()
{
    const bool frameWaits =
        isUsbTransmissionReady() && (!pendingFrame.isEmpty() || framesToOffer > 0);
    if (!frameWaits) {
        tellMediaNow();
        return;
    }
    QTimer::singleShot(framePatience, Qt::PreciseTimer, this, [this, number = mediaRequestNumber] {
        if (number == mediaRequestNumber)
            tellMediaNow();
    });
}

void MainWindow::tellMediaNow()
{
    if (const auto call = std::exchange(mediaRequest, nullptr))
        (this->*call)();
}

void MainWindow::repeatMedia()
{
    if (mediaRepeatInProgress || !playerPanel ||
        playerPanel->playbackState() != PlaybackState::Playing)
        return;
    mediaRepeatInProgress = true;
    if (playerPanel->repeatEnabled()) {
        mediaTargetPositionMs = 0;
        mediaTransport->playAgain();
    }
    mediaRepeatInProgress = false;
}

} // namespace qx
