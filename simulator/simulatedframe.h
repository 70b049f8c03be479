// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QMetaType>

#include <array>
#include <chrono>

namespace qx {

/// What the player makes of a frame.
enum class FrameVerdict : int {
    Accepted,    ///< taken and forwarded: "QXUSB RX OK"
    NeedHello,   ///< no session: "QXUSB NEED HELLO"
    BadChecksum, ///< damaged, or said to be: "QXUSB BAD CHECKSUM"
    Ac39Fail,    ///< A39 did not take it: "QXUSB AC39 FAIL"
};

/// The line that tells the host, its line feed included.
QByteArray replyTo(FrameVerdict verdict);

/// One frame as it arrived.
struct SimulatedFrame
{
    quint16 number = 0; ///< frame number
    quint8 hy = 0;
    quint8 red = 0;
    quint8 green = 0;
    quint8 blue = 0;
    quint8 white = 0;
    std::array<quint8, 6> reserved{};
    std::chrono::nanoseconds at{}; ///< when it was read, since the simulator was created
    QByteArray bytes;              ///< all 20
    FrameVerdict verdict = FrameVerdict::Accepted;
    bool answered = true; ///< false if the reply was left out

    /// Reads the fields from a frame's 20 bytes; nothing is judged yet.
    static SimulatedFrame fromBytes(const QByteArray &bytes, std::chrono::nanoseconds at);
};

} // namespace qx
