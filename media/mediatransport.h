// SPDX-License-Identifier: MIT
#pragma once

#include <QMediaPlayer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <atomic>
#include <memory>

QT_BEGIN_NAMESPACE
class QVideoSink;
QT_END_NAMESPACE

namespace qx {

/// Works a media player like a tape deck, whatever the moods of its backend: load, play, pause,
/// stop, seek.
///
/// Some backends hand each picture of a video to this thread and wait until it is taken. A call
/// that waits for the backend while a picture is on its way makes both wait for 0.3 s. There, what
/// would wait (stop, seek, another file) is deferred until the picture has come; of several seeks
/// the last one counts. With other backends everything is done at once.
///
/// Signals speak of the current file only: from load() on that is the new one, even while the old
/// one still leaves. One thread only, the player's.
class MediaTransport : public QObject
{
    Q_OBJECT

public:
    /// Neither the player nor `pictures`, its video output's sink, is owned; both outlive this.
    MediaTransport(QMediaPlayer *player, QVideoSink *pictures, QObject *parent = nullptr);

    /// Loads the file at an absolute path, also if it is the current one, and does not play it.
    /// What it turns out to be is told by the signals.
    void load(const QString &path);

    qint64 durationMs() const; ///< of the current file; 0 while it is not known
    bool hasEnded() const;     ///< it stands at its end: play() would start over

    /// Plays from where it stands, or from the beginning after the end; a file that is still being
    /// loaded is played as soon as it is ready. Does nothing for a file that cannot be played.
    void play();

    /// Plays from the beginning, from inside ended() too; but only goes there if the file would
    /// end at once again: it has no length, or has failed since it was last played.
    void playAgain();

    void pause();
    void stop(); ///< back to the beginning

    /// Moves to a position in ms, at most to the end; while the file is being loaded, as soon as it
    /// can be moved. False if it cannot be moved to anywhere but its beginning.
    bool seek(qint64 positionMs);

signals:
    void ready(qint64 durationMs); ///< length known, 1 ms or more; some files change it again
    void videoChanged(bool hasVideo);

    /// In the backend's words, which may be empty. A file with nothing in it to play fails so when
    /// it is played, and ends.
    void failed(const QString &reason);

    void ended();

private:
    void watchPlayer();
    void watchPictures(QVideoSink *pictures);
    void handlePicture();
    void handleStatus(QMediaPlayer::MediaStatus status);
    void handleEnd();
    void fail(const QString &reason);
    bool isInvalid() const;

    void request(bool &deferred);
    void awaitPicture();
    void settle();
    void stopNow();
    void setSource();
    void applyTarget();

    QMediaPlayer *player;
    QString path;
    bool leaving = false;       ///< the player still speaks of the file before
    bool failedInPlay = false;  ///< since the current file was last played
    bool begun = false;         ///< it has left its beginning since it was last played
    qint64 targetMs = 0;        ///< where the file is to stand
    bool targetPending = false; ///< it could not be moved there yet

    QTimer pictureTimer; ///< single-shot; active: a picture is on its way
    bool stopDeferred = false;
    bool loadDeferred = false;
    bool seekDeferred = false;
    std::shared_ptr<std::atomic_bool> picturesByThread; ///< the backend shows them by itself
};

} // namespace qx
