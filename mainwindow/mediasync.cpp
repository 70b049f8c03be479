// SPDX-License-Identifier: MIT
// MainWindow, media sync: the loaded media follows play, pause, stop and seek.
// Owns mediaTargetPositionMs, mediaSeekWarningShown, mediaRepeatInProgress.
#include "mainwindow/frametime.h"
#include "mainwindow/mainwindow.h"
#include "widgets/playerpanel.h"

#include <QMediaPlayer>
#include <QUrl>
#include <QVideoWidget>

namespace qx {

namespace {

constexpr int noticeMs = 5000;

} // namespace

bool MainWindow::hasSelectedMedia() const
{
    return mediaPlayer && !selectedMediaPath.isEmpty() && !mediaPlayer->source().isEmpty();
}

// Invalid media is left alone: a player told to play it blocks for a second when it is next
// stopped.
void MainWindow::playSelectedMedia()
{
    if (!hasSelectedMedia() || mediaPlayer->mediaStatus() == QMediaPlayer::InvalidMedia)
        return;
    const qint64 duration = mediaPlayer->duration();
    if (mediaPlayer->mediaStatus() == QMediaPlayer::EndOfMedia ||
        (duration >= 1 && mediaPlayer->position() >= duration)) {
        mediaTargetPositionMs = 0;
        mediaPlayer->setPosition(0);
    }
    mediaPlayer->play();
}

void MainWindow::pauseSelectedMedia()
{
    if (hasSelectedMedia() && mediaPlayer->mediaStatus() != QMediaPlayer::InvalidMedia)
        mediaPlayer->pause();
}

void MainWindow::stopSelectedMedia()
{
    if (!mediaPlayer)
        return;
    mediaTargetPositionMs = 0;
    mediaPlayer->stop();
    if (!mediaPlayer->source().isEmpty())
        mediaPlayer->setPosition(0);
    if (mediaVideoWidget && !mediaIsVideo)
        mediaVideoWidget->hide();
}

void MainWindow::seekSelectedMedia(int frame)
{
    if (!hasSelectedMedia() || playerPanel->playbackState() != PlaybackState::Paused)
        return;
    mediaTargetPositionMs = mediaPositionForFrame(frame);
    switch (mediaPlayer->mediaStatus()) {
    case QMediaPlayer::NoMedia:
    case QMediaPlayer::LoadingMedia:
    case QMediaPlayer::InvalidMedia:
        return; // the target waits for the duration
    default:
        break;
    }
    if (mediaPlayer->isSeekable() || mediaTargetPositionMs < 1) {
        mediaPlayer->setPosition(mediaTargetPositionMs);
    } else if (!mediaSeekWarningShown) {
        mediaSeekWarningShown = true;
        showStatus(Language::text(UiText::MediaNotSeekable), noticeMs);
    }
}

qint64 MainWindow::mediaPositionForFrame(int frame) const
{
    return framePosition(frame, playerPanel ? playerPanel->intervalMs() : 1,
                         mediaPlayer ? mediaPlayer->duration() : 0);
}

void MainWindow::repeatMedia()
{
    if (mediaRepeatInProgress || !playerPanel ||
        playerPanel->playbackState() != PlaybackState::Playing)
        return;
    mediaRepeatInProgress = true;
    if (playerPanel->repeatEnabled()) {
        mediaTargetPositionMs = 0;
        mediaPlayer->setPosition(0);
        mediaPlayer->play();
    }
    mediaRepeatInProgress = false;
}

} // namespace qx
