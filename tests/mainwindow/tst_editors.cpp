// SPDX-License-Identifier: MIT
#include "tests/support/stagetest.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace qx::test;
using qx::SimulatedFrame;

namespace {

const QString mark = u"border:1px solid #9b4d55;"_s;

// HY 3, frame 0x1234, levels 10, 20, 30, 40, reserved 01 to 06.
const QString sample = u"FF FF 17 12 34 17 03 12 34 0A 14 1E 28 01 02 03 04 05 06 2C"_s;
const QString sampleLine = u"TX    HY: 3  Frame: 4660  R: 10  G: 20  B: 30  W: 40"_s;

QString incomplete()
{
    return either(u"ERR   Manual data must be a complete 20-byte HEX frame"_s,
                  u"ERR   手动数据必须是完整20字节HEX"_s);
}

QString invalid()
{
    return either(u"ERR   The manual frame has an invalid fixed header or XOR checksum"_s,
                  u"ERR   手动帧的固定帧头或XOR校验错误"_s);
}

QString reservedInvalid()
{
    return either(u"The reserved field must contain exactly 6 hexadecimal bytes"_s,
                  u"保留字段必须恰好是 6 个十六进制字节"_s);
}

// Replaces the text by the clipboard: not every character is on a keyboard.
void paste(QLineEdit *edit, const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
    edit->selectAll();
    QTest::keySequence(edit, QKeySequence::Delete);
    QTest::keySequence(edit, QKeySequence::Paste);
}

QString reservedNotSent()
{
    return either(u"ERR   Frame not sent: the reserved field is not 6 HEX bytes"_s,
                  u"ERR   保留字段不是6个HEX字节，未发送"_s);
}

} // namespace

class EditorsTest : public StageTest
{
    Q_OBJECT

private slots:
    void startsWithNothingSet();
    void everyEditorHasItsPlaceInTheFrame();
    void aStoppedPlayerIsSentFrameZero();
    void theSummaryFollowsEveryEditor();
    void theSummaryShowsItsBeginning();
    void reservedField_data();
    void reservedField();
    void aMendedReservedFieldLosesItsMark();
    void theReservedMarkSpeaksTheLanguage();
    void thePanelMirrorsTheEditors();
    void theFrameEditorReachesTheTotal();
    void aSmallerTotalLeavesTheFrameAlone();

    void manualFrame_data();
    void manualFrame();
    void manualFrameReachesTheDeviceAsTyped();
    void pastedLineBreaksSeparate();
    void returnSendsLikeTheButton();
    void whatWasSentIsSelected();
    void theHandshakeWord_data();
    void theHandshakeWord();
    void theHandshakeWordWithoutALine();

private:
    SimulatedFrame sendToDevice();
};

// The frame that the button sends, as the device reads it.
SimulatedFrame EditorsTest::sendToDevice()
{
    const qsizetype before = player().frames().size();
    hand().click(hand().sendFrame());
    const bool came = QTest::qWaitFor([this, before] { return player().frames().size() > before; });
    return came ? player().frames().last() : SimulatedFrame{};
}

void EditorsTest::startsWithNothingSet()
{
    for (const QSpinBox *spin : {hand().header(), hand().frame(), hand().red(), hand().green(),
                                 hand().blue(), hand().white()})
        QCOMPARE(spin->value(), 0);
    QCOMPARE(hand().total()->value(), 1800);
    QCOMPARE(hand().reserved()->text(), u"00 00 00 00 00 00"_s);
    QCOMPARE(hand().reserved()->styleSheet(), QString());
    QCOMPARE(hand().summary()->text(), u"HY: 0  Frame: 0  R: 0  G: 0  B: 0  W: 0"_s);
    QVERIFY(hand().summary()->isReadOnly());
    QCOMPARE(hand().manual()->text(), QString());
}

