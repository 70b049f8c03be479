// SPDX-License-Identifier: MIT
#include "process/endsignals.h"
#include "simulator/commandline.h"
#include "simulator/console.h"
#include "simulator/playersimulator.h"
#include "simulator/sessionreport.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QTimer>

#include <chrono>
#include <cstdio>

namespace {

void connectConsole(qx::PlayerSimulator *simulator, qx::Console *console, bool quiet)
{
    using qx::PlayerSimulator;
    QObject::connect(simulator, &PlayerSimulator::pluggedIn, simulator, [=] {
        console->line(QStringLiteral("Player plugged in at %1").arg(simulator->portPath()));
    });
    QObject::connect(simulator, &PlayerSimulator::unplugged, simulator,
                     [=] { console->line(QStringLiteral("Player unplugged")); });
    QObject::connect(simulator, &PlayerSimulator::returnFailed, simulator,
                     [=](const QString &message) {
                         console->line(QStringLiteral("Player stays away: %1").arg(message));
                     });
    QObject::connect(simulator, &PlayerSimulator::helloReceived, simulator, [=] {
        console->line(QStringLiteral("HELLO %1").arg(simulator->helloCount()));
    });
    if (!quiet) {
        QObject::connect(simulator, &PlayerSimulator::frameArrived, simulator,
                         [=](const qx::SimulatedFrame &frame) {
                             console->frame(frame, simulator->counts().framesArrived);
                         });
    }
}

int fail(const QString &message, int code)
{
    std::fprintf(stderr, "tessaly-simulator: %s\n", qPrintable(message));
    return code;
}

int run(const qx::CommandLine &line)
{
    qx::Console console(line.json ? stderr : stdout);
    qx::PlayerSimulator simulator;
    qx::SessionReport report(simulator);
    connectConsole(&simulator, &console, line.quiet);

    qx::EndSignals endSignals;
    if (!endSignals.errorString().isEmpty())
        return fail(endSignals.errorString(), 1);
    QObject::connect(&endSignals, &qx::EndSignals::endRequested, qApp, &QCoreApplication::quit);
    if (line.duration > line.duration.zero()) {
        QTimer::singleShot(std::chrono::ceil<std::chrono::milliseconds>(line.duration),
                           Qt::PreciseTimer, qApp, &QCoreApplication::quit);
    }

    simulator.setKeepRecords(0);
    simulator.setBehaviour(line.behaviour);
    if (!simulator.plugIn(line.linkPath))
        return fail(simulator.errorString(), 1);
    QCoreApplication::exec();

    console.line(report.summary());
    if (line.json)
        std::fputs(QJsonDocument(report.toJson()).toJson().constData(), stdout);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const auto line = qx::CommandLine::parse(QCoreApplication::arguments());
    switch (line.action) {
    case qx::CommandLine::Action::Run:
        return run(line);
    case qx::CommandLine::Action::Inform:
        std::printf("%s\n", qPrintable(line.text));
        return 0;
    case qx::CommandLine::Action::Refuse:
        return fail(line.text, 2);
    }
    Q_UNREACHABLE();
}
