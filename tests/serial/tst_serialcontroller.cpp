// SPDX-License-Identifier: MIT
#include "i18n/language.h"
#include "tests/serial/controllerhistory.h"
#include "tests/serial/rawpeer.h"
#include "tests/serial/scriptedport.h"

#include <QMetaMethod>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <memory>

#ifdef Q_OS_LINUX
#include <cstdarg>
#include <dlfcn.h>
#include <sys/ioctl.h>

namespace {
bool controlLinesTouched = false;
}

// Stands between the serial port and the system: a pseudo-terminal has no control lines to look at.
extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    if (request == TIOCMSET || request == TIOCMBIS || request == TIOCMBIC)
        controlLinesTouched = true;
    using Ioctl = int (*)(int, unsigned long, void *);
    static const auto system = reinterpret_cast<Ioctl>(::dlsym(RTLD_NEXT, "ioctl"));
    return system(descriptor, request, argument);
}
#endif

using qx::ControllerHistory;
using qx::RawPeer;
using qx::ScriptedController;
using qx::ScriptedPort;
using qx::SerialController;

class TestSerialController : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void signalsAndSlotAreTheInterface();
    void startsClosed();
    void closingAClosedPortSaysNothing();
    void destructionDisconnects();
    void destructionOfAClosedControllerSaysNothing();
    void reopeningInsideTheDestructorIsSafe();
    void portErrors_data();
    void portErrors();
    void portErrorsSpeakChinese();
    void portErrorsOfAClosedPort_data();
    void portErrorsOfAClosedPort();
    void nothingRunsWhileClosed();
    void controlLinesAreLeftAlone();
};

void TestSerialController::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    qx::Language::setCurrent(qx::UiLanguage::English);
}

void TestSerialController::signalsAndSlotAreTheInterface()
{
    const QMetaObject &meta = SerialController::staticMetaObject;
    QByteArrayList methods;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QMetaMethod method = meta.method(index);
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        if (!isSignal) {
            QCOMPARE(method.methodType(), QMetaMethod::Slot);
            QCOMPARE(method.access(), QMetaMethod::Private);
        }
        methods.append(QByteArray(isSignal ? "signal " : "slot ") + method.typeName() + ' ' +
                       method.methodSignature() + ' ' + method.parameterNames().join(','));
    }

    QCOMPARE(methods, QByteArrayList({
                          "signal void connectionChanged(bool,QString) connected,message",
                          "signal void lineReceived(QByteArray) line",
                          "signal void rawReceived(QByteArray) data",
                          "signal void bytesTransmitted(qlonglong) count",
                          "signal void errorOccurred(QString) message",
                          "slot void readAvailableData() ",
                      }));
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
}

void TestSerialController::startsClosed()
{
    QObject owner;
    const auto *controller = new SerialController(&owner);
    QCOMPARE(controller->parent(), &owner);
    QVERIFY(!controller->isOpen());
    QCOMPARE(controller->portName(), QString());
}

void TestSerialController::closingAClosedPortSaysNothing()
{
    RawPeer peer;
    SerialController controller;
    ControllerHistory history(controller);
    controller.close();
    QCOMPARE(history.events, QStringList());

    QVERIFY(controller.open(peer.path(), 115200));
    controller.close();
    history.clear();
    controller.close();
    QCOMPARE(history.events, QStringList());
}

void TestSerialController::destructionDisconnects()
{
    RawPeer peer;
    auto controller = std::make_unique<SerialController>();
    ControllerHistory history(*controller);
    QVERIFY(controller->open(peer.path(), 115200));
    history.clear();

    controller.reset();

    QCOMPARE(history.events, QStringList({qx::disconnectedFrom(peer.path())}));
    QCOMPARE(history.contradictions, QStringList());
}

void TestSerialController::destructionOfAClosedControllerSaysNothing()
{
    auto controller = std::make_unique<SerialController>();
    ControllerHistory history(*controller);
    controller.reset();
    QCOMPARE(history.events, QStringList());
}

void TestSerialController::reopeningInsideTheDestructorIsSafe()
{
    RawPeer peer;
    auto controller = std::make_unique<SerialController>();
    QVERIFY(controller->open(peer.path(), 115200));
    connect(controller.get(), &SerialController::connectionChanged, this,
            [&peer, reopened = controller.get()](bool connected) {
                if (!connected)
                    reopened->open(peer.path(), 115200);
            });

    controller.reset();

    SerialController next;
    QVERIFY2(next.open(peer.path(), 115200), "the destroyed controller still holds the port");
}

