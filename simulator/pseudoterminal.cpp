// SPDX-License-Identifier: MIT
#include "simulator/pseudoterminal.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace qx {

namespace {

QString hostPathOf(int device)
{
#ifdef Q_OS_LINUX
    std::array<char, 128> name{};
    return ::ptsname_r(device, name.data(), name.size()) == 0 ? QFile::decodeName(name.data())
                                                              : QString();
#else
    const char *name = ::ptsname(device);
    return name ? QFile::decodeName(name) : QString();
#endif
}

bool setRaw(int terminal)
{
    termios attributes{};
    if (::tcgetattr(terminal, &attributes) != 0)
        return false;
    ::cfmakeraw(&attributes);
    attributes.c_cflag |= CLOCAL | CREAD;
    ::cfsetispeed(&attributes, B115200);
    ::cfsetospeed(&attributes, B115200);
    return ::tcsetattr(terminal, TCSANOW, &attributes) == 0;
}

bool closeOnExec(int descriptor)
{
    return ::fcntl(descriptor, F_SETFD, FD_CLOEXEC) == 0;
}

bool setNonBlocking(int descriptor)
{
    return ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK) == 0;
}

void closeDescriptor(int *descriptor)
{
    if (*descriptor >= 0) {
        ::close(*descriptor);
        *descriptor = -1;
    }
}

} // namespace

bool PseudoTerminal::open()
{
    close();
    state.errorString.clear();
    if (openPair())
        return true;
    state.errorString =
        QStringLiteral("cannot make a pseudo-terminal: %1").arg(qt_error_string(errno));
    close();
    return false;
}

bool PseudoTerminal::openPair()
{
    device = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (device < 0 || ::grantpt(device) != 0 || ::unlockpt(device) != 0)
        return false;
    state.hostPath = hostPathOf(device);
    // A terminal falls back to cooked mode with echo when its last user closes it: being a user
    // ourselves keeps it raw between two connections of the host.
    keptHostEnd = ::open(QFile::encodeName(state.hostPath).constData(), O_RDWR | O_NOCTTY);
    return keptHostEnd >= 0 && closeOnExec(device) && closeOnExec(keptHostEnd) &&
           setRaw(keptHostEnd) && setNonBlocking(device);
}

void PseudoTerminal::close()
{
    // The device end first: closing it is what hangs up the line. Both must go, or the system
    // keeps the terminal's number.
    closeDescriptor(&device);
    closeDescriptor(&keptHostEnd);
    state.hostPath.clear();
}

} // namespace qx
