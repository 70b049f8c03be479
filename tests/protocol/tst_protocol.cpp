// SPDX-License-Identifier: MIT
#include "i18n/language.h"
#include "protocol/protocol.h"

#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QtTest>

#include <limits>

using namespace qx;

namespace {

constexpr quint32 seed = 20;

QByteArray fromHex(const char *hex)
{
    return QByteArray::fromHex(hex);
}

QByteArray randomBytes(QRandomGenerator &random, qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = static_cast<char>(random.bounded(256));
    return bytes;
}

// The sum as the wire format describes it: byte by byte, at most 19 of them.
quint8 expectedChecksum(const QByteArray &bytes)
{
    quint8 sum = 0;
    for (int i = 0; i < bytes.size() && i < 19; ++i)
        sum = static_cast<quint8>(sum ^ static_cast<quint8>(bytes.at(i)));
    return sum;
}

QByteArray withRightChecksum(QByteArray frame)
{
    frame[19] = static_cast<char>(expectedChecksum(frame));
    return frame;
}

ControlFrame frameOf(quint8 hy, quint16 number, quint8 red, quint8 green, quint8 blue, quint8 white,
                     std::array<quint8, 6> reserved = {})
{
    return {hy, number, red, green, blue, white, reserved};
}

QString expectedHex(const QByteArray &bytes)
{
    constexpr char digits[] = "0123456789ABCDEF";
    QString text;
    for (const char byte : bytes) {
        const auto value = static_cast<quint8>(byte);
        text.append(QLatin1Char(digits[value / 16]));
        text.append(QLatin1Char(digits[value % 16]));
        text.append(QLatin1Char(' '));
    }
    text.chop(1);
    return text;
}

QString expectedText(const QByteArray &line)
{
    QString text;
    for (const char byte : line)
        text.append(QLatin1Char(byte));
    return text.trimmed();
}

// Whether every function answers as described for bytes that mean nothing.
void checkMeaningless(const QByteArray &bytes)
{
    QVERIFY(!Protocol::isValidControlFrame(bytes));
    QVERIFY(Protocol::frameSummary(bytes).isEmpty());
    QCOMPARE(Protocol::controlFrameChecksum(bytes), expectedChecksum(bytes));
    QCOMPARE(Protocol::bytesToHex(bytes), expectedHex(bytes));
    const DeviceReply reply = Protocol::parseReply(bytes);
    QCOMPARE(reply.kind, ReplyKind::Unknown);
    QCOMPARE(reply.text, expectedText(bytes));
}

} // namespace

class TestProtocol : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { Language::setCurrent(UiLanguage::Chinese); }

    void numbersAreFixed_data();
    void numbersAreFixed();
    void handshakeIsOneLine();

    void validFrame_data();
    void validFrame();
    void frameFieldHasItsOwnBytes_data();
    void frameFieldHasItsOwnBytes();
    void anyValueOfAnyFieldIsValid();
    void anyChangedByteMakesAFrameInvalid_data() { listValidFrames(); }
    void anyChangedByteMakesAFrameInvalid();
    void foreignHeaderIsInvalidThoughItsChecksumFits_data();
    void foreignHeaderIsInvalidThoughItsChecksumFits();
    void anyOtherSizeIsInvalid_data() { listValidFrames(); }
    void anyOtherSizeIsInvalid();
    void framesInTheManualAreValid();

    void checksum_data();
    void checksum();

    void reply_data();
    void reply();
    void replyWithAnyOtherByteIsUnknown();

    void summary_data();
    void summary();
    void summaryOfDamagedFrameIsEmpty_data();
    void summaryOfDamagedFrameIsEmpty();

    void hex_data();
    void hex();

    void stateText_data();
    void stateText();
    void stateTextFollowsTheLanguage();

    void randomBytesMeanNothing();
    void hugeInputs_data();
    void hugeInputs();

private:
    void listValidFrames();
};

void TestProtocol::numbersAreFixed_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("expected");
    QTest::newRow("Unknown") << static_cast<int>(ReplyKind::Unknown) << 0;
    QTest::newRow("Ready") << static_cast<int>(ReplyKind::Ready) << 1;
    QTest::newRow("Ok") << static_cast<int>(ReplyKind::Ok) << 2;
    QTest::newRow("RxOk") << static_cast<int>(ReplyKind::RxOk) << 3;
    QTest::newRow("NeedHello") << static_cast<int>(ReplyKind::NeedHello) << 4;
    QTest::newRow("BadChecksum") << static_cast<int>(ReplyKind::BadChecksum) << 5;
    QTest::newRow("Ac39Fail") << static_cast<int>(ReplyKind::Ac39Fail) << 6;
    QTest::newRow("Stopped") << static_cast<int>(PlaybackState::Stopped) << 1;
    QTest::newRow("Playing") << static_cast<int>(PlaybackState::Playing) << 2;
    QTest::newRow("Paused") << static_cast<int>(PlaybackState::Paused) << 3;
    QTest::newRow("a reply not parsed yet is Unknown") << static_cast<int>(DeviceReply().kind) << 0;
}

