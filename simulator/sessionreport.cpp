// SPDX-License-Identifier: MIT
#include "simulator/sessionreport.h"

namespace qx {

SessionReport::SessionReport(const PlayerSimulator &simulator)
    : simulator(simulator)
{
    clock.start();
    const auto *sender = &simulator;
    connect(sender, &PlayerSimulator::frameArrived, this, &SessionReport::noteArrived);
    connect(sender, &PlayerSimulator::frameAccepted, this, &SessionReport::noteAccepted);
    connect(sender, &PlayerSimulator::frameReplied, this, &SessionReport::noteReplied);
    connect(sender, &PlayerSimulator::unplugged, this, &SessionReport::noteUnplugged);
}

void SessionReport::noteArrived(const SimulatedFrame &frame)
{
    // A frame that was there before the reply was not sent because of it.
    if (repliedAt && frame.at >= *repliedAt)
        turnarounds.add(frame.at - *repliedAt);
    repliedAt.reset();
}

void SessionReport::noteAccepted(const SimulatedFrame &frame)
{
    if (previousAcceptedAt)
        intervals.add(frame.at - *previousAcceptedAt);
    previousAcceptedAt = frame.at;
    last = Accepted{frame.number, frame.at};
    if (!first)
        first = last;
}

void SessionReport::noteReplied(const QByteArray &, std::chrono::nanoseconds at)
{
    repliedAt = at;
}

// The time until the player is back says nothing about the host's pace.
void SessionReport::noteUnplugged()
{
    previousAcceptedAt.reset();
    repliedAt.reset();
}

std::optional<double> SessionReport::framesPerSecond() const
{
    if (!first || last->at <= first->at)
        return std::nullopt;
    const std::chrono::duration<double> span = last->at - first->at;
    return static_cast<double>(simulator.counts().framesAccepted - 1) / span.count();
}

QJsonObject SessionReport::toJson() const
{
    const SimulatorCounts &counts = simulator.counts();
    const auto rate = framesPerSecond();
    const QJsonObject replies{
        {QStringLiteral("ready"), counts.readySent},
        {QStringLiteral("ok"), counts.okSent},
        {QStringLiteral("rxOk"), counts.rxOkSent},
        {QStringLiteral("needHello"), counts.needHelloSent},
        {QStringLiteral("badChecksum"), counts.badChecksumSent},
        {QStringLiteral("ac39Fail"), counts.ac39FailSent},
    };
    return {
        {QStringLiteral("version"), QStringLiteral(TESSALY_VERSION)},
        {QStringLiteral("port"), simulator.portPath()},
        {QStringLiteral("elapsedSeconds"), static_cast<double>(clock.nsecsElapsed()) / 1e9},
        {QStringLiteral("bytesReceived"), counts.bytesReceived},
        {QStringLiteral("unknownBytes"), counts.unknownBytes},
        {QStringLiteral("hellos"), counts.hellos},
        {QStringLiteral("frames"), counts.framesAccepted},
        {QStringLiteral("framesArrived"), counts.framesArrived},
        {QStringLiteral("framesUnanswered"), counts.framesUnanswered},
        {QStringLiteral("checksumErrors"), counts.checksumErrors},
        {QStringLiteral("firstFrame"), first ? QJsonValue(first->number) : QJsonValue()},
        {QStringLiteral("lastFrame"), last ? QJsonValue(last->number) : QJsonValue()},
        {QStringLiteral("framesPerSecond"), rate ? QJsonValue(*rate) : QJsonValue()},
        {QStringLiteral("intervalMs"), intervals.toJson()},
        {QStringLiteral("turnaroundMs"), turnarounds.toJson()},
        {QStringLiteral("floodLines"), counts.floodLinesSent},
        {QStringLiteral("replies"), replies},
    };
}

QString SessionReport::summary() const
{
    const SimulatorCounts &counts = simulator.counts();
    const auto rate = framesPerSecond();
    return QStringLiteral("%1 frames accepted of %2 (%3 without reply), %4 checksum errors, "
                          "%5 HELLO, %6 unknown bytes%7")
        .arg(QString::number(counts.framesAccepted), QString::number(counts.framesArrived),
             QString::number(counts.framesUnanswered), QString::number(counts.checksumErrors),
             QString::number(counts.hellos), QString::number(counts.unknownBytes),
             rate ? QStringLiteral(", %1 frames/s").arg(*rate, 0, 'f', 1) : QString());
}

} // namespace qx
