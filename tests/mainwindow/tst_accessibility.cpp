// SPDX-License-Identifier: MIT
#include "tests/support/stage.h"

#include <QAccessible>
#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>

#include <memory>

using qx::MainWindow;
using qx::UiLanguage;
using qx::test::Operator;
using qx::test::Stage;

namespace {

bool isOperable(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::PushButton:
    case QAccessible::CheckBox:
    case QAccessible::ComboBox:
    case QAccessible::SpinBox:
    case QAccessible::Slider:
    case QAccessible::EditableText:
    case QAccessible::MenuItem:
        return true;
    default:
        return false;
    }
}

// As a screen reader finds it: a combo box has its text for a name, and a label beside it.
QString nameOf(QAccessibleInterface *interface)
{
    if (interface->role() != QAccessible::ComboBox)
        return interface->text(QAccessible::Name);
    const auto relations = interface->relations(QAccessible::Label);
    return relations.isEmpty() ? QString() : relations.first().first->text(QAccessible::Name);
}

QString nameOf(QWidget *widget)
{
    return nameOf(QAccessible::queryAccessibleInterface(widget));
}

// The names of all operable controls that can be seen.
QStringList namesOf(QAccessibleInterface *interface)
{
    if (interface->state().invisible)
        return {};
    if (isOperable(interface->role()))
        return {nameOf(interface)};
    QStringList names;
    for (int i = 0; i < interface->childCount(); ++i) {
        if (QAccessibleInterface *child = interface->child(i))
            names += namesOf(child);
    }
    return names;
}

QStringList namesOf(MainWindow &window)
{
    return namesOf(QAccessible::queryAccessibleInterface(&window));
}

// Every control that the keyboard reaches, in the order of Tab, from the navigation on.
QList<QWidget *> tabOrder(const Operator &hand)
{
    const QList<QWidget *> panel = {hand.replay(),     hand.stop(),      hand.pause(),
                                    hand.play(),       hand.increase(),  hand.decrease(),
                                    hand.seekSlider(), hand.timeSlider()};
    const QList<QWidget *> connection = {hand.ports(), hand.refresh(), hand.hostSettings(),
                                         hand.connectButton(), hand.demo()};
    const QList<QWidget *> frame = {hand.header(), hand.frame(),    hand.total(),
                                    hand.red(),    hand.green(),    hand.blue(),
                                    hand.white(),  hand.reserved(), hand.summary()};
    const QList<QWidget *> status = {hand.stopZero(), hand.sendFrame(), hand.handshakeAgain()};
    const QList<QWidget *> log = {hand.logView(), hand.manual(), hand.sendHex(), hand.clearLog()};
    QList<QWidget *> all;
    for (const char *name :
         {"navPlayer", "navMediaBrowse", "navUFiles", "navTime", "navSetup", "navNet", "navAbout"})
        all.append(hand.navigation(name));
    return all + panel + connection + frame + status + log;
}

QString described(const QWidget *widget)
{
    return QLatin1String(widget->metaObject()->className()) + u' ' + widget->objectName() + u' ' +
           widget->accessibleName();
}

} // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { stage.reset(); }

    void everyControlHasAName_data();
    void everyControlHasAName();
    void namesFollowTheLanguage();
    void nameOfTheStopButtonKeepsItsAmpersand();
    void captionsLeadToTheirEditors();
    void tabGoesThroughEverythingInOrder();
    void backtabGoesBack();

    void keyboardOnNavigation();
    void keyboardOnTransport();
    void keyboardOnFilesAndReplay();
    void keyboardOnSliders();
    void keyboardOnConnection();
    void keyboardOnEditors();
    void keyboardOnStatusButtons();
    void keyboardOnLog();
    void keyboardOnTheMenu();

private:
    std::unique_ptr<Stage> stage;
};

void TestAccessibility::init()
{
    stage = std::make_unique<Stage>();
    QVERIFY(QTest::qWaitForWindowActive(&stage->window()));
}

void TestAccessibility::everyControlHasAName_data()
{
    QTest::addColumn<UiLanguage>("language");
    QTest::newRow("English") << UiLanguage::English;
    QTest::newRow("Chinese") << UiLanguage::Chinese;
}

void TestAccessibility::everyControlHasAName()
{
    QFETCH(const UiLanguage, language);
    stage->window().setLanguage(language);
    const QStringList names = namesOf(stage->window());
    for (const QString &name : names)
        QVERIFY2(!name.trimmed().isEmpty(), qPrintable(names.join(u'|')));
    QVERIFY2(names.size() >= 37, qPrintable(names.join(u'|'))); // 36 for Tab, and the menu
    // Nothing that Tab reaches is left out of the tree.
    const QList<QWidget *> reached = tabOrder(stage->hand());
    for (QWidget *widget : reached)
        QVERIFY2(!nameOf(widget).isEmpty(), qPrintable(described(widget)));
}