void EditorsTest::everyEditorHasItsPlaceInTheFrame()
{
    QVERIFY(stage->connectPlayer());
    hand().click(hand().pause()); // a paused player is sent what the editors show
    hand().type(hand().total(), 65535);
    hand().type(hand().header(), 255);
    hand().type(hand().frame(), 0x1234);
    hand().typeLevels(1, 2, 254, 255);
    hand().type(hand().reserved(), u"0a 0B 0c 0D 0e 0F"_s);
    QTRY_VERIFY(hand().log("TX").last().startsWith(u"HY: 255  Frame: 4660  R: 1  G: 2  B: 254"));
    QTRY_COMPARE(player().frames().last().bytes.first(19),
                 QByteArray::fromHex("FFFF17123417FF12340102FEFF0A0B0C0D0E0F"));
}

void EditorsTest::aStoppedPlayerIsSentFrameZero()
{
    QVERIFY(stage->connectPlayer());
    hand().type(hand().header(), 7);
    hand().type(hand().frame(), 300);
    hand().typeLevels(10, 20, 30, 40);
    hand().type(hand().reserved(), u"01 02 03 04 05 06"_s);
    QCOMPARE(hand().summary()->text(), u"HY: 7  Frame: 0  R: 0  G: 0  B: 0  W: 0"_s);
    QCOMPARE(sendToDevice().bytes,
             QByteArray::fromHex("FFFF1712341707000000000000010203040506") + '\x26');
    QCOMPARE(hand().frame()->value(), 300); // only what is sent is 0
    QCOMPARE(hand().red()->value(), 10);
}

void EditorsTest::theSummaryFollowsEveryEditor()
{
    hand().click(hand().pause()); // a paused player is sent what the editors show
    const QString pattern = u"HY: %1  Frame: %2  R: %3  G: %4  B: %5  W: %6"_s;
    QCOMPARE(hand().summary()->text(), pattern.arg(0).arg(0).arg(0).arg(0).arg(0).arg(0));
    hand().type(hand().header(), 1);
    QCOMPARE(hand().summary()->text(), pattern.arg(1).arg(0).arg(0).arg(0).arg(0).arg(0));
    hand().type(hand().frame(), 300);
    QCOMPARE(hand().summary()->text(), pattern.arg(1).arg(300).arg(0).arg(0).arg(0).arg(0));
    hand().typeLevels(255, 2, 3, 4);
    QCOMPARE(hand().summary()->text(), pattern.arg(1).arg(300).arg(255).arg(2).arg(3).arg(4));
    QCOMPARE(hand().row(3)->text(), u"1"_s);
    QCOMPARE(hand().row(4)->text(), u"300 / 1800"_s);
    QCOMPARE(hand().row(5)->text(), u"255 / 2 / 3 / 4"_s);
    hand().click(hand().stop());
    QCOMPARE(hand().summary()->text(), pattern.arg(1).arg(0).arg(0).arg(0).arg(0).arg(0));
}

void EditorsTest::theSummaryShowsItsBeginning()
{
    hand().type(hand().reserved(), u"bad"_s);
    QCOMPARE(hand().summary()->cursorPosition(), 0);
    hand().type(hand().reserved(), u"000000000000"_s);
    QCOMPARE(hand().summary()->cursorPosition(), 0);
}

void EditorsTest::reservedField_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes"); // empty: refused

    const QByteArray bytes = QByteArray::fromHex("010203AABBFF");
    QTest::newRow("blanks") << u"01 02 03 AA BB FF"_s << bytes;
    QTest::newRow("nothing between") << u"010203AABBFF"_s << bytes;
    QTest::newRow("small letters") << u"01 02 03 aa bb ff"_s << bytes;
    QTest::newRow("mixed separators") << u"01:02-03_AA BB:FF"_s << bytes;
    QTest::newRow("separators everywhere") << u"-0:1_0 2--03AA B_BF:F "_s << bytes;
    QTest::newRow("no-break and wide spaces") << u"01\u00A002\u200303\u3000AABB\u2009FF"_s << bytes;
    QTest::newRow("empty") << QString() << QByteArray();
    QTest::newRow("separators only") << u" :-_"_s << QByteArray();
    QTest::newRow("five bytes") << u"01 02 03 AA BB"_s << QByteArray();
    QTest::newRow("five and a half") << u"01 02 03 AA BB F"_s << QByteArray();
    QTest::newRow("six and a half") << u"01 02 03 AA BB FF 0"_s << QByteArray();
    QTest::newRow("seven bytes") << u"01 02 03 AA BB FF 00"_s << QByteArray();
    QTest::newRow("a letter G") << u"01 02 03 AA BB FG"_s << QByteArray();
    QTest::newRow("commas") << u"01,02,03,AA,BB,FF"_s << QByteArray();
    QTest::newRow("prefixes") << u"0x01 02 03 AA BB FF"_s << QByteArray();
    QTest::newRow("full-width digits") << u"\uFF10\uFF11 02 03 AA BB FF"_s << QByteArray();
}

