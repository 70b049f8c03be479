// SPDX-License-Identifier: MIT
#include "simulator/pseudoterminal.h"
#include "tests/simulator/hostport.h"
#include "tests/simulator/wirebytes.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <csignal>
#include <memory>
#include <unistd.h>

using qx::damaged;
using qx::goldenFrame;
using qx::numberedFrame;

namespace {

const QByteArray hello = QByteArrayLiteral("QXUSB HELLO\n");
const QByteArray ok = QByteArrayLiteral("QXUSB OK\n");
const QByteArray rxOk = QByteArrayLiteral("QXUSB RX OK\n");

} // namespace

class TestSimulatorProgram : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void printsThePortAndEachFrame();
    void printsThePseudoTerminalWithoutLink();
    void quietPrintsNoFrames();
    void barIsColouredOnATerminalOnly_data();
    void barIsColouredOnATerminalOnly();

    void endsCleanlyWithAReport_data();
    void endsCleanlyWithAReport();
    void reportsWhatItSaw();
    void reportsNothingAsNull();

    void optionChangesTheReplies_data();
    void optionChangesTheReplies();
    void delaysReplies();
    void floods();
    void vanishesAndReturns();
    void sameSeedSameReplies();

    void helpNamesEveryOption();
    void printsTheVersion();
    void refusesWrongUse_data();
    void refusesWrongUse();
    void refusesALinkThatIsTaken();

private:
    void start(const QStringList &options);
    void connectHost();
    void offer(const QByteArray &bytes, const QByteArray &reply);
    void stop();
    QString linkPath() const { return directory->filePath(QStringLiteral("player")); }
    QJsonObject report();

    std::unique_ptr<QTemporaryDir> directory;
    std::unique_ptr<QProcess> program;
    std::unique_ptr<qx::HostPort> host;
    QByteArray output;
};

void TestSimulatorProgram::init()
{
    directory = std::make_unique<QTemporaryDir>();
    program = std::make_unique<QProcess>();
    host = std::make_unique<qx::HostPort>();
    output.clear();
}

void TestSimulatorProgram::cleanup()
{
    host.reset();
    program.reset(); // kills it if it still runs
    directory.reset();
}

void TestSimulatorProgram::start(const QStringList &options)
{
    program->start(QStringLiteral(TESSALY_SIMULATOR), options);
    QVERIFY2(program->waitForStarted(), qPrintable(program->errorString()));
}

void TestSimulatorProgram::connectHost()
{
    QTRY_VERIFY(host->open(linkPath()));
}

void TestSimulatorProgram::offer(const QByteArray &bytes, const QByteArray &reply)
{
    host->forget();
    QCOMPARE(host->write(bytes), bytes.size());
    QTRY_COMPARE(host->received(), reply);
}