void TestAccessibility::namesFollowTheLanguage()
{
    const QStringList inEnglish = namesOf(stage->window());
    stage->window().setLanguage(UiLanguage::Chinese);
    const QStringList inChinese = namesOf(stage->window());
    QCOMPARE(inChinese.size(), inEnglish.size());
    QStringList same;
    for (qsizetype i = 0; i < inEnglish.size(); ++i) {
        if (inEnglish.at(i) == inChinese.at(i))
            same.append(inEnglish.at(i));
    }
    same.sort();
    QCOMPARE(same.join(u','), QStringLiteral("B,Frame,Frame,G,HY,R,Total,W,语言 / Language"));
}

void TestAccessibility::nameOfTheStopButtonKeepsItsAmpersand()
{
    QCOMPARE(nameOf(stage->hand().stopZero()), QStringLiteral("■ Stop & Send Frame 0"));
    QCOMPARE(nameOf(stage->hand().connectButton()), QStringLiteral("Connect & Handshake"));
    stage->window().setLanguage(UiLanguage::Chinese);
    QCOMPARE(nameOf(stage->hand().stopZero()), QStringLiteral("■ 停止并发0帧"));
    QCOMPARE(nameOf(stage->hand().connectButton()), QStringLiteral("连接并握手"));
}

void TestAccessibility::captionsLeadToTheirEditors()
{
    const Operator &hand = stage->hand();
    const QList<std::pair<const char *, QWidget *>> named = {
        {"portCaption", hand.ports()},
        {"hostCaption", hand.hostSettings()},
        {"reservedCaption", hand.reserved()},
        {"completeFrameCaption", hand.summary()}};
    for (const auto &[name, editor] : named)
        QCOMPARE(stage->window().findChild<QLabel *>(QLatin1String(name))->buddy(), editor);
    const QList<std::pair<QString, QWidget *>> fixed = {
        {QStringLiteral("HY"), hand.header()},   {QStringLiteral("Frame"), hand.frame()},
        {QStringLiteral("Total"), hand.total()}, {QStringLiteral("R"), hand.red()},
        {QStringLiteral("G"), hand.green()},     {QStringLiteral("B"), hand.blue()},
        {QStringLiteral("W"), hand.white()}};
    for (const auto &[text, editor] : fixed) {
        QCOMPARE(nameOf(editor), text);
        QString caption;
        const auto labels = stage->window().findChildren<QLabel *>();
        for (const QLabel *label : labels)
            caption = label->buddy() == editor ? label->text() : caption;
        QCOMPARE(caption, text);
    }
}

void TestAccessibility::tabGoesThroughEverythingInOrder()
{
    const Operator &hand = stage->hand();
    hand.setDemo(false); // so that nothing is disabled
    const QList<QWidget *> expected = tabOrder(hand);
    expected.first()->setFocus(Qt::TabFocusReason);
    for (qsizetype i = 0; i <= expected.size(); ++i) { // and round again to the first
        QWidget *focused = stage->window().focusWidget();
        const QWidget *wanted = expected.at(i % expected.size());
        QVERIFY2(focused == wanted,
                 qPrintable(QStringLiteral("%1: %2 instead of %3")
                                .arg(QString::number(i), described(focused), described(wanted))));
        QTest::keyClick(focused, Qt::Key_Tab);
    }
}

void TestAccessibility::backtabGoesBack()
{
    const Operator &hand = stage->hand();
    hand.clearLog()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(hand.clearLog(), Qt::Key_Backtab);
    QCOMPARE(stage->window().focusWidget(), hand.sendHex());
    hand.navigation("navPlayer")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(hand.navigation("navPlayer"), Qt::Key_Backtab);
    QCOMPARE(stage->window().focusWidget(), hand.clearLog());
}

void TestAccessibility::keyboardOnNavigation()
{
    const Operator &hand = stage->hand();
    for (const char *name : {"navUFiles", "navTime", "navSetup", "navNet", "navAbout"}) {
        QTest::keyClick(hand.navigation(name), Qt::Key_Space);
        QVERIFY(hand.statusBar().contains(QStringLiteral("currently provides")));
        QVERIFY(hand.navigation("navPlayer")->isChecked());
        QVERIFY(!hand.navigation(name)->isChecked());
    }
}

void TestAccessibility::keyboardOnTransport()
{
    const Operator &hand = stage->hand();
    QTest::keyClick(hand.play(), Qt::Key_Space);
    QCOMPARE(hand.state(), QStringLiteral("Playing"));
    QTest::keyClick(hand.pause(), Qt::Key_Space);
    QCOMPARE(hand.state(), QStringLiteral("Paused"));
    QTest::keyClick(hand.stop(), Qt::Key_Space);
    QCOMPARE(hand.state(), QStringLiteral("Stopped"));
}

void TestAccessibility::keyboardOnFilesAndReplay()
{
    const Operator &hand = stage->hand();
    QTest::keyClick(hand.increase(), Qt::Key_Space);
    QCOMPARE(hand.header()->value(), 1);
    QTest::keyClick(hand.decrease(), Qt::Key_Space);
    QCOMPARE(hand.header()->value(), 0);
    QTest::keyClick(hand.replay(), Qt::Key_Space);
    QVERIFY(hand.panel()->repeatEnabled());
}

