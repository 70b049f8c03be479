// SPDX-License-Identifier: MIT
#include "tests/support/residentmemory.h"

#include <QFile>

#ifdef Q_OS_LINUX
#include <unistd.h>
#endif
#ifdef __GLIBC__
#include <malloc.h>
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

qint64 residentBytesInUse()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
    return residentBytes();
}

} // namespace qx::test
