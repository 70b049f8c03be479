// SPDX-License-Identifier: MIT
// What the operator sees, in both languages: checked where it can be computed, and left as
// pictures in a folder beside this program for a person to look at.
#include "i18n/language.h"
#include "tests/support/eventcounter.h"
#include "tests/support/stage.h"

#include <QApplication>
#include <QDir>
#include <QGridLayout>
#include <QGroupBox>
#include <QStatusBar>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QTest>
#include <QToolButton>

#include <memory>

using qx::Language;
using qx::MainWindow;
using qx::PlaybackState;
using qx::TransportButton;
using qx::UiLanguage;
using qx::UiText;
using qx::test::EventCounter;
using qx::test::Operator;
using qx::test::Stage;

namespace {

const QColor groupSurface(0x191c1f);

QString codeOf(UiLanguage language)
{
    return Language::code(language);
}

void addLanguages()
{
    QTest::addColumn<UiLanguage>("language");
    QTest::newRow("English") << UiLanguage::English;
    QTest::newRow("Chinese") << UiLanguage::Chinese;
}

QString shown(const QWidget *widget)
{
    return QLatin1String(widget->metaObject()->className()) + u' ' + widget->objectName();
}

// How much room the text of a widget has and needs, in pixels.
struct Room
{
    QString text;
    int has = 0;
    int needs = 0;
};

int widthOf(const QWidget *widget, QString text)
{
    return widget->fontMetrics().horizontalAdvance(
        text.replace(QLatin1String("&&"), QLatin1String("&")));
}

int contentsWidth(const QPushButton *button)
{
    QStyleOptionButton option;
    option.initFrom(button);
    return button->style()->subElementRect(QStyle::SE_PushButtonContents, &option, button).width();
}

int contentsWidth(const QLineEdit *edit)
{
    QStyleOptionFrame option;
    option.initFrom(edit);
    return edit->style()->subElementRect(QStyle::SE_LineEditContents, &option, edit).width();
}

// All texts that have to fit on one line where they stand.
QList<Room> roomsOf(const QWidget *root)
{
    QList<Room> rooms;
    const auto labels = root->findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        if (!label->text().isEmpty() && !label->wordWrap())
            rooms.append(
                {label->text(), label->contentsRect().width(), widthOf(label, label->text())});
    }
    const auto buttons = root->findChildren<QPushButton *>();
    for (const QPushButton *button : buttons)
        rooms.append({button->text(), contentsWidth(button), widthOf(button, button->text())});
    const auto tools = root->findChildren<QToolButton *>();
    for (const QToolButton *tool : tools) {
        if (!tool->text().isEmpty())
            rooms.append({tool->text(), tool->width() - 2 * 6,
                          widthOf(tool, tool->text())}); // padding and border
    }
    const auto edits = root->findChildren<QLineEdit *>();
    for (const QLineEdit *edit : edits) {
        for (const QString &text : {edit->text(), edit->placeholderText()})
            rooms.append({text, contentsWidth(edit), widthOf(edit, text)});
    }
    const auto boxes = root->findChildren<QGroupBox *>();
    for (const QGroupBox *box : boxes)
        rooms.append({box->title(), box->width() - 2 * 18, widthOf(box, box->title())}); // 12 + 6
    const auto checks = root->findChildren<QCheckBox *>();
    for (const QCheckBox *check : checks)
        rooms.append({check->text(), check->width(), check->sizeHint().width()});
    return rooms;
}

QStringList cutTexts(const QWidget *root)
{
    QStringList cut;
    const QList<Room> rooms = roomsOf(root);
    for (const Room &room : rooms) {
        if (room.needs > room.has)
            cut.append(QStringLiteral("%1 (%2 of %3)")
                           .arg(room.text, QString::number(room.has), QString::number(room.needs)));
    }
    return cut;
}

// Widgets that are shown lower than they need to be.
QStringList crushed(const QWidget *root)
{
    QStringList found;
    const auto widgets = root->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const bool hasText = qobject_cast<const QLabel *>(widget) ||
                             qobject_cast<const QAbstractButton *>(widget) ||
                             qobject_cast<const QLineEdit *>(widget) ||
                             qobject_cast<const QAbstractSpinBox *>(widget) ||
                             qobject_cast<const QComboBox *>(widget);
        const bool fixed = widget->minimumHeight() == widget->maximumHeight();
        if (hasText && !fixed && widget->isVisible() &&
            widget->height() < widget->minimumSizeHint().height())
            found.append(shown(widget) + QStringLiteral(" %1 of %2")
                                             .arg(widget->height())
                                             .arg(widget->minimumSizeHint().height()));
    }
    return found;
}

