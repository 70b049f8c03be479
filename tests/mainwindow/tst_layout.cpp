// SPDX-License-Identifier: MIT
// The window with its images; tst_missingimages is the same without them.
#include "tests/support/eventcounter.h"
#include "tests/support/stage.h"
#include "widgets/greyicon.h"

#include <QApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QMenuBar>
#include <QSignalSpy>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include <memory>

using qx::MainWindow;
using qx::PlayerPanel;
using qx::test::EventCounter;
using qx::test::Operator;
using qx::test::Stage;

namespace {

struct Cell
{
    int row, column, rows, columns;
    bool operator==(const Cell &) const = default;
};

// The cell of a widget, or of the row layout that holds it.
Cell cellOf(const QGridLayout *grid, const QWidget *widget)
{
    for (int i = 0; i < grid->count(); ++i) {
        const QLayoutItem *item = grid->itemAt(i);
        const QLayout *row = const_cast<QLayoutItem *>(item)->layout();
        if (item->widget() != widget && !(row && row->indexOf(widget) >= 0))
            continue;
        Cell cell{};
        grid->getItemPosition(i, &cell.row, &cell.column, &cell.rows, &cell.columns);
        return cell;
    }
    return {-1, -1, -1, -1};
}

QGridLayout *gridOf(const MainWindow &window, const char *group)
{
    return qobject_cast<QGridLayout *>(
        window.findChild<QGroupBox *>(QLatin1String(group))->layout());
}

// Of a button of the navigation column: the rows above the text in which something is drawn.
int iconHeight(const QToolButton *button)
{
    const QImage picture = const_cast<QToolButton *>(button)->grab().toImage();
    const QColor background = picture.pixelColor(10, 10);
    int rows = 0;
    for (int y = 6; y < 54; ++y) {
        bool drawn = false;
        for (int x = 10; x < picture.width() - 10; ++x)
            drawn = drawn || picture.pixelColor(x, y) != background;
        rows += drawn;
    }
    return rows;
}

QLabel *label(const MainWindow &window, const char *name)
{
    return window.findChild<QLabel *>(QLatin1String(name));
}

QLabel *captionWithText(const MainWindow &window, const char *group, const char *text)
{
    const auto labels =
        window.findChild<QGroupBox *>(QLatin1String(group))->findChildren<QLabel *>();
    for (QLabel *candidate : labels) {
        if (candidate->text() == QLatin1String(text))
            return candidate;
    }
    return nullptr;
}

int stretchOfColumn(const MainWindow &window, const char *group, int column)
{
    return gridOf(window, group)->columnStretch(column);
}

QSplitter *splitter(const MainWindow &window)
{
    return window.findChild<QSplitter *>();
}

} // namespace

class TestLayout : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void window();
    void centralWidgetHoldsNavigationAndContent();
    void header();
    void splitterHoldsPanelAndGroups();
    void leftSide();
    void rightSideKeepsItsWidth_data();
    void rightSideKeepsItsWidth();
    void groupsStandInOrder();
    void groupsKeepTheirGapsBeforeTheyAreShown();
    void navigationColumn();
    void brandLogo();
    void navigationButtons_data();
    void navigationButtons();
    void browseButtonShowsTheOpenFolder();
    void playerStaysChecked();
    void otherPagesAreNotProvided_data();
    void otherPagesAreNotProvided();
    void pageMessageLasts();
    void connectionGroup();
    void longLinkTextDoesNotWidenTheColumn();
    void frameGroup();
    void editorsTakeTheirRanges_data();
    void editorsTakeTheirRanges();
    void statusGroup();
    void logGroup();
    void styleSheetIsTheWindowsOwn();
    void noControlHasTheFocusAtFirst();
    void grey_data();
    void grey();
    void greyIconOfAnUndecodableFile();

private:
    std::unique_ptr<Stage> stage; ///< for the tests that leave the window as it was
};

void TestLayout::initTestCase()
{
    stage = std::make_unique<Stage>();
}

void TestLayout::cleanupTestCase()
{
    stage.reset();
}

