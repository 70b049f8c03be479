// SPDX-License-Identifier: MIT
#include "tests/serial/rawpeer.h"

#include <QFile>

#include <array>
#include <unistd.h>

namespace qx {

RawPeer::RawPeer()
{
    if (!m_terminal.open())
        qFatal("%s", qPrintable(m_terminal.errorString()));
    m_path = m_directory.filePath(QStringLiteral("port"));
    if (!QFile::link(m_terminal.hostPath(), m_path))
        qFatal("no link can be made at %s", qPrintable(m_path));
}

void RawPeer::unplug()
{
    QFile::remove(m_path);
    m_terminal.close();
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
