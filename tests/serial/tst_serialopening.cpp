// SPDX-License-Identifier: MIT
#include "i18n/language.h"
#include "tests/serial/serialtest.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <termios.h>
#include <unistd.h>

using qx::ControllerHistory;
using qx::RawPeer;
using qx::SerialController;

namespace {

QString failed(const QString &reason)
{
    return QStringLiteral("macOS serial port failed: ") + reason;
}

QString complained(const QString &reason)
{
    return QStringLiteral("macOS serial port error: ") + reason;
}

} // namespace

class TestSerialOpening : public qx::SerialTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void openPortIsAnnounced();
    void portIsConfigured();
    void messagesNameThePort_data();
    void messagesNameThePort();
    void switchingPortsDisconnectsFirst();
    void samePortOpensAgain();
    void failedSwitchEndsClosed();
    void bytesFromBeforeAreDiscarded();

    void missingPort_data();
    void missingPort();
    void directoryIsNoPort();
    void fileIsNoPort();
    void forbiddenPort();
    void portInUse();
    void unpluggedBeforeOpening();
    void failureKeepsThePortsOwnWords();
    void failedConfiguration_data();
    void failedConfiguration();
    void complaintOfAPortThatOpensAllTheSame();

private:
    std::unique_ptr<QTemporaryDir> directory;
};

void TestSerialOpening::init()
{
    SerialTest::init();
    directory = std::make_unique<QTemporaryDir>();
    QVERIFY(directory->isValid());
}

void TestSerialOpening::cleanup()
{
    SerialTest::cleanup();
    directory.reset();
}

void TestSerialOpening::openPortIsAnnounced()
{
    QVERIFY(controller->open(peer->path(), 115200));
    QVERIFY(controller->isOpen());
    QCOMPARE(controller->portName(), peer->path());
    QCOMPARE(history->events, QStringList({qx::connectedTo(peer->path())}));

    history->clear();
    controller->close();
    QVERIFY(!controller->isOpen());
    QCOMPARE(controller->portName(), QString());
    QCOMPARE(history->events, QStringList({qx::disconnectedFrom(peer->path())}));
}

void TestSerialOpening::portIsConfigured()
{
    const int keeper = ::open(QFile::encodeName(peer->path()).constData(), O_RDWR | O_NOCTTY);
    const auto closeKeeper = qScopeGuard([keeper] { ::close(keeper); });
    termios settings{};
    QCOMPARE(::tcgetattr(keeper, &settings), 0);
    settings.c_cflag |= CSTOPB | PARENB | CRTSCTS;
    settings.c_iflag |= IXON | IXOFF;
    ::cfsetspeed(&settings, B9600);
    QCOMPARE(::tcsetattr(keeper, TCSANOW, &settings), 0);

    QVERIFY(controller->open(peer->path(), 115200));

    QCOMPARE(::tcgetattr(keeper, &settings), 0);
    QCOMPARE(::cfgetispeed(&settings), speed_t{B115200});
    QCOMPARE(::cfgetospeed(&settings), speed_t{B115200});
    QCOMPARE(settings.c_cflag & CSIZE, tcflag_t{CS8});
    QCOMPARE(settings.c_cflag & (CSTOPB | PARENB | CRTSCTS), tcflag_t{0});
    QCOMPARE(settings.c_iflag & (IXON | IXOFF | IXANY), tcflag_t{0});
    QCOMPARE(settings.c_lflag & (ICANON | ECHO), tcflag_t{0});
    QCOMPARE(controller->port().readBufferSize(), 4096);
}

void TestSerialOpening::messagesNameThePort_data()
{
    QTest::addColumn<qx::UiLanguage>("language");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("baudRate");
    QTest::addColumn<QString>("opened");
    QTest::addColumn<QString>("closed");

    const auto english = qx::UiLanguage::English;
    const auto chinese = qx::UiLanguage::Chinese;
    QTest::newRow("English") << english << QStringLiteral("port") << 115200
                             << QStringLiteral("Opened {}; host settings 115200 / 8N1")
                             << QStringLiteral("Disconnected from {}");
    QTest::newRow("Chinese") << chinese << QStringLiteral("port") << 115200
                             << QStringLiteral("已打开 {}，主机参数 115200 / 8N1")
                             << QStringLiteral("已断开 {}");
    QTest::newRow("another rate") << english << QStringLiteral("port") << 9600
                                  << QStringLiteral("Opened {}; host settings 9600 / 8N1")
                                  << QStringLiteral("Disconnected from {}");
    QTest::newRow("placeholders in the name")
        << english << QStringLiteral("%1%2%3 100%") << 115200
        << QStringLiteral("Opened {}; host settings 115200 / 8N1")
        << QStringLiteral("Disconnected from {}");
    QTest::newRow("name beyond ASCII") << english << QStringLiteral("播放器 é") << 115200
                                       << QStringLiteral("Opened {}; host settings 115200 / 8N1")
                                       << QStringLiteral("Disconnected from {}");
}

