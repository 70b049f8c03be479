// SPDX-License-Identifier: MIT
#include "media/mediatransport.h"

#include <QAudioDevice>
#include <QAudioOutput>
#include <QMediaDevices>
#include <QThread>
#include <QUrl>
#include <QVideoSink>

#include <algorithm>
#include <chrono>
#include <utility>

namespace qx {

namespace {

using namespace std::chrono_literals;

constexpr auto pictureWait = 300ms; // the backend's own patience
constexpr auto settling = 10ms;     // after a picture, until the backend has gone on

} // namespace

MediaTransport::MediaTransport(QMediaPlayer *player, QVideoSink *pictures, QObject *parent)
    : QObject(parent)
    , player(player)
    , picturesByThread(std::make_shared<std::atomic_bool>(false))
{
    pictureTimer.setSingleShot(true);
    connect(&pictureTimer, &QTimer::timeout, this, &MediaTransport::settle);
    watchPlayer();
    watchPictures(pictures);
}

void MediaTransport::watchPlayer()
{
    connect(player, &QMediaPlayer::durationChanged, this, [this](qint64 ms) {
        if (leaving || ms < 1)
            return;
        applyTarget();
        emit ready(ms);
    });
    connect(player, &QMediaPlayer::seekableChanged, this, &MediaTransport::applyTarget);
    connect(player, &QMediaPlayer::positionChanged, this,
            [this](qint64 ms) { begun = begun || ms > 0; });
    connect(player, &QMediaPlayer::hasVideoChanged, this, [this](bool hasVideo) {
        if (!leaving)
            emit videoChanged(hasVideo);
    });
    connect(player, &QMediaPlayer::errorOccurred, this,
            [this](QMediaPlayer::Error error, const QString &reason) {
                if (error != QMediaPlayer::NoError)
                    fail(reason);
            });
    connect(player, &QMediaPlayer::mediaStatusChanged, this, &MediaTransport::handleStatus);
}

// A backend that brings its pictures by a thread of its own does not wait for this one. That thread
// touches nothing of this object, which may go meanwhile.
void MediaTransport::watchPictures(QVideoSink *pictures)
{
    connect(
        pictures, &QVideoSink::videoFrameChanged, this,
        [here = QThread::currentThread(), byThread = picturesByThread] {
            if (QThread::currentThread() != here)
                byThread->store(true);
        },
        Qt::DirectConnection);
    connect(pictures, &QVideoSink::videoFrameChanged, this, &MediaTransport::handlePicture);
}

void MediaTransport::handlePicture()
{
    if (!pictureTimer.isActive())
        return;
    if (*picturesByThread)
        settle();
    else
        pictureTimer.start(settling);
}

void MediaTransport::handleStatus(QMediaPlayer::MediaStatus status)
{
    if (leaving)
        return;
    applyTarget();
    if (status == QMediaPlayer::InvalidMedia)
        fail(player->errorString());
    else if (status == QMediaPlayer::EndOfMedia)
        handleEnd();
}

// Some backends load bytes that are no media at all, and come to their end without a word. Others
// take the beginning of a file, played right after it was paused or loaded, for its end, once.
void MediaTransport::handleEnd()
{
    const bool atBeginning = !std::exchange(begun, true) && player->position() < 1;
    if (atBeginning && player->duration() > 0) {
        player->play();
        return;
    }
    if (atBeginning && !player->hasVideo())
        fail({});
    emit ended();
}

void MediaTransport::fail(const QString &reason)
{
    if (leaving)
        return;
    failedInPlay = true;
    emit failed(reason);
}

bool MediaTransport::isInvalid() const
{
    return player->mediaStatus() == QMediaPlayer::InvalidMedia;
}

qint64 MediaTransport::durationMs() const
{
    return leaving ? 0 : player->duration();
}

bool MediaTransport::hasEnded() const
{
    if (leaving || stopDeferred)
        return false;
    return player->mediaStatus() == QMediaPlayer::EndOfMedia ||
           (durationMs() > 0 && player->position() >= durationMs());
}

void MediaTransport::load(const QString &newPath)
{
    path = newPath;
    leaving = true;
    targetMs = 0;
    seekDeferred = false;
    request(loadDeferred);
}

// Emptied first: the player ignores a source that it already has, and whoever chooses the same file
// again wants it loaded again.
void MediaTransport::setSource()
{
    if (QAudioOutput *output = player->audioOutput())
        output->setDevice(QMediaDevices::defaultAudioOutput()); // may have been plugged in
    leaving = true;
    player->setSource(QUrl());
    leaving = false;
    targetPending = true;
    player->setSource(QUrl::fromLocalFile(path));
}

// Invalid media is left alone: a player told to play it blocks for a second when it is next
// stopped.
void MediaTransport::play()
{
    settle();
    if (isInvalid())
        return;
    if (hasEnded()) {
        targetMs = 0;
        player->setPosition(0);
    }
    failedInPlay = false;
    begun = begun && player->playbackState() == QMediaPlayer::PlayingState;
    player->play();
}

void MediaTransport::playAgain()
{
    targetMs = 0;
    player->setPosition(0);
    if (!failedInPlay && durationMs() > 0)
        player->play();
}

void MediaTransport::pause()
{
    settle();
    if (!isInvalid())
        player->pause();
}

// A pause brings one more picture, after which the backend can be stopped without waiting for it.
void MediaTransport::stop()
{
    targetMs = 0;
    seekDeferred = false;
    if (player->hasVideo() && player->playbackState() == QMediaPlayer::PlayingState &&
        !*picturesByThread) {
        player->pause();
        awaitPicture();
    }
    request(stopDeferred);
}

// Media stopped before its length was known would end at once when it is next played: it is loaded
// again.
void MediaTransport::stopNow()
{
    const bool started = player->playbackState() != QMediaPlayer::StoppedState;
    player->stop();
    if (player->source().isEmpty())
        return;
    if (started && player->duration() < 1 && !loadDeferred &&
        player->mediaStatus() == QMediaPlayer::LoadedMedia)
        setSource();
    else
        player->setPosition(0);
}

bool MediaTransport::seek(qint64 positionMs)
{
    targetMs = positionMs;
    const QMediaPlayer::MediaStatus status = player->mediaStatus();
    if (leaving || status == QMediaPlayer::LoadingMedia || status == QMediaPlayer::NoMedia ||
        isInvalid())
        return true;
    if (!player->isSeekable() && targetMs > 0)
        return false;
    request(seekDeferred);
    return true;
}

// Once for each file: the length of some files changes again and again while they play, and media
// turns seekable only after its length is known. Some are played by then: nobody wants to hear
// their beginning twice.
void MediaTransport::applyTarget()
{
    if (!targetPending || leaving || player->mediaStatus() == QMediaPlayer::LoadingMedia ||
        !player->isSeekable() || player->duration() < 1)
        return;
    targetPending = false;
    const qint64 target = std::min(player->duration(), targetMs);
    if (target < 1 && player->playbackState() == QMediaPlayer::PlayingState)
        return;
    if (player->playbackState() == QMediaPlayer::PausedState)
        player->setPosition(target + 1); // or what was paused at its beginning would end there
    player->setPosition(target);
}

// `deferred` is one of the three flags.
void MediaTransport::request(bool &deferred)
{
    deferred = true;
    if (!pictureTimer.isActive())
        settle();
}

void MediaTransport::awaitPicture()
{
    if (!*picturesByThread)
        pictureTimer.start(pictureWait);
}

void MediaTransport::settle()
{
    pictureTimer.stop();
    if (std::exchange(stopDeferred, false))
        stopNow();
    if (std::exchange(loadDeferred, false))
        setSource();
    if (std::exchange(seekDeferred, false)) {
        targetPending = targetPending && !player->isSeekable();
        player->setPosition(targetMs);
        if (player->hasVideo())
            awaitPicture();
    }
}

} // namespace qx
