// SPDX-License-Identifier: MIT
#include "i18n/language.h"
#include "tests/support/mediafiles.h"
#include "tests/support/stage.h"

#include <QMediaPlayer>
#include <QMessageBox>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QUrl>
#include <QVideoWidget>

#include <algorithm>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;
using namespace qx::test;

namespace {

QString withoutUsb()
{
    return either(
        u"MEDIA USB is not handshaken; media will play without transmitting 20-byte frames"_s,
        u"MEDIA USB尚未握手；当前只播放媒体，不发送20字节帧"_s);
}

QString notSeekable()
{
    return either(u"The selected media does not support seeking"_s, u"当前媒体不支持定位进度"_s);
}

QVideoWidget *preview(Stage &stage)
{
    return stage.window().findChild<QVideoWidget *>(u"mediaVideoWidget"_s);
}

void load(Stage &stage, const QString &path)
{
    QMediaPlayer *media = stage.hand().media();
    QSignalSpy sources(media, &QMediaPlayer::sourceChanged);
    QVERIFY(stage.window().loadMediaFile(path));
    QTRY_VERIFY(!sources.isEmpty() && media->source() == QUrl::fromLocalFile(path));
    QTRY_COMPARE(media->mediaStatus(), QMediaPlayer::LoadedMedia);
}

void playUntil(Stage &stage, qint64 positionMs)
{
    stage.hand().click(stage.hand().play());
    QTRY_VERIFY(stage.hand().media()->position() >= positionMs);
}

bool reached(const QSignalSpy &positions, qint64 fromMs, qint64 toMs)
{
    return std::any_of(positions.cbegin(), positions.cend(), [&](const QList<QVariant> &position) {
        const qint64 ms = position.first().toLongLong();
        return ms >= fromMs && ms <= toMs;
    });
}

bool isStopped(const QMediaPlayer *media)
{
    return media->playbackState() == QMediaPlayer::StoppedState && media->position() == 0;
}

} // namespace

class TestMediaSync : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void frameToPosition_data();
    void frameToPosition();
    void nothingSelected();

    void playRunsOnItsOwnClock();
    void playAfterPauseResumes();
    void playAfterTheEndStartsOver_data();
    void playAfterTheEndStartsOver();
    void pauseIsImmediate();
    void stopIsImmediate_data();
    void stopIsImmediate();
    void stopBeforePlay();
    void stopOfAVideoKeepsThePreview();
    void stopOfSoundHidesThePreview();
    void endOfTheFramesStopsTheMedia();
    void endOfTheMediaLeavesTheFrames();
    void replayRepeats_data();
    void replayRepeats();
    void replayOnlyWhilePlaying();
    void replayOfNothingDoesNotSpin();
    void soundOfUnknownLengthPlaysOn_data();
    void soundOfUnknownLengthPlaysOn();

    void seekWhilePaused_data();
    void seekWhilePaused();
    void seekBeyondTheEnd();
    void noSeekUnlessPaused_data();
    void noSeekUnlessPaused();
    void seekWhileLoading_data();
    void seekWhileLoading();
    void loadForgetsTheSeek();
    void unseekableWarnsOnce();

    void withoutLink_data();
    void withoutLink();
    void pauseWithoutLink();
    void stopWithoutLink();
    void dragWithoutLink();
    void brokenFileWithoutLink();
    void lostLineStopsTheMedia();

    void stopThenPlay();
    void stopThenPause();
    void stopTwice();
    void loadThenPlay_data();
    void loadThenPlay();
    void seekThenStop();
    void seekThenLoad();
    void quitWhilePlaying();
    void quitWhileStopping();

private:
    std::unique_ptr<MediaFiles> files;
    QString wav;
    QString shortWav;
    QString webm;
    QString longWebm;
    QString broken;
    QString unknownLength;
};

