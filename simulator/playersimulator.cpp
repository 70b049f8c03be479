// SPDX-License-Identifier: MIT
#include "simulator/playersimulator.h"

#include "simulator/portlink.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <unistd.h>

namespace qx {

using namespace std::chrono_literals;

PlayerSimulator::PlayerSimulator(QObject *parent)
    : QObject(parent)
{
    clock.start();
    returnTimer.setSingleShot(true);
    returnTimer.setTimerType(Qt::PreciseTimer);
    connect(&returnTimer, &QTimer::timeout, this, &PlayerSimulator::comeBack);
    connect(&replies, &ReplyQueue::pieceDue, this, &PlayerSimulator::say);
    connect(&replies, &ReplyQueue::replyEnded, this,
            [this](const QByteArray &reply, Occasion occasion) {
                if (occasion == Occasion::Frame)
                    emit frameReplied(reply, now());
            });
    connect(&textFlood, &TextFlood::linesDue, this, &PlayerSimulator::sayFloodLines);
}

PlayerSimulator::~PlayerSimulator()
{
    if (isPluggedIn())
        pullCable();
}

void PlayerSimulator::setBehaviour(const SimulatorBehaviour &behaviour)
{
    state.behaviour = behaviour;
    frameJudge = FrameJudge(behaviour);
    hellosOfSession = 0;
    acceptedSincePluggedIn = 0;
    replies.setPace(behaviour.replyDelay, behaviour.chunkBytes);
    if (isPluggedIn())
        textFlood.restart(behaviour.floodLinesPerSecond);
}

std::chrono::nanoseconds PlayerSimulator::now() const
{
    return std::chrono::nanoseconds(clock.nsecsElapsed());
}

// The cable

bool PlayerSimulator::plugIn(const QString &link)
{
    returnTimer.stop();
    state.errorString.clear();
    if (isPluggedIn()) {
        state.errorString = QStringLiteral("the player is already plugged in");
        return false;
    }
    linkPath = link;
    if (!terminal.open()) {
        state.errorString = terminal.errorString();
        return false;
    }
    if (!linkPath.isEmpty()) {
        state.errorString = PortLink::make(linkPath, terminal.hostPath());
        if (!state.errorString.isEmpty()) {
            terminal.close();
            return false;
        }
    }
    watchTerminal();
    say(state.behaviour.bootText);
    textFlood.restart(state.behaviour.floodLinesPerSecond);
    emit pluggedIn();
    return true;
}

void PlayerSimulator::watchTerminal()
{
    readNotifier = new QSocketNotifier(terminal.descriptor(), QSocketNotifier::Read, this);
    readNotifier->setEnabled(!paused);
    connect(readNotifier, &QSocketNotifier::activated, this, &PlayerSimulator::readAvailable);

    writeNotifier = new QSocketNotifier(terminal.descriptor(), QSocketNotifier::Write, this);
    writeNotifier->setEnabled(false);
    connect(writeNotifier, &QSocketNotifier::activated, this, &PlayerSimulator::writeUnsent);
}

void PlayerSimulator::unplug()
{
    returnTimer.stop();
    if (!isPluggedIn())
        return;
    pullCable();
    emit unplugged();
}

void PlayerSimulator::pullCable()
{
    // Disabled before the descriptor goes; not deleted, for one of them may be at work.
    for (QSocketNotifier *notifier : {readNotifier, writeNotifier}) {
        notifier->setEnabled(false);
        notifier->deleteLater();
    }
    readNotifier = nullptr;
    writeNotifier = nullptr;
    textFlood.stop();
    replies.clear();
    unsent.clear();
    decoder.clear();
    endSession();
    acceptedSincePluggedIn = 0;

    PortLink::remove(linkPath, terminal.hostPath());
    terminal.close();
}

void PlayerSimulator::vanish()
{
    unplug();
    if (state.behaviour.returnAfter > 0ms && !isPluggedIn())
        returnTimer.start(state.behaviour.returnAfter);
}

void PlayerSimulator::comeBack()
{
    if (!plugIn(linkPath))
        emit returnFailed(state.errorString);
}

QString PlayerSimulator::portPath() const
{
    return linkPath.isEmpty() ? terminal.hostPath() : linkPath;
}

// What the host sends

void PlayerSimulator::setPaused(bool on)
{
    paused = on;
    if (readNotifier)
        readNotifier->setEnabled(!paused);
}

void PlayerSimulator::readAvailable()
{
    std::array<char, 4096> buffer;
    const ssize_t count = ::read(terminal.descriptor(), buffer.data(), buffer.size());
    const std::chrono::nanoseconds at = now();
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    if (count <= 0) {
        vanish();
        return;
    }
    const QByteArray bytes(buffer.data(), count);
    state.counts.bytesReceived += count;
    records.add(bytes);
    decoder.append(bytes);
    while (const auto item = decoder.next())
        handle(*item, at);
    state.counts.unknownBytes += decoder.takeUnknownBytes();
}

void PlayerSimulator::handle(const WireDecoder::Item &item, std::chrono::nanoseconds at)
{
    if (item.kind == WireDecoder::Kind::Hello) {
        handleHello();
    } else {
        handleFrame(SimulatedFrame::fromBytes(item.bytes, at),
                    item.kind == WireDecoder::Kind::DamagedFrame);
    }
}

void PlayerSimulator::handleHello()
{
    ++state.counts.hellos;
    ++hellosOfSession;
    if (!state.behaviour.silent) {
        if (state.behaviour.readyFirst && hellosOfSession == 1) {
            ++state.counts.readySent;
            reply(QByteArrayLiteral("QXUSB READY\n"), Occasion::Hello);
        }
        const int every = state.behaviour.answerHelloNumber;
        if (every > 0 && hellosOfSession % every == 0) {
            state.linked = true;
            ++state.counts.okSent;
            reply(QByteArrayLiteral("QXUSB OK\n"), Occasion::Hello);
        }
    }
    emit helloReceived();
}

void PlayerSimulator::handleFrame(SimulatedFrame frame, bool damaged)
{
    const auto [verdict, answered] = frameJudge.judge(damaged, state.linked);
    if (state.linked && verdict == FrameVerdict::NeedHello)
        endSession();
    const bool accepted = verdict == FrameVerdict::Accepted;
    const int vanishAfter = state.behaviour.vanishAfterFrames;
    const bool vanishes = accepted && ++acceptedSincePluggedIn == vanishAfter;
    frame.verdict = verdict;
    frame.answered = answered && !state.behaviour.silent && !vanishes;

    state.counts.checksumErrors += damaged;
    countReply(frame);
    if (accepted)
        records.add(frame);

    const QByteArray line = replyTo(frame.verdict);
    const bool written = frame.answered && reply(line, Occasion::Frame);
    const std::chrono::nanoseconds writtenAt = now();
    emit frameArrived(frame);
    if (accepted)
        emit frameAccepted(frame);
    if (written)
        emit frameReplied(line, writtenAt);
    if (vanishes)
        vanish();
}

void PlayerSimulator::endSession()
{
    state.linked = false;
    hellosOfSession = 0;
}

// What the player says

void PlayerSimulator::say(const QByteArray &bytes)
{
    if (!isPluggedIn())
        return;
    unsent += bytes;
    if (!writeNotifier->isEnabled())
        writeUnsent();
}

void PlayerSimulator::writeUnsent()
{
    while (!unsent.isEmpty()) {
        const ssize_t count =
            ::write(terminal.descriptor(), unsent.constData(), static_cast<size_t>(unsent.size()));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            break; // the line is full
        unsent.remove(0, count);
    }
    writeNotifier->setEnabled(!unsent.isEmpty());
}

// True if the reply is written, false if it waits for its time.
bool PlayerSimulator::reply(const QByteArray &line, Occasion occasion)
{
    if (replies.isNeeded()) {
        replies.add(line, occasion);
        return false;
    }
    say(line);
    return true;
}

void PlayerSimulator::sayFloodLines(qint64 first, qint64 last)
{
    for (qint64 number = first; number <= last && unsent.isEmpty(); ++number) {
        ++state.counts.floodLinesSent;
        say(QByteArrayLiteral("I (") + QByteArray::number(clock.elapsed()) +
            QByteArrayLiteral(") player: line ") + QByteArray::number(number) + '\n');
    }
}

// The records

void PlayerSimulator::countReply(const SimulatedFrame &frame)
{
    ++state.counts.framesArrived;
    state.counts.framesAccepted += frame.verdict == FrameVerdict::Accepted;
    if (!frame.answered) {
        ++state.counts.framesUnanswered;
        return;
    }
    switch (frame.verdict) {
    case FrameVerdict::Accepted:
        ++state.counts.rxOkSent;
        break;
    case FrameVerdict::NeedHello:
        ++state.counts.needHelloSent;
        break;
    case FrameVerdict::BadChecksum:
        ++state.counts.badChecksumSent;
        break;
    case FrameVerdict::Ac39Fail:
        ++state.counts.ac39FailSent;
        break;
    }
}

void PlayerSimulator::forget()
{
    records.clear();
    state.counts = {};
}

} // namespace qx
