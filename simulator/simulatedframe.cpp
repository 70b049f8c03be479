// SPDX-License-Identifier: MIT
#include "simulator/simulatedframe.h"

#include <algorithm>

namespace qx {

QByteArray replyTo(FrameVerdict verdict)
{
    switch (verdict) {
    case FrameVerdict::Accepted:
        return QByteArrayLiteral("QXUSB RX OK\n");
    case FrameVerdict::NeedHello:
        return QByteArrayLiteral("QXUSB NEED HELLO\n");
    case FrameVerdict::BadChecksum:
        return QByteArrayLiteral("QXUSB BAD CHECKSUM\n");
    case FrameVerdict::Ac39Fail:
        return QByteArrayLiteral("QXUSB AC39 FAIL\n");
    }
    Q_UNREACHABLE();
}

SimulatedFrame SimulatedFrame::fromBytes(const QByteArray &bytes, std::chrono::nanoseconds at)
{
    const auto byte = [&bytes](qsizetype offset) { return static_cast<quint8>(bytes[offset]); };
    SimulatedFrame frame;
    frame.hy = byte(6);
    frame.number = static_cast<quint16>(byte(7) * 256 + byte(8));
    frame.red = byte(9);
    frame.green = byte(10);
    frame.blue = byte(11);
    frame.white = byte(12);
    std::copy_n(bytes.begin() + 13, frame.reserved.size(), frame.reserved.begin());
    frame.at = at;
    frame.bytes = bytes;
    return frame;
}

} // namespace qx
