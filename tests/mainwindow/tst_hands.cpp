// SPDX-License-Identifier: MIT
// What hands and neighbours do during a show: numbers that are being typed, wheels, double clicks,
// Stop at the wrong moment, media that takes its time.
#include "tests/support/mediafiles.h"
#include "tests/support/stagetest.h"

#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QTextBlock>
#include <QWheelEvent>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;
using namespace qx::test;

namespace {

QString stopped()
{
    return either(u"SYS   Stopped; resending Frame=0 and RGBW=0 at the Time interval"_s,
                  u"SYS   已停止；按Time间隔循环发送Frame=0、RGBW=0"_s);
}

int frameOf(const QString &summary)
{
    return summary.section(u"Frame: "_s, 1).section(u' ', 0, 0).toInt();
}

QList<int> framesSent(const Operator &hand)
{
    QList<int> frames;
    const QStringList lines = hand.log("TX");
    for (const QString &line : lines)
        frames.append(frameOf(line));
    return frames;
}

QString shownIn(const QSpinBox *box)
{
    return box->findChild<QLineEdit *>()->text();
}

void turnWheel(QWidget *widget)
{
    const QPoint middle = widget->rect().center();
    QWheelEvent turn(QPointF(middle), QPointF(widget->mapToGlobal(middle)), {}, QPoint(0, 120),
                     Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &turn);
}

} // namespace

class HandsTest : public StageTest
{
    Q_OBJECT

private slots:
    void everyBoxTakesATypedNumberAtReturn();
    void typedNumberIsTakenBy_data();
    void typedNumberIsTakenBy();
    void escapeGivesATypedNumberUp();
    void anEmptiedBoxShowsItsValueAgain();
    void arrowsStepFromTheTypedNumber();
    void frameTypedWhilePlayingLetsTheShowRunOn();
    void totalTypedWhilePlayingEndsNothing();
    void stopLeavesWhatIsBeingTyped();
    void playTakesWhatIsBeingTyped();
    void languageSwitchLeavesWhatIsBeingTyped();
    void editorsFollowTheTotalDownAgain();
    void wheelMovesNoSlider();
    void wheelNeedsTheFocus();
    void doubleClickOnConnectConnects();
    void stopBeforeTheHandshakeEndsDark();
    void stopBeforeTheHandshakeIsForgottenByDemo();
    void mediaIsToldAfterTheFrame_data();
    void mediaIsToldAfterTheFrame();
    void mediaWaitsForTheFrameInFlight();
    void lostLineLeavesTheMediaStopped();
    void trafficStaysSelected();
    void alarmsStandOutInTheLog();
    void controlCharactersAreShown();
    void namesFromOutsideArePlainText();
    void errorOfTheReservedFieldIsWhole();

private:
    std::vector<QSpinBox *> boxes();
};

std::vector<QSpinBox *> HandsTest::boxes()
{
    return {hand().header(), hand().frame(), hand().total(), hand().red(),
            hand().green(),  hand().blue(),  hand().white()};
}

void HandsTest::everyBoxTakesATypedNumberAtReturn()
{
    for (QSpinBox *box : boxes()) {
        const int before = box->value();
        QSignalSpy changes(box, &QSpinBox::valueChanged);
        box->setFocus();
        box->selectAll();
        for (const char digit : {'1', '2', '3'}) {
            QTest::keyClick(box, digit);
            QCOMPARE(box->value(), before);
        }
        QCOMPARE(changes.size(), 0);
        QTest::keyClick(box, Qt::Key_Return);
        QCOMPARE(box->value(), 123);
        QCOMPARE(changes.size(), 1);
    }
}

void HandsTest::typedNumberIsTakenBy_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
    QTest::newRow("Tab") << int(Qt::Key_Tab);
    QTest::newRow("a click elsewhere") << 0;
}

