// SPDX-License-Identifier: MIT
#include "tests/support/stage.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace qx::test;

namespace {

using Levels = QList<int>;

const Levels dark{0, 0, 0, 0};

QStringList colourKeys()
{
    return {u"control/rgbw/red"_s, u"control/rgbw/green"_s, u"control/rgbw/blue"_s,
            u"control/rgbw/white"_s};
}

// What the settings file holds, read by someone who opens it now.
Levels stored()
{
    const QSettings settings;
    Levels levels;
    const QStringList keys = colourKeys();
    for (const QString &key : keys)
        levels.append(settings.value(key, -1).toInt());
    return levels;
}

Levels shown(const Operator &hand)
{
    return {hand.red()->value(), hand.green()->value(), hand.blue()->value(),
            hand.white()->value()};
}

void typeLevels(const Operator &hand, const Levels &levels)
{
    hand.typeLevels(levels.at(0), levels.at(1), levels.at(2), levels.at(3));
}

QString settingsFile()
{
    return QSettings().fileName();
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void overwrite(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

// Settings in a directory that every user can reach, as long as this lives.
class SettingsForEveryone
{
public:
    SettingsForEveryone()
    {
        QFile::setPermissions(directory.path(), QFile::permissions(directory.path()) |
                                                    QFile::ReadGroup | QFile::ExeGroup |
                                                    QFile::ReadOther | QFile::ExeOther);
        use(directory.path());
    }
    ~SettingsForEveryone()
    {
        use(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    }
    Q_DISABLE_COPY_MOVE(SettingsForEveryone)

private:
    static void use(const QString &path)
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path);
    }

    QTemporaryDir directory;
};

// The program as a user who may not write where the settings are. Permissions do not hold root
// back, so root becomes nobody for a while.
class ReadOnlySettings
{
public:
    ReadOnlySettings()
        : file(settingsFile())
        , directory(QFileInfo(file).path())
    {
        const QFile::Permissions read = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
        QFile::setPermissions(file, read);
        QFile::setPermissions(directory,
                              read | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther);
        if (wasRoot)
            effective = ::seteuid(nobody) == 0;
    }
    ~ReadOnlySettings()
    {
        if (wasRoot && ::seteuid(0) != 0)
            qFatal("cannot become root again");
        QFile::setPermissions(directory, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    }
    Q_DISABLE_COPY_MOVE(ReadOnlySettings)

    bool isReadable() const { return QFile(file).open(QIODevice::ReadOnly); }
    bool isProtected() const { return effective && !QFile(file).open(QIODevice::Append); }

private:
    static constexpr uid_t nobody = 65534;

    const QString file;
    const QString directory;
    const bool wasRoot = ::geteuid() == 0;
    bool effective = true;
};

// What the program does that is killed between Stop and Play: it never comes to an orderly end.
int sessionThatIsKilled(int argc, char **argv)
{
    QApplication application(argc, argv);
    Stage stage;
    typeLevels(stage.hand(), {10, 20, 30, 40});
    stage.hand().click(stage.hand().play());
    stage.hand().click(stage.hand().stop());
    stage.hand().type(stage.hand().green(), 99);
    return std::raise(SIGKILL);
}

const char killedSession[] = "--session-that-is-killed";

} // namespace

class ColoursTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void everyEditIsStoredAtOnce();
    void stopDarkensAndPlayBringsBack();
    void stopStoresLevelsThatNobodyEdited();
    void aSecondStopKeepsTheLevels();
    void editsWhileDarkAreMerged();
    void theDarkEditorsStayDarkUntilPlay();
    void pauseKeepsThemDark();
    void losingTheLinkLeavesTheEditors();
    void theEndOfTheSequenceKeepsTheLevels();
    void restarting_data();
    void restarting();
    void beingKilledBetweenStopAndPlay();
    void storedValues_data();
    void storedValues();
    void storedValuesAreNotRewrittenByLoading();
    void aFileFullOfNonsense_data();
    void aFileFullOfNonsense();
    void otherSettingsSurvive();
    void aReadOnlyFile();
    void aDirectoryInPlaceOfTheFile();

private:
    Operator &hand() { return stage->hand(); }

    std::unique_ptr<Stage> stage;
};

void ColoursTest::init()
{
    stage = std::make_unique<Stage>();
}

void ColoursTest::cleanup()
{
    stage.reset();
}

void ColoursTest::everyEditIsStoredAtOnce()
{
    hand().type(hand().red(), 10);
    QCOMPARE(stored(), Levels({10, 0, 0, 0}));
    hand().type(hand().green(), 20);
    QCOMPARE(stored(), Levels({10, 20, 0, 0}));
    hand().type(hand().blue(), 30);
    QCOMPARE(stored(), Levels({10, 20, 30, 0}));
    hand().white()->setFocus();
    QTest::keyClick(hand().white(), Qt::Key_Up);
    QCOMPARE(stored(), Levels({10, 20, 30, 1}));
    QVERIFY(contents(settingsFile()).contains("rgbw\\green=20")); // in the file itself
}

void ColoursTest::stopDarkensAndPlayBringsBack()
{
    const Levels levels{10, 20, 30, 40};
    typeLevels(hand(), levels);
    hand().click(hand().play());
    hand().click(hand().stop());
    QCOMPARE(shown(hand()), dark);
    QCOMPARE(stored(), levels);
    QCOMPARE(hand().row(5)->text(), u"0 / 0 / 0 / 0"_s);
    hand().click(hand().play());
    QCOMPARE(shown(hand()), levels);
    QCOMPARE(stored(), levels);
    QCOMPARE(hand().row(5)->text(), u"10 / 20 / 30 / 40"_s);
}

void ColoursTest::stopStoresLevelsThatNobodyEdited()
{
    stage->quit();
    overwrite(settingsFile(), "[control]\nrgbw\\red=300\n");
    stage->restart();
    hand().click(hand().stop());
    const QSettings settings;
    QCOMPARE(settings.value(u"control/rgbw/red"_s).toInt(), 255);
    for (const QString &channel : {u"green"_s, u"blue"_s, u"white"_s})
        QCOMPARE(settings.value(u"control/rgbw/"_s + channel), QVariant(u"0"_s));
}

void ColoursTest::aSecondStopKeepsTheLevels()
{
    const Levels levels{10, 20, 30, 40};
    typeLevels(hand(), levels);
    for (QAbstractButton *button : {static_cast<QAbstractButton *>(hand().stop()),
                                    static_cast<QAbstractButton *>(hand().stop()),
                                    static_cast<QAbstractButton *>(hand().stopZero())})
        hand().click(button);
    QCOMPARE(stored(), levels);
    hand().click(hand().play());
    QCOMPARE(shown(hand()), levels);
}

void ColoursTest::editsWhileDarkAreMerged()
{
    typeLevels(hand(), {10, 20, 30, 40});
    hand().click(hand().stop());
    hand().type(hand().green(), 99);
    QCOMPARE(shown(hand()), Levels({0, 99, 0, 0}));
    QCOMPARE(stored(), Levels({10, 99, 30, 40}));
    hand().type(hand().white(), 1);
    QCOMPARE(stored(), Levels({10, 99, 30, 1}));
    hand().click(hand().stop()); // dark again, and nothing forgotten
    QCOMPARE(shown(hand()), dark);
    hand().click(hand().play());
    QCOMPARE(shown(hand()), Levels({10, 99, 30, 1}));
    QCOMPARE(stored(), Levels({10, 99, 30, 1}));
}

void ColoursTest::theDarkEditorsStayDarkUntilPlay()
{
    typeLevels(hand(), {10, 20, 30, 40});
    hand().click(hand().stop());
    hand().setDemo(false);
    hand().setDemo(true);
    hand().click(hand().increase());
    QCOMPARE(shown(hand()), dark);
    hand().click(hand().play());
    QCOMPARE(shown(hand()), Levels({10, 20, 30, 40}));
}

// Only Play restores; Pause sends what the editors show.
void ColoursTest::pauseKeepsThemDark()
{
    typeLevels(hand(), {10, 20, 30, 40});
    hand().click(hand().stop());
    hand().click(hand().pause());
    QCOMPARE(shown(hand()), dark);
    QCOMPARE(stored(), Levels({10, 20, 30, 40}));
}

void ColoursTest::losingTheLinkLeavesTheEditors()
{
    typeLevels(hand(), {10, 20, 30, 40});
    QVERIFY(stage->connectPlayer());
    hand().click(hand().play());
    stage->unplug();
    QTRY_COMPARE(hand().state(), u"Stopped"_s);
    QCOMPARE(shown(hand()), Levels({10, 20, 30, 40}));
    QCOMPARE(stored(), Levels({10, 20, 30, 40}));
}

void ColoursTest::theEndOfTheSequenceKeepsTheLevels()
{
    typeLevels(hand(), {10, 20, 30, 40});
    hand().type(hand().total(), 1);
    hand().click(hand().play());
    QTRY_COMPARE(hand().state(), u"Stopped"_s);
    QCOMPARE(shown(hand()), dark);
    QCOMPARE(stored(), Levels({10, 20, 30, 40}));
    hand().click(hand().play());
    QCOMPARE(shown(hand()), Levels({10, 20, 30, 40}));
}

void ColoursTest::restarting_data()
{
    QTest::addColumn<bool>("stopped");
    QTest::newRow("as they are shown") << false;
    QTest::newRow("after Stop: the operator's, not the zeros") << true;
}

void ColoursTest::restarting()
{
    QFETCH(bool, stopped);
    typeLevels(hand(), {10, 20, 30, 255});
    if (stopped)
        hand().click(hand().stop());
    stage->restart();
    QCOMPARE(shown(hand()), Levels({10, 20, 30, 255}));
    hand().click(hand().play());
    QCOMPARE(shown(hand()), Levels({10, 20, 30, 255}));
    QVERIFY(hand().log("TX").last().endsWith(u"R: 10  G: 20  B: 30  W: 255"_s));
}

void ColoursTest::beingKilledBetweenStopAndPlay()
{
    QProcess session;
    session.start(QCoreApplication::applicationFilePath(), {QLatin1String(killedSession)});
    QVERIFY(session.waitForFinished());
    QCOMPARE(session.exitStatus(), QProcess::CrashExit);
    QCOMPARE(stored(), Levels({10, 99, 30, 40}));
    stage->restart();
    QCOMPARE(shown(hand()), Levels({10, 99, 30, 40}));
}

void ColoursTest::storedValues_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("level");
    QTest::newRow("in range") << u"128"_s << 128;
    QTest::newRow("lowest") << u"0"_s << 0;
    QTest::newRow("highest") << u"255"_s << 255;
    QTest::newRow("too high") << u"300"_s << 255;
    QTest::newRow("negative") << u"-1"_s << 0;
    QTest::newRow("beyond 32 bits") << u"4294967297"_s << 255;
    QTest::newRow("far below") << u"-4294967297"_s << 0;
    QTest::newRow("beyond 64 bits") << u"99999999999999999999"_s << 0;
    QTest::newRow("a word") << u"bright"_s << 0;
    QTest::newRow("a fraction") << u"12.5"_s << 0;
    QTest::newRow("hexadecimal") << u"0x10"_s << 0;
    QTest::newRow("a number and more") << u"12 or so"_s << 0;
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("a list") << u"1, 2"_s << 0;
    QTest::newRow("a truth value") << u"yes"_s << 0;
}

