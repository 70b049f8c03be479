// SPDX-License-Identifier: MIT
#include "simulator/playersimulator.h"
#include "tests/simulator/hostport.h"
#include "tests/simulator/wirebytes.h"

#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <filesystem>
#include <memory>
#include <string>

using namespace std::chrono_literals;
using qx::damaged;
using qx::FrameVerdict;
using qx::goldenFrame;
using qx::goldenFrameWithReserved;
using qx::numberedFrame;
using qx::PlayerSimulator;
using qx::SimulatorBehaviour;

namespace {

const QByteArray hello = QByteArrayLiteral("QXUSB HELLO\n");
const QByteArray ok = QByteArrayLiteral("QXUSB OK\n");
const QByteArray ready = QByteArrayLiteral("QXUSB READY\n");
const QByteArray rxOk = QByteArrayLiteral("QXUSB RX OK\n");
const QByteArray needHello = QByteArrayLiteral("QXUSB NEED HELLO\n");
const QByteArray badChecksum = QByteArrayLiteral("QXUSB BAD CHECKSUM\n");
const QByteArray ac39Fail = QByteArrayLiteral("QXUSB AC39 FAIL\n");

} // namespace

class TestPlayerSimulator : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void helloIsAnsweredAndLinks();
    void frameInASessionIsAcceptedWithAllItsFields();
    void frameWithoutASessionNeedsHello();
    void damagedFrameIsComplainedAbout();
    void findsItsWayBackAfterGarbage();
    void framesAreStampedInOrder();

    void answersEachNthHelloOnly();
    void answersNoHello();
    void saysReadyToTheFirstHelloOnly();
    void bootTextComesWithEachPlugIn();
    void delayedReplyComesNoSooner();
    void chunksAreWrittenOnTurnsOfTheirOwn();
    void everyNthFrameIsTreated_data();
    void everyNthFrameIsTreated();
    void needHelloEndsTheSession();
    void sameSeedGivesTheSameReplies();
    void probabilitiesAreKept();
    void silentPlayerReadsOn();
    void floodsWithText();
    void floodDoesNotPileUpWhenNobodyReads();

    void unplugHangsUpTheLine();
    void plugsInAgainAtTheSameLink();
    void halfAFrameGoesWithTheCable();
    void vanishesAtTheNthFrameAndReturns();
    void vanishedPlayerStaysAway();
    void deletedPlayerIsUnplugged();
    void unpluggingWhileAFrameIsHandledIsSafe();
    void unpluggedPlayerHoldsNoDescriptor();
    void linkLeftBehindIsReplaced();
    void foreignFileIsNotReplaced_data();
    void foreignFileIsNotReplaced();
    void linkTakenOverByAnotherStays();
    void secondPlugInFails();
    void failedReturnIsReported();

    void noEchoAfterTheLastUserHasClosed();
    void pausedPlayerMakesTheHostWait();
    void textBeyondTheLinesRoomArrivesComplete();
    void recordsStayWithinTheirBound();
    void forgettingKeepsTheSession();
    void theBooksBalance();

private:
    void behave(const SimulatorBehaviour &behaviour) { player->setBehaviour(behaviour); }
    void link();
    void offer(const QByteArray &bytes, const QByteArray &reply);
    QString linkPath() const { return directory->filePath(QStringLiteral("player")); }

    std::unique_ptr<QTemporaryDir> directory;
    std::unique_ptr<PlayerSimulator> player;
    std::unique_ptr<qx::HostPort> host;
};

void TestPlayerSimulator::init()
{
    directory = std::make_unique<QTemporaryDir>();
    player = std::make_unique<PlayerSimulator>();
    host = std::make_unique<qx::HostPort>();
    QVERIFY2(player->plugIn(linkPath()), qPrintable(player->errorString()));
    QVERIFY(host->open(player->portPath()));
}

void TestPlayerSimulator::cleanup()
{
    host.reset();
    player.reset();
    directory.reset();
}

// Writes the bytes and waits for exactly this reply.
void TestPlayerSimulator::offer(const QByteArray &bytes, const QByteArray &reply)
{
    host->forget();
    QCOMPARE(host->write(bytes), bytes.size());
    QTRY_COMPARE(host->received(), reply);
}