// Pairs of siblings that lie over each other.
QStringList overlaps(const QWidget *parent)
{
    QStringList found;
    QWidgetList children = parent->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (qsizetype i = 0; i < children.size(); ++i) {
        for (qsizetype j = i + 1; j < children.size(); ++j) {
            if (children.at(i)->isVisible() && children.at(j)->isVisible() &&
                children.at(i)->geometry().intersects(children.at(j)->geometry()))
                found.append(shown(children.at(i)) + QStringLiteral(" and ") +
                             shown(children.at(j)));
        }
    }
    return found;
}

// Where the text of one of the panel's labels lies.
QRect textRect(const QLabel *label)
{
    const QRect inside =
        label->style()->itemTextRect(label->fontMetrics(), label->rect(),
                                     static_cast<int>(label->alignment()), true, label->text());
    return inside.translated(label->pos());
}

QImage pictureOf(QWidget *widget)
{
    return widget->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

int pixelsOf(const QImage &image, const QColor &color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
}

} // namespace

class TestPictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { stage = nullptr; }

    void nothingIsCut_data() { addLanguages(); }
    void nothingIsCut();
    void linkTextsAreNotCut_data() { addLanguages(); }
    void linkTextsAreNotCut();
    void largestNumbersAreNotCut_data() { addLanguages(); }
    void largestNumbersAreNotCut();
    void statesOfThePanelAreNotCut_data() { addLanguages(); }
    void statesOfThePanelAreNotCut();
    void nothingIsCrushed_data() { addLanguages(); }
    void nothingIsCrushed();
    void smallestWindowCrushesNothing_data() { addLanguages(); }
    void smallestWindowCrushesNothing();
    void windowComesToRestAtEveryHeight_data() { addLanguages(); }
    void windowComesToRestAtEveryHeight();
    void nothingOverlaps_data() { addLanguages(); }
    void nothingOverlaps();
    void textsOfThePanelDoNotTouch_data() { addLanguages(); }
    void textsOfThePanelDoNotTouch();
    void hintIsWhole_data() { addLanguages(); }
    void hintIsWhole();

    void controlsShowTheSurfaceBehindThem();
    void valuesHaveTheirColours();
    void disabledLooksDisabled();
    void focusIsSeen();
    void arrowsOfTheBoxesAreSeen();
    void cornerOfTheStatusBarIsNotPatched();
    void pictures_data() { addLanguages(); }
    void pictures();
    void picturesOfThePaintedControls();

private:
    void begin(UiLanguage language);
    void save(const QString &name, QWidget *widget) const;

    std::unique_ptr<Stage> stage;
    QDir folder;
};

void TestPictures::initTestCase()
{
    qx::test::takeFont();
    folder = QDir(QCoreApplication::applicationDirPath());
    QVERIFY(folder.mkpath(QStringLiteral("pictures")) && folder.cd(QStringLiteral("pictures")));
}

void TestPictures::begin(UiLanguage language)
{
    stage = std::make_unique<Stage>(codeOf(language));
    QVERIFY(QTest::qWaitForWindowActive(&stage->window()));
    QCOMPARE(stage->window().size(), QSize(1420, 900));
}

void TestPictures::save(const QString &name, QWidget *widget) const
{
    QCoreApplication::processEvents();
    QVERIFY(widget->grab().save(folder.filePath(name + QStringLiteral(".png"))));
}

void TestPictures::nothingIsCut()
{
    QFETCH(const UiLanguage, language);
    begin(language);
    QCOMPARE(cutTexts(stage->window().centralWidget()), QStringList());
    stage->hand().setDemo(false);
    QCoreApplication::processEvents();
    QCOMPARE(cutTexts(stage->window().centralWidget()), QStringList());
}

