// SPDX-License-Identifier: MIT
//
// Thousands of steps of an operator at the window and of a player that answers rightly, wrongly,
// late, twice or not at all. An account is kept of what log and status bar say; a line that the
// rules of the link do not allow, or a missing one, ends the walk; and so does a number that is
// taken while it is being typed, or a wheel that turns what it should not.
//
// QX_WALK_SEED and QX_WALK_STEPS choose another walk; QX_WALK_MINUTES makes it a long one, which
// also looks at memory (tests/soak).
#include "i18n/language.h"
#include "protocol/protocol.h"
#include "tests/support/eventcounter.h"
#include "tests/support/residentmemory.h"
#include "tests/support/stage.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTest>
#include <QTextBlock>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace qx::test;
using qx::ControlFrame;
using qx::Language;
using qx::PlaybackState;
using qx::Protocol;
using qx::ReplyKind;
using qx::SimulatedFrame;
using qx::UiText;

namespace {

constexpr int standardSteps = 3000;
constexpr int turnsAtMost = 5; // steps, each at least one turn of the event loop
constexpr int writesAtMost = 3;
constexpr std::chrono::seconds settling = 10s;
constexpr int floodLines = 300;
constexpr std::chrono::minutes warmUp = 1min;  // of a long walk: caches, fonts, full buffers
constexpr qint64 tolerableGrowth = 512 * 1024; // bytes
constexpr std::chrono::milliseconds ackWindow = 800ms;
constexpr std::chrono::milliseconds helloPeriod = 1s;
constexpr std::chrono::milliseconds soonestHello = 950ms; // a coarse timer may be 5 % early

QString hello(int attempt)
{
    return Language::text(UiText::HelloLogLine).arg(attempt);
}

// What has to arrive in the order of sending. What a closing port or a full buffer may have
// swallowed can still turn up late, but need not.
class Line
{
public:
    void sent(const QString &item) { awaited.append(item); }
    void cut() { doubtful += std::exchange(awaited, {}); }
    void forgetDoubtful() { forgotten += std::exchange(doubtful, {}).size(); }
    bool arrives(const QString &item)
    {
        if (!awaited.isEmpty() && awaited.first() == item) {
            awaited.removeFirst();
            return true;
        }
        return doubtful.removeOne(item);
    }
    /// The first that arrives after a cut can be the rest of an item.
    bool restArrives(const QString &rest)
    {
        const auto item = std::ranges::find_if(
            doubtful, [&](const QString &whole) { return whole.endsWith(rest); });
        if (item == doubtful.end())
            return false;
        doubtful.erase(item);
        return true;
    }
    QStringList stillAwaited() const { return awaited; }
    qsizetype swallowed() const { return doubtful.size() + forgotten; }

private:
    QStringList awaited;
    QStringList doubtful;
    qsizetype forgotten = 0; ///< doubtful ones that cannot turn up any more
};

// The session as the rules allow it, told by the log lines and status messages alone. A frame is
// known by its summary.
class Account
{
public:
    /// `helloTimerRuns` counts how often the timer that repeats HELLO has run out;
    /// `playbackTimer` is the one of the interval.
    Account(Operator &operatorAtWindow, QString path, const EventCounter &helloTimerRuns,
            const QTimer &playbackTimer)
        : hand(operatorAtWindow)
        , port(std::move(path))
        , helloTimerRuns(helloTimerRuns)
        , playbackTimer(playbackTimer)
    {
        for (QTimer *timer : {&firstHelloPeriod, &window}) {
            timer->setSingleShot(true);
            timer->setTimerType(Qt::PreciseTimer);
        }
        firstHelloPeriod.setInterval(soonestHello);
        window.setInterval(ackWindow);
    }

    void logLine(const QString &line);
    void statusMessage(const QString &message);
    void frameArrived(const SimulatedFrame &frame);
    void playerSaid(const QString &line)
    {
        fromPlayer.sent(line);
        if (!open)
            fromPlayer.cut();
    }
    void unplugged() { toPlayer.forgetDoubtful(); }

    // What the hand does next. Between these two no event comes in.
    void beginAct();
    void play();
    void pause();
    void stop();
    void endAct();

    void endOfStep();
    void require(bool condition, const char *rule);
    void note(const QString &event); ///< for the history of a violation
    bool rests() const { return state == PlaybackState::Stopped; }
    bool isReady() const { return demo || linked; } ///< frames may go out
    bool lacksHandshake() const { return open && !linked; }
    bool keepsStop() const { return stopKept; }
    bool isSettled() const { return underWay().isEmpty(); }
    QStringList underWay() const; ///< what has not come to its end yet
    QString verdict() const { return violation; }

    /// Every frame that was written came to one of its ends.
    bool isBalanced() const
    {
        const int waiting = inFlight.isEmpty() ? 0 : 1;
        return writes ==
               succeeded - demoFrames + failed - failedUnasked + requeued + abandoned + waiting;
    }
    /// How many frames the player has to count.
    qsizetype arrivals() const
    {
        return writes + retries - toPlayer.stillAwaited().size() - toPlayer.swallowed();
    }

    // Set while the operator acts: where frames of the hand come from.
    bool mayRestartHandshake = false;
    QString typedFrame; ///< summary of the frame in the manual field, if that is being sent

    // What happened, for the report.
    int succeeded = 0, failed = 0, demoFrames = 0, writes = 0, retries = 0, queued = 0;
    int queuedAgain = 0, retained = 0, hellos = 0, losses = 0, timeouts = 0;
    int requeued = 0;      ///< in flight when the session was lost, or
    int abandoned = 0;     ///< when the line was
    int failedUnasked = 0; ///< failures told while nothing was in flight
    int stopsKept = 0, stopsFollowed = 0, stopsForgotten = 0;

private:
    bool takeDue(const QString &event);
    bool tellsLoss(const QString &event) const;
    QString owed() const;
    void owe(UiText line);
    void refusePlayback();
    void forgetStop();
    void rest(bool resends);
    void notice();
    bool tellsClosing(const QString &line) const;
    QString offered() const { return typedFrame.isEmpty() ? hand.summary()->text() : typedFrame; }
    QString outcome(UiText message, int ok, int fail) const;

    void systemLine(const QString &message, bool wasDue);
    void errorLine(const QString &message, bool wasDue);
    void helloSent(const QString &message, bool wasDue);
    void frameSent(const QString &summary, bool wasDue);
    void frameSentAgain(const QString &summary, bool wasDue);
    void heard(const QString &line);
    void frameQueued(bool wasDue);
    void frameRetained();
    void closed();
    void finished(bool success);
    void checkDisplays();

