// SPDX-License-Identifier: MIT
#include "i18n/language.h"
#include "tests/widgets/magnified.h"
#include "widgets/transportbutton.h"

#include <QPainterPath>
#include <QSignalSpy>
#include <QTest>

using qx::Language;
using qx::TransportButton;
using qx::UiLanguage;
using qx::test::Magnified;
using Kind = qx::TransportButton::Kind;

Q_DECLARE_METATYPE(qx::TransportButton::Kind)

namespace {

const QColor focusColor(0x2994ff);

struct Look
{
    const char *name;
    Kind kind;
    QRgb top, bottom, border, symbol;
    double radius;
};

const Look looks[] = {
    {"Play", Kind::Play, 0x2994ff, 0x1479e8, 0x2994ff, 0xf1f3f5, 18},
    {"Pause", Kind::Pause, 0xc4c7c8, 0x93999d, 0xa8adb0, 0x1a1c1e, 18},
    {"Stop", Kind::Stop, 0x2a2e32, 0x191c1f, 0x3b4045, 0xf1f3f5, 18},
    {"Home", Kind::Home, 0x34393e, 0x202428, 0x3b4045, 0xf1f3f5, 18},
    {"Increase", Kind::Increase, 0x34393e, 0x202428, 0x3b4045, 0xf1f3f5, 14},
    {"Decrease", Kind::Decrease, 0x34393e, 0x202428, 0x3b4045, 0xf1f3f5, 14},
    {"Query status", Kind::QueryStatus, 0x34393e, 0x202428, 0x3b4045, 0xf1f3f5, 18},
};

void addLooks()
{
    QTest::addColumn<Look>("look");
    for (const Look &look : looks)
        QTest::newRow(look.name) << look;
}

QColor mixed(const QColor &top, const QColor &bottom, double share)
{
    const auto mix = [share](int a, int b) { return qRound(a + (b - a) * share); };
    return {mix(top.red(), bottom.red()), mix(top.green(), bottom.green()),
            mix(top.blue(), bottom.blue())};
}

// The body's fill left of the symbol, near the top, in the middle and near the bottom.
bool bodyShades(const Magnified &picture, const QSize &size, const QColor &top,
                const QColor &bottom)
{
    const double height = size.height() - 4;
    for (const double share : {0.3, 0.5, 0.7}) {
        if (!picture.shows({8, 2 + height * share}, mixed(top, bottom, share)))
            return false;
    }
    return true;
}

// The shapes of the symbols in a rectangle around the origin.
QPainterPath polygon(std::initializer_list<QPointF> points, double w, double h)
{
    QPolygonF scaled;
    for (const QPointF &point : points)
        scaled << QPointF(point.x() * w, point.y() * h);
    QPainterPath path;
    path.addPolygon(scaled);
    path.closeSubpath();
    return path;
}

QPainterPath rounded(const QRectF &rect, double radius)
{
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

QList<QPainterPath> homeShapes(double w, double h)
{
    const QPainterPath roof = polygon({{-0.34, -0.02}, {0, -0.34}, {0.34, -0.02}}, w, h);
    const QPainterPath body = rounded({-0.26 * w, -0.02 * h, 0.52 * w, 0.38 * h}, 4);
    QPainterPath door;
    door.addRect(-0.06 * w, 0.14 * h, 0.12 * w, 0.22 * h);
    return {roof, body - door};
}

QPainterPath arrowShape(double w, double h, double sign)
{
    const double s = sign;
    return polygon({{0, 0.3 * s},
                    {-0.33, -0.15 * s},
                    {-0.13, -0.15 * s},
                    {-0.13, -0.34 * s},
                    {0.13, -0.34 * s},
                    {0.13, -0.15 * s},
                    {0.33, -0.15 * s}},
                   w, h);
}

QList<QPainterPath> circularArrowShapes(double w, double h)
{
    const QRectF circle(-0.28 * w, -0.28 * h, 0.56 * w, 0.56 * h);
    QPainterPath arc;
    arc.arcMoveTo(circle, 35);
    arc.arcTo(circle, 35, 285);
    QPainterPathStroker pen;
    pen.setWidth(qMax(0.08 * w, 3.0));
    pen.setCapStyle(Qt::RoundCap);
    return {pen.createStroke(arc), polygon({{0.3, -0.12}, {0.09, -0.17}, {0.22, 0.01}}, w, h)};
}

QList<QPainterPath> shapesOf(Kind kind, double w, double h)
{
    switch (kind) {
    case Kind::Play:
        return {polygon({{-0.2, -0.31}, {-0.2, 0.31}, {0.3, 0}}, w, h)};
    case Kind::Pause: {
        const double bar = 0.17 * w;
        return {rounded({-0.28 * w, -0.31 * h, bar, 0.62 * h}, 0.18 * bar),
                rounded({0.11 * w, -0.31 * h, bar, 0.62 * h}, 0.18 * bar)};
    }
    case Kind::Stop: {
        const double side = 0.52 * qMin(w, h);
        return {rounded({-side / 2, -side / 2, side, side}, 0.08 * side)};
    }
    case Kind::Home:
        return homeShapes(w, h);
    case Kind::Increase:
        return {arrowShape(w, h, -1)};
    case Kind::Decrease:
        return {arrowShape(w, h, +1)};
    case Kind::QueryStatus:
        return circularArrowShapes(w, h);
    }
    return {};
}

enum class Place { Inside, Outside, AtAnEdge };

Place placeOf(const QPainterPath &shape, QPointF point)
{
    constexpr double blur = 0.2; // more than one pixel of the magnified picture
    int inside = 0;
    int asked = 0;
    for (const double dx : {-blur, 0.0, blur}) {
        for (const double dy : {-blur, 0.0, blur}) {
            inside += shape.contains(point + QPointF(dx, dy)) ? 1 : 0;
            ++asked;
        }
    }
    return inside == asked ? Place::Inside : inside == 0 ? Place::Outside : Place::AtAnEdge;
}

Place placeOf(const QList<QPainterPath> &shapes, QPointF point)
{
    Place place = Place::Outside;
    for (const QPainterPath &shape : shapes) {
        const Place here = placeOf(shape, point);
        if (here == Place::AtAnEdge)
            return here;
        if (here == Place::Inside)
            place = here;
    }
    return place;
}

} // namespace

class TestTransportButton : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { Language::setCurrent(UiLanguage::Chinese); }
    void textsAndSize_data();
    void textsAndSize();
    void languageChangeTakesEffectWhenRetranslated();
    void toolTipOfTheFileButtonsIsEmptied();
    void unknownKindHasNoTextsAndNoSymbol();
    void isMadeForHandAndKeyboard();
    void mouseAndSpaceClickIt();
    void bodyIsShadedFromTopToBottom_data() { addLooks(); }
    void bodyIsShadedFromTopToBottom();
    void pressedIsDarker_data() { addLooks(); }
    void pressedIsDarker();
    void underTheMouseIsLighter_data() { addLooks(); }
    void underTheMouseIsLighter();
    void pressedUnderTheMouseIsDarker();
    void cornersAreRound_data() { addLooks(); }
    void cornersAreRound();
    void symbolHasItsShape_data();
    void symbolHasItsShape();
    void doorOfTheHouseIsDark();
    void focusIsShown_data() { addLooks(); }
    void focusIsShown();
};

