// SPDX-License-Identifier: MIT
#include "i18n/language.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

#include <limits>

using namespace qx;

namespace {

struct NamedKey
{
    const char *name;
    UiText key;
};

// Each enumerator with its own name, in the order of texts.tsv.
constexpr NamedKey namedKeys[] = {
#include "uitextnames.inc"
};

QString textIn(UiLanguage language, UiText key)
{
    Language::setCurrent(language);
    return Language::text(key);
}

QStringList placeholdersIn(const QString &text)
{
    static const QRegularExpression placeholder(QStringLiteral("%[0-9]+"));
    QStringList found;
    for (const QRegularExpressionMatch &match : placeholder.globalMatch(text))
        found.append(match.captured());
    found.sort();
    return found;
}

} // namespace

// The expected texts are in texts.tsv: index, enumerator, Chinese, English; UTF-8, one text a
// line, nothing escaped.
class TestLanguage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void numbersAreFixed();
    void speaksTheCurrentLanguage();
    void changesNoTextAlreadyHandedOut();

    void text_data() { listTexts(); }
    void text();
    void enumeratorHasItsPlaceInTheTable_data() { listTexts(); }
    void enumeratorHasItsPlaceInTheTable();
    void bothLanguagesHaveTheSamePlaceholders_data() { listTexts(); }
    void bothLanguagesHaveTheSamePlaceholders();
    void keyOutsideTheTableHasNoText_data();
    void keyOutsideTheTableHasNoText();
    void helloIsLoggedWithAVisibleBackslash();
    void switchIsAnnouncedInTheLanguageChosen();
    void unknownLanguageSpeaksEnglish();

    void fromCode_data();
    void fromCode();
    void code_data();
    void code();

private:
    void listTexts();

    QList<QByteArrayList> texts;
};

void TestLanguage::initTestCase()
{
    QCOMPARE(Language::current(), UiLanguage::Chinese); // before anything has set it

    QFile file(QFINDTESTDATA("texts.tsv"));
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    while (!file.atEnd()) {
        QByteArray line = file.readLine();
        QVERIFY(line.endsWith('\n'));
        line.chop(1);
        texts.append(line.split('\t'));
        QCOMPARE(texts.last().size(), 4);
        QCOMPARE(texts.last().first(), QByteArray::number(texts.size() - 1));
    }
    QCOMPARE(texts.size(), 127);
    QCOMPARE(std::size(namedKeys), std::size_t{127});
}

void TestLanguage::cleanup()
{
    Language::setCurrent(UiLanguage::Chinese);
}

void TestLanguage::listTexts()
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < texts.size(); ++index)
        QTest::addRow("%d %s", index, texts.at(index).at(1).constData()) << index;
}

void TestLanguage::numbersAreFixed()
{
    QCOMPARE(static_cast<int>(UiLanguage::Chinese), 0);
    QCOMPARE(static_cast<int>(UiLanguage::English), 1);
    QCOMPARE(sizeof(UiLanguage), std::size_t{4});
    QCOMPARE(sizeof(UiText), std::size_t{4});
}

void TestLanguage::speaksTheCurrentLanguage()
{
    Language::setCurrent(UiLanguage::English);
    QCOMPARE(Language::current(), UiLanguage::English);
    QCOMPARE(Language::text(UiText::Handshaking), QStringLiteral("Handshaking"));
    Language::setCurrent(UiLanguage::Chinese);
    QCOMPARE(Language::current(), UiLanguage::Chinese);
    QCOMPARE(Language::text(UiText::Handshaking), QStringLiteral("握手中"));
}

void TestLanguage::changesNoTextAlreadyHandedOut()
{
    const QString text = Language::text(UiText::Stop);
    Language::setCurrent(UiLanguage::English);
    QCOMPARE(text, QStringLiteral("停止"));
}

void TestLanguage::text()
{
    QFETCH(int, index);
    const auto key = static_cast<UiText>(index);
    QCOMPARE(textIn(UiLanguage::Chinese, key).toUtf8(), texts.at(index).at(2));
    QCOMPARE(textIn(UiLanguage::English, key).toUtf8(), texts.at(index).at(3));
}

void TestLanguage::enumeratorHasItsPlaceInTheTable()
{
    QFETCH(int, index);
    QCOMPARE(QByteArray(namedKeys[index].name), texts.at(index).at(1));
    QCOMPARE(static_cast<int>(namedKeys[index].key), index);
}

