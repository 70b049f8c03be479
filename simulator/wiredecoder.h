// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

namespace qx {

/// Cuts the bytes that the host sends into what a player understands, and finds its way back
/// after garbage. Knows the wire format by itself: the device must not believe the code that it
/// is there to test.
class WireDecoder
{
public:
    static constexpr qsizetype frameSize = 20;

    enum class Kind : int {
        Hello,        ///< the line "QXUSB HELLO"
        Frame,        ///< 20 bytes with the header and the right checksum
        DamagedFrame, ///< 20 bytes that begin with the header, but have a wrong checksum
    };
    struct Item
    {
        Kind kind;
        QByteArray bytes; ///< the frame's 20 bytes; empty for Hello
    };

    void append(const QByteArray &bytes) { buffer += bytes; }

    /// The next complete item, or nothing until more bytes arrive.
    std::optional<Item> next();

    /// How many bytes since the last call were neither part of a frame nor of the HELLO line.
    qint64 takeUnknownBytes() { return std::exchange(unknownBytes, 0); }

    /// Forgets a half-received item.
    void clear() { buffer.clear(); }

private:
    Item takeFrame();
    bool takeHelloLine(qsizetype lineFeed);
    void discard(qsizetype count);

    QByteArray buffer;
    qint64 unknownBytes = 0;
};

} // namespace qx