void HandsTest::typedNumberIsTakenBy()
{
    QFETCH(const int, key);
    QSpinBox *red = hand().red();
    red->setFocus();
    red->selectAll();
    QTest::keyClicks(red, u"0199"_s.mid(1));
    QCOMPARE(red->value(), 0);
    if (key)
        QTest::keyClick(red, Qt::Key(key));
    else
        hand().click(hand().stop());
    if (key)
        QCOMPARE(red->value(), 199);
    hand().click(hand().play());
    QCOMPARE(red->value(), 199); // Stop zeroed the editor and kept the level
    QCOMPARE(shownIn(red), u"199"_s);
}

void HandsTest::escapeGivesATypedNumberUp()
{
    hand().type(hand().red(), 77);
    hand().red()->setFocus();
    hand().red()->selectAll();
    QTest::keyClicks(hand().red(), u"12"_s);
    QTest::keyClick(hand().red(), Qt::Key_Escape);
    QCOMPARE(shownIn(hand().red()), u"77"_s);
    QTest::keyClick(hand().red(), Qt::Key_Return);
    QCOMPARE(hand().red()->value(), 77);
}

void HandsTest::anEmptiedBoxShowsItsValueAgain()
{
    hand().total()->setFocus();
    hand().total()->selectAll();
    QTest::keyClick(hand().total(), Qt::Key_Delete);
    QCOMPARE(shownIn(hand().total()), QString());
    QTest::keyClick(hand().total(), Qt::Key_Tab);
    QCOMPARE(shownIn(hand().total()), u"1800"_s);
    QCOMPARE(hand().total()->value(), 1800);
}

void HandsTest::arrowsStepFromTheTypedNumber()
{
    hand().click(hand().play());
    QSpinBox *frame = hand().frame();
    frame->setFocus();
    frame->selectAll();
    QTest::keyClicks(frame, u"600"_s);
    const int running = frame->value();
    QTRY_VERIFY(frame->value() > running); // the program has set a value meanwhile
    QCOMPARE(shownIn(frame), u"600"_s);
    QTest::keyClick(frame, Qt::Key_Up);
    QCOMPARE(frame->value(), 601);
    QTest::keyClick(frame, Qt::Key_PageUp);
    QCOMPARE(frame->value(), 611);

    QSpinBox *red = hand().red(); // which stands at its lower end
    red->setFocus();
    red->selectAll();
    QTest::keyClicks(red, u"36"_s);
    QTest::keyClick(red, Qt::Key_Down);
    QCOMPARE(red->value(), 35);
}

void HandsTest::frameTypedWhilePlayingLetsTheShowRunOn()
{
    hand().click(hand().play());
    QSpinBox *frame = hand().frame();
    frame->setFocus();
    frame->selectAll();
    QString typed;
    for (const char digit : {'6', '0', '0'}) {
        QTest::keyClick(frame, digit);
        typed += QLatin1Char(digit);
        const int running = frame->value();
        QTRY_VERIFY(frame->value() > running);
        QCOMPARE(shownIn(frame), typed);
    }
    const QList<int> before = framesSent(hand());
    QVERIFY(before.size() >= 4);
    for (qsizetype i = 1; i < before.size(); ++i)
        QCOMPARE(before[i], before[i - 1] + 1);
    clearLog();
    QTest::keyClick(frame, Qt::Key_Return);
    QCOMPARE(frame->value(), 600);
    QTRY_VERIFY(framesSent(hand()).size() >= 2);
    QCOMPARE(framesSent(hand()).first(), 601);
}

void HandsTest::totalTypedWhilePlayingEndsNothing()
{
    hand().type(hand().total(), 3000);
    hand().type(hand().frame(), 1900);
    hand().click(hand().play());
    QSpinBox *total = hand().total();
    total->setFocus();
    total->selectAll();
    QTest::keyClick(total, '2');
    const int running = hand().frame()->value();
    QTRY_VERIFY(hand().frame()->value() > running + 1); // neither ended nor stuck
    QCOMPARE(hand().frame()->maximum(), 3000);
    QTest::keyClicks(total, u"500"_s);
    QTest::keyClick(total, Qt::Key_Return);
    QCOMPARE(hand().frame()->maximum(), 2500);
    QCOMPARE(hand().state(), either(u"Playing"_s, u"发送中"_s));
}