void EditorsTest::reservedField()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    QVERIFY(stage->connectPlayer());
    paste(hand().reserved(), text);
    clearLog();
    if (bytes.isEmpty()) {
        QCOMPARE(hand().reserved()->styleSheet(), mark);
        QCOMPARE(hand().summary()->text(), reservedInvalid());
        hand().click(hand().sendFrame());
        QCOMPARE(hand().log(), QStringList({reservedNotSent()}));
        QCoreApplication::processEvents();
        QCOMPARE(player().counts().framesArrived, 0);
    } else {
        QCOMPARE(hand().reserved()->styleSheet(), QString());
        QCOMPARE(hand().summary()->text(), u"HY: 0  Frame: 0  R: 0  G: 0  B: 0  W: 0"_s);
        QCOMPARE(sendToDevice().bytes.mid(13, 6), bytes);
    }
    QCOMPARE(hand().reserved()->text(), text); // what was typed stays as it is
}

void EditorsTest::aMendedReservedFieldLosesItsMark()
{
    hand().type(hand().reserved(), u"00 00 00 00 00 0"_s);
    QCOMPARE(hand().reserved()->styleSheet(), mark);
    hand().type(hand().header(), 5); // another editor does not hide it
    QCOMPARE(hand().summary()->text(), reservedInvalid());
    QTest::keyClick(hand().reserved(), Qt::Key_End);
    QTest::keyClicks(hand().reserved(), u"0"_s);
    QCOMPARE(hand().reserved()->styleSheet(), QString());
    QCOMPARE(hand().summary()->text(), u"HY: 5  Frame: 0  R: 0  G: 0  B: 0  W: 0"_s);
}

void EditorsTest::theReservedMarkSpeaksTheLanguage()
{
    hand().type(hand().reserved(), u"bad"_s);
    for (const auto language : {qx::UiLanguage::Chinese, qx::UiLanguage::English}) {
        hand().chooseLanguage(language);
        QCOMPARE(hand().summary()->text(), reservedInvalid());
        QCOMPARE(hand().reserved()->styleSheet(), mark);
    }
}

void EditorsTest::thePanelMirrorsTheEditors()
{
    hand().type(hand().frame(), 300);
    QCOMPARE(hand().position()->text(), u"300 / 1800"_s);
    QCOMPARE(hand().seekSlider()->value(), 300);
    hand().type(hand().total(), 400);
    QCOMPARE(hand().position()->text(), u"300 / 400"_s);
    QCOMPARE(hand().seekSlider()->maximum(), 400);
    hand().type(hand().header(), 12);
    QCOMPARE(hand().panel()->fileIndex(), 12);
    hand().click(hand().increase());
    QCOMPARE(hand().header()->value(), 13);
    QCOMPARE(hand().frame()->value(), 0);
}

void EditorsTest::theFrameEditorReachesTheTotal()
{
    QCOMPARE(hand().frame()->maximum(), 1800);
    hand().type(hand().total(), 65535);
    QCOMPARE(hand().frame()->maximum(), 65535);
    hand().type(hand().frame(), 65535);
    QCOMPARE(hand().position()->text(), u"65535 / 65535"_s);
    hand().type(hand().frame(), 0);
    hand().type(hand().total(), 10);
    QCOMPARE(hand().frame()->maximum(), 1800);
}

