// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace qx {

/// A symbolic link that gives a pseudo-terminal, whose number changes with each plugging in, a
/// name that stays.
class PortLink
{
public:
    /// Makes the link at `path`, which leads to `target`. A link that leads to some
    /// pseudo-terminal (left behind by a simulator that was killed) is replaced; anything else
    /// that is there stays. Returns an empty string, or what went wrong.
    static QString make(const QString &path, const QString &target);

    /// Removes the link at `path` if it still leads to `target`.
    static void remove(const QString &path, const QString &target);
};

} // namespace qx
