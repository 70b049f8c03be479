// SPDX-License-Identifier: MIT
#include "simulator/replyqueue.h"

#include <algorithm>

namespace qx {

using namespace std::chrono_literals;

ReplyQueue::ReplyQueue(QObject *parent)
    : QObject(parent)
{
    clock.start();
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    connect(&timer, &QTimer::timeout, this, &ReplyQueue::giveOut);
}

void ReplyQueue::setPace(std::chrono::milliseconds newDelay, int pieceBytes)
{
    delay = newDelay;
    pieceSize = pieceBytes;
}

bool ReplyQueue::isNeeded() const
{
    return delay > 0ms || pieceSize > 0 || !pieces.isEmpty();
}

void ReplyQueue::add(const QByteArray &reply, Occasion occasion)
{
    const std::chrono::nanoseconds due = now() + delay;
    const qsizetype size = pieceSize > 0 ? pieceSize : reply.size();
    for (qsizetype position = 0; position < reply.size(); position += size)
        pieces.enqueue({due, reply.mid(position, size), {}, occasion});
    pieces.last().endedReply = reply;
    if (!timer.isActive())
        schedule();
}

void ReplyQueue::clear()
{
    timer.stop();
    pieces.clear();
}

std::chrono::nanoseconds ReplyQueue::now() const
{
    return std::chrono::nanoseconds(clock.nsecsElapsed());
}

void ReplyQueue::schedule()
{
    const std::chrono::nanoseconds wait = pieces.head().due - now();
    timer.start(std::max(std::chrono::ceil<std::chrono::milliseconds>(wait), 0ms));
}

void ReplyQueue::giveOut()
{
    const Piece piece = pieces.dequeue();
    emit pieceDue(piece.bytes);
    if (!pieces.isEmpty())
        schedule();
    if (!piece.endedReply.isEmpty())
        emit replyEnded(piece.endedReply, piece.occasion);
}

} // namespace qx
