// SPDX-License-Identifier: MIT
#include "i18n/language.h"
#include "serial/serialcontroller.h"
#include "tests/support/stage.h"

#include <QAction>
#include <QActionGroup>
#include <QDir>
#include <QGroupBox>
#include <QLibraryInfo>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QSettings>
#include <QStatusBar>
#include <QTest>
#include <QToolButton>
#include <QVideoWidget>

#include <algorithm>
#include <memory>

using qx::Language;
using qx::MainWindow;
using qx::SerialController;
using qx::UiLanguage;
using qx::test::Operator;
using qx::test::Stage;

namespace {

QString english()
{
    return QStringLiteral("en");
}

QString chinese()
{
    return QStringLiteral("zh_CN");
}

QAction *action(const MainWindow &window, const char *name)
{
    return window.findChild<QAction *>(QLatin1String(name));
}

void choose(const MainWindow &window, const QString &language)
{
    action(window, language == english() ? "languageEnglishAction" : "languageChineseAction")
        ->trigger();
}

QString storedLanguage()
{
    return QSettings().value(QStringLiteral("ui/language")).toString();
}

// The texts of everything that has a name, and of what stands beside it without one.
QString textOf(Stage &stage, const QString &which)
{
    const MainWindow &window = stage.window();
    const Operator &hand = stage.hand();
    if (which == QLatin1String("refresh"))
        return hand.refresh()->text();
    if (which == QLatin1String("demo"))
        return hand.demo()->text();
    if (which == QLatin1String("reserved tool tip"))
        return hand.reserved()->toolTip();
    if (which == QLatin1String("summary tool tip"))
        return hand.summary()->toolTip();
    if (which == QLatin1String("log placeholder"))
        return hand.logView()->placeholderText();
    if (which == QLatin1String("manual placeholder"))
        return hand.manual()->placeholderText();
    if (which == QLatin1String("send hex"))
        return hand.sendHex()->text();
    if (which == QLatin1String("browse tool tip"))
        return hand.navigation("navMediaBrowse")->toolTip();
    if (which == QLatin1String("video window"))
        return window.findChild<QVideoWidget *>()->windowTitle();
    if (which == QLatin1String("status bar"))
        return hand.statusBar();
    if (which == QLatin1String("panel badge"))
        return hand.stateBadge()->text();
    if (const auto *group = window.findChild<QGroupBox *>(which))
        return group->title();
    if (const auto *button = window.findChild<QAbstractButton *>(which))
        return button->text();
    if (const auto *label = window.findChild<QLabel *>(which))
        return label->text();
    return QStringLiteral("nothing has this name");
}

// Link text, handshake row, the panel's connection.
QStringList linkOf(const Operator &hand)
{
    return {hand.linkText()->text(), hand.row(1)->text(), hand.panelConnection()->text()};
}

} // namespace

class TestRetranslation : public QObject
{
    Q_OBJECT

private slots:
    void menu_data();
    void menu();
    void storedLanguageIsUsed_data();
    void storedLanguageIsUsed();
    void choiceIsStoredShownAndLogged();
    void sameLanguageDoesNothing();
    void unknownCodeOfAnActionSelectsChinese();
    void contextMenuSpeaksTheLanguage();
    void textsInBothLanguages_data();
    void textsInBothLanguages();
    void missingWidgetIsSkipped_data();
    void missingWidgetIsSkipped();
    void stopButtonHasNoShortcut();
    void statusBarMessageStays();
    void portListStaysAsItIs();
    void localStateAndPreview();

    void linkInDemoMode();
    void linkWhileClosed();
    void linkBeforeTheFirstAttempt();
    void linkDuringTheThirdAttempt();
    void linkWhenComplete();
    void linkTextIsItsToolTip();
    void cleanupTestCase() { shared.reset(); }

private:
    std::unique_ptr<Stage> shared; ///< of all rows of textsInBothLanguages()
};

void TestRetranslation::menu_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << english();
    QTest::newRow("Chinese") << chinese();
}

