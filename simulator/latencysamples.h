// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>

#include <chrono>
#include <vector>

namespace qx {

/// Durations and their percentiles. Keeps the latest million, so a run of any length needs 8 MB at
/// most.
class LatencySamples
{
public:
    void add(std::chrono::nanoseconds sample);

    /// "count", and of the samples kept "min", "p50", "p90", "p99" and "max" in milliseconds
    /// (null without samples); each is one of the samples (nearest rank).
    QJsonObject toJson() const;

private:
    std::vector<std::chrono::nanoseconds> latest;
    qint64 count = 0;
};

} // namespace qx