void TestPictures::linkTextsAreNotCut()
{
    QFETCH(const UiLanguage, language);
    begin(language);
    stage->hand().setDemo(false);
    QStringList texts;
    for (const UiText text :
         {UiText::Disconnected, UiText::SerialOpenWaitingHandshake, UiText::Handshaking,
          UiText::HandshakeComplete, UiText::NotHandshaken, UiText::OfflineDemo})
        texts.append(Language::text(text));
    texts.append(Language::text(UiText::HandshakingAttempt).arg(99999));
    QLabel *label = stage->hand().linkText();
    for (const UiText button : {UiText::ConnectHandshakeButton, UiText::DisconnectButton}) {
        stage->hand().connectButton()->setText(Language::text(button));
        for (const QString &text : texts) {
            label->setText(text);
            QCoreApplication::processEvents();
            QVERIFY2(label->width() >= widthOf(label, text), qPrintable(text));
            QCOMPARE(cutTexts(label->parentWidget()), QStringList());
        }
    }
}

void TestPictures::largestNumbersAreNotCut()
{
    QFETCH(const UiLanguage, language);
    begin(language);
    const Operator &hand = stage->hand();
    hand.click(hand.play());
    hand.click(hand.pause());
    hand.type(hand.header(), 255);
    hand.type(hand.total(), 65535);
    hand.type(hand.frame(), 65535);
    for (QSpinBox *spin : {hand.red(), hand.green(), hand.blue(), hand.white()})
        hand.type(spin, 255);
    hand.panel()->setIntervalMs(150);
    hand.panel()->setConnected(true, QStringLiteral("cu.usbmodem14201"));
    QCoreApplication::processEvents();
    QCOMPARE(hand.summary()->text(),
             QStringLiteral("HY: 255  Frame: 65535  R: 255  G: 255  B: 255  W: 255"));
    QCOMPARE(cutTexts(stage->window().centralWidget()), QStringList());
    for (const QSpinBox *spin : {hand.header(), hand.frame(), hand.total(), hand.red(),
                                 hand.green(), hand.blue(), hand.white()}) {
        const auto *edit = spin->findChild<QLineEdit *>();
        QVERIFY2(contentsWidth(edit) >= widthOf(edit, QString::number(spin->maximum())),
                 qPrintable(spin->accessibleName()));
    }
    save(codeOf(language) + QStringLiteral("-largest"), &stage->window());
}

void TestPictures::statesOfThePanelAreNotCut()
{
    QFETCH(const UiLanguage, language);
    begin(language);
    const Operator &hand = stage->hand();
    for (const int state : {0, 1, 2, 3}) {
        hand.panel()->setPlaybackState(static_cast<PlaybackState>(state));
        for (const UiText text : {UiText::Connected, UiText::NotConnected, UiText::Handshaking,
                                  UiText::NotHandshaken}) {
            hand.panel()->setConnected(false, Language::text(text));
            for (const int file : {0, 255, 9999}) {
                hand.panel()->setFileCount(0);
                hand.panel()->setFileIndex(file, QString());
                QCOMPARE(cutTexts(hand.panel()), QStringList());
            }
        }
    }
}

void TestPictures::nothingIsCrushed()
{
    QFETCH(const UiLanguage, language);
    begin(language);
    const QStringList list = crushed(stage->window().centralWidget());
    QVERIFY2(list.isEmpty(), qPrintable(list.join(u'\n')));
    QVERIFY(stage->hand().logView()->height() >= 40);
}

void TestPictures::smallestWindowCrushesNothing()
{
    QFETCH(const UiLanguage, language);
    begin(language);
    const auto gaps = [this] {
        QString text;
        const auto grids = stage->hand().logView()->window()->findChildren<QGridLayout *>();
        for (const QGridLayout *grid : grids)
            text += QString::number(grid->verticalSpacing()) + u' ';
        return text;
    };
    const QString usual = gaps();
    stage->window().resize(stage->window().minimumSize());
    QTRY_VERIFY(gaps() != usual);
    QTRY_VERIFY2(crushed(stage->window().centralWidget()).isEmpty(),
                 qPrintable(crushed(stage->window().centralWidget()).join(u'\n')));
    QVERIFY(stage->hand().logView()->height() >= 40);
    save(codeOf(language) + QStringLiteral("-smallest"), &stage->window());

    stage->window().setLanguage(language == UiLanguage::Chinese ? UiLanguage::English
                                                                : UiLanguage::Chinese);
    QTRY_VERIFY2(crushed(stage->window().centralWidget()).isEmpty(),
                 qPrintable(crushed(stage->window().centralWidget()).join(u'\n')));
    stage->window().resize(1420, 900);
    QTRY_COMPARE(gaps(), usual);
}

