// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/pseudoterminal.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace qx {

/// The far end of a serial cable by plain POSIX calls: bytes in, bytes out, and a plug to pull.
/// It reads only when asked to, so a test decides when the device listens. Never blocks: the
/// caller waits with the QTRY_ macros.
class RawPeer
{
public:
    RawPeer();

    bool isPluggedIn() const { return m_terminal.isOpen(); }
    /// A name of this peer's own: the system gives a terminal's number to the next one at once.
    /// Nothing is there any more once the plug is pulled.
    QString path() const { return m_path; }

    /// How many of the bytes the line took.
    qsizetype write(const QByteArray &bytes);

    /// Everything that arrived so far; reads what is there now.
    QByteArray received();

    void unplug();

private:
    QTemporaryDir m_directory;
    PseudoTerminal m_terminal;
    QString m_path;
    QByteArray m_received;
};

} // namespace qx
