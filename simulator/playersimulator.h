// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/pseudoterminal.h"
#include "simulator/wiredecoder.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QQueue>
#include <QRandomGenerator>
#include <QString>
#include <QTimer>

#include <array>

class QSocketNotifier;

namespace qx {

/// What the player makes of a frame.
enum class FrameVerdict : int {
    Accepted,    ///< taken and forwarded: "QXUSB RX OK"
    NeedHello,   ///< no session: "QXUSB NEED HELLO"
    BadChecksum, ///< damaged, or said to be: "QXUSB BAD CHECKSUM"
    Ac39Fail,    ///< A39 did not take it: "QXUSB AC39 FAIL"
};

/// One frame as it arrived.
struct SimulatedFrame
{
    quint16 number = 0; ///< frame number
    quint8 hy = 0;
    quint8 red = 0;
    quint8 green = 0;
    quint8 blue = 0;
    quint8 white = 0;
    std::array<quint8, 6> reserved{};
    qint64 atNs = 0;  ///< when it was read: nanoseconds since the simulator was created
    QByteArray bytes; ///< all 20
    FrameVerdict verdict = FrameVerdict::Accepted;
    bool answered = true; ///< false if the reply was left out
};

/// How the player behaves; the defaults make a good one. "Every n-th" counts valid frames that
/// arrive in a session; 0 is never. Probabilities are 0..1. Where several apply to one frame the
/// order is: no reply, NEED HELLO, BAD CHECKSUM, AC39 FAIL.
struct SimulatorBehaviour
{
    int answerHelloNumber = 1; ///< answers each n-th HELLO only; 0 never
    bool readyFirst = false;   ///< says READY to the first HELLO of a session, before any OK
    QByteArray bootText = {};  ///< said each time when plugged in, as it is
    int replyDelayMs = 0;      ///< between a frame or HELLO and its reply
    int chunkBytes = 0;        ///< cuts replies into pieces that are written one by one; 0 whole
    int dropEvery = 0;         ///< accepts, but does not reply
    int badChecksumEvery = 0;
    int ac39FailEvery = 0;
    int needHelloEvery = 0; ///< forgets the session
    double dropProbability = 0;
    double badChecksumProbability = 0;
    double ac39FailProbability = 0;
    double needHelloProbability = 0;
    quint32 seed = 1;            ///< the same seed and the same frames give the same replies
    int floodLinesPerSecond = 0; ///< unasked text; left out while the line is full
    int vanishAfterFrames = 0;   ///< unplugs itself instead of replying to the n-th accepted frame
    int returnAfterMs = 0;       ///< plugs itself in again so long after it vanished; 0 stays away
    bool silent = false;         ///< reads, but replies to nothing
};

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
    const SimulatorBehaviour &behaviour() const { return m_behaviour; }

    /// Makes the port, and a symbolic link to it if a path is given; a link that was left there
    /// by another simulator is replaced. False and errorString() if that fails or if the player
    /// is plugged in already.
    bool plugIn(const QString &linkPath = {});

    /// The host sees the cable pulled. Removes the link; the session and all text not yet taken
    /// by the system are lost. The records stay.
    void unplug();

    bool isPluggedIn() const { return m_terminal.isOpen(); }

    /// What the host opens: the link if there is one (also while it is unplugged), else the
    /// pseudo-terminal's own path, which is empty while unplugged.
    QString portPath() const;

    /// Why the last plugIn() failed.
    QString errorString() const { return m_errorString; }

    /// Writes the bytes to the host at once, or as soon as the line takes them. Ignored while
    /// unplugged.
    void say(const QByteArray &bytes);

    /// How many bytes the line has not taken yet.
    qint64 unsentBytes() const { return m_unsent.size(); }

    /// A paused player does not read what the host sends.
    void setPaused(bool paused);

    /// Whether a HELLO was answered on this connection and the session not lost since.
    bool linked() const { return m_linked; }

    /// The accepted frames, in order, those without reply included.
    QList<SimulatedFrame> frames() const { return m_frames; }

    /// The raw bytes, in order.
    QByteArray received() const;

    /// Keeps the latest accepted frames and as many times 20 bytes only; a negative number, as
    /// at the start, keeps everything. The counts go on in any case.
    void setKeepRecords(int maxFrames);

    const SimulatorCounts &counts() const { return m_counts; }
    qint64 helloCount() const { return m_counts.hellos; }
    qint64 checksumErrors() const { return m_counts.checksumErrors; }
    qint64 unknownBytes() const { return m_counts.unknownBytes; }

    /// Clears the records and counts; the session goes on.
    void forget();

signals:
    void helloReceived();
    void frameArrived(const qx::SimulatedFrame &frame); ///< any frame, whatever the verdict
    void frameAccepted(const qx::SimulatedFrame &frame);
    /// A frame's whole reply is written (or stands behind unsentBytes(), if the line was full);
    /// `atNs` as in SimulatedFrame.
    void frameReplied(const QByteArray &reply, qint64 atNs);
    void pluggedIn();
    void unplugged();                          ///< also when it vanishes by itself
    void returnFailed(const QString &message); ///< it could not plug itself in again

private:
    struct Judgement
    {
        FrameVerdict verdict;
        bool answered;
    };
    struct Piece
    {
        qint64 dueNs;
        QByteArray bytes;
        QByteArray frameReply; ///< the reply that this piece ends, if it is a frame's
    };

    void readAvailable();
    void keepReceived(QByteArrayView bytes);
    void handle(const WireDecoder::Item &item, qint64 atNs);
    void handleHello();
    void handleFrame(SimulatedFrame frame, bool damaged);
    Judgement judge(bool damaged);
    bool happens(int every, double probability);
    void keepFrame(const SimulatedFrame &frame);
    void countReply(const SimulatedFrame &frame);

    bool reply(const QByteArray &line, bool toFrame);
    void queueReply(const QByteArray &line, bool toFrame);
    void schedulePiece();
    void sendPiece();
    void writeUnsent();
    void restartFlood();
    void flood();

    void watchTerminal();
    void pullCable();
    void vanish();
    void comeBack();
    void restartCounting();

    SimulatorBehaviour m_behaviour;
    PseudoTerminal m_terminal;
    QString m_linkPath;
    QString m_errorString;
    QSocketNotifier *m_readNotifier = nullptr; ///< both owned, null while unplugged
    QSocketNotifier *m_writeNotifier = nullptr;
    QElapsedTimer m_clock;
    bool m_paused = false;

    WireDecoder m_decoder;
    bool m_linked = false;
    qint64 m_hellosOfSession = 0;
    qint64 m_framesJudged = 0;
    qint64 m_acceptedSincePluggedIn = 0;
    QRandomGenerator m_random;

    QByteArray m_unsent;
    QQueue<Piece> m_pieces;
    QTimer m_pieceTimer;
    QTimer m_floodTimer;
    QElapsedTimer m_floodClock;
    qint64 m_floodLinesDue = 0;
    QTimer m_returnTimer;

    QList<SimulatedFrame> m_frames;
    QByteArray m_received;
    int m_keepFrames = -1;
    SimulatorCounts m_counts;
};

} // namespace qx
