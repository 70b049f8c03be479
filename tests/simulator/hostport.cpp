// SPDX-License-Identifier: MIT
#include "tests/simulator/hostport.h"

#include <QFile>

#include <array>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace qx {

bool HostPort::open(const QString &path)
{
    close();
    arrived.clear();
    descriptor = ::open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    return descriptor >= 0;
}

void HostPort::close()
{
    if (descriptor >= 0) {
        ::close(descriptor);
        descriptor = -1;
    }
}

qint64 HostPort::write(const QByteArray &bytes)
{
    return ::write(descriptor, bytes.constData(), static_cast<size_t>(bytes.size()));
}

QByteArray HostPort::received()
{
    std::array<char, 4096> buffer;
    ssize_t count = 0;
    while ((count = ::read(descriptor, buffer.data(), buffer.size())) > 0)
        arrived.append(buffer.data(), count);
    return arrived;
}

void HostPort::forget()
{
    received();
    arrived.clear();
}

bool HostPort::isHungUp() const
{
    pollfd line{descriptor, POLLIN, 0};
    return ::poll(&line, 1, 0) == 1 && (line.revents & POLLHUP) != 0;
}

} // namespace qx