void TestSerialOpening::messagesNameThePort()
{
    QFETCH(qx::UiLanguage, language);
    QFETCH(QString, name);
    QFETCH(int, baudRate);
    QFETCH(QString, opened);
    QFETCH(QString, closed);
    const QString path = directory->filePath(name);
    QVERIFY(QFile::link(peer->path(), path));
    qx::Language::setCurrent(language);

    QVERIFY(controller->open(path, baudRate));
    QCOMPARE(controller->portName(), path);
    controller->close();

    const auto named = [&path](QString text) { return text.replace(QStringLiteral("{}"), path); };
    QCOMPARE(history->events, QStringList({QStringLiteral("connected: ") + named(opened),
                                           qx::disconnectionEvent(named(closed))}));
}

void TestSerialOpening::switchingPortsDisconnectsFirst()
{
    RawPeer other;
    QVERIFY(controller->open(peer->path(), 115200));
    QVERIFY(controller->open(other.path(), 115200));

    QCOMPARE(controller->portName(), other.path());
    QCOMPARE(history->events,
             QStringList({qx::connectedTo(peer->path()), qx::disconnectedFrom(peer->path()),
                          qx::connectedTo(other.path())}));
}

void TestSerialOpening::samePortOpensAgain()
{
    QVERIFY(controller->open(peer->path(), 115200));
    QVERIFY(controller->open(controller->portName(), 115200));

    QCOMPARE(controller->portName(), peer->path());
    QCOMPARE(history->events,
             QStringList({qx::connectedTo(peer->path()), qx::disconnectedFrom(peer->path()),
                          qx::connectedTo(peer->path())}));
}

void TestSerialOpening::failedSwitchEndsClosed()
{
    QVERIFY(controller->open(peer->path(), 115200));
    history->clear();
    const QString missing = directory->filePath(QStringLiteral("missing"));

    QVERIFY(!controller->open(missing, 115200));

    const QString reason = qt_error_string(ENOENT);
    QVERIFY(!controller->isOpen());
    QCOMPARE(controller->portName(), QString());
    QCOMPARE(history->events, QStringList({qx::disconnectedFrom(peer->path())}) +
                                  qx::failedOpen(missing, failed(reason), reason));
}

void TestSerialOpening::bytesFromBeforeAreDiscarded()
{
    QCOMPARE(peer->write("before\n"), 7);
    QVERIFY(controller->open(peer->path(), 115200));
    QCOMPARE(peer->write("after\n"), 6);
    QTRY_COMPARE(history->lines, QByteArrayList({"after"}));
}

void TestSerialOpening::missingPort_data()
{
    QTest::addColumn<qx::UiLanguage>("language");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("ownError");
    QTest::addColumn<QString>("openError");
    QTest::newRow("English") << qx::UiLanguage::English << QStringLiteral("none")
                             << QStringLiteral("macOS serial port failed: [reason]")
                             << QStringLiteral("Failed to open serial port {}: [reason]");
    QTest::newRow("Chinese") << qx::UiLanguage::Chinese << QStringLiteral("none")
                             << QStringLiteral("macOS串口失败：[reason]")
                             << QStringLiteral("打开串口 {} 失败：[reason]");
    QTest::newRow("placeholders in the name")
        << qx::UiLanguage::English << QStringLiteral("%2%1")
        << QStringLiteral("macOS serial port failed: [reason]")
        << QStringLiteral("Failed to open serial port {}: [reason]");
}

void TestSerialOpening::missingPort()
{
    QFETCH(qx::UiLanguage, language);
    QFETCH(QString, name);
    QFETCH(QString, ownError);
    QFETCH(QString, openError);
    qx::Language::setCurrent(language);
    const QString path = directory->filePath(name);
    const QString reason = qt_error_string(ENOENT);
    const auto filled = [&](QString text) {
        return text.replace(QStringLiteral("{}"), path).replace(QStringLiteral("[reason]"), reason);
    };

    QVERIFY(!controller->open(path, 115200));

    QVERIFY(!controller->isOpen());
    QCOMPARE(controller->portName(), QString());
    QCOMPARE(history->events,
             QStringList({qx::errorEvent(filled(ownError)), qx::errorEvent(filled(openError)),
                          qx::disconnectionEvent(filled(openError))}));
}

void TestSerialOpening::directoryIsNoPort()
{
    const QString reason = qt_error_string(EISDIR);

    QVERIFY(!controller->open(directory->path(), 115200));

    QCOMPARE(history->events, qx::failedOpen(directory->path(), complained(reason), reason));
}

