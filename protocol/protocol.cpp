// SPDX-License-Identifier: MIT
#include "protocol/protocol.h"

#include "i18n/language.h"

#include <QStringBuilder>

#include <functional>
#include <numeric>

namespace qx {

namespace {

constexpr char header[] = "\xFF\xFF\x17\x12\x34\x17";
constexpr qsizetype headerSize = 6;
constexpr qsizetype frameSize = 20;
constexpr qsizetype checksumOffset = frameSize - 1;

quint8 xorOf(QByteArrayView bytes)
{
    return std::accumulate(bytes.cbegin(), bytes.cend(), quint8{0}, [](quint8 sum, char byte) {
        return static_cast<quint8>(sum ^ static_cast<quint8>(byte));
    });
}

quint8 byteAt(const QByteArray &bytes, qsizetype index)
{
    return static_cast<quint8>(bytes.at(index));
}

struct Keyword
{
    QByteArrayView line;
    ReplyKind kind;
};

constexpr Keyword keywords[] = {
    {"QXUSB READY", ReplyKind::Ready},
    {"QXUSB OK", ReplyKind::Ok},
    {"QXUSB RX OK", ReplyKind::RxOk},
    {"QXUSB NEED HELLO", ReplyKind::NeedHello},
    {"QXUSB BAD CHECKSUM", ReplyKind::BadChecksum},
    {"QXUSB AC39 FAIL", ReplyKind::Ac39Fail},
};

} // namespace

QByteArray Protocol::handshake()
{
    return QByteArrayLiteral("QXUSB HELLO\n");
}

QByteArray Protocol::encodeControlFrame(const ControlFrame &frame)
{
    QByteArray bytes;
    bytes.reserve(frameSize);
    const auto append = [&bytes](int value) { bytes.append(static_cast<char>(value)); };
    bytes.append(header, headerSize);
    append(frame.hy);
    append(frame.frame >> 8);
    append(frame.frame & 0xFF);
    append(frame.red);
    append(frame.green);
    append(frame.blue);
    append(frame.white);
    for (const quint8 byte : frame.reserved)
        append(byte);
    append(xorOf(bytes));
    return bytes;
}

bool Protocol::isValidControlFrame(const QByteArray &frame)
{
    return frame.size() == frameSize && frame.startsWith(QByteArrayView(header, headerSize)) &&
           xorOf(frame) == 0;
}

quint8 Protocol::controlFrameChecksum(const QByteArray &frame)
{
    return xorOf(QByteArrayView(frame).first(qMin(frame.size(), checksumOffset)));
}

DeviceReply Protocol::parseReply(const QByteArray &line)
{
    DeviceReply reply;
    reply.text = QString::fromLatin1(line).trimmed();
    const QByteArray keyword = line.trimmed().toUpper();
    for (const Keyword &known : keywords) {
        if (keyword == known.line)
            reply.kind = known.kind;
    }
    return reply;
}

QString Protocol::frameSummary(const ControlFrame &frame)
{
    const auto number = [](int value) { return QString::number(value); };
    return u"HY: " % number(frame.hy) % u"  Frame: " % number(frame.frame) % u"  R: " %
           number(frame.red) % u"  G: " % number(frame.green) % u"  B: " % number(frame.blue) %
           u"  W: " % number(frame.white);
}

QString Protocol::frameSummary(const QByteArray &frame)
{
    if (!isValidControlFrame(frame))
        return {};
    ControlFrame fields;
    fields.hy = byteAt(frame, 6);
    fields.frame = static_cast<quint16>(byteAt(frame, 7) << 8 | byteAt(frame, 8));
    fields.red = byteAt(frame, 9);
    fields.green = byteAt(frame, 10);
    fields.blue = byteAt(frame, 11);
    fields.white = byteAt(frame, 12);
    return frameSummary(fields);
}

QString Protocol::bytesToHex(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

QString Protocol::playbackStateText(PlaybackState state)
{
    switch (state) {
    case PlaybackState::Stopped:
        return Language::text(UiText::StateStopped);
    case PlaybackState::Playing:
        return Language::text(UiText::StatePlaying);
    case PlaybackState::Paused:
        return Language::text(UiText::StatePaused);
    }
    return Language::text(UiText::StateUnknown);
}

} // namespace qx
