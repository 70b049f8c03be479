// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/pseudoterminal.h"

#include <QByteArray>
#include <QString>

namespace qx {

/// The far end of a serial cable by plain POSIX calls: bytes in, bytes out, and a plug to pull.
/// It reads only when asked to, so a test decides when the device listens. Never blocks: the
/// caller waits with the QTRY_ macros.
class RawPeer
{
public:
    RawPeer();

    bool isPluggedIn() const { return m_terminal.isOpen(); }
    QString path() const { return m_path; } ///< stays after the plug is pulled

    /// How many of the bytes the line took.
    qsizetype write(const QByteArray &bytes);

    /// Everything that arrived so far; reads what is there now.
    QByteArray received();

    void unplug() { m_terminal.close(); }

private:
    PseudoTerminal m_terminal;
    QString m_path;
    QByteArray m_received;
};

} // namespace qx
