// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>

#include <vector>

namespace qx {

/// Durations in nanoseconds and their percentiles. Keeps the latest million, so a run of any
/// length needs 8 MB at most.
class LatencySamples
{
public:
    void add(qint64 ns);

    /// "count", and of the samples kept "min", "p50", "p90", "p99" and "max" in milliseconds
    /// (null without samples); each is one of the samples (nearest rank).
    QJsonObject toJson() const;

private:
    std::vector<qint64> m_latest;
    qint64 m_count = 0;
};

} // namespace qx
