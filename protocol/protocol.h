// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <array>

namespace qx {

/// The fields of one playback control frame. Every value of every field is valid; callers cut
/// their numbers to the field's width. Offsets on the wire: docs/protocol.md.
struct ControlFrame
{
    quint8 hy = 0;
    quint16 frame = 0; ///< frame number, 0..65535
    quint8 red = 0;    ///< levels 0..255
    quint8 green = 0;
    quint8 blue = 0;
    quint8 white = 0;
    std::array<quint8, 6> reserved{}; ///< current[1], current[2], extra[0], ..., extra[3]
};

/// What a line from the device means. The numbers are fixed.
enum class ReplyKind : int {
    Unknown = 0,     ///< any line that is none of those below
    Ready = 1,       ///< "QXUSB READY": the device has started and waits for a handshake
    Ok = 2,          ///< "QXUSB OK": the handshake is accepted
    RxOk = 3,        ///< "QXUSB RX OK": the frame is accepted and forwarded
    NeedHello = 4,   ///< "QXUSB NEED HELLO": the device has lost the session
    BadChecksum = 5, ///< "QXUSB BAD CHECKSUM": the frame arrived damaged
    Ac39Fail = 6,    ///< "QXUSB AC39 FAIL": A39 did not take the frame
};

/// One line from the device, classified.
struct DeviceReply
{
    ReplyKind kind = ReplyKind::Unknown;
    QString text; ///< the line read as Latin-1, without surrounding white space, case kept
};

/// What the player does. The numbers are fixed; 0 means that no state was set yet.
enum class PlaybackState : int {
    Stopped = 1,
    Playing = 2,
    Paused = 3,
};
inline constexpr PlaybackState noPlaybackState = static_cast<PlaybackState>(0);

/// The device's language: the 20-byte control frame, the handshake line, the reply lines, and
/// how the interface writes them. Pure functions; the wire format is in docs/protocol.md.
class Protocol
{
public:
    Protocol() = delete;

    /// The line that opens a session: "QXUSB HELLO" and one line feed, 12 bytes.
    static QByteArray handshake();

    /// The 20 bytes of a frame, checksum included, without a line feed.
    static QByteArray encodeControlFrame(const ControlFrame &frame);

    /// Whether the bytes are exactly one frame with the fixed header and the right checksum.
    static bool isValidControlFrame(const QByteArray &frame);

    /// The XOR of the first 19 bytes, or of all bytes where there are fewer; 0 for none.
    static quint8 controlFrameChecksum(const QByteArray &frame);

    /// Classifies one line. Letter case and white space around the keyword do not matter;
    /// anything else does: a keyword with more text behind it is Unknown.
    static DeviceReply parseReply(const QByteArray &line);

    /// "HY: 1  Frame: 300  R: 255  G: 0  B: 0  W: 0", the same in every language.
    static QString frameSummary(const ControlFrame &frame);

    /// The summary of an encoded frame; empty if the bytes are not a valid frame.
    static QString frameSummary(const QByteArray &frame);

    /// Two upper-case hexadecimal digits for each byte, separated by blanks.
    static QString bytesToHex(const QByteArray &bytes);

    /// The state's name in the current interface language; "Unknown" for any other value.
    static QString playbackStateText(PlaybackState state);
};

} // namespace qx