Q_DECLARE_METATYPE(Look)

void TestTransportButton::textsAndSize_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<UiLanguage>("language");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("size");
    const auto row = [](Kind kind, const char *toolTip, const char *toolTipZh, const char *name,
                        const char *nameZh, QSize size) {
        QTest::addRow("%s, English", name)
            << kind << UiLanguage::English << QString::fromUtf8(toolTip) << QString::fromUtf8(name)
            << size;
        QTest::addRow("%s, Chinese", name)
            << kind << UiLanguage::Chinese << QString::fromUtf8(toolTipZh)
            << QString::fromUtf8(nameZh) << size;
    };
    row(Kind::Play, "Play: send frames sequentially", "播放：逐帧循环发送", "Play", "播放",
        {112, 76});
    row(Kind::Pause, "Pause: resend the current frame", "暂停：循环发送当前帧", "Pause", "暂停",
        {88, 76});
    row(Kind::Stop, "Stop: resend frame 0 with RGBW set to 0", "停止：循环发送第0帧且RGBW为0",
        "Stop", "停止", {88, 76});
    row(Kind::Home, "Return to the home page (reserved)", "返回主界面（预留）", "Home", "主页",
        {96, 96});
    row(Kind::Increase, "", "", "Increase", "增加", {72, 72});
    row(Kind::Decrease, "", "", "Decrease", "减少", {72, 72});
    row(Kind::QueryStatus, "Query device status", "查询设备状态", "Query status", "查询状态",
        {72, 72});
}

void TestTransportButton::textsAndSize()
{
    QFETCH(const Kind, kind);
    QFETCH(const UiLanguage, language);
    Language::setCurrent(language);
    const TransportButton button(kind);
    QTEST(button.toolTip(), "toolTip");
    QTEST(button.accessibleName(), "name");
    QTEST(button.sizeHint(), "size");
}

