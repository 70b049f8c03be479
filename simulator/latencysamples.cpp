// SPDX-License-Identifier: MIT
#include "simulator/latencysamples.h"

#include <algorithm>
#include <cmath>

namespace qx {

namespace {

constexpr qint64 MostKept = 1'000'000;

QJsonValue percentileMs(const std::vector<qint64> &sorted, double fraction)
{
    if (sorted.empty()) {
        return QJsonValue::Null;
    }
    const auto rank = static_cast<size_t>(std::ceil(fraction * static_cast<double>(sorted.size())));
    return static_cast<double>(sorted[std::max<size_t>(rank, 1) - 1]) / 1e6;
}

} // namespace

void LatencySamples::add(qint64 ns)
{
    if (m_count < MostKept) {
        m_latest.push_back(ns);
    } else {
        m_latest[static_cast<size_t>(m_count % MostKept)] = ns;
    }
    ++m_count;
}

QJsonObject LatencySamples::toJson() const
{
    std::vector<qint64> sorted = m_latest;
    std::sort(sorted.begin(), sorted.end());
    return {
        {QStringLiteral("count"), m_count},
        {QStringLiteral("min"), percentileMs(sorted, 0)},
        {QStringLiteral("p50"), percentileMs(sorted, 0.50)},
        {QStringLiteral("p90"), percentileMs(sorted, 0.90)},
        {QStringLiteral("p99"), percentileMs(sorted, 0.99)},
        {QStringLiteral("max"), percentileMs(sorted, 1)},
    };
}

} // namespace qx