    // Timers that are late run out in the order in which they were due. These two are started
    // before the ones of the session, so they are over when those run out, however slow the machine
    // is.
    QTimer firstHelloPeriod; ///< after a handshake was started or restarted
    QTimer window;           ///< after a write

    Operator &hand;
    const QString port;
    const EventCounter &helloTimerRuns;
    const QTimer &playbackTimer;
    bool operatorActs = false;
    PlaybackState state = PlaybackState::Stopped;
    bool timerRuns = false; ///< the one of the interval
    bool stopKept = false;  ///< Stop came while the handshake was missing
    bool frameOwed = false; ///< after what is due: the frame of the editors is offered, and
    QString lineOwed;       ///< then this line comes
    bool demo = true;
    bool open = false;
    bool linked = false;
    int attempts = 0;
    int helloTimerRunsSeen = 0;
    QString inFlight;
    int writesOfFrame = 0;
    QString pending;
    QString offeredAgain;          ///< posted to the event loop after an outcome
    bool maybeTaken = false;       ///< in demo mode: the frame that was sent may have been that one
    int stepsOfferedAgain = 0;     ///< for so long
    std::optional<bool> finishing; ///< the outcome that the next status message tells
    QStringList due;               ///< events that must come next
    QString controllerError;
    Line toPlayer;
    Line fromPlayer;
    bool mayHearRest = false; ///< of a line whose beginning was thrown away
    QStringList history;
    QString violation;
};

void Account::require(bool condition, const char *rule)
{
    if (condition || !violation.isEmpty())
        return;
    violation = u"%1, after:\n  %2"_s.arg(QLatin1String(rule), history.join(u"\n  "_s));
}

void Account::note(const QString &event)
{
    history.append(event);
    if (history.size() > 30)
        history.removeFirst();
}

// False if nothing is due; a due event that does not come is a violation.
bool Account::takeDue(const QString &event)
{
    const bool isOwed = due.isEmpty();
    const QString expected = isOwed ? owed() : due.takeFirst();
    const bool comesBetween = isOwed && event != expected && tellsLoss(event);
    note(event);
    if (expected.isEmpty() || comesBetween)
        return false;
    if (isOwed && !std::exchange(frameOwed, false))
        lineOwed.clear();
    require(event == expected, qPrintable(u"due was: "_s + expected));
    return true;
}

// A line can be lost while it is written to: what is owed then comes after that, if at all.
bool Account::tellsLoss(const QString &event) const
{
    const bool written = !history.isEmpty() && history.last().startsWith(u"TX ");
    return (open && written && event.startsWith(u"ERR ")) ||
           (!controllerError.isEmpty() && event == u"SYS   "_s + controllerError);
}

// The frame of the editors is written, waits behind another, or is refused.
QString Account::owed() const
{
    if (!frameOwed)
        return lineOwed;
    if (!hand.reserved()->styleSheet().isEmpty())
        return u"ERR   "_s + Language::text(UiText::FrameNotSentReserved);
    if (!demo && !inFlight.isEmpty())
        return u"QUEUE "_s + Language::text(UiText::WaitingAckFrameReplaced);
    return u"TX    "_s + hand.summary()->text();
}

void Account::owe(UiText line)
{
    frameOwed = true;
    lineOwed = u"SYS   "_s + Language::text(line);
}

void Account::beginAct()
{
    notice();
    operatorActs = true;
}

void Account::endAct()
{
    require(!frameOwed && lineOwed.isEmpty(), "what the hand asked for is done at once");
    operatorActs = false;
    mayRestartHandshake = false;
    typedFrame.clear();
}

void Account::refusePlayback()
{
    lineOwed = u"ERR   "_s + Language::text(UiText::CompleteHandshakeFirst);
}

void Account::forgetStop()
{
    stopsForgotten += std::exchange(stopKept, false);
}

void Account::play()
{
    if (!isReady())
        return refusePlayback();
    state = PlaybackState::Playing;
    timerRuns = true;
    frameOwed = true;
}

void Account::pause()
{
    if (!isReady())
        return refusePlayback();
    state = PlaybackState::Paused;
    timerRuns = true;
    owe(UiText::PausedResending);
}

// On an open port that is not ready Stop is kept until it is, or until it is forgotten.
void Account::stop()
{
    if (isReady()) {
        rest(true);
        owe(UiText::StoppedResendingZero);
        return;
    }
    rest(false);
    stopsKept += open && !stopKept;
    stopKept = open;
}

void Account::rest(bool resends)
{
    state = PlaybackState::Stopped;
    timerRuns = resends;
}

// Playing can come to its end by itself, with a line in the log or without.
void Account::notice()
{
    if (operatorActs || state != PlaybackState::Playing ||
        hand.state() != Language::text(UiText::StateStopped))
        return;
    require(!hand.replay()->isChecked(), "it plays on while Replay is on");
    require(demo || (inFlight.isEmpty() && offeredAgain.isEmpty()),
            "no step while a frame is in flight or waits to be offered again");
    stop();
}

QString Account::outcome(UiText message, int ok, int fail) const
{
    return Language::text(UiText::ResultWithCounts)
        .arg(Language::text(message), QString::number(ok), QString::number(fail));
}

void Account::logLine(const QString &line)
{
    if (!tellsClosing(line))
        notice();
    const bool wasDue = takeDue(line);
    const QString tag = line.first(5).trimmed();
    const QString message = line.mid(6);
    if (tag == u"SYS")
        systemLine(message, wasDue);
    else if (tag == u"ERR")
        errorLine(message, wasDue);
    else if (tag == u"TX" && message.startsWith(u"QXUSB"))
        helloSent(message, wasDue);
    else if (tag == u"TX")
        frameSent(message, wasDue);
    else if (tag == u"RETRY")
        frameSentAgain(message, wasDue);
    else if (tag == u"RX" && demo)
        require(wasDue, "an acknowledgement in demo mode follows its frame");
    else if (tag == u"RX")
        heard(message);
    else if (tag == u"QUEUE")
        frameQueued(wasDue);
    else if (tag == u"WAIT")
        frameRetained();
    else
        require(false, "no other tag");
}

// The window has stopped playing before it tells that.
bool Account::tellsClosing(const QString &line) const
{
    const QString message = line.mid(6);
    return line.startsWith(u"SYS ") &&
           (message == controllerError ||
            message == Language::text(UiText::DisconnectedFrom).arg(port));
}

void Account::systemLine(const QString &message, bool wasDue)
{
    const QString opened = Language::text(UiText::PortOpened).arg(port, u"115200"_s);
    const QString disconnected = Language::text(UiText::DisconnectedFrom).arg(port);
    if (message == opened) {
        require(!open && !demo, "a port opens only outside demo mode, and only once");
        open = true;
        fromPlayer.cut(); // opening discards what was said before
        fromPlayer.forgetDoubtful();
        due = {u"status "_s + message, u"TX    "_s + hello(1)};
    } else if (message == disconnected || message == controllerError) {
        require(open || message == controllerError, "only an open port disconnects");
        losses += open && message == controllerError;
        closed();
        due = {u"status "_s + message};
        controllerError.clear();
    } else if (message == Language::text(UiText::DemoModeDescription)) {
        require(!open, "demo mode closes the port first");
        demo = true;
        closed();
    } else if (message == Language::text(UiText::DemoModeDisabled)) {
        demo = false;
        rest(false);
    } else if (message == Language::text(UiText::StoppedResendingZero) ||
               message == Language::text(UiText::PausedResending)) {
        require(wasDue, "nobody asked for that");
    }
}

void Account::errorLine(const QString &message, bool wasDue)
{
    if (message == Language::text(UiText::CompleteHandshakeFirst)) {
        require(wasDue && !isReady(), "refused although ready");
    } else if (message == Language::text(UiText::FrameNotSentDisconnected)) {
        require(!demo && !open, "refused although the port is open");
        if (!operatorActs)
            require(!std::exchange(offeredAgain, {}).isEmpty(), "nobody offered that frame");
    } else if (message == Language::text(UiText::HandshakePortDisconnected) ||
               message == Language::text(UiText::NoUsablePort)) {
        require(!demo && !open, "refused although the port is open");
    } else if (message == Language::text(UiText::FrameNotSentReserved)) {
        require(operatorActs || wasDue || demo || offeredAgain.isEmpty(),
                "a frame that waits to be offered again goes before any step");
    } else if (message != Language::text(UiText::ManualFrameIncomplete) &&
               message != Language::text(UiText::ManualFrameInvalid)) {
        if (message == Language::text(UiText::ResponseBufferOverflow)) {
            fromPlayer.cut();
            mayHearRest = true;
        }
        controllerError = message;
        due = {u"status "_s + message};
    }
}

void Account::helloSent(const QString &message, bool wasDue)
{
    require(open && !demo, "HELLO needs an open port");
    ++hellos;
    if (message == hello(1)) {
        require(wasDue || mayRestartHandshake, "nobody restarted the handshake");
        linked = false;
        attempts = 1;
        helloTimerRunsSeen = helloTimerRuns.count;
        firstHelloPeriod.start();
        return;
    }
    require(!linked && message == hello(attempts + 1), "attempts are counted one by one");
    ++attempts;
    if (!wasDue) {
        require(!firstHelloPeriod.isActive() && helloTimerRunsSeen < helloTimerRuns.count,
                "one HELLO each second");
        helloTimerRunsSeen = helloTimerRuns.count;
    }
}

// From the hand or the playback timer, offered again after an outcome, or (due) released by OK.
void Account::frameSent(const QString &summary, bool wasDue)
{
    const bool maybeStep = demo && summary != offeredAgain; // nothing holds one back there
    if (!wasDue && !operatorActs && !offeredAgain.isEmpty() && !maybeStep) {
        require(summary == offeredAgain,
                "a frame that waits to be offered again goes before any step");
        maybeTaken = demo && summary == offered();
        if (!maybeTaken)
            offeredAgain.clear();
    } else if (!wasDue) {
        require(summary == offered(), "what is sent is what the editors or the hand offered");
    }
    if (demo) {
        ++succeeded;
        ++demoFrames;
        due = {u"RX    QXUSB RX OK  (DEMO)"_s};
        return;
    }
    require(open && linked, "a frame needs a complete handshake");
    require(inFlight.isEmpty(), "one frame in flight at most");
    inFlight = summary;
    writesOfFrame = 1;
    ++writes;
    window.start();
    toPlayer.sent(summary);
}

void Account::frameSentAgain(const QString &summary, bool wasDue)
{
    require(!inFlight.isEmpty() && summary == inFlight, "only the frame in flight is sent again");
    require(writesOfFrame < writesAtMost, "three writes of a frame at most");
    require(wasDue || !window.isActive(), "not before 800 ms have passed");
    timeouts += !wasDue;
    ++writesOfFrame;
    ++retries;
    window.start();
    toPlayer.sent(summary);
}

void Account::heard(const QString &line)
{
    require(open, "a closed port says nothing");
    const bool restAllowed = std::exchange(mayHearRest, false);
    require(fromPlayer.arrives(line) || (restAllowed && fromPlayer.restArrives(line)),
            "the player said that, in this order");
    switch (Protocol::parseReply(line.toLatin1()).kind) {
    case ReplyKind::Ready:
        if (!linked)
            due = {u"TX    "_s + hello(attempts + 1)};
        break;
    case ReplyKind::Ok:
        linked = true;
        due = {u"status "_s + Language::text(UiText::HandshakeSucceeded)};
        if (inFlight.isEmpty() && !pending.isEmpty())
            due.append(u"TX    "_s + std::exchange(pending, {}));
        if (std::exchange(stopKept, false)) {
            ++stopsFollowed;
            timerRuns = true;
            owe(UiText::StoppedResendingZero);
        }
        break;
    case ReplyKind::RxOk:
        if (!inFlight.isEmpty()) {
            due = {u"status "_s + outcome(UiText::EspFrameAccepted, succeeded + 1, failed)};
            finishing = true;
        }
        break;
    case ReplyKind::NeedHello:
        if (!inFlight.isEmpty()) {
            pending = std::exchange(inFlight, {});
            ++requeued;
        }
        due = {u"TX    "_s + hello(1)};
        break;
    case ReplyKind::BadChecksum:
        if (inFlight.isEmpty())
            break;
        if (writesOfFrame < writesAtMost) {
            due = {u"RETRY "_s + inFlight};
        } else {
            due = {u"status "_s + outcome(UiText::AckTimeout, succeeded, failed + 1)};
            finishing = false;
        }
        break;
    case ReplyKind::Ac39Fail:
        due = {u"status "_s + outcome(UiText::EspForwardingFailed, succeeded, failed + 1)};
        finishing = false;
        break;
    case ReplyKind::Unknown:
        break;
    }
}

// A frame of the hand waits, or the dark one of a Stop that was kept; or the one that was offered
// again, because a frame of the hand was quicker. The playback timer offers nothing while one is in
// flight.
void Account::frameQueued(bool wasDue)
{
    const bool isNew = operatorActs || wasDue;
    require(!inFlight.isEmpty() && linked, "a frame waits only behind another");
    require(isNew || !offeredAgain.isEmpty(), "nobody offered that frame");
    ++(isNew ? queued : queuedAgain);
    pending = isNew ? offered() : std::exchange(offeredAgain, {});
}

void Account::frameRetained()
{
    require(open && !linked && !demo, "frames are retained while the handshake is missing");
    require(operatorActs || !offeredAgain.isEmpty(), "nobody offered that frame");
    pending = operatorActs ? offered() : std::exchange(offeredAgain, {});
    ++retained;
    due = {u"TX    "_s + hello(1)};
}

void Account::closed()
{
    open = linked = false;
    forgetStop();
    rest(false);
    if (frameOwed)
        lineOwed.clear();
    frameOwed = false;
    abandoned += !inFlight.isEmpty();
    inFlight.clear();
    pending.clear();
    toPlayer.cut();
    fromPlayer.cut();
}

void Account::finished(bool success)
{
    ++(success ? succeeded : failed);
    failedUnasked += inFlight.isEmpty();
    inFlight.clear();
    if (!pending.isEmpty() && (linked || demo)) {
        offeredAgain = std::exchange(pending, {});
        stepsOfferedAgain = 0;
        maybeTaken = false;
    }
}

void Account::statusMessage(const QString &message)
{
    const bool wasDue = takeDue(u"status "_s + message);
    if (finishing) {
        finished(*std::exchange(finishing, {}));
    } else if (message == outcome(UiText::AckTimeout, succeeded, failed + 1)) {
        require(!inFlight.isEmpty() && writesOfFrame == writesAtMost,
                "three writes before giving up");
        require(!window.isActive(), "not before 800 ms have passed");
        ++timeouts;
        finished(false);
    } else if (!wasDue) {
        require(message == Language::text(UiText::SelectPortStatus).arg(u"0.3.5"_s),
                "no other message by itself");
    }
}

void Account::frameArrived(const SimulatedFrame &frame)
{
    require(Protocol::isValidControlFrame(frame.bytes), "the player gets valid frames only");
    require(toPlayer.arrives(Protocol::frameSummary(frame.bytes)),
            "the player gets what the log says, in this order");
}

QStringList Account::underWay() const
{
    QStringList things;
    const auto note = [&](const char *where, const QStringList &items) {
        for (const QString &item : items) {
            if (!item.isEmpty())
                things.append(QLatin1String(where) + item);
        }
    };
    note("in flight: ", {inFlight});
    note("waiting: ", {pending});
    note("to be offered again: ", {offeredAgain});
    note("to come: ", {stopKept || frameOwed ? u"the dark frame"_s : QString(), lineOwed});
    note("on its way to the player: ", toPlayer.stillAwaited());
    note("on its way from the player: ", fromPlayer.stillAwaited());
    return things;
}

void Account::endOfStep()
{
    notice();
    require(due.isEmpty() && !frameOwed && lineOwed.isEmpty(), "something due did not come");
    if (!offeredAgain.isEmpty() && ++stepsOfferedAgain == turnsAtMost) {
        require(maybeTaken, "the waiting frame is offered again");
        offeredAgain.clear();
    }
    checkDisplays();
}

void Account::checkDisplays()
{
    const QString link = demo     ? Language::text(UiText::OfflineDemo)
                         : linked ? Language::text(UiText::HandshakeComplete)
                         : open   ? Language::text(UiText::HandshakingAttempt).arg(attempts)
                                  : Language::text(UiText::Disconnected);
    const QString handshake = demo     ? u"DEMO"_s
                              : linked ? u"QXUSB OK"_s
                              : open   ? Language::text(UiText::Handshaking)
                                       : Language::text(UiText::Disconnected);
    require(hand.lampIsLit() == (demo || linked), "the lamp tells whether frames may go out");
    require(hand.linkText()->text() == link, "the link text follows the flags");
    require(hand.row(1)->text() == handshake, "the handshake row follows the flags");
    require(hand.connectButton()->isEnabled() != demo, "no connecting in demo mode");
    require(hand.connectButton()->text() ==
                Language::text(open ? UiText::DisconnectButton : UiText::ConnectHandshakeButton),
            "the button says what it will do");
    require(hand.row(6)->text().endsWith(u" · OK %1 / FAIL %2"_s.arg(succeeded).arg(failed)) ||
                hand.row(6)->text() == u"TX 0 B / RX 0 B"_s,
            "the counters");

    const bool stopped = state == PlaybackState::Stopped;
    require(hand.state() == Protocol::playbackStateText(state), "plays, pauses or rests as told");
    require(playbackTimer.isActive() == timerRuns, "frames go out at the interval, or do not");
    require(hand.row(2)->text() == hand.state(), "both states agree");
    require(hand.row(4)->text() ==
                u"%1 / %2"_s.arg(stopped ? 0 : hand.frame()->value()).arg(hand.total()->value()),
            "the frame row");
    require(hand.position()->text() ==
                u"%1 / %2"_s.arg(qMin(hand.frame()->value(), hand.total()->value()))
                    .arg(hand.total()->value()),
            "the panel shows the frame");
}

QString shownIn(const QSpinBox *box)
{
    return box->findChild<QLineEdit *>()->text();
}

// A number that is being typed into one of the boxes while other things happen.
class TypedNumber : public QObject
{
public:
    TypedNumber(Account &account, std::vector<QSpinBox *> boxes)
        : boxes(std::move(boxes))
        , account(account)
    {
        for (QSpinBox *each : this->boxes) {
            connect(each, &QSpinBox::valueChanged, this, [this, each](int value) {
                if (each == box)
                    changes.append(value);
            });
        }
        connect(qApp, &QApplication::focusChanged, this,
                [this](const QWidget *old) { focusGone = focusGone || old == box; });
    }

