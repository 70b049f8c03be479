// SPDX-License-Identifier: MIT
// MainWindow, media sync: the loaded media follows play, pause, stop and seek.
// Owns mediaTargetPositionMs, mediaSeekWarningShown and mediaRepeatInProgress.
#include "mainwindow/mainwindow.h"
#include "mainwindow/messagelifetimes.h"
#include "media/frametime.h"
#include "media/mediatransport.h"
#include "widgets/playerpanel.h"

#include <QMediaPlayer>
#include <QUrl>
#include <QVideoWidget>

namespace qx {

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
    mediaTargetPositionMs = 0;
    mediaTransport->stop();
    if (mediaVideoWidget && !mediaIsVideo)
        mediaVideoWidget->hide();
}

void MainWindow::seekSelectedMedia(int frame)
{
    if (!hasSelectedMedia() || playerPanel->playbackState() != PlaybackState::Paused)
        return;
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
