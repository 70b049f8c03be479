// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/latencysamples.h"
#include "simulator/playersimulator.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QObject>
#include <QString>

#include <chrono>
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
        std::chrono::nanoseconds at;
    };

    void noteArrived(const SimulatedFrame &frame);
    void noteAccepted(const SimulatedFrame &frame);
    void noteReplied(const QByteArray &reply, std::chrono::nanoseconds at);
    void noteUnplugged();
    std::optional<double> framesPerSecond() const;

    const PlayerSimulator &simulator;
    QElapsedTimer clock;
    std::optional<Accepted> first;
    std::optional<Accepted> last;
    std::optional<std::chrono::nanoseconds> previousAcceptedAt; ///< on the same connection
    std::optional<std::chrono::nanoseconds> repliedAt; ///< reply that no frame has followed yet
    LatencySamples intervals;
    LatencySamples turnarounds;
};

} // namespace qx
