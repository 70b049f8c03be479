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

    bool isPluggedIn() const { return terminal.isOpen(); }
    /// A name of this peer's own: the system gives a terminal's number to the next one at once.
    /// Nothing is there any more once the plug is pulled.
    QString path() const { return linkPath; }

    /// How many of the bytes the line took.
    qsizetype write(const QByteArray &bytes);

    /// Everything that arrived so far; reads what is there now.
    QByteArray received();

    void unplug();

private:
    QTemporaryDir directory;
    PseudoTerminal terminal;
    QString linkPath;
    QByteArray readSoFar;
};

} // namespace qx
