// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/simulatorbehaviour.h"

#include <QString>
#include <QStringList>

#include <chrono>

namespace qx {

/// What the user of tessaly-simulator asked for.
struct CommandLine
{
    enum class Action : int {
        Run,
        Inform, ///< print `text` and end well: help or version
        Refuse, ///< print `text`, one sentence about what is wrong, and end with code 2
    };

    Action action = Action::Run;
    QString text;
    SimulatorBehaviour behaviour;
    QString linkPath; ///< empty without --link
    bool quiet = false;
    bool json = false;
    std::chrono::duration<double> duration{0}; ///< 0 until it is stopped

    /// Reads all arguments, the program's name first.
    static CommandLine parse(const QStringList &arguments);
};

} // namespace qx
