// SPDX-License-Identifier: MIT
// MainWindow, media sync: the loaded media follows play, pause, stop and seek.
// Owns mediaTargetPositionMs, mediaSeekWarningShown, mediaRepeatInProgress, and what is due while a
// picture is on its way.
#include "mainwindow/frametime.h"
#include "mainwindow/mainwindow.h"
#include "widgets/playerpanel.h"

#include <QMediaPlayer>
#include <QTimer>
#include <QUrl>
#include <QVideoSink>
#include <QVideoWidget>

#include <utility>

namespace qx {

namespace {

constexpr int noticeMs = 5000;
constexpr int pictureMs = 300; // a picture is waited for no longer
constexpr int settlingMs = 10; // after its arrival, until the backend has gone on

} // namespace

bool MainWindow::hasSelectedMedia() const
{
    return mediaPlayer && !selectedMediaPath.isEmpty() && !mediaPlayer->source().isEmpty();
}

// Invalid media is left alone: a player told to play it blocks for a second when it is next
// stopped.
void MainWindow::playSelectedMedia()
{
    if (!hasSelectedMedia())
        return;
    settleMedia();
    if (mediaPlayer->mediaStatus() == QMediaPlayer::InvalidMedia)
        return;
    const qint64 duration = mediaPlayer->duration();
    if (mediaPlayer->mediaStatus() == QMediaPlayer::EndOfMedia ||
        (duration >= 1 && mediaPlayer->position() >= duration)) {
        mediaTargetPositionMs = 0;
        mediaPlayer->setPosition(0);
    }
    mediaFailed = false;
    mediaPlayer->play();
}

void MainWindow::pauseSelectedMedia()
{
    if (!hasSelectedMedia())
        return;
    settleMedia();
    if (mediaPlayer->mediaStatus() != QMediaPlayer::InvalidMedia)
        mediaPlayer->pause();
}

void MainWindow::stopSelectedMedia()
{
    if (!mediaPlayer)
        return;
    mediaTargetPositionMs = 0;
    if (mediaPlayer->hasVideo() && mediaPlayer->playbackState() == QMediaPlayer::PlayingState) {
        mediaPlayer->pause();
        mediaPictureTimer->start(pictureMs);
    }
    requestMedia(mediaStopDue);
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
        requestMedia(mediaSeekDue);
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

// What has no length (a picture, an empty recording) or has just failed would end again at once,
// for ever.
void MainWindow::repeatMedia()
{
    if (mediaRepeatInProgress || !playerPanel ||
        playerPanel->playbackState() != PlaybackState::Playing)
        return;
    mediaRepeatInProgress = true;
    if (playerPanel->repeatEnabled()) {
        mediaTargetPositionMs = 0;
        mediaPlayer->setPosition(0);
        if (!mediaFailed && mediaPlayer->duration() > 0)
            mediaPlayer->play();
    }
    mediaRepeatInProgress = false;
}

// The backend hands each picture of a video to this thread and waits until it is taken. A call that
// waits for the backend while a picture is on its way makes both wait for 0.3 s, in which no frame
// is sent. Pausing and seeking bring such a picture, so what would wait for the backend then (stop,
// seek, another source) waits for the picture instead; of several seeks the last one counts.
void MainWindow::watchMediaPictures()
{
    mediaPictureTimer = new QTimer(mediaPlayer);
    mediaPictureTimer->setSingleShot(true);
    connect(mediaPictureTimer, &QTimer::timeout, this, &MainWindow::settleMedia);
    connect(mediaVideoWidget->videoSink(), &QVideoSink::videoFrameChanged, mediaPictureTimer,
            [timer = mediaPictureTimer] {
                if (timer->isActive())
                    timer->start(settlingMs);
            });
}

// `due` is one of the three flags. Without a picture on its way the request is met at once.
void MainWindow::requestMedia(bool &due)
{
    due = true;
    if (!mediaPictureTimer->isActive())
        settleMedia();
}

void MainWindow::settleMedia()
{
    mediaPictureTimer->stop();
    if (std::exchange(mediaStopDue, false)) {
        mediaSeekDue = false;
        stopMedia();
    }
    if (std::exchange(mediaSourceDue, false))
        setMediaSource();
    if (std::exchange(mediaSeekDue, false)) {
        mediaTargetApplied = mediaTargetApplied || mediaPlayer->isSeekable();
        mediaPlayer->setPosition(mediaTargetPositionMs);
        if (mediaPlayer->hasVideo())
            mediaPictureTimer->start(pictureMs);
    }
}

// Media stopped before its length was known would end at once when it is next played: it is loaded
// again.
void MainWindow::stopMedia()
{
    const bool started = mediaPlayer->playbackState() != QMediaPlayer::StoppedState;
    mediaPlayer->stop();
    if (mediaPlayer->source().isEmpty())
        return;
    if (started && mediaPlayer->duration() < 1 &&
        mediaPlayer->mediaStatus() == QMediaPlayer::LoadedMedia)
        setMediaSource();
    else
        mediaPlayer->setPosition(0);
}

} // namespace qx
