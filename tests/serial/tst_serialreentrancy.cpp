// SPDX-License-Identifier: MIT
#include "tests/serial/serialtest.h"

#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <memory>

using qx::RawPeer;
using qx::SerialController;

namespace {

/// The signal inside which a receiver calls the controller.
enum class Occasion {
    Opened,
    Closed,
    SwitchedPort,
    Chunk,
    Line,
    Transmitted,
    BufferOverflow,
    PartialWrite,
    RefusedSend,
    LossError,
    LossDisconnection,
    LossInsideSend,
    FailedWrite,
    FailedWriteDisconnection,
    ErrorOfAFailedOpen,
    FailedOpenError,
    FailedOpenDisconnection,
};

/// What the receiver does there.
enum class Action { Close, OpenSame, OpenOther, OpenMissing, Send };

const QString missing = QStringLiteral("/dev/qx-there-is-no-such-port");

} // namespace

class TestSerialReentrancy : public qx::SerialTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void callFromInsideASignal_data();
    void callFromInsideASignal();
    void openTellsWhatBecameOfThePort();
    void argumentOfOpenMayChange();
    void endlessConversationInsideSlots();

private:
    void actAt(Occasion occasion, Action action);
    void actOnError(const QString &start, Action action);
    void actOnConnection(bool connected, Action action);
    void act(Action action);
    void bringAbout(Occasion occasion);
    QString finalPort(Occasion occasion, Action action) const;
    void verifyUsable();

    std::unique_ptr<RawPeer> other;
    bool acted = false;
};

void TestSerialReentrancy::init()
{
    SerialTest::init();
    other = std::make_unique<RawPeer>();
    acted = false;
    // A port that has been read before behaves differently from a new one inside Qt.
    QVERIFY(controller->open(peer->path(), 115200));
    verifyUsable();
    verifyUsable();
    history->clear();
}

void TestSerialReentrancy::cleanup()
{
    SerialTest::cleanup();
    other.reset();
}

void TestSerialReentrancy::actAt(Occasion occasion, Action action)
{
    const auto doIt = [this, action] { act(action); };
    switch (occasion) {
    case Occasion::Opened:
        return actOnConnection(true, action);
    case Occasion::Closed:
    case Occasion::SwitchedPort:
    case Occasion::LossDisconnection:
    case Occasion::FailedWriteDisconnection:
    case Occasion::FailedOpenDisconnection:
        return actOnConnection(false, action);
    case Occasion::Chunk:
        connect(controller.get(), &SerialController::rawReceived, this, doIt);
        return;
    case Occasion::Line:
        connect(controller.get(), &SerialController::lineReceived, this, doIt);
        return;
    case Occasion::Transmitted:
        connect(controller.get(), &SerialController::bytesTransmitted, this, doIt);
        return;
    case Occasion::BufferOverflow:
        return actOnError(QStringLiteral("ESP text response"), action);
    case Occasion::PartialWrite:
        return actOnError(QStringLiteral("Serial port accepted"), action);
    case Occasion::RefusedSend:
        return actOnError(QStringLiteral("Command not sent"), action);
    case Occasion::LossError:
    case Occasion::LossInsideSend:
    case Occasion::ErrorOfAFailedOpen:
        return actOnError(QStringLiteral("macOS serial port failed"), action);
    case Occasion::FailedWrite:
        return actOnError(QStringLiteral("Serial write failed"), action);
    case Occasion::FailedOpenError:
        return actOnError(QStringLiteral("Failed to open"), action);
    }
}

void TestSerialReentrancy::actOnError(const QString &start, Action action)
{
    connect(controller.get(), &SerialController::errorOccurred, this,
            [this, start, action](const QString &message) {
                if (message.startsWith(start))
                    act(action);
            });
}

void TestSerialReentrancy::actOnConnection(bool connected, Action action)
{
    connect(controller.get(), &SerialController::connectionChanged, this,
            [this, connected, action](bool now) {
                if (now == connected)
                    act(action);
            });
}