    bool isBeingTyped() const { return box != nullptr; }
    bool isBeingTypedInto(const QSpinBox *which) const { return box && which == box; }

    void begin(QSpinBox *which, QChar digit);
    void typeOn(QChar digit);
    void eraseOne();
    void press(Qt::Key key);                                ///< a key that takes the number
    void step(int steps, const std::function<void()> &act); ///< from the typed number
    void giveUp();

    void beginAct();
    void endAct(bool takes); ///< of another kind, which takes the number if the focus goes
    void endOfStep();

    int taken = 0, givenUp = 0, lived = 0; ///< for the report; `lived`: steps of the walk

    const std::vector<QSpinBox *> boxes; ///< HY, Frame, Total, the four colours

private:
    static constexpr std::ptrdiff_t frameBox = 1;
    static constexpr std::ptrdiff_t firstColour = 3;

    std::optional<int> number() const;
    int bound(int value) const { return qBound(box->minimum(), value, box->maximum()); }
    void require(bool condition, const char *rule);
    void checkTyping();
    void checkTaken(const QList<int> &expected);
    void checkHeld();
    void end() { box = nullptr; }

    Account &account;
    QSpinBox *box = nullptr; ///< that is being typed into
    QString text;            ///< as the operator has typed it
    int held = 0;            ///< the value before an act
    QList<int> changes;      ///< of the value, in one act
    bool focusGone = false;  ///< in one act; it can be back by its end
};

void TypedNumber::require(bool condition, const char *rule)
{
    if (condition)
        return;
    const QString numbers =
        u"%1 (%2 was %3, is %4, of %5; typed \"%6\", shown \"%7\")"_s.arg(QLatin1String(rule))
            .arg(box->accessibleName())
            .arg(held)
            .arg(box->value())
            .arg(box->maximum())
            .arg(text, shownIn(box));
    account.require(false, qPrintable(numbers));
}

std::optional<int> TypedNumber::number() const
{
    return text.isEmpty() ? std::nullopt : std::optional(text.toInt());
}

void TypedNumber::begin(QSpinBox *which, QChar digit)
{
    box = which;
    box->setFocus();
    box->selectAll();
    text.clear();
    beginAct();
    text = digit;
    QTest::keyClick(box, digit.toLatin1());
    checkTyping();
}

void TypedNumber::typeOn(QChar digit)
{
    const QString longer = text + digit;
    QTest::keyClick(box, digit.toLatin1());
    if (longer.toInt() <= box->maximum())
        text = longer;
    checkTyping();
}

void TypedNumber::eraseOne()
{
    QTest::keyClick(box, Qt::Key_Backspace);
    text.chop(1);
    checkTyping();
}

void TypedNumber::checkTyping()
{
    require(shownIn(box) == text, "what is typed stands there");
    require(changes.isEmpty() && box->value() == held, "typing alone changes no value");
}

void TypedNumber::press(Qt::Key key)
{
    const int result = number().value_or(held);
    QTest::keyClick(box, key);
    checkTaken(result == held ? QList<int>{} : QList<int>{result});
}

void TypedNumber::step(int steps, const std::function<void()> &act)
{
    QList<int> expected;
    const int from = number().value_or(held);
    act();
    if (from != held)
        expected.append(from);
    if (bound(from + steps) != from)
        expected.append(bound(from + steps));
    checkTaken(expected);
}

void TypedNumber::checkTaken(const QList<int> &expected)
{
    require(changes == expected, "the typed number is taken, once");
    require(box->value() == (expected.isEmpty() ? held : expected.last()),
            "the typed number is the value");
    require(shownIn(box) == QString::number(box->value()), "and what is shown");
    ++taken;
    end();
}

void TypedNumber::giveUp()
{
    QTest::keyClick(box, Qt::Key_Escape);
    require(changes.isEmpty() && box->value() == held, "Escape leaves the value");
    require(shownIn(box) == QString::number(held), "Escape shows the value again");
    ++givenUp;
    end();
}

void TypedNumber::beginAct()
{
    if (!box)
        return;
    account.note(u"hand, while \"%1\" is typed into %2"_s.arg(text, box->accessibleName()));
    held = box->value();
    changes.clear();
    focusGone = false;
}

// The act itself can change the value once more, after it has taken the number.
void TypedNumber::endAct(bool takes)
{
    if (!box)
        return;
    const int result = number().value_or(held);
    if (!takes && !focusGone) {
        checkHeld();
        return;
    }
    require(result == held || changes.value(0, held) == result, "the typed number is taken first");
    require(shownIn(box) == QString::number(box->value()), "the value is shown again");
    ++taken;
    end();
}

// Only the program sets a value meanwhile, which holds at once: a step, and the zeros of Stop.
void TypedNumber::checkHeld()
{
    require(shownIn(box) == text, "the text stays the operator's");
    const auto index = std::ranges::find(boxes, box) - boxes.begin();
    const bool isColour = index >= firstColour;
    const bool darkened = account.rests() && box->value() == 0;
    require(index == frameBox || box->value() == held || (isColour && darkened),
            "no number is taken by itself");
}

void TypedNumber::endOfStep()
{
    if (!box)
        return;
    ++lived;
    require(box->hasFocus(), "the focus stays");
    checkHeld();
}

void turnWheel(QWidget *widget, bool up)
{
    const QPoint middle = widget->rect().center();
    QWheelEvent turn(QPointF(middle), QPointF(widget->mapToGlobal(middle)), {},
                     QPoint(0, up ? 120 : -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                     false);
    QApplication::sendEvent(widget, &turn);
}

} // namespace

class RandomWalkTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void walk();

private:
    // One thing that can happen, and how likely it is now.
    struct Choice
    {
        int weight;
        std::function<void()> act;
    };

