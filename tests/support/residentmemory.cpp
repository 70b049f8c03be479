// SPDX-License-Identifier: MIT
#include "tests/support/residentmemory.h"

#include <QFile>

#ifdef Q_OS_LINUX
#include <unistd.h>
#endif

namespace qx::test {

qint64 residentBytes()
{
#ifdef Q_OS_LINUX
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (statm.open(QIODevice::ReadOnly))
        return statm.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
#endif
    return 0;
}

} // namespace qx::test