void ColoursTest::storedValues()
{
    QFETCH(QString, value);
    QFETCH(int, level);
    stage->quit();
    overwrite(settingsFile(),
              QStringLiteral("[control]\nrgbw\\red=7\nrgbw\\green=%1\nrgbw\\blue=9\n"
                             "[ui]\nlanguage=en\n")
                  .arg(value)
                  .toUtf8());
    stage->restart();
    QCOMPARE(shown(hand()), Levels({7, level, 9, 0}));
    hand().click(hand().play());
    QVERIFY(hand().log("TX").last().endsWith(u"R: 7  G: %1  B: 9  W: 0"_s.arg(level)));
}

void ColoursTest::storedValuesAreNotRewrittenByLoading()
{
    stage->quit();
    const QByteArray file = "[control]\nrgbw\\red=300\n\n[ui]\nlanguage=en\n";
    overwrite(settingsFile(), file);
    stage->restart();
    QCOMPARE(contents(settingsFile()), file);
    hand().type(hand().blue(), 5);
    QCOMPARE(stored(), Levels({255, 0, 5, 0}));
}

void ColoursTest::aFileFullOfNonsense_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("prose") << "This is not a settings file.\nNot at all!\n"_ba;
    QTest::newRow("zeros") << QByteArray(5000, '\0');
    QTest::newRow("a broken section") << "[control\nrgbw\\red=5\n]]]=\n===\n[[["_ba;
    QTest::newRow("broken escapes")
        << "[control]\nrgbw\\red=\"\\x\\\nrgbw\\green=@Variant(\\0)\n"_ba;
    QByteArray noise(20000, '\0');
    quint32 random = 1;
    for (char &byte : noise)
        byte = static_cast<char>((random = random * 1664525 + 1013904223) >> 24);
    QTest::newRow("noise") << noise;
}

