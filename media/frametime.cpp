// SPDX-License-Identifier: MIT
#include "media/frametime.h"

namespace qx {

qint64 framePosition(int frame, int intervalMs, qint64 durationMs)
{
    const qint64 position = qint64{qMax(frame, 0)} * qMax(intervalMs, 1);
    return durationMs >= 1 ? qMin(position, durationMs) : position;
}

} // namespace qx
