// SPDX-License-Identifier: MIT
// The window in a Wayland session: in this program, where it is worked by hand, and the built
// program, seen by what it and the session tell each other.
#include "tests/support/stage.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTest>

using namespace qx;
using namespace qx::test;

class TestWayland : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void theWindowPlaysInDemoMode();
    void theProgramShowsItsWindowAndEnds();
};

void TestWayland::initTestCase()
{
    takeIdentity();
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("wayland"));
}

void TestWayland::theWindowPlaysInDemoMode()
{
    Stage stage;
    Operator &hand = stage.hand();
    QVERIFY(QTest::qWaitForWindowExposed(&stage.window()));
    hand.click(hand.play());
    QTRY_VERIFY(hand.frame()->value() >= 3);
    QVERIFY(hand.log("RX").contains(QStringLiteral("QXUSB RX OK  (DEMO)")));
    hand.click(hand.stop());
    QCOMPARE(hand.state(), Language::text(UiText::StateStopped));
    QVERIFY(stage.window().close());
    QTRY_VERIFY(!stage.window().isVisible());
}

void TestWayland::theProgramShowsItsWindowAndEnds()
{
    freshSettings(QStringLiteral("en"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("WAYLAND_DEBUG"), QStringLiteral("client"));
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(TESSALY_PLAYER), QStringList());
    QVERIFY(program.waitForStarted());

    // The session tells a window that it is on the screen once its first picture is there.
    static const QRegularExpression titled(
        QStringLiteral(R"(set_title\("Tessaly-Master USB Player V0\.3\.5"\))"));
    static const QRegularExpression shown(QStringLiteral(R"(wl_surface.\d+\.enter\()"));
    QString talk;
    QTRY_VERIFY_WITH_TIMEOUT((talk += QString::fromUtf8(program.readAllStandardError()),
                              talk.contains(titled) && talk.contains(shown)),
                             30000);
    QCOMPARE(program.state(), QProcess::Running);

    program.terminate();
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
}

QTEST_MAIN(TestWayland)
#include "tst_wayland.moc"