void TestLayout::window()
{
    const MainWindow &window = stage->window();
    QCOMPARE(window.windowTitle(), QStringLiteral("Tessaly-Master USB Player V0.3.5"));
    QCOMPARE(window.size(), QSize(1420, 900));
    QCOMPARE(window.minimumSize(), QSize(1220, 780));
    QVERIFY(window.windowIcon().availableSizes().contains(QSize(1254, 1254)));
    QVERIFY(window.windowState() == Qt::WindowNoState);
}

void TestLayout::centralWidgetHoldsNavigationAndContent()
{
    auto *layout = qobject_cast<QHBoxLayout *>(stage->window().centralWidget()->layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->count(), 2);
    QCOMPARE(layout->itemAt(0)->widget()->objectName(), QStringLiteral("navigation"));
    QCOMPARE(layout->stretch(0), 0);
    QCOMPARE(layout->stretch(1), 1);

    auto *content = qobject_cast<QVBoxLayout *>(layout->itemAt(1)->widget()->layout());
    QVERIFY(content);
    QCOMPARE(content->contentsMargins(), QMargins(22, 16, 22, 18));
    QCOMPARE(content->spacing(), 14);
    QCOMPARE(content->count(), 2);
    QCOMPARE(content->stretch(1), 1);
    QCOMPARE(content->itemAt(1)->widget(), splitter(stage->window()));
}

void TestLayout::header()
{
    QWidget *content = stage->window().centralWidget()->layout()->itemAt(1)->widget();
    auto *row = qobject_cast<QHBoxLayout *>(content->layout()->itemAt(0)->layout());
    QVERIFY(row);
    QCOMPARE(row->contentsMargins(), QMargins());
    QCOMPARE(row->count(), 3);
    QCOMPARE(row->itemAt(0)->widget(), label(stage->window(), "windowTitle"));
    QVERIFY(row->itemAt(1)->spacerItem());
    QCOMPARE(row->itemAt(2)->widget(), label(stage->window(), "windowSubtitle"));
}

void TestLayout::splitterHoldsPanelAndGroups()
{
    const QSplitter *split = splitter(stage->window());
    QCOMPARE(split->orientation(), Qt::Horizontal);
    QVERIFY(!split->childrenCollapsible());
    QCOMPARE(split->handleWidth(), 8);
    QCOMPARE(split->count(), 2);
    QCOMPARE(split->widget(0)->sizePolicy().horizontalStretch(), 3);
    QCOMPARE(split->widget(1)->sizePolicy().horizontalStretch(), 2);
    QVERIFY(split->widget(0)->isAncestorOf(stage->hand().panel()));
    QVERIFY(split->widget(1)->isAncestorOf(stage->hand().logView()));
}

void TestLayout::leftSide()
{
    auto *layout = qobject_cast<QVBoxLayout *>(splitter(stage->window())->widget(0)->layout());
    QVERIFY(layout);
    const Qt::Alignment topCentre = Qt::AlignHCenter | Qt::AlignTop;
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->alignment(), topCentre);
    QCOMPARE(layout->count(), 3);
    QCOMPARE(layout->itemAt(0)->widget(), stage->hand().panel());
    QCOMPARE(layout->itemAt(0)->alignment(), topCentre);
    QCOMPARE(layout->itemAt(1)->widget(), label(stage->window(), "hintLabel"));
    QVERIFY(label(stage->window(), "hintLabel")->wordWrap());
    QVERIFY(layout->itemAt(2)->spacerItem());
    QCOMPARE(stage->hand().panel()->objectName(), QStringLiteral("playerMirror"));
}

void TestLayout::rightSideKeepsItsWidth_data()
{
    QTest::addColumn<QSize>("windowSize");
    QTest::addColumn<QList<int>>("sizes");
    QTest::newRow("default window, all to the left") << QSize(1420, 900) << QList<int>{5000, 0};
    QTest::newRow("default window, all to the right") << QSize(1420, 900) << QList<int>{0, 5000};
    QTest::newRow("smallest window, all to the left") << QSize(1220, 780) << QList<int>{5000, 0};
    QTest::newRow("smallest window, all to the right") << QSize(1220, 780) << QList<int>{0, 5000};
    QTest::newRow("large window, all to the right") << QSize(2600, 1200) << QList<int>{0, 5000};
    QTest::newRow("large window, as it comes") << QSize(2600, 1200) << QList<int>{};
}

