// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace qx::test {

/// Memory that this process holds, in bytes; 0 where the system does not tell (elsewhere than on
/// Linux), so that a growth measured with it is 0 too.
qint64 residentBytes();

/// The same once the allocator has given back what it keeps for later (with glibc; elsewhere it
/// keeps it): what is in use, rounded up to pages, and what lies between it. A peak that has
/// passed, such as a log that was long once, does not count.
qint64 residentBytesInUse();

} // namespace qx::test