// Behaviours that spoil the handshake are set afterwards.
void TestPlayerSimulator::link()
{
    offer(hello, ok);
    host->forget();
}

// The well-behaved player

void TestPlayerSimulator::helloIsAnsweredAndLinks()
{
    QSignalSpy hellos(player.get(), &PlayerSimulator::helloReceived);
    QVERIFY(!player->linked());
    offer(hello, ok);
    QVERIFY(player->linked());
    offer(QByteArrayLiteral("QXUSB HELLO\r\n"), ok);
    QCOMPARE(player->helloCount(), 2);
    QCOMPARE(hellos.size(), 2);
}

void TestPlayerSimulator::frameInASessionIsAcceptedWithAllItsFields()
{
    QSignalSpy accepted(player.get(), &PlayerSimulator::frameAccepted);
    QSignalSpy replied(player.get(), &PlayerSimulator::frameReplied);
    link();
    offer(goldenFrameWithReserved(), rxOk);
    QCOMPARE(accepted.size(), 1);
    QCOMPARE(replied.size(), 1);
    QCOMPARE(replied[0][0].toByteArray(), rxOk);

    const QList<qx::SimulatedFrame> frames = player->frames();
    QCOMPARE(frames.size(), 1);
    QCOMPARE(frames[0].number, 0x1234);
    QCOMPARE(frames[0].hy, 3);
    QCOMPARE(frames[0].red, 10);
    QCOMPARE(frames[0].green, 20);
    QCOMPARE(frames[0].blue, 30);
    QCOMPARE(frames[0].white, 40);
    QCOMPARE(frames[0].reserved, (std::array<quint8, 6>{1, 2, 3, 4, 5, 6}));
    QCOMPARE(frames[0].bytes, goldenFrameWithReserved());
    QVERIFY(frames[0].answered);
    QVERIFY(replied[0][1].value<std::chrono::nanoseconds>() >= frames[0].at);
    QCOMPARE(player->received(), hello + goldenFrameWithReserved());
}

void TestPlayerSimulator::frameWithoutASessionNeedsHello()
{
    QSignalSpy arrived(player.get(), &PlayerSimulator::frameArrived);
    offer(goldenFrame(), needHello);
    QCOMPARE(player->frames().size(), 0);
    QCOMPARE(arrived.size(), 1);
    QCOMPARE(arrived[0][0].value<qx::SimulatedFrame>().verdict, FrameVerdict::NeedHello);
    link();
    offer(goldenFrame(), rxOk);
    QCOMPARE(player->frames().size(), 1);
}

void TestPlayerSimulator::damagedFrameIsComplainedAbout()
{
    link();
    offer(damaged(goldenFrame()), badChecksum);
    QCOMPARE(player->checksumErrors(), 1);
    QCOMPARE(player->frames().size(), 0);
    QVERIFY(player->linked());
    offer(goldenFrame(), rxOk);
    QCOMPARE(player->unknownBytes(), 0);
}

void TestPlayerSimulator::findsItsWayBackAfterGarbage()
{
    link();
    offer(QByteArrayLiteral("\x01\x02\xFF\xFF\x17nonsense") + goldenFrame(), rxOk);
    QTRY_COMPARE(player->unknownBytes(), 13);
    offer(QByteArrayLiteral("AT+RST\r\n") + hello, ok);
    QTRY_COMPARE(player->unknownBytes(), 13 + 8);
    offer(goldenFrame().first(9) + goldenFrame(), badChecksum + rxOk);
}

void TestPlayerSimulator::framesAreStampedInOrder()
{
    link();
    for (quint16 number = 1; number <= 5; ++number)
        offer(numberedFrame(number), rxOk);
    const QList<qx::SimulatedFrame> frames = player->frames();
    QCOMPARE(frames.size(), 5);
    for (qsizetype i = 1; i < frames.size(); ++i) {
        QCOMPARE(frames[i].number, i + 1);
        QVERIFY(frames[i].at > frames[i - 1].at);
    }
}

// Misbehaviour