void TestLayout::rightSideKeepsItsWidth()
{
    QFETCH(const QSize, windowSize);
    QFETCH(const QList<int>, sizes);
    Stage stage;
    stage.window().resize(windowSize);
    if (!sizes.isEmpty())
        splitter(stage.window())->setSizes(sizes);
    QCoreApplication::processEvents();
    const QList<int> now = splitter(stage.window())->sizes();
    QVERIFY2(now.at(1) >= 450 && now.at(1) <= 580, qPrintable(QString::number(now.at(1))));
    QVERIFY(now.at(0) >= qMin(680, windowSize.width() - 614)); // all that is left of the window
}

void TestLayout::groupsStandInOrder()
{
    auto *layout = qobject_cast<QVBoxLayout *>(splitter(stage->window())->widget(1)->layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 10);
    QStringList names;
    QList<int> stretches;
    for (int i = 0; i < layout->count(); ++i) {
        names.append(layout->itemAt(i)->widget()->objectName());
        stretches.append(layout->stretch(i));
    }
    QCOMPARE(names, (QStringList{QStringLiteral("connectionGroup"), QStringLiteral("frameGroup"),
                                 QStringLiteral("deviceStatusGroup"), QStringLiteral("logGroup")}));
    QCOMPARE(stretches, (QList<int>{0, 0, 0, 1}));
}

void TestLayout::groupsKeepTheirGapsBeforeTheyAreShown()
{
    MainWindow window;
    EventCounter requests(splitter(window)->widget(1), QEvent::LayoutRequest);
    QTRY_VERIFY(requests.count > 0);
    QCOMPARE(splitter(window)->widget(1)->layout()->spacing(), 10);
    QCOMPARE(gridOf(window, "deviceStatusGroup")->verticalSpacing(), 6);
}

void TestLayout::navigationColumn()
{
    const auto *navigation = stage->window().findChild<QFrame *>(QStringLiteral("navigation"));
    auto *layout = qobject_cast<QVBoxLayout *>(navigation->layout());
    QCOMPARE(navigation->minimumWidth(), 112);
    QCOMPARE(navigation->maximumWidth(), 112);
    QCOMPARE(layout->contentsMargins(), QMargins(10, 16, 10, 16));
    QCOMPARE(layout->spacing(), 8);
    QStringList names;
    for (int i = 0; i < layout->count(); ++i) {
        const QWidget *widget = layout->itemAt(i)->widget();
        names.append(widget ? widget->objectName() : QStringLiteral("stretch"));
    }
    QCOMPARE(names.join(u' '),
             QStringLiteral("brandLabel navPlayer navMediaBrowse navUFiles navTime navSetup navNet "
                            "navAbout stretch navVersion"));
    QCOMPARE(label(stage->window(), "navVersion")->text(), QStringLiteral("V0.3.5"));
    QCOMPARE(label(stage->window(), "navVersion")->alignment(), Qt::AlignCenter);
}

void TestLayout::brandLogo()
{
    const QLabel *brand = label(stage->window(), "brandLabel");
    QCOMPARE(brand->size(), QSize(92, 72));
    QCOMPARE(brand->alignment(), Qt::AlignCenter);
    QCOMPARE(brand->accessibleName(), QStringLiteral("Corvessa product logo"));
    QCOMPARE(brand->pixmap(Qt::ReturnByValue).deviceIndependentSize(), QSizeF(56, 56));
    QCOMPARE(brand->text(), QString());
}

void TestLayout::navigationButtons_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("image");
    QTest::addColumn<bool>("checked");
    const auto row = [](const char *name, const char *image, bool checked) {
        QTest::newRow(name) << QString::fromLatin1(name)
                            << QStringLiteral(":/assets/") + QLatin1String(image) << checked;
    };
    row("navPlayer", "ico_play_png.png", true);
    row("navUFiles", "ico_u_png.png", false);
    row("navTime", "ico_timer.png", false);
    row("navSetup", "ico_setup.png", false);
    row("navNet", "ico_net.png", false);
    row("navAbout", "about.png", false);
}