void TestRetranslation::menu()
{
    QFETCH(const QString, language);
    Stage stage(language);
    const auto *menu = stage.window().findChild<QMenu *>(QStringLiteral("languageMenu"));
    QCOMPARE(menu->title(), QStringLiteral("语言 / Language"));
    QCOMPARE(stage.window().menuBar()->actions(), QList<QAction *>{menu->menuAction()});

    const QAction *zh = action(stage.window(), "languageChineseAction");
    const QAction *en = action(stage.window(), "languageEnglishAction");
    QCOMPARE(menu->actions().size(), 2);
    QCOMPARE(menu->actions().at(0), zh);
    QCOMPARE(menu->actions().at(1), en);
    QCOMPARE(zh->text(), QStringLiteral("中文"));
    QCOMPARE(en->text(), QStringLiteral("English"));
    QCOMPARE(zh->data(), QVariant(chinese()));
    QCOMPARE(en->data(), QVariant(english()));
    QVERIFY(zh->isCheckable() && en->isCheckable());
    QCOMPARE(zh->isChecked(), language == chinese());
    QCOMPARE(en->isChecked(), language == english());
    QVERIFY(zh->actionGroup());
    QCOMPARE(zh->actionGroup(), en->actionGroup());
    QVERIFY(zh->actionGroup()->isExclusive());
}

void TestRetranslation::storedLanguageIsUsed_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("title");
    const QString en = QStringLiteral("USB Serial Playback Frame Sender");
    const QString zh = QStringLiteral("USB 串口播放帧发送器");
    QTest::newRow("nothing") << QVariant() << zh;
    QTest::newRow("en") << QVariant(QStringLiteral("en")) << en;
    QTest::newRow("EN") << QVariant(QStringLiteral("EN")) << en;
    QTest::newRow("zh_CN") << QVariant(QStringLiteral("zh_CN")) << zh;
    QTest::newRow("en_US") << QVariant(QStringLiteral("en_US")) << zh;
    QTest::newRow("fr") << QVariant(QStringLiteral("fr")) << zh;
    QTest::newRow("empty") << QVariant(QString()) << zh;
    QTest::newRow("number") << QVariant(1) << zh;
}

void TestRetranslation::storedLanguageIsUsed()
{
    QFETCH(const QVariant, stored);
    qx::test::takeIdentity();
    QSettings settings;
    settings.clear();
    if (stored.isValid())
        settings.setValue(QStringLiteral("ui/language"), stored);
    settings.sync();
    Stage stage{QString()}; // with the settings as they are
    QTEST(textOf(stage, QStringLiteral("windowTitle")), "title");
    QCOMPARE(settings.value(QStringLiteral("ui/language")).toString(), stored.toString());
}

void TestRetranslation::choiceIsStoredShownAndLogged()
{
    Stage stage(chinese());
    choose(stage.window(), english());
    QCOMPARE(storedLanguage(), english());
    QCOMPARE(Language::current(), UiLanguage::English);
    QVERIFY(action(stage.window(), "languageEnglishAction")->isChecked());
    QVERIFY(!action(stage.window(), "languageChineseAction")->isChecked());
    QCOMPARE(stage.hand().lastLog(), QStringLiteral("SYS   Interface language changed to English"));

    choose(stage.window(), chinese());
    QCOMPARE(storedLanguage(), chinese());
    QVERIFY(!action(stage.window(), "languageEnglishAction")->isChecked());
    QVERIFY(action(stage.window(), "languageChineseAction")->isChecked());
    QCOMPARE(stage.hand().lastLog(), QStringLiteral("SYS   界面语言已切换为中文"));

    stage.window().setLanguage(UiLanguage::English);
    QVERIFY(action(stage.window(), "languageEnglishAction")->isChecked());
    stage.restart();
    QCOMPARE(textOf(stage, QStringLiteral("navTime")), QStringLiteral("Time"));
}

void TestRetranslation::sameLanguageDoesNothing()
{
    Stage stage(english());
    QSettings().remove(QStringLiteral("ui/language"));
    stage.hand().navigation("navTime")->setText(QStringLiteral("untouched"));
    const QStringList log = stage.hand().log();
    choose(stage.window(), english());
    QCOMPARE(stage.hand().log(), log);
    QCOMPARE(storedLanguage(), QString());
    QCOMPARE(stage.hand().navigation("navTime")->text(), QStringLiteral("untouched"));
    QVERIFY(action(stage.window(), "languageEnglishAction")->isChecked());
}

