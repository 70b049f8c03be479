// SPDX-License-Identifier: MIT
#include "simulator/portlink.h"

#include <QFile>
#include <QFileInfo>

namespace qx {

namespace {

// "/dev/pts/" of "/dev/pts/12", "/dev/ttys" of "/dev/ttys012"
QString withoutNumber(QString path)
{
    while (!path.isEmpty() && path.back().isDigit())
        path.chop(1);
    return path;
}

} // namespace

QString PortLink::make(const QString &path, const QString &target)
{
    const QFileInfo old(path);
    if (old.isSymLink() && withoutNumber(old.symLinkTarget()) == withoutNumber(target))
        QFile::remove(path);
    else if (old.isSymLink() || old.exists())
        return QStringLiteral("%1 exists and is no link to a simulated port").arg(path);
    QFile terminal(target);
    if (!terminal.link(path))
        return QStringLiteral("cannot make the link %1: %2").arg(path, terminal.errorString());
    return {};
}

void PortLink::remove(const QString &path, const QString &target)
{
    const QFileInfo link(path);
    if (link.isSymLink() && link.symLinkTarget() == target)
        QFile::remove(path);
}

} // namespace qx