void TestProtocol::numbersAreFixed()
{
    QFETCH(int, value);
    QTEST(value, "expected");
}

void TestProtocol::handshakeIsOneLine()
{
    QCOMPARE(Protocol::handshake(), fromHex("51 58 55 53 42 20 48 45 4C 4C 4F 0A"));
}

void TestProtocol::validFrame_data()
{
    QTest::addColumn<ControlFrame>("frame");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("red, frame 1")
        << frameOf(1, 1, 255, 0, 0, 0)
        << fromHex("FF FF 17 12 34 17 01 00 01 FF 00 00 00 00 00 00 00 00 00 D9");
    QTest::newRow("all zero, as without any value set")
        << ControlFrame() << fromHex("FF FF 17 12 34 17 00 00 00 00 00 00 00 00 00 00 00 00 00 26");
    QTest::newRow("every field")
        << frameOf(3, 0x1234, 10, 20, 30, 40, {1, 2, 3, 4, 5, 6})
        << fromHex("FF FF 17 12 34 17 03 12 34 0A 14 1E 28 01 02 03 04 05 06 2C");
    QTest::newRow("frame number of two bytes")
        << frameOf(1, 300, 255, 0, 0, 0)
        << fromHex("FF FF 17 12 34 17 01 01 2C FF 00 00 00 00 00 00 00 00 00 F5");
    QTest::newRow("frame 256: high byte first")
        << frameOf(0, 256, 0, 0, 0, 0)
        << fromHex("FF FF 17 12 34 17 00 01 00 00 00 00 00 00 00 00 00 00 00 27");
    QTest::newRow("every field at its largest")
        << frameOf(255, 65535, 255, 255, 255, 255, {255, 255, 255, 255, 255, 255})
        << fromHex("FF FF 17 12 34 17 FF FF FF FF FF FF FF FF FF FF FF FF FF D9");
    QTest::newRow("line feeds inside are data")
        << frameOf(10, 0x0A0A, 10, 10, 10, 10, {10, 10, 10, 10, 10, 10})
        << fromHex("FF FF 17 12 34 17 0A 0A 0A 0A 0A 0A 0A 0A 0A 0A 0A 0A 0A 2C");
}

void TestProtocol::validFrame()
{
    QFETCH(ControlFrame, frame);
    QFETCH(QByteArray, bytes);
    QCOMPARE(Protocol::encodeControlFrame(frame).toHex(' '), bytes.toHex(' '));
    QVERIFY(Protocol::isValidControlFrame(bytes));
    QCOMPARE(Protocol::controlFrameChecksum(bytes), static_cast<quint8>(bytes.at(19)));
    QCOMPARE(Protocol::frameSummary(bytes), Protocol::frameSummary(frame));
}

void TestProtocol::frameFieldHasItsOwnBytes_data()
{
    QTest::addColumn<ControlFrame>("frame");
    QTest::addColumn<int>("offset");
    QTest::newRow("hy") << frameOf(0xA5, 0, 0, 0, 0, 0) << 6;
    QTest::newRow("frame, high byte") << frameOf(0, 0xA500, 0, 0, 0, 0) << 7;
    QTest::newRow("frame, low byte") << frameOf(0, 0x00A5, 0, 0, 0, 0) << 8;
    QTest::newRow("red") << frameOf(0, 0, 0xA5, 0, 0, 0) << 9;
    QTest::newRow("green") << frameOf(0, 0, 0, 0xA5, 0, 0) << 10;
    QTest::newRow("blue") << frameOf(0, 0, 0, 0, 0xA5, 0) << 11;
    QTest::newRow("white") << frameOf(0, 0, 0, 0, 0, 0xA5) << 12;
    for (std::size_t i = 0; i < 6; ++i) {
        ControlFrame frame;
        frame.reserved.at(i) = 0xA5;
        QTest::addRow("reserved[%zu]", i) << frame << static_cast<int>(13 + i);
    }
}

