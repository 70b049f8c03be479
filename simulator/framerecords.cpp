// SPDX-License-Identifier: MIT
#include "simulator/framerecords.h"

#include "simulator/wiredecoder.h"

#include <algorithm>

namespace qx {

void FrameRecords::setLimit(int maxFrames)
{
    limit = maxFrames;
    if (!isLimited())
        return;
    kept.frames = kept.frames.last(std::min(limit, kept.frames.size()));
    kept.received = received();
}

void FrameRecords::add(QByteArrayView bytes)
{
    kept.received.append(bytes);
    // Cut only now and then: cutting moves all that is kept.
    if (isLimited() && kept.received.size() > 2 * byteLimit())
        kept.received = received();
}

void FrameRecords::add(const SimulatedFrame &frame)
{
    kept.frames.append(frame);
    if (isLimited() && kept.frames.size() > limit)
        kept.frames.removeFirst();
}

void FrameRecords::clear()
{
    kept = {};
}

QByteArray FrameRecords::received() const
{
    return isLimited() ? kept.received.right(byteLimit()) : kept.received;
}

qsizetype FrameRecords::byteLimit() const
{
    return WireDecoder::frameSize * limit;
}

} // namespace qx