    Operator &hand() { return stage.hand(); }
    qx::PlayerSimulator &player() { return stage.player(); }
    int below(int bound) { return random.bounded(bound); }

    void watch();
    void readLog();
    void step();
    void letTimePass();
    void startAnew();
    QList<Choice> operatorChoices();
    QList<Choice> transportChoices();
    QList<Choice> typingChoices();
    QList<Choice> worldChoices();
    void acting(const std::function<void()> &act);
    void beginTyping();
    void pressEscape();
    void stepByKey();
    void turnAnyWheel();
    void turnOver(QSpinBox *box, bool up);
    void turnOver(QComboBox *box, bool up);
    void editSomething();
    void sendTypedFrame();
    void sendAtOnce();
    void sendNonsense();
    void restartHandshake();
    void typeReserved(bool valid);
    void connectToPort();
    void changeLanguage();
    void say(const QByteArray &line);
    void sayLater(const QByteArray &line);
    void answerHello();
    void answerFrame();
    QByteArray anyLine();
    void flood();
    void settle();
    void walkFor(std::chrono::minutes duration);
    void report() const;

    Stage stage;
    std::unique_ptr<EventCounter> helloTimerRuns;
    std::unique_ptr<Account> account;
    std::unique_ptr<TypedNumber> typed;
    bool takesTyped = false; ///< the act takes what is being typed, wherever the focus is
    QRandomGenerator random;
    int steps = 0;
    int minutes = 0; ///< of a long walk
    QDeadlineTimer warm{QDeadlineTimer::Forever};
    std::optional<qint64> heldWhenWarm; ///< bytes
    qint64 growth = 0;                  ///< since then
    int linesRead = 0;
    bool mute = false; ///< the player
};

