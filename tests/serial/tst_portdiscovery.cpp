// SPDX-License-Identifier: MIT
#include "i18n/language.h"
#include "serial/portdiscovery.h"
#include "tests/serial/controllerhistory.h"
#include "tests/serial/rawpeer.h"

#include <QFile>
#include <QRegularExpression>
#include <QSerialPortInfo>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using qx::ControllerHistory;
using qx::PortDescription;
using qx::PortRule;
using qx::RawPeer;
using qx::SerialController;
using qx::SerialPortEntry;

namespace {

const char variable[] = "TESSALY_SERIAL_PORTS";

PortDescription portAt(const QString &location)
{
    PortDescription port;
    port.systemLocation = location;
    return port;
}

QList<PortDescription> portsAt(const QStringList &locations)
{
    QList<PortDescription> ports;
    for (const QString &location : locations)
        ports.append(portAt(location));
    return ports;
}

QStringList namesOf(const QList<SerialPortEntry> &entries)
{
    QStringList names;
    for (const SerialPortEntry &entry : entries)
        names.append(entry.portName);
    return names;
}

QString only(const QList<SerialPortEntry> &entries)
{
    return entries.size() == 1 ? entries.first().displayText
                               : QStringLiteral("%1 entries").arg(entries.size());
}

void request(const QStringList &paths)
{
    qputenv(variable, QFile::encodeName(paths.join(QLatin1Char(':'))));
}

} // namespace

class TestPortDiscovery : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void ruleChoosesThePorts_data();
    void ruleChoosesThePorts();
    void requestedPortIsListedUnderEveryRule_data();
    void requestedPortIsListedUnderEveryRule();
    void labels_data();
    void labels();
    void suffixes_data();
    void suffixes();
    void entryKeepsWhatIsKnown();
    void unknownIdentifiersAreZero();
    void sortingIgnoresTheCase();
    void noPorts();

    void requestedPaths();
    void requestedPortLooksLikeThis();
    void requestedPortIsListedOnce();
    void requestOfAListedPortKeepsItsDescription();
    void variableIsReadEachTime();
    void systemPortsObeyTheRule();
    void listingLeavesTheOpenPortAlone();
};

void TestPortDiscovery::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    qx::Language::setCurrent(qx::UiLanguage::English);
    qunsetenv(variable);
}

void TestPortDiscovery::cleanup()
{
    qunsetenv(variable);
}

void TestPortDiscovery::ruleChoosesThePorts_data()
{
    QTest::addColumn<PortRule>("rule");
    QTest::addColumn<QStringList>("ports");
    QTest::addColumn<QStringList>("candidates");

    const auto path = [](const char *name) { return QLatin1String("/dev/") + QLatin1String(name); };

    QTest::newRow("macOS: call-out devices only")
        << PortRule::Mac
        << QStringList{path("cu.usbmodem2"), path("cu.Bluetooth-Incoming-Port"),
                       path("tty.usbmodem2")}
        << QStringList{path("cu.Bluetooth-Incoming-Port"), path("cu.usbmodem2")};
    QTest::newRow("macOS: the case counts")
        << PortRule::Mac << QStringList{path("CU.a"), path("Cu.b"), path("cu.c")}
        << QStringList{path("cu.c")};
    QTest::newRow("macOS: at the start only")
        << PortRule::Mac
        << QStringList{QStringLiteral("/x/dev/cu.a"), QStringLiteral("cu.b"), path("cu"),
                       path("cu.")}
        << QStringList{path("cu.")};
    QTest::newRow("macOS: no Linux names")
        << PortRule::Mac << QStringList{path("ttyACM0"), path("ttyUSB0")} << QStringList{};

    QTest::newRow("Linux: USB serial ports only")
        << PortRule::Linux
        << QStringList{path("ttyS0"),   path("ttyUSB1"), path("ttyACM0"),     path("ttyAMA0"),
                       path("rfcomm0"), path("pts/3"),   path("cu.usbmodem1")}
        << QStringList{path("ttyACM0"), path("ttyUSB1")};
    QTest::newRow("Linux: the case counts")
        << PortRule::Linux << QStringList{path("ttyacm0"), path("TTYUSB0")} << QStringList{};
    QTest::newRow("Linux: at the start only")
        << PortRule::Linux
        << QStringList{QStringLiteral("ttyACM0"), QStringLiteral("/x/dev/ttyUSB0")}
        << QStringList{};

    QTest::newRow("Windows: every port")
        << PortRule::Windows
        << QStringList{QStringLiteral("\\\\.\\COM3"), QStringLiteral("\\\\.\\COM12"),
                       QStringLiteral("\\\\.\\CNCA0")}
        << QStringList{QStringLiteral("\\\\.\\CNCA0"), QStringLiteral("\\\\.\\COM12"),
                       QStringLiteral("\\\\.\\COM3")};
}

