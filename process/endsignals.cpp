// SPDX-License-Identifier: MIT
#include "process/endsignals.h"

#ifdef Q_OS_UNIX

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace qx {

namespace {

// A signal handler may do next to nothing, but it may write into a pipe. Both ends stay open
// until the process ends: a signal can come that late.
std::array<int, 2> endPipe{-1, -1};

extern "C" void writeToEndPipe(int)
{
    const int interrupted = errno;
    const char byte = 1;
    [[maybe_unused]] const ssize_t ignored = ::write(endPipe[1], &byte, 1);
    errno = interrupted;
}

} // namespace

EndSignals::EndSignals(QObject *parent)
    : QObject(parent)
{
    if (::pipe(endPipe.data()) != 0) {
        failure =
            QStringLiteral("cannot make a pipe for the signals: %1").arg(qt_error_string(errno));
        return;
    }
    for (const int end : endPipe) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    auto *notifier = new QSocketNotifier(endPipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        emit endRequested();
    });
    struct sigaction action = {};
    action.sa_handler = writeToEndPipe;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        ::sigaction(signal, &action, nullptr);
}

} // namespace qx

#else

qx::EndSignals::EndSignals(QObject *parent)
    : QObject(parent)
{}

#endif
