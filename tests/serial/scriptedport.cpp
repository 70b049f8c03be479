// SPDX-License-Identifier: MIT
#include "tests/serial/scriptedport.h"

#include <algorithm>
#include <cstring>

namespace qx {

void ScriptedPort::deliver(const QByteArray &chunk)
{
    undelivered = chunk;
    emit readyRead();
}

void ScriptedPort::fail(SerialPortError error, const QString &text)
{
    setErrorString(text);
    emit errorOccurred(error);
}

bool ScriptedPort::open(OpenMode mode)
{
    if (beforeOpen)
        beforeOpen();
    const bool opened = QSerialPort::open(mode);
    if (opened && afterOpen)
        afterOpen();
    return opened;
}

qint64 ScriptedPort::bytesAvailable() const
{
    return undelivered.size() + QSerialPort::bytesAvailable();
}

qint64 ScriptedPort::readData(char *data, qint64 maxSize)
{
    if (undelivered.isEmpty())
        return QSerialPort::readData(data, maxSize);
    const qsizetype count = std::min<qsizetype>(maxSize, undelivered.size());
    std::memcpy(data, undelivered.constData(), static_cast<size_t>(count));
    undelivered.remove(0, count);
    return count;
}

qint64 ScriptedPort::writeData(const char *data, qint64 maxSize)
{
    return write ? write(maxSize) : QSerialPort::writeData(data, maxSize);
}

} // namespace qx
