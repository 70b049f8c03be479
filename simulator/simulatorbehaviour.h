// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <chrono>

namespace qx {

/// How the player behaves; the defaults make a good one. "Every n-th" counts valid frames that
/// arrive in a session; 0 is never. Probabilities are 0..1. Where several apply to one frame the
/// order is: no reply, NEED HELLO, BAD CHECKSUM, AC39 FAIL.
struct SimulatorBehaviour
{
    int answerHelloNumber = 1; ///< answers each n-th HELLO only; 0 never
    bool readyFirst = false;   ///< says READY to the first HELLO of a session, before any OK
    QByteArray bootText = {};  ///< said each time when plugged in, as it is
    std::chrono::milliseconds replyDelay{0}; ///< between a frame or HELLO and its reply
    int chunkBytes = 0; ///< cuts replies into pieces that are written one by one; 0 whole
    int dropEvery = 0;  ///< accepts, but does not reply
    int badChecksumEvery = 0;
    int ac39FailEvery = 0;
    int needHelloEvery = 0; ///< forgets the session
    double dropProbability = 0;
    double badChecksumProbability = 0;
    double ac39FailProbability = 0;
    double needHelloProbability = 0;
    quint32 seed = 1;            ///< the same seed and the same frames give the same replies
    int floodLinesPerSecond = 0; ///< unasked text; left out while the line is full
    int vanishAfterFrames = 0;   ///< unplugs itself instead of replying to the n-th accepted frame
    std::chrono::milliseconds returnAfter{0}; ///< from there to plugging in again; 0 stays away
    bool silent = false;                      ///< reads, but replies to nothing
};

} // namespace qx
