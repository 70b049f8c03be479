// SPDX-License-Identifier: MIT
#include "simulator/stopsignals.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace qx {

namespace {

// A signal handler may do next to nothing, but it may write into a pipe. Both ends stay open
// until the process ends: a signal can come that late.
std::array<int, 2> stopPipe{-1, -1};

extern "C" void writeToStopPipe(int)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t ignored = ::write(stopPipe[1], &byte, 1);
}

} // namespace

StopSignals::StopSignals(QObject *parent)
    : QObject(parent)
{
    if (::pipe(stopPipe.data()) != 0) {
        qFatal("tessaly-simulator: no pipe left for the signal handler");
    }
    for (const int end : stopPipe) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    auto *notifier = new QSocketNotifier(stopPipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        emit stopRequested();
    });
    struct sigaction action = {};
    action.sa_handler = writeToStopPipe;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        ::sigaction(signal, &action, nullptr);
    }
}

} // namespace qx