void TestSimulatorProgram::stop()
{
    program->terminate();
    QTRY_COMPARE(program->state(), QProcess::NotRunning);
    QCOMPARE(program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(program->exitCode(), 0);
}

QJsonObject TestSimulatorProgram::report()
{
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(program->readAllStandardOutput(), &error);
    if (error.error != QJsonParseError::NoError)
        qWarning("not JSON: %s", qPrintable(error.errorString()));
    return document.object();
}

// What people see

void TestSimulatorProgram::printsThePortAndEachFrame()
{
    start({QStringLiteral("--link"), linkPath()});
    connectHost();
    offer(hello + goldenFrame() + damaged(goldenFrame()), ok + rxOk + "QXUSB BAD CHECKSUM\n");
    stop();
    QVERIFY(!QFileInfo(linkPath()).isSymLink());

    const QList<QByteArray> lines = program->readAllStandardOutput().split('\n');
    QCOMPARE(lines.value(0), "Player plugged in at " + linkPath().toLocal8Bit());
    QCOMPARE(lines.value(1), QByteArrayLiteral("HELLO 1"));
    QCOMPARE(lines.value(2),
             QByteArrayLiteral("1. frame     1  HY   1  R 255  G   0  B   0  W   0"));
    QCOMPARE(lines.value(3),
             QByteArrayLiteral("2. frame     1  HY   1  R 255  G   0  B   0  W   0  BAD CHECKSUM"));
    QCOMPARE(lines.value(4),
             QByteArrayLiteral("1 frames accepted of 2 (0 without reply), 1 checksum errors, "
                               "1 HELLO, 0 unknown bytes"));
    QCOMPARE(program->readAllStandardError(), QByteArray());
}

void TestSimulatorProgram::printsThePseudoTerminalWithoutLink()
{
    start({});
    QTRY_VERIFY(program->canReadLine());
    const QByteArray line = program->readLine().trimmed();
    QVERIFY2(line.startsWith("Player plugged in at /dev/"), line.constData());
    QVERIFY(host->open(QString::fromLocal8Bit(line.mid(line.indexOf("/dev/")))));
    offer(hello, ok);
    stop();
}

void TestSimulatorProgram::quietPrintsNoFrames()
{
    start({QStringLiteral("--quiet"), QStringLiteral("--link"), linkPath()});
    connectHost();
    offer(hello + goldenFrame(), ok + rxOk);
    stop();
    const QByteArray text = program->readAllStandardOutput();
    QVERIFY(!text.contains("1. frame"));
    QVERIFY(text.contains("1 frames accepted of 1"));
}

void TestSimulatorProgram::barIsColouredOnATerminalOnly_data()
{
    QTest::addColumn<bool>("terminal");
    QTest::addColumn<QStringList>("variables");
    QTest::addColumn<bool>("coloured");
    const QString truecolour = QStringLiteral("COLORTERM=truecolor");
    QTest::newRow("terminal with 24-bit colours") << true << QStringList{truecolour} << true;
    QTest::newRow("terminal without") << true << QStringList{} << false;
    QTest::newRow("colours not wanted")
        << true << QStringList{truecolour, QStringLiteral("NO_COLOR=1")} << false;
    QTest::newRow("no terminal") << false << QStringList{truecolour} << false;
}

void TestSimulatorProgram::barIsColouredOnATerminalOnly()
{
    QFETCH(bool, terminal);
    QFETCH(QStringList, variables);
    QFETCH(bool, coloured);

    program->setEnvironment(variables);
    qx::PseudoTerminal screen;
    QVERIFY(screen.open());
    if (terminal)
        program->setStandardOutputFile(screen.hostPath());
    start({QStringLiteral("--link"), linkPath()});
    connectHost();
    offer(hello + goldenFrame(), ok + rxOk);
    stop();

    QByteArray text = program->readAllStandardOutput();
    if (terminal) {
        std::array<char, 4096> buffer;
        const auto readScreen = [&] {
            const ssize_t count = ::read(screen.descriptor(), buffer.data(), buffer.size());
            text.append(buffer.data(), qMax<ssize_t>(count, 0));
            return text;
        };
        QTRY_VERIFY(readScreen().contains("unknown bytes"));
    }
    QVERIFY(text.contains("R 255"));
    QCOMPARE(text.contains("\x1b[48;2;255;0;0m"), coloured);
    QCOMPARE(text.contains('\x1b'), coloured);
}

// The report

void TestSimulatorProgram::endsCleanlyWithAReport_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGHUP") << SIGHUP;
    QTest::newRow("duration") << 0;
}