void RandomWalkTest::initTestCase()
{
    const auto setting = [](const char *name, int otherwise) {
        bool given = false;
        const int value = qEnvironmentVariableIntValue(name, &given);
        return given ? value : otherwise;
    };
    const int seed = setting("QX_WALK_SEED", 1);
    steps = setting("QX_WALK_STEPS", standardSteps);
    minutes = setting("QX_WALK_MINUTES", 0);
    qInfo("QX_WALK_SEED=%d QX_WALK_STEPS=%d QX_WALK_MINUTES=%d", seed, steps, minutes);
    random.seed(static_cast<quint32>(seed));
    auto *helloTimer = stage.window().findChild<QTimer *>(u"handshakeTimer"_s);
    QCOMPARE(helloTimer->intervalAsDuration(), helloPeriod);
    helloTimerRuns = std::make_unique<EventCounter>(helloTimer, QEvent::Timer);
    account = std::make_unique<Account>(hand(), stage.portPath(), *helloTimerRuns,
                                        *stage.window().findChild<QTimer *>(u"playbackTimer"_s));
    typed = std::make_unique<TypedNumber>(
        *account,
        std::vector<QSpinBox *>{hand().header(), hand().frame(), hand().total(), hand().red(),
                                hand().green(), hand().blue(), hand().white()});
    watch();
}

