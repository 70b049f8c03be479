// SPDX-License-Identifier: MIT
// The transport without the window, with the backend that Qt chooses or QT_MEDIA_BACKEND names.
#include "media/mediatransport.h"
#include "tests/support/mediafiles.h"

#include <QAudioOutput>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QUrl>
#include <QVideoFrame>
#include <QVideoSink>

#include <algorithm>
#include <atomic>
#include <memory>

using namespace Qt::StringLiterals;
using namespace qx::test;
using qx::MediaTransport;

namespace {

// A player with its outputs, and everything that the transport has said.
struct Deck
{
    std::atomic_int picturesHere = 0; // that came to the transport's thread
    std::atomic_bool picturesByThread = false;
    QMediaPlayer player;
    QAudioOutput sound;
    QVideoSink pictures;
    MediaTransport transport{&player, &pictures};
    QSignalSpy ready{&transport, &MediaTransport::ready};
    QSignalSpy failures{&transport, &MediaTransport::failed};
    QSignalSpy ends{&transport, &MediaTransport::ended};
    QSignalSpy videos{&transport, &MediaTransport::videoChanged};

    Deck()
    {
        player.setAudioOutput(&sound);
        player.setVideoOutput(&pictures);
        QObject::connect(
            &pictures, &QVideoSink::videoFrameChanged, &pictures,
            [this, here = QThread::currentThread()](const QVideoFrame &picture) {
                if (QThread::currentThread() != here)
                    picturesByThread = true;
                else if (picture.isValid())
                    ++picturesHere;
            },
            Qt::DirectConnection);
    }

    // Whether the backend hands this thread its pictures and waits until they are taken.
    bool waitsForUs() const { return !picturesByThread; }

    bool isLoaded(const QString &path) const
    {
        return player.source() == QUrl::fromLocalFile(path) &&
               player.mediaStatus() != QMediaPlayer::LoadingMedia && transport.durationMs() > 0;
    }

    bool isAtRest() const
    {
        return player.playbackState() == QMediaPlayer::StoppedState && player.position() == 0;
    }

    bool isPlaying() const { return player.playbackState() == QMediaPlayer::PlayingState; }
};

bool anyIn(const QSignalSpy &positions, qint64 fromMs, qint64 toMs)
{
    return std::any_of(positions.cbegin(), positions.cend(), [&](const QList<QVariant> &position) {
        const qint64 ms = position.first().toLongLong();
        return ms >= fromMs && ms <= toMs;
    });
}

} // namespace

class TestMediaTransport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void loadedNotPlayed_data();
    void loadedNotPlayed();
    void sameFileIsLoadedAgain();
    void playWhileItLoads_data();
    void playWhileItLoads();
    void pauseThenPlayWhileItLoads_data();
    void pauseThenPlayWhileItLoads();
    void stopWhileItLoads_data();
    void stopWhileItLoads();
    void seekWhileItLoads_data();
    void seekWhileItLoads();
    void seekThenStopWhileItLoads();
    void anotherFileWhileItLoads();
    void anotherFileIsNotPlayedForIt();
    void seekWhileAnotherLeaves();
    void seekBeyondTheEnd();
    void leavingFileIsSilent();
    void endsOnce();
    void playAfterTheEndStartsOver();
    void playAgainAtTheEnd();
    void stopOfAPlayingVideo();
    void stopBeforeTheFirstPicture();
    void anotherFileOverAPlayingVideo();
    void dragOfAPausedVideo();
    void playRightAfterStop();
    void seekRightAfterStop();
    void loadRightAfterSeek();
    void goneWhileAVideoPlays();
    void brokenFile();
    void nothingInTheFile();
    void goodFileAfterABrokenOne();

private:
    void soundAndVideo();

    std::unique_ptr<MediaFiles> files;
    QString wav;
    QString longWav;
    QString shortWav;
    QString webm;
    QString longWebm;
    QString broken;
    QString empty;
};

void TestMediaTransport::initTestCase()
{
    files = std::make_unique<MediaFiles>();
    wav = files->tone(u"tone.wav"_s, 3000);
    longWav = files->tone(u"long.wav"_s, 10000);
    shortWav = files->tone(u"short.wav"_s, 300);
    webm = files->video(u"clip.webm"_s, 3000);
    longWebm = files->video(u"long.webm"_s, 8000);
    broken = files->file(u"broken.mp3"_s, "not music");
    empty = files->emptyRecording(u"empty.wav"_s);
    for (const QString &path : {wav, longWav, shortWav, webm, longWebm, broken, empty})
        QVERIFY2(!path.isEmpty(), qPrintable(files->problem()));
}

