// SPDX-License-Identifier: MIT
// The built program, worked from outside: mouse events from the X server, frames seen by the
// player. A twin of its window, never shown, tells where the controls stand.
#include "tests/endtoend/playerprocess.h"
#include "tests/support/grips.h"
#include "tests/support/stage.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace qx;
using namespace qx::test;

class TestProgram : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void anOperatorPlaysAndPullsTheCable();
    void cleanup();

private:
    static bool xdotool(const QStringList &arguments);
    static bool clickAt(const QWidget *control);
    static bool clickAt(const QWidget *control, QPoint point);
    bool holdsPort() const;

    QTemporaryDir directory;
    QProcess program;
    std::unique_ptr<MainWindow> twin;
};

void TestProgram::initTestCase()
{
    takeIdentity();
    takeFont();
}

bool TestProgram::xdotool(const QStringList &arguments)
{
    return QProcess::execute(QStringLiteral("xdotool"), arguments) == 0;
}

bool TestProgram::clickAt(const QWidget *control)
{
    return clickAt(control, control->rect().center());
}

bool TestProgram::clickAt(const QWidget *control, QPoint point)
{
    const QPoint at = control->mapTo(control->window(), point);
    return xdotool({QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y()),
                    QStringLiteral("click"), QStringLiteral("1")});
}

// Whether the program has a terminal open, which is what the player's port is.
bool TestProgram::holdsPort() const
{
    const QDir descriptors(QStringLiteral("/proc/%1/fd").arg(program.processId()));
    const QFileInfoList files = descriptors.entryInfoList(QDir::Files | QDir::System);
    return std::any_of(files.cbegin(), files.cend(), [](const QFileInfo &file) {
        return file.symLinkTarget().startsWith(QLatin1String("/dev/pts/"));
    });
}

void TestProgram::anOperatorPlaysAndPullsTheCable()
{
    freshSettings(QStringLiteral("en"));
    const QString port = directory.filePath(QStringLiteral("player"));
    qputenv("TESSALY_SERIAL_PORTS", port.toUtf8());
    PlayerProcess device(port);
    QVERIFY(device.plugIn());

    twin = std::make_unique<MainWindow>();
    Operator control(*twin);
    twin->grab(); // lays the controls out

    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.start(QStringLiteral(TESSALY_PLAYER), QStringList());
    QVERIFY(program.waitForStarted());
    QVERIFY(xdotool({QStringLiteral("search"), QStringLiteral("--sync"),
                     QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                     QStringLiteral("^Tessaly-Master USB Player V0.3.5$"),
                     QStringLiteral("windowmove"), QStringLiteral("0"), QStringLiteral("0")}));

    QVERIFY(clickAt(control.demo(), boxOf(control.demo())));
    QVERIFY(clickAt(control.connectButton()));
    QTRY_COMPARE(device.hellos(), 1);
    QVERIFY(clickAt(control.play()));
    QVERIFY(holdsPort());
    QTRY_VERIFY(device.frames().size() >= 10);
    for (int i = 0; i < 10; ++i)
        QCOMPARE(device.frames().at(i).number, i);
    QVERIFY(clickAt(control.stop()));
    QTRY_COMPARE(device.frames().last().number, 0);
    device.forget();
    QTRY_VERIFY(device.frames().size() >= 3);
    QCOMPARE(device.frames().last().number, 0);

    device.pullCable();
    QTRY_VERIFY(!holdsPort());
    QVERIFY(device.plugIn());
    QVERIFY(clickAt(control.connectButton()));
    QTRY_COMPARE(device.hellos(), 1);
    QVERIFY(clickAt(control.play()));
    QTRY_VERIFY(device.frames().size() >= 5);
    QCOMPARE(device.frames().at(4).number, 4);
    QCOMPARE(program.state(), QProcess::Running);
}

void TestProgram::cleanup()
{
    program.terminate();
    program.waitForFinished();
    twin.reset();
}

QTEST_MAIN(TestProgram)
#include "tst_program.moc"