void RandomWalkTest::watch()
{
    readLog();
    connect(hand().logView(), &QPlainTextEdit::textChanged, this, &RandomWalkTest::readLog);
    connect(stage.window().statusBar(), &QStatusBar::messageChanged, this,
            [this](const QString &message) {
                if (!message.isEmpty())
                    account->statusMessage(message);
                if (below(10) == 0) // quicker than a frame that is offered again
                    QMetaObject::invokeMethod(this, &RandomWalkTest::sendAtOnce,
                                              Qt::QueuedConnection);
            });
    qx::SimulatorBehaviour leavesAnswersToUs;
    leavesAnswersToUs.silent = true;
    player().setBehaviour(leavesAnswersToUs);
    player().setKeepRecords(0);
    connect(&player(), &qx::PlayerSimulator::helloReceived, this, &RandomWalkTest::answerHello);
    connect(&player(), &qx::PlayerSimulator::frameArrived, this,
            [this](const SimulatedFrame &frame) {
                account->frameArrived(frame);
                answerFrame();
            });
}

// Each line the moment it is written, so that lines and messages stay in order.
void RandomWalkTest::readLog()
{
    const QTextDocument *document = hand().logView()->document();
    if (document->isEmpty()) {
        linesRead = 0;
        return;
    }
    while (linesRead < document->blockCount())
        account->logLine(document->findBlockByNumber(linesRead++).text().mid(15));
}

// What the operator does is done at once; no event comes in between.
void RandomWalkTest::acting(const std::function<void()> &act)
{
    account->beginAct();
    typed->beginAct();
    act();
    typed->endAct(std::exchange(takesTyped, false));
    account->endAct();
}

QList<RandomWalkTest::Choice> RandomWalkTest::transportChoices()
{
    const auto click = [this](QAbstractButton *button) {
        takesTyped = true; // by taking the focus
        hand().click(button);
    };
    const auto drag = [this](QSlider *slider) {
        if (typed->isBeingTyped()) // taken by the grab, it could move the handle away from it
            typed->press(Qt::Key_Return);
        hand().dragTo(slider, slider->minimum() + below(slider->maximum() - slider->minimum() + 1));
    };
    const auto stop = [=, this](QAbstractButton *button) {
        account->stop();
        click(button);
    };
    return {
        {60,
         [=, this] {
             account->play();
             click(hand().play());
         }},
        {30,
         [=, this] {
             account->pause();
             click(hand().pause());
         }},
        {account->lacksHandshake() ? 120 : 25, [=, this] { stop(hand().stop()); }},
        {10, [=, this] { stop(hand().stopZero()); }},
        {20, [=, this] { click(below(2) ? hand().increase() : hand().decrease()); }},
        {10, [=, this] { click(hand().replay()); }},
        {30, [=, this] { drag(hand().seekSlider()); }},
        {10, [=, this] { drag(hand().timeSlider()); }},
    };
}

// While the player is mute, nothing else ends the waiting for its answer.
QList<RandomWalkTest::Choice> RandomWalkTest::operatorChoices()
{
    const bool demo = hand().demo()->isChecked();
    const bool open = hand().connectButton()->text() == Language::text(UiText::DisconnectButton);
    const bool spoilt = !hand().reserved()->styleSheet().isEmpty();
    return {
        {180, [this] { hand().click(hand().sendFrame()); }},
        {80, [this] { sendTypedFrame(); }},
        {80, [this] { editSomething(); }},
        {10, [this] { sendNonsense(); }},
        {mute ? 0 : 20, [this] { restartHandshake(); }},
        {spoilt ? 150 : 3, [this, spoilt] { typeReserved(spoilt); }},
        {demo || open ? 0 : 400, [this] { connectToPort(); }},
        {!open || mute          ? 0
         : account->keepsStop() ? 60
                                : 6,
         [this] { hand().click(hand().connectButton()); }},
        {demo                   ? 100
         : mute                 ? 0
         : account->keepsStop() ? 40
                                : 4,
         [this, demo] { hand().setDemo(!demo); }},
        {5, [this] { changeLanguage(); }},
        {50, [this] { beginTyping(); }},
        {40, [this] { turnAnyWheel(); }},
        {5, [this] { pressEscape(); }},
    };
}

// What happens while a number is being typed, and leaves the focus where it is.
QList<RandomWalkTest::Choice> RandomWalkTest::typingChoices()
{
    qx::MainWindow &window = stage.window();
    return {
        {100, [this] { typed->typeOn(QLatin1Char(static_cast<char>('0' + below(10)))); }},
        {15, [this] { typed->eraseOne(); }},
        {10, [this] { typed->press(below(2) ? Qt::Key_Return : Qt::Key_Enter); }},
        {5, [this] { typed->press(Qt::Key_Tab); }},
        {10, [this] { typed->giveUp(); }},
        {15, [this] { stepByKey(); }},
        {30, [this] { turnAnyWheel(); }},
        {5, [this] { changeLanguage(); }},
        {30, [&window] { window.sendCurrentFrame(); }},
        {10,
         [this, &window] {
             takesTyped = account->isReady();
             account->play();
             window.startPlayback();
         }},
        {5,
         [this, &window] {
             account->pause();
             window.pausePlayback();
         }},
        {10,
         [this, &window] {
             account->stop();
             window.stopPlayback(true);
         }},
    };
}