void TestSerialOpening::fileIsNoPort()
{
    QFile file(directory->filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QString reason = qt_error_string(ENOTTY);

    QVERIFY(!controller->open(file.fileName(), 115200));

    // Neither exclusive use nor the settings are to be had.
    QCOMPARE(history->events, QStringList({qx::errorEvent(complained(reason))}) +
                                  qx::failedOpen(file.fileName(), complained(reason), reason));
    QVERIFY(!controller->isOpen());
}

void TestSerialOpening::forbiddenPort()
{
    // The superuser may open everything: be another user meanwhile.
    const uid_t user = ::geteuid();
    QVERIFY(QFile::setPermissions(directory->path(), QFile::ReadOwner | QFile::WriteOwner |
                                                         QFile::ExeOwner | QFile::ReadOther |
                                                         QFile::ExeOther));
    const QString path = directory->filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(peer->path(), path));
    QVERIFY(QFile::setPermissions(peer->path(), {}));
    if (user == 0)
        QCOMPARE(::seteuid(65534), 0);
    const bool opened = controller->open(path, 115200);
    if (user == 0)
        QCOMPARE(::seteuid(0), 0);

    const QString reason = qt_error_string(EACCES);
    QVERIFY(!opened);
    QCOMPARE(history->events, qx::failedOpen(path, failed(reason), reason));

    QVERIFY(QFile::setPermissions(peer->path(), QFile::ReadOwner | QFile::WriteOwner));
    QVERIFY(controller->open(path, 115200));
}

void TestSerialOpening::portInUse()
{
    SerialController owner;
    ControllerHistory ownersHistory(owner);
    QVERIFY(owner.open(peer->path(), 115200));
    ownersHistory.clear();
    const QString reason = QSerialPort::tr("Permission error while locking the device");

    QVERIFY(!controller->open(peer->path(), 115200));

    QCOMPARE(history->events, qx::failedOpen(peer->path(), failed(reason), reason));
    QCOMPARE(peer->write("for the owner\n"), 14);
    QTRY_COMPARE(ownersHistory.lines, QByteArrayList({"for the owner"}));
    QCOMPARE(owner.send("from the owner"), 14);
    QTRY_COMPARE(peer->received(), QByteArray("from the owner"));
    QCOMPARE(ownersHistory.events, QStringList());

    owner.close();
    QVERIFY(controller->open(peer->path(), 115200));
}

void TestSerialOpening::unpluggedBeforeOpening()
{
    controller->port().beforeOpen = [this] { peer->unplug(); };
    const QString reason = qt_error_string(ENOENT);

    QVERIFY(!controller->open(peer->path(), 115200));

    QCOMPARE(history->events, qx::failedOpen(peer->path(), failed(reason), reason));
    QVERIFY(!controller->isOpen());
}

// A receiver of the first message may use the controller, which changes the port's last error.
void TestSerialOpening::failureKeepsThePortsOwnWords()
{
    connect(
        controller.get(), &SerialController::errorOccurred, this,
        [this] { controller->port().setErrorString(QStringLiteral("another matter")); },
        Qt::SingleShotConnection);
    const QString missing = directory->filePath(QStringLiteral("missing"));
    const QString reason = qt_error_string(ENOENT);

    QVERIFY(!controller->open(missing, 115200));

    QCOMPARE(history->events, qx::failedOpen(missing, failed(reason), reason));
}

void TestSerialOpening::failedConfiguration_data()
{
    QTest::addColumn<qx::UiLanguage>("language");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");
    QTest::newRow("English") << qx::UiLanguage::English << QStringLiteral("/dev/port")
                             << QStringLiteral(
                                    "Failed to configure serial port /dev/port as 115200/8N1: ");
    QTest::newRow("Chinese") << qx::UiLanguage::Chinese << QStringLiteral("/dev/port")
                             << QStringLiteral("设置串口 /dev/port 为 115200/8N1 失败：");
    QTest::newRow("placeholders in the name")
        << qx::UiLanguage::English << QStringLiteral("/dev/%2%3")
        << QStringLiteral("Failed to configure serial port /dev/%2%3 as 115200/8N1: ");
}

// Only an open port refuses a setting: this one believes to be open from the rate on, and the
// system refuses the data bits.
void TestSerialOpening::failedConfiguration()
{
    QFETCH(qx::UiLanguage, language);
    QFETCH(QString, name);
    QFETCH(QString, message);
    qx::Language::setCurrent(language);
    connect(&controller->port(), &QSerialPort::baudRateChanged, this,
            [this] { controller->port().pretendToBeOpen(); });

    QVERIFY(!controller->open(name, 115200));

    const QString whole = message + qt_error_string(EBADF);
    QVERIFY(!controller->isOpen());
    QCOMPARE(controller->portName(), QString());
    QCOMPARE(history->events.mid(history->events.size() - 2),
             QStringList({qx::errorEvent(whole), qx::disconnectionEvent(whole)}));
    history->contradictions.clear(); // the loss of a port that only pretended to be open
}

void TestSerialOpening::complaintOfAPortThatOpensAllTheSame()
{
    controller->port().beforeOpen = [this] {
        controller->port().fail(QSerialPort::UnknownError, QStringLiteral("not exclusive"));
    };

    QVERIFY(controller->open(peer->path(), 115200));

    QVERIFY(controller->isOpen());
    QCOMPARE(history->events,
             QStringList({qx::errorEvent(complained(QStringLiteral("not exclusive"))),
                          qx::connectedTo(peer->path())}));
}

QTEST_GUILESS_MAIN(TestSerialOpening)
#include "tst_serialopening.moc"
