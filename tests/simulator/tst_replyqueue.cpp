// SPDX-License-Identifier: MIT
#include "simulator/replyqueue.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <utility>

using namespace std::chrono_literals;
using qx::Occasion;
using qx::ReplyQueue;

class TestReplyQueue : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void isNotNeededByAPromptPlayer();
    void delayedReplyComesWholeAndNoSooner();
    void repliesComeInTheirOrder();
    void piecesMakeUpTheReply();
    void eachPieceHasATurnOfItsOwn();
    void undelayedReplyWaitsBehindOthers();
    void paceHoldsForLaterRepliesOnly();
    void tellsWhichReplyEndedAndWhatItAnswers();
    void clearedQueueGivesOutNothing();
    void clearingWhileAReplyEndsIsSafe();

private:
    QByteArray written() const;

    std::unique_ptr<ReplyQueue> queue;
    std::unique_ptr<QSignalSpy> pieces;
    std::unique_ptr<QSignalSpy> ended;
};

void TestReplyQueue::init()
{
    queue = std::make_unique<ReplyQueue>();
    pieces = std::make_unique<QSignalSpy>(queue.get(), &ReplyQueue::pieceDue);
    ended = std::make_unique<QSignalSpy>(queue.get(), &ReplyQueue::replyEnded);
}

// All that was given out so far.
QByteArray TestReplyQueue::written() const
{
    QByteArray bytes;
    for (const QList<QVariant> &piece : std::as_const(*pieces))
        bytes += piece[0].toByteArray();
    return bytes;
}

void TestReplyQueue::isNotNeededByAPromptPlayer()
{
    QVERIFY(!queue->isNeeded());
    queue->setPace(1ms, 0);
    QVERIFY(queue->isNeeded());
    queue->setPace(0ms, 1);
    QVERIFY(queue->isNeeded());
    queue->setPace(0ms, 0);
    QVERIFY(!queue->isNeeded());
}

void TestReplyQueue::delayedReplyComesWholeAndNoSooner()
{
    queue->setPace(30ms, 0);
    QElapsedTimer clock;
    clock.start();
    queue->add("reply\n", Occasion::Frame);
    QVERIFY(pieces->isEmpty());
    QTRY_COMPARE(pieces->size(), 1);
    QVERIFY2(clock.nsecsElapsed() >= 30'000'000, QByteArray::number(clock.nsecsElapsed()));
    QCOMPARE(written(), QByteArray("reply\n"));
}

void TestReplyQueue::repliesComeInTheirOrder()
{
    queue->setPace(5ms, 0);
    queue->add("first\n", Occasion::Hello);
    queue->add("second\n", Occasion::Frame);
    queue->add("third\n", Occasion::Frame);
    QTRY_COMPARE(written(), QByteArray("first\nsecond\nthird\n"));
    QCOMPARE(pieces->size(), 3);
    QVERIFY(queue->isNeeded()); // by the pace
    queue->setPace(0ms, 0);
    QVERIFY(!queue->isNeeded());
}

void TestReplyQueue::piecesMakeUpTheReply()
{
    queue->setPace(0ms, 3);
    queue->add("12345678", Occasion::Frame);
    QTRY_COMPARE(pieces->size(), 3);
    QCOMPARE(pieces->at(0)[0].toByteArray(), QByteArray("123"));
    QCOMPARE(pieces->at(1)[0].toByteArray(), QByteArray("456"));
    QCOMPARE(pieces->at(2)[0].toByteArray(), QByteArray("78"));
}

void TestReplyQueue::eachPieceHasATurnOfItsOwn()
{
    queue->setPace(0ms, 1);
    queue->add("1234", Occasion::Frame);
    qsizetype before = 0;
    while (pieces->size() < 4) {
        QVERIFY(pieces->size() <= before + 1);
        before = pieces->size();
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QCOMPARE(pieces->size(), before + 1);
}

void TestReplyQueue::undelayedReplyWaitsBehindOthers()
{
    queue->setPace(20ms, 0);
    queue->add("late\n", Occasion::Frame);
    queue->setPace(0ms, 0);
    QVERIFY(queue->isNeeded());
    queue->add("soon\n", Occasion::Frame);
    QTRY_COMPARE(written(), QByteArray("late\nsoon\n"));
    QVERIFY(!queue->isNeeded());
}

void TestReplyQueue::paceHoldsForLaterRepliesOnly()
{
    queue->setPace(0ms, 2);
    queue->add("1234", Occasion::Frame);
    queue->setPace(0ms, 0);
    queue->add("5678", Occasion::Frame);
    QTRY_COMPARE(written(), QByteArray("12345678"));
    QCOMPARE(pieces->size(), 3);
}

void TestReplyQueue::tellsWhichReplyEndedAndWhatItAnswers()
{
    QList<qsizetype> piecesBefore;
    connect(queue.get(), &ReplyQueue::replyEnded, this, [&] { piecesBefore += pieces->size(); });
    queue->setPace(0ms, 4);
    queue->add("hello\n", Occasion::Hello);
    queue->add("frame\n", Occasion::Frame);
    QTRY_COMPARE(ended->size(), 2);
    QCOMPARE(ended->at(0)[0].toByteArray(), QByteArray("hello\n"));
    QCOMPARE(ended->at(0)[1].value<Occasion>(), Occasion::Hello);
    QCOMPARE(ended->at(1)[0].toByteArray(), QByteArray("frame\n"));
    QCOMPARE(ended->at(1)[1].value<Occasion>(), Occasion::Frame);
    QCOMPARE(piecesBefore, (QList<qsizetype>{2, 4}));
}

void TestReplyQueue::clearedQueueGivesOutNothing()
{
    queue->setPace(0ms, 1);
    queue->add("gone", Occasion::Frame);
    queue->clear();
    queue->add("new", Occasion::Frame);
    QTRY_COMPARE(written(), QByteArray("new"));
}

void TestReplyQueue::clearingWhileAReplyEndsIsSafe()
{
    connect(queue.get(), &ReplyQueue::replyEnded, queue.get(), &ReplyQueue::clear);
    queue->setPace(1ms, 0);
    queue->add("first\n", Occasion::Frame);
    queue->add("forgotten\n", Occasion::Frame);
    QTRY_COMPARE(ended->size(), 1);
    queue->add("last\n", Occasion::Frame);
    QTRY_COMPARE(written(), QByteArray("first\nlast\n"));
}

QTEST_GUILESS_MAIN(TestReplyQueue)
#include "tst_replyqueue.moc"