void TestSerialReentrancy::act(Action action)
{
    if (std::exchange(acted, true))
        return;
    controller->port().write = nullptr;
    switch (action) {
    case Action::Close:
        controller->close();
        QVERIFY(!controller->isOpen());
        break;
    case Action::OpenSame:
        QCOMPARE(controller->open(peer->path(), 115200), peer->isPluggedIn());
        break;
    case Action::OpenOther:
        QVERIFY(controller->open(other->path(), 115200));
        break;
    case Action::OpenMissing:
        QVERIFY(!controller->open(missing, 115200));
        QVERIFY(!controller->isOpen());
        break;
    case Action::Send:
        QCOMPARE(controller->send("sent from a slot\n"), controller->isOpen() ? 17 : -1);
        break;
    }
}

void TestSerialReentrancy::bringAbout(Occasion occasion)
{
    switch (occasion) {
    case Occasion::Opened:
        controller->close();
        controller->open(peer->path(), 115200);
        break;
    case Occasion::Closed:
        controller->close();
        break;
    case Occasion::SwitchedPort:
        controller->open(other->path(), 115200);
        break;
    case Occasion::Chunk:
    case Occasion::Line:
        peer->write("two\nlines\nand a part");
        break;
    case Occasion::Transmitted:
        controller->send("one\n");
        controller->send("two\n");
        break;
    case Occasion::BufferOverflow:
        controller->port().deliver(QByteArray(4097, 'x'));
        break;
    case Occasion::PartialWrite:
        controller->port().write = [](qint64 size) { return size - 1; };
        QCOMPARE(controller->send("one\n"), -1);
        break;
    case Occasion::RefusedSend:
        controller->close();
        QCOMPARE(controller->send("one\n"), -1);
        break;
    case Occasion::LossError:
    case Occasion::LossDisconnection:
        peer->unplug();
        break;
    case Occasion::LossInsideSend:
        peer->unplug();
        controller->send("one\n");
        break;
    case Occasion::FailedWrite:
    case Occasion::FailedWriteDisconnection:
        controller->port().write = [](qint64) { return -1; };
        QCOMPARE(controller->send("one\n"), -1);
        break;
    case Occasion::ErrorOfAFailedOpen:
    case Occasion::FailedOpenError:
    case Occasion::FailedOpenDisconnection:
        controller->close();
        acted = false;
        controller->open(missing, 115200);
        break;
    }
}

/// The port that is open when all is done; empty for none.
QString TestSerialReentrancy::finalPort(Occasion occasion, Action action) const
{
    static const QList<Occasion> leaveThePortOpen{Occasion::Opened,         Occasion::Chunk,
                                                  Occasion::Line,           Occasion::Transmitted,
                                                  Occasion::BufferOverflow, Occasion::PartialWrite};
    const QString portOfTheCallAround =
        occasion == Occasion::SwitchedPort ? other->path() : QString();
    switch (action) {
    case Action::Close:
    case Action::OpenMissing:
        return portOfTheCallAround;
    case Action::OpenSame:
        return peer->isPluggedIn() ? peer->path() : portOfTheCallAround;
    case Action::OpenOther:
        return other->path();
    case Action::Send:
        return leaveThePortOpen.contains(occasion) ? peer->path() : portOfTheCallAround;
    }
    return {};
}

void TestSerialReentrancy::verifyUsable()
{
    RawPeer &device = controller->portName() == peer->path() ? *peer : *other;
    const qsizetype lines = history->lines.size();
    QCOMPARE(device.write("\nQXUSB OK\n"), 10);
    QVERIFY(QTest::qWaitFor(
        [&] { return history->lines.size() > lines && history->lines.last() == "QXUSB OK"; }));
    QCOMPARE(controller->send("QXUSB HELLO\n"), 12);
    QVERIFY(QTest::qWaitFor([&] { return device.received().endsWith("QXUSB HELLO\n"); }));
}