void TestTransportButton::languageChangeTakesEffectWhenRetranslated()
{
    TransportButton button(Kind::Stop);
    Language::setCurrent(UiLanguage::English);
    QCOMPARE(button.accessibleName(), QStringLiteral("停止"));
    button.retranslateUi();
    QCOMPARE(button.accessibleName(), QStringLiteral("Stop"));
    QCOMPARE(button.toolTip(), QStringLiteral("Stop: resend frame 0 with RGBW set to 0"));
}

void TestTransportButton::toolTipOfTheFileButtonsIsEmptied()
{
    for (const Kind kind : {Kind::Increase, Kind::Decrease}) {
        TransportButton button(kind);
        button.setToolTip(QStringLiteral("left over"));
        button.retranslateUi();
        QCOMPARE(button.toolTip(), QString());
    }
}

void TestTransportButton::unknownKindHasNoTextsAndNoSymbol()
{
    for (const int value : {-1, 7, 100}) {
        TransportButton button(static_cast<Kind>(value));
        button.setToolTip(QStringLiteral("kept"));
        button.retranslateUi();
        QCOMPARE(button.toolTip(), QStringLiteral("kept"));
        QCOMPARE(button.accessibleName(), QString());
        QCOMPARE(TransportButton(static_cast<Kind>(value)).sizeHint(), QSize(72, 72));

        button.resize(72, 72);
        const Magnified picture(button);
        for (int x = 12; x < 60; ++x) {
            for (int y = 12; y < 60; ++y)
                QVERIFY(!picture.shows(QPointF(x, y), QColor(0xf1f3f5)));
        }
    }
}

void TestTransportButton::isMadeForHandAndKeyboard()
{
    const TransportButton button(Kind::Play);
    QCOMPARE(button.cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(button.focusPolicy(), Qt::StrongFocus);
    QCOMPARE(button.sizePolicy(), QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed));
    QVERIFY(!button.isCheckable());
}

void TestTransportButton::mouseAndSpaceClickIt()
{
    TransportButton button(Kind::Play);
    button.resize(88, 76);
    QSignalSpy clicked(&button, &TransportButton::clicked);
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(clicked.size(), 1);
    QTest::keyClick(&button, Qt::Key_Space);
    QCOMPARE(clicked.size(), 2);
}

void TestTransportButton::bodyIsShadedFromTopToBottom()
{
    QFETCH(const Look, look);
    TransportButton button(look.kind);
    button.resize(button.sizeHint());
    const Magnified picture(button);
    const double middle = button.width() / 2.0;

    QVERIFY(bodyShades(picture, button.size(), QColor(look.top), QColor(look.bottom)));
    // The border is 3 wide around the body, which begins at 2.
    for (const double y : {0.7, 2.0, 3.3, button.height() - 3.3, button.height() - 0.7})
        QVERIFY(picture.shows({middle, y}, QColor(look.border)));
    QCOMPARE(picture.at({middle, 0.3}).alpha(), 0);
    QVERIFY(picture.shows({middle, 3.8}, mixed(QColor(look.top), QColor(look.bottom), 0.025)));
}

void TestTransportButton::pressedIsDarker()
{
    QFETCH(const Look, look);
    TransportButton button(look.kind);
    button.resize(button.sizeHint());
    button.setDown(true);
    const Magnified picture(button);

    QVERIFY(bodyShades(picture, button.size(), QColor(look.top).darker(125),
                       QColor(look.bottom).darker(125)));
    QVERIFY(picture.shows({button.width() / 2.0, 2}, QColor(look.border)));
}

void TestTransportButton::underTheMouseIsLighter()
{
    QFETCH(const Look, look);
    TransportButton button(look.kind);
    button.resize(button.sizeHint());
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QTest::mouseMove(&button);
    QTRY_VERIFY(button.underMouse());
    const Magnified picture(button);

    QVERIFY(bodyShades(picture, button.size(), QColor(look.top).lighter(108),
                       QColor(look.bottom).lighter(108)));
    QVERIFY(picture.shows({button.width() / 2.0, 2}, QColor(look.border)));
    QVERIFY(button.testAttribute(Qt::WA_Hover)); // repainted when the mouse comes and goes
}

void TestTransportButton::pressedUnderTheMouseIsDarker()
{
    TransportButton button(Kind::Stop);
    button.resize(button.sizeHint());
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QTest::mouseMove(&button);
    QTRY_VERIFY(button.underMouse());
    QTest::mousePress(&button, Qt::LeftButton);
    QVERIFY(bodyShades(Magnified(button), button.size(), QColor(0x2a2e32).darker(125),
                       QColor(0x191c1f).darker(125)));
    QTest::mouseRelease(&button, Qt::LeftButton);
}

