// SPDX-License-Identifier: MIT
#include "tests/serial/serialtest.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTimer>

#include <numeric>

using qx::SerialController;

namespace {

constexpr qsizetype limit = 4096;

const QString overflow =
    QStringLiteral("error: ESP text response buffer exceeded 4 KiB and was cleared");

/// What a stream holds, cut by another method than the controller's: all of it at once.
QByteArrayList linesOf(const QByteArray &stream)
{
    QByteArrayList lines = stream.split('\n');
    lines.removeLast(); // not ended yet
    for (QByteArray &line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
    }
    lines.removeAll(QByteArray());
    return lines;
}

/// Text of a badly behaved device: any byte but a line feed.
QByteArray randomLine(QRandomGenerator &random, int maxSize)
{
    static const QByteArray favourites("\r\r\0 \tQX\xff\x80", 10);
    QByteArray line(random.bounded(maxSize + 1), Qt::Uninitialized);
    for (char &byte : line)
        byte = favourites.at(random.bounded(static_cast<int>(favourites.size())));
    return line;
}

QByteArrayList cutAtRandom(QRandomGenerator &random, const QByteArray &stream, int maxSize)
{
    QByteArrayList chunks;
    for (qsizetype at = 0; at < stream.size(); at += chunks.last().size())
        chunks.append(stream.mid(at, 1 + random.bounded(maxSize)));
    return chunks;
}

} // namespace

class TestReceivedLines : public qx::SerialTest
{
    Q_OBJECT

private slots:
    void init();

    void chunksBecomeLines_data();
    void chunksBecomeLines();
    void chunkIsShownBeforeItsLines();
    void emptyReadingSaysNothing();
    void anyCuttingGivesTheSameLines();
    void linesOfAnyLengthObeyTheLimit();
    void lineThatFillsTheBufferIsDelivered();
    void lineOneByteTooLongIsDropped();
    void fullBufferIsKeptUntilTheNextByte();
    void overflowDropsTheCompleteLinesToo();
    void partialLineEndsWithTheConnection_data();
    void partialLineEndsWithTheConnection();
    void noLineComesFromAClosedPort();
    void chunkOfOneConnectionNeverReachesTheNext();
    void linesStayInOrderWhenAReceiverWaits_data();
    void linesStayInOrderWhenAReceiverWaits();

    void everyByteValuePassesTheRealLine();
    void megabytesWithoutALineEndAreDropped();

private:
    void deliver(const QByteArrayList &chunks);
};

void TestReceivedLines::init()
{
    SerialTest::init();
    openPort();
}

void TestReceivedLines::deliver(const QByteArrayList &chunks)
{
    for (const QByteArray &chunk : chunks)
        controller->port().deliver(chunk);
}

void TestReceivedLines::chunksBecomeLines_data()
{
    QTest::addColumn<QByteArrayList>("chunks");
    QTest::addColumn<QByteArrayList>("lines");

    const auto row = [](const char *name, const QByteArrayList &chunks,
                        const QByteArrayList &lines) { QTest::newRow(name) << chunks << lines; };
    row("a keyword in three chunks", {"QX", "USB O", "K\r\n"}, {"QXUSB OK"});
    row("several lines, some empty, in one chunk", {"A\n\nB\r\n\r\n"}, {"A", "B"});
    row("only line ends", {"\n\r\n\n", "\r", "\n"}, {});
    row("one carriage return belongs to the end", {"A\r\r\n"}, {"A\r"});
    row("two carriage returns alone", {"\r\r\n"}, {"\r"});
    row("carriage return and line feed in two chunks", {"A\r", "\nB\n"}, {"A", "B"});
    row("a carriage return ends no line", {"A\rB\r", "C\n"}, {"A\rB\rC"});
    row("carriage return at the start", {"\rA\n"}, {"\rA"});
    row("blanks are kept", {" \tA \t\r\n", " \n"}, {" \tA \t", " "});
    row("zero bytes are bytes", {QByteArray("A\0B\n\0\n", 6)},
        {QByteArray("A\0B", 3), QByteArray("\0", 1)});
    row("bytes that are no text", {"\xff\xfe\x80\n"}, {"\xff\xfe\x80"});
    row("a line in single bytes", {"O", "K", "\n"}, {"OK"});
    row("an unfinished line waits", {"A\nB"}, {"A"});
}

void TestReceivedLines::chunksBecomeLines()
{
    QFETCH(QByteArrayList, chunks);
    QFETCH(QByteArrayList, lines);

    deliver(chunks);

    QCOMPARE(history->chunks, chunks);
    QCOMPARE(history->lines, lines);
    QCOMPARE(history->events, QStringList());
}

