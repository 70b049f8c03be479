// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace qx {

/// Frames written down byte by byte, independent of the encoder.

/// HY 1, frame 1, red 255.
QByteArray goldenFrame();

/// HY 3, frame 0x1234, RGBW 10 20 30 40, reserved 01 to 06.
QByteArray goldenFrameWithReserved();

/// HY 1, this frame number, all levels 0.
QByteArray numberedFrame(quint16 number);

/// The frame with a wrong checksum.
QByteArray damaged(QByteArray frame);

} // namespace qx