void TestMediaSync::initTestCase()
{
    takeIdentity();
    files = std::make_unique<MediaFiles>();
    wav = files->tone(u"tone.wav"_s, 3000);
    shortWav = files->tone(u"short.wav"_s, 300);
    webm = files->video(u"clip.webm"_s, 400);
    longWebm = files->video(u"long.webm"_s, 5000);
    broken = files->file(u"broken.mp3"_s, "not music");
    unknownLength = files->tone(u"plain.mp3"_s, 5000); // no header says how long it is
    for (const QString &path : {wav, shortWav, webm, longWebm, broken, unknownLength})
        QVERIFY2(!path.isEmpty(), qPrintable(files->problem()));
}

void TestMediaSync::frameToPosition_data()
{
    QTest::addColumn<int>("frame");
    QTest::addColumn<int>("intervalMs");
    QTest::addColumn<qint64>("positionMs");
    constexpr int most = std::numeric_limits<int>::max();
    QTest::newRow("first") << 0 << 50 << qint64{0};
    QTest::newRow("hundredth") << 100 << 50 << qint64{5000};
    QTest::newRow("at the shortest interval") << 100 << 30 << qint64{3000};
    QTest::newRow("at the longest interval") << 100 << 150 << qint64{15000};
    QTest::newRow("negative") << -4 << 50 << qint64{0};
    QTest::newRow("last of a frame number") << 65535 << 150 << qint64{9830250};
    QTest::newRow("more than 32 bits") << most << 150 << qint64{most} * 150;
}

void TestMediaSync::frameToPosition()
{
    QFETCH(int, frame);
    QFETCH(int, intervalMs);
    QFETCH(qint64, positionMs);
    Stage stage;
    stage.hand().panel()->setIntervalMs(intervalMs);
    QCOMPARE(stage.window().mediaPositionForFrame(frame), positionMs);
    load(stage, wav);
    QCOMPARE(stage.window().mediaPositionForFrame(frame), qMin(positionMs, qint64{3000}));
}

void TestMediaSync::nothingSelected()
{
    Stage stage;
    QSignalSpy states(stage.hand().media(), &QMediaPlayer::playbackStateChanged);
    QVERIFY(!stage.window().hasSelectedMedia());
    stage.window().playSelectedMedia();
    stage.window().pauseSelectedMedia();
    stage.window().seekSelectedMedia(3);
    stage.window().stopSelectedMedia();
    QCOMPARE(states.size(), 0);
    QCOMPARE(stage.hand().log("ERR"), QStringList());
}

// The frames pass, and the media is not sought by them.
void TestMediaSync::playRunsOnItsOwnClock()
{
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, wav);
    hand.type(hand.frame(), 50); // 2.5 s
    hand.click(hand.play());
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::PlayingState);
    QTRY_VERIFY(hand.media()->position() > 0);
    QVERIFY(hand.media()->position() < 2000);
    QTRY_VERIFY(hand.frame()->value() >= 55);
    QCOMPARE(hand.log("MEDIA").filter(u"USB"_s), QStringList()); // the demo sends frames
}

void TestMediaSync::playAfterPauseResumes()
{
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, wav);
    playUntil(stage, 400);
    hand.click(hand.pause());
    QTRY_COMPARE(hand.media()->playbackState(), QMediaPlayer::PausedState);
    const qint64 paused = hand.media()->position();
    hand.type(hand.frame(), 1); // whatever the frame is
    QSignalSpy positions(hand.media(), &QMediaPlayer::positionChanged);
    hand.click(hand.play());
    QTRY_VERIFY(hand.media()->position() > paused + 200);
    for (const QList<QVariant> &position : positions)
        QVERIFY(position.first().toLongLong() >= paused - 50);
}

void TestMediaSync::playAfterTheEndStartsOver_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("sound") << shortWav;
    QTest::newRow("video") << webm;
}

void TestMediaSync::playAfterTheEndStartsOver()
{
    QFETCH(QString, path);
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, path);
    hand.click(hand.play());
    QTRY_COMPARE(hand.media()->mediaStatus(), QMediaPlayer::EndOfMedia);
    QSignalSpy positions(hand.media(), &QMediaPlayer::positionChanged);
    hand.click(hand.play());
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::PlayingState);
    QTRY_COMPARE(hand.media()->mediaStatus(), QMediaPlayer::EndOfMedia);
    QVERIFY(reached(positions, 0, 249));
}

