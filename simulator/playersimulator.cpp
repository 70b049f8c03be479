// SPDX-License-Identifier: MIT
#include "simulator/playersimulator.h"

#include "simulator/portlink.h"

#include <QSocketNotifier>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <unistd.h>

namespace qx {

using namespace std::chrono_literals;

namespace {

constexpr qsizetype FrameSize = 20;
constexpr std::chrono::nanoseconds FloodPeriod = 10ms;

SimulatedFrame fieldsOf(const QByteArray &bytes, qint64 atNs)
{
    const auto byte = [&bytes](qsizetype offset) { return static_cast<quint8>(bytes[offset]); };
    SimulatedFrame frame;
    frame.hy = byte(6);
    frame.number = static_cast<quint16>(byte(7) * 256 + byte(8));
    frame.red = byte(9);
    frame.green = byte(10);
    frame.blue = byte(11);
    frame.white = byte(12);
    std::copy_n(bytes.begin() + 13, frame.reserved.size(), frame.reserved.begin());
    frame.atNs = atNs;
    frame.bytes = bytes;
    return frame;
}

QByteArray replyTo(FrameVerdict verdict)
{
    switch (verdict) {
    case FrameVerdict::Accepted:
        return QByteArrayLiteral("QXUSB RX OK\n");
    case FrameVerdict::NeedHello:
        return QByteArrayLiteral("QXUSB NEED HELLO\n");
    case FrameVerdict::BadChecksum:
        return QByteArrayLiteral("QXUSB BAD CHECKSUM\n");
    case FrameVerdict::Ac39Fail:
        return QByteArrayLiteral("QXUSB AC39 FAIL\n");
    }
    Q_UNREACHABLE();
}

} // namespace

PlayerSimulator::PlayerSimulator(QObject *parent)
    : QObject(parent)
{
    m_clock.start();
    m_pieceTimer.setSingleShot(true);
    m_pieceTimer.setTimerType(Qt::PreciseTimer);
    m_returnTimer.setSingleShot(true);
    m_returnTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_pieceTimer, &QTimer::timeout, this, &PlayerSimulator::sendPiece);
    connect(&m_floodTimer, &QTimer::timeout, this, &PlayerSimulator::flood);
    connect(&m_returnTimer, &QTimer::timeout, this, &PlayerSimulator::comeBack);
    restartCounting();
}

PlayerSimulator::~PlayerSimulator()
{
    if (isPluggedIn()) {
        pullCable();
    }
}

void PlayerSimulator::setBehaviour(const SimulatorBehaviour &behaviour)
{
    m_behaviour = behaviour;
    restartCounting();
    restartFlood();
}

void PlayerSimulator::restartCounting()
{
    m_hellosOfSession = 0;
    m_framesJudged = 0;
    m_acceptedSincePluggedIn = 0;
    m_random.seed(m_behaviour.seed);
}

// The cable

bool PlayerSimulator::plugIn(const QString &linkPath)
{
    m_returnTimer.stop();
    m_errorString.clear();
    if (isPluggedIn()) {
        m_errorString = QStringLiteral("the player is already plugged in");
        return false;
    }
    m_linkPath = linkPath;
    if (!m_terminal.open()) {
        m_errorString = m_terminal.errorString();
        return false;
    }
    if (!linkPath.isEmpty()) {
        m_errorString = PortLink::make(linkPath, m_terminal.hostPath());
        if (!m_errorString.isEmpty()) {
            m_terminal.close();
            return false;
        }
    }
    watchTerminal();
    say(m_behaviour.bootText);
    restartFlood();
    emit pluggedIn();
    return true;
}

void PlayerSimulator::watchTerminal()
{
    m_readNotifier = new QSocketNotifier(m_terminal.descriptor(), QSocketNotifier::Read, this);
    m_readNotifier->setEnabled(!m_paused);
    connect(m_readNotifier, &QSocketNotifier::activated, this, &PlayerSimulator::readAvailable);

    m_writeNotifier = new QSocketNotifier(m_terminal.descriptor(), QSocketNotifier::Write, this);
    m_writeNotifier->setEnabled(false);
    connect(m_writeNotifier, &QSocketNotifier::activated, this, &PlayerSimulator::writeUnsent);
}

void PlayerSimulator::unplug()
{
    m_returnTimer.stop();
    if (!isPluggedIn()) {
        return;
    }
    pullCable();
    emit unplugged();
}

void PlayerSimulator::pullCable()
{
    // Disabled before the descriptor goes; not deleted, for one of them may be at work.
    for (QSocketNotifier *notifier : {m_readNotifier, m_writeNotifier}) {
        notifier->setEnabled(false);
        notifier->deleteLater();
    }
    m_readNotifier = nullptr;
    m_writeNotifier = nullptr;
    m_floodTimer.stop();
    m_pieceTimer.stop();
    m_pieces.clear();
    m_unsent.clear();
    m_decoder.clear();
    m_linked = false;
    m_hellosOfSession = 0;
    m_acceptedSincePluggedIn = 0;

    PortLink::remove(m_linkPath, m_terminal.hostPath());
    m_terminal.close();
}