void TestPortDiscovery::ruleChoosesThePorts()
{
    QFETCH(PortRule, rule);
    QFETCH(QStringList, ports);
    QFETCH(QStringList, candidates);
    QCOMPARE(namesOf(qx::portEntries(portsAt(ports), rule)), candidates);
}

void TestPortDiscovery::requestedPortIsListedUnderEveryRule_data()
{
    QTest::addColumn<PortRule>("rule");
    QTest::newRow("macOS") << PortRule::Mac;
    QTest::newRow("Linux") << PortRule::Linux;
    QTest::newRow("Windows") << PortRule::Windows;
}

void TestPortDiscovery::requestedPortIsListedUnderEveryRule()
{
    QFETCH(PortRule, rule);
    PortDescription port = portAt(QStringLiteral("/tmp/player"));
    port.requested = true;
    QCOMPARE(namesOf(qx::portEntries({port}, rule)), QStringList({QStringLiteral("/tmp/player")}));
}

void TestPortDiscovery::labels_data()
{
    QTest::addColumn<qx::UiLanguage>("language");
    QTest::addColumn<QString>("location");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("text");

    const auto english = qx::UiLanguage::English;
    const auto chinese = qx::UiLanguage::Chinese;
    const QString port = QStringLiteral("/dev/cu.usbmodem1101");
    QTest::newRow("described") << english << port << QStringLiteral("Demo Unit")
                               << QStringLiteral("/dev/cu.usbmodem1101 — Demo Unit");
    QTest::newRow("described, in Chinese") << chinese << port << QStringLiteral("Demo Unit")
                                           << QStringLiteral("/dev/cu.usbmodem1101 — Demo Unit");
    QTest::newRow("white space around") << english << port << QStringLiteral(" \t Demo  Unit\n ")
                                        << QStringLiteral("/dev/cu.usbmodem1101 — Demo  Unit");
    QTest::newRow("not described") << english << port << QString()
                                   << QStringLiteral("/dev/cu.usbmodem1101 — macOS serial port");
    QTest::newRow("blank") << english << port << QStringLiteral(" \t ")
                           << QStringLiteral("/dev/cu.usbmodem1101 — macOS serial port");
    QTest::newRow("not described, in Chinese")
        << chinese << port << QString() << QStringLiteral("/dev/cu.usbmodem1101 — macOS串口");
    QTest::newRow("placeholders") << english << QStringLiteral("/dev/cu.%2%1")
                                  << QStringLiteral("100%1 %2")
                                  << QStringLiteral("/dev/cu.%2%1 — 100%1 %2");
}

void TestPortDiscovery::labels()
{
    QFETCH(qx::UiLanguage, language);
    QFETCH(QString, location);
    QFETCH(QString, description);
    QFETCH(QString, text);
    qx::Language::setCurrent(language);
    PortDescription port = portAt(location);
    port.description = description;

    const QList<SerialPortEntry> entries = qx::portEntries({port}, PortRule::Mac);

    QCOMPARE(only(entries), text);
    QCOMPARE(entries.first().description, description.trimmed());
    QCOMPARE(entries.first().portName, location);
}

void TestPortDiscovery::suffixes_data()
{
    QTest::addColumn<bool>("hasVendor");
    QTest::addColumn<bool>("hasProduct");
    QTest::addColumn<int>("vendor");
    QTest::addColumn<int>("product");
    QTest::addColumn<QString>("suffix");

    QTest::newRow("both") << true << true << 0x1A2B << 0x00FE << QStringLiteral(" [1A2B:00FE]");
    QTest::newRow("upper case, padded")
        << true << true << 0x0403 << 0xabcd << QStringLiteral(" [0403:ABCD]");
    QTest::newRow("known to be zero") << true << true << 0 << 0 << QStringLiteral(" [0000:0000]");
    QTest::newRow("largest") << true << true << 0xFFFF << 0xFFFF << QStringLiteral(" [FFFF:FFFF]");
    QTest::newRow("vendor only") << true << false << 0x1A2B << 0x00FE << QString();
    QTest::newRow("product only") << false << true << 0x1A2B << 0x00FE << QString();
    QTest::newRow("neither") << false << false << 0x1A2B << 0x00FE << QString();
}