void EditorsTest::aSmallerTotalLeavesTheFrameAlone()
{
    hand().type(hand().frame(), 1700);
    hand().type(hand().total(), 5);
    QCOMPARE(hand().frame()->value(), 1700);
    QCOMPARE(hand().seekSlider()->value(), 5); // the slider ends at the total
    hand().type(hand().total(), 5000);
    hand().type(hand().frame(), 4000);
    hand().type(hand().total(), 5);
    QCOMPARE(hand().frame()->value(), 4000);
}

void EditorsTest::manualFrame_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("outcome"); // sent, incomplete, invalid, nothing

    const QString sent = u"sent"_s;
    const QString tooShort = u"incomplete"_s;
    const QString wrong = u"invalid"_s;
    QString packed = sample;
    packed.remove(u' ');
    const auto separatedBy = [](const QString &separator) {
        QString text = sample;
        return text.replace(u" "_s, separator);
    };
    QTest::newRow("as it is") << sample << sent;
    QTest::newRow("packed") << packed << sent;
    QTest::newRow("small letters") << sample.toLower() << sent;
    QTest::newRow("dashes") << separatedBy(u"-"_s) << sent;
    QTest::newRow("colons") << separatedBy(u":"_s) << sent;
    QTest::newRow("underscores") << separatedBy(u"_"_s) << sent;
    QTest::newRow("all of them at once") << separatedBy(u" -:_ "_s) << sent;
    QTest::newRow("no-break spaces") << separatedBy(u"\u00A0"_s) << sent;
    QTest::newRow("ideographic spaces") << separatedBy(u"\u3000"_s) << sent;
    QTest::newRow("line separators") << separatedBy(u"\u2028"_s) << sent;
    QTest::newRow("next-line characters") << separatedBy(u"\u0085"_s) << sent;
    QTest::newRow("white space around it") << u" \u3000 "_s + sample + u"\u00A0 "_s << sent;
    QTest::newRow("blanks inside the pairs") << packed.split(QString()).join(u' ') << sent;
    QTest::newRow("39 digits") << packed.chopped(1) << tooShort;
    QTest::newRow("41 digits") << packed + u'0' << tooShort;
    QTest::newRow("38 digits") << packed.chopped(2) << tooShort;
    QTest::newRow("42 digits") << packed + u"00"_s << tooShort;
    QTest::newRow("no digit, separators only") << u"-:_"_s << tooShort;
    QTest::newRow("40 digits and a letter") << packed + u'g' << tooShort;
    QTest::newRow("commas") << separatedBy(u","_s) << tooShort;
    QTest::newRow("a prefix") << u"0x"_s + packed << tooShort;
    QTest::newRow("zero-width spaces") << separatedBy(u"\u200B"_s) << tooShort;
    QTest::newRow("almost the handshake word") << u"HELLO!"_s << tooShort;
    QTest::newRow("the handshake word with two blanks") << u"QXUSB  HELLO"_s << tooShort;
    QTest::newRow("wrong checksum") << sample.chopped(1) + u'D' << wrong;
    QTest::newRow("wrong header") << u"FE"_s + sample.mid(2) << wrong;
    QTest::newRow("wrong header with its own checksum")
        << u"FF FF 17 12 34 18 00 00 00 00 00 00 00 00 00 00 00 00 00 29"_s << wrong;
    QTest::newRow("zeros") << QString(40, u'0') << wrong;
    QTest::newRow("empty") << QString() << u"nothing"_s;
    QTest::newRow("white space only") << u" \u3000\u00A0"_s << u"nothing"_s;
}

void EditorsTest::manualFrame()
{
    QFETCH(QString, text);
    QFETCH(QString, outcome);
    paste(hand().manual(), text);
    const QString shown = hand().manual()->text();
    clearLog();
    hand().click(hand().sendHex());
    QStringList expected;
    if (outcome == u"sent")
        expected = QStringList{sampleLine, u"RX    QXUSB RX OK  (DEMO)"_s};
    else if (outcome == u"incomplete")
        expected = QStringList{incomplete()};
    else if (outcome == u"invalid")
        expected = QStringList{invalid()};
    QCOMPARE(hand().log(), expected);
    QCOMPARE(hand().manual()->text(), shown);
    if (outcome == u"sent")
        QCOMPARE(hand().manual()->selectedText().size(), shown.size());
}