void TestProtocol::frameFieldHasItsOwnBytes()
{
    QFETCH(ControlFrame, frame);
    QFETCH(int, offset);
    QByteArray expected = Protocol::encodeControlFrame({});
    expected[offset] = '\xA5';
    QCOMPARE(Protocol::encodeControlFrame(frame).toHex(' '),
             withRightChecksum(expected).toHex(' '));
}

void TestProtocol::anyValueOfAnyFieldIsValid()
{
    QRandomGenerator random(seed);
    const QByteArray header = fromHex("FF FF 17 12 34 17");
    for (int i = 0; i < 10'000; ++i) {
        const QByteArray frame = withRightChecksum(header + randomBytes(random, 14));
        QVERIFY2(Protocol::isValidControlFrame(frame), frame.toHex(' '));
        QVERIFY(!Protocol::frameSummary(frame).isEmpty());
    }
}

void TestProtocol::listValidFrames()
{
    QTest::addColumn<QByteArray>("valid");
    QTest::newRow("all zero") << fromHex("FFFF1712341700000000000000000000000000 26");
    QTest::newRow("red") << fromHex("FFFF17123417010001FF000000000000000000 D9");
    QTest::newRow("every field") << fromHex("FFFF171234170312340A141E28010203040506 2C");
    QTest::newRow("all ones") << fromHex("FFFF17123417FFFFFFFFFFFFFFFFFFFFFFFFFF D9");
}

void TestProtocol::anyChangedByteMakesAFrameInvalid()
{
    QFETCH(QByteArray, valid);
    QVERIFY(Protocol::isValidControlFrame(valid));
    for (qsizetype offset = 0; offset < valid.size(); ++offset) {
        for (int difference = 1; difference < 256; ++difference) {
            QByteArray changed = valid;
            changed[offset] = static_cast<char>(changed.at(offset) ^ difference);
            QVERIFY2(!Protocol::isValidControlFrame(changed), changed.toHex(' '));
        }
    }
}

void TestProtocol::foreignHeaderIsInvalidThoughItsChecksumFits_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::newRow("byte 0") << fromHex("FE FF 17 12 34 17");
    QTest::newRow("byte 1") << fromHex("FF FE 17 12 34 17");
    QTest::newRow("byte 2") << fromHex("FF FF 16 12 34 17");
    QTest::newRow("byte 3") << fromHex("FF FF 17 13 34 17");
    QTest::newRow("byte 4") << fromHex("FF FF 17 12 35 17");
    QTest::newRow("byte 5") << fromHex("FF FF 17 12 34 18");
    QTest::newRow("bytes 0 and 1, same sum") << fromHex("FE FE 17 12 34 17");
    QTest::newRow("bytes 4 and 5, same sum") << fromHex("FF FF 17 12 35 16");
    QTest::newRow("bytes swapped, same sum") << fromHex("17 12 FF FF 34 17");
    QTest::newRow("nothing but zeros") << fromHex("00 00 00 00 00 00");
}

void TestProtocol::foreignHeaderIsInvalidThoughItsChecksumFits()
{
    QFETCH(QByteArray, header);
    const QByteArray foreign = withRightChecksum(header + QByteArray(14, '\0'));
    QCOMPARE(Protocol::controlFrameChecksum(foreign), static_cast<quint8>(foreign.at(19)));
    QVERIFY(!Protocol::isValidControlFrame(foreign));
    QVERIFY(Protocol::frameSummary(foreign).isEmpty());
}

void TestProtocol::anyOtherSizeIsInvalid()
{
    QFETCH(QByteArray, valid);
    for (qsizetype size = 0; size < valid.size(); ++size)
        QVERIFY(!Protocol::isValidControlFrame(valid.first(size)));
    // None of these changes the sum of the bytes.
    QVERIFY(!Protocol::isValidControlFrame(valid + '\0'));
    QVERIFY(!Protocol::isValidControlFrame('\0' + valid));
    QVERIFY(!Protocol::isValidControlFrame(valid + valid));
    QVERIFY(!Protocol::isValidControlFrame(valid + '\n'));
}

void TestProtocol::framesInTheManualAreValid()
{
    QFile manual(QFINDTESTDATA("../../docs/protocol.md"));
    QVERIFY2(manual.open(QIODevice::ReadOnly), qPrintable(manual.errorString()));
    const QString text = QString::fromUtf8(manual.readAll());
    static const QRegularExpression frame(QStringLiteral("FF FF 17 12 34 17( [0-9A-F]{2}){14}"));
    int count = 0;
    for (const QRegularExpressionMatch &match : frame.globalMatch(text)) {
        const QByteArray bytes = QByteArray::fromHex(match.captured().toLatin1());
        QVERIFY2(Protocol::isValidControlFrame(bytes), bytes.toHex(' '));
        ++count;
    }
    QVERIFY(count >= 4);
}

