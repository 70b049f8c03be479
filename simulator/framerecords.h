// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/simulatedframe.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

namespace qx {

/// The raw bytes and the accepted frames that a player remembers, in order.
class FrameRecords
{
public:
    /// Keeps the latest frames and as many times 20 bytes only; a negative number, as at the
    /// start, keeps everything.
    void setLimit(int maxFrames);

    void add(QByteArrayView bytes);
    void add(const SimulatedFrame &frame);
    void clear();

    QList<SimulatedFrame> frames() const { return kept.frames; }
    QByteArray received() const;

private:
    struct Kept
    {
        QList<SimulatedFrame> frames;
        QByteArray received; ///< up to twice what is asked for
    };

    bool isLimited() const { return limit >= 0; }
    qsizetype byteLimit() const;

    Kept kept;
    qsizetype limit = -1; ///< frames
};

} // namespace qx