void TestAccessibility::keyboardOnSliders()
{
    const Operator &hand = stage->hand();
    QTest::keyClick(hand.seekSlider(), Qt::Key_PageUp);
    QVERIFY(hand.panel()->currentFrame() > 0);
    QTest::keyClick(hand.timeSlider(), Qt::Key_Right);
    QCOMPARE(hand.panel()->intervalMs(), 51);
}

void TestAccessibility::keyboardOnConnection()
{
    const Operator &hand = stage->hand();
    QTest::keyClick(hand.demo(), Qt::Key_Space);
    QVERIFY(!hand.demo()->isChecked());
    hand.choosePort(stage->portPath());
    const int before = static_cast<int>(hand.log("SYS").size());
    QTest::keyClick(hand.refresh(), Qt::Key_Space);
    QCOMPARE(hand.log("SYS").size(), before + 1);
    QTest::keyClick(hand.ports(), Qt::Key_Down); // moves on if there is more than one port
    QTest::keyClick(hand.ports(), Qt::Key_End);
    QCOMPARE(hand.ports()->currentIndex(), hand.ports()->count() - 1);
    hand.choosePort(stage->portPath());
    QTest::keyClick(hand.connectButton(), Qt::Key_Space);
    QTRY_COMPARE(hand.row(1)->text(), QStringLiteral("QXUSB OK"));
    QTest::keyClick(hand.connectButton(), Qt::Key_Space);
    QCOMPARE(hand.row(1)->text(), QStringLiteral("Disconnected"));
}

void TestAccessibility::keyboardOnEditors()
{
    const Operator &hand = stage->hand();
    const auto spins = {hand.header(), hand.frame(), hand.red(),
                        hand.green(),  hand.blue(),  hand.white()};
    for (QSpinBox *spin : spins) {
        QTest::keyClick(spin, Qt::Key_Up);
        QCOMPARE(spin->value(), 1);
        QTest::keyClick(spin, Qt::Key_Down);
        QCOMPARE(spin->value(), 0);
    }
    QTest::keyClick(hand.total(), Qt::Key_Up);
    QCOMPARE(hand.total()->value(), 1801);
    hand.type(hand.reserved(), QStringLiteral("01 02 03 04 05 06"));
    QCOMPARE(hand.reserved()->text(), QStringLiteral("01 02 03 04 05 06"));
    QTest::keyClicks(hand.summary(), QStringLiteral("x"));
    QCOMPARE(hand.summary()->text(), QStringLiteral("HY: 0  Frame: 0  R: 0  G: 0  B: 0  W: 0"));
    QTest::keyClick(hand.summary(), Qt::Key_A, Qt::ControlModifier);
    QVERIFY(hand.summary()->hasSelectedText()); // to be copied
}

void TestAccessibility::keyboardOnStatusButtons()
{
    const Operator &hand = stage->hand();
    QTest::keyClick(hand.sendFrame(), Qt::Key_Space);
    QCOMPARE(hand.log("TX").size(), 1);
    QTest::keyClick(hand.stopZero(), Qt::Key_Space);
    QVERIFY(hand.lastLog().contains(QStringLiteral("Stopped; resending Frame=0")));
    QTest::keyClick(hand.handshakeAgain(), Qt::Key_Space);
    QVERIFY(hand.log("SYS").last().contains(QStringLiteral("not required in demo mode")));
}

void TestAccessibility::keyboardOnLog()
{
    const Operator &hand = stage->hand();
    for (int i = 0; i < 100; ++i)
        stage->window().appendLog(QStringLiteral("SYS"), QString::number(i));
    const QScrollBar *bar = hand.logView()->verticalScrollBar();
    const int bottom = bar->value();
    QTest::keyClick(hand.logView(), Qt::Key_PageUp);
    QVERIFY(bar->value() < bottom);
    hand.type(hand.manual(), QStringLiteral("00"));
    QTest::keyClick(hand.manual(), Qt::Key_Return);
    QCOMPARE(hand.log("ERR").size(), 1);
    QTest::keyClick(hand.sendHex(), Qt::Key_Space);
    QCOMPARE(hand.log("ERR").size(), 2);
    QTest::keyClick(hand.clearLog(), Qt::Key_Space);
    QCOMPARE(hand.log(), QStringList());
}

void TestAccessibility::keyboardOnTheMenu()
{
    auto *bar = stage->window().menuBar();
    auto *menu = stage->window().findChild<QMenu *>(QStringLiteral("languageMenu"));
    bar->setActiveAction(menu->menuAction());
    QTRY_VERIFY(menu->isVisible());
    const auto *chinese =
        stage->window().findChild<QAction *>(QStringLiteral("languageChineseAction"));
    for (int i = 0; i < 2 && menu->activeAction() != chinese; ++i)
        QTest::keyClick(menu, Qt::Key_Down);
    QCOMPARE(menu->activeAction(), chinese);
    QTest::keyClick(menu, Qt::Key_Return);
    QCOMPARE(stage->hand().navigation("navTime")->text(), QStringLiteral("时间"));
}

QTEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
