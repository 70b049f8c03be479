// SPDX-License-Identifier: MIT
#include "tests/serial/rawpeer.h"

#include <QFile>

#include <array>
#include <unistd.h>

namespace qx {

RawPeer::RawPeer()
{
    if (!terminal.open())
        qFatal("%s", qPrintable(terminal.errorString()));
    linkPath = directory.filePath(QStringLiteral("port"));
    if (!QFile::link(terminal.hostPath(), linkPath))
        qFatal("no link can be made at %s", qPrintable(linkPath));
}

void RawPeer::unplug()
{
    QFile::remove(linkPath);
    terminal.close();
}

qsizetype RawPeer::write(const QByteArray &bytes)
{
    const auto count =
        ::write(terminal.descriptor(), bytes.constData(), static_cast<size_t>(bytes.size()));
    return count < 0 ? 0 : count;
}

QByteArray RawPeer::received()
{
    std::array<char, 65536> buffer;
    ssize_t count = 0;
    while ((count = ::read(terminal.descriptor(), buffer.data(), buffer.size())) > 0)
        readSoFar.append(buffer.data(), count);
    return readSoFar;
}

} // namespace qx