void PlayerSimulator::vanish()
{
    unplug();
    if (m_behaviour.returnAfterMs > 0 && !isPluggedIn()) {
        m_returnTimer.start(m_behaviour.returnAfterMs);
    }
}

void PlayerSimulator::comeBack()
{
    if (!plugIn(m_linkPath)) {
        emit returnFailed(m_errorString);
    }
}

QString PlayerSimulator::portPath() const
{
    return m_linkPath.isEmpty() ? m_terminal.hostPath() : m_linkPath;
}

// What the host sends

void PlayerSimulator::setPaused(bool paused)
{
    m_paused = paused;
    if (m_readNotifier) {
        m_readNotifier->setEnabled(!paused);
    }
}

void PlayerSimulator::readAvailable()
{
    std::array<char, 4096> buffer;
    const ssize_t count = ::read(m_terminal.descriptor(), buffer.data(), buffer.size());
    const qint64 atNs = m_clock.nsecsElapsed();
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    if (count <= 0) {
        vanish();
        return;
    }
    const QByteArray bytes(buffer.data(), count);
    keepReceived(bytes);
    m_decoder.append(bytes);
    while (const auto item = m_decoder.next()) {
        handle(*item, atNs);
    }
    m_counts.unknownBytes += m_decoder.takeUnknownBytes();
}

void PlayerSimulator::handle(const WireDecoder::Item &item, qint64 atNs)
{
    if (item.kind == WireDecoder::Kind::Hello) {
        handleHello();
    } else {
        handleFrame(fieldsOf(item.bytes, atNs), item.kind == WireDecoder::Kind::DamagedFrame);
    }
}

void PlayerSimulator::handleHello()
{
    ++m_counts.hellos;
    ++m_hellosOfSession;
    if (!m_behaviour.silent) {
        if (m_behaviour.readyFirst && m_hellosOfSession == 1) {
            ++m_counts.readySent;
            reply(QByteArrayLiteral("QXUSB READY\n"), false);
        }
        const int every = m_behaviour.answerHelloNumber;
        if (every > 0 && m_hellosOfSession % every == 0) {
            m_linked = true;
            ++m_counts.okSent;
            reply(QByteArrayLiteral("QXUSB OK\n"), false);
        }
    }
    emit helloReceived();
}

void PlayerSimulator::handleFrame(SimulatedFrame frame, bool damaged)
{
    const Judgement judgement = judge(damaged);
    frame.verdict = judgement.verdict;
    frame.answered = judgement.answered && !m_behaviour.silent;

    const bool accepted = frame.verdict == FrameVerdict::Accepted;
    const int vanishAfter = m_behaviour.vanishAfterFrames;
    const bool vanishes = accepted && ++m_acceptedSincePluggedIn == vanishAfter;
    frame.answered = frame.answered && !vanishes;

    m_counts.checksumErrors += damaged;
    countReply(frame);
    keepFrame(frame);

    const QByteArray line = replyTo(frame.verdict);
    const bool written = frame.answered && reply(line, true);
    const qint64 writtenAtNs = m_clock.nsecsElapsed();
    emit frameArrived(frame);
    if (accepted) {
        emit frameAccepted(frame);
    }
    if (written) {
        emit frameReplied(line, writtenAtNs);
    }
    if (vanishes) {
        vanish();
    }
}

PlayerSimulator::Judgement PlayerSimulator::judge(bool damaged)
{
    if (damaged) {
        return {FrameVerdict::BadChecksum, true};
    }
    if (!m_linked) {
        return {FrameVerdict::NeedHello, true};
    }
    // All four are asked each time, so that one does not change the others' random sequence.
    ++m_framesJudged;
    const bool dropped = happens(m_behaviour.dropEvery, m_behaviour.dropProbability);
    const bool needHello = happens(m_behaviour.needHelloEvery, m_behaviour.needHelloProbability);
    const bool badChecksum =
        happens(m_behaviour.badChecksumEvery, m_behaviour.badChecksumProbability);
    const bool ac39Fail = happens(m_behaviour.ac39FailEvery, m_behaviour.ac39FailProbability);
    if (dropped) {
        return {FrameVerdict::Accepted, false};
    }
    if (needHello) {
        m_linked = false;
        m_hellosOfSession = 0;
        return {FrameVerdict::NeedHello, true};
    }
    if (badChecksum) {
        return {FrameVerdict::BadChecksum, true};
    }
    return {ac39Fail ? FrameVerdict::Ac39Fail : FrameVerdict::Accepted, true};
}

bool PlayerSimulator::happens(int every, double probability)
{
    const bool byChance = m_random.generateDouble() < probability;
    return byChance || (every > 0 && m_framesJudged % every == 0);
}

// What the player says

void PlayerSimulator::say(const QByteArray &bytes)
{
    if (!isPluggedIn()) {
        return;
    }
    m_unsent += bytes;
    if (!m_writeNotifier->isEnabled()) {
        writeUnsent();
    }
}