void TestSimulatorProgram::endsCleanlyWithAReport()
{
    QFETCH(int, signal);
    QStringList options{QStringLiteral("--json"), QStringLiteral("--link"), linkPath()};
    if (signal == 0)
        options << QStringLiteral("--duration") << QStringLiteral("0.25");
    start(options);
    connectHost();
    if (signal != 0) {
        // A program that does not run has the number 0; a signal to 0 would hit this test as well.
        const auto number = static_cast<pid_t>(program->processId());
        QVERIFY(number > 0);
        QCOMPARE(::kill(number, signal), 0);
    }
    QTRY_COMPARE(program->state(), QProcess::NotRunning);
    QCOMPARE(program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(program->exitCode(), 0);
    QVERIFY(host->isHungUp());
    QVERIFY(!QFileInfo(linkPath()).isSymLink());
    QCOMPARE(report()[QStringLiteral("port")].toString(), linkPath());
    QVERIFY(program->readAllStandardError().startsWith("Player plugged in at "));
}

void TestSimulatorProgram::reportsWhatItSaw()
{
    start({QStringLiteral("--json"), QStringLiteral("--drop-every"), QStringLiteral("4"),
           QStringLiteral("--link"), linkPath()});
    connectHost();
    offer(hello, ok);
    for (quint16 number = 300; number < 303; ++number)
        offer(numberedFrame(number), rxOk);
    offer(damaged(goldenFrame()) + numberedFrame(303) + "junk\n" + hello,
          "QXUSB BAD CHECKSUM\n" + ok);
    offer(numberedFrame(304), rxOk);
    stop();

    const QJsonObject seen = report();
    const auto number = [&seen](const char *key) { return seen[QLatin1String(key)].toDouble(-1); };
    QCOMPARE(number("frames"), 5);
    QCOMPARE(number("framesArrived"), 6);
    QCOMPARE(number("framesUnanswered"), 1);
    QCOMPARE(number("checksumErrors"), 1);
    QCOMPARE(number("hellos"), 2);
    QCOMPARE(number("unknownBytes"), 5);
    QCOMPARE(number("bytesReceived"), 2 * 12 + 6 * 20 + 5);
    QCOMPARE(number("firstFrame"), 300);
    QCOMPARE(number("lastFrame"), 304);
    QVERIFY(number("framesPerSecond") > 0);
    QVERIFY(number("elapsedSeconds") > 0);
    QCOMPARE(seen[QStringLiteral("version")].toString(), QStringLiteral(TESSALY_VERSION));
    const QJsonObject replies = seen[QStringLiteral("replies")].toObject();
    QCOMPARE(replies[QStringLiteral("ok")].toInt(), 2);
    QCOMPARE(replies[QStringLiteral("rxOk")].toInt(), 4);
    QCOMPARE(replies[QStringLiteral("badChecksum")].toInt(), 1);

    for (const char *key : {"intervalMs", "turnaroundMs"}) {
        const QJsonObject times = seen[QLatin1String(key)].toObject();
        double previous = 0;
        for (const char *percentile : {"min", "p50", "p90", "p99", "max"}) {
            const double value = times[QLatin1String(percentile)].toDouble(-1);
            QVERIFY2(value >= previous, percentile);
            previous = value;
        }
        QVERIFY(previous / 1000 <= number("elapsedSeconds"));
    }
    const auto samples = [&seen](const QString &key) {
        return seen[key].toObject()[QStringLiteral("count")].toInt();
    };
    QCOMPARE(samples(QStringLiteral("intervalMs")), 4);
    // After the replies to 300, 301 and 302; 303 did not wait for the reply before it and got
    // none itself.
    QCOMPARE(samples(QStringLiteral("turnaroundMs")), 3);
}

void TestSimulatorProgram::reportsNothingAsNull()
{
    start({QStringLiteral("--json"), QStringLiteral("--duration"), QStringLiteral("0.01")});
    QTRY_COMPARE(program->state(), QProcess::NotRunning);
    const QJsonObject seen = report();
    QCOMPARE(seen[QStringLiteral("frames")].toInt(-1), 0);
    for (const char *key : {"firstFrame", "lastFrame", "framesPerSecond"})
        QVERIFY2(seen[QLatin1String(key)].isNull(), key);
    QVERIFY(seen[QStringLiteral("intervalMs")].toObject()[QStringLiteral("p99")].isNull());
}

// The options

void TestSimulatorProgram::optionChangesTheReplies_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("replies"); // to HELLO, frame, frame, HELLO
    const auto row = [](const char *options, const QByteArray &replies) {
        QTest::newRow(options) << QString::fromLatin1(options).split(QLatin1Char(' ')) << replies;
    };
    row("--seed 7", ok + rxOk + rxOk + ok);
    row("--hello-every 2", "QXUSB NEED HELLO\nQXUSB NEED HELLO\n" + ok);
    row("--hello-every 0", "QXUSB NEED HELLO\nQXUSB NEED HELLO\n");
    row("--ready-first", "QXUSB READY\n" + ok + rxOk + rxOk + ok);
    row("--drop-every 2", ok + rxOk + ok);
    row("--bad-checksum-every 2", ok + rxOk + "QXUSB BAD CHECKSUM\n" + ok);
    row("--ac39-fail-every 2", ok + rxOk + "QXUSB AC39 FAIL\n" + ok);
    row("--need-hello-every 2", ok + rxOk + "QXUSB NEED HELLO\n" + ok);
    row("--drop-probability 1", ok + ok);
    row("--bad-checksum-probability 1.0", ok + "QXUSB BAD CHECKSUM\nQXUSB BAD CHECKSUM\n" + ok);
    row("--ac39-fail-probability 1", ok + "QXUSB AC39 FAIL\nQXUSB AC39 FAIL\n" + ok);
    row("--need-hello-probability 1", ok + "QXUSB NEED HELLO\nQXUSB NEED HELLO\n" + ok);
    row("--boot-text rst:0x1", "rst:0x1\n" + ok + rxOk + rxOk + ok);
    row("--chunk 1", ok + rxOk + rxOk + ok);
    row("--silent", {});
}

