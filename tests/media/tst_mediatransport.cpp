// SPDX-License-Identifier: MIT
// The transport without the window, with the backend that Qt chooses or QT_MEDIA_BACKEND names.
#include "media/mediatransport.h"
#include "tests/support/mediafiles.h"

#include <QAudioOutput>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>
#include <QVideoSink>

#include <memory>

using namespace Qt::StringLiterals;
using namespace qx::test;
using qx::MediaTransport;

namespace {

// A player with its outputs, and everything that the transport has said.
struct Deck
{
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
    }

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
    void seekWhileAnotherLeaves();
    void seekBeyondTheEnd();
    void leavingFileIsSilent();
    void endsOnce();
    void playAfterTheEndStartsOver();
    void playAgainAtTheEnd();
    void stopOfAPlayingVideo();
    void playRightAfterStop();
    void brokenFile();
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
    for (const QString &path : {wav, longWav, shortWav, webm, longWebm, broken})
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
    QTRY_VERIFY(deck.player.position() > 100);
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

void TestMediaTransport::stopOfAPlayingVideo()
{
    Deck deck;
    deck.transport.load(webm);
    deck.transport.play();
    QTRY_VERIFY(deck.player.position() > 300);
    deck.transport.stop();
    QTRY_VERIFY(deck.isAtRest());
    QVERIFY(!deck.transport.hasEnded());
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
