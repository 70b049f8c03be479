// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qx {

/// A pseudo-terminal in raw mode: a serial cable whose device end is in our hands and whose host
/// end any program can open like a port. POSIX systems only. Owns its file descriptors.
class PseudoTerminal
{
public:
    PseudoTerminal() = default;
    ~PseudoTerminal() { close(); }
    Q_DISABLE_COPY_MOVE(PseudoTerminal)

    /// Makes a new pair; closes the old one first. On failure false and errorString().
    bool open();

    /// Pulls the cable: whoever has the host end open sees the line hang up.
    void close();

    bool isOpen() const { return device >= 0; }

    /// The device end, non-blocking, to read from and write to; -1 while closed.
    int descriptor() const { return device; }

    /// Where the host opens its end ("/dev/pts/3"); empty while closed.
    QString hostPath() const { return state.hostPath; }

    QString errorString() const { return state.errorString; }

private:
    struct State
    {
        QString hostPath; ///< empty while closed
        QString errorString;
    };

    bool openPair();

    int device = -1;
    int keptHostEnd = -1;
    State state;
};

} // namespace qx