void TestPlayerSimulator::answersEachNthHelloOnly()
{
    behave({.answerHelloNumber = 3});
    host->write(hello + hello);
    QTRY_COMPARE(player->helloCount(), 2);
    QVERIFY(!player->linked());
    host->write(hello);
    QTRY_COMPARE(host->received(), ok);
    QVERIFY(player->linked());
}

void TestPlayerSimulator::answersNoHello()
{
    behave({.answerHelloNumber = 0});
    offer(hello + hello + goldenFrame(), needHello);
    QCOMPARE(player->helloCount(), 2);
}

void TestPlayerSimulator::saysReadyToTheFirstHelloOnly()
{
    behave({.answerHelloNumber = 2, .readyFirst = true});
    offer(hello, ready);
    QVERIFY(!player->linked());
    offer(hello, ok);
    offer(hello + hello, ok);
    QCOMPARE(player->counts().readySent, 1);
    QCOMPARE(player->counts().okSent, 2);
}

void TestPlayerSimulator::bootTextComesWithEachPlugIn()
{
    player->unplug();
    behave({.bootText = "ESP-ROM:esp32s3\nboot\n"});
    for (int time = 0; time < 2; ++time) {
        QVERIFY(player->plugIn(linkPath()));
        QVERIFY(host->open(linkPath()));
        QTRY_COMPARE(host->received(), QByteArrayLiteral("ESP-ROM:esp32s3\nboot\n"));
        player->unplug();
    }
}

void TestPlayerSimulator::delayedReplyComesNoSooner()
{
    QSignalSpy replied(player.get(), &PlayerSimulator::frameReplied);
    link();
    behave({.replyDelay = 30ms});
    offer(goldenFrame() + numberedFrame(2), rxOk + rxOk);
    QCOMPARE(replied.size(), 2);
    for (qsizetype i = 0; i < 2; ++i) {
        const auto repliedAt = replied[i][1].value<std::chrono::nanoseconds>();
        const std::chrono::nanoseconds waited = repliedAt - player->frames()[i].at;
        QVERIFY2(waited >= 30ms, std::to_string(waited.count()).c_str());
    }
}

void TestPlayerSimulator::chunksAreWrittenOnTurnsOfTheirOwn()
{
    link();
    behave({.chunkBytes = 1});
    int turns = 0;
    QTimer everyTurn;
    connect(&everyTurn, &QTimer::timeout, this, [&turns] { ++turns; });
    connect(player.get(), &PlayerSimulator::frameArrived, &everyTurn,
            [&everyTurn] { everyTurn.start(0); });
    connect(player.get(), &PlayerSimulator::frameReplied, &everyTurn, &QTimer::stop);
    offer(goldenFrame(), rxOk);
    QVERIFY2(turns >= rxOk.size() - 2, QByteArray::number(turns).constData());
    QCOMPARE(player->counts().rxOkSent, 1);

    turns = 0;
    behave({});
    offer(goldenFrame(), rxOk);
    QCOMPARE(turns, 0);
}

void TestPlayerSimulator::everyNthFrameIsTreated_data()
{
    QTest::addColumn<SimulatorBehaviour>("behaviour");
    QTest::addColumn<QByteArray>("replyToThird");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("no reply") << SimulatorBehaviour{.dropEvery = 3} << QByteArray() << true;
    QTest::newRow("bad checksum") << SimulatorBehaviour{.badChecksumEvery = 3} << badChecksum
                                  << false;
    QTest::newRow("AC39 fail") << SimulatorBehaviour{.ac39FailEvery = 3} << ac39Fail << false;
    QTest::newRow("need hello") << SimulatorBehaviour{.needHelloEvery = 3} << needHello << false;
    QTest::newRow("no reply comes before the rest")
        << SimulatorBehaviour{.dropEvery = 3, .badChecksumEvery = 3, .needHelloEvery = 3}
        << QByteArray() << true;
}

