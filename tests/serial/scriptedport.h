// SPDX-License-Identifier: MIT
#pragma once

#include "serial/serialcontroller.h"

#include <QSerialPort>

#include <functional>

namespace qx {

/// A real port whose reading, writing and opening a test can take over.
class ScriptedPort : public QSerialPort
{
    Q_OBJECT

public:
    using QSerialPort::setErrorString;

    /// Hands `chunk` to whoever reads the port, as the outcome of one reading.
    void deliver(const QByteArray &chunk);

    /// Reports `error` with the words `text`, as the port itself would.
    void fail(SerialPortError error, const QString &text);

    /// Says that it is open without having anything open.
    void pretendToBeOpen() { setOpenMode(ReadWrite); }

    bool open(OpenMode mode) override;
    qint64 bytesAvailable() const override;

    std::function<void()> beforeOpen;         ///< called before the port is opened
    std::function<void()> afterOpen;          ///< called when the system has opened it
    std::function<qint64(qint64 size)> write; ///< the outcome of a write, instead of writing

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 maxSize) override;

private:
    QByteArray undelivered;
};

/// A controller of a scripted port.
class ScriptedController : public SerialController
{
public:
    ScriptedController()
        : ScriptedController(new ScriptedPort)
    {}

    ScriptedPort &port() { return *scripted; }

private:
    explicit ScriptedController(ScriptedPort *port)
        : SerialController(port, nullptr)
        , scripted(port)
    {}

    ScriptedPort *scripted;
};

} // namespace qx
