// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace qx {

/// Where in the media a frame lies: `frame` times `intervalMs`, in ms. A negative frame counts as
/// 0, an interval below 2 ms as 1 ms; a known duration (1 ms or more) bounds the result.
qint64 framePosition(int frame, int intervalMs, qint64 durationMs);

} // namespace qx
