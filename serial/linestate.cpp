// SPDX-License-Identifier: MIT
#include "serial/linestate.h"

#include <QSerialPort>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
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

qintptr openWatch(QSerialPort &port)
{
    return ::fcntl(port.handle(), F_DUPFD_CLOEXEC, 0);
}

void closeWatch(qintptr descriptor)
{
    if (descriptor >= 0)
        ::close(static_cast<int>(descriptor));
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

qintptr openWatch(QSerialPort &)
{
    return -1;
}

void closeWatch(qintptr) {}

#endif

} // namespace qx
