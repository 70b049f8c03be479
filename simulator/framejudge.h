// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/simulatedframe.h"
#include "simulator/simulatorbehaviour.h"

#include <QRandomGenerator>

namespace qx {

/// Decides what becomes of each frame: what is wrong with it, or what the behaviour pretends to be
/// wrong. The same behaviour and the same frames give the same judgements.
class FrameJudge
{
public:
    struct Judgement
    {
        FrameVerdict verdict;
        bool answered; ///< false if the reply is left out

        bool operator==(const Judgement &) const = default;
    };

    /// Counts "every n-th" from here, and begins the random sequence anew.
    explicit FrameJudge(const SimulatorBehaviour &behaviour);

    /// The next frame. NEED HELLO to a frame in a session means that the session is forgotten.
    Judgement judge(bool damaged, bool inSession);

private:
    Judgement judgeValid();
    bool happens(int every, double probability);

    SimulatorBehaviour behaviour;
    qint64 validFrames = 0; ///< those in a session
    QRandomGenerator random;
};

} // namespace qx