void TestProtocol::checksum_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("expected");
    QTest::newRow("null") << QByteArray() << 0;
    QTest::newRow("empty") << QByteArray("") << 0;
    QTest::newRow("one byte") << fromHex("A5") << 0xA5;
    QTest::newRow("five bytes, all count") << fromHex("01 02 04 08 10") << 0x1F;
    QTest::newRow("header") << fromHex("FF FF 17 12 34 17") << 0x26;
    QTest::newRow("byte 18 counts") << QByteArray(18, '\0') + '\x5A' << 0x5A;
    QTest::newRow("byte 19 does not count") << QByteArray(19, '\0') + '\x5A' << 0;
    QTest::newRow("nor does byte 20") << QByteArray(20, '\0') + '\x5A' << 0;
    QTest::newRow("complete frame")
        << fromHex("FF FF 17 12 34 17 03 12 34 0A 14 1E 28 01 02 03 04 05 06 2C") << 0x2C;
    QTest::newRow("frame with a wrong last byte")
        << fromHex("FF FF 17 12 34 17 03 12 34 0A 14 1E 28 01 02 03 04 05 06 00") << 0x2C;
}

void TestProtocol::checksum()
{
    QFETCH(QByteArray, bytes);
    const int sum = Protocol::controlFrameChecksum(bytes);
    QTEST(sum, "expected");
}

void TestProtocol::reply_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<ReplyKind>("kind");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QByteArray &line, ReplyKind kind,
                        const QString &text) { QTest::newRow(name) << line << kind << text; };
    const QString ok = QStringLiteral("QXUSB OK");

    row("ready", "QXUSB READY", ReplyKind::Ready, QStringLiteral("QXUSB READY"));
    row("ok", "QXUSB OK", ReplyKind::Ok, ok);
    row("rx ok", "QXUSB RX OK", ReplyKind::RxOk, QStringLiteral("QXUSB RX OK"));
    row("need hello", "QXUSB NEED HELLO", ReplyKind::NeedHello, QStringLiteral("QXUSB NEED HELLO"));
    row("bad checksum", "QXUSB BAD CHECKSUM", ReplyKind::BadChecksum,
        QStringLiteral("QXUSB BAD CHECKSUM"));
    row("A39 failure", "QXUSB AC39 FAIL", ReplyKind::Ac39Fail, QStringLiteral("QXUSB AC39 FAIL"));

    row("carriage return and line feed", "QXUSB OK\r\n", ReplyKind::Ok, ok);
    row("lower case", "qxusb ok", ReplyKind::Ok, QStringLiteral("qxusb ok"));
    row("mixed case is kept", "qXuSb Ac39 faiL", ReplyKind::Ac39Fail,
        QStringLiteral("qXuSb Ac39 faiL"));
    row("lower case, blank behind", "qxusb ready ", ReplyKind::Ready,
        QStringLiteral("qxusb ready"));
    row("lower case, blanks in front, carriage return", "  qxusb rx ok\r", ReplyKind::RxOk,
        QStringLiteral("qxusb rx ok"));
    row("all kinds of white space around", " \t\n\v\f\rQXUSB OK\r\f\v\n\t ", ReplyKind::Ok, ok);

    row("empty", "", ReplyKind::Unknown, QString());
    row("null", QByteArray(), ReplyKind::Unknown, QString());
    row("only white space", " \t\r\n", ReplyKind::Unknown, QString());
    row("our own line echoed", "QXUSB HELLO\n", ReplyKind::Unknown, QStringLiteral("QXUSB HELLO"));
    row("two blanks inside", "QXUSB  OK", ReplyKind::Unknown, QStringLiteral("QXUSB  OK"));
    row("tab inside", "QXUSB\tOK", ReplyKind::Unknown, QStringLiteral("QXUSB\tOK"));
    row("no blank inside", "QXUSBOK", ReplyKind::Unknown, QStringLiteral("QXUSBOK"));
    row("number behind", "QXUSB RX OK 1", ReplyKind::Unknown, QStringLiteral("QXUSB RX OK 1"));
    row("letters behind", "QXUSB OKAY", ReplyKind::Unknown, QStringLiteral("QXUSB OKAY"));
    row("punctuation behind", "QXUSB OK.", ReplyKind::Unknown, QStringLiteral("QXUSB OK."));
    row("word in front", "I QXUSB OK", ReplyKind::Unknown, QStringLiteral("I QXUSB OK"));
    row("cut short", "QXUSB O", ReplyKind::Unknown, QStringLiteral("QXUSB O"));
    row("only the first word", "QXUSB", ReplyKind::Unknown, QStringLiteral("QXUSB"));
    row("two replies in one line", "QXUSB OK\nQXUSB OK", ReplyKind::Unknown,
        QStringLiteral("QXUSB OK\nQXUSB OK"));

    row("NUL behind", QByteArray("QXUSB OK\0", 9), ReplyKind::Unknown, ok + QChar(0));
    row("NUL in front", QByteArray("\0QXUSB OK", 9), ReplyKind::Unknown, QChar(0) + ok);
    row("text behind a NUL", QByteArray("QXUSB OK\0more", 13), ReplyKind::Unknown,
        ok + QChar(0) + QStringLiteral("more"));
    row("Latin-1 letters", "caf\xE9 \xFF", ReplyKind::Unknown, QStringLiteral("caf\u00E9 \u00FF"));
    row("UTF-8 is read as Latin-1", "\xE6\x8F\xA1", ReplyKind::Unknown,
        QStringLiteral("\u00E6\u008F\u00A1"));
    row("no-break space is trimmed, but no keyword", "QXUSB OK\xA0", ReplyKind::Unknown, ok);
    row("next line is trimmed, but no keyword", "\x85QXUSB OK", ReplyKind::Unknown, ok);
}

