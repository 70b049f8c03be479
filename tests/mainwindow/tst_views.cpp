// SPDX-License-Identifier: MIT
#include "serial/serialcontroller.h"
#include "tests/support/eventcounter.h"
#include "tests/support/residentmemory.h"
#include "tests/support/stage.h"
#include "widgets/paintthrottle.h"

#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTime>
#include <QTimer>

#include <chrono>
#include <memory>

using qx::MainWindow;
using qx::SerialController;
using qx::test::EventCounter;
using qx::test::Operator;
using qx::test::residentBytes;
using qx::test::Stage;
using namespace std::chrono_literals;

namespace {

// The same text as the operator sees it in the log, stamp included.
QString lastLine(const Operator &hand)
{
    return hand.logView()->document()->lastBlock().text();
}

constexpr bool withSanitizer =
#if defined(__SANITIZE_ADDRESS__)
    true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
    true;
#else
    false;
#endif
#else
    false;
#endif

} // namespace

class TestViews : public QObject
{
    Q_OBJECT

private slots:
    void init() { stage = std::make_unique<Stage>(); }
    void cleanup() { stage.reset(); }

    void logLineHasStampChannelAndMessage();
    void stampIsTheTimeOfDay();
    void stampFollowsTheClock();
    void channelIsPaddedOrCut_data();
    void channelIsPaddedOrCut();
    void messageIsShownAsItIs_data();
    void messageIsShownAsItIs();
    void lineBreaksDoNotBreakALine_data();
    void lineBreaksDoNotBreakALine();
    void detailIsNotShown();
    void newestLineIsInView_data();
    void newestLineIsInView();
    void rushingLinesAreLaidOutForThePainting();
    void newestLineIsInViewOfAFullLog();
    void newestLineStaysInViewWhenTheLanguageChanges();
    void operatorLooksBackWhileTheWindowChanges();
    void oldestLineFallsOff();
    void linesOfAFastPlayerAreThereAtOnce();
    void linesOfAFastPlayerComeIntoView();
    void clearTakesLinesThatAreNotPaintedYet();
    void selectionStaysWhileLinesCome();
    void paintingKeepsToThePaceOfAScreen();
    void memoryStaysFlat();
    void clearEmptiesTheLogOnly();
    void rowsWhileStopped();
    void rowsWhilePlaying();
    void rowsFollowTheEditors();
    void valueIsSelectedWithTheMouse();
    void trafficStartsShort();
    void trafficCountsInFull();
    void lastDigitOfLongCountersIsSeen_data();
    void lastDigitOfLongCountersIsSeen();
    void trafficCountsFrames();
    void menuLeavesTheStatusBarAlone();

private:
    void log(int lines);
    bool linesRush();
    QString lastShown() const;

    std::unique_ptr<Stage> stage;
};

void TestViews::logLineHasStampChannelAndMessage()
{
    const Operator &hand = stage->hand();
    stage->window().appendLog(QStringLiteral("SYS"), QStringLiteral("hello"));
    static const QRegularExpression pattern(
        QStringLiteral("^\\[([01]\\d|2[0-3]):[0-5]\\d:[0-5]\\d\\.\\d{3}\\] SYS   hello$"));
    const QString line = lastLine(hand);
    QVERIFY2(pattern.match(line).hasMatch(), qPrintable(line));
}

