// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QSerialPort;
QT_END_NAMESPACE

namespace qx {

/// What the system says about an open serial line right now. QSerialPort alone cannot be asked:
/// on Unix it names a vanished device by whatever errno was left over, or not at all.
///
/// Where a system has no poll() the answers are the harmless ones: the line is there, it takes
/// bytes, there is nothing to watch.

/// Whether the device behind the line is gone (unplugged, the far end closed).
bool lineIsLost(QSerialPort &port);

/// Whether the line takes bytes without waiting.
bool lineTakesBytes(QSerialPort &port);

/// A descriptor whose exceptional state announces the loss of the line at once; -1 for none. It is
/// a duplicate: newer Qt watches the port's own, and its event loop takes one watch of a kind for
/// each. The caller gives it to closeWatch() before the port is closed.
qintptr openWatch(QSerialPort &port);
void closeWatch(qintptr descriptor); ///< -1 is allowed

} // namespace qx
