// SPDX-License-Identifier: MIT
#include "tests/widgets/magnified.h"
#include "widgets/toggleswitch.h"

#include <QPainterPath>
#include <QSignalSpy>
#include <QTest>

using qx::ToggleSwitch;
using qx::test::Magnified;

namespace {

const QColor onColor(0x1479e8);
const QColor offColor(0x4b5055);
const QColor knobColor(0xf1f3f5);
const QColor knobBorder(0x3b4045);
const QColor focusColor(0x2994ff);

QPointF middleOfKnob(const QSize &size, bool on)
{
    const double diameter = size.height() - 2 - 8;
    const double x = on ? size.width() - 1 - 4 - diameter / 2 : 1 + 4 + diameter / 2;
    return {x, 1 + 4 + diameter / 2};
}

Magnified pictureOf(const QSize &size, bool on)
{
    ToggleSwitch toggle;
    toggle.resize(size);
    toggle.setChecked(on);
    return Magnified(toggle);
}

} // namespace

class TestToggleSwitch : public QObject
{
    Q_OBJECT

private slots:
    void startsOffAndCanBeChecked();
    void mouseAndSpaceToggleIt();
    void trackTellsOnFromOff_data();
    void trackTellsOnFromOff();
    void knobStandsAtItsEnd_data() { trackTellsOnFromOff_data(); }
    void knobStandsAtItsEnd();
    void endsAreRound();
    void focusIsShown();
};

void TestToggleSwitch::startsOffAndCanBeChecked()
{
    const ToggleSwitch toggle;
    QVERIFY(toggle.isCheckable());
    QVERIFY(!toggle.isChecked());
    QCOMPARE(toggle.sizeHint(), QSize(74, 34));
    QCOMPARE(toggle.cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(toggle.focusPolicy(), Qt::StrongFocus);
}

void TestToggleSwitch::mouseAndSpaceToggleIt()
{
    ToggleSwitch toggle;
    toggle.resize(74, 34);
    QSignalSpy toggled(&toggle, &ToggleSwitch::toggled);
    QTest::mouseClick(&toggle, Qt::LeftButton);
    QCOMPARE(toggled, QList<QVariantList>{{true}});
    QTest::keyClick(&toggle, Qt::Key_Space);
    QCOMPARE(toggled, (QList<QVariantList>{{true}, {false}}));
    QVERIFY(!toggle.isChecked());
}

void TestToggleSwitch::trackTellsOnFromOff_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("on");
    QTest::newRow("off") << QSize(74, 34) << false;
    QTest::newRow("on") << QSize(74, 34) << true;
    QTest::newRow("larger, off") << QSize(120, 50) << false;
    QTest::newRow("larger, on") << QSize(120, 50) << true;
}

void TestToggleSwitch::trackTellsOnFromOff()
{
    QFETCH(const QSize, size);
    QFETCH(const bool, on);
    const Magnified picture = pictureOf(size, on);
    const QColor track = on ? onColor : offColor;
    const double middle = size.width() / 2.0;

    QVERIFY(picture.shows({middle, size.height() / 2.0}, track));
    // A line 1.5 wide around the track, half of it outside.
    QVERIFY(picture.shows({middle, 0.4}, track.darker(130)));
    QVERIFY(picture.shows({middle, 1.6}, track.darker(130)));
    QVERIFY(picture.shows({middle, size.height() - 1.0}, track.darker(130)));
    QVERIFY(picture.shows({middle, 2.0}, track));
    QCOMPARE(picture.at({middle, 0.1}).alpha(), 0);
}

void TestToggleSwitch::knobStandsAtItsEnd()
{
    QFETCH(const QSize, size);
    QFETCH(const bool, on);
    const Magnified picture = pictureOf(size, on);
    const QPointF knob = middleOfKnob(size, on);
    const double radius = (size.height() - 2 - 8) / 2.0;

    for (const QPointF direction : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)}) {
        QVERIFY(picture.shows(knob + direction * (radius - 1), knobColor));
        QVERIFY(picture.shows(knob + direction * radius, knobBorder));
        QVERIFY(picture.shows(knob + direction * (radius + 1), on ? onColor : offColor));
    }
    QVERIFY(picture.shows(middleOfKnob(size, !on), on ? onColor : offColor));
    if (size == QSize(74, 34))
        QCOMPARE(knob, QPointF(on ? 57 : 17, 17));
}

void TestToggleSwitch::endsAreRound()
{
    ToggleSwitch toggle;
    toggle.resize(74, 34);
    const Magnified picture(toggle);
    // On the circle of radius 16 around (17, 17), at 45 degrees.
    const auto atRadius = [](double radius) {
        const double d = radius * M_SQRT1_2;
        return QPointF(17 - d, 17 - d);
    };
    QVERIFY(picture.shows(atRadius(16), offColor.darker(130)));
    QVERIFY(picture.shows(atRadius(14.5), offColor));
    QCOMPARE(picture.at(atRadius(17.5)).alpha(), 0);
}

void TestToggleSwitch::focusIsShown()
{
    ToggleSwitch toggle;
    toggle.resize(74, 34);
    const QPointF from(20, 3);
    const QPointF to(54, 3);
    QCOMPARE(Magnified(toggle).shareOfLine(from, to, focusColor), 0.0);

    toggle.show();
    toggle.setFocus();
    QTRY_VERIFY(toggle.hasFocus());
    const double share = Magnified(toggle).shareOfLine(from, to, focusColor);
    QVERIFY2(share > 0.6 && share < 0.95, qPrintable(QString::number(share))); // dashes and gaps
    // A line 1.5 wide, two inside the track.
    QCOMPARE(Magnified(toggle).shareOfLine({20, 1.9}, {54, 1.9}, focusColor), 0.0);
    QCOMPARE(Magnified(toggle).shareOfLine({20, 4.1}, {54, 4.1}, focusColor), 0.0);
}

QTEST_MAIN(TestToggleSwitch)
#include "tst_toggleswitch.moc"