void TestProtocol::reply()
{
    QFETCH(QByteArray, line);
    const DeviceReply reply = Protocol::parseReply(line);
    QTEST(reply.kind, "kind");
    QTEST(reply.text, "text");
}

void TestProtocol::replyWithAnyOtherByteIsUnknown()
{
    const QByteArray keyword = "QXUSB NEED HELLO";
    for (qsizetype offset = 0; offset < keyword.size(); ++offset) {
        for (int value = 0; value < 256; ++value) {
            QByteArray line = keyword;
            line[offset] = static_cast<char>(value);
            const bool same = line.toLower() == keyword.toLower();
            QCOMPARE(Protocol::parseReply(line).kind,
                     same ? ReplyKind::NeedHello : ReplyKind::Unknown);
        }
    }
}

void TestProtocol::summary_data()
{
    QTest::addColumn<ControlFrame>("frame");
    QTest::addColumn<QString>("expected");
    QTest::newRow("usual") << frameOf(1, 300, 255, 0, 0, 0)
                           << QStringLiteral("HY: 1  Frame: 300  R: 255  G: 0  B: 0  W: 0");
    QTest::newRow("all zero") << ControlFrame()
                              << QStringLiteral("HY: 0  Frame: 0  R: 0  G: 0  B: 0  W: 0");
    QTest::newRow("each field in its place, reserved bytes not shown")
        << frameOf(3, 0x1234, 10, 20, 30, 40, {1, 2, 3, 4, 5, 6})
        << QStringLiteral("HY: 3  Frame: 4660  R: 10  G: 20  B: 30  W: 40");
    QTest::newRow("largest values are not negative")
        << frameOf(255, 65535, 255, 255, 255, 255)
        << QStringLiteral("HY: 255  Frame: 65535  R: 255  G: 255  B: 255  W: 255");
    QTest::newRow("high byte alone")
        << frameOf(0, 0x8000, 128, 0, 0, 0)
        << QStringLiteral("HY: 0  Frame: 32768  R: 128  G: 0  B: 0  W: 0");
}

void TestProtocol::summary()
{
    QFETCH(ControlFrame, frame);
    for (const UiLanguage language : {UiLanguage::Chinese, UiLanguage::English}) {
        Language::setCurrent(language);
        QTEST(Protocol::frameSummary(frame), "expected");
        QTEST(Protocol::frameSummary(Protocol::encodeControlFrame(frame)), "expected");
    }
}

void TestProtocol::summaryOfDamagedFrameIsEmpty_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray frame = Protocol::encodeControlFrame(frameOf(1, 300, 255, 0, 0, 0));
    QTest::newRow("wrong checksum") << frame.first(19) + '\0';
    QTest::newRow("wrong header") << withRightChecksum('\0' + frame.sliced(1));
    QTest::newRow("too short") << frame.first(19);
    QTest::newRow("too long") << frame + '\0';
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("null") << QByteArray();
}

