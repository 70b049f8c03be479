// SPDX-License-Identifier: MIT
// MainWindow, retranslation: the language menu and every text of the window.
#include "mainwindow/mainwindow.h"
#include "mainwindow/messagelifetimes.h"
#include "mainwindow/version.h"
#include "serial/serialcontroller.h"
#include "widgets/fittedlineedit.h"
#include "widgets/logview.h"
#include "widgets/playerpanel.h"
#include "widgets/steadylayout.h"
#include "widgets/valuelabel.h"

#include <QAction>
#include <QActionGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QLibraryInfo>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QToolButton>
#include <QTranslator>

namespace qx {

namespace {

QString languageKey()
{
    return QStringLiteral("ui/language");
}

template<typename Widget>
void setTextOf(const QWidget *window, const QString &name, const QString &text)
{
    if (auto *widget = window->findChild<Widget *>(name))
        widget->setText(text);
}

void setTitleOf(const QWidget *window, const QString &name, UiText text)
{
    if (auto *group = window->findChild<QGroupBox *>(name))
        group->setTitle(Language::text(text));
}

// Context menus, the file dialog: in the language of the interface where Qt's translations are.
void translateQtTexts(QObject *window)
{
    delete window->findChild<QTranslator *>();
    auto *texts = new QTranslator(window);
    if (texts->load(QStringLiteral("qtbase_") + Language::code(Language::current()),
                    QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(texts);
}

} // namespace

void MainWindow::readLanguage()
{
    const QSettings settings;
    const QString code = settings.value(languageKey(), QStringLiteral("zh_CN")).toString();
    Language::setCurrent(Language::fromCode(code));
    translateQtTexts(this);
}

void MainWindow::createLanguageMenu()
{
    languageMenu = menuBar()->addMenu(QStringLiteral("语言 / Language"));
    languageMenu->setObjectName(QStringLiteral("languageMenu"));
    languageGroup = new QActionGroup(this);
    languageGroup->setExclusive(true);
    const auto add = [this](const QString &text, const QString &name, UiLanguage language) {
        QAction *action = languageMenu->addAction(text);
        action->setObjectName(name);
        action->setCheckable(true);
        action->setData(Language::code(language));
        languageGroup->addAction(action);
        return action;
    };
    languageChineseAction =
        add(QStringLiteral("中文"), QStringLiteral("languageChineseAction"), UiLanguage::Chinese);
    languageEnglishAction = add(QStringLiteral("English"), QStringLiteral("languageEnglishAction"),
                                UiLanguage::English);
    const bool english = Language::current() == UiLanguage::English;
    (english ? languageEnglishAction : languageChineseAction)->setChecked(true);
    connect(languageGroup, &QActionGroup::triggered, this, [this](const QAction *action) {
        setLanguage(Language::fromCode(action->data().toString()));
    });
}

void MainWindow::setLanguage(UiLanguage language)
{
    if (language == Language::current())
        return;
    Language::setCurrent(language);
    translateQtTexts(this);
    languageChineseAction->setChecked(language == UiLanguage::Chinese);
    languageEnglishAction->setChecked(language == UiLanguage::English);
    QSettings settings;
    settings.setValue(languageKey(), Language::code(language));
    settings.sync();
    retranslateUi();
    refreshPorts(false);
    appendLog(QStringLiteral("SYS"),
              Language::text(language == UiLanguage::English ? UiText::LanguageChangedToEnglish
                                                             : UiText::LanguageChangedToChinese));
}

void MainWindow::retranslateUi()
{
    setTextOf<QLabel>(this, QStringLiteral("windowTitle"), Language::text(UiText::AppTitle));
    setTextOf<QLabel>(this, QStringLiteral("windowSubtitle"),
                      QStringLiteral("ESP USB 20BYTE → A39 11/22BYTE · V%1").arg(version()));
    setTextOf<QLabel>(this, QStringLiteral("hintLabel"), Language::text(UiText::MediaSyncHint));
    retranslateNavigation();
    retranslateGroups();
    retranslateAccessibleNames();
    if (playerPanel)
        playerPanel->retranslateUi();
    updateVideoTitle();
    refreshLinkTexts();
    updateFramePreview();
    updateLocalStatus();
    updateTrafficLabel();
    findChild<SteadyLayout *>()->relayout();
    showStatus(Language::text(UiText::SelectPortStatus).arg(version()), lifetimes::untilReplaced);
}

void MainWindow::retranslateNavigation()
{
    const auto setText = [this](const QString &name, UiText text) {
        setTextOf<QToolButton>(this, name, Language::text(text));
    };
    setTextOf<QLabel>(this, QStringLiteral("navVersion"), QStringLiteral("V%1").arg(version()));
    setText(QStringLiteral("navPlayer"), UiText::NavPlayer);
    updateMediaNavigation();
    setText(QStringLiteral("navUFiles"), UiText::NavUFiles);
    setText(QStringLiteral("navTime"), UiText::NavTime);
    setText(QStringLiteral("navSetup"), UiText::NavSetup);
    setText(QStringLiteral("navNet"), UiText::NavNet);
    setText(QStringLiteral("navAbout"), UiText::NavAbout);
}

void MainWindow::retranslateGroups()
{
    const auto setLabel = [this](const QString &name, UiText text) {
        setTextOf<QLabel>(this, name, Language::text(text));
    };
    const auto setButton = [this](const QString &name, UiText text) {
        setTextOf<QPushButton>(this, name, Language::text(text));
    };

    setTitleOf(this, QStringLiteral("connectionGroup"), UiText::ConnectionGroupTitle);
    setLabel(QStringLiteral("portCaption"), UiText::PortCaption);
    setLabel(QStringLiteral("hostCaption"), UiText::HostSettingsCaption);
    refreshPortsButton->setText(Language::text(UiText::RefreshButton));
    connectButton->setText(Language::text(
        serialController->isOpen() ? UiText::DisconnectButton : UiText::ConnectHandshakeButton));
    demoModeCheck->setText(Language::text(UiText::DemoModeCheck));

    setTitleOf(this, QStringLiteral("frameGroup"), UiText::FrameGroupTitle);
    setLabel(QStringLiteral("reservedCaption"), UiText::ReservedBytesCaption);
    setLabel(QStringLiteral("completeFrameCaption"), UiText::FrameSummaryCaption);
    reservedEdit->setToolTip(Language::text(UiText::ReservedBytesToolTip));
    completeFrameEdit->setToolTip(Language::text(UiText::FrameSummaryToolTip));

    setTitleOf(this, QStringLiteral("deviceStatusGroup"), UiText::StatusGroupTitle);
    setLabel(QStringLiteral("statusCaption0"), UiText::UsbChannelCaption);
    setLabel(QStringLiteral("statusCaption1"), UiText::HandshakeCaption);
    setLabel(QStringLiteral("statusCaption2"), UiText::LocalStateCaption);
    setTextOf<QLabel>(this, QStringLiteral("statusCaption3"), QStringLiteral("HY"));
    setTextOf<QLabel>(this, QStringLiteral("statusCaption4"), QStringLiteral("Frame"));
    setTextOf<QLabel>(this, QStringLiteral("statusCaption5"), QStringLiteral("RGBW"));
    setLabel(QStringLiteral("statusCaption6"), UiText::TrafficCaption);
    setButton(QStringLiteral("stopZeroButton"), UiText::StopSendFrameZeroButton);
    setButton(QStringLiteral("sendFrameButton"), UiText::SendCurrentFrameButton);
    setButton(QStringLiteral("handshakeButton"), UiText::HandshakeAgainButton);
    // The text's own ampersand is no shortcut, and is read out like the rest.
    if (auto *stopZero = findChild<QPushButton *>(QStringLiteral("stopZeroButton"))) {
        stopZero->setShortcut(QKeySequence());
        stopZero->setAccessibleName(stopZero->text());
    }

    setTitleOf(this, QStringLiteral("logGroup"), UiText::LogGroupTitle);
    logView->setPlaceholderText(Language::text(UiText::LogPlaceholder));
    manualFrameEdit->setPlaceholderText(Language::text(UiText::ManualFramePlaceholder));
    sendHexButton->setText(Language::text(UiText::SendHexButton));
    setButton(QStringLiteral("clearLogButton"), UiText::ClearLogButton);
}

// For the controls that no text of their own names; what reads its value out as its name says by
// its description what that is.
void MainWindow::retranslateAccessibleNames()
{
    portCombo->setAccessibleName(Language::text(UiText::PortCaption));
    portCombo->setAccessibleDescription(Language::text(UiText::PortCaption));
    hostSettingsCombo->setAccessibleName(Language::text(UiText::HostSettingsCaption));
    hostSettingsCombo->setAccessibleDescription(Language::text(UiText::HostSettingsCaption));
    for (qsizetype row = 0; row < statusValueLabels.size(); ++row) {
        if (const auto *caption = findChild<QLabel *>(QStringLiteral("statusCaption%1").arg(row)))
            statusValueLabels.at(row)->setAccessibleDescription(caption->text());
    }
    reservedEdit->setAccessibleName(Language::text(UiText::ReservedBytesCaption));
    completeFrameEdit->setAccessibleName(Language::text(UiText::FrameSummaryCaption));
    logView->setAccessibleName(Language::text(UiText::LogGroupTitle));
    manualFrameEdit->setAccessibleName(Language::text(UiText::ManualFramePlaceholder));
}

} // namespace qx