void TestPortDiscovery::suffixes()
{
    QFETCH(bool, hasVendor);
    QFETCH(bool, hasProduct);
    QFETCH(int, vendor);
    QFETCH(int, product);
    QFETCH(QString, suffix);
    PortDescription port = portAt(QStringLiteral("/dev/cu.usbmodem1101"));
    port.description = QStringLiteral("Demo Unit");
    port.hasVendorId = hasVendor;
    port.hasProductId = hasProduct;
    port.vendorId = static_cast<quint16>(vendor);
    port.productId = static_cast<quint16>(product);

    QCOMPARE(only(qx::portEntries({port}, PortRule::Mac)),
             QStringLiteral("/dev/cu.usbmodem1101 — Demo Unit") + suffix);
}

void TestPortDiscovery::entryKeepsWhatIsKnown()
{
    PortDescription port = portAt(QStringLiteral("/dev/ttyACM0"));
    port.description = QStringLiteral(" Demo Unit ");
    port.manufacturer = QStringLiteral("\tA Maker ");
    port.vendorId = 0x303A;
    port.productId = 0x1001;
    port.hasVendorId = true;
    port.hasProductId = true;

    const QList<SerialPortEntry> entries = qx::portEntries({port}, PortRule::Linux);

    QCOMPARE(entries.size(), 1);
    const SerialPortEntry &entry = entries.first();
    QCOMPARE(entry.portName, QStringLiteral("/dev/ttyACM0"));
    QCOMPARE(entry.description, QStringLiteral("Demo Unit"));
    QCOMPARE(entry.manufacturer, QStringLiteral("A Maker"));
    QCOMPARE(entry.vendorId, quint16{0x303A});
    QCOMPARE(entry.productId, quint16{0x1001});
    QVERIFY(entry.hasVendorId && entry.hasProductId);
    QVERIFY2(!entry.displayText.contains(QStringLiteral("Maker")), "not shown");
}

void TestPortDiscovery::unknownIdentifiersAreZero()
{
    PortDescription port = portAt(QStringLiteral("/dev/ttyACM0"));
    port.vendorId = 0x303A;
    port.productId = 0x1001;
    port.hasVendorId = true;

    const QList<SerialPortEntry> entries = qx::portEntries({port}, PortRule::Linux);

    QCOMPARE(entries.size(), 1);
    QVERIFY(entries.first().hasVendorId);
    QVERIFY(!entries.first().hasProductId);
    QCOMPARE(entries.first().vendorId, quint16{0x303A});
    QCOMPARE(entries.first().productId, quint16{0});
}

void TestPortDiscovery::sortingIgnoresTheCase()
{
    QStringList sorted{QStringLiteral("COM1"),   QStringLiteral("com10"),  QStringLiteral("COM2"),
                       QStringLiteral("Port a"), QStringLiteral("port B"), QStringLiteral("Port c"),
                       QStringLiteral("Ärger")};
    QStringList shuffled{sorted.at(4), sorted.at(6), sorted.at(0), sorted.at(5),
                         sorted.at(2), sorted.at(1), sorted.at(3)};
    QCOMPARE(namesOf(qx::portEntries(portsAt(shuffled), PortRule::Windows)), sorted);
    std::reverse(shuffled.begin(), shuffled.end());
    QCOMPARE(namesOf(qx::portEntries(portsAt(shuffled), PortRule::Windows)), sorted);
}

void TestPortDiscovery::noPorts()
{
    QVERIFY(qx::portEntries({}, PortRule::Windows).isEmpty());
    QVERIFY(qx::portEntries(portsAt({QStringLiteral("/dev/ttyS0")}), PortRule::Linux).isEmpty());
}

void TestPortDiscovery::requestedPaths()
{
#ifdef Q_OS_LINUX
    RawPeer peer;
    QTemporaryDir directory;
    const QString existing = directory.filePath(QStringLiteral("播放器 %1"));
    const QString dangling = directory.filePath(QStringLiteral("dangling"));
    const QString absent = directory.filePath(QStringLiteral("absent"));
    QVERIFY(QFile::link(peer.path(), existing));
    QVERIFY(QFile::link(absent, dangling));
    const SerialController controller;
    const QStringList before = namesOf(controller.availablePorts());

    request({QString(), existing, absent, QString(), dangling, peer.path(), existing, QString()});

    QStringList after = namesOf(controller.availablePorts());
    for (const QString &name : before)
        QVERIFY(after.removeOne(name));
    QStringList expected{existing, peer.path()};
    std::sort(expected.begin(), expected.end(), [](const QString &a, const QString &b) {
        return a.compare(b, Qt::CaseInsensitive) < 0;
    });
    QCOMPARE(after, expected);
#else
    QSKIP("the variable is for Linux");
#endif
}