void TestSerialReentrancy::callFromInsideASignal_data()
{
    QTest::addColumn<Occasion>("occasion");
    QTest::addColumn<Action>("action");

    const QList<std::pair<const char *, Occasion>> occasions{
        {"an opened port", Occasion::Opened},
        {"a closed port", Occasion::Closed},
        {"the first half of a switch", Occasion::SwitchedPort},
        {"a chunk", Occasion::Chunk},
        {"a line", Occasion::Line},
        {"a count of bytes", Occasion::Transmitted},
        {"an overflow", Occasion::BufferOverflow},
        {"a partial write", Occasion::PartialWrite},
        {"a refused send", Occasion::RefusedSend},
        {"the error of a loss", Occasion::LossError},
        {"the disconnection of a loss", Occasion::LossDisconnection},
        {"a loss inside send", Occasion::LossInsideSend},
        {"the error of a failed write", Occasion::FailedWrite},
        {"the disconnection of a failed write", Occasion::FailedWriteDisconnection},
        {"the port's own error of a failed open", Occasion::ErrorOfAFailedOpen},
        {"the error of a failed open", Occasion::FailedOpenError},
        {"the disconnection of a failed open", Occasion::FailedOpenDisconnection},
    };
    const QList<std::pair<const char *, Action>> actions{
        {"closes", Action::Close},
        {"opens the same", Action::OpenSame},
        {"opens another", Action::OpenOther},
        {"opens a missing port", Action::OpenMissing},
        {"sends", Action::Send},
    };
    for (const auto &[occasionName, occasion] : occasions) {
        for (const auto &[actionName, action] : actions)
            QTest::addRow("%s: receiver %s", occasionName, actionName) << occasion << action;
    }
}

void TestSerialReentrancy::callFromInsideASignal()
{
    QFETCH(Occasion, occasion);
    QFETCH(Action, action);

    actAt(occasion, action);
    bringAbout(occasion);

    QVERIFY(QTest::qWaitFor([this] { return acted; }));
    QTRY_COMPARE(controller->portName(), finalPort(occasion, action));
    QCOMPARE(controller->isOpen(), !controller->portName().isEmpty());
    QCOMPARE(history->contradictions, QStringList());
    const QStringList news =
        history->events.filter(QRegularExpression(QStringLiteral("^(dis)?connected")));
    if (!news.isEmpty())
        QCOMPARE(news.last().startsWith(QStringLiteral("connected")), controller->isOpen());

    if (!controller->isOpen()) {
        controller->disconnect(this);
        QVERIFY(controller->open(other->path(), 115200));
    }
    verifyUsable();
    QCOMPARE(history->contradictions, QStringList());
}

void TestSerialReentrancy::openTellsWhatBecameOfThePort()
{
    controller->close();
    actOnConnection(true, Action::Close);
    QVERIFY2(!controller->open(peer->path(), 115200), "a receiver closed it again");

    acted = false;
    controller->disconnect(this);
    actOnConnection(true, Action::OpenOther);
    QVERIFY2(controller->open(peer->path(), 115200), "a receiver chose another port");
    QCOMPARE(controller->portName(), other->path());

    acted = false;
    controller->disconnect(this);
    history->clear();
    actOnConnection(false, Action::OpenSame);
    QVERIFY2(!controller->open(missing, 115200), "a receiver of the disconnection came first");
    QCOMPARE(history->events,
             QStringList({qx::disconnectedFrom(other->path()), qx::connectedTo(peer->path())}));
}

// A receiver of the old port's end may refill the list that the new port's name is from.
void TestSerialReentrancy::argumentOfOpenMayChange()
{
    QString chosen = other->path();
    connect(controller.get(), &SerialController::connectionChanged, this,
            [&chosen] { chosen.clear(); });

    QVERIFY(controller->open(chosen, 115200));

    QCOMPARE(controller->portName(), other->path());
    QCOMPARE(history->events.last(), qx::connectedTo(other->path()));
}

void TestSerialReentrancy::endlessConversationInsideSlots()
{
    int rounds = 0;
    connect(controller.get(), &SerialController::lineReceived, this,
            [this, &rounds](const QByteArray &line) {
                if (++rounds < 1000)
                    controller->send(line + '\n');
            });
    peer->write("0\n");
    qsizetype answered = peer->received().size();
    QTimer echo;
    echo.callOnTimeout([&] {
        const QByteArray news = peer->received().mid(answered);
        answered += peer->write(news);
    });
    echo.start(0);
    QTRY_VERIFY_WITH_TIMEOUT(rounds >= 1000, 20000);
    QCOMPARE(history->events, QStringList());
}

QTEST_GUILESS_MAIN(TestSerialReentrancy)
#include "tst_serialreentrancy.moc"
