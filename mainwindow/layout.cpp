// SPDX-License-Identifier: MIT
// MainWindow, layout: the widget tree. Texts come from the retranslation, connections of the
// session from the wiring.
#include "mainwindow/mainwindow.h"
#include "mainwindow/messagelifetimes.h"
#include "mainwindow/version.h"
#include "widgets/arrowboxes.h"
#include "widgets/colours.h"
#include "widgets/fittedlineedit.h"
#include "widgets/framedisplay.h"
#include "widgets/greyicon.h"
#include "widgets/groupcolumn.h"
#include "widgets/literalbutton.h"
#include "widgets/logview.h"
#include "widgets/navigationbutton.h"
#include "widgets/plaintooltip.h"
#include "widgets/playerpanel.h"
#include "widgets/singleclickbutton.h"
#include "widgets/valuelabel.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace qx {

namespace {

constexpr QSize navigationIcon(48, 48);
constexpr int tightSpacing = 4;   // of the grids, so that all groups fit the default size
constexpr int connectWidth = 190; // for both of its texts, so that nothing moves on connecting

QLabel *namedLabel(const QString &name)
{
    auto *label = new QLabel;
    label->setObjectName(name);
    return label;
}

QPushButton *namedButton(QPushButton *button, const QString &name)
{
    button->setObjectName(name);
    return button;
}

// The layout of one of the groups on the right.
template<typename Layout>
Layout *groupLayout(QGroupBox *group)
{
    auto *layout = new Layout(group);
    layout->setContentsMargins(0, 0, 0, 0);
    return layout;
}

QGroupBox *namedGroup(const QString &name)
{
    auto *group = new QGroupBox;
    group->setObjectName(name);
    return group;
}

// `ratio`: pixels of the screen for each of ours, so that the logo has as many.
QLabel *createBrandLabel(qreal ratio)
{
    QLabel *brand = namedLabel(QStringLiteral("brandLabel"));
    brand->setAlignment(Qt::AlignCenter);
    brand->setFixedSize(92, 72);
    brand->setAccessibleName(QStringLiteral("Corvessa product logo"));
    QPixmap logo(QStringLiteral(":/assets/logo1_dark.png"));
    if (logo.isNull()) {
        brand->setText(QStringLiteral("QX"));
        return brand;
    }
    logo = logo.scaled(QSize(56, 56) * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    logo.setDevicePixelRatio(ratio);
    brand->setPixmap(logo);
    return brand;
}

QSpinBox *addSpin(QGridLayout *grid, int row, int column, const QString &label, int maximum,
                  int columnSpan = 1)
{
    auto *caption = new QLabel(label);
    auto *spin = new ArrowSpinBox;
    spin->setRange(0, maximum);
    spin->setAccessibleName(label);
    caption->setBuddy(spin);
    grid->addWidget(caption, row, column);
    grid->addWidget(spin, row, column + 1, 1, columnSpan);
    return spin;
}

} // namespace

void MainWindow::setUpWindow()
{
    setWindowTitle(QStringLiteral("Tessaly-Master USB Player V%1").arg(version()));
    // A pixmap is decoded once for the program and the window, an icon each time.
    setWindowIcon(QPixmap(QStringLiteral(":/assets/logo1_icon.png")));
    resize(1420, 900);
    setMinimumSize(1220, 780);
    applyApplicationStyle(this);
}

void MainWindow::createWidgets()
{
    auto *central = new QWidget;
    auto *layout = new QHBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(createNavigation());
    layout->addWidget(createContent(), 1);
    setCentralWidget(central);
    central->setFocus(); // no control looks chosen before the first Tab
    prepareFrameDisplay(statusBar(), colours::edge);
}

QWidget *MainWindow::createContent()
{
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(22, 16, 22, 18);
    layout->setSpacing(14);

    auto *header = new QHBoxLayout;
    header->setContentsMargins(0, 0, 0, 0);
    header->addWidget(namedLabel(QStringLiteral("windowTitle")));
    header->addStretch();
    header->addWidget(namedLabel(QStringLiteral("windowSubtitle")));
    layout->addLayout(header);

    auto *left = new QWidget;
    auto *leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    playerPanel = new PlayerPanel;
    leftLayout->addWidget(playerPanel, 0, Qt::AlignHCenter | Qt::AlignTop);
    QLabel *hint = namedLabel(QStringLiteral("hintLabel"));
    hint->setWordWrap(true);
    leftLayout->addWidget(hint);
    leftLayout->addStretch();

    auto *splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(left);
    splitter->addWidget(createRightPanel());
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(8);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    splitter->setSizes({720, 500});
    layout->addWidget(splitter, 1);
    return content;
}

QFrame *MainWindow::createNavigation()
{
    auto *navigation = new QFrame;
    navigation->setObjectName(QStringLiteral("navigation"));
    navigation->setFixedWidth(112);
    auto *layout = new QVBoxLayout(navigation);
    layout->setContentsMargins(10, 16, 10, 16);
    layout->setSpacing(8);
    layout->addWidget(createBrandLabel(devicePixelRatioF()));

    const auto add = [this, layout](const QString &name, const QString &iconPath, bool checked) {
        QToolButton *button = createNavigationButton(QString(), iconPath, checked);
        button->setObjectName(name);
        layout->addWidget(button);
        return button;
    };
    QToolButton *player =
        add(QStringLiteral("navPlayer"), QStringLiteral(":/assets/ico_play_png.png"), true);
    connect(player, &QToolButton::clicked, player, [player] { player->setChecked(true); });
    mediaBrowseButton = add(QStringLiteral("navMediaBrowse"), QString(), false);
    mediaBrowseButton->setIcon(style()->standardIcon(QStyle::SP_DirOpenIcon));
    mediaBrowseButton->setCheckable(false);
    connect(mediaBrowseButton, &QToolButton::clicked, this, &MainWindow::browseMediaFile);
    const std::pair<QString, QString> otherPages[] = {
        {QStringLiteral("navUFiles"), QStringLiteral(":/assets/ico_u_png.png")},
        {QStringLiteral("navTime"), QStringLiteral(":/assets/ico_timer.png")},
        {QStringLiteral("navSetup"), QStringLiteral(":/assets/ico_setup.png")},
        {QStringLiteral("navNet"), QStringLiteral(":/assets/ico_net.png")},
        {QStringLiteral("navAbout"), QStringLiteral(":/assets/about.png")},
    };
    for (const auto &[name, iconPath] : otherPages) {
        QToolButton *button = add(name, iconPath, false);
        connect(button, &QToolButton::clicked, this, [this, player, button] {
            player->setChecked(true);
            button->setChecked(false);
            showStatus(Language::text(UiText::PlayerOnlyNotice).arg(version()), lifetimes::page);
        });
    }

    layout->addStretch();
    QLabel *versionLabel = namedLabel(QStringLiteral("navVersion"));
    versionLabel->setAlignment(Qt::AlignCenter);
    versionLabel->setText(QStringLiteral("V%1").arg(version()));
    layout->addWidget(versionLabel);
    return navigation;
}

QToolButton *MainWindow::createNavigationButton(const QString &text, const QString &iconPath,
                                                bool checked)
{
    auto *button = new NavigationButton;
    button->setText(text);
    if (!iconPath.isEmpty())
        button->setIcon(greyIcon(iconPath));
    button->setIconSize(navigationIcon);
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setCheckable(true);
    button->setAutoExclusive(false);
    button->setChecked(checked);
    button->setFixedSize(92, 80);
    return button;
}

QWidget *MainWindow::createRightPanel()
{
    auto *panel = new GroupColumn;
    panel->setMinimumWidth(450);
    panel->setMaximumWidth(580);
    auto *layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);
    layout->addWidget(createConnectionGroup());
    layout->addWidget(createFrameGroup());
    layout->addWidget(createDeviceStatusGroup());
    layout->addWidget(createLogGroup(), 1);
    return panel;
}