void TestTransportButton::cornersAreRound()
{
    QFETCH(const Look, look);
    TransportButton button(look.kind);
    button.resize(button.sizeHint());
    const Magnified picture(button);
    // Across the top left corner, along the diagonal through the centre of its circle.
    const auto atRadius = [&look](double radius) {
        const double d = 2 + look.radius - radius * M_SQRT1_2;
        return QPointF(d, d);
    };
    QVERIFY(picture.shows(atRadius(look.radius - 1.2), QColor(look.border)));
    QVERIFY(picture.shows(atRadius(look.radius + 1.2), QColor(look.border)));
    QCOMPARE(picture.at(atRadius(look.radius + 1.8)).alpha(), 0);
    QVERIFY(!picture.shows(atRadius(look.radius - 1.8), QColor(look.border)) ||
            look.kind == Kind::Play); // whose border has the colour of its top
}

void TestTransportButton::symbolHasItsShape_data()
{
    QTest::addColumn<Look>("look");
    QTest::addColumn<QSize>("size");
    for (const Look &look : looks) {
        QTest::addRow("%s", look.name) << look << TransportButton(look.kind).sizeHint();
        QTest::addRow("%s, wider", look.name) << look << QSize(130, 80);
    }
    QTest::newRow("Query status, narrow: the line stays 3 wide") << looks[6] << QSize(36, 36);
}

void TestTransportButton::symbolHasItsShape()
{
    QFETCH(const Look, look);
    QFETCH(const QSize, size);
    TransportButton button(look.kind);
    button.resize(size);
    const Magnified picture(button);
    const QRectF symbol = QRectF(QPointF(), QSizeF(size)).adjusted(12, 12, -12, -12);
    const QList<QPainterPath> shapes = shapesOf(look.kind, symbol.width(), symbol.height());

    int inside = 0;
    for (double x = symbol.left() + 0.5; x < symbol.right(); x += 0.5) {
        for (double y = symbol.top() + 0.5; y < symbol.bottom(); y += 0.5) {
            const QPointF point(x, y);
            const Place place = placeOf(shapes, point - symbol.center());
            if (place == Place::AtAnEdge)
                continue;
            inside += place == Place::Inside ? 1 : 0;
            QVERIFY2(picture.shows(point, QColor(look.symbol)) == (place == Place::Inside),
                     qPrintable(QStringLiteral("at %1, %2").arg(x).arg(y)));
        }
    }
    QVERIFY(inside > 20);
}

void TestTransportButton::doorOfTheHouseIsDark()
{
    TransportButton button(Kind::Home);
    button.resize(96, 96);
    const Magnified picture(button);
    // In the middle of the door; the symbol's rectangle is 72 x 72 around (48, 48).
    QVERIFY(picture.shows({48, 48 + 0.25 * 72}, QColor(0x191c1f)));
    QVERIFY(picture.shows({48, 48 + 0.12 * 72}, QColor(0xf1f3f5)));
}

void TestTransportButton::focusIsShown()
{
    QFETCH(const Look, look);
    TransportButton button(look.kind);
    button.resize(button.sizeHint());
    const QPointF from(24, 7); // the ring lies 5 inside the body, its corners are rounder by 3
    const QPointF to(button.width() - 24, 7);
    const bool ringLooksLikeBody = look.kind == Kind::Play; // at the top of its body
    if (!ringLooksLikeBody)
        QCOMPARE(Magnified(button).shareOfLine(from, to, focusColor), 0.0);

    button.show();
    button.setFocus();
    QTRY_VERIFY(button.hasFocus());
    const Magnified picture(button);
    const double share = picture.shareOfLine(from, to, focusColor);
    QVERIFY2(share > 0.6 && share < 0.95, qPrintable(QString::number(share))); // dashes and gaps
    QCOMPARE(picture.shareOfLine(from - QPointF(0, 1.3), to - QPointF(0, 1.3), focusColor), 0.0);
    QCOMPARE(picture.shareOfLine(from + QPointF(0, 1.3), to + QPointF(0, 1.3), focusColor), 0.0);

    // Its corners have their centre where those of the body have it, two further inside.
    const QPointF centre(7 + look.radius - 3, 7 + look.radius - 3);
    const auto arcShare = [&](double radius) {
        int hits = 0;
        for (int degrees = 1; degrees < 90; ++degrees) {
            const double angle = qDegreesToRadians(degrees);
            const QPointF point = centre - QPointF(qCos(angle), qSin(angle)) * radius;
            hits += picture.shows(point, focusColor) ? 1 : 0;
        }
        return hits / 89.0;
    };
    QVERIFY(arcShare(look.radius - 3) > 0.5);
    QCOMPARE(arcShare(look.radius - 5), 0.0);
}

QTEST_MAIN(TestTransportButton)
#include "tst_transportbutton.moc"