void TestSerialController::portErrors_data()
{
    QTest::addColumn<QSerialPort::SerialPortError>("error");
    QTest::addColumn<QStringList>("events");
    QTest::addColumn<bool>("staysOpen");

    const QString lost = QStringLiteral("macOS serial port failed: so 100%1 it is");
    const QStringList fatal{qx::errorEvent(lost), qx::disconnectionEvent(lost)};
    const QStringList reported{
        qx::errorEvent(QStringLiteral("macOS serial port error: so 100%1 it is"))};

    QTest::newRow("none") << QSerialPort::NoError << QStringList() << true;
    QTest::newRow("not open") << QSerialPort::NotOpenError << QStringList() << true;
    QTest::newRow("device not found") << QSerialPort::DeviceNotFoundError << fatal << false;
    QTest::newRow("permission") << QSerialPort::PermissionError << fatal << false;
    QTest::newRow("resource") << QSerialPort::ResourceError << fatal << false;
    QTest::newRow("open") << QSerialPort::OpenError << reported << true;
    QTest::newRow("write") << QSerialPort::WriteError << reported << true;
    QTest::newRow("read") << QSerialPort::ReadError << reported << true;
    QTest::newRow("unsupported operation")
        << QSerialPort::UnsupportedOperationError << reported << true;
    QTest::newRow("unknown") << QSerialPort::UnknownError << reported << true;
    QTest::newRow("timeout") << QSerialPort::TimeoutError << reported << true;
}

void TestSerialController::portErrors()
{
    QFETCH(QSerialPort::SerialPortError, error);
    QFETCH(QStringList, events);
    QFETCH(bool, staysOpen);
    RawPeer peer;
    ScriptedController controller;
    ControllerHistory history(controller);
    QVERIFY(controller.open(peer.path(), 115200));
    history.clear();

    controller.port().fail(error, QStringLiteral("so 100%1 it is"));

    QCOMPARE(history.events, events);
    QCOMPARE(history.contradictions, QStringList());
    QCOMPARE(controller.isOpen(), staysOpen);
    QCOMPARE(controller.portName(), staysOpen ? peer.path() : QString());
}

void TestSerialController::portErrorsSpeakChinese()
{
    qx::Language::setCurrent(qx::UiLanguage::Chinese);
    RawPeer peer;
    ScriptedController controller;
    ControllerHistory history(controller);
    QVERIFY(controller.open(peer.path(), 115200));
    history.clear();

    controller.port().fail(QSerialPort::ReadError, QStringLiteral("reading"));
    controller.port().deliver(QByteArray(4097, 'x'));
    controller.port().fail(QSerialPort::ResourceError, QStringLiteral("gone"));

    const QString lost = QStringLiteral("macOS串口失败：gone");
    QCOMPARE(history.events,
             QStringList({qx::errorEvent(QStringLiteral("macOS串口错误：reading")),
                          qx::errorEvent(QStringLiteral("ESP文本响应缓存超过4 KiB，已清空")),
                          qx::errorEvent(lost), qx::disconnectionEvent(lost)}));
}

void TestSerialController::portErrorsOfAClosedPort_data()
{
    QTest::addColumn<QSerialPort::SerialPortError>("error");
    QTest::addColumn<QStringList>("events");
    QTest::newRow("not open") << QSerialPort::NotOpenError << QStringList();
    QTest::newRow("resource") << QSerialPort::ResourceError
                              << QStringList({qx::errorEvent(
                                     QStringLiteral("macOS serial port failed: so it is"))});
    QTest::newRow("unknown") << QSerialPort::UnknownError
                             << QStringList({qx::errorEvent(
                                    QStringLiteral("macOS serial port error: so it is"))});
}

void TestSerialController::portErrorsOfAClosedPort()
{
    QFETCH(QSerialPort::SerialPortError, error);
    QFETCH(QStringList, events);
    ScriptedController controller;
    ControllerHistory history(controller);

    controller.port().fail(error, QStringLiteral("so it is"));

    QCOMPARE(history.events, events);
}

void TestSerialController::nothingRunsWhileClosed()
{
    RawPeer peer;
    SerialController controller;
    const auto *timer = controller.findChild<QTimer *>();
    QVERIFY(timer);
    QVERIFY(!timer->isActive());
    QVERIFY(controller.open(peer.path(), 115200));
    QVERIFY(timer->isActive());
    controller.close();
    QVERIFY(!timer->isActive());

    QVERIFY(controller.open(peer.path(), 115200));
    peer.unplug();
    QTRY_VERIFY(!controller.isOpen());
    QVERIFY(!timer->isActive());
    QVERIFY(!controller.open(peer.path(), 115200));
    QVERIFY(!timer->isActive());
}

// One of the two alone can reset the player's chip.
void TestSerialController::controlLinesAreLeftAlone()
{
#ifdef Q_OS_LINUX
    RawPeer peer;
    ScriptedController controller;
    controlLinesTouched = false;

    QVERIFY(controller.open(peer.path(), 115200));
    controller.send("QXUSB HELLO\n");
    QTRY_COMPARE(peer.received(), QByteArray("QXUSB HELLO\n"));
    QCOMPARE(peer.write("QXUSB OK\n"), 9);
    ControllerHistory history(controller);
    QTRY_COMPARE(history.lines, QByteArrayList({"QXUSB OK"}));
    controller.close();
    QVERIFY(!controlLinesTouched);

    QVERIFY(controller.open(peer.path(), 115200));
    controller.port().setDataTerminalReady(true);
    QVERIFY2(controlLinesTouched, "this test sees nothing");
#else
    QSKIP("looks at the system calls of Linux");
#endif
}

QTEST_GUILESS_MAIN(TestSerialController)
#include "tst_serialcontroller.moc"
