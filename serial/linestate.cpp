// SPDX-License-Identifier: MIT
#include "serial/linestate.h"

#include <QSerialPort>

#ifdef Q_OS_UNIX
#include <poll.h>
#endif

namespace qx {

#ifdef Q_OS_UNIX

namespace {

short pollNow(QSerialPort &port, short events)
{
    pollfd line{port.handle(), events, 0};
    return ::poll(&line, 1, 0) < 0 ? short{0} : line.revents;
}

} // namespace

bool lineIsLost(QSerialPort &port)
{
    return (pollNow(port, POLLIN) & (POLLHUP | POLLERR | POLLNVAL)) != 0;
}

bool lineTakesBytes(QSerialPort &port)
{
    return (pollNow(port, POLLOUT) & POLLOUT) != 0;
}

qintptr watchableDescriptor(QSerialPort &port)
{
    return port.handle();
}

#else

bool lineIsLost(QSerialPort &)
{
    return false;
}

bool lineTakesBytes(QSerialPort &)
{
    return true;
}

qintptr watchableDescriptor(QSerialPort &)
{
    return -1;
}

#endif

} // namespace qx