// What happens without the operator.
QList<RandomWalkTest::Choice> RandomWalkTest::worldChoices()
{
    const bool plugged = player().isPluggedIn();
    return {
        {300, [] {}},
        {mute ? 0 : 30, [this] { say(anyLine()); }},
        {plugged ? 2 : 0, [this] { flood(); }},
        {plugged && !mute ? 5 : 0,
         [this] {
             stage.unplug();
             account->unplugged();
         }},
        {plugged ? 0 : 200, [this] { stage.plugIn(); }},
        {mute ? 5 : 2, [this] { mute = !mute; }},
        {5, [this] { player().setPaused(true); }},
        {50, [this] { player().setPaused(false); }},
    };
}

void RandomWalkTest::step()
{
    const auto pick = [this](const QList<Choice> &choices) {
        int total = 0;
        for (const Choice &choice : choices)
            total += choice.weight;
        int chance = below(total);
        for (const Choice &choice : choices) {
            chance -= choice.weight;
            if (chance < 0)
                return choice.act;
        }
        Q_UNREACHABLE();
    };
    if (below(3) == 0)
        pick(worldChoices())();
    else if (typed->isBeingTyped() && below(5))
        acting(pick(typingChoices()));
    else
        acting(pick(operatorChoices() + transportChoices()));
    letTimePass();
}

// For the other side, more or less of it.
void RandomWalkTest::letTimePass()
{
    if (hand().logView()->blockCount() > 2000)
        startAnew();
    for (int turns = below(3); turns >= 0; --turns)
        QTest::qWait(below(3));
    account->endOfStep();
    typed->endOfStep();
}

// A line edit, that of a spin box too, remembers each key for its undo; nobody types as much as
// this hand does. A full log takes a megabyte: memory is only compared between moments of an empty
// one, and without what the allocator keeps of the longest that was.
void RandomWalkTest::startAnew()
{
    acting([this] { hand().click(hand().clearLog()); });
    const auto edits = stage.window().findChildren<QLineEdit *>();
    for (QLineEdit *edit : edits)
        edit->setText(edit->text());
    if (!warm.hasExpired())
        return;
    const qint64 held = residentBytesInUse();
    if (!heldWhenWarm)
        heldWhenWarm = held;
    growth = held - *heldWhenWarm;
}

void RandomWalkTest::editSomething()
{
    QSpinBox *const editors[] = {hand().header(), hand().red(),   hand().green(), hand().blue(),
                                 hand().white(),  hand().frame(), hand().total()};
    QSpinBox *editor = editors[below(7)];
    if (typed->isBeingTypedInto(editor))
        typed->press(Qt::Key_Return);
    hand().type(editor, below(editor == hand().total() ? 40 : editor->maximum() + 1));
}

void RandomWalkTest::beginTyping()
{
    if (typed->isBeingTyped())
        typed->press(Qt::Key_Return);
    typed->begin(typed->boxes.at(static_cast<std::size_t>(below(7))),
                 QLatin1Char(static_cast<char>('1' + below(9))));
}

void RandomWalkTest::pressEscape()
{
    if (typed->isBeingTyped())
        return typed->giveUp();
    QWidget *focus = QApplication::focusWidget();
    const QString before = hand().summary()->text();
    QTest::keyClick(focus ? focus : &stage.window(), Qt::Key_Escape);
    account->require(hand().summary()->text() == before, "Escape changes no frame");
}

void RandomWalkTest::stepByKey()
{
    struct Step
    {
        Qt::Key key;
        int steps;
    };
    static constexpr Step keys[] = {
        {Qt::Key_Up, 1}, {Qt::Key_Down, -1}, {Qt::Key_PageUp, 10}, {Qt::Key_PageDown, -10}};
    const Step step = keys[below(4)];
    QWidget *box = QApplication::focusWidget();
    typed->step(step.steps, [=] { QTest::keyClick(box, step.key); });
}

void RandomWalkTest::turnAnyWheel()
{
    const bool up = below(2) == 0;
    const int which = below(11);
    if (which < 7)
        return turnOver(typed->boxes.at(static_cast<std::size_t>(which)), up);
    if (which < 9)
        return turnOver(which == 7 ? hand().ports() : hand().hostSettings(), up);
    QSlider *slider = which == 9 ? hand().seekSlider() : hand().timeSlider();
    if (below(2))
        slider->setFocus();
    const int before = slider->value();
    turnWheel(slider, up);
    account->require(slider->value() == before, "no wheel moves a slider");
}

void RandomWalkTest::turnOver(QSpinBox *box, bool up)
{
    if (typed->isBeingTypedInto(box))
        return typed->step(up ? 1 : -1, [=] { turnWheel(box, up); });
    if (below(2))
        box->setFocus();
    const QWidget *focus = QApplication::focusWidget();
    const int before = box->value();
    const int moved = qBound(box->minimum(), before + (up ? 1 : -1), box->maximum());
    turnWheel(box, up);
    account->require(box->value() == (focus == box ? moved : before),
                     "a wheel changes only what has the focus");
    account->require(QApplication::focusWidget() == focus, "a wheel takes no focus");
}

void RandomWalkTest::turnOver(QComboBox *box, bool up)
{
    if (below(2))
        box->setFocus(); // not while it is disabled
    const QWidget *focus = QApplication::focusWidget();
    const int before = box->currentIndex();
    const int moved = qMin(qMax(before + (up ? -1 : 1), 0), box->count() - 1);
    turnWheel(box, up);
    account->require(box->currentIndex() == (focus == box ? moved : before),
                     "a wheel changes only what has the focus");
    account->require(QApplication::focusWidget() == focus, "a wheel takes no focus");
}

void RandomWalkTest::sendTypedFrame()
{
    const auto byte = [this] { return static_cast<quint8>(below(256)); };
    ControlFrame frame;
    frame.hy = byte();
    frame.frame = static_cast<quint16>(below(65536));
    frame.red = byte();
    frame.green = byte();
    account->typedFrame = Protocol::frameSummary(frame);
    const QString text = Protocol::bytesToHex(Protocol::encodeControlFrame(frame));
    hand().type(hand().manual(), text);
    hand().click(hand().sendHex());
}

void RandomWalkTest::sendAtOnce()
{
    acting([this] {
        if (typed->isBeingTyped())
            stage.window().sendCurrentFrame(); // which leaves the focus where it is
        else
            hand().click(hand().sendFrame());
    });
}