void TestRetranslation::unknownCodeOfAnActionSelectsChinese()
{
    Stage stage(english());
    action(stage.window(), "languageChineseAction")->setData(QStringLiteral("fr"));
    choose(stage.window(), chinese());
    QCOMPARE(Language::current(), UiLanguage::Chinese);
    QCOMPARE(storedLanguage(), chinese());
}

// Where Qt's translations are not installed, it stays English.
void TestRetranslation::contextMenuSpeaksTheLanguage()
{
    const QDir translations(QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    const QString copy = translations.exists(QStringLiteral("qtbase_zh_CN.qm"))
                             ? QStringLiteral("复制")
                             : QStringLiteral("&Copy");
    Stage stage(chinese());
    const auto offers = [&stage](const QString &what) {
        const std::unique_ptr<QMenu> menu(stage.hand().logView()->createStandardContextMenu());
        const QList<QAction *> actions = menu->actions();
        return std::ranges::any_of(
            actions, [&](const QAction *action) { return action->text().startsWith(what); });
    };
    QVERIFY(offers(copy));
    choose(stage.window(), english());
    QVERIFY(offers(QStringLiteral("&Copy")));
    choose(stage.window(), chinese());
    QVERIFY(offers(copy));
}

void TestRetranslation::textsInBothLanguages_data()
{
    QTest::addColumn<QString>("which");
    QTest::addColumn<QString>("en");
    QTest::addColumn<QString>("zh");
    const auto row = [](const char *which, const char *en, const char *zh) {
        QTest::newRow(which) << QString::fromLatin1(which) << QString::fromUtf8(en)
                             << QString::fromUtf8(zh);
    };
    const auto same = [&row](const char *which, const char *text) { row(which, text, text); };
    row("windowTitle", "USB Serial Playback Frame Sender", "USB 串口播放帧发送器");
    same("windowSubtitle", "ESP USB 20BYTE → A39 11/22BYTE · V0.3.5");
    row("hintLabel",
        "Use Browse on the left to choose audio or video. During Play, media runs on its own "
        "clock and frame progress does not seek it; only dragging the frame slider while Paused "
        "seeks media. USB frames still follow the Time interval; Stop resends Frame=0 with "
        "RGBW=0.",
        "左侧文件浏览可选择音频或视频；播放时媒体按自身速率运行，帧进度不定位媒体；仅暂停后拖动帧"
        "进度条才定位媒体。播放帧仍按 Time 间隔发送；停止时循环发送 Frame=0 且 RGBW=0。");
    same("navVersion", "V0.3.5");
    row("navPlayer", "Player", "播放");
    row("navMediaBrowse", "Browse", "文件浏览");
    row("navUFiles", "U Files", "U盘文件");
    row("navTime", "Time", "时间");
    row("navSetup", "Setup", "设置");
    row("navNet", "Net", "网络");
    row("navAbout", "About", "关于");
    row("browse tool tip", "Choose an audio or video file and synchronize it with frame playback",
        "选择音频或视频文件，并与播放帧同步控制");
    row("connectionGroup", "USB Serial/JTAG Connection", "USB Serial/JTAG 连接");
    row("portCaption", "Port", "端口");
    row("hostCaption", "Host settings", "主机参数");
    row("refresh", "Refresh", "刷新");
    row("primaryButton", "Connect && Handshake", "连接并握手");
    row("demo", "Offline demo mode", "离线演示模式");
    row("frameGroup", "20-byte Playback Frame", "20 字节播放帧");
    row("reservedCaption", "6 reserved bytes", "保留6字节");
    row("completeFrameCaption", "Frame summary", "完整帧");
    row("reserved tool tip", "current[1], current[2], extra[0..3]; keep 00 by default",
        "current[1], current[2], extra[0..3]；默认保持 00");
    row("summary tool tip",
        "Shows HY, Frame, R, G, B and W; the transmitted packet remains the complete 20-byte "
        "frame",
        "显示 HY、Frame、R、G、B、W；实际发送仍为完整20字节帧");
    row("deviceStatusGroup", "Transmission Status", "发送状态");
    row("statusCaption0", "USB channel", "USB通道");
    row("statusCaption1", "Handshake", "握手");
    row("statusCaption2", "Local state", "本机状态");
    same("statusCaption3", "HY");
    same("statusCaption4", "Frame");
    same("statusCaption5", "RGBW");
    row("statusCaption6", "Traffic", "通信量");
    row("stopZeroButton", "■ Stop & Send Frame 0", "■ 停止并发0帧");
    row("sendFrameButton", "Send Current Frame", "发送当前帧");
    row("handshakeButton", "Handshake Again", "重新握手");
    row("logGroup", "Serial Log / 20-byte HEX Debug", "串口日志 / 20字节HEX调试");
    row("log placeholder", "Handshake, 20-byte TX and ESP text responses appear here...",
        "握手、20字节TX与ESP文本响应显示在这里……");
    row("manual placeholder", "Enter a complete 20-byte HEX frame", "手动输入完整20字节HEX");
    row("send hex", "Send HEX", "发送HEX");
    row("clearLogButton", "Clear", "清空");
    row("summaryGroup", "Information", "信息");
    row("panel badge", "Stopped", "已停止");
    row("video window", "Video Preview", "视频预览");
    row("status bar", "V0.3.5: Select a USB Serial/JTAG port",
        "V0.3.5：等待选择 USB Serial/JTAG 端口");
}

void TestRetranslation::textsInBothLanguages()
{
    QFETCH(const QString, which);
    if (!shared)
        shared = std::make_unique<Stage>(english());
    QTEST(textOf(*shared, which), "en");
    choose(shared->window(), chinese());
    QTEST(textOf(*shared, which), "zh");
    choose(shared->window(), english());
    QTEST(textOf(*shared, which), "en");
}

void TestRetranslation::missingWidgetIsSkipped_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"windowTitle", "hintLabel", "navVersion", "navTime", "portCaption",
                             "statusCaption0", "statusCaption6", "stopZeroButton",
                             "sendFrameButton", "handshakeButton", "clearLogButton"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestRetranslation::missingWidgetIsSkipped()
{
    QFETCH(const QString, name);
    Stage stage(english());
    delete stage.window().findChild<QWidget *>(name);
    choose(stage.window(), chinese());
    QCOMPARE(textOf(stage, QStringLiteral("statusCaption1")), QStringLiteral("握手"));
    stage.window().resize(stage.window().size() + QSize(40, 40));
    QCoreApplication::sendPostedEvents();
    QCOMPARE(textOf(stage, QStringLiteral("send hex")), QStringLiteral("发送HEX"));
}

void TestRetranslation::stopButtonHasNoShortcut()
{
    Stage stage(english());
    QVERIFY(stage.hand().stopZero()->shortcut().isEmpty());
    choose(stage.window(), chinese());
    choose(stage.window(), english());
    QVERIFY(stage.hand().stopZero()->shortcut().isEmpty());
}

void TestRetranslation::statusBarMessageStays()
{
    Stage stage(english());
    stage.hand().click(stage.hand().navigation("navTime"));
    QVERIFY(stage.hand().statusLifetimeMs() > 0); // this message goes by itself
    choose(stage.window(), chinese());
    const QString message = QStringLiteral("V0.3.5：等待选择 USB Serial/JTAG 端口");
    QCOMPARE(stage.hand().statusBar(), message);
    QCOMPARE(stage.hand().statusLifetimeMs(), 0);
}

void TestRetranslation::portListStaysAsItIs()
{
    Stage stage(english());
    stage.hand().choosePort(stage.portPath());
    const int ports = stage.hand().ports()->count();
    const int lines = static_cast<int>(stage.hand().log("SYS").size());
    choose(stage.window(), chinese());
    QCOMPARE(stage.hand().ports()->currentData().toString(), stage.portPath());
    QCOMPARE(stage.hand().ports()->count(), ports);
    QCOMPARE(stage.hand().log("SYS").size(), lines + 1); // the announcement alone
}

void TestRetranslation::localStateAndPreview()
{
    Stage stage(english());
    stage.hand().type(stage.hand().reserved(), QStringLiteral("nonsense"));
    QCOMPARE(stage.hand().row(2)->text(), QStringLiteral("Stopped"));
    QCOMPARE(stage.hand().summary()->text(),
             QStringLiteral("The reserved field must contain exactly 6 hexadecimal bytes"));
    choose(stage.window(), chinese());
    QCOMPARE(stage.hand().row(2)->text(), QStringLiteral("已停止"));
    QCOMPARE(stage.hand().summary()->text(), QStringLiteral("保留字段必须恰好是 6 个十六进制字节"));
}

void TestRetranslation::linkInDemoMode()
{
    Stage stage(english());
    const QString demo = QStringLiteral("DEMO");
    QCOMPARE(linkOf(stage.hand()), (QStringList{QStringLiteral("Offline demo"), demo, demo}));
    choose(stage.window(), chinese());
    QCOMPARE(linkOf(stage.hand()), (QStringList{QStringLiteral("离线演示"), demo, demo}));
}

void TestRetranslation::linkWhileClosed()
{
    Stage stage(english());
    stage.hand().setDemo(false);
    choose(stage.window(), chinese());
    const QString off = QStringLiteral("未连接");
    QCOMPARE(linkOf(stage.hand()), (QStringList{off, off, off}));
    choose(stage.window(), english());
    QCOMPARE(linkOf(stage.hand()),
             (QStringList{QStringLiteral("Disconnected"), QStringLiteral("Disconnected"),
                          QStringLiteral("Not connected")}));
    QCOMPARE(stage.hand().connectButton()->text(), QStringLiteral("Connect && Handshake"));
}

void TestRetranslation::linkBeforeTheFirstAttempt()
{
    Stage stage(english());
    stage.hand().setDemo(false);
    auto *controller = stage.window().findChild<SerialController *>();
    QVERIFY(controller->open(stage.portPath(), 115200)); // without a handshake
    QCOMPARE(stage.hand().linkText()->text(),
             QStringLiteral("Serial port open; waiting for handshake"));
    choose(stage.window(), chinese());
    const QString handshaking = QStringLiteral("握手中");
    QCOMPARE(linkOf(stage.hand()),
             (QStringList{QStringLiteral("串口已打开，等待握手"), handshaking, handshaking}));
    QCOMPARE(stage.hand().connectButton()->text(), QStringLiteral("断开"));
}

void TestRetranslation::linkDuringTheThirdAttempt()
{
    Stage stage(english());
    qx::SimulatorBehaviour silent;
    silent.silent = true;
    stage.player().setBehaviour(silent);
    QVERIFY(stage.connectPort());
    QTRY_COMPARE(stage.hand().linkText()->text(), QStringLiteral("Handshaking (3)"));
    choose(stage.window(), chinese());
    const QString handshaking = QStringLiteral("握手中");
    QCOMPARE(linkOf(stage.hand()),
             (QStringList{QStringLiteral("握手中（3）"), handshaking, handshaking}));
    choose(stage.window(), english());
    QCOMPARE(linkOf(stage.hand()),
             (QStringList{QStringLiteral("Handshaking (3)"), QStringLiteral("Handshaking"),
                          QStringLiteral("Handshaking")}));
    QCOMPARE(stage.hand().connectButton()->text(), QStringLiteral("Disconnect"));
}

void TestRetranslation::linkWhenComplete()
{
    Stage stage(english());
    QVERIFY(stage.connectPlayer());
    const QString ok = QStringLiteral("QXUSB OK");
    const QString port = stage.window().findChild<SerialController *>()->portName();
    QCOMPARE(linkOf(stage.hand()), (QStringList{QStringLiteral("Handshake complete"), ok, port}));
    choose(stage.window(), chinese());
    QCOMPARE(linkOf(stage.hand()), (QStringList{QStringLiteral("握手完成"), ok, port}));
    QCOMPARE(stage.hand().connectButton()->text(), QStringLiteral("断开"));
}

void TestRetranslation::linkTextIsItsToolTip()
{
    Stage stage(english());
    QCOMPARE(stage.hand().linkText()->toolTip(), stage.hand().linkText()->text());
    choose(stage.window(), chinese());
    QCOMPARE(stage.hand().linkText()->toolTip(), QStringLiteral("离线演示"));
    stage.hand().setDemo(false);
    QCOMPARE(stage.hand().linkText()->toolTip(), QStringLiteral("未连接"));
}

QTEST_MAIN(TestRetranslation)
#include "tst_retranslation.moc"