void TestMediaSync::pauseIsImmediate()
{
    Stage stage;
    load(stage, longWebm);
    playUntil(stage, 200);
    stage.hand().click(stage.hand().pause());
    QCOMPARE(stage.hand().media()->playbackState(), QMediaPlayer::PausedState);
}

void TestMediaSync::stopIsImmediate_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("pausedBefore");
    QTest::newRow("sound that plays") << wav << false;
    QTest::newRow("sound that is paused") << wav << true;
    QTest::newRow("video that is paused") << longWebm << true;
}

// Where no video plays, the media is at rest at 0 as soon as Stop returns.
void TestMediaSync::stopIsImmediate()
{
    QFETCH(QString, path);
    QFETCH(bool, pausedBefore);
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, path);
    playUntil(stage, 200);
    if (pausedBefore)
        hand.click(hand.pause());
    hand.click(hand.stop());
    QVERIFY(isStopped(hand.media()));
}

void TestMediaSync::stopBeforePlay()
{
    Stage stage;
    load(stage, longWebm);
    stage.hand().click(stage.hand().stop());
    QVERIFY(isStopped(stage.hand().media()));
    QVERIFY(preview(stage)->isVisible());
}

void TestMediaSync::stopOfAVideoKeepsThePreview()
{
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, longWebm);
    playUntil(stage, 200);
    hand.click(hand.stop());
    QTRY_VERIFY(isStopped(hand.media()));
    QVERIFY(preview(stage)->isVisible());
    QVERIFY(stage.window().hasSelectedMedia());
}

void TestMediaSync::stopOfSoundHidesThePreview()
{
    Stage stage;
    load(stage, wav);
    preview(stage)->show();
    stage.hand().click(stage.hand().stop());
    QVERIFY(!preview(stage)->isVisible());
}

void TestMediaSync::endOfTheFramesStopsTheMedia()
{
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, wav);
    hand.type(hand.total(), 3);
    hand.click(hand.play());
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::PlayingState);
    QTRY_COMPARE(hand.state(), u"Stopped"_s);
    QVERIFY(isStopped(hand.media()));
}

void TestMediaSync::endOfTheMediaLeavesTheFrames()
{
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, shortWav);
    hand.click(hand.play());
    QTRY_COMPARE(hand.media()->mediaStatus(), QMediaPlayer::EndOfMedia);
    const int frame = hand.frame()->value();
    QTRY_VERIFY(hand.frame()->value() >= frame + 5);
    QCOMPARE(hand.state(), u"Playing"_s);
    QCOMPARE(hand.media()->mediaStatus(), QMediaPlayer::EndOfMedia);
}

void TestMediaSync::replayRepeats_data()
{
    playAfterTheEndStartsOver_data();
}

void TestMediaSync::replayRepeats()
{
    QFETCH(QString, path);
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, path);
    hand.click(hand.replay());
    int ends = 0;
    connect(hand.media(), &QMediaPlayer::mediaStatusChanged, this,
            [&ends](QMediaPlayer::MediaStatus status) {
                ends += status == QMediaPlayer::EndOfMedia ? 1 : 0;
            });
    hand.click(hand.play());
    QTRY_VERIFY(ends >= 3);
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::PlayingState);
    QCOMPARE(hand.log("ERR"), QStringList());
    hand.click(hand.replay());
    QTRY_COMPARE(hand.media()->mediaStatus(), QMediaPlayer::EndOfMedia);
    QCOMPARE(hand.state(), u"Playing"_s);
}

// The media plays although the panel does not: its end is an end.
void TestMediaSync::replayOnlyWhilePlaying()
{
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, shortWav);
    hand.click(hand.replay());
    stage.window().playSelectedMedia();
    QTRY_COMPARE(hand.media()->mediaStatus(), QMediaPlayer::EndOfMedia);
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::StoppedState);
}