void TestPortDiscovery::requestedPortLooksLikeThis()
{
#ifdef Q_OS_LINUX
    RawPeer peer;
    request({peer.path()});
    const QList<SerialPortEntry> entries = SerialController().availablePorts();
    const auto entry = std::find_if(entries.begin(), entries.end(), [&peer](const auto &candidate) {
        return candidate.portName == peer.path();
    });
    QVERIFY(entry != entries.end());
    QCOMPARE(entry->displayText, peer.path() + QStringLiteral(" — TESSALY_SERIAL_PORTS"));
    QCOMPARE(entry->description, QStringLiteral("TESSALY_SERIAL_PORTS"));
    QCOMPARE(entry->manufacturer, QString());
    QVERIFY(!entry->hasVendorId && !entry->hasProductId);

    SerialController controller;
    QVERIFY(controller.open(entry->portName, 115200));
#else
    QSKIP("the variable is for Linux");
#endif
}

void TestPortDiscovery::requestedPortIsListedOnce()
{
#ifdef Q_OS_LINUX
    RawPeer peer;
    request({peer.path(), peer.path(), peer.path()});
    QCOMPARE(namesOf(SerialController().availablePorts()).count(peer.path()), 1);
#else
    QSKIP("the variable is for Linux");
#endif
}

void TestPortDiscovery::requestOfAListedPortKeepsItsDescription()
{
    const QList<QSerialPortInfo> infos = QSerialPortInfo::availablePorts();
    if (infos.isEmpty() || qx::systemPortRule() != PortRule::Linux)
        QSKIP("needs Linux with a port that the system lists");
    const QSerialPortInfo &info = infos.first();
    request({info.systemLocation()});

    int found = 0;
    const QList<SerialPortEntry> entries = SerialController().availablePorts();
    for (const SerialPortEntry &entry : entries) {
        if (entry.portName != info.systemLocation())
            continue;
        ++found;
        QCOMPARE(entry.description, info.description().trimmed());
    }
    QCOMPARE(found, 1);
}

void TestPortDiscovery::variableIsReadEachTime()
{
#ifdef Q_OS_LINUX
    RawPeer peer;
    const SerialController controller;
    request({peer.path()});
    QVERIFY(namesOf(controller.availablePorts()).contains(peer.path()));
    peer.unplug();
    QVERIFY(!namesOf(controller.availablePorts()).contains(peer.path()));
#else
    QSKIP("the variable is for Linux");
#endif
}

void TestPortDiscovery::systemPortsObeyTheRule()
{
#if defined(Q_OS_MACOS)
    QCOMPARE(qx::systemPortRule(), PortRule::Mac);
#elif defined(Q_OS_WIN)
    QCOMPARE(qx::systemPortRule(), PortRule::Windows);
#else
    QCOMPARE(qx::systemPortRule(), PortRule::Linux);
#endif
    QStringList listed;
    const QList<QSerialPortInfo> infos = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &info : infos)
        listed.append(info.systemLocation());
    QCOMPARE(namesOf(SerialController().availablePorts()),
             namesOf(qx::portEntries(portsAt(listed), qx::systemPortRule())));
}

void TestPortDiscovery::listingLeavesTheOpenPortAlone()
{
    RawPeer peer;
    SerialController controller;
    request({peer.path()});
    const QStringList whileClosed = namesOf(controller.availablePorts());
    QVERIFY(controller.open(peer.path(), 115200));
    ControllerHistory history(controller);

    QCOMPARE(namesOf(controller.availablePorts()), whileClosed);

    QVERIFY(controller.isOpen());
    QCOMPARE(controller.portName(), peer.path());
    QCOMPARE(history.events, QStringList());
    QCOMPARE(peer.write("still\n"), 6);
    QTRY_COMPARE(history.lines, QByteArrayList({"still"}));
}

QTEST_GUILESS_MAIN(TestPortDiscovery)
#include "tst_portdiscovery.moc"