QGroupBox *MainWindow::createConnectionGroup()
{
    QGroupBox *group = namedGroup(QStringLiteral("connectionGroup"));
    auto *grid = groupLayout<QGridLayout>(group);
    grid->setSpacing(tightSpacing);
    grid->setColumnStretch(1, 1);

    QLabel *portCaption = namedLabel(QStringLiteral("portCaption"));
    portCombo = new ArrowComboBox;
    portCombo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    portCombo->setMinimumContentsLength(18);
    // Takes the room that is there: its own wish would leave too little to the longest link text.
    portCombo->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    portCombo->view()->setTextElideMode(Qt::ElideRight); // the port's name comes first
    connect(portCombo, &QComboBox::currentTextChanged, portCombo,
            [this](const QString &port) { portCombo->setToolTip(plainToolTip(port)); });
    portCaption->setBuddy(portCombo);
    refreshPortsButton = new QPushButton;
    grid->addWidget(portCaption, 0, 0);
    grid->addWidget(portCombo, 0, 1, 1, 2);
    grid->addWidget(refreshPortsButton, 0, 3);

    QLabel *hostCaption = namedLabel(QStringLiteral("hostCaption"));
    hostSettingsCombo = new ArrowComboBox;
    hostSettingsCombo->addItem(QStringLiteral("115200 / 8N1"), 115200);
    hostCaption->setBuddy(hostSettingsCombo);
    connectButton = namedButton(new SingleClickButton, QStringLiteral("primaryButton"));
    connectButton->setMinimumWidth(connectWidth);
    grid->addWidget(hostCaption, 1, 0);
    grid->addWidget(hostSettingsCombo, 1, 1);
    grid->addWidget(connectButton, 1, 2, 1, 2);

    demoModeCheck = new QCheckBox;
    linkIndicator = new QLabel;
    linkIndicator->setFixedSize(12, 12);
    setLamp(false);
    linkStatusLabel = new QLabel;
    linkStatusLabel->setTextFormat(Qt::PlainText);
    linkStatusLabel->setMinimumWidth(1); // a long text must not widen the column
    auto *lampRow = new QHBoxLayout;
    lampRow->setContentsMargins(0, 0, 0, 0);
    lampRow->setSpacing(7);
    lampRow->addWidget(linkIndicator);
    lampRow->addWidget(linkStatusLabel);
    lampRow->addStretch();
    grid->addWidget(demoModeCheck, 2, 0, 1, 2);
    grid->addLayout(lampRow, 2, 2, 1, 2);
    return group;
}

