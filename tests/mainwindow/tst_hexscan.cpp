// SPDX-License-Identifier: MIT
#include "mainwindow/hexscan.h"

#include <QTest>

using namespace Qt::StringLiterals;

class HexScanTest : public QObject
{
    Q_OBJECT

private slots:
    void keepsTheDigits_data();
    void keepsTheDigits();
    void refusesAnythingElse_data();
    void refusesAnythingElse();
    void takesEveryCharacterOrRefusesIt();
    void wantsTheExactNumberOfBytes_data();
    void wantsTheExactNumberOfBytes();
};

void HexScanTest::keepsTheDigits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("digits");

    QTest::newRow("nothing") << QString() << QByteArray();
    QTest::newRow("separators only") << u" -:_\t"_s << QByteArray();
    QTest::newRow("all digits") << u"0123456789ABCDEFabcdef"_s << "0123456789ABCDEFabcdef"_ba;
    QTest::newRow("odd number") << u"1 2 3"_s << "123"_ba;
    QTest::newRow("blanks") << u"  0A  1b "_s << "0A1b"_ba;
    QTest::newRow("dashes") << u"0A-1b"_s << "0A1b"_ba;
    QTest::newRow("colons") << u"0A:1b"_s << "0A1b"_ba;
    QTest::newRow("underscores") << u"0A_1b"_s << "0A1b"_ba;
    QTest::newRow("inside a pair") << u"0-A 1:b"_s << "0A1b"_ba;
    QTest::newRow("several in a row") << u"0A:--_ 1b"_s << "0A1b"_ba;
    QTest::newRow("characters 9 to 13") << u"0\t1\n2\v3\f4\r5"_s << "012345"_ba;
    QTest::newRow("next line") << u"0A\u00851b"_s << "0A1b"_ba;
    QTest::newRow("no-break space") << u"0A\u00A01b"_s << "0A1b"_ba;
    QTest::newRow("em space") << u"0A\u20031b"_s << "0A1b"_ba;
    QTest::newRow("thin space") << u"0A\u20091b"_s << "0A1b"_ba;
    QTest::newRow("line separator") << u"0A\u20281b"_s << "0A1b"_ba;
    QTest::newRow("paragraph separator") << u"0A\u20291b"_s << "0A1b"_ba;
    QTest::newRow("ideographic space") << u"0A\u30001b"_s << "0A1b"_ba;
}

void HexScanTest::keepsTheDigits()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, digits);
    const auto found = qx::hexDigits(text);
    QVERIFY(found.has_value());
    QCOMPARE(*found, digits);
}

void HexScanTest::refusesAnythingElse_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("letter behind F") << u"0A G"_s;
    QTest::newRow("letter g") << u"g0"_s;
    QTest::newRow("prefix 0x") << u"0x0A"_s;
    QTest::newRow("comma") << u"0A,1B"_s;
    QTest::newRow("dot") << u"0A.1B"_s;
    QTest::newRow("plus") << u"+0A"_s;
    QTest::newRow("full-width digit") << u"0A \uFF11"_s;
    QTest::newRow("Arabic digit") << u"0A \u0661"_s;
    QTest::newRow("en dash") << u"0A\u20131B"_s;
    QTest::newRow("zero-width space") << u"0A\u200B1B"_s;
    QTest::newRow("byte order mark") << u"\uFEFF0A"_s;
    QTest::newRow("beyond the basic plane") << u"0A\U0001D7D8"_s;
    QTest::newRow("null character") << QString::fromUtf16(u"0A\0001", 4);
}

void HexScanTest::refusesAnythingElse()
{
    QFETCH(QString, text);
    QVERIFY(!qx::hexDigits(text).has_value());
    QVERIFY(!qx::hexBytes(text, 1).has_value());
}

// Every UTF-16 unit by itself: a digit, skipped or refused, and nothing else.
void HexScanTest::takesEveryCharacterOrRefusesIt()
{
    const QByteArray digits = "0123456789ABCDEFabcdef";
    for (char32_t unit = 0; unit <= 0xFFFF; ++unit) {
        const QChar c(static_cast<char16_t>(unit));
        const bool isDigit = unit < 128 && digits.contains(static_cast<char>(unit));
        const bool isSkipped = c.isSpace() || c == u'-' || c == u':' || c == u'_';
        const auto found = qx::hexDigits(QString(c));
        QVERIFY2(found.has_value() == (isDigit || isSkipped),
                 qPrintable(QString::number(unit, 16)));
        if (found)
            QCOMPARE(*found, isDigit ? QByteArray(1, static_cast<char>(unit)) : QByteArray());
    }
}

void HexScanTest::wantsTheExactNumberOfBytes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("fits");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("exact") << u"01 aB Ff"_s << 3 << true << "\x01\xAB\xFF"_ba;
    QTest::newRow("one digit less") << u"01 AB F"_s << 3 << false << QByteArray();
    QTest::newRow("one digit more") << u"01 AB FF 0"_s << 3 << false << QByteArray();
    QTest::newRow("one byte less") << u"01 AB"_s << 3 << false << QByteArray();
    QTest::newRow("one byte more") << u"01 AB FF 00"_s << 3 << false << QByteArray();
    QTest::newRow("pairs go by order, not by blanks")
        << u"0 1A BFF"_s << 3 << true << "\x01\xAB\xFF"_ba;
    QTest::newRow("zero bytes") << u"00:00"_s << 2 << true << QByteArray(2, '\0');
    QTest::newRow("none wanted, none there") << u" "_s << 0 << true << QByteArray();
}

void HexScanTest::wantsTheExactNumberOfBytes()
{
    QFETCH(QString, text);
    QFETCH(int, count);
    QFETCH(bool, fits);
    QFETCH(QByteArray, bytes);
    const auto found = qx::hexBytes(text, count);
    QCOMPARE(found.has_value(), fits);
    if (fits)
        QCOMPARE(*found, bytes);
}

QTEST_GUILESS_MAIN(HexScanTest)
#include "tst_hexscan.moc"
