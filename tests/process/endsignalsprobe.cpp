// SPDX-License-Identifier: MIT
// Says on standard output what becomes of it, a line at a time: "waiting" once its event loop
// runs, "asked to end" at each request, "cleaned up" when the loop is left. The argument says what
// happens besides:
//
//     endsignalsprobe early        two signals before the event loop runs
//     endsignalsprobe late         another signal while the first is handled, and one afterwards
//     endsignalsprobe deleted      a signal after the object is gone
//     endsignalsprobe descriptors  none left for a pipe
#include "process/endsignals.h"

#include <QCoreApplication>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <memory>
#include <sys/resource.h>

namespace {

void print(const char *line)
{
    std::puts(line);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QString extra = QCoreApplication::arguments().value(1);
    const bool isLate = extra == QLatin1String("late");

    if (extra == QLatin1String("descriptors")) {
        const rlimit none{0, 0};
        ::setrlimit(RLIMIT_NOFILE, &none);
    }
    auto signalsToEnd = std::make_unique<qx::EndSignals>();
    if (!signalsToEnd->errorString().isEmpty())
        print(qPrintable(signalsToEnd->errorString()));
    QObject::connect(signalsToEnd.get(), &qx::EndSignals::endRequested, qApp, [isLate] {
        print("asked to end");
        if (isLate)
            std::raise(SIGTERM);
        QCoreApplication::quit();
    });
    if (extra == QLatin1String("early")) {
        std::raise(SIGHUP);
        std::raise(SIGINT);
    }
    QTimer::singleShot(0, qApp, [] { print("waiting"); });
    QCoreApplication::exec();

    if (extra == QLatin1String("deleted"))
        signalsToEnd.reset();
    if (isLate || extra == QLatin1String("deleted"))
        std::raise(SIGINT);
    QCoreApplication::processEvents(); // whatever is still under way arrives here
    print("cleaned up");
    return 0;
}