void TestReceivedLines::chunkIsShownBeforeItsLines()
{
    QStringList order;
    connect(controller.get(), &SerialController::rawReceived, this,
            [&order] { order.append(QStringLiteral("chunk")); });
    connect(controller.get(), &SerialController::lineReceived, this,
            [&order] { order.append(QStringLiteral("line")); });

    deliver({"A\nB\n", "C\n"});

    QCOMPARE(order.join(QLatin1Char(' ')), QStringLiteral("chunk line line chunk line"));
}

void TestReceivedLines::emptyReadingSaysNothing()
{
    deliver({"A", QByteArray(), "B\n"});

    QCOMPARE(history->chunks, QByteArrayList({"A", "B\n"}));
    QCOMPARE(history->lines, QByteArrayList({"AB"}));
}

void TestReceivedLines::anyCuttingGivesTheSameLines()
{
    QRandomGenerator random(20260711);
    for (int round = 0; round < 300; ++round) {
        QByteArray stream;
        while (stream.size() < 20000)
            stream += randomLine(random, 1500) + '\n';
        stream += randomLine(random, 1500);
        const QByteArrayList chunks = cutAtRandom(random, stream, 1 + random.bounded(2500));

        history->clear();
        deliver(chunks);

        QCOMPARE(history->chunks, chunks);
        QCOMPARE(history->lines, linesOf(stream));
        QCOMPARE(history->events, QStringList());
        deliver({"\n"});
    }
}

void TestReceivedLines::linesOfAnyLengthObeyTheLimit()
{
    QRandomGenerator random(19937);
    qsizetype overflows = 0;
    for (int round = 0; round < 300; ++round) {
        QByteArray stream;
        while (stream.size() < 20000)
            stream += randomLine(random, 5000) + '\n';

        QByteArrayList expectedLines;
        QStringList expectedEvents;
        QByteArray waiting;
        const QByteArrayList chunks = cutAtRandom(random, stream, 3000);
        for (const QByteArray &chunk : chunks) {
            waiting += chunk;
            if (waiting.size() > limit) {
                waiting.clear();
                expectedEvents.append(overflow);
                continue;
            }
            expectedLines += linesOf(waiting);
            waiting = waiting.mid(waiting.lastIndexOf('\n') + 1);
        }

        history->clear();
        deliver(chunks);

        QCOMPARE(history->lines, expectedLines);
        QCOMPARE(history->events, expectedEvents);
        overflows += expectedEvents.size();
        deliver({"\n"});
    }
    QVERIFY(overflows > 300);
}

void TestReceivedLines::lineThatFillsTheBufferIsDelivered()
{
    const QByteArray line(limit - 1, 'x');
    const QByteArray stream = line + '\n';
    for (qsizetype cut = 0; cut <= stream.size(); ++cut) {
        history->clear();
        deliver({stream.first(cut), stream.mid(cut)});

        QCOMPARE(history->lines, QByteArrayList({line}));
        QCOMPARE(history->events, QStringList());
    }
}

void TestReceivedLines::lineOneByteTooLongIsDropped()
{
    const QByteArray stream = QByteArray(limit, 'x') + '\n';
    for (qsizetype cut = 0; cut <= stream.size(); ++cut) {
        history->clear();
        deliver({stream.first(cut), stream.mid(cut), "OK\n"});

        QCOMPARE(history->lines, QByteArrayList({"OK"}));
        QCOMPARE(history->events, QStringList({overflow}));
    }
}

void TestReceivedLines::fullBufferIsKeptUntilTheNextByte()
{
    deliver({QByteArray(limit, 'x')});
    QCOMPARE(history->events, QStringList());

    deliver({"\n"});
    QCOMPARE(history->events, QStringList({overflow}));
    QCOMPARE(history->lines, QByteArrayList());
    QVERIFY(controller->isOpen());
}

void TestReceivedLines::overflowDropsTheCompleteLinesToo()
{
    const QByteArray lines = QByteArray("A\n").repeated(limit / 2);
    deliver({lines}); // exactly the limit
    QCOMPARE(history->lines.size(), limit / 2);
    QCOMPARE(history->events, QStringList());

    history->clear();
    deliver({lines + 'B', "C\n"});
    QCOMPARE(history->lines, QByteArrayList({"C"}));
    QCOMPARE(history->chunks, QByteArrayList({lines + 'B', "C\n"}));
    QCOMPARE(history->events, QStringList({overflow}));

    history->clear();
    deliver({"begun ", lines.first(limit - 5), "D\n"}); // one byte more than the limit
    QCOMPARE(history->lines, QByteArrayList({"D"}));
    QCOMPARE(history->events, QStringList({overflow}));
}

void TestReceivedLines::partialLineEndsWithTheConnection_data()
{
    QTest::addColumn<bool>("fails");
    QTest::newRow("closed") << false;
    QTest::newRow("port failed") << true;
}

