// SPDX-License-Identifier: MIT
#include "simulator/wiredecoder.h"

#include <algorithm>
#include <numeric>

namespace qx {

namespace {

constexpr qsizetype longestLine = 256;
constexpr QByteArrayView frameHeader("\xFF\xFF\x17\x12\x34\x17", 6);
constexpr QByteArrayView helloText("QXUSB HELLO", 11);

// Whether the bytes begin with the pattern, or are too few but agree so far.
bool mayBegin(QByteArrayView bytes, QByteArrayView pattern)
{
    const qsizetype known = std::min(bytes.size(), pattern.size());
    return bytes.first(known) == pattern.first(known);
}

// Where a header is, or may be beginning at the end of the bytes; their size if nowhere.
qsizetype headerPosition(QByteArrayView bytes)
{
    qsizetype position = 0;
    while (position < bytes.size() && !mayBegin(bytes.sliced(position), frameHeader))
        ++position;
    return position;
}

bool isUndamaged(QByteArrayView frame)
{
    return std::accumulate(frame.begin(), frame.end(), 0, std::bit_xor<>()) == 0;
}

// A damaged frame may be one that was cut short, with the next item in its last bytes.
qsizetype sizeOfDamagedFrame(QByteArrayView block)
{
    for (qsizetype position = frameHeader.size(); position < block.size(); ++position) {
        const QByteArrayView rest = block.sliced(position);
        if (mayBegin(rest, frameHeader) || mayBegin(rest, helloText))
            return position;
    }
    return block.size();
}

bool isPrintable(char byte)
{
    return byte >= ' ' && byte <= '~';
}

} // namespace

std::optional<WireDecoder::Item> WireDecoder::next()
{
    while (!buffer.isEmpty()) {
        const qsizetype position = headerPosition(buffer);
        if (position == 0) {
            if (buffer.size() < frameSize)
                return std::nullopt;
            return takeFrame();
        }
        const qsizetype lineFeed = QByteArrayView(buffer).first(position).indexOf('\n');
        if (lineFeed >= 0) {
            if (takeHelloLine(lineFeed))
                return Item{Kind::Hello, {}};
        } else if (position < buffer.size() || buffer.size() > longestLine) {
            discard(position);
        } else {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

WireDecoder::Item WireDecoder::takeFrame()
{
    const QByteArray block = buffer.first(frameSize);
    if (isUndamaged(block)) {
        buffer.remove(0, frameSize);
        return {Kind::Frame, block};
    }
    buffer.remove(0, sizeOfDamagedFrame(block));
    return {Kind::DamagedFrame, block};
}

// Takes the line up to the line feed; whether it says HELLO, garbage before that apart.
bool WireDecoder::takeHelloLine(qsizetype lineFeed)
{
    QByteArrayView line = QByteArrayView(buffer).first(lineFeed);
    if (line.endsWith('\r'))
        line.chop(1);
    const auto text = std::find_if_not(line.rbegin(), line.rend(), isPrintable).base();
    const qsizetype garbage = text - line.begin();
    const bool isHello = line.sliced(garbage) == helloText;

    unknownBytes += isHello ? garbage : lineFeed + 1;
    buffer.remove(0, lineFeed + 1);
    return isHello;
}

void WireDecoder::discard(qsizetype count)
{
    unknownBytes += count;
    buffer.remove(0, count);
}

} // namespace qx