// A recording that was broken off: it ends the moment it is played.
void TestMediaSync::replayOfNothingDoesNotSpin()
{
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, files->emptyRecording(u"empty.wav"_s));
    int ends = 0;
    connect(
        hand.media(), &QMediaPlayer::mediaStatusChanged, this,
        [&ends](QMediaPlayer::MediaStatus status) { ends += status == QMediaPlayer::EndOfMedia; });
    hand.click(hand.replay());
    hand.click(hand.play());
    QTRY_VERIFY(ends > 0);
    const int frame = hand.frame()->value();
    QTRY_VERIFY(hand.frame()->value() >= frame + 4);
    QCOMPARE(ends, 1);
    QCOMPARE(hand.state(), qx::Language::text(qx::UiText::StatePlaying));
    QCOMPARE(hand.log("ERR"), QStringList{u"Media playback failed: empty.wav"_s});
}

void TestMediaSync::soundOfUnknownLengthPlaysOn_data()
{
    QTest::addColumn<bool>("pauseFirst");
    QTest::addColumn<bool>("stopEarly");
    QTest::newRow("played at once") << false << false;
    QTest::newRow("paused before the first Play") << true << false;
    QTest::newRow("stopped soon and played again") << false << true;
}

// Its length is found out while it plays; it neither starts over then nor ends. A backend may also
// guess it from what it has read so far, and then take that for the end.
void TestMediaSync::soundOfUnknownLengthPlaysOn()
{
    QFETCH(const bool, pauseFirst);
    QFETCH(const bool, stopEarly);
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, unknownLength);
    const qint64 guess = hand.media()->duration();
    if (pauseFirst) {
        hand.click(hand.pause());
        QTRY_VERIFY(hand.media()->duration() > 0);
    }
    if (stopEarly) {
        playUntil(stage, 50);
        hand.click(hand.stop());
        QTRY_VERIFY(isStopped(hand.media()));
        QTRY_COMPARE(hand.media()->mediaStatus(), QMediaPlayer::LoadedMedia);
    }
    hand.click(hand.play());
    qint64 furthest = 0;
    bool wentBack = false;
    connect(hand.media(), &QMediaPlayer::positionChanged, this, [&](qint64 position) {
        wentBack = wentBack || position < furthest;
        furthest = std::max(furthest, position);
    });
    const auto endedAtTheGuess = [&] { return guess > 0 && furthest == guess; };
    QTRY_VERIFY(furthest > 1000 || endedAtTheGuess());
    QVERIFY(hand.media()->duration() > 0);
    QVERIFY(!wentBack);
    QVERIFY(hand.media()->playbackState() == QMediaPlayer::PlayingState || endedAtTheGuess());
}

void TestMediaSync::seekWhilePaused_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("sound") << wav;
    QTest::newRow("video") << longWebm;
}

// Each position that the handle passes and the one where it is let go.
void TestMediaSync::seekWhilePaused()
{
    QFETCH(QString, path);
    Stage stage;
    const Operator &hand = stage.hand();
    hand.type(hand.total(), 50);
    load(stage, path);
    playUntil(stage, 200);
    hand.click(hand.pause());

    hand.grab(hand.seekSlider());
    hand.moveHandle(hand.seekSlider(), 30);
    QTRY_COMPARE(hand.media()->position(), 1500);
    hand.moveHandle(hand.seekSlider(), 10);
    QTRY_COMPARE(hand.media()->position(), 500);
    hand.moveHandle(hand.seekSlider(), 44);
    hand.letGo(hand.seekSlider());
    QTRY_COMPARE(hand.media()->position(), 2200);
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::PausedState);

    hand.dragTo(hand.seekSlider(), 0);
    QTRY_COMPARE(hand.media()->position(), 0);
    QVERIFY(hand.statusBar() != notSeekable());
}

void TestMediaSync::seekBeyondTheEnd()
{
    Stage stage;
    const Operator &hand = stage.hand();
    hand.type(hand.total(), 200);
    load(stage, wav);
    hand.click(hand.pause());
    hand.dragTo(hand.seekSlider(), 100);
    QTRY_COMPARE(hand.media()->position(), 3000);
    hand.click(hand.play()); // it stands at its end: from the beginning
    QTRY_VERIFY(hand.media()->position() > 0 && hand.media()->position() < 2000);
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::PlayingState);
}

