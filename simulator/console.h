// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/playersimulator.h"

#include <QString>

#include <cstdio>

namespace qx {

/// Writes for people to one stream, a line at a time. Frames get a bar in their colour where the
/// stream is a terminal that shows 24-bit colours (COLORTERM; NO_COLOR forbids it).
class Console
{
public:
    /// The stream stays the caller's.
    explicit Console(std::FILE *stream);

    void line(const QString &text);

    /// One frame; `count` is its place among all frames.
    void frame(const SimulatedFrame &frame, qint64 count);

private:
    std::FILE *stream;
    bool colours;
};

} // namespace qx