void TestMediaTransport::soundAndVideo()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("sound") << wav;
    QTest::newRow("video") << webm;
}

void TestMediaTransport::loadedNotPlayed_data()
{
    soundAndVideo();
}

void TestMediaTransport::loadedNotPlayed()
{
    QFETCH(const QString, path);
    Deck deck;
    QSignalSpy states(&deck.player, &QMediaPlayer::playbackStateChanged);
    deck.transport.load(path);
    QTRY_VERIFY(deck.isLoaded(path));
    QTRY_VERIFY(!deck.ready.isEmpty());
    QCOMPARE(deck.ready.last().first().toLongLong(), deck.transport.durationMs());
    QVERIFY(qAbs(deck.transport.durationMs() - 3000) < 100);
    QVERIFY(deck.isAtRest());
    QCOMPARE(states.size(), 0);
    QCOMPARE(deck.failures.size(), 0);
    if (path == webm)
        QTRY_VERIFY(!deck.videos.isEmpty() && deck.videos.last().first().toBool());
}

void TestMediaTransport::sameFileIsLoadedAgain()
{
    Deck deck;
    for (int times = 1; times <= 3; ++times) {
        deck.ready.clear();
        deck.transport.load(wav);
        QTRY_VERIFY(!deck.ready.isEmpty() && deck.isLoaded(wav));
    }
}

void TestMediaTransport::playWhileItLoads_data()
{
    soundAndVideo();
}

void TestMediaTransport::playWhileItLoads()
{
    QFETCH(const QString, path);
    Deck deck;
    deck.transport.load(path);
    deck.transport.play();
    QTRY_VERIFY(deck.isPlaying());
    QTRY_VERIFY(deck.player.position() > 200);
    QCOMPARE(deck.failures.size(), 0);
}

void TestMediaTransport::pauseThenPlayWhileItLoads_data()
{
    soundAndVideo();
}

void TestMediaTransport::pauseThenPlayWhileItLoads()
{
    QFETCH(const QString, path);
    Deck deck;
    deck.transport.load(path);
    deck.transport.pause();
    deck.transport.play();
    QTRY_VERIFY(deck.isPlaying());
    QTRY_VERIFY(deck.player.position() > 200);
}

void TestMediaTransport::stopWhileItLoads_data()
{
    soundAndVideo();
}

// The last word counts, as it would had the file been ready.
void TestMediaTransport::stopWhileItLoads()
{
    QFETCH(const QString, path);
    Deck deck;
    QSignalSpy positions(&deck.player, &QMediaPlayer::positionChanged);
    deck.transport.load(path);
    deck.transport.play();
    deck.transport.stop();
    QTRY_VERIFY(deck.isLoaded(path));
    QTRY_VERIFY(deck.isAtRest());
    deck.transport.load(shortWav); // what it did until the next file was loaded
    QTRY_VERIFY(deck.isLoaded(shortWav));
    for (const QList<QVariant> &position : positions)
        QVERIFY(position.first().toLongLong() < 200);
}

void TestMediaTransport::seekWhileItLoads_data()
{
    soundAndVideo();
}

void TestMediaTransport::seekWhileItLoads()
{
    QFETCH(const QString, path);
    Deck deck;
    deck.transport.load(path);
    QVERIFY(deck.transport.seek(600));
    QVERIFY(deck.transport.seek(1200));
    QTRY_COMPARE(deck.player.position(), 1200);
    QVERIFY(deck.isLoaded(path));
}

void TestMediaTransport::seekThenStopWhileItLoads()
{
    Deck deck;
    QSignalSpy positions(&deck.player, &QMediaPlayer::positionChanged);
    deck.transport.load(wav);
    QVERIFY(deck.transport.seek(1200));
    deck.transport.stop();
    QTRY_VERIFY(deck.isLoaded(wav));
    deck.transport.play();
    QTRY_VERIFY(anyIn(positions, 100, 3000));
    QVERIFY(positions.first().first().toLongLong() < 1000);
}

void TestMediaTransport::anotherFileWhileItLoads()
{
    Deck deck;
    deck.transport.load(webm);
    deck.transport.play();
    deck.transport.load(longWav);
    deck.transport.play();
    QTRY_VERIFY(deck.isLoaded(longWav));
    QTRY_VERIFY(deck.isPlaying());
    QTRY_VERIFY(deck.player.position() > 100);
    QVERIFY(qAbs(deck.ready.last().first().toLongLong() - 10000) < 100);
}

// Play was meant for the file before.
void TestMediaTransport::anotherFileIsNotPlayedForIt()
{
    Deck deck;
    deck.transport.load(webm);
    deck.transport.play();
    deck.transport.load(longWav);
    QTRY_VERIFY(deck.isLoaded(longWav));
    QVERIFY(deck.isAtRest());
}