void PlayerSimulator::writeUnsent()
{
    while (!m_unsent.isEmpty()) {
        const ssize_t count = ::write(m_terminal.descriptor(), m_unsent.constData(),
                                      static_cast<size_t>(m_unsent.size()));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            break; // the line is full
        }
        m_unsent.remove(0, count);
    }
    m_writeNotifier->setEnabled(!m_unsent.isEmpty());
}

// True if the reply is written, false if it waits for its time.
bool PlayerSimulator::reply(const QByteArray &line, bool toFrame)
{
    if (m_behaviour.replyDelayMs == 0 && m_behaviour.chunkBytes == 0 && m_pieces.isEmpty()) {
        say(line);
        return true;
    }
    queueReply(line, toFrame);
    return false;
}

void PlayerSimulator::queueReply(const QByteArray &line, bool toFrame)
{
    const qint64 dueNs = m_clock.nsecsElapsed() + m_behaviour.replyDelayMs * qint64(1'000'000);
    const qsizetype size = m_behaviour.chunkBytes > 0 ? m_behaviour.chunkBytes : line.size();
    for (qsizetype position = 0; position < line.size(); position += size) {
        m_pieces.enqueue({dueNs, line.mid(position, size), {}});
    }
    if (toFrame) {
        m_pieces.last().frameReply = line;
    }
    if (!m_pieceTimer.isActive()) {
        schedulePiece();
    }
}

void PlayerSimulator::schedulePiece()
{
    const std::chrono::nanoseconds wait(m_pieces.head().dueNs - m_clock.nsecsElapsed());
    m_pieceTimer.start(std::max(std::chrono::ceil<std::chrono::milliseconds>(wait), 0ms));
}

void PlayerSimulator::sendPiece()
{
    const Piece piece = m_pieces.dequeue();
    say(piece.bytes);
    if (!m_pieces.isEmpty()) {
        schedulePiece();
    }
    if (!piece.frameReply.isEmpty()) {
        emit frameReplied(piece.frameReply, m_clock.nsecsElapsed());
    }
}

void PlayerSimulator::restartFlood()
{
    m_floodTimer.stop();
    if (isPluggedIn() && m_behaviour.floodLinesPerSecond > 0) {
        m_floodLinesDue = 0;
        m_floodClock.start();
        m_floodTimer.start(std::chrono::duration_cast<std::chrono::milliseconds>(FloodPeriod));
    }
}

void PlayerSimulator::flood()
{
    const qint64 due = m_floodClock.elapsed() * m_behaviour.floodLinesPerSecond / 1000;
    for (; m_floodLinesDue < due && m_unsent.isEmpty(); ++m_floodLinesDue) {
        ++m_counts.floodLinesSent;
        say(QByteArrayLiteral("I (") + QByteArray::number(m_clock.elapsed()) +
            QByteArrayLiteral(") player: line ") + QByteArray::number(m_floodLinesDue + 1) + '\n');
    }
    m_floodLinesDue = due;
}

// The records

void PlayerSimulator::keepReceived(QByteArrayView bytes)
{
    m_counts.bytesReceived += bytes.size();
    m_received.append(bytes);
    // Cut only now and then: cutting moves all that is kept.
    if (m_keepFrames >= 0 && m_received.size() > 2 * FrameSize * m_keepFrames) {
        m_received = received();
    }
}

QByteArray PlayerSimulator::received() const
{
    return m_keepFrames < 0 ? m_received : m_received.right(FrameSize * m_keepFrames);
}

void PlayerSimulator::keepFrame(const SimulatedFrame &frame)
{
    if (frame.verdict != FrameVerdict::Accepted) {
        return;
    }
    m_frames.append(frame);
    if (m_keepFrames >= 0 && m_frames.size() > m_keepFrames) {
        m_frames.removeFirst();
    }
}

void PlayerSimulator::setKeepRecords(int maxFrames)
{
    m_keepFrames = maxFrames;
    if (maxFrames >= 0) {
        m_frames = m_frames.last(std::min<qsizetype>(maxFrames, m_frames.size()));
        m_received = received();
    }
}

void PlayerSimulator::countReply(const SimulatedFrame &frame)
{
    ++m_counts.framesArrived;
    m_counts.framesAccepted += frame.verdict == FrameVerdict::Accepted;
    if (!frame.answered) {
        ++m_counts.framesUnanswered;
        return;
    }
    switch (frame.verdict) {
    case FrameVerdict::Accepted:
        ++m_counts.rxOkSent;
        break;
    case FrameVerdict::NeedHello:
        ++m_counts.needHelloSent;
        break;
    case FrameVerdict::BadChecksum:
        ++m_counts.badChecksumSent;
        break;
    case FrameVerdict::Ac39Fail:
        ++m_counts.ac39FailSent;
        break;
    }
}

void PlayerSimulator::forget()
{
    m_frames.clear();
    m_received.clear();
    m_counts = {};
}

} // namespace qx