// The program starts, works, and stores what is set from now on.
void ColoursTest::aFileFullOfNonsense()
{
    QFETCH(QByteArray, bytes);
    stage->quit();
    overwrite(settingsFile(), bytes);
    stage->restart();
    for (const int level : shown(hand()))
        QVERIFY(level >= 0 && level <= 255);
    typeLevels(hand(), {1, 2, 3, 4}); // the first of them may already stand there
    typeLevels(hand(), {10, 20, 30, 40});
    hand().click(hand().stop());
    stage->restart();
    QCOMPARE(shown(hand()), Levels({10, 20, 30, 40}));
}

void ColoursTest::otherSettingsSurvive()
{
    {
        QSettings settings;
        settings.setValue(u"media/lastDirectory"_s, u"/music"_s);
        settings.setValue(u"of/someone"_s, u"else"_s);
    }
    hand().type(hand().red(), 10);
    const QSettings settings;
    QCOMPARE(settings.value(u"media/lastDirectory"_s), u"/music"_s);
    QCOMPARE(settings.value(u"of/someone"_s), u"else"_s);
    QCOMPARE(settings.value(u"ui/language"_s), u"en"_s);
}

void ColoursTest::aReadOnlyFile()
{
    const SettingsForEveryone place;
    stage->restart();
    typeLevels(hand(), {10, 20, 30, 40});
    stage->quit();
    const QString file = settingsFile();
    const QByteArray before = contents(file);
    QVERIFY(before.contains("rgbw\\red=10"));
    {
        const ReadOnlySettings readOnly;
        QVERIFY(readOnly.isReadable());
        QVERIFY(readOnly.isProtected());
        stage->restart();
        QCOMPARE(shown(hand()), Levels({10, 20, 30, 40}));
        hand().type(hand().red(), 99);
        hand().click(hand().stop());
        QCOMPARE(shown(hand()), dark);
        hand().click(hand().play());
        QCOMPARE(shown(hand()), Levels({99, 20, 30, 40})); // the program works on
        stage->quit();
    }
    QCOMPARE(contents(file), before); // and what was stored is still there
}

void ColoursTest::aDirectoryInPlaceOfTheFile()
{
    stage->quit();
    const QString file = settingsFile();
    QVERIFY(QFile::remove(file));
    QVERIFY(QDir().mkpath(file + u"/something"_s));
    stage->restart();
    typeLevels(hand(), {10, 20, 30, 40});
    hand().click(hand().stop());
    QCOMPARE(shown(hand()), dark);
    hand().click(hand().play());
    QCOMPARE(shown(hand()), Levels({10, 20, 30, 40}));
    stage->quit();
    QVERIFY(QFileInfo::exists(file + u"/something"_s));
    QVERIFY(QDir(file).removeRecursively());
}

// The same program plays the one that is killed.
int main(int argc, char **argv)
{
    takeIdentity();
    if (argc > 1 && qstrcmp(argv[1], killedSession) == 0)
        return sessionThatIsKilled(argc, argv);
    QApplication application(argc, argv);
    ColoursTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_colours.moc"