// The length of the one that leaves is not the new one's: it bounds nothing.
void TestMediaTransport::seekWhileAnotherLeaves()
{
    Deck deck;
    deck.transport.load(webm);
    QTRY_VERIFY(deck.isLoaded(webm));
    deck.transport.play();
    QTRY_VERIFY(deck.player.position() > 300);
    deck.transport.stop();
    deck.transport.load(longWebm);
    QVERIFY(deck.transport.durationMs() < 1);
    QVERIFY(deck.transport.seek(5000));
    QTRY_VERIFY(deck.isLoaded(longWebm));
    QTRY_COMPARE(deck.player.position(), 5000);
}

void TestMediaTransport::seekBeyondTheEnd()
{
    Deck deck;
    deck.transport.load(wav);
    QVERIFY(deck.transport.seek(99'000));
    QTRY_VERIFY(deck.isLoaded(wav));
    QTRY_COMPARE(deck.player.position(), deck.transport.durationMs());
}

void TestMediaTransport::leavingFileIsSilent()
{
    Deck deck;
    deck.transport.load(webm);
    QTRY_VERIFY(deck.isLoaded(webm));
    deck.transport.play();
    QTRY_VERIFY(deck.player.position() > 300);
    deck.ready.clear();
    deck.transport.stop();
    deck.transport.load(longWav);
    QTRY_VERIFY(deck.isLoaded(longWav));
    QTRY_VERIFY(!deck.ready.isEmpty());
    for (const QList<QVariant> &duration : deck.ready)
        QVERIFY(duration.first().toLongLong() > 9000);
    QCOMPARE(deck.failures.size(), 0);
    QCOMPARE(deck.ends.size(), 0);
}

void TestMediaTransport::endsOnce()
{
    Deck deck;
    deck.transport.load(shortWav);
    deck.transport.play();
    QTRY_COMPARE(deck.ends.size(), 1);
    QVERIFY(deck.transport.hasEnded());
    QCOMPARE(deck.player.playbackState(), QMediaPlayer::StoppedState);
}

void TestMediaTransport::playAfterTheEndStartsOver()
{
    Deck deck;
    deck.transport.load(shortWav);
    deck.transport.play();
    QTRY_COMPARE(deck.ends.size(), 1);
    deck.transport.play();
    QVERIFY(!deck.transport.hasEnded());
    QTRY_COMPARE(deck.ends.size(), 2);
}

void TestMediaTransport::playAgainAtTheEnd()
{
    Deck deck;
    connect(&deck.transport, &MediaTransport::ended, &deck.transport, &MediaTransport::playAgain);
    deck.transport.load(shortWav);
    deck.transport.play();
    QTRY_VERIFY(deck.ends.size() >= 3);
    QVERIFY(deck.isPlaying());
}

// Where the backend waits until its picture is taken, it is stopped after that; else at once.
void TestMediaTransport::stopOfAPlayingVideo()
{
    Deck deck;
    deck.transport.load(webm);
    deck.transport.play();
    QTRY_VERIFY(deck.player.position() > 300);
    const int before = deck.picturesHere;
    deck.transport.stop();
    if (!deck.waitsForUs())
        QVERIFY(deck.isAtRest());
    QTRY_VERIFY(deck.isAtRest());
    QVERIFY(!deck.waitsForUs() || deck.picturesHere > before);
    QVERIFY(!deck.transport.hasEnded());
}

void TestMediaTransport::stopBeforeTheFirstPicture()
{
    Deck deck;
    deck.transport.load(webm);
    QTRY_VERIFY(deck.isLoaded(webm));
    deck.transport.play();
    deck.transport.stop();
    QTRY_VERIFY(deck.isAtRest());
    deck.transport.play();
    QTRY_VERIFY(deck.player.position() > 300);
}

void TestMediaTransport::anotherFileOverAPlayingVideo()
{
    Deck deck;
    deck.transport.load(longWebm);
    deck.transport.play();
    QTRY_VERIFY(deck.player.position() > 300);
    const int before = deck.picturesHere;
    deck.transport.stop();
    deck.transport.load(wav);
    if (!deck.waitsForUs())
        QCOMPARE(deck.player.source(), QUrl::fromLocalFile(wav));
    QTRY_VERIFY(deck.isLoaded(wav));
    QVERIFY(!deck.waitsForUs() || deck.picturesHere > before);
    QVERIFY(deck.isAtRest());
}

// What is asked for while a picture is on its way is left out, but for the last.
void TestMediaTransport::dragOfAPausedVideo()
{
    Deck deck;
    deck.transport.load(longWebm);
    deck.transport.play();
    QTRY_VERIFY(deck.player.position() > 300);
    deck.transport.pause();
    QSignalSpy positions(&deck.player, &QMediaPlayer::positionChanged);
    for (qint64 ms = 2000; ms <= 2500; ms += 50)
        QVERIFY(deck.transport.seek(ms));
    QTRY_COMPARE(deck.player.position(), 2500);
    QVERIFY(anyIn(positions, 2000, 2000));
    QCOMPARE(anyIn(positions, 2050, 2450), !deck.waitsForUs());
    QCOMPARE(deck.player.playbackState(), QMediaPlayer::PausedState);
}

void TestMediaTransport::playRightAfterStop()
{
    Deck deck;
    deck.transport.load(longWebm);
    deck.transport.play();
    QTRY_VERIFY(deck.player.position() > 1000);
    QSignalSpy positions(&deck.player, &QMediaPlayer::positionChanged);
    deck.transport.stop();
    deck.transport.play();
    QTRY_VERIFY(deck.isPlaying());
    QTRY_VERIFY(!positions.isEmpty() && positions.last().first().toLongLong() > 200);
    QVERIFY(positions.last().first().toLongLong() < 1000);
}

void TestMediaTransport::seekRightAfterStop()
{
    Deck deck;
    deck.transport.load(longWebm);
    deck.transport.play();
    QTRY_VERIFY(deck.player.position() > 300);
    deck.transport.stop();
    QVERIFY(deck.transport.seek(2000));
    QTRY_COMPARE(deck.player.position(), 2000);
    QCOMPARE(deck.player.playbackState(), QMediaPlayer::StoppedState);
}

// The seeks were meant for the file before.
void TestMediaTransport::loadRightAfterSeek()
{
    Deck deck;
    deck.transport.load(longWebm);
    deck.transport.play();
    QTRY_VERIFY(deck.player.position() > 300);
    deck.transport.pause();
    QVERIFY(deck.transport.seek(1500));
    QVERIFY(deck.transport.seek(2500));
    deck.transport.load(longWav);
    QTRY_VERIFY(deck.isLoaded(longWav));
    QVERIFY(deck.isAtRest());
    QSignalSpy positions(&deck.player, &QMediaPlayer::positionChanged);
    deck.transport.play();
    QTRY_VERIFY(anyIn(positions, 500, 10'000));
    QVERIFY(positions.first().first().toLongLong() < 1000);
}

// The pictures go on coming, perhaps by another thread.
void TestMediaTransport::goneWhileAVideoPlays()
{
    QMediaPlayer player;
    QVideoSink pictures;
    player.setVideoOutput(&pictures);
    auto transport = std::make_unique<MediaTransport>(&player, &pictures);
    transport->load(webm);
    transport->play();
    QTRY_VERIFY(player.position() > 300);
    transport->seek(0);
    transport.reset();
    QSignalSpy shown(&pictures, &QVideoSink::videoFrameChanged);
    QTRY_VERIFY(shown.size() > 5);
    QCOMPARE(player.playbackState(), QMediaPlayer::PlayingState);
}

void TestMediaTransport::brokenFile()
{
    Deck deck;
    deck.transport.load(broken);
    QTRY_VERIFY(!deck.failures.isEmpty());
    QTRY_COMPARE(deck.player.mediaStatus(), QMediaPlayer::InvalidMedia);
    deck.transport.play();
    QCOMPARE(deck.player.playbackState(), QMediaPlayer::StoppedState);
    deck.transport.pause();
    QCOMPARE(deck.player.playbackState(), QMediaPlayer::StoppedState);
    deck.transport.stop();
    QCOMPARE(deck.ready.size(), 0);
}

// A recording that was broken off: the header is all there is.
void TestMediaTransport::nothingInTheFile()
{
    Deck deck;
    deck.transport.load(empty);
    QTRY_COMPARE(deck.player.mediaStatus(), QMediaPlayer::LoadedMedia);
    QCOMPARE(deck.failures.size(), 0);
    deck.transport.play();
    QTRY_COMPARE(deck.ends.size(), 1);
    QCOMPARE(deck.failures.size(), 1);
    QCOMPARE(deck.ready.size(), 0);
}

void TestMediaTransport::goodFileAfterABrokenOne()
{
    Deck deck;
    deck.transport.load(broken);
    deck.transport.play();
    QTRY_VERIFY(!deck.failures.isEmpty());
    deck.transport.load(wav);
    deck.failures.clear();
    deck.transport.play();
    QTRY_VERIFY(deck.player.position() > 200);
    QCOMPARE(deck.failures.size(), 0);
}

QTEST_MAIN(TestMediaTransport)

#include "tst_mediatransport.moc"