void TestPictures::windowComesToRestAtEveryHeight()
{
    QFETCH(const UiLanguage, language);
    begin(language);
    MainWindow &window = stage->window();
    EventCounter requests(window.findChild<QGroupBox *>(QStringLiteral("logGroup"))->parentWidget(),
                          QEvent::LayoutRequest);
    const auto comesToRest = [&](int height) {
        window.resize(1420, height);
        int rounds = 0;
        do {
            requests.count = 0;
            QCoreApplication::processEvents();
        } while (requests.count > 0 && ++rounds < 50);
        return rounds < 50;
    };
    for (int height = window.minimumHeight(); height <= 900; ++height) {
        QVERIFY(comesToRest(900)); // each is reached in one go
        QVERIFY2(comesToRest(height), qPrintable(QString::number(height)));
        const QStringList list = crushed(window.centralWidget());
        QVERIFY2(list.isEmpty(), qPrintable(QString::number(height) + u' ' + list.join(u'\n')));
    }
}

void TestPictures::nothingOverlaps()
{
    QFETCH(const UiLanguage, language);
    begin(language);
    for (const char *name : {"connectionGroup", "frameGroup", "deviceStatusGroup", "logGroup"}) {
        const auto *group = stage->window().findChild<QGroupBox *>(QLatin1String(name));
        QCOMPARE(overlaps(group), QStringList());
        const auto children = group->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        for (const QWidget *child : children)
            QVERIFY2(group->rect().contains(child->geometry()), qPrintable(shown(child)));
    }
    QCOMPARE(overlaps(stage->window().findChild<QFrame *>(QStringLiteral("navigation"))),
             QStringList());
    QCOMPARE(overlaps(stage->hand().connectButton()->parentWidget()->parentWidget()),
             QStringList());
    QCOMPARE(overlaps(stage->hand().panel()->parentWidget()), QStringList());
}

void TestPictures::textsOfThePanelDoNotTouch()
{
    QFETCH(const UiLanguage, language);
    begin(language);
    const Operator &hand = stage->hand();
    hand.panel()->setFileCount(10000);
    hand.panel()->setTotalFrames(65535);
    hand.panel()->setCurrentFrame(65535);
    hand.panel()->setFileIndex(9999, QString());
    for (const int ms : {30, 50, 101, 150}) {
        hand.panel()->setIntervalMs(ms);
        const auto labels = hand.panel()->findChildren<QLabel *>();
        for (const QLabel *one : labels) {
            for (const QLabel *other : labels) {
                QVERIFY2(one == other || !textRect(one).intersects(textRect(other)),
                         qPrintable(one->text() + QStringLiteral(" over ") + other->text()));
            }
            for (const QWidget *control :
                 {static_cast<QWidget *>(hand.replay()), static_cast<QWidget *>(hand.increase()),
                  static_cast<QWidget *>(hand.decrease())})
                QVERIFY2(!textRect(one).intersects(control->geometry()), qPrintable(one->text()));
        }
    }
}

void TestPictures::hintIsWhole()
{
    QFETCH(const UiLanguage, language);
    begin(language);
    const auto *hint = stage->window().findChild<QLabel *>(QStringLiteral("hintLabel"));
    QVERIFY(hint->height() >= hint->heightForWidth(hint->width()));
}

