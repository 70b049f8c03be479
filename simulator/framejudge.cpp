// SPDX-License-Identifier: MIT
#include "simulator/framejudge.h"

namespace qx {

FrameJudge::FrameJudge(const SimulatorBehaviour &behaviour)
    : behaviour(behaviour)
    , random(behaviour.seed)
{}

FrameJudge::Judgement FrameJudge::judge(bool damaged, bool inSession)
{
    if (damaged)
        return {FrameVerdict::BadChecksum, true};
    if (!inSession)
        return {FrameVerdict::NeedHello, true};
    return judgeValid();
}

FrameJudge::Judgement FrameJudge::judgeValid()
{
    // All four are asked each time, so that one does not change the others' random sequence.
    ++validFrames;
    const bool dropped = happens(behaviour.dropEvery, behaviour.dropProbability);
    const bool needHello = happens(behaviour.needHelloEvery, behaviour.needHelloProbability);
    const bool badChecksum = happens(behaviour.badChecksumEvery, behaviour.badChecksumProbability);
    const bool ac39Fail = happens(behaviour.ac39FailEvery, behaviour.ac39FailProbability);
    if (dropped)
        return {FrameVerdict::Accepted, false};
    if (needHello)
        return {FrameVerdict::NeedHello, true};
    if (badChecksum)
        return {FrameVerdict::BadChecksum, true};
    return {ac39Fail ? FrameVerdict::Ac39Fail : FrameVerdict::Accepted, true};
}

bool FrameJudge::happens(int every, double probability)
{
    const bool byChance = random.generateDouble() < probability;
    return byChance || (every > 0 && validFrames % every == 0);
}

} // namespace qx
