// SPDX-License-Identifier: MIT
#include "tests/simulator/wirebytes.h"

namespace qx {

QByteArray goldenFrame()
{
    return QByteArray::fromHex("FFFF17123417010001FF000000000000000000D9");
}

QByteArray goldenFrameWithReserved()
{
    return QByteArray::fromHex("FFFF171234170312340A141E280102030405062C");
}

QByteArray numberedFrame(quint16 number)
{
    QByteArray frame = QByteArray::fromHex("FFFF1712341701000000000000000000000000");
    frame[7] = static_cast<char>(number >> 8);
    frame[8] = static_cast<char>(number & 0xFF);
    char checksum = 0;
    for (const char byte : std::as_const(frame))
        checksum = static_cast<char>(checksum ^ byte);
    return frame + checksum;
}

QByteArray damaged(QByteArray frame)
{
    frame[19] = static_cast<char>(frame[19] ^ 0x01);
    return frame;
}

} // namespace qx
