// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QQueue>
#include <QTimer>

#include <chrono>

namespace qx {

/// What a reply answers.
enum class Occasion : int { Hello, Frame };

/// The replies that a slow player has not written yet, in order. It gives them out when they are
/// due, whole or in pieces, each piece on a turn of the event loop of its own.
class ReplyQueue : public QObject
{
    Q_OBJECT

public:
    explicit ReplyQueue(QObject *parent = nullptr);

    /// For the replies that are added from now on: how long each one waits, and into pieces of how
    /// many bytes it is cut (0: it stays whole).
    void setPace(std::chrono::milliseconds delay, int pieceBytes);

    /// Whether a reply given now has to be added: the pace asks for it, or others wait before it.
    bool isNeeded() const;

    void add(const QByteArray &reply, Occasion occasion);

    /// Forgets all that waits.
    void clear();

signals:
    void pieceDue(const QByteArray &piece);
    /// The last piece of a reply has just been given out.
    void replyEnded(const QByteArray &reply, qx::Occasion occasion);

private:
    struct Piece
    {
        std::chrono::nanoseconds due; ///< by the clock
        QByteArray bytes;
        QByteArray endedReply; ///< the reply that this piece ends, else empty
        Occasion occasion;
    };

    std::chrono::nanoseconds now() const;
    void schedule();
    void giveOut();

    std::chrono::milliseconds delay{0};
    qsizetype pieceSize = 0;
    QElapsedTimer clock;
    QTimer timer;
    QQueue<Piece> pieces;
};

} // namespace qx
