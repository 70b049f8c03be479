// SPDX-License-Identifier: MIT
// The limit of this machine: a closed loop with nothing but poll(), read() and write().
// bench_poll PORT FRAMES
#include "protocol/protocol.h"

#include <QByteArray>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

bool writeAll(int port, const QByteArray &bytes)
{
    return ::write(port, bytes.constData(), static_cast<size_t>(bytes.size())) == bytes.size();
}

bool waitForLine(int port)
{
    char buffer[256];
    for (;;) {
        pollfd line{port, POLLIN, 0};
        if (::poll(&line, 1, 5000) <= 0)
            return false;
        const ssize_t size = ::read(port, buffer, sizeof buffer);
        if (size <= 0)
            return false;
        if (buffer[size - 1] == '\n')
            return true;
    }
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: bench_poll PORT FRAMES\n");
        return 2;
    }
    const int port = ::open(argv[1], O_RDWR | O_NOCTTY);
    termios settings{};
    if (port < 0 || ::tcgetattr(port, &settings) != 0)
        return 1;
    ::cfmakeraw(&settings);
    ::tcsetattr(port, TCSANOW, &settings);

    if (!writeAll(port, qx::Protocol::handshake()) || !waitForLine(port))
        return 1;
    const long frames = std::atol(argv[2]);
    for (long i = 0; i < frames; ++i) {
        qx::ControlFrame frame;
        frame.frame = static_cast<quint16>(i);
        if (!writeAll(port, qx::Protocol::encodeControlFrame(frame)) || !waitForLine(port))
            return 1;
    }
    ::close(port);
    return 0;
}
