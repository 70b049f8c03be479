// SPDX-License-Identifier: MIT
#include "simulator/wiredecoder.h"
#include "tests/simulator/wirebytes.h"

#include <QTest>

using qx::WireDecoder;

namespace {

// One letter for each item: H, F (frame) or D (damaged frame).
QByteArray itemsOf(WireDecoder *decoder)
{
    QByteArray items;
    while (const auto item = decoder->next()) {
        items += item->kind == WireDecoder::Kind::Hello   ? 'H'
                 : item->kind == WireDecoder::Kind::Frame ? 'F'
                                                          : 'D';
    }
    return items;
}

} // namespace

class TestWireDecoder : public QObject
{
    Q_OBJECT

private slots:
    void bytesBecomeItems_data();
    void bytesBecomeItems();
    void byteByByteGivesTheSame_data() { bytesBecomeItems_data(); }
    void byteByByteGivesTheSame();
    void eachChangedByteOfAFrameIsNoticed();
    void endlessTextDoesNotPileUp();
};

void TestWireDecoder::bytesBecomeItems_data()
{
    const QByteArray hello = "QXUSB HELLO\n";
    const QByteArray frame = qx::goldenFrame();
    const QByteArray withLineFeeds = qx::numberedFrame(0x0A0A);
    const QByteArray withHello = QByteArray::fromHex("FFFF17123417") + "QXUSB HELLO\n?";

    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("items");
    QTest::addColumn<int>("unknown");

    QTest::newRow("hello") << hello << QByteArray("H") << 0;
    QTest::newRow("hello with a carriage return")
        << QByteArray("QXUSB HELLO\r\n") << QByteArray("H") << 0;
    QTest::newRow("hello in lower case") << QByteArray("qxusb hello\n") << QByteArray() << 12;
    QTest::newRow("hello with more text") << QByteArray("QXUSB HELLO 2\n") << QByteArray() << 14;
    QTest::newRow("text before hello") << QByteArray("xQXUSB HELLO\n") << QByteArray() << 13;
    QTest::newRow("garbage before hello")
        << QByteArray("\x01\xFF\xFF" + hello) << QByteArray("H") << 3;
    QTest::newRow("blank lines") << QByteArray("\n\r\n" + hello) << QByteArray("H") << 3;
    QTest::newRow("frame") << frame << QByteArray("F") << 0;
    QTest::newRow("two frames") << frame + frame << QByteArray("FF") << 0;
    QTest::newRow("frame, hello, frame") << frame + hello + frame << QByteArray("FHF") << 0;
    QTest::newRow("frame with line feeds inside") << withLineFeeds + hello << QByteArray("FH") << 0;
    QTest::newRow("garbage before a frame") << "\x17\xFF" + frame << QByteArray("F") << 2;
    QTest::newRow("text before a frame") << "QXUSB HEL" + frame << QByteArray("F") << 9;
    QTest::newRow("damaged frame") << qx::damaged(frame) + frame << QByteArray("DF") << 0;
    for (qsizetype size = 6; size < 20; ++size) {
        QTest::addRow("frame cut to %lld bytes, then a frame", static_cast<long long>(size))
            << qx::goldenFrameWithReserved().first(size) + frame << QByteArray("DF") << 0;
    }
    QTest::newRow("frame cut to 10 bytes, then hello, hello")
        << frame.first(10) + hello + hello << QByteArray("DHH") << 0;
    QTest::newRow("damaged frame that holds a hello")
        << withHello + frame << QByteArray("DHF") << 1;
    QTest::newRow("header cut short, then a frame")
        << frame.first(5) + frame << QByteArray("F") << 5;
}

void TestWireDecoder::bytesBecomeItems()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, items);
    QFETCH(int, unknown);

    WireDecoder decoder;
    decoder.append(bytes);
    QCOMPARE(itemsOf(&decoder), items);
    QCOMPARE(decoder.takeUnknownBytes(), unknown);
    QCOMPARE(decoder.takeUnknownBytes(), 0);
}

void TestWireDecoder::byteByByteGivesTheSame()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, items);
    QFETCH(int, unknown);

    WireDecoder decoder;
    QByteArray seen;
    for (const char byte : std::as_const(bytes)) {
        decoder.append(QByteArray(1, byte));
        seen += itemsOf(&decoder);
    }
    QCOMPARE(seen, items);
    QCOMPARE(decoder.takeUnknownBytes(), unknown);
}

void TestWireDecoder::eachChangedByteOfAFrameIsNoticed()
{
    for (qsizetype position = 0; position < 20; ++position) {
        QByteArray frame = qx::goldenFrameWithReserved();
        frame[position] = static_cast<char>(frame[position] ^ 0x40);
        WireDecoder decoder;
        decoder.append(frame + "QXUSB HELLO\n");
        QVERIFY2(!itemsOf(&decoder).contains('F'), QByteArray::number(position).constData());
    }
}

void TestWireDecoder::endlessTextDoesNotPileUp()
{
    WireDecoder decoder;
    qint64 unknown = 0;
    for (int i = 0; i < 1000; ++i) {
        decoder.append(QByteArray(100, 'a'));
        QCOMPARE(itemsOf(&decoder), QByteArray());
        unknown += decoder.takeUnknownBytes();
    }
    QVERIFY(unknown >= 100'000 - 356);
    decoder.append("\nQXUSB HELLO\n");
    QCOMPARE(itemsOf(&decoder), QByteArray("H"));
}

QTEST_GUILESS_MAIN(TestWireDecoder)
#include "tst_wiredecoder.moc"