void TestLayout::navigationButtons()
{
    QFETCH(const QString, name);
    QFETCH(const QString, image);
    const auto *button = stage->window().findChild<QToolButton *>(name);
    QVERIFY(button->isCheckable());
    QVERIFY(!button->autoExclusive());
    QTEST(button->isChecked(), "checked");
    QCOMPARE(button->size(), QSize(92, 80));
    QCOMPARE(button->iconSize(), QSize(48, 48));
    QCOMPARE(button->toolButtonStyle(), Qt::ToolButtonTextUnderIcon);

    const QImage artwork = QImage(image).convertToFormat(QImage::Format_ARGB32);
    const QImage shown =
        button->icon().pixmap(artwork.size(), 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(shown.size(), artwork.size());
    int opaque = 0;
    for (int y = 0; y < artwork.height(); ++y) {
        for (int x = 0; x < artwork.width(); ++x) {
            const QRgb was = artwork.pixel(x, y);
            const int grey = (11 * qRed(was) + 16 * qGreen(was) + 5 * qBlue(was)) / 32;
            QCOMPARE(qAlpha(shown.pixel(x, y)), qAlpha(was));
            if (qAlpha(was) != 255) // where it is translucent a pixmap rounds the colours
                continue;
            QCOMPARE(QColor(shown.pixel(x, y)), QColor(grey, grey, grey));
            ++opaque;
        }
    }
    QVERIFY(opaque > 100);
}

void TestLayout::browseButtonShowsTheOpenFolder()
{
    const auto *browse = stage->window().findChild<QToolButton *>(QStringLiteral("navMediaBrowse"));
    QVERIFY(!browse->isCheckable());
    QCOMPARE(browse->size(), QSize(92, 80));
    QCOMPARE(browse->iconSize(), QSize(48, 48));
    QCOMPARE(browse->toolButtonStyle(), Qt::ToolButtonTextUnderIcon);

    const QIcon standard = browse->style()->standardIcon(QStyle::SP_DirOpenIcon);
    const QSize small = standard.actualSize(QSize(16, 16));
    QCOMPARE(browse->icon().pixmap(small).toImage(), standard.pixmap(small).toImage());
    QCOMPARE(browse->icon().pixmap(48, 48).toImage(), standard.pixmap(48, 48).toImage());
    // It is shown as large as the others, whose text stands below an icon of 48.
    QVERIFY2(iconHeight(browse) >= 24, qPrintable(QString::number(iconHeight(browse))));
}

void TestLayout::playerStaysChecked()
{
    QAbstractButton *player = stage->hand().navigation("navPlayer");
    stage->hand().click(player);
    QVERIFY(player->isChecked());
    stage->hand().click(player);
    QVERIFY(player->isChecked());
}

void TestLayout::otherPagesAreNotProvided_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("message");
    QTest::newRow("English") << QStringLiteral("en")
                             << QStringLiteral("V0.3.5 currently provides Player USB frame "
                                               "transmission only");
    QTest::newRow("Chinese") << QStringLiteral("zh_CN")
                             << QStringLiteral("V0.3.5 当前只实现 Player USB 播放帧发送");
}

void TestLayout::otherPagesAreNotProvided()
{
    QFETCH(const QString, language);
    QFETCH(const QString, message);
    Stage stage(language);
    const Operator &hand = stage.hand();
    for (const char *name : {"navUFiles", "navTime", "navSetup", "navNet", "navAbout"}) {
        for (int click = 0; click < 2; ++click) {
            stage.window().statusBar()->clearMessage();
            hand.click(hand.navigation(name));
            QVERIFY(hand.navigation("navPlayer")->isChecked());
            QVERIFY(!hand.navigation(name)->isChecked());
            QCOMPARE(hand.statusBar(), message);
        }
    }
}