void TestMediaSync::noSeekUnlessPaused_data()
{
    QTest::addColumn<bool>("plays");
    QTest::newRow("stopped") << false;
    QTest::newRow("playing") << true;
}

void TestMediaSync::noSeekUnlessPaused()
{
    QFETCH(bool, plays);
    Stage stage;
    const Operator &hand = stage.hand();
    hand.type(hand.total(), 50);
    load(stage, wav);
    if (plays)
        hand.click(hand.play());
    hand.dragTo(hand.seekSlider(), 45);
    stage.window().seekSelectedMedia(45);
    QVERIFY(hand.frame()->value() >= 45);
    QVERIFY(hand.media()->position() < 2000);
    QCOMPARE(hand.media()->playbackState(),
             plays ? QMediaPlayer::PlayingState : QMediaPlayer::StoppedState);
}

void TestMediaSync::seekWhileLoading_data()
{
    seekWhilePaused_data();
}

// The position is kept until the media can be sought.
void TestMediaSync::seekWhileLoading()
{
    QFETCH(QString, path);
    Stage stage;
    const Operator &hand = stage.hand();
    hand.click(hand.pause());
    QVERIFY(stage.window().loadMediaFile(path));
    QCOMPARE(hand.media()->mediaStatus(), QMediaPlayer::LoadingMedia);
    stage.window().seekSelectedMedia(12);
    stage.window().seekSelectedMedia(24);
    QCOMPARE(hand.media()->mediaStatus(), QMediaPlayer::LoadingMedia);
    QTRY_COMPARE(hand.media()->position(), 1200);
    QCOMPARE(hand.media()->mediaStatus(), QMediaPlayer::LoadedMedia);
}

void TestMediaSync::loadForgetsTheSeek()
{
    Stage stage;
    const Operator &hand = stage.hand();
    hand.click(hand.pause());
    load(stage, wav);
    stage.window().seekSelectedMedia(20);
    QTRY_COMPARE(hand.media()->position(), 1000);
    load(stage, longWebm);
    QTRY_VERIFY(hand.media()->isSeekable());
    QCOMPARE(hand.media()->position(), 0);
}

// Told once: by the window where the backend knows that it cannot be sought, else in the words of
// the backend, which has tried.
void TestMediaSync::unseekableWarnsOnce()
{
    const QString path = files->unseekable(u"pictures.mkv"_s);
    QVERIFY2(!path.isEmpty(), qPrintable(files->problem()));
    Stage stage;
    const Operator &hand = stage.hand();
    hand.type(hand.total(), 20);
    load(stage, path);
    const bool known = !hand.media()->isSeekable();
    hand.click(hand.pause());
    stage.window().seekSelectedMedia(0); // back to the beginning needs no warning
    QVERIFY(hand.statusBar() != notSeekable());

    const qint64 position = hand.media()->position();
    hand.dragTo(hand.seekSlider(), 15);
    if (known) {
        QCOMPARE(hand.statusBar(), notSeekable());
        QCOMPARE(hand.statusLifetimeMs(), 5000);
        QCOMPARE(hand.media()->position(), position);
    } else {
        QTRY_VERIFY(hand.statusBar().startsWith(u"Media playback failed: "_s));
        QCOMPARE(hand.statusLifetimeMs(), 8000);
    }
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::PausedState);

    stage.window().statusBar()->clearMessage();
    hand.dragTo(hand.seekSlider(), 5);
    if (known) {
        load(stage, path); // another file is no reason either
        hand.click(hand.pause());
        stage.window().statusBar()->clearMessage();
        hand.dragTo(hand.seekSlider(), 9);
    }
    QCOMPARE(hand.statusBar(), QString());
    hand.click(hand.play());
    QTRY_COMPARE(hand.state(), u"Stopped"_s); // the frames end
    QCOMPARE(stage.window().findChildren<QMessageBox *>().size(), known ? 0 : 1);
}