void TestSimulatorProgram::optionChangesTheReplies()
{
    QFETCH(QStringList, options);
    QFETCH(QByteArray, replies);
    start(options + QStringList{QStringLiteral("--link"), linkPath()});
    connectHost();
    QCOMPARE(host->write(hello + goldenFrame() + goldenFrame() + hello), 64);
    const auto printed = [this] { return output += program->readAllStandardOutput(); };
    QTRY_VERIFY(printed().contains("HELLO 2"));
    QTRY_COMPARE(host->received(), replies);
    stop();
    host->received();
    QCOMPARE(host->received(), replies);
}

void TestSimulatorProgram::delaysReplies()
{
    start({QStringLiteral("--delay"), QStringLiteral("40"), QStringLiteral("--link"), linkPath()});
    connectHost();
    QElapsedTimer clock;
    clock.start();
    offer(hello, ok);
    QVERIFY2(clock.elapsed() >= 40, QByteArray::number(clock.elapsed()).constData());
    stop();
}

void TestSimulatorProgram::floods()
{
    start(
        {QStringLiteral("--flood"), QStringLiteral("1000"), QStringLiteral("--link"), linkPath()});
    connectHost();
    QTRY_VERIFY(host->received().count('\n') > 20);
    stop();
}

void TestSimulatorProgram::vanishesAndReturns()
{
    start({QStringLiteral("--vanish-after"), QStringLiteral("1"), QStringLiteral("--return-after"),
           QStringLiteral("20"), QStringLiteral("--link"), linkPath()});
    for (int time = 0; time < 2; ++time) {
        connectHost();
        offer(hello, ok);
        host->write(goldenFrame());
        QTRY_VERIFY(host->isHungUp());
    }
    stop();
}

void TestSimulatorProgram::sameSeedSameReplies()
{
    QByteArray frames;
    for (quint16 number = 0; number < 40; ++number)
        frames += numberedFrame(number);
    QSet<QByteArray> replies;
    for (const QString &seed : {QStringLiteral("5"), QStringLiteral("5"), QStringLiteral("6")}) {
        start({QStringLiteral("--ac39-fail-probability"), QStringLiteral("0.5"),
               QStringLiteral("--seed"), seed, QStringLiteral("--link"), linkPath()});
        connectHost();
        host->write(hello + frames);
        QTRY_COMPARE(host->received().count('\n'), 41);
        replies += host->received();
        stop();
    }
    QCOMPARE(replies.size(), 2);
}

// The command line

