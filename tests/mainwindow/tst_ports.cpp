// SPDX-License-Identifier: MIT
#include "tests/support/stage.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace qx::test;

namespace {

// The ports that a test asks for beside those of the machine it runs on: files will do, for
// listing opens nothing.
class Ports
{
public:
    QString add(const QString &name)
    {
        const QString path = directory.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            qFatal("no room for a port");
        paths.append(path);
        announce();
        return path;
    }
    void remove(const QString &path) { QFile::remove(path); }

    // Also names the paths that do not exist (any more).
    void announce() const { qputenv("TESSALY_SERIAL_PORTS", paths.join(u':').toUtf8()); }

    QTemporaryDir directory;
    QStringList paths;
};

} // namespace

class PortsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void listsWhatIsThere();
    void anEmptyList_data();
    void anEmptyList();
    void keepsTheChoice();
    void aVanishedChoiceGivesWayToTheFirst();
    void tellsNamesApartByCase();
    void refreshingWhileConnected();
    void anotherLanguageListsAnewWithoutAWord();

private:
    Operator &hand() { return stage->hand(); }
    QStringList listed();
    void refresh();
    QString foundLine();

    std::unique_ptr<Ports> requested;
    std::unique_ptr<Stage> stage;
    QStringList machinePorts; // what this machine has of its own, usually nothing
};

void PortsTest::init()
{
    stage = std::make_unique<Stage>();
    requested = std::make_unique<Ports>();
    requested->announce();
    hand().setDemo(false);
    refresh();
    machinePorts = listed();
}

void PortsTest::cleanup()
{
    stage.reset();
    requested.reset();
}

QStringList PortsTest::listed()
{
    QStringList paths;
    for (int i = 0; i < hand().ports()->count(); ++i)
        paths.append(hand().ports()->itemData(i).toString());
    return paths;
}

void PortsTest::refresh()
{
    hand().click(hand().clearLog());
    hand().click(hand().refresh());
}

QString PortsTest::foundLine()
{
    return u"SYS   Found %1 serial port(s)"_s.arg(hand().ports()->count());
}

void PortsTest::listsWhatIsThere()
{
    const QString b = requested->add(u"b"_s);
    const QString a = requested->add(u"A"_s);
    const QString c = requested->add(u"C%2 100%1"_s); // no place for another text
    refresh();
    QStringList expected = machinePorts + QStringList{a, b, c};
    expected.sort(Qt::CaseInsensitive);
    QCOMPARE(listed(), expected);
    QCOMPARE(hand().log(), QStringList({foundLine()}));
    const int index = hand().ports()->findData(b);
    QCOMPARE(hand().ports()->itemText(index), u"%1 — TESSALY_SERIAL_PORTS"_s.arg(b));
    QVERIFY(hand().ports()->itemIcon(index).isNull());
    QCOMPARE(hand().ports()->itemText(hand().ports()->findData(c)),
             c + u" — TESSALY_SERIAL_PORTS"_s);
}

void PortsTest::anEmptyList_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("none");
    QTest::addColumn<QString>("unusable");
    QTest::newRow("English") << u"en"_s
                             << u"SYS   No serial port found. Switch the ESP to USB serial mode on "
                                "the Net page first"_s
                             << u"ERR   No usable serial port found"_s;
    QTest::newRow("Chinese") << u"zh_CN"_s
                             << u"SYS   未发现串口；ESP 需先在 Net 页面切到 USB 串口模式"_s
                             << u"ERR   未发现可用串口"_s;
}

void PortsTest::anEmptyList()
{
    QFETCH(QString, language);
    QFETCH(QString, none);
    QFETCH(QString, unusable);
    if (!machinePorts.isEmpty())
        QSKIP("this machine has serial ports of its own");
    stage = std::make_unique<Stage>(language);
    requested->announce();
    hand().setDemo(false);
    refresh();
    QCOMPARE(hand().log(), QStringList({none}));
    QCOMPARE(hand().ports()->count(), 0);
    hand().click(hand().connectButton());
    QCOMPARE(hand().log(), QStringList({none, unusable}));
    QVERIFY(!hand().lampIsLit());

    const QString path = requested->add(u"one"_s);
    refresh();
    QCOMPARE(hand().ports()->currentData().toString(), path);
}

void PortsTest::keepsTheChoice()
{
    requested->add(u"b"_s);
    const QString d = requested->add(u"d"_s);
    hand().choosePort(d);
    requested->add(u"a"_s); // before it and behind it in the list
    requested->add(u"z"_s);
    refresh();
    QCOMPARE(hand().ports()->currentData().toString(), d);
    QCOMPARE(hand().log(), QStringList({foundLine()}));
}

void PortsTest::aVanishedChoiceGivesWayToTheFirst()
{
    requested->add(u"a"_s);
    const QString b = requested->add(u"b"_s);
    hand().choosePort(b);
    requested->remove(b);
    refresh();
    QVERIFY(!listed().contains(b));
    QCOMPARE(hand().ports()->currentIndex(), 0);
}

void PortsTest::tellsNamesApartByCase()
{
    const QString capital = requested->add(u"PLAYER"_s);
    const QString small = requested->add(u"player"_s);
    for (const QString &name : {capital, small}) {
        hand().choosePort(name);
        refresh();
        QCOMPARE(hand().ports()->currentData().toString(), name);
    }
}

// The list changes, the open port does not.
void PortsTest::refreshingWhileConnected()
{
    qputenv("TESSALY_SERIAL_PORTS", stage->portPath().toUtf8());
    QVERIFY(stage->connectPlayer());
    requested->add(u"other"_s); // and the player's port is no longer asked for
    refresh();
    QVERIFY(!listed().contains(stage->portPath()));
    QCOMPARE(hand().linkText()->text(), u"Handshake complete"_s);
    QCOMPARE(hand().panelConnection()->text(), stage->portPath());
    hand().click(hand().sendFrame());
    QTRY_COMPARE(stage->player().frames().size(), 1);
    QTRY_VERIFY(hand().row(6)->text().endsWith(u"OK 1 / FAIL 0"_s));
}

void PortsTest::anotherLanguageListsAnewWithoutAWord()
{
    const QString a = requested->add(u"a"_s);
    const QString b = requested->add(u"b"_s);
    hand().choosePort(b);
    requested->remove(a);
    hand().click(hand().clearLog());
    hand().chooseLanguage(qx::UiLanguage::Chinese);
    QVERIFY(!listed().contains(a));
    QCOMPARE(hand().ports()->currentData().toString(), b);
    QCOMPARE(hand().log(), QStringList({u"SYS   界面语言已切换为中文"_s}));
}

QTEST_MAIN(PortsTest)
#include "tst_ports.moc"