void TestViews::stampIsTheTimeOfDay()
{
    const auto now = [] { return QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz")); };
    const QString before = now();
    stage->window().appendLog(QStringLiteral("SYS"), QStringLiteral("now"));
    const QString after = now();
    const QString stamp = lastLine(stage->hand()).mid(1, 12);
    if (before <= after) // not across midnight
        QVERIFY2(before <= stamp && stamp <= after, qPrintable(stamp));
}

void TestViews::stampFollowsTheClock()
{
    stampIsTheTimeOfDay();
    const QString second = QTime::currentTime().toString();
    QTRY_VERIFY(QTime::currentTime().toString() != second);
    stampIsTheTimeOfDay();
}

void TestViews::channelIsPaddedOrCut_data()
{
    QTest::addColumn<QString>("channel");
    QTest::addColumn<QString>("shown");
    QTest::newRow("short") << QStringLiteral("TX") << QStringLiteral("TX    message");
    QTest::newRow("exact") << QStringLiteral("HELLO") << QStringLiteral("HELLO message");
    QTest::newRow("too long") << QStringLiteral("CHANNEL") << QStringLiteral("CHANN message");
    QTest::newRow("empty") << QString() << QStringLiteral("      message");
}

void TestViews::channelIsPaddedOrCut()
{
    QFETCH(const QString, channel);
    stage->window().appendLog(channel, QStringLiteral("message"));
    QTEST(stage->hand().lastLog(), "shown");
}

void TestViews::messageIsShownAsItIs_data()
{
    QTest::addColumn<QString>("message");
    QTest::newRow("placeholders") << QStringLiteral("50%1 and %2 and %3.mp3");
    QTest::newRow("markup") << QStringLiteral("<b>bold</b> &amp;");
    QTest::newRow("Chinese") << QStringLiteral("已切换为中文 — “引号”");
    QTest::newRow("empty") << QString();
    QTest::newRow("spaces at both ends") << QStringLiteral("  two  ");
    QTest::newRow("written line feed") << QStringLiteral("QXUSB HELLO\\n");
    QTest::newRow("very long") << QString(5000, u'x');
}

void TestViews::messageIsShownAsItIs()
{
    QFETCH(const QString, message);
    stage->window().appendLog(QStringLiteral("RX"), message);
    QCOMPARE(stage->hand().lastLog(), QStringLiteral("RX    ") + message);
}

void TestViews::lineBreaksDoNotBreakALine_data()
{
    QTest::addColumn<QString>("separator");
    QTest::newRow("line feed") << QStringLiteral("\n");
    QTest::newRow("carriage return") << QStringLiteral("\r");
    QTest::newRow("both") << QStringLiteral("\r\n");
    QTest::newRow("line separator") << QString(QChar::LineSeparator);
    QTest::newRow("paragraph separator") << QString(QChar::ParagraphSeparator);
    QTest::newRow("start of a text frame") << QString(QChar(0xfdd0));
    QTest::newRow("end of a text frame") << QString(QChar(0xfdd1));
    QTest::newRow("form feed") << QStringLiteral("\f");
    QTest::newRow("vertical tab") << QStringLiteral("\v");
    QTest::newRow("next line") << QString(QChar(0x85));
    QTest::newRow("null") << QString(QChar(0));
}

void TestViews::lineBreaksDoNotBreakALine()
{
    QFETCH(const QString, separator);
    const QPlainTextEdit *log = stage->hand().logView();
    const int before = log->blockCount();
    stage->window().appendLog(QStringLiteral("RX"), QStringLiteral("one%1two").arg(separator));
    QCOMPARE(log->blockCount(), before + 1);
    const QString line = lastLine(stage->hand());
    QVERIFY(line.contains(QStringLiteral("RX    one")));
    QVERIFY(line.endsWith(QStringLiteral("two")));
    QVERIFY(!line.contains(QChar::LineSeparator));
}

void TestViews::detailIsNotShown()
{
    stage->window().appendLog(QStringLiteral("SYS"), QStringLiteral("message"),
                              QStringLiteral("detail"));
    QCOMPARE(stage->hand().lastLog(), QStringLiteral("SYS   message"));
}

void TestViews::newestLineIsInView_data()
{
    QTest::addColumn<bool>("connected");
    QTest::newRow("offline") << false;
    QTest::newRow("with a player at the line") << true;
}

void TestViews::newestLineIsInView()
{
    QFETCH(const bool, connected);
    QVERIFY(!connected || stage->connectPlayer());
    QScrollBar *bar = stage->hand().logView()->verticalScrollBar();
    log(100);
    QVERIFY(bar->maximum() > 0);
    QCOMPARE(bar->value(), bar->maximum());
    bar->setValue(3);
    log(1);
    QCOMPARE(bar->value(), bar->maximum());
}

// Lines that come by the thousand between two paintings are laid out once for the next one.
void TestViews::rushingLinesAreLaidOutForThePainting()
{
    QPlainTextEdit *view = stage->hand().logView();
    const QScrollBar *bar = view->verticalScrollBar();
    stage->hand().click(stage->hand().clearLog()); // of lines that take up two
    QVERIFY(linesRush());
    const int before = bar->maximum();
    const int linesBefore = view->blockCount();
    log(500);
    QCOMPARE(view->blockCount(), linesBefore + 500);
    QCOMPARE(bar->maximum(), before);
    QTRY_VERIFY(bar->maximum() >= before + 500);
    QCOMPARE(bar->value(), bar->maximum());

    // After that painting, a single one is scrolled to at once again.
    stage->hand().logView()->verticalScrollBar()->setValue(0);
    const int last = bar->maximum();
    log(1);
    QCOMPARE(bar->maximum(), last + 1);
    QCOMPARE(bar->value(), bar->maximum());
}

void TestViews::oldestLineFallsOff()
{
    stage->hand().click(stage->hand().clearLog());
    for (int i = 1; i <= 3000; ++i)
        stage->window().appendLog(QStringLiteral("SYS"), QString::number(i));
    QStringList lines = stage->hand().log();
    QCOMPARE(lines.size(), 3000);
    QCOMPARE(lines.first(), QStringLiteral("SYS   1"));
    stage->window().appendLog(QStringLiteral("SYS"), QStringLiteral("3001"));
    lines = stage->hand().log();
    QCOMPARE(lines.size(), 3000);
    QCOMPARE(lines.first(), QStringLiteral("SYS   2"));
    QCOMPARE(lines.last(), QStringLiteral("SYS   3001"));
}

// Has lines come so fast that they are laid out together; until the next painting at least.
bool TestViews::linesRush()
{
    QSignalSpy shown(stage->window().findChild<qx::PaintThrottle *>(),
                     &qx::PaintThrottle::aboutToPaint);
    log(100);
    if (!shown.wait())
        return false;
    const QScrollBar *bar = stage->hand().logView()->verticalScrollBar();
    log(100);
    const int last = bar->maximum();
    log(1);
    return bar->maximum() == last;
}

void TestViews::log(int lines)
{
    for (int i = 1; i <= lines; ++i)
        stage->window().appendLog(QStringLiteral("RX"), QString::number(i));
}

// The line that stands at the lower edge of the log.
QString TestViews::lastShown() const
{
    QPlainTextEdit *view = stage->hand().logView();
    const QPoint bottom(4, view->viewport()->height() - 4);
    return view->cursorForPosition(bottom).block().text().mid(15);
}

// There as many lines go as come, and some of them are wrapped.
void TestViews::newestLineIsInViewOfAFullLog()
{
    log(3000);
    QPlainTextEdit *view = stage->hand().logView();
    EventCounter paintings(view->viewport(), QEvent::Paint);
    QTRY_VERIFY(paintings.count > 0);
    for (int i = 0; i < 4; ++i) {
        const QString line = QStringLiteral("%1 ").arg(i) + QStringLiteral("wrapped ").repeated(14);
        paintings.count = 0;
        stage->window().appendLog(QStringLiteral("RX"), line);
        QTRY_VERIFY(paintings.count > 0);
        QCOMPARE(lastShown(), QStringLiteral("RX    ") + line);
        const QTextCursor end(view->document()->lastBlock());
        QTextCursor atEnd = end;
        atEnd.movePosition(QTextCursor::End);
        QVERIFY(view->viewport()->rect().contains(view->cursorRect(atEnd)));
    }
}

void TestViews::newestLineStaysInViewWhenTheLanguageChanges()
{
    log(100);
    for (const auto language : {qx::UiLanguage::Chinese, qx::UiLanguage::English}) {
        stage->window().setLanguage(language);
        QScrollBar *bar = stage->hand().logView()->verticalScrollBar();
        EventCounter paintings(stage->hand().logView()->viewport(), QEvent::Paint);
        QTRY_VERIFY(paintings.count > 0);
        QCOMPARE(bar->value(), bar->maximum());
        QCOMPARE(lastShown(), stage->hand().lastLog());
    }
}

void TestViews::operatorLooksBackWhileTheWindowChanges()
{
    log(100);
    QScrollBar *bar = stage->hand().logView()->verticalScrollBar();
    EventCounter paintings(stage->hand().logView()->viewport(), QEvent::Paint);
    QTRY_VERIFY(paintings.count > 0);
    bar->setValue(10);
    const int height = stage->hand().logView()->height();
    stage->window().resize(1420, 800);
    QTRY_VERIFY(stage->hand().logView()->height() < height);
    QCOMPARE(bar->value(), 10);
}

void TestViews::linesOfAFastPlayerAreThereAtOnce()
{
    QVERIFY(stage->connectPlayer());
    log(3100);
    QCOMPARE(stage->hand().logView()->blockCount(), 3000);
    const QStringList lines = stage->hand().log();
    QCOMPARE(lines.size(), 3000);
    QCOMPARE(lines.first(), QStringLiteral("RX    101"));
    QCOMPARE(lines.last(), QStringLiteral("RX    3100"));
}

void TestViews::linesOfAFastPlayerComeIntoView()
{
    QVERIFY(stage->connectPlayer());
    QPlainTextEdit *view = stage->hand().logView();
    QScrollBar *bar = view->verticalScrollBar();
    EventCounter paintings(view->viewport(), QEvent::Paint);
    log(100);
    QTRY_VERIFY(paintings.count > 0);
    QCOMPARE(lastShown(), QStringLiteral("RX    100"));
    QCOMPARE(bar->value(), bar->maximum());
    QVERIFY(bar->maximum() > 50);

    bar->setValue(10); // the operator looks back
    paintings.count = 0;
    view->viewport()->update();
    QTRY_VERIFY(paintings.count > 0);
    QCOMPARE(bar->value(), 10);
    log(3000);
    QTRY_COMPARE(lastShown(), QStringLiteral("RX    3000"));
    QCOMPARE(bar->value(), bar->maximum());
    log(7);
    QTRY_COMPARE(lastShown(), QStringLiteral("RX    7"));
    QCOMPARE(bar->value(), bar->maximum());
}

void TestViews::clearTakesLinesThatAreNotPaintedYet()
{
    QVERIFY(stage->connectPlayer());
    QVERIFY(linesRush());
    log(200);
    stage->hand().click(stage->hand().clearLog());
    QCOMPARE(stage->hand().logView()->toPlainText(), QString());
    QTRY_COMPARE(stage->hand().logView()->verticalScrollBar()->maximum(), 0);
    log(1);
    QCOMPARE(stage->hand().log(), QStringList{QStringLiteral("RX    1")});
}

void TestViews::selectionStaysWhileLinesCome()
{
    QVERIFY(stage->connectPlayer());
    QPlainTextEdit *view = stage->hand().logView();
    QTextCursor chosen(view->document()->firstBlock().next());
    chosen.select(QTextCursor::LineUnderCursor);
    const QString text = chosen.selectedText();
    view->setTextCursor(chosen);
    QVERIFY(linesRush());
    log(500);
    QCOMPARE(view->textCursor().selectedText(), text);
    QTRY_COMPARE(view->verticalScrollBar()->value(), view->verticalScrollBar()->maximum());
    QCOMPARE(view->textCursor().selectedText(), text);
}

void TestViews::paintingKeepsToThePaceOfAScreen()
{
    auto *controller = stage->window().findChild<SerialController *>();
    EventCounter paintings(stage->hand().row(6), QEvent::Paint);
    int screenPeriods = 0; // of a screen with 60 pictures a second
    QTimer screen;
    screen.setTimerType(Qt::PreciseTimer);
    screen.callOnTimeout([&] { ++screenPeriods; });
    screen.start(16ms);
    int changes = 0;
    while (paintings.count < 20) {
        emit controller->bytesTransmitted(20);
        ++changes;
        QCoreApplication::processEvents();
    }
    QVERIFY2(screenPeriods >= 18, qPrintable(QString::number(screenPeriods)));
    QVERIFY(changes > paintings.count);

    const int before = paintings.count;
    emit controller->bytesTransmitted(20); // the last change is painted as well
    QTRY_VERIFY(paintings.count > before);
}

void TestViews::memoryStaysFlat()
{
    constexpr int lines = 100'000;
    const auto fill = [this](int from, int to) {
        for (int i = from; i < to; ++i)
            stage->window().appendLog(QStringLiteral("TX"),
                                      QStringLiteral("HY: 0  Frame: %1  R: 255").arg(i));
    };
    fill(0, lines / 10);
    const qint64 before = residentBytes();
    fill(lines / 10, lines);
    const qint64 growth = residentBytes() - before;
    QCOMPARE(stage->hand().logView()->blockCount(), 3000);
    QVERIFY(before > 0);
    if (!withSanitizer) // which keeps freed memory for a while
        QVERIFY2(growth < 1024 * 1024, qPrintable(QString::number(growth)));
}

void TestViews::clearEmptiesTheLogOnly()
{
    const Operator &hand = stage->hand();
    hand.click(hand.play());
    hand.click(hand.pause());
    const QString traffic = QStringLiteral("TX 40 B / RX 24 B · OK 2 / FAIL 0");
    QTRY_COMPARE(hand.row(6)->text(), traffic);
    QVERIFY(!hand.log().isEmpty());
    hand.click(hand.clearLog());
    QCOMPARE(hand.logView()->toPlainText(), QString());
    QCOMPARE(hand.row(6)->text(), traffic);
    QCOMPARE(hand.row(2)->text(), QStringLiteral("Paused"));
}

void TestViews::rowsWhileStopped()
{
    const Operator &hand = stage->hand();
    hand.type(hand.header(), 9);
    hand.type(hand.frame(), 25);
    hand.type(hand.total(), 700);
    hand.type(hand.red(), 10);
    hand.type(hand.green(), 20);
    hand.type(hand.blue(), 30);
    hand.type(hand.white(), 40);
    QCOMPARE(hand.row(2)->text(), QStringLiteral("Stopped"));
    QCOMPARE(hand.row(3)->text(), QStringLiteral("9"));
    QCOMPARE(hand.row(4)->text(), QStringLiteral("0 / 700"));
    QCOMPARE(hand.row(5)->text(), QStringLiteral("0 / 0 / 0 / 0"));
}

void TestViews::rowsWhilePlaying()
{
    rowsWhileStopped();
    const Operator &hand = stage->hand();
    hand.click(hand.play());
    hand.click(hand.pause()); // before the first step
    QCOMPARE(hand.row(2)->text(), QStringLiteral("Paused"));
    QCOMPARE(hand.row(4)->text(), QStringLiteral("25 / 700"));
    QCOMPARE(hand.row(5)->text(), QStringLiteral("10 / 20 / 30 / 40"));
    hand.click(hand.stop());
    QCOMPARE(hand.row(2)->text(), QStringLiteral("Stopped"));
    QCOMPARE(hand.row(4)->text(), QStringLiteral("0 / 700"));
    QCOMPARE(hand.row(5)->text(), QStringLiteral("0 / 0 / 0 / 0"));
}

void TestViews::rowsFollowTheEditors()
{
    const Operator &hand = stage->hand();
    hand.click(hand.play());
    hand.click(hand.pause());
    hand.type(hand.header(), 77);
    QCOMPARE(hand.row(3)->text(), QStringLiteral("77"));
    hand.type(hand.white(), 5);
    QCOMPARE(hand.row(5)->text(), QStringLiteral("0 / 0 / 0 / 5"));
    hand.type(hand.total(), 65535);
    QCOMPARE(hand.row(4)->text().section(u'/', 1), QStringLiteral(" 65535"));
}

void TestViews::valueIsSelectedWithTheMouse()
{
    QLabel *value = stage->hand().row(0);
    const auto showsSelection = [value] {
        const QImage picture = value->grab().toImage();
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, picture.height() / 2) == QColor(0x1479e8))
                return true;
        }
        return false;
    };
    QVERIFY(!showsSelection());
    QTest::mouseDClick(value, Qt::LeftButton, {}, QPoint(10, value->height() / 2));
    QCOMPARE(value->selectedText(), QStringLiteral("USB"));
    QVERIFY(showsSelection());
}