void TestLanguage::bothLanguagesHaveTheSamePlaceholders()
{
    QFETCH(int, index);
    const auto key = static_cast<UiText>(index);
    const QStringList chinese = placeholdersIn(textIn(UiLanguage::Chinese, key));
    QCOMPARE(placeholdersIn(textIn(UiLanguage::English, key)), chinese);

    // Numbered from %1 without a gap, else QString::arg() fills the wrong ones.
    for (int number = 1; number <= chinese.size(); ++number)
        QCOMPARE(chinese.at(number - 1), QStringLiteral("%") + QString::number(number));
}

void TestLanguage::keyOutsideTheTableHasNoText_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("just behind the last") << 127;
    QTest::newRow("far behind the last") << std::numeric_limits<int>::max();
    QTest::newRow("just before the first") << -1;
    QTest::newRow("far before the first") << std::numeric_limits<int>::min();
    QTest::newRow("first one again, if cut to a byte") << 256;
}

void TestLanguage::keyOutsideTheTableHasNoText()
{
    QFETCH(int, index);
    const auto key = static_cast<UiText>(index);
    QVERIFY(textIn(UiLanguage::Chinese, key).isNull());
    QVERIFY(textIn(UiLanguage::English, key).isNull());
}

void TestLanguage::helloIsLoggedWithAVisibleBackslash()
{
    const QString expected = QStringLiteral("QXUSB HELLO") + QChar(u'\\') + QChar(u'n');
    for (const UiLanguage language : {UiLanguage::Chinese, UiLanguage::English}) {
        const QString text = textIn(language, UiText::HelloLogLine);
        QVERIFY(text.startsWith(expected));
        QVERIFY(!text.contains(QChar::LineFeed));
    }
}

void TestLanguage::switchIsAnnouncedInTheLanguageChosen()
{
    for (const UiLanguage language : {UiLanguage::Chinese, UiLanguage::English}) {
        QCOMPARE(textIn(language, UiText::LanguageChangedToChinese),
                 QStringLiteral("界面语言已切换为中文"));
        QCOMPARE(textIn(language, UiText::LanguageChangedToEnglish),
                 QStringLiteral("Interface language changed to English"));
    }
}

void TestLanguage::unknownLanguageSpeaksEnglish()
{
    for (const int value : {2, -1, 256}) {
        const auto language = static_cast<UiLanguage>(value);
        QCOMPARE(textIn(language, UiText::Stop), QStringLiteral("Stop"));
        QCOMPARE(Language::current(), language);
    }
}

void TestLanguage::fromCode_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<UiLanguage>("expected");
    QTest::newRow("English") << QStringLiteral("en") << UiLanguage::English;
    QTest::newRow("English in capitals") << QStringLiteral("EN") << UiLanguage::English;
    QTest::newRow("English, first capital") << QStringLiteral("En") << UiLanguage::English;
    QTest::newRow("English, last capital") << QStringLiteral("eN") << UiLanguage::English;
    QTest::newRow("Chinese") << QStringLiteral("zh_CN") << UiLanguage::Chinese;
    QTest::newRow("regional English") << QStringLiteral("en_US") << UiLanguage::Chinese;
    QTest::newRow("regional Chinese") << QStringLiteral("zh_TW") << UiLanguage::Chinese;
    QTest::newRow("another language") << QStringLiteral("fr") << UiLanguage::Chinese;
    QTest::newRow("beginning of English") << QStringLiteral("e") << UiLanguage::Chinese;
    QTest::newRow("blank in front") << QStringLiteral(" en") << UiLanguage::Chinese;
    QTest::newRow("blank behind") << QStringLiteral("en ") << UiLanguage::Chinese;
    QTest::newRow("full-width letters") << QStringLiteral("ｅｎ") << UiLanguage::Chinese;
    QTest::newRow("NUL behind") << QStringLiteral("en") + QChar(0) << UiLanguage::Chinese;
    QTest::newRow("empty") << QStringLiteral("") << UiLanguage::Chinese;
    QTest::newRow("null") << QString() << UiLanguage::Chinese;
}

void TestLanguage::fromCode()
{
    QFETCH(QString, code);
    QTEST(Language::fromCode(code), "expected");
}

void TestLanguage::code_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Chinese") << 0 << QStringLiteral("zh_CN");
    QTest::newRow("English") << 1 << QStringLiteral("en");
    QTest::newRow("behind the last") << 2 << QStringLiteral("zh_CN");
    QTest::newRow("before the first") << -1 << QStringLiteral("zh_CN");
    QTest::newRow("largest") << std::numeric_limits<int>::max() << QStringLiteral("zh_CN");
    QTest::newRow("smallest") << std::numeric_limits<int>::min() << QStringLiteral("zh_CN");
}

void TestLanguage::code()
{
    QFETCH(int, language);
    QTEST(Language::code(static_cast<UiLanguage>(language)), "expected");
}

QTEST_GUILESS_MAIN(TestLanguage)
#include "tst_language.moc"