void TestPlayerSimulator::everyNthFrameIsTreated()
{
    QFETCH(SimulatorBehaviour, behaviour);
    QFETCH(QByteArray, replyToThird);
    QFETCH(bool, accepted);
    link();
    behave(behaviour);
    for (int round = 0; round < 2; ++round) {
        offer(numberedFrame(1) + numberedFrame(2), rxOk + rxOk);
        // The HELLO behind the third frame shows that no other reply comes before it.
        offer(numberedFrame(3) + hello, replyToThird + ok);
    }
    QCOMPARE(player->frames().size(), accepted ? 6 : 4);
    QCOMPARE(player->frames()[2].number, accepted ? 3 : 1);
    QCOMPARE(player->frames()[2].answered, !accepted);
    QCOMPARE(player->counts().framesArrived, 6);
    QCOMPARE(player->counts().framesUnanswered, accepted ? 2 : 0);
    QCOMPARE(player->checksumErrors(), 0);
}

void TestPlayerSimulator::needHelloEndsTheSession()
{
    link();
    behave({.needHelloEvery = 2});
    offer(goldenFrame(), rxOk);
    offer(goldenFrame(), needHello);
    QVERIFY(!player->linked());
    offer(goldenFrame(), needHello);
    offer(hello, ok);
    offer(goldenFrame(), rxOk);
}

void TestPlayerSimulator::sameSeedGivesTheSameReplies()
{
    const auto repliesOfRun = [this](quint32 seed) {
        behave({.badChecksumProbability = 0.3, .ac39FailProbability = 0.3, .seed = seed});
        host->forget();
        QSignalSpy replied(player.get(), &PlayerSimulator::frameReplied);
        for (quint16 number = 0; number < 100; ++number)
            host->write(numberedFrame(number));
        QByteArray replies;
        if (QTest::qWaitFor([&] { return replied.size() == 100; })) {
            for (const QList<QVariant> &reply : std::as_const(replied))
                replies += reply[0].toByteArray();
        }
        return replies;
    };
    link();
    const QByteArray first = repliesOfRun(7);
    QVERIFY(!first.isEmpty());
    QCOMPARE(repliesOfRun(7), first);
    QVERIFY(repliesOfRun(8) != first);
}

void TestPlayerSimulator::probabilitiesAreKept()
{
    link();
    behave({.dropProbability = 0.25, .seed = 42});
    constexpr int count = 2000;
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes += numberedFrame(static_cast<quint16>(i));
    while (!bytes.isEmpty()) {
        bytes.remove(0, qMax<qint64>(host->write(bytes), 0));
        QCoreApplication::processEvents();
        host->forget();
    }
    QTRY_COMPARE(player->counts().framesArrived, count);
    // Five standard deviations of a fair quarter; the seed makes the outcome the same each time.
    const qint64 dropped = player->counts().framesUnanswered;
    QVERIFY2(dropped > 400 && dropped < 600, QByteArray::number(dropped).constData());
    QCOMPARE(player->frames().size(), count);
}

void TestPlayerSimulator::silentPlayerReadsOn()
{
    link();
    behave({.silent = true});
    host->write(hello + goldenFrame() + damaged(goldenFrame()));
    QTRY_COMPARE(player->counts().framesArrived, 2);
    QCOMPARE(player->frames().size(), 1);
    QCOMPARE(player->helloCount(), 2);
    QCOMPARE(player->counts().framesUnanswered, 2);
    // Whatever the silent player had said would come before this reply.
    behave({});
    host->write(goldenFrame());
    QTRY_COMPARE(host->received(), rxOk);
}

void TestPlayerSimulator::floodsWithText()
{
    behave({.floodLinesPerSecond = 2000});
    QTRY_VERIFY(host->received().count('\n') >= 100);
    QVERIFY(host->received().startsWith("I ("));
    behave({});
    QTRY_COMPARE(host->received().count('\n'), player->counts().floodLinesSent);
    offer(hello, ok);
}