// The zeros of Stop hold everywhere at once; only the text is the operator's.
void HandsTest::stopLeavesWhatIsBeingTyped()
{
    hand().type(hand().red(), 50);
    hand().click(hand().play());
    hand().red()->setFocus();
    hand().red()->selectAll();
    QTest::keyClicks(hand().red(), u"19"_s);
    stage->window().stopPlayback(true);
    QCOMPARE(hand().red()->value(), 0);
    QCOMPARE(shownIn(hand().red()), u"19"_s);
    QTest::keyClick(hand().red(), '9');
    QTest::keyClick(hand().red(), Qt::Key_Return);
    hand().click(hand().play());
    QCOMPARE(hand().red()->value(), 199);
}

void HandsTest::playTakesWhatIsBeingTyped()
{
    hand().frame()->setFocus();
    hand().frame()->selectAll();
    QTest::keyClicks(hand().frame(), u"70"_s);
    stage->window().startPlayback(); // without a change of the focus
    QCOMPARE(framesSent(hand()), QList<int>{70});
}

void HandsTest::languageSwitchLeavesWhatIsBeingTyped()
{
    hand().total()->setFocus();
    hand().total()->selectAll();
    QTest::keyClicks(hand().total(), u"25"_s);
    const bool english = qx::Language::current() == qx::UiLanguage::English;
    stage->window().setLanguage(english ? qx::UiLanguage::Chinese : qx::UiLanguage::English);
    QCOMPARE(shownIn(hand().total()), u"25"_s);
    QCOMPARE(hand().total()->value(), 1800);
    QTest::keyClick(hand().total(), Qt::Key_Return);
    QCOMPARE(hand().total()->value(), 25);
}

void HandsTest::editorsFollowTheTotalDownAgain()
{
    hand().type(hand().total(), 5000);
    hand().type(hand().frame(), 3000);
    hand().type(hand().total(), 100);
    QCOMPARE(hand().frame()->value(), 3000); // it is left alone
    hand().click(hand().stop());
    QCOMPARE(hand().frame()->value(), 0);
    QCOMPARE(hand().frame()->maximum(), 1800);
}

void HandsTest::wheelMovesNoSlider()
{
    hand().type(hand().total(), 100);
    for (QSlider *slider : {hand().seekSlider(), hand().timeSlider()}) {
        const int before = slider->value();
        turnWheel(slider);
        slider->setFocus();
        turnWheel(slider);
        QCOMPARE(slider->value(), before);
    }
}

void HandsTest::wheelNeedsTheFocus()
{
    hand().manual()->setFocus();
    for (QSpinBox *box : boxes()) {
        const int before = box->value();
        turnWheel(box);
        QCOMPARE(box->value(), before);
        QVERIFY(!box->hasFocus());
    }
    hand().green()->setFocus();
    turnWheel(hand().green());
    QCOMPARE(hand().green()->value(), 1);

    hand().setDemo(false);
    hand().hostSettings()->addItem(u"another"_s);
    turnWheel(hand().hostSettings());
    QCOMPARE(hand().hostSettings()->currentIndex(), 0);
    QVERIFY(!hand().hostSettings()->hasFocus());
}

void HandsTest::doubleClickOnConnectConnects()
{
    hand().setDemo(false);
    hand().choosePort(stage->portPath());
    QPushButton *button = hand().connectButton();
    const QPoint middle = button->rect().center();
    QTest::mouseClick(button, Qt::LeftButton, {}, middle);
    QTest::mouseDClick(button, Qt::LeftButton, {}, middle);
    QTRY_COMPARE(hand().row(1)->text(), u"QXUSB OK"_s);
    QCOMPARE(button->text(), either(u"Disconnect"_s, u"断开"_s));
}

