// SPDX-License-Identifier: MIT
#include <QProcess>
#include <QTest>

#include <csignal>

class TestEndSignals : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void signalEndsTheProgramInOrder_data();
    void signalEndsTheProgramInOrder();
    void severalSignalsAskOnce_data();
    void severalSignalsAskOnce();
    void signalAfterTheObjectIsGoneDoesNoHarm();
    void withoutAPipeSignalsEndTheProgramAsEver();

private:
    void start(const QStringList &arguments);
    void send(int signal);
    void expectEnd(const QByteArray &lastLines);
    bool hasSaid(const QByteArray &line);

    QProcess program;
    QByteArray said;
};

// A program that a failed test has left behind.
void TestEndSignals::cleanup()
{
    program.kill();
    program.waitForFinished();
}

void TestEndSignals::start(const QStringList &arguments)
{
    said.clear();
    program.start(QStringLiteral(END_SIGNALS_PROBE), arguments);
    QVERIFY2(program.waitForStarted(), qPrintable(program.errorString()));
}

// A program that does not run has the number 0, and a signal to 0 would hit the test itself.
void TestEndSignals::send(int signal)
{
    QTRY_VERIFY(hasSaid("waiting\n"));
    const auto number = static_cast<pid_t>(program.processId());
    QVERIFY(number > 0);
    QCOMPARE(::kill(number, signal), 0);
}

bool TestEndSignals::hasSaid(const QByteArray &line)
{
    said += program.readAllStandardOutput();
    return said.contains(line);
}

void TestEndSignals::expectEnd(const QByteArray &lastLines)
{
    QTRY_COMPARE(program.state(), QProcess::NotRunning);
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QVERIFY2(hasSaid(lastLines), said.constData());
    QCOMPARE(said.count("asked to end\n"), 1);
    QVERIFY2(said.endsWith("cleaned up\n"), said.constData());
}

void TestEndSignals::signalEndsTheProgramInOrder_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void TestEndSignals::signalEndsTheProgramInOrder()
{
    QFETCH(int, signal);
    start({});
    send(signal);
    expectEnd("waiting\nasked to end\ncleaned up\n");
}

void TestEndSignals::severalSignalsAskOnce_data()
{
    QTest::addColumn<QString>("when");
    QTest::addColumn<int>("signal");
    QTest::newRow("before the event loop runs") << QStringLiteral("early") << 0;
    QTest::newRow("while the first is handled, and afterwards")
        << QStringLiteral("late") << SIGTERM;
}

void TestEndSignals::severalSignalsAskOnce()
{
    QFETCH(QString, when);
    QFETCH(int, signal);
    start({when});
    if (signal != 0)
        send(signal);
    expectEnd("asked to end\n");
}

void TestEndSignals::signalAfterTheObjectIsGoneDoesNoHarm()
{
    start({QStringLiteral("deleted")});
    send(SIGTERM);
    expectEnd("asked to end\ncleaned up\n");
}

void TestEndSignals::withoutAPipeSignalsEndTheProgramAsEver()
{
    start({QStringLiteral("descriptors")});
    QTRY_VERIFY(hasSaid("waiting\n"));
    QVERIFY2(said.startsWith("cannot make a pipe for the signals: "), said.constData());
    send(SIGTERM);
    QTRY_COMPARE(program.state(), QProcess::NotRunning);
    QCOMPARE(program.exitStatus(), QProcess::CrashExit);
    QCOMPARE(program.exitCode(), SIGTERM);
    QVERIFY(!hasSaid("cleaned up\n"));
}

QTEST_GUILESS_MAIN(TestEndSignals)
#include "tst_endsignals.moc"