void TestProtocol::summaryOfDamagedFrameIsEmpty()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(Protocol::frameSummary(bytes), QString());
}

void TestProtocol::hex_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    QTest::newRow("null") << QByteArray() << QString();
    QTest::newRow("empty") << QByteArray("") << QString();
    QTest::newRow("one byte, two digits") << fromHex("0a") << QStringLiteral("0A");
    QTest::newRow("NUL") << QByteArray(1, '\0') << QStringLiteral("00");
    QTest::newRow("largest byte") << QByteArray(1, '\xFF') << QStringLiteral("FF");
    QTest::newRow("blanks between only") << fromHex("deadbeef") << QStringLiteral("DE AD BE EF");
    QTest::newRow("frame") << Protocol::encodeControlFrame(frameOf(1, 1, 255, 0, 0, 0))
                           << QStringLiteral("FF FF 17 12 34 17 01 00 01 FF "
                                             "00 00 00 00 00 00 00 00 00 D9");
}

void TestProtocol::hex()
{
    QFETCH(QByteArray, bytes);
    QTEST(Protocol::bytesToHex(bytes), "expected");
}

void TestProtocol::stateText_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("chinese");
    QTest::addColumn<QString>("english");
    const QString unknownChinese = QStringLiteral("未知");
    const QString unknown = QStringLiteral("Unknown");
    QTest::newRow("stopped") << 1 << QStringLiteral("已停止") << QStringLiteral("Stopped");
    QTest::newRow("playing") << 2 << QStringLiteral("发送中") << QStringLiteral("Playing");
    QTest::newRow("paused") << 3 << QStringLiteral("已暂停") << QStringLiteral("Paused");
    QTest::newRow("not set yet") << 0 << unknownChinese << unknown;
    QTest::newRow("behind the last") << 4 << unknownChinese << unknown;
    QTest::newRow("negative") << -1 << unknownChinese << unknown;
    QTest::newRow("largest") << std::numeric_limits<int>::max() << unknownChinese << unknown;
    QTest::newRow("smallest") << std::numeric_limits<int>::min() << unknownChinese << unknown;
}

void TestProtocol::stateText()
{
    QFETCH(int, state);
    Language::setCurrent(UiLanguage::Chinese);
    QTEST(Protocol::playbackStateText(static_cast<PlaybackState>(state)), "chinese");
    Language::setCurrent(UiLanguage::English);
    QTEST(Protocol::playbackStateText(static_cast<PlaybackState>(state)), "english");
}

void TestProtocol::stateTextFollowsTheLanguage()
{
    const QString before = Protocol::playbackStateText(PlaybackState::Paused);
    Language::setCurrent(UiLanguage::English);
    QCOMPARE(before, QStringLiteral("已暂停"));
    QCOMPARE(Protocol::playbackStateText(PlaybackState::Paused), QStringLiteral("Paused"));
}

void TestProtocol::randomBytesMeanNothing()
{
    QRandomGenerator random(seed);
    for (int repetition = 0; repetition < 100; ++repetition) {
        for (qsizetype size = 0; size <= 64; ++size) {
            const QByteArray bytes = randomBytes(random, size);
            checkMeaningless(bytes);
            if (QTest::currentTestFailed())
                QFAIL(bytes.toHex(' '));
        }
    }
}

void TestProtocol::hugeInputs_data()
{
    QTest::addColumn<QByteArray>("bytes");
    constexpr qsizetype size = 4'000'000;
    QRandomGenerator random(seed);
    QTest::newRow("random") << randomBytes(random, size);
    QTest::newRow("NUL") << QByteArray(size, '\0');
    QTest::newRow("0xFF") << QByteArray(size, '\xFF');
    QTest::newRow("blanks") << QByteArray(size, ' ');
    QTest::newRow("valid frames") << Protocol::encodeControlFrame({}).repeated(size / 20);
    QTest::newRow("replies") << QByteArray("QXUSB RX OK\n").repeated(size / 12);
}

void TestProtocol::hugeInputs()
{
    QFETCH(QByteArray, bytes);
    checkMeaningless(bytes);

    const DeviceReply reply = Protocol::parseReply(QByteArray(bytes.size(), ' ') + "QXUSB OK\r\n");
    QCOMPARE(reply.kind, ReplyKind::Ok);
    QCOMPARE(reply.text, QStringLiteral("QXUSB OK"));
}

QTEST_GUILESS_MAIN(TestProtocol)
#include "tst_protocol.moc"
