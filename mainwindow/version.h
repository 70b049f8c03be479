// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qx {

/// The version of the program, "1.2.3".
inline QString version()
{
    return QStringLiteral(TESSALY_VERSION);
}

} // namespace qx
