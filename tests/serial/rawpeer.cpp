// SPDX-License-Identifier: MIT
#include "tests/serial/rawpeer.h"

#include <array>
#include <unistd.h>

namespace qx {

RawPeer::RawPeer()
{
    if (!m_terminal.open())
        qFatal("%s", qPrintable(m_terminal.errorString()));
    m_path = m_terminal.hostPath();
}

qsizetype RawPeer::write(const QByteArray &bytes)
{
    const auto count =
        ::write(m_terminal.descriptor(), bytes.constData(), static_cast<size_t>(bytes.size()));
    return count < 0 ? 0 : count;
}

QByteArray RawPeer::received()
{
    std::array<char, 65536> buffer;
    ssize_t count = 0;
    while ((count = ::read(m_terminal.descriptor(), buffer.data(), buffer.size())) > 0)
        m_received.append(buffer.data(), count);
    return m_received;
}

} // namespace qx