void TestViews::trafficStartsShort()
{
    // The first texts of the window are set by the retranslation, which also fills this row.
    QCOMPARE(stage->hand().row(6)->text(), QStringLiteral("TX 0 B / RX 0 B · OK 0 / FAIL 0"));
}

void TestViews::trafficCountsInFull()
{
    auto *controller = stage->window().findChild<SerialController *>();
    QVERIFY(controller);
    emit controller->bytesTransmitted(5'000'000'000);
    QTRY_COMPARE(stage->hand().row(6)->text(),
                 QStringLiteral("TX 5000000000 B / RX 0 B · OK 0 / FAIL 0"));
    const QByteArray received(64 * 1024 * 1024, 'x');
    for (int i = 0; i < 40; ++i)
        emit controller->rawReceived(received);
    QTRY_COMPARE(stage->hand().row(6)->text(),
                 QStringLiteral("TX 5000000000 B / RX 2684354560 B · OK 0 / FAIL 0"));
}

void TestViews::lastDigitOfLongCountersIsSeen_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("usual window") << QSize(1420, 900);
    QTest::newRow("smallest window") << QSize(1220, 780);
}

// The failures stand at the end of the row, behind all that has been counted in a long show.
void TestViews::lastDigitOfLongCountersIsSeen()
{
    QFETCH(const QSize, size);
    stage->window().resize(size);
    QLabel *row = stage->hand().row(6);
    const auto endOfRow = [row](int failures) {
        row->setText(QStringLiteral("TX 20000000000 B / RX 12000000000 B · OK 1000000000 / FAIL %1")
                         .arg(failures));
        const QImage picture = row->grab().toImage();
        return picture.copy(picture.width() - 8, 0, 8, picture.height());
    };
    QVERIFY(endOfRow(1) != endOfRow(2));
}

void TestViews::trafficCountsFrames()
{
    const Operator &hand = stage->hand();
    hand.click(hand.sendFrame());
    hand.click(hand.sendFrame());
    QTRY_COMPARE(hand.row(6)->text(), QStringLiteral("TX 40 B / RX 24 B · OK 2 / FAIL 0"));
}

void TestViews::menuLeavesTheStatusBarAlone()
{
    const QString message = stage->hand().statusBar();
    QVERIFY(!message.isEmpty());
    auto *bar = stage->window().menuBar();
    auto *menu = stage->window().findChild<QMenu *>(QStringLiteral("languageMenu"));
    QTest::mouseMove(bar, bar->actionGeometry(menu->menuAction()).center());
    bar->setActiveAction(menu->menuAction());
    QTRY_VERIFY(menu->isVisible());
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Escape);
    QTRY_VERIFY(!menu->isVisible());
    QCOMPARE(stage->hand().statusBar(), message);
}

QTEST_MAIN(TestViews)
#include "tst_views.moc"