void TestMediaSync::withoutLink_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << u"en"_s;
    QTest::newRow("Chinese") << u"zh_CN"_s;
}

void TestMediaSync::withoutLink()
{
    QFETCH(QString, language);
    Stage stage(language);
    const Operator &hand = stage.hand();
    hand.setDemo(false);
    load(stage, wav);
    hand.click(hand.play());
    QCOMPARE(hand.lastLog(), withoutUsb());
    QCOMPARE(hand.state(), either(u"Playing"_s, u"发送中"_s));
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::PlayingState);
    QTRY_VERIFY(hand.frame()->value() >= 4);
    QCOMPARE(hand.lastLog(), withoutUsb());
    QCOMPARE(hand.log("TX"), QStringList());
    QCOMPARE(hand.log("ERR"), QStringList());
}

void TestMediaSync::pauseWithoutLink()
{
    Stage stage;
    const Operator &hand = stage.hand();
    hand.setDemo(false);
    load(stage, wav);
    playUntil(stage, 100);
    hand.click(hand.pause());
    const int frame = hand.frame()->value();
    QCOMPARE(hand.state(), u"Paused"_s);
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::PausedState);
    QCOMPARE(hand.lastLog(), withoutUsb());

    hand.click(hand.play());
    QTRY_VERIFY(hand.frame()->value() > frame);
    QCOMPARE(hand.logCount(withoutUsb()), 2);
}

void TestMediaSync::stopWithoutLink()
{
    Stage stage;
    const Operator &hand = stage.hand();
    hand.setDemo(false);
    hand.type(hand.red(), 200);
    load(stage, wav);
    playUntil(stage, 100);
    hand.click(hand.stop());
    QVERIFY(isStopped(hand.media()));
    QCOMPARE(hand.frame()->value(), 0);
    QCOMPARE(hand.red()->value(), 0);
    QCOMPARE(hand.lastLog(), withoutUsb());
    hand.click(hand.play());
    QCOMPARE(hand.red()->value(), 200);
}

// The frames stand still while the handle is held; in a paused player they do so afterwards too.
void TestMediaSync::dragWithoutLink()
{
    Stage stage;
    const Operator &hand = stage.hand();
    hand.setDemo(false);
    hand.type(hand.total(), 100);
    load(stage, wav);
    playUntil(stage, 100);
    hand.grab(hand.seekSlider());
    hand.moveHandle(hand.seekSlider(), 40);
    QCOMPARE(hand.frame()->value(), 40);
    hand.letGo(hand.seekSlider());
    QTRY_VERIFY(hand.frame()->value() >= 42);
    hand.click(hand.pause());
    hand.dragTo(hand.seekSlider(), 10);
    QTRY_COMPARE(hand.media()->position(), 500);
    QCOMPARE(hand.frame()->value(), 10);
    QCOMPARE(hand.log("TX"), QStringList());
}

// It counts as selected, but the player is not told to play it: some backends would wait for that
// at the next Stop.
void TestMediaSync::brokenFileWithoutLink()
{
    Stage stage;
    const Operator &hand = stage.hand();
    hand.setDemo(false);
    QVERIFY(stage.window().loadMediaFile(broken));
    QTRY_COMPARE(hand.media()->mediaStatus(), QMediaPlayer::InvalidMedia);
    QSignalSpy states(hand.media(), &QMediaPlayer::playbackStateChanged);
    hand.click(hand.play());
    QCOMPARE(hand.lastLog(), withoutUsb());
    QTRY_VERIFY(hand.frame()->value() >= 2);
    hand.click(hand.pause());
    hand.click(hand.stop());
    QCOMPARE(hand.frame()->value(), 0);
    QCOMPARE(states.size(), 0);
    QCOMPARE(hand.log("ERR").size(), 1);
}

void TestMediaSync::lostLineStopsTheMedia()
{
    Stage stage;
    const Operator &hand = stage.hand();
    QVERIFY(stage.connectPlayer());
    load(stage, wav);
    playUntil(stage, 100);
    stage.unplug();
    QTRY_COMPARE(hand.state(), u"Stopped"_s);
    QVERIFY(isStopped(hand.media()));
}