void HandsTest::stopBeforeTheHandshakeEndsDark()
{
    qx::SimulatorBehaviour mute;
    mute.answerHelloNumber = 0;
    player().setBehaviour(mute);
    QVERIFY(stage->connectPort());
    hand().type(hand().red(), 200);
    hand().offer(7); // a frame that waits, lit
    hand().click(hand().stop());
    QVERIFY(!hand().log("SYS").contains(stopped().mid(6)));

    player().setBehaviour({});
    hand().click(hand().handshakeAgain());
    QTRY_VERIFY(player().frames().size() >= 3);
    QCOMPARE(player().frames().first().hy, 7);
    for (qsizetype i = 1; i < player().frames().size(); ++i) {
        QCOMPARE(player().frames()[i].number, 0);
        QCOMPARE(player().frames()[i].red, 0);
    }
    QCOMPARE(hand().logCount(stopped()), 1);
}

void HandsTest::stopBeforeTheHandshakeIsForgottenByDemo()
{
    qx::SimulatorBehaviour mute;
    mute.answerHelloNumber = 0;
    player().setBehaviour(mute);
    QVERIFY(stage->connectPort());
    hand().click(hand().stop());
    hand().setDemo(true);
    player().setBehaviour({});
    QVERIFY(stage->connectPlayer());
    hand().click(hand().sendFrame());
    QTRY_COMPARE(player().frames().size(), 1);
    QCOMPARE(hand().logCount(stopped()), 0);
}

void HandsTest::mediaIsToldAfterTheFrame_data()
{
    QTest::addColumn<bool>("withPlayer");
    QTest::newRow("demo mode") << false;
    QTest::newRow("a player at the line") << true;
}

// Whatever the media does upon being told, the frame is written by then.
void HandsTest::mediaIsToldAfterTheFrame()
{
    QFETCH(const bool, withPlayer);
    MediaFiles files;
    const QString wav = files.tone(u"tone.wav"_s, 5000);
    QVERIFY2(!wav.isEmpty(), qPrintable(files.problem()));
    if (withPlayer)
        QVERIFY(stage->connectPlayer());
    QVERIFY(stage->window().loadMediaFile(wav));
    QTRY_COMPARE(hand().media()->mediaStatus(), QMediaPlayer::LoadedMedia);
    hand().type(hand().total(), 500);

    QList<qsizetype> writtenBefore;
    connect(hand().media(), &QMediaPlayer::playbackStateChanged, this,
            [&] { writtenBefore.append(hand().log("TX").size()); });
    for (QAbstractButton *button : {static_cast<QAbstractButton *>(hand().play()),
                                    static_cast<QAbstractButton *>(hand().pause()),
                                    static_cast<QAbstractButton *>(hand().stop())}) {
        clearLog();
        writtenBefore.clear();
        hand().click(button);
        QTRY_VERIFY(!writtenBefore.isEmpty());
        QVERIFY(writtenBefore.first() >= 1);
    }
}

// The player takes its time: the media is told when the frame has gone, or soon after all the same.
void HandsTest::mediaWaitsForTheFrameInFlight()
{
    MediaFiles files;
    const QString wav = files.tone(u"tone.wav"_s, 5000);
    QVERIFY2(!wav.isEmpty(), qPrintable(files.problem()));
    qx::SimulatorBehaviour silent;
    silent.dropEvery = 1;
    player().setBehaviour(silent);
    QVERIFY(stage->connectPlayer());
    QVERIFY(stage->window().loadMediaFile(wav));
    QTRY_COMPARE(hand().media()->mediaStatus(), QMediaPlayer::LoadedMedia);
    hand().click(hand().play());
    QTRY_COMPARE(hand().media()->playbackState(), QMediaPlayer::PlayingState);
    hand().click(hand().stop()); // behind a frame that nobody answers
    QCOMPARE(hand().media()->playbackState(), QMediaPlayer::PlayingState);
    QTRY_COMPARE(hand().media()->playbackState(), QMediaPlayer::StoppedState);

    hand().click(hand().play());
    hand().click(hand().stop());
    hand().click(hand().pause()); // the last request counts
    QTRY_COMPARE(hand().media()->playbackState(), QMediaPlayer::PausedState);
}