void TestSimulatorProgram::helpNamesEveryOption()
{
    start({QStringLiteral("--help")});
    QTRY_COMPARE(program->state(), QProcess::NotRunning);
    QCOMPARE(program->exitCode(), 0);
    const QByteArray text = program->readAllStandardOutput();
    for (const char *option : {"--link",
                               "--hello-every",
                               "--ready-first",
                               "--delay",
                               "--chunk",
                               "--drop-every",
                               "--bad-checksum-every",
                               "--ac39-fail-every",
                               "--need-hello-every",
                               "--drop-probability",
                               "--bad-checksum-probability",
                               "--ac39-fail-probability",
                               "--need-hello-probability",
                               "--seed",
                               "--flood",
                               "--vanish-after",
                               "--return-after",
                               "--boot-text",
                               "--silent",
                               "--quiet",
                               "--json",
                               "--duration",
                               "--help",
                               "--version"})
        QVERIFY2(text.contains(option), option);
}

void TestSimulatorProgram::printsTheVersion()
{
    start({QStringLiteral("--version")});
    QTRY_COMPARE(program->state(), QProcess::NotRunning);
    QCOMPARE(program->exitCode(), 0);
    QCOMPARE(program->readAllStandardOutput(), "tessaly-simulator " TESSALY_VERSION "\n");
}

void TestSimulatorProgram::refusesWrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("about");
    const auto row = [](const char *arguments, const char *about) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments).split(QLatin1Char(' '))
                                 << QByteArray(about);
    };
    row("--bogus", "bogus");
    row("--quiet=yes", "quiet");
    row("/tmp/player", "/tmp/player");
    row("--quiet more", "more");
    row("--delay", "delay");
    row("--delay soon", "soon");
    row("--delay -1", "-1");
    row("--delay 1.5", "1.5");
    row("--delay 3600001", "3600001");
    row("--delay 99999999999999999999", "99999999999999999999");
    row("--chunk 4097", "4097");
    row("--hello-every -1", "hello-every");
    row("--drop-every x", "drop-every");
    row("--bad-checksum-every x", "bad-checksum-every");
    row("--ac39-fail-every x", "ac39-fail-every");
    row("--need-hello-every 1000000001", "need-hello-every");
    row("--drop-probability 1.01", "1.01");
    row("--drop-probability -0.1", "-0.1");
    row("--drop-probability nan", "nan");
    row("--bad-checksum-probability inf", "inf");
    row("--ac39-fail-probability x", "ac39-fail-probability");
    row("--need-hello-probability 2", "need-hello-probability");
    row("--seed 4294967296", "4294967296");
    row("--seed -1", "seed");
    row("--flood 1000001", "flood");
    row("--vanish-after 0", "vanish-after");
    row("--vanish-after 1 --return-after 0", "return-after");
    row("--return-after 100", "vanish-after");
    row("--duration 0", "duration");
    row("--duration -5", "duration");
    row("--duration 1000001", "duration");
    row("--link ", "link");
}

void TestSimulatorProgram::refusesWrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, about);
    start(arguments);
    QTRY_COMPARE(program->state(), QProcess::NotRunning);
    QCOMPARE(program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(program->exitCode(), 2);
    QCOMPARE(program->readAllStandardOutput(), QByteArray());
    const QByteArray complaint = program->readAllStandardError();
    QVERIFY2(complaint.startsWith("tessaly-simulator: "), complaint.constData());
    QVERIFY2(complaint.contains(about), complaint.constData());
    QCOMPARE(complaint.count('\n'), 1);
}

void TestSimulatorProgram::refusesALinkThatIsTaken()
{
    QFile file(linkPath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    start({QStringLiteral("--link"), linkPath()});
    QTRY_COMPARE(program->state(), QProcess::NotRunning);
    QCOMPARE(program->exitCode(), 1);
    QVERIFY(program->readAllStandardError().contains(linkPath().toLocal8Bit()));
    QVERIFY(QFileInfo(linkPath()).isFile());
}

QTEST_GUILESS_MAIN(TestSimulatorProgram)
#include "tst_simulatorprogram.moc"