void RandomWalkTest::sendNonsense()
{
    hand().type(hand().manual(), below(2) ? u"12 34"_s : QString(40, u'1'));
    hand().click(hand().sendHex());
}

void RandomWalkTest::restartHandshake()
{
    account->mayRestartHandshake = true;
    if (below(2)) {
        hand().click(hand().handshakeAgain());
    } else {
        hand().type(hand().manual(), u"hello"_s);
        QTest::keyClick(hand().manual(), Qt::Key_Return);
    }
}

void RandomWalkTest::typeReserved(bool valid)
{
    hand().type(hand().reserved(), valid ? u"01 02 03 04 05 06"_s : u"01 02"_s);
}

void RandomWalkTest::connectToPort()
{
    if (below(4)) // else the list may be an old one
        hand().click(hand().refresh());
    hand().ports()->setCurrentIndex(hand().ports()->findData(stage.portPath()));
    hand().click(hand().connectButton());
}

void RandomWalkTest::changeLanguage()
{
    const bool english = Language::current() == qx::UiLanguage::English;
    hand().chooseLanguage(english ? qx::UiLanguage::Chinese : qx::UiLanguage::English);
}

// Only what the cable takes is said.
void RandomWalkTest::say(const QByteArray &line)
{
    if (!player().isPluggedIn())
        return;
    account->playerSaid(QString::fromLatin1(line));
    player().say(line + '\n');
}

void RandomWalkTest::sayLater(const QByteArray &line)
{
    QTimer::singleShot(below(40), this, [this, line] { say(line); });
}

QByteArray RandomWalkTest::anyLine()
{
    static const QByteArrayList lines{"QXUSB READY",      "QXUSB OK",           "QXUSB RX OK",
                                      "QXUSB NEED HELLO", "QXUSB BAD CHECKSUM", "QXUSB AC39 FAIL",
                                      " qxusb rx ok ",    "QXUSB RX OK 1",      "QXUSB",
                                      "\xFF\x80\xE9 %1",  "rst:0x15 boot:0x28", "QXUSB HELLO"};
    return lines.at(below(static_cast<int>(lines.size())));
}

void RandomWalkTest::answerHello()
{
    if (mute)
        return;
    const int chance = below(100);
    if (chance < 80)
        say("QXUSB OK");
    else if (chance < 85)
        sayLater("QXUSB OK");
    else if (chance < 90)
        say("QXUSB READY");
    else if (chance < 95)
        say(anyLine());
}

void RandomWalkTest::answerFrame()
{
    if (mute)
        return;
    const int chance = below(1000);
    if (chance < 650) {
        say("QXUSB RX OK");
    } else if (chance < 700) { // twice
        say("QXUSB RX OK");
        say("QXUSB RX OK");
    } else if (chance < 780) {
        sayLater("QXUSB RX OK");
    } else if (chance < 860) {
        say("QXUSB BAD CHECKSUM");
    } else if (chance < 900) {
        say("QXUSB AC39 FAIL");
    } else if (chance < 920) {
        say("QXUSB NEED HELLO");
    } else if (chance < 996) { // after something else
        say(anyLine());
        say("QXUSB RX OK");
    } // else nothing
}

void RandomWalkTest::flood()
{
    for (int i = 0; i < floodLines; ++i)
        say("I (" + QByteArray::number(i) + ") main: free heap 182736");
}

// From here on the player behaves: everything under way comes to its end.
void RandomWalkTest::settle()
{
    mute = false;
    player().setPaused(false);
    // Looked at after each outcome: playback may send the next frame a moment later.
    bool settled = account->isSettled();
    QObject listener;
    connect(stage.window().statusBar(), &QStatusBar::messageChanged, &listener,
            [&] { settled = settled || account->isSettled(); });
    const QDeadlineTimer patience(settling);
    while (!settled && account->verdict().isEmpty() && !patience.hasExpired())
        letTimePass();
    QVERIFY2(settled || !account->verdict().isEmpty(), qPrintable(account->underWay().join(u'\n')));
}

void RandomWalkTest::walkFor(std::chrono::minutes duration)
{
    const QDeadlineTimer end(duration);
    warm.setRemainingTime(warmUp);
    for (steps = 0; !end.hasExpired() && account->verdict().isEmpty(); ++steps)
        step();
}

void RandomWalkTest::report() const
{
    const Account &a = *account;
    qInfo("%d steps; succeeded %d (%d in demo mode), failed %d (%d of them unasked), requeued %d, "
          "abandoned %d",
          steps, a.succeeded, a.demoFrames, a.failed, a.failedUnasked, a.requeued, a.abandoned);
    qInfo("written %d, again %d (%d by timeout), queued %d, once more %d, retained %d, HELLO %d, "
          "lines lost %d",
          a.writes, a.retries, a.timeouts, a.queued, a.queuedAgain, a.retained, a.hellos, a.losses);
    qInfo("Stop kept %d times, followed %d, forgotten %d; typed numbers taken %d, given up %d, "
          "half typed in %d steps",
          a.stopsKept, a.stopsFollowed, a.stopsForgotten, typed->taken, typed->givenUp,
          typed->lived);
    if (minutes > 0)
        qInfo("memory after the first minute: %+lld KiB", static_cast<long long>(growth / 1024));
    const QStringList verdict = a.verdict().split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : verdict)
        qInfo("%s", qPrintable(line));
}

void RandomWalkTest::walk()
{
    // Only a machine without a sound server may say so.
    QTest::failOnWarning(QRegularExpression(u"^(?!Warning: \"Failed to connect)"_s));
    if (minutes > 0)
        walkFor(std::chrono::minutes(minutes));
    for (int i = 0; minutes == 0 && i < steps && account->verdict().isEmpty(); ++i)
        step();
    settle();
    report();
    QVERIFY(account->verdict().isEmpty());
    QVERIFY(account->isBalanced());
    QCOMPARE(player().counts().framesArrived, account->arrivals());
    QCOMPARE(player().checksumErrors(), 0);
    QCOMPARE(player().unknownBytes(), 0);
    QVERIFY2(minutes <= 1 || heldWhenWarm, "memory was not looked at");
    QVERIFY2(growth <= tolerableGrowth, "memory grows");
    QCOMPARE(account->stopsKept, account->stopsFollowed + account->stopsForgotten);
    for (const int happened : {account->demoFrames, account->failed, account->retries,
                               account->queued, account->retained, account->losses,
                               account->stopsFollowed, typed->taken, typed->givenUp, typed->lived})
        QVERIFY2(happened > 0 || steps < standardSteps, "the walk saw too little");
}

QTEST_MAIN(RandomWalkTest)
#include "tst_randomwalk.moc"
