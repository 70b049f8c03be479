// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace qx::test {

/// Memory that this process holds, in bytes; 0 where the system does not tell (elsewhere than on
/// Linux), so that a growth measured with it is 0 too.
qint64 residentBytes();

} // namespace qx::test
