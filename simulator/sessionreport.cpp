// SPDX-License-Identifier: MIT
#include "simulator/sessionreport.h"

namespace qx {

SessionReport::SessionReport(const PlayerSimulator &simulator)
    : m_simulator(simulator)
{
    m_clock.start();
    const auto *sender = &simulator;
    connect(sender, &PlayerSimulator::frameArrived, this, &SessionReport::noteArrived);
    connect(sender, &PlayerSimulator::frameAccepted, this, &SessionReport::noteAccepted);
    connect(sender, &PlayerSimulator::frameReplied, this, &SessionReport::noteReplied);
    connect(sender, &PlayerSimulator::unplugged, this, &SessionReport::noteUnplugged);
}

void SessionReport::noteArrived(const SimulatedFrame &frame)
{
    // A frame that was there before the reply was not sent because of it.
    if (m_repliedNs && frame.atNs >= *m_repliedNs) {
        m_turnarounds.add(frame.atNs - *m_repliedNs);
    }
    m_repliedNs.reset();
}

void SessionReport::noteAccepted(const SimulatedFrame &frame)
{
    if (m_previousAcceptedNs) {
        m_intervals.add(frame.atNs - *m_previousAcceptedNs);
    }
    m_previousAcceptedNs = frame.atNs;
    m_last = Accepted{frame.number, frame.atNs};
    if (!m_first) {
        m_first = m_last;
    }
}

void SessionReport::noteReplied(const QByteArray &, qint64 atNs)
{
    m_repliedNs = atNs;
}

// The time until the player is back says nothing about the host's pace.
void SessionReport::noteUnplugged()
{
    m_previousAcceptedNs.reset();
    m_repliedNs.reset();
}

std::optional<double> SessionReport::framesPerSecond() const
{
    if (!m_first || m_last->atNs <= m_first->atNs) {
        return std::nullopt;
    }
    const double seconds = static_cast<double>(m_last->atNs - m_first->atNs) / 1e9;
    return static_cast<double>(m_simulator.counts().framesAccepted - 1) / seconds;
}

QJsonObject SessionReport::toJson() const
{
    const SimulatorCounts &counts = m_simulator.counts();
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
        {QStringLiteral("port"), m_simulator.portPath()},
        {QStringLiteral("elapsedSeconds"), static_cast<double>(m_clock.nsecsElapsed()) / 1e9},
        {QStringLiteral("bytesReceived"), counts.bytesReceived},
        {QStringLiteral("unknownBytes"), counts.unknownBytes},
        {QStringLiteral("hellos"), counts.hellos},
        {QStringLiteral("frames"), counts.framesAccepted},
        {QStringLiteral("framesArrived"), counts.framesArrived},
        {QStringLiteral("framesUnanswered"), counts.framesUnanswered},
        {QStringLiteral("checksumErrors"), counts.checksumErrors},
        {QStringLiteral("firstFrame"), m_first ? QJsonValue(m_first->number) : QJsonValue()},
        {QStringLiteral("lastFrame"), m_last ? QJsonValue(m_last->number) : QJsonValue()},
        {QStringLiteral("framesPerSecond"), rate ? QJsonValue(*rate) : QJsonValue()},
        {QStringLiteral("intervalMs"), m_intervals.toJson()},
        {QStringLiteral("turnaroundMs"), m_turnarounds.toJson()},
        {QStringLiteral("floodLines"), counts.floodLinesSent},
        {QStringLiteral("replies"), replies},
    };
}

QString SessionReport::summary() const
{
    const SimulatorCounts &counts = m_simulator.counts();
    const auto rate = framesPerSecond();
    return QStringLiteral("%1 frames accepted of %2 (%3 without reply), %4 checksum errors, "
                          "%5 HELLO, %6 unknown bytes%7")
        .arg(QString::number(counts.framesAccepted), QString::number(counts.framesArrived),
             QString::number(counts.framesUnanswered), QString::number(counts.checksumErrors),
             QString::number(counts.hellos), QString::number(counts.unknownBytes),
             rate ? QStringLiteral(", %1 frames/s").arg(*rate, 0, 'f', 1) : QString());
}

} // namespace qx