// Whatever the state: a stopped player's zeros are for frames from the editors.
void EditorsTest::manualFrameReachesTheDeviceAsTyped()
{
    QVERIFY(stage->connectPlayer());
    hand().type(hand().manual(), sample.toLower());
    hand().click(hand().sendHex());
    QTRY_COMPARE(player().frames().size(), 1);
    QCOMPARE(player().frames().first().bytes, QByteArray::fromHex(sample.toLatin1()));
    QCOMPARE(player().received().last(20), QByteArray::fromHex(sample.toLatin1()));
    QCOMPARE(hand().row(3)->text(), u"0"_s); // the editors are not touched
}

void EditorsTest::pastedLineBreaksSeparate()
{
    QString text = sample;
    paste(hand().manual(), text.replace(u" 0A"_s, u"\r\n0A\t"_s));
    clearLog();
    hand().click(hand().sendHex());
    QCOMPARE(hand().log("TX").size(), 1);
}

void EditorsTest::returnSendsLikeTheButton()
{
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        hand().type(hand().manual(), sample);
        clearLog();
        QTest::keyClick(hand().manual(), key);
        QCOMPARE(hand().log(), QStringList({sampleLine, u"RX    QXUSB RX OK  (DEMO)"_s}));
    }
    hand().type(hand().manual(), u"nonsense"_s);
    clearLog();
    QTest::keyClick(hand().manual(), Qt::Key_Return);
    QCOMPARE(hand().log(), QStringList({incomplete()}));
}

void EditorsTest::whatWasSentIsSelected()
{
    hand().type(hand().manual(), sample);
    QTest::keyClick(hand().manual(), Qt::Key_Return);
    QCOMPARE(hand().manual()->selectedText(), sample);
    QTest::keyClicks(hand().manual(), u"1"_s); // the next typing replaces it
    QCOMPARE(hand().manual()->text(), u"1"_s);
    QTest::keyClick(hand().manual(), Qt::Key_Return);
    QVERIFY(!hand().manual()->hasSelectedText()); // what was refused is there to be mended
}

void EditorsTest::theHandshakeWord_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("HELLO") << u"HELLO"_s;
    QTest::newRow("hello") << u"hello"_s;
    QTest::newRow("HeLLo between blanks") << u"  HeLLo \u3000"_s;
    QTest::newRow("QXUSB HELLO") << u"QXUSB HELLO"_s;
    QTest::newRow("qxusb hello") << u"qxusb hello"_s;
    QTest::newRow("Qxusb Hello between blanks") << u" Qxusb Hello "_s;
}

void EditorsTest::theHandshakeWord()
{
    QFETCH(QString, text);
    QVERIFY(stage->connectPlayer());
    paste(hand().manual(), text);
    clearLog();
    QTest::keyClick(hand().manual(), Qt::Key_Return);
    QCOMPARE(hand().log(), QStringList({helloLine(1)}));
    QTRY_COMPARE(player().helloCount(), 2);
    QTRY_COMPARE(hand().row(1)->text(), u"QXUSB OK"_s);
    QCOMPARE(player().received(), "QXUSB HELLO\nQXUSB HELLO\n"_ba);
}

void EditorsTest::theHandshakeWordWithoutALine()
{
    hand().type(hand().manual(), u"hello"_s);
    clearLog();
    QTest::keyClick(hand().manual(), Qt::Key_Return);
    QCOMPARE(hand().log(), QStringList({either(u"SYS   Handshake is not required in demo mode"_s,
                                               u"SYS   演示模式无需握手"_s)}));
    hand().setDemo(false);
    clearLog();
    QTest::keyClick(hand().manual(), Qt::Key_Return);
    QCOMPARE(
        hand().log(),
        QStringList({either(u"ERR   Cannot handshake because the serial port is disconnected"_s,
                            u"ERR   串口未连接，无法握手"_s)}));
}

QTEST_MAIN(EditorsTest)
#include "tst_editors.moc"