QGroupBox *MainWindow::createFrameGroup()
{
    QGroupBox *group = namedGroup(QStringLiteral("frameGroup"));
    auto *grid = groupLayout<QGridLayout>(group);
    grid->setVerticalSpacing(tightSpacing);
    for (const int column : {1, 3, 5, 7})
        grid->setColumnStretch(column, 1);
    createFrameEditors(grid);

    QLabel *reservedCaption = namedLabel(QStringLiteral("reservedCaption"));
    reservedEdit = new QLineEdit(QStringLiteral("00 00 00 00 00 00"));
    reservedCaption->setBuddy(reservedEdit);
    grid->addWidget(reservedCaption, 2, 0, 1, 2);
    grid->addWidget(reservedEdit, 2, 2, 1, 6);

    QLabel *completeFrameCaption = namedLabel(QStringLiteral("completeFrameCaption"));
    completeFrameEdit = new FittedLineEdit;
    prepareFrameDisplay(completeFrameEdit, colours::surface);
    completeFrameCaption->setBuddy(completeFrameEdit);
    grid->addWidget(completeFrameCaption, 3, 0, 1, 2);
    grid->addWidget(completeFrameEdit, 3, 2, 1, 6);
    return group;
}

void MainWindow::createFrameEditors(QGridLayout *grid)
{
    headerSpin = addSpin(grid, 0, 0, QStringLiteral("HY"), 255);
    frameSpin = addSpin(grid, 0, 2, QStringLiteral("Frame"), 1800);
    prepareFrameDisplay(frameSpin, colours::surface);
    totalSpin = addSpin(grid, 0, 4, QStringLiteral("Total"), 65535, 3);
    totalSpin->setValue(1800);
    redSpin = addSpin(grid, 1, 0, QStringLiteral("R"), 255);
    redSpin->setObjectName(QStringLiteral("redSpin"));
    greenSpin = addSpin(grid, 1, 2, QStringLiteral("G"), 255);
    greenSpin->setObjectName(QStringLiteral("greenSpin"));
    blueSpin = addSpin(grid, 1, 4, QStringLiteral("B"), 255);
    blueSpin->setObjectName(QStringLiteral("blueSpin"));
    whiteSpin = addSpin(grid, 1, 6, QStringLiteral("W"), 255);
    whiteSpin->setObjectName(QStringLiteral("whiteSpin"));
}