void TestLayout::pageMessageLasts()
{
    const Operator &hand = stage->hand();
    hand.click(hand.navigation("navTime"));
    QCOMPARE(hand.statusLifetimeMs(), 3500);
    const QString message = hand.statusBar();
    QSignalSpy shown(stage->window().statusBar(), &QStatusBar::messageChanged);
    hand.click(hand.navigation("navTime")); // the second click begins the time anew
    QCOMPARE(shown, (QList<QVariantList>{{QString()}, {message}}));
    QCOMPARE(hand.statusLifetimeMs(), 3500);
    QTRY_COMPARE_WITH_TIMEOUT(hand.statusBar(), QString(), 30000);
}

void TestLayout::connectionGroup()
{
    const MainWindow &window = stage->window();
    const Operator &hand = stage->hand();
    const QGridLayout *grid = gridOf(window, "connectionGroup");
    QCOMPARE(stretchOfColumn(window, "connectionGroup", 1), 1);
    QCOMPARE(cellOf(grid, label(window, "portCaption")), (Cell{0, 0, 1, 1}));
    QCOMPARE(cellOf(grid, hand.ports()), (Cell{0, 1, 1, 2}));
    QCOMPARE(cellOf(grid, hand.refresh()), (Cell{0, 3, 1, 1}));
    QCOMPARE(cellOf(grid, label(window, "hostCaption")), (Cell{1, 0, 1, 1}));
    QCOMPARE(cellOf(grid, hand.hostSettings()), (Cell{1, 1, 1, 1}));
    QCOMPARE(cellOf(grid, hand.connectButton()), (Cell{1, 2, 1, 2}));
    QCOMPARE(cellOf(grid, hand.demo()), (Cell{2, 0, 1, 2}));
    QCOMPARE(cellOf(grid, hand.lamp()), (Cell{2, 2, 1, 2}));
    QCOMPARE(cellOf(grid, hand.linkText()), (Cell{2, 2, 1, 2}));

    QCOMPARE(hand.ports()->sizeAdjustPolicy(), QComboBox::AdjustToMinimumContentsLengthWithIcon);
    QCOMPARE(hand.ports()->minimumContentsLength(), 18);
    QVERIFY(hand.ports()->width() >= hand.ports()->minimumSizeHint().width());
    QCOMPARE(hand.ports()->toolTip(), hand.ports()->currentText());
    QCOMPARE(hand.hostSettings()->count(), 1);
    QCOMPARE(hand.hostSettings()->currentText(), QStringLiteral("115200 / 8N1"));
    QCOMPARE(hand.hostSettings()->currentData(), QVariant(115200));
    QCOMPARE(hand.lamp()->minimumSize(), QSize(12, 12));
    QCOMPARE(hand.lamp()->maximumSize(), QSize(12, 12));
    const auto *row = qobject_cast<QHBoxLayout *>(
        const_cast<QGridLayout *>(grid)->itemAtPosition(2, 2)->layout());
    QCOMPARE(row->contentsMargins(), QMargins());
    QCOMPARE(row->spacing(), 7);
    QCOMPARE(row->indexOf(hand.lamp()), 0);
    QCOMPARE(row->indexOf(hand.linkText()), 1);
}

void TestLayout::longLinkTextDoesNotWidenTheColumn()
{
    Stage stage;
    const int before = splitter(stage.window())->widget(1)->minimumSizeHint().width();
    stage.hand().linkText()->setText(QString(400, u'W'));
    QCoreApplication::processEvents();
    QCOMPARE(splitter(stage.window())->widget(1)->minimumSizeHint().width(), before);
}