void TestMediaSync::stopThenPlay()
{
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, longWebm);
    playUntil(stage, 600);
    hand.click(hand.stop());
    QSignalSpy positions(hand.media(), &QMediaPlayer::positionChanged);
    hand.click(hand.play());
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::PlayingState);
    QTRY_VERIFY(positions.size() >= 5);
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::PlayingState);
    QVERIFY(reached(positions, 0, 399));
    QTRY_VERIFY(hand.media()->position() >= 600);
}

void TestMediaSync::stopThenPause()
{
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, longWebm);
    playUntil(stage, 600);
    hand.click(hand.stop());
    hand.click(hand.pause());
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::PausedState);
    QTRY_COMPARE(hand.media()->position(), 0);
    hand.type(hand.total(), 50);
    hand.dragTo(hand.seekSlider(), 20);
    QTRY_COMPARE(hand.media()->position(), 1000);
    QCOMPARE(hand.media()->playbackState(), QMediaPlayer::PausedState);
}

void TestMediaSync::stopTwice()
{
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, longWebm);
    playUntil(stage, 300);
    hand.click(hand.stop());
    hand.click(hand.stop());
    QTRY_VERIFY(isStopped(hand.media()));
    QVERIFY(preview(stage)->isVisible());
}

void TestMediaSync::loadThenPlay_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("sound") << wav;
    QTest::newRow("another video") << webm;
    QTest::newRow("the same video") << longWebm;
}

// Play at once after another file was chosen while a video played: the new file plays.
void TestMediaSync::loadThenPlay()
{
    QFETCH(QString, path);
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, longWebm);
    playUntil(stage, 600);
    QVERIFY(stage.window().loadMediaFile(path));
    hand.click(hand.play());
    QCOMPARE(hand.media()->source(), QUrl::fromLocalFile(path));
    QSignalSpy positions(hand.media(), &QMediaPlayer::positionChanged);
    QTRY_COMPARE(hand.media()->playbackState(), QMediaPlayer::PlayingState);
    QTRY_VERIFY(hand.media()->position() > 0);
    QTRY_VERIFY(reached(positions, 1, 599));
    QTRY_COMPARE(hand.log("MEDIA").filter(u"Media ready"_s).size(), 2);
    QCOMPARE(hand.log("ERR"), QStringList());
}

void TestMediaSync::seekThenStop()
{
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, longWebm);
    playUntil(stage, 200);
    hand.click(hand.pause());
    stage.window().seekSelectedMedia(30);
    stage.window().seekSelectedMedia(60);
    hand.click(hand.stop());
    QTRY_VERIFY(isStopped(hand.media()));
    QSignalSpy positions(hand.media(), &QMediaPlayer::positionChanged);
    playUntil(stage, 500);
    QVERIFY(!reached(positions, 1500, 5000)); // what was asked for before has no say any more
}

void TestMediaSync::seekThenLoad()
{
    Stage stage;
    const Operator &hand = stage.hand();
    load(stage, longWebm);
    playUntil(stage, 200);
    hand.click(hand.pause());
    stage.window().seekSelectedMedia(30);
    stage.window().seekSelectedMedia(60);
    load(stage, wav);
    QVERIFY(isStopped(hand.media()));
    QSignalSpy positions(hand.media(), &QMediaPlayer::positionChanged);
    playUntil(stage, 500);
    QCOMPARE(hand.media()->source(), QUrl::fromLocalFile(wav));
    QVERIFY(!reached(positions, 1500, 3000));
}

void TestMediaSync::quitWhilePlaying()
{
    Stage stage;
    load(stage, longWebm);
    playUntil(stage, 200);
    stage.quit();
}

void TestMediaSync::quitWhileStopping()
{
    Stage stage;
    load(stage, longWebm);
    playUntil(stage, 200);
    stage.hand().click(stage.hand().stop());
    QVERIFY(stage.window().loadMediaFile(webm));
    stage.quit();
    QCoreApplication::processEvents();
}

QTEST_MAIN(TestMediaSync)

#include "tst_mediasync.moc"