QGroupBox *MainWindow::createDeviceStatusGroup()
{
    QGroupBox *group = namedGroup(QStringLiteral("deviceStatusGroup"));
    auto *grid = groupLayout<QGridLayout>(group);
    grid->setColumnStretch(1, 1);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(6);

    const QString initialTexts[] = {
        QStringLiteral("USB Serial/JTAG"), QStringLiteral("未连接"),
        QStringLiteral("已停止"),          QStringLiteral("0"),
        QStringLiteral("0 / 1800"),        QStringLiteral("0 / 0 / 0 / 0"),
        QStringLiteral("TX 0 B / RX 0 B"),
    };
    statusValueLabels.clear();
    for (int row = 0; const QString &text : initialTexts) {
        QLabel *caption = namedLabel(QStringLiteral("statusCaption%1").arg(row));
        caption->setProperty("captionRole", true);
        auto *value = new ValueLabel;
        value->setObjectName(QStringLiteral("valueLabel"));
        value->setText(text);
        caption->setBuddy(value);
        prepareFrameDisplay(value, colours::surface);
        statusValueLabels.append(value);
        grid->addWidget(caption, row, 0);
        grid->addWidget(value, row, 1);
        ++row;
    }

    QPushButton *stopZero = namedButton(new LiteralButton, QStringLiteral("stopZeroButton"));
    connect(stopZero, &QPushButton::clicked, this, [this] { stopPlayback(true); });
    QPushButton *sendFrame = namedButton(new QPushButton, QStringLiteral("sendFrameButton"));
    connect(sendFrame, &QPushButton::clicked, this, &MainWindow::sendCurrentFrame);
    QPushButton *handshake = namedButton(new QPushButton, QStringLiteral("handshakeButton"));
    connect(handshake, &QPushButton::clicked, this, &MainWindow::beginHandshake);
    grid->addWidget(stopZero, 7, 0);
    grid->addWidget(sendFrame, 7, 1);
    grid->addWidget(handshake, 8, 0, 1, 2);
    return group;
}

QGroupBox *MainWindow::createLogGroup()
{
    QGroupBox *group = namedGroup(QStringLiteral("logGroup"));
    auto *layout = groupLayout<QVBoxLayout>(group);
    logView = new LogView;
    layout->addWidget(logView, 1);

    manualFrameEdit = new QLineEdit;
    sendHexButton = new QPushButton;
    QPushButton *clearLog = namedButton(new QPushButton, QStringLiteral("clearLogButton"));
    connect(clearLog, &QPushButton::clicked, logView, &QPlainTextEdit::clear);
    auto *row = new QHBoxLayout;
    row->addWidget(manualFrameEdit, 1);
    row->addWidget(sendHexButton);
    row->addWidget(clearLog);
    layout->addLayout(row);
    return group;
}

} // namespace qx