void HandsTest::lostLineLeavesTheMediaStopped()
{
    MediaFiles files;
    const QString wav = files.tone(u"tone.wav"_s, 5000);
    QVERIFY2(!wav.isEmpty(), qPrintable(files.problem()));
    QVERIFY(stage->connectPlayer());
    QVERIFY(stage->window().loadMediaFile(wav));
    QTRY_COMPARE(hand().media()->mediaStatus(), QMediaPlayer::LoadedMedia);
    stage->unplug();
    hand().click(hand().play()); // whether the loss is noticed before it or by its frame
    QTRY_COMPARE(hand().row(1)->text(), either(u"Disconnected"_s, u"未连接"_s));
    if (hand().state() == either(u"Stopped"_s, u"已停止"_s))
        QTRY_COMPARE(hand().media()->playbackState(), QMediaPlayer::StoppedState);
}

void HandsTest::trafficStaysSelected()
{
    hand().click(hand().play());
    QLabel *traffic = hand().row(6);
    QTest::mousePress(traffic, Qt::LeftButton, {}, QPoint(1, traffic->height() / 2));
    QTest::mouseMove(traffic, QPoint(traffic->width() / 3, traffic->height() / 2));
    QTest::mouseRelease(traffic, Qt::LeftButton, {},
                        QPoint(traffic->width() / 3, traffic->height() / 2));
    QVERIFY(traffic->hasSelectedText());
    const QString before = traffic->text();
    QTRY_VERIFY(traffic->text() != before);
    QVERIFY(traffic->hasSelectedText());
    QVERIFY(traffic->text().contains(traffic->selectedText()));
}

void HandsTest::alarmsStandOutInTheLog()
{
    const auto formatOf = [this](const char *channel) {
        stage->window().appendLog(QString::fromLatin1(channel), u"what is said"_s);
        return hand().logView()->document()->lastBlock().begin().fragment().charFormat();
    };
    const QTextCharFormat plain = formatOf("SYS");
    QVERIFY(!plain.hasProperty(QTextFormat::ForegroundBrush));
    for (const char *channel : {"ERR", "RETRY", "WAIT"})
        QVERIFY(formatOf(channel) != plain);
    QVERIFY(formatOf("TX") == plain);
}

void HandsTest::controlCharactersAreShown()
{
    QVERIFY(stage->connectPlayer());
    player().say("a\x01\tb\x1b[31m\x7f\n");
    QTRY_VERIFY(hand().log().contains(u"RX    a\u2401\u2409b\u241b[31m\u2421"_s));
}

void HandsTest::namesFromOutsideArePlainText()
{
    for (const QLabel *label : {hand().linkText(), hand().panelConnection(), hand().row(1)})
        QCOMPARE(label->textFormat(), Qt::PlainText);
    hand().setDemo(false);
    hand().ports()->addItem(u"/dev/<h1>tty"_s);
    hand().ports()->setCurrentIndex(hand().ports()->count() - 1);
    QVERIFY(!hand().ports()->toolTip().contains(u"<h1>"_s));
    QVERIFY(hand().ports()->toolTip().contains(u"&lt;h1&gt;tty"_s));
}

void HandsTest::errorOfTheReservedFieldIsWhole()
{
    hand().type(hand().reserved(), u"00 0G"_s);
    const QLineEdit *summary = hand().summary();
    QCOMPARE(summary->text(),
             either(u"The reserved field must contain exactly 6 hexadecimal bytes"_s,
                    u"保留字段必须恰好是 6 个十六进制字节"_s));
    const int edges = 2 * (1 + 5 + 2); // border, padding, margin
    QVERIFY(summary->fontMetrics().horizontalAdvance(summary->text()) <= summary->width() - edges);
    hand().type(hand().reserved(), u"00 00 00 00 00 00"_s);
    QCOMPARE(summary->font().stretch(), int(QFont::Unstretched));
}

QTEST_MAIN(HandsTest)

#include "tst_hands.moc"