void TestLayout::frameGroup()
{
    const MainWindow &window = stage->window();
    const Operator &hand = stage->hand();
    const QGridLayout *grid = gridOf(window, "frameGroup");
    for (int column = 0; column < 8; ++column)
        QCOMPARE(stretchOfColumn(window, "frameGroup", column), column % 2);
    const auto caption = [&window](const char *text) {
        return captionWithText(window, "frameGroup", text);
    };
    QCOMPARE(cellOf(grid, caption("HY")), (Cell{0, 0, 1, 1}));
    QCOMPARE(cellOf(grid, hand.header()), (Cell{0, 1, 1, 1}));
    QCOMPARE(cellOf(grid, caption("Frame")), (Cell{0, 2, 1, 1}));
    QCOMPARE(cellOf(grid, hand.frame()), (Cell{0, 3, 1, 1}));
    QCOMPARE(cellOf(grid, caption("Total")), (Cell{0, 4, 1, 1}));
    QCOMPARE(cellOf(grid, hand.total()), (Cell{0, 5, 1, 3}));
    QCOMPARE(cellOf(grid, caption("R")), (Cell{1, 0, 1, 1}));
    QCOMPARE(cellOf(grid, hand.red()), (Cell{1, 1, 1, 1}));
    QCOMPARE(cellOf(grid, caption("G")), (Cell{1, 2, 1, 1}));
    QCOMPARE(cellOf(grid, hand.green()), (Cell{1, 3, 1, 1}));
    QCOMPARE(cellOf(grid, caption("B")), (Cell{1, 4, 1, 1}));
    QCOMPARE(cellOf(grid, hand.blue()), (Cell{1, 5, 1, 1}));
    QCOMPARE(cellOf(grid, caption("W")), (Cell{1, 6, 1, 1}));
    QCOMPARE(cellOf(grid, hand.white()), (Cell{1, 7, 1, 1}));
    QCOMPARE(cellOf(grid, label(window, "reservedCaption")), (Cell{2, 0, 1, 2}));
    QCOMPARE(cellOf(grid, hand.reserved()), (Cell{2, 2, 1, 6}));
    QCOMPARE(cellOf(grid, label(window, "completeFrameCaption")), (Cell{3, 0, 1, 2}));
    QCOMPARE(cellOf(grid, hand.summary()), (Cell{3, 2, 1, 6}));

    QCOMPARE(hand.reserved()->text(), QStringLiteral("00 00 00 00 00 00"));
    QVERIFY(!hand.reserved()->isReadOnly());
    QVERIFY(hand.summary()->isReadOnly());
}

void TestLayout::editorsTakeTheirRanges_data()
{
    QTest::addColumn<QString>("editor");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("value");
    QTest::newRow("HY") << QStringLiteral("HY") << 255 << 0;
    QTest::newRow("Frame") << QStringLiteral("Frame") << 1800 << 0;
    QTest::newRow("Total") << QStringLiteral("Total") << 65535 << 1800;
    for (const char *level : {"R", "G", "B", "W"})
        QTest::newRow(level) << QString::fromLatin1(level) << 255 << 0;
}

void TestLayout::editorsTakeTheirRanges()
{
    QFETCH(const QString, editor);
    const QLabel *caption =
        captionWithText(stage->window(), "frameGroup", editor.toLatin1().constData());
    const auto *spin = qobject_cast<QSpinBox *>(caption->buddy());
    QVERIFY(spin);
    QCOMPARE(spin->minimum(), 0);
    QTEST(spin->maximum(), "maximum");
    QTEST(spin->value(), "value");
}

