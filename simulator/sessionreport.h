// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/latencysamples.h"
#include "simulator/playersimulator.h"

#include <QJsonObject>
#include <QObject>
#include <QString>

#include <optional>

namespace qx {

/// Follows one simulator and sums up what it saw. The simulator must outlive it and must not
/// forget() meanwhile.
class SessionReport : public QObject
{
    Q_OBJECT

public:
    explicit SessionReport(const PlayerSimulator &simulator);

    /// Everything, for programs; docs/simulator.md has the list of the keys.
    QJsonObject toJson() const;

    /// The most important of it in one line, for people.
    QString summary() const;

private:
    struct Accepted
    {
        quint16 number;
        qint64 atNs;
    };

    void noteArrived(const SimulatedFrame &frame);
    void noteAccepted(const SimulatedFrame &frame);
    void noteReplied(const QByteArray &reply, qint64 atNs);
    void noteUnplugged();
    std::optional<double> framesPerSecond() const;

    const PlayerSimulator &m_simulator;
    QElapsedTimer m_clock;
    std::optional<Accepted> m_first;
    std::optional<Accepted> m_last;
    std::optional<qint64> m_previousAcceptedNs; ///< on the same connection
    std::optional<qint64> m_repliedNs;          ///< reply that no frame has followed yet
    LatencySamples m_intervals;
    LatencySamples m_turnarounds;
};

} // namespace qx
