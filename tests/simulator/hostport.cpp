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
    m_received.clear();
    m_descriptor = ::open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    return m_descriptor >= 0;
}

void HostPort::close()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
        m_descriptor = -1;
    }
}

qint64 HostPort::write(const QByteArray &bytes)
{
    return ::write(m_descriptor, bytes.constData(), static_cast<size_t>(bytes.size()));
}

QByteArray HostPort::received()
{
    std::array<char, 4096> buffer;
    ssize_t count = 0;
    while ((count = ::read(m_descriptor, buffer.data(), buffer.size())) > 0) {
        m_received.append(buffer.data(), count);
    }
    return m_received;
}

void HostPort::forget()
{
    received();
    m_received.clear();
}

bool HostPort::isHungUp() const
{
    pollfd line{m_descriptor, POLLIN, 0};
    return ::poll(&line, 1, 0) == 1 && (line.revents & POLLHUP) != 0;
}

} // namespace qx