void TestReceivedLines::partialLineEndsWithTheConnection()
{
    QFETCH(bool, fails);

    deliver({"of the old "});
    if (fails)
        controller->port().fail(QSerialPort::ResourceError, QStringLiteral("gone"));
    else
        controller->close();
    QVERIFY(!controller->isOpen());
    QVERIFY(controller->open(peer->path(), 115200));
    deliver({"new\n"});

    QCOMPARE(history->lines, QByteArrayList({"new"}));
}

void TestReceivedLines::noLineComesFromAClosedPort()
{
    connect(controller.get(), &SerialController::lineReceived, this,
            [this] { controller->close(); });

    deliver({"A\nB\nC\n", "D\n"});

    QCOMPARE(history->lines, QByteArrayList({"A"}));
    QCOMPARE(history->chunks, QByteArrayList({"A\nB\nC\n"}));
}

void TestReceivedLines::chunkOfOneConnectionNeverReachesTheNext()
{
    const auto reconnect = [this](auto signal) {
        connect(
            controller.get(), signal, this, [this] { controller->open(peer->path(), 115200); },
            Qt::SingleShotConnection);
    };

    reconnect(&SerialController::lineReceived);
    deliver({"A\nB\nC", "D\n"});
    QCOMPARE(history->lines, QByteArrayList({"A", "D"}));

    history->clear();
    reconnect(&SerialController::rawReceived);
    deliver({"A\nB\nC", "D\n"});
    QCOMPARE(history->lines, QByteArrayList({"D"}));
}

void TestReceivedLines::linesStayInOrderWhenAReceiverWaits_data()
{
    QTest::addColumn<bool>("atTheChunk");
    QTest::newRow("inside the chunk's signal") << true;
    QTest::newRow("inside a line's signal") << false;
}

// A receiver that shows a message box lets further bytes in before it returns.
void TestReceivedLines::linesStayInOrderWhenAReceiverWaits()
{
    QFETCH(bool, atTheChunk);
    const auto letMoreIn = [this] { deliver({"nue\nC\nD", "E\n"}); };
    if (atTheChunk) {
        connect(controller.get(), &SerialController::rawReceived, this, letMoreIn,
                Qt::SingleShotConnection);
    } else {
        connect(controller.get(), &SerialController::lineReceived, this, letMoreIn,
                Qt::SingleShotConnection);
    }

    deliver({"A\nB\nconti", "F\n"});

    QCOMPARE(history->lines, QByteArrayList({"A", "B", "continue", "C", "DE", "F"}));
    QCOMPARE(history->events, QStringList());
}

void TestReceivedLines::everyByteValuePassesTheRealLine()
{
    QByteArray bytes(256, Qt::Uninitialized);
    std::iota(bytes.begin(), bytes.end(), '\0');

    QCOMPARE(peer->write(bytes), bytes.size());
    QTRY_COMPARE(history->chunks.join(), bytes);
    QCOMPARE(history->lines, QByteArrayList({bytes.first('\n')}));

    QCOMPARE(controller->send(bytes), bytes.size());
    QTRY_COMPARE(peer->received(), bytes);
}

void TestReceivedLines::megabytesWithoutALineEndAreDropped()
{
    const qsizetype flood = 4 * 1024 * 1024;
    qsizetype arrived = 0;
    qsizetype largest = 0;
    QByteArray lastLine;
    history.reset();
    int overflows = 0;
    connect(controller.get(), &SerialController::rawReceived, this, [&](const QByteArray &chunk) {
        arrived += chunk.size();
        largest = std::max(largest, chunk.size());
    });
    connect(controller.get(), &SerialController::lineReceived, this,
            [&lastLine](const QByteArray &line) { lastLine = line; });
    connect(controller.get(), &SerialController::errorOccurred, this,
            [&overflows](const QString &message) {
                QCOMPARE(qx::errorEvent(message), overflow);
                ++overflows;
            });

    qsizetype written = 0;
    QTimer writer;
    writer.callOnTimeout([&, text = QByteArray(limit, 'x')] {
        if (written < flood)
            written += peer->write(text);
    });
    writer.start(0);
    QTRY_VERIFY_WITH_TIMEOUT(written >= flood && arrived == written, 30000);
    QVERIFY(lastLine.isEmpty());
    QVERIFY2(largest <= limit, "the port's own buffer has a limit, too");
    // Each clearing took more than 4096 and, with chunks of at most 4096, no more than 8192.
    QVERIFY(overflows >= flood / (2 * limit) - 1);
    QVERIFY(overflows <= flood / limit);

    peer->write("\n");
    QTRY_COMPARE(arrived, written + 1);
    peer->write("OK\n");
    QTRY_COMPARE(lastLine, QByteArray("OK"));
    QVERIFY(controller->isOpen());
}

QTEST_GUILESS_MAIN(TestReceivedLines)
#include "tst_receivedlines.moc"
