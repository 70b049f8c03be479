// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/framejudge.h"
#include "simulator/framerecords.h"
#include "simulator/pseudoterminal.h"
#include "simulator/replyqueue.h"
#include "simulator/simulatedframe.h"
#include "simulator/simulatorbehaviour.h"
#include "simulator/textflood.h"
#include "simulator/wiredecoder.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>

class QSocketNotifier;

namespace qx {

/// What was counted since the start or PlayerSimulator::forget(). Always:
/// framesArrived = rxOkSent + needHelloSent + badChecksumSent + ac39FailSent + framesUnanswered.
struct SimulatorCounts
{
    qint64 bytesReceived = 0;
    qint64 unknownBytes = 0; ///< neither part of a frame nor of a HELLO line
    qint64 hellos = 0;
    qint64 framesArrived = 0; ///< 20-byte blocks that began with the header
    qint64 framesAccepted = 0;
    qint64 framesUnanswered = 0; ///< whatever the verdict
    qint64 checksumErrors = 0;   ///< truly wrong checksums, not the pretended ones
    qint64 readySent = 0;
    qint64 okSent = 0;
    qint64 rxOkSent = 0;
    qint64 needHelloSent = 0;
    qint64 badChecksumSent = 0;
    qint64 ac39FailSent = 0;
    qint64 floodLinesSent = 0;
};

/// A lighting player at the end of a pseudo-terminal, for a host to connect to as to a serial
/// port. It lives in the event loop of its thread and never blocks. A frame is recorded and its
/// reply written before anything is emitted about it.
class PlayerSimulator : public QObject
{
    Q_OBJECT

public:
    explicit PlayerSimulator(QObject *parent = nullptr);
    ~PlayerSimulator() override;

    /// At any time. All counting for "every n-th" and the random sequence begin anew; replies
    /// that wait for their delay still come as they were.
    void setBehaviour(const SimulatorBehaviour &behaviour);
    const SimulatorBehaviour &behaviour() const { return state.behaviour; }

    /// Makes the port, and a symbolic link to it if a path is given; a link that was left there
    /// by another simulator is replaced. False and errorString() if that fails or if the player
    /// is plugged in already.
    bool plugIn(const QString &link = {});

    /// The host sees the cable pulled. Removes the link; the session and all text not yet taken
    /// by the system are lost. The records stay.
    void unplug();

    bool isPluggedIn() const { return terminal.isOpen(); }

    /// What the host opens: the link if there is one (also while it is unplugged), else the
    /// pseudo-terminal's own path, which is empty while unplugged.
    QString portPath() const;

    /// Why the last plugIn() failed.
    QString errorString() const { return state.errorString; }

    /// Writes the bytes to the host at once, or as soon as the line takes them. Ignored while
    /// unplugged.
    void say(const QByteArray &bytes);

    /// How many bytes the line has not taken yet.
    qint64 unsentBytes() const { return unsent.size(); }

    /// A paused player does not read what the host sends.
    void setPaused(bool on);

    /// Whether a HELLO was answered on this connection and the session not lost since.
    bool linked() const { return state.linked; }

    /// The accepted frames, in order, those without reply included.
    QList<SimulatedFrame> frames() const { return records.frames(); }

    /// The raw bytes, in order.
    QByteArray received() const { return records.received(); }

    /// Keeps the latest accepted frames and as many times 20 bytes only; a negative number, as
    /// at the start, keeps everything. The counts go on in any case.
    void setKeepRecords(int maxFrames) { records.setLimit(maxFrames); }

    const SimulatorCounts &counts() const { return state.counts; }
    qint64 helloCount() const { return state.counts.hellos; }
    qint64 checksumErrors() const { return state.counts.checksumErrors; }
    qint64 unknownBytes() const { return state.counts.unknownBytes; }

    /// Clears the records and counts; the session goes on.
    void forget();

signals:
    void helloReceived();
    void frameArrived(const qx::SimulatedFrame &frame); ///< any frame, whatever the verdict
    void frameAccepted(const qx::SimulatedFrame &frame);
    /// A frame's whole reply is written (or stands behind unsentBytes(), if the line was full);
    /// `at` as in SimulatedFrame.
    void frameReplied(const QByteArray &reply, std::chrono::nanoseconds at);
    void pluggedIn();
    void unplugged();                          ///< also when it vanishes by itself
    void returnFailed(const QString &message); ///< it could not plug itself in again

private:
    struct State
    {
        SimulatorBehaviour behaviour;
        QString errorString;
        bool linked = false;
        SimulatorCounts counts;
    };

    std::chrono::nanoseconds now() const;

    void watchTerminal();
    void pullCable();
    void vanish();
    void comeBack();

    void readAvailable();
    void handle(const WireDecoder::Item &item, std::chrono::nanoseconds at);
    void handleHello();
    void handleFrame(SimulatedFrame frame, bool damaged);
    void countReply(const SimulatedFrame &frame);
    void endSession();

    bool reply(const QByteArray &line, Occasion occasion);
    void writeUnsent();
    void sayFloodLines(qint64 first, qint64 last);

    State state;
    QElapsedTimer clock;

    PseudoTerminal terminal;
    QString linkPath;
    QSocketNotifier *readNotifier = nullptr; ///< both owned, null while unplugged
    QSocketNotifier *writeNotifier = nullptr;
    QTimer returnTimer;
    bool paused = false;

    WireDecoder decoder;
    FrameJudge frameJudge{SimulatorBehaviour()};
    qint64 hellosOfSession = 0;
    qint64 acceptedSincePluggedIn = 0;
    FrameRecords records;

    QByteArray unsent;
    ReplyQueue replies;
    TextFlood textFlood;
};

} // namespace qx