void TestLayout::statusGroup()
{
    const MainWindow &window = stage->window();
    const Operator &hand = stage->hand();
    QGridLayout *grid = gridOf(window, "deviceStatusGroup");
    QCOMPARE(grid->columnStretch(1), 1);
    QCOMPARE(grid->horizontalSpacing(), 12);
    QCOMPARE(grid->verticalSpacing(), 6);
    for (int row = 0; row < 7; ++row) {
        const QByteArray name = "statusCaption" + QByteArray::number(row);
        const QLabel *caption = label(window, name.constData());
        QCOMPARE(cellOf(grid, caption), (Cell{row, 0, 1, 1}));
        QCOMPARE(caption->property("captionRole"), QVariant(true));
        const QLabel *value = hand.row(row);
        QCOMPARE(cellOf(grid, value), (Cell{row, 1, 1, 1}));
        QVERIFY(value->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
    }
    QCOMPARE(hand.row(0)->text(), QStringLiteral("USB Serial/JTAG"));
    QCOMPARE(cellOf(grid, hand.stopZero()), (Cell{7, 0, 1, 1}));
    QCOMPARE(cellOf(grid, hand.sendFrame()), (Cell{7, 1, 1, 1}));
    QCOMPARE(cellOf(grid, hand.handshakeAgain()), (Cell{8, 0, 1, 2}));
}

void TestLayout::logGroup()
{
    const Operator &hand = stage->hand();
    auto *layout = qobject_cast<QVBoxLayout *>(
        stage->window().findChild<QGroupBox *>(QStringLiteral("logGroup"))->layout());
    QVERIFY(layout);
    QCOMPARE(layout->count(), 2);
    QCOMPARE(layout->itemAt(0)->widget(), hand.logView());
    QCOMPARE(layout->stretch(0), 1);
    QVERIFY(hand.logView()->isReadOnly());
    QCOMPARE(hand.logView()->maximumBlockCount(), 3000);
    auto *row = qobject_cast<QHBoxLayout *>(layout->itemAt(1)->layout());
    QVERIFY(row);
    QCOMPARE(row->itemAt(0)->widget(), hand.manual());
    QCOMPARE(row->stretch(0), 1);
    QCOMPARE(row->itemAt(1)->widget(), hand.sendHex());
    QCOMPARE(row->itemAt(2)->widget(), hand.clearLog());
}

void TestLayout::styleSheetIsTheWindowsOwn()
{
    const QString sheet = stage->window().styleSheet();
    QVERIFY(qApp->styleSheet().isEmpty());
    QWidget other;
    stage->window().applyApplicationStyle(&other);
    QCOMPARE(other.styleSheet(), sheet);
}

void TestLayout::noControlHasTheFocusAtFirst()
{
    Stage stage;
    QVERIFY(QTest::qWaitForWindowActive(&stage.window()));
    QCOMPARE(stage.window().focusWidget(), stage.window().centralWidget());
    QTest::keyClick(stage.window().focusWidget(), Qt::Key_Tab);
    QCOMPARE(stage.window().focusWidget(), stage.hand().navigation("navPlayer"));
}

void TestLayout::grey_data()
{
    QTest::addColumn<QRgb>("pixel");
    QTest::addColumn<QRgb>("grey");
    QTest::newRow("black") << qRgba(0, 0, 0, 255) << qRgba(0, 0, 0, 255);
    QTest::newRow("white") << qRgba(255, 255, 255, 255) << qRgba(255, 255, 255, 255);
    QTest::newRow("red") << qRgba(255, 0, 0, 255) << qRgba(87, 87, 87, 255);
    QTest::newRow("green") << qRgba(0, 255, 0, 255) << qRgba(127, 127, 127, 255);
    QTest::newRow("blue") << qRgba(0, 0, 255, 255) << qRgba(39, 39, 39, 255);
    QTest::newRow("rounded down") << qRgba(1, 1, 0, 255) << qRgba(0, 0, 0, 255);
    QTest::newRow("translucent") << qRgba(20, 121, 232, 77) << qRgba(103, 103, 103, 77);
    QTest::newRow("transparent") << qRgba(20, 121, 232, 0) << qRgba(103, 103, 103, 0);
}

void TestLayout::grey()
{
    QFETCH(const QRgb, pixel);
    QImage image(3, 2, QImage::Format_ARGB32);
    image.fill(pixel);
    const QImage result = qx::greyed(image);
    QCOMPARE(result.size(), image.size());
    QCOMPARE(result.format(), QImage::Format_ARGB32);
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 3; ++x)
            QTEST(reinterpret_cast<const QRgb *>(result.constScanLine(y))[x], "grey");
    }
}

void TestLayout::greyIconOfAnUndecodableFile()
{
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("broken.png"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("no image");
    file.close();
    for (const QString &each : {path, directory.filePath(QStringLiteral("missing.png"))}) {
        const QIcon plain(each);
        const QIcon icon = qx::greyIcon(each);
        QCOMPARE(icon.isNull(), plain.isNull());
        QCOMPARE(icon.availableSizes(), plain.availableSizes());
    }
}

QTEST_MAIN(TestLayout)
#include "tst_layout.moc"