void TestPlayerSimulator::floodDoesNotPileUpWhenNobodyReads()
{
    behave({.floodLinesPerSecond = 1'000'000});
    QTRY_VERIFY(player->unsentBytes() > 0);
    for (int turn = 0; turn < 20; ++turn) {
        QVERIFY(player->unsentBytes() < 100); // the rest of one line
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

// The cable

void TestPlayerSimulator::unplugHangsUpTheLine()
{
    QSignalSpy unplugged(player.get(), &PlayerSimulator::unplugged);
    link();
    QVERIFY(!host->isHungUp());
    player->unplug();
    QVERIFY(host->isHungUp());
    QVERIFY(!player->isPluggedIn());
    QVERIFY(!player->linked());
    QVERIFY(!QFileInfo(linkPath()).isSymLink());
    player->unplug();
    QCOMPARE(unplugged.size(), 1);
}

void TestPlayerSimulator::plugsInAgainAtTheSameLink()
{
    QSignalSpy pluggedIn(player.get(), &PlayerSimulator::pluggedIn);
    link();
    player->unplug();
    QVERIFY(player->plugIn(linkPath()));
    QCOMPARE(pluggedIn.size(), 1);
    QCOMPARE(player->portPath(), linkPath());
    QVERIFY(host->isHungUp()); // the old line stays dead
    QVERIFY(host->open(linkPath()));
    offer(goldenFrame(), needHello);
    link();
    offer(goldenFrame(), rxOk);
}

void TestPlayerSimulator::halfAFrameGoesWithTheCable()
{
    host->write(goldenFrame().first(10));
    QTRY_COMPARE(player->counts().bytesReceived, 10);
    player->unplug();
    QVERIFY(player->plugIn(linkPath()));
    QVERIFY(host->open(linkPath()));
    offer(hello + goldenFrame(), ok + rxOk);
    QCOMPARE(player->checksumErrors(), 0);
}

void TestPlayerSimulator::vanishesAtTheNthFrameAndReturns()
{
    QSignalSpy pluggedIn(player.get(), &PlayerSimulator::pluggedIn);
    link();
    behave({.vanishAfterFrames = 2, .returnAfter = 20ms});
    offer(goldenFrame(), rxOk);
    host->write(goldenFrame());
    QTRY_VERIFY(host->isHungUp());
    QCOMPARE(player->frames().size(), 2);
    QVERIFY(!player->frames()[1].answered);
    QTRY_COMPARE(pluggedIn.size(), 1);
    QVERIFY(host->open(linkPath()));
    link();
    offer(goldenFrame(), rxOk);
    host->write(goldenFrame());
    QTRY_VERIFY(host->isHungUp());
}

void TestPlayerSimulator::vanishedPlayerStaysAway()
{
    link();
    behave({.vanishAfterFrames = 1});
    host->write(goldenFrame() + goldenFrame());
    QTRY_VERIFY(host->isHungUp());
    QVERIFY(!player->isPluggedIn());
    // Nothing is left that could bring it back: no timer, no notifier, no frame to handle.
    QCOMPARE(player->frames().size(), 1);
    QVERIFY(player->plugIn(linkPath()));
}

void TestPlayerSimulator::deletedPlayerIsUnplugged()
{
    QSignalSpy unplugged(player.get(), &PlayerSimulator::unplugged);
    player.reset();
    QVERIFY(host->isHungUp());
    QVERIFY(!QFileInfo(linkPath()).isSymLink());
    QCOMPARE(unplugged.size(), 0);
}

void TestPlayerSimulator::unpluggingWhileAFrameIsHandledIsSafe()
{
    link();
    connect(player.get(), &PlayerSimulator::frameAccepted, player.get(), [this] {
        player->unplug();
        player->plugIn(linkPath());
    });
    host->write(goldenFrame() + goldenFrame());
    QTRY_VERIFY(host->isHungUp());
    QCOMPARE(player->frames().size(), 1);
    QVERIFY(host->open(linkPath()));
    link();
}

void TestPlayerSimulator::unpluggedPlayerHoldsNoDescriptor()
{
    const auto descriptors = [] {
        const std::filesystem::directory_iterator all("/dev/fd");
        return std::distance(begin(all), end(all));
    };
    host->close();
    player->unplug();
    const auto unplugged = descriptors();
    QVERIFY(player->plugIn());
    QVERIFY(player->portPath().startsWith(QStringLiteral("/dev/")));
    QCOMPARE(descriptors(), unplugged + 2);
    player->unplug();
    QVERIFY(player->portPath().isEmpty());
    QCOMPARE(descriptors(), unplugged);
}

void TestPlayerSimulator::linkLeftBehindIsReplaced()
{
    const QString path = directory->filePath(QStringLiteral("old"));
    const QString terminal = QFileInfo(linkPath()).symLinkTarget();
    QFile gone(terminal + QStringLiteral("99999"));
    QVERIFY(gone.link(path));
    PlayerSimulator second;
    QVERIFY2(second.plugIn(path), qPrintable(second.errorString()));
    QVERIFY(host->open(path));
    offer(hello, ok);
    QCOMPARE(second.helloCount(), 1);
}

void TestPlayerSimulator::foreignFileIsNotReplaced_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("file") << QStringLiteral("file");
    QTest::newRow("link to a file") << QStringLiteral("link");
    QTest::newRow("dangling link") << QStringLiteral("dangling");
    QTest::newRow("missing directory") << QStringLiteral("missing/player");
}

void TestPlayerSimulator::foreignFileIsNotReplaced()
{
    QFETCH(QString, kind);
    QFile file(directory->filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.link(directory->filePath(QStringLiteral("link"))));
    QFile nothing(directory->filePath(QStringLiteral("nothing")));
    QVERIFY(nothing.link(directory->filePath(QStringLiteral("dangling"))));

    const QString path = directory->filePath(kind);
    const QFileInfo before(path);
    const QString target = before.symLinkTarget();
    PlayerSimulator second;
    QVERIFY(!second.plugIn(path));
    QVERIFY2(second.errorString().contains(path), qPrintable(second.errorString()));
    QVERIFY(!second.isPluggedIn());
    QCOMPARE(QFileInfo(path).symLinkTarget(), target);
    QCOMPARE(QFileInfo::exists(path), before.exists());
}

void TestPlayerSimulator::linkTakenOverByAnotherStays()
{
    PlayerSimulator second;
    QVERIFY(second.plugIn(linkPath()));
    player->unplug();
    QVERIFY(host->open(linkPath()));
    offer(hello, ok);
    QCOMPARE(second.helloCount(), 1);
}

void TestPlayerSimulator::secondPlugInFails()
{
    QVERIFY(!player->plugIn(linkPath()));
    QVERIFY(!player->errorString().isEmpty());
    offer(hello, ok);
}

void TestPlayerSimulator::failedReturnIsReported()
{
    QSignalSpy failed(player.get(), &PlayerSimulator::returnFailed);
    QSignalSpy unplugged(player.get(), &PlayerSimulator::unplugged);
    link();
    behave({.vanishAfterFrames = 1, .returnAfter = 1ms});
    connect(player.get(), &PlayerSimulator::unplugged, this, [this] {
        QFile file(linkPath());
        QVERIFY(file.open(QIODevice::WriteOnly));
    });
    host->write(goldenFrame());
    QTRY_COMPARE(failed.size(), 1);
    QVERIFY(failed[0][0].toString().contains(linkPath()));
    QCOMPARE(unplugged.size(), 1);
    QVERIFY(!player->isPluggedIn());
}

// The line and the records

void TestPlayerSimulator::noEchoAfterTheLastUserHasClosed()
{
    for (int time = 0; time < 3; ++time) {
        offer(hello, ok);
        // Text from the device while nobody listens is what cooked mode would send back.
        host->close();
        player->say(QByteArrayLiteral("line\n"));
        QCoreApplication::processEvents();
        QVERIFY(host->open(linkPath()));
        QTRY_COMPARE(host->received(), QByteArrayLiteral("line\n"));
    }
    offer(goldenFrame(), rxOk);
    QCOMPARE(player->received(), hello + hello + hello + goldenFrame());
    QCOMPARE(player->unknownBytes(), 0);
}

void TestPlayerSimulator::pausedPlayerMakesTheHostWait()
{
    link();
    player->setPaused(true);
    QByteArray bytes;
    for (quint16 number = 0; number < 20'000; ++number)
        bytes += numberedFrame(number);
    const qint64 taken = host->write(bytes);
    QVERIFY2(taken > 0 && taken < bytes.size(), QByteArray::number(taken).constData());
    QCoreApplication::processEvents();
    QCOMPARE(player->received(), hello);

    player->setPaused(false);
    QTRY_COMPARE(player->counts().bytesReceived, hello.size() + taken);
    QCOMPARE(player->frames().size(), taken / 20);
    QTRY_COMPARE(host->received().size(), taken / 20 * rxOk.size());
}

void TestPlayerSimulator::textBeyondTheLinesRoomArrivesComplete()
{
    QByteArray text;
    for (int i = 0; text.size() < 1'000'000; ++i)
        text += QByteArray::number(i) + '\n';
    player->say(text);
    QVERIFY(player->unsentBytes() > 0);
    player->say(QByteArrayLiteral("end\n"));
    QTRY_COMPARE(host->received().size(), text.size() + 4);
    QCOMPARE(host->received(), text + "end\n");
    QCOMPARE(player->unsentBytes(), 0);
    offer(hello, ok);
}

void TestPlayerSimulator::recordsStayWithinTheirBound()
{
    link();
    player->setKeepRecords(3);
    for (quint16 number = 1; number <= 20; ++number) {
        offer(numberedFrame(number), rxOk);
        QVERIFY(player->frames().size() <= 3);
    }
    QCOMPARE(player->frames().size(), 3);
    QCOMPARE(player->frames().first().number, 18);
    QCOMPARE(player->received(), numberedFrame(18) + numberedFrame(19) + numberedFrame(20));
    QCOMPARE(player->counts().framesAccepted, 20);
    QCOMPARE(player->counts().bytesReceived, 12 + 20 * 20);
    player->setKeepRecords(0);
    offer(goldenFrame(), rxOk);
    QVERIFY(player->frames().isEmpty());
    QVERIFY(player->received().isEmpty());
}

void TestPlayerSimulator::forgettingKeepsTheSession()
{
    link();
    offer(goldenFrame(), rxOk);
    player->forget();
    QVERIFY(player->frames().isEmpty());
    QVERIFY(player->received().isEmpty());
    QCOMPARE(player->helloCount(), 0);
    QCOMPARE(player->counts().framesArrived, 0);
    offer(goldenFrame(), rxOk);
    QCOMPARE(player->frames().size(), 1);
}

void TestPlayerSimulator::theBooksBalance()
{
    link();
    player->forget();
    behave({.dropProbability = 0.2,
            .badChecksumProbability = 0.2,
            .ac39FailProbability = 0.2,
            .needHelloProbability = 0.2});
    for (quint16 number = 1; number <= 200; ++number) {
        host->write(number % 7 == 0 ? damaged(numberedFrame(number)) : numberedFrame(number));
        QTRY_COMPARE(player->counts().framesArrived, number);
        if (!player->linked()) {
            host->write(hello);
            QTRY_VERIFY(player->linked());
        }
    }
    const qx::SimulatorCounts &counts = player->counts();
    QCOMPARE(counts.rxOkSent + counts.needHelloSent + counts.badChecksumSent + counts.ac39FailSent +
                 counts.framesUnanswered,
             200);
    QCOMPARE(counts.checksumErrors, 200 / 7);
    QCOMPARE(player->frames().size(), counts.framesAccepted);
    const auto seen = [this](const QByteArray &line) {
        return ('\n' + host->received()).count('\n' + line);
    };
    QTRY_COMPARE(seen(ok), counts.okSent);
    QTRY_COMPARE(seen(rxOk), counts.rxOkSent);
    QTRY_COMPARE(seen(needHello), counts.needHelloSent);
    QTRY_COMPARE(seen(badChecksum), counts.badChecksumSent);
    QTRY_COMPARE(seen(ac39Fail), counts.ac39FailSent);
    QVERIFY(counts.rxOkSent > 0 && counts.needHelloSent > 0 && counts.ac39FailSent > 0);
    QVERIFY(counts.badChecksumSent > counts.checksumErrors && counts.framesUnanswered > 0);
}

QTEST_GUILESS_MAIN(TestPlayerSimulator)
#include "tst_playersimulator.moc"
