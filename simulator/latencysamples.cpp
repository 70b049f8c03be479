// SPDX-License-Identifier: MIT
#include "simulator/latencysamples.h"

#include <algorithm>
#include <cmath>

namespace qx {

namespace {

constexpr qint64 mostKept = 1'000'000;

QJsonValue percentileMs(const std::vector<std::chrono::nanoseconds> &sorted, double fraction)
{
    if (sorted.empty())
        return QJsonValue::Null;
    const auto rank = static_cast<size_t>(std::ceil(fraction * static_cast<double>(sorted.size())));
    const std::chrono::duration<double, std::milli> value = sorted[std::max<size_t>(rank, 1) - 1];
    return value.count();
}

} // namespace

void LatencySamples::add(std::chrono::nanoseconds sample)
{
    if (count < mostKept)
        latest.push_back(sample);
    else
        latest[static_cast<size_t>(count % mostKept)] = sample;
    ++count;
}

QJsonObject LatencySamples::toJson() const
{
    std::vector<std::chrono::nanoseconds> sorted = latest;
    std::sort(sorted.begin(), sorted.end());
    return {
        {QStringLiteral("count"), count},
        {QStringLiteral("min"), percentileMs(sorted, 0)},
        {QStringLiteral("p50"), percentileMs(sorted, 0.50)},
        {QStringLiteral("p90"), percentileMs(sorted, 0.90)},
        {QStringLiteral("p99"), percentileMs(sorted, 0.99)},
        {QStringLiteral("max"), percentileMs(sorted, 1)},
    };
}

} // namespace qx