void TestPictures::controlsShowTheSurfaceBehindThem()
{
    begin(UiLanguage::English);
    const Operator &hand = stage->hand();
    QWidgetList transparent = {
        hand.demo(),  hand.linkText(), hand.seekSlider(), hand.timeSlider(), hand.stop(),
        hand.pause(), hand.play(),     hand.increase(),   hand.decrease(),   hand.replay()};
    const auto labels =
        hand.connectButton()->parentWidget()->parentWidget()->findChildren<QLabel *>();
    for (QLabel *label : labels) {
        if (label != hand.lamp())
            transparent.append(label);
    }
    const QImage window = pictureOf(&stage->window());
    for (const QWidget *widget : transparent) {
        const QPoint corner = widget->mapTo(&stage->window(), widget->rect().topRight());
        QVERIFY2(window.pixelColor(corner) == groupSurface, qPrintable(shown(widget)));
    }
    // Around the lamp, which is round.
    const QPoint lamp = hand.lamp()->mapTo(&stage->window(), QPoint());
    QCOMPARE(window.pixelColor(lamp), groupSurface);
    QCOMPARE(window.pixelColor(lamp + QPoint(6, 6)), QColor(0x1479e8));
}

void TestPictures::valuesHaveTheirColours()
{
    begin(UiLanguage::English);
    const Operator &hand = stage->hand();
    const auto *caption = stage->window().findChild<QLabel *>(QStringLiteral("statusCaption0"));
    const auto *title = stage->window().findChild<QLabel *>(QStringLiteral("windowTitle"));
    const auto *subtitle = stage->window().findChild<QLabel *>(QStringLiteral("windowSubtitle"));
    const auto *version = stage->window().findChild<QLabel *>(QStringLiteral("navVersion"));
    const QList<std::pair<const QWidget *, QColor>> expected = {
        {hand.row(0), QColor(0xf1f3f5)}, {hand.row(6), QColor(0xf1f3f5)},
        {caption, QColor(0x747a7e)},     {title, QColor(0xf1f3f5)},
        {subtitle, QColor(0xa8adb0)},    {version, QColor(0x747a7e)},
        {hand.demo(), QColor(0xa8adb0)}, {hand.panelConnection(), QColor(0x78b8ff)},
    };
    for (const auto &[widget, color] : expected) {
        QVERIFY2(pixelsOf(pictureOf(const_cast<QWidget *>(widget)), color) > 5,
                 qPrintable(shown(widget)));
    }
    QCOMPARE(hand.row(0)->font().weight(), QFont::DemiBold);
    QCOMPARE(title->font().pixelSize(), 24);
    QCOMPARE(subtitle->font().pixelSize(), 12);
}

void TestPictures::disabledLooksDisabled()
{
    begin(UiLanguage::English); // in demo mode
    const Operator &hand = stage->hand();
    const QList<QWidget *> controls = {hand.ports(), hand.refresh(), hand.hostSettings(),
                                       hand.connectButton()};
    QList<QImage> disabled;
    for (QWidget *control : controls) {
        QVERIFY(!control->isEnabled());
        disabled.append(pictureOf(control));
        QCOMPARE(disabled.last().pixelColor(6, 6), groupSurface);
        QCOMPARE(pixelsOf(disabled.last(), QColor(0xf1f3f5)), 0);
    }
    hand.setDemo(false);
    QCoreApplication::processEvents();
    for (qsizetype i = 0; i < controls.size(); ++i)
        QVERIFY(pictureOf(controls.at(i)).pixelColor(6, 6) != groupSurface);
}

void TestPictures::focusIsSeen()
{
    begin(UiLanguage::English);
    const Operator &hand = stage->hand();
    hand.setDemo(false);
    const QWidgetList controls = {hand.navigation("navPlayer"),
                                  hand.navigation("navMediaBrowse"),
                                  hand.navigation("navTime"),
                                  hand.replay(),
                                  hand.stop(),
                                  hand.pause(),
                                  hand.play(),
                                  hand.increase(),
                                  hand.decrease(),
                                  hand.seekSlider(),
                                  hand.timeSlider(),
                                  hand.ports(),
                                  hand.refresh(),
                                  hand.hostSettings(),
                                  hand.connectButton(),
                                  hand.demo(),
                                  hand.header(),
                                  hand.reserved(),
                                  hand.summary(),
                                  hand.stopZero(),
                                  hand.sendFrame(),
                                  hand.handshakeAgain(),
                                  hand.logView(),
                                  hand.manual(),
                                  hand.sendHex(),
                                  hand.clearLog()};
    for (QWidget *control : controls) {
        stage->window().centralWidget()->setFocus();
        const QImage without = pictureOf(control);
        control->setFocus(Qt::TabFocusReason);
        if (auto *edit = control->findChild<QLineEdit *>())
            edit->deselect(); // the border alone must tell
        const QImage with = pictureOf(control);
        int different = 0;
        for (int x = 0; x < with.width(); ++x) {
            for (int y = 0; y < with.height(); ++y)
                different += with.pixel(x, y) != without.pixel(x, y) ? 1 : 0;
        }
        QVERIFY2(different >= 40, qPrintable(shown(control) + QString::number(different)));
    }
}

