// SPDX-License-Identifier: MIT
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#include <chrono>
#include <memory>

namespace {

constexpr std::chrono::minutes longestRun{2}; // on a busy machine with sanitizers

} // namespace

// Starts the program itself; startupprobe.cpp, loaded into it, tells what it has become and closes
// its window.
class TestApplication : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void hasItsIdentity();
    void keepsItsSettingsUnderItsIdentity();
    void writesTenPointTypeInTheSystemFont();
    void showsOneWindowAtItsOwnSize();
    void speaksTheStoredLanguageFromTheStart_data();
    void speaksTheStoredLanguageFromTheStart();
    void endsWellWhenItsWindowCloses();
    void ignoresArgumentsThatAreNotQts();

private:
    QString settingsPath() const;
    void run(const QStringList &arguments = {});

    std::unique_ptr<QTemporaryDir> configHome;
    QProcess process;
    QJsonObject report;
};

void TestApplication::init()
{
    configHome = std::make_unique<QTemporaryDir>();
    QVERIFY2(configHome->isValid(), qPrintable(configHome->errorString()));
}

void TestApplication::cleanup()
{
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished();
    }
}

QString TestApplication::settingsPath() const
{
    return configHome->filePath(QStringLiteral("Corvessa Electronic CO./Tessaly Player.conf"));
}

// Returns when the program has ended; its report is then in `report`.
void TestApplication::run(const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(PROBE_PLUGIN_PATH));
    environment.insert(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("startupprobe"));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configHome->path());
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(TESSALY_PLAYER), arguments, QIODevice::ReadOnly);
    const bool finished = process.waitForFinished(std::chrono::milliseconds(longestRun).count());
    const QByteArray errors = process.readAllStandardError();
    QVERIFY2(finished, qPrintable(process.errorString()));
    report = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    QVERIFY2(!report.isEmpty(), errors);
}

void TestApplication::hasItsIdentity()
{
    run();
    QCOMPARE(report.value(u"name").toString(), QStringLiteral("Tessaly Player"));
    QCOMPARE(report.value(u"organisation").toString(), QStringLiteral("Corvessa Electronic CO."));
    QCOMPARE(report.value(u"version").toString(), QStringLiteral("0.3.5"));
    QCOMPARE(report.value(u"iconWidth").toInt(), 1254);
    QCOMPARE(report.value(u"iconHeight").toInt(), 1254);
}

void TestApplication::keepsItsSettingsUnderItsIdentity()
{
    run();
    QCOMPARE(report.value(u"settings").toString(), settingsPath());
}

void TestApplication::writesTenPointTypeInTheSystemFont()
{
    run();
    QCOMPARE(report.value(u"pointSize").toInt(), 10);
    QCOMPARE(report.value(u"fontFamily"), report.value(u"generalFontFamily"));
}

void TestApplication::showsOneWindowAtItsOwnSize()
{
    run();
    const QJsonArray windows = report.value(u"windows").toArray();
    QCOMPARE(windows.size(), 1);
    const QJsonObject window = windows.first().toObject();
    QCOMPARE(window.value(u"class").toString(), QStringLiteral("qx::MainWindow"));
    QCOMPARE(window.value(u"width").toInt(), 1420);
    QCOMPARE(window.value(u"height").toInt(), 900);
    QVERIFY(window.value(u"normalState").toBool()); // neither maximised nor full-screen
    QVERIFY(window.value(u"hasIcon").toBool());
    QCOMPARE(window.value(u"pointSize").toInt(), 10);
}

void TestApplication::speaksTheStoredLanguageFromTheStart_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("playerEntry");
    const QString chinese = QStringLiteral("播放");
    const QString english = QStringLiteral("Player");
    QTest::newRow("nothing stored") << QString() << chinese;
    QTest::newRow("Chinese") << QStringLiteral("zh_CN") << chinese;
    QTest::newRow("English") << QStringLiteral("en") << english;
    QTest::newRow("English in capitals") << QStringLiteral("EN") << english;
    QTest::newRow("a language it does not speak") << QStringLiteral("fr") << chinese;
}

void TestApplication::speaksTheStoredLanguageFromTheStart()
{
    QFETCH(QString, stored);
    if (!stored.isNull()) {
        QSettings settings(settingsPath(), QSettings::IniFormat);
        settings.setValue(QStringLiteral("ui/language"), stored);
    }
    run();
    const QJsonObject window = report.value(u"windows").toArray().first().toObject();
    QTEST(window.value(u"playerEntry").toString(), "playerEntry");
}

void TestApplication::endsWellWhenItsWindowCloses()
{
    run();
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
}

void TestApplication::ignoresArgumentsThatAreNotQts()
{
    run({QStringLiteral("--version"), QStringLiteral("song.mp3"), QStringLiteral("-h")});
    QCOMPARE(report.value(u"windows").toArray().size(), 1);
    QCOMPARE(process.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestApplication)
#include "tst_application.moc"