void TestPictures::arrowsOfTheBoxesAreSeen()
{
    begin(UiLanguage::English);
    const Operator &hand = stage->hand();
    hand.setDemo(false);
    hand.type(hand.red(), 7); // so that both ways are open
    const QColor arrow(0xa8adb0);
    for (QWidget *box :
         {static_cast<QWidget *>(hand.red()), static_cast<QWidget *>(hand.hostSettings())}) {
        const QImage image = pictureOf(box);
        const QImage right = image.copy(box->width() - 22, 0, 22, box->height());
        QVERIFY2(pixelsOf(right, arrow) >= 10, qPrintable(shown(box)));
    }
    const QImage all = pictureOf(hand.red());
    const QRect top(all.width() - 22, 0, 22, all.height() / 2);
    QVERIFY(pixelsOf(all.copy(top), arrow) >= 8);
    QVERIFY(pixelsOf(all.copy(top.translated(0, all.height() / 2)), arrow) >= 8);
    hand.type(hand.red(), 255);
    QCOMPARE(pixelsOf(pictureOf(hand.red()).copy(top), arrow), 0); // no way up
    hand.setDemo(true);
    QCOMPARE(pixelsOf(pictureOf(hand.hostSettings()), arrow), 0);
}

void TestPictures::cornerOfTheStatusBarIsNotPatched()
{
    begin(UiLanguage::English);
    QStatusBar *bar = stage->window().statusBar();
    const QImage image = pictureOf(bar);
    for (int x = bar->width() - 30; x < bar->width() - 16; ++x)
        QCOMPARE(image.pixelColor(x, bar->height() - 3), QColor(0x0d0f10));
    QCOMPARE(image.pixelColor(bar->width() - 15, 4), QColor(0x0d0f10));
}

void TestPictures::pictures()
{
    QFETCH(const UiLanguage, language);
    begin(language);
    const Operator &hand = stage->hand();
    const QString code = codeOf(language);
    save(code + QStringLiteral("-demo"), &stage->window());
    hand.click(hand.play());
    save(code + QStringLiteral("-playing"), &stage->window());
    hand.click(hand.pause());
    hand.click(hand.replay());
    save(code + QStringLiteral("-paused"), &stage->window());
    hand.click(hand.stop());
    hand.type(hand.reserved(), QStringLiteral("no"));
    save(code + QStringLiteral("-reserved-wrong"), &stage->window());
    hand.setDemo(false);
    save(code + QStringLiteral("-disconnected"), &stage->window());
    QVERIFY(stage->connectPlayer());
    save(code + QStringLiteral("-connected"), &stage->window());
}

void TestPictures::picturesOfThePaintedControls()
{
    begin(UiLanguage::English);
    const QList<QAbstractButton *> buttons = {stage->hand().replay(),   stage->hand().stop(),
                                              stage->hand().pause(),    stage->hand().play(),
                                              stage->hand().increase(), stage->hand().decrease()};
    for (QAbstractButton *button : buttons) {
        const QString name = button->accessibleName();
        const QImage plain = pictureOf(button);
        save(name, button);
        button->setFocus();
        save(name + QStringLiteral("-focus"), button);
        QVERIFY(pictureOf(button) != plain);
        stage->window().centralWidget()->setFocus();
        button->setAttribute(Qt::WA_UnderMouse);
        save(name + QStringLiteral("-hover"), button);
        button->setAttribute(Qt::WA_UnderMouse, false);
        button->setDown(true);
        save(name + QStringLiteral("-pressed"), button);
        button->setDown(false);
        if (!button->isCheckable())
            continue;
        button->setChecked(true);
        save(name + QStringLiteral("-checked"), button);
        QVERIFY(pictureOf(button) != plain);
    }
}

QTEST_MAIN(TestPictures)
#include "tst_pictures.moc"
