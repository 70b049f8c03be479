// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/language.h"
#include "protocol/protocol.h"

#include <QByteArray>
#include <QList>
#include <QMainWindow>
#include <QString>

#include <chrono>

QT_BEGIN_NAMESPACE
class QAction;
class QActionGroup;
class QAudioOutput;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMediaPlayer;
class QMenu;
class QPushButton;
class QSpinBox;
class QTimer;
class QToolButton;
class QVideoWidget;
QT_END_NAMESPACE

namespace qx {

class FittedLineEdit;
class LogView;
class MediaTransport;
class PlayerPanel;
class SerialController;
class ValueLabel;

/// Four colour levels; whoever writes them clamps them to 0..255.
struct RgbwLevels
{
    qint32 red = 0;
    qint32 green = 0;
    qint32 blue = 0;
    qint32 white = 0;
};

/// The one window of the program: it shows everything and runs the session with the player.
///
/// One class in several files, each with one concern. The regions below follow the files; a
/// member is written by the file of its region alone, the others call a method. GUI thread only.
class MainWindow : public QMainWindow
{
    Q_OBJECT

    // ---- mainwindow.cpp: construction in the order of start-up, end -------------------------
public:
    /// Starts in the stored language and in offline demo mode.
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override; ///< sends nothing to the device

    /// Closes the port without a word, for a process that ends without destroying the window.
    void releasePort();

    // ---- link.cpp: port, handshake, replies, demo mode ---------------------------------------
public:
    /// Refills the port list and keeps the chosen port if it is still there; `announce` writes
    /// the count to the log.
    void refreshPorts(bool announce);

    /// Starts the handshake on the open port, or starts it again. The HELLO line is repeated
    /// every 1000 ms until the device answers or the port closes.
    void beginHandshake();
    void sendHandshake(); ///< one HELLO line, unless there is nothing to shake hands for
    void processReceivedLine(const QByteArray &line); ///< acts on one line from the device

    /// Whether a frame may go out now: in demo mode, or with the handshake complete.
    bool isUsbTransmissionReady() const;

    void setUsbLinked(bool linked, const QString &message);
    void setConnectedUi(bool connected, const QString &message); ///< the port opened or closed
    void setDemoMode(bool enabled);

private:
    void toggleConnection();
    bool isDemo() const;
    void showLink(const QString &channel, const QString &handshake);
    void setLamp(bool lit);
    void refreshLinkTexts();

    SerialController *serialController = nullptr;
    QTimer *handshakeTimer = nullptr; ///< repeating, 1000 ms
    bool usbLinked = false;           ///< the handshake is complete on the port that is open now
    int handshakeAttempts = 0;        ///< HELLO lines since the last beginHandshake()

    // ---- pipeline.cpp: one frame in flight, one waiting --------------------------------------
public:
    /// Offers a frame of 20 bytes: written, kept as the one that waits, or refused with a log
    /// line. In demo mode it succeeds at once.
    void transmitFrame(const QByteArray &frame);

    /// Writes the frame in flight; as a `retry` at most twice, then the frame has failed.
    void sendPendingFrame(bool retry);

    /// Counts the outcome of the frame in flight and offers the one that waits.
    void finishPendingFrame(bool success, const QString &message);
    void handleAckTimeout(); ///< 800 ms without an answer
    void sendCurrentFrame(); ///< offers the frame of the editors; frame 0, dark, while stopped

private:
    void transmitDemoFrame(const QByteArray &frame);
    void offerAgain(const QByteArray &frame);
    bool isLineBusy() const; ///< a frame is in flight, or waits to be offered again
    void releasePendingFrame();
    void requeueInFlightFrame();
    void clearFrames();
    void countReceived(const QByteArray &data);
    void countTransmitted(qint64 count);

    QByteArray inFlightFrame;   ///< written and not answered yet; empty: none
    QByteArray pendingFrame;    ///< the newest frame that waits; empty: none
    int framesToOffer = 0;      ///< taken out of pendingFrame, offered on the next turn
    int ackRetries = 0;         ///< retransmissions of the frame in flight, 0..2
    QTimer *ackTimer = nullptr; ///< single-shot, 800 ms after each write
    quint64 framesSucceeded = 0;
    quint64 framesFailed = 0;
    quint64 txBytes = 0; ///< written to the port, or in demo mode as if written
    quint64 rxBytes = 0;

    // ---- playback.cpp: play, pause, stop, step, seek -----------------------------------------
public:
    void startPlayback();
    void pausePlayback();

    /// Back to frame 0. With `resendStopFrame` the colours go dark (the operator's levels are
    /// kept) and frame 0 is sent at the interval; without it nothing is sent.
    void stopPlayback(bool resendStopFrame);
    void playbackTick(); ///< one interval has passed

private:
    bool canPlay() const;
    void refusePlayback();
    void startPlaybackTimer();
    void resendStopped();
    void followWithStop();
    void chooseFile(int index);
    void changeInterval(int ms);
    void beginSeek();
    void previewSeek(int frame);
    void finishSeek(int frame);

    QTimer *playbackTimer = nullptr; ///< repeating, the panel's interval
    bool resumeAfterSeek = false;    ///< the timer ran when the slider was grabbed
    bool stopFollows = false;        ///< Stop was pressed while there was no handshake

    // ---- editors.cpp: the frame being edited, frames typed by hand ---------------------------
public:
    /// The frame that the editors describe. `ok` (may be null) tells whether the reserved field
    /// holds six bytes; they are 0 if not.
    ControlFrame frameFromEditors(bool *ok) const;
    RgbwLevels rgbwFromEditors() const;
    void setRgbwEditors(const RgbwLevels &levels); ///< clamped; not taken for the operator's
    void updateFramePreview();

    /// Sends the 20 bytes typed in hexadecimal as they are, or restarts the handshake if the
    /// text is the handshake word.
    void sendManualFrame();

private:
    void setTotal(int total);
    void fitFrameMaximum();
    void takeTypedNumbers();
    ControlFrame outgoingFrame(bool *ok) const; ///< of the editors; dark while stopped

    bool editorsSyncing = false; ///< setRgbwEditors() is writing

    // ---- colours.cpp: the operator's colour levels, kept across runs and stops ---------------
public:
    void loadConfiguredRgbw();
    void rememberConfiguredRgbw();
    void persistConfiguredRgbw() const;
    void restoreConfiguredRgbwForPlayback();

private:
    bool zeroRgbwForStop(); ///< whether the levels are the operator's, still to be stored
    void rgbwEdited(qint32 RgbwLevels::*channel, int level);

    RgbwLevels configuredRgbw;     ///< the operator's levels
    bool rgbwZeroedByStop = false; ///< the editors show the zeros of Stop

    // ---- wiring.cpp: timers and connections --------------------------------------------------
private:
    void setUpTimers();
    void connectSession();
    void connectController();
    void connectPanel();
    void connectEditors();

    // ---- layout.cpp: the widget tree ---------------------------------------------------------
public:
    QFrame *createNavigation();
    QToolButton *createNavigationButton(const QString &text, const QString &iconPath, bool checked);
    QWidget *createRightPanel();
    QGroupBox *createConnectionGroup();
    QGroupBox *createFrameGroup();
    QGroupBox *createDeviceStatusGroup();
    QGroupBox *createLogGroup();

private:
    void setUpWindow();
    void createWidgets();
    QWidget *createContent();
    void createFrameEditors(QGridLayout *grid);

    PlayerPanel *playerPanel = nullptr;
    QToolButton *mediaBrowseButton = nullptr;
    QComboBox *portCombo = nullptr;
    QPushButton *refreshPortsButton = nullptr;
    QComboBox *hostSettingsCombo = nullptr;
    QPushButton *connectButton = nullptr;
    QCheckBox *demoModeCheck = nullptr;
    QLabel *linkIndicator = nullptr;
    QLabel *linkStatusLabel = nullptr;
    QSpinBox *headerSpin = nullptr;
    QSpinBox *frameSpin = nullptr;
    QSpinBox *totalSpin = nullptr;
    QSpinBox *redSpin = nullptr;
    QSpinBox *greenSpin = nullptr;
    QSpinBox *blueSpin = nullptr;
    QSpinBox *whiteSpin = nullptr;
    QLineEdit *reservedEdit = nullptr;
    FittedLineEdit *completeFrameEdit = nullptr;
    QList<ValueLabel *> statusValueLabels; ///< seven rows
    LogView *logView = nullptr;
    QLineEdit *manualFrameEdit = nullptr;
    QPushButton *sendHexButton = nullptr;

    // ---- stylesheet.cpp: the dark look -------------------------------------------------------
public:
    void applyApplicationStyle(QWidget *widget);

private:
    void overrideStyle(); ///< where the required sheets leave something ugly

    // ---- views.cpp: status rows, traffic, log, status bar -------------------------------------
public:
    /// Adds "[12:34:56.789] SYS   message" to the log. The channel is cut to five characters;
    /// `detail` is not shown.
    void appendLog(const QString &channel, const QString &message,
                   const QString &detail = QString());
    void updateLocalStatus();
    void updateTrafficLabel();

protected:
    bool event(QEvent *event) override;

private:
    void showStatus(const QString &message, std::chrono::milliseconds lifetime);
    void throttlePainting();

    // ---- retranslation.cpp: language menu, every text ----------------------------------------
public:
    void createLanguageMenu();
    void setLanguage(UiLanguage language); ///< stores the choice
    void retranslateUi();

private:
    void readLanguage();
    void retranslateNavigation();
    void retranslateGroups();
    void retranslateAccessibleNames();

    QMenu *languageMenu = nullptr;
    QActionGroup *languageGroup = nullptr;
    QAction *languageChineseAction = nullptr;
    QAction *languageEnglishAction = nullptr;

    // ---- media.cpp: choosing and loading a media file ----------------------------------------
public:
    void setupMediaPlayback();
    void browseMediaFile();

    /// Loads a file without playing it. False: the reason was reported and the file that was
    /// loaded before stays.
    bool loadMediaFile(const QString &path);
    void reportMediaError(const QString &message); ///< once per loaded file
    void updateMediaNavigation();

private:
    void showVideoPreview();
    void updateVideoTitle();
    QString mediaFileName() const;
    void handleDuration(qint64 durationMs);
    void handleHasVideo(bool hasVideo);
    void handleMediaError(const QString &reason);

    QMediaPlayer *mediaPlayer = nullptr;
    MediaTransport *mediaTransport = nullptr; ///< works mediaPlayer
    QAudioOutput *mediaAudioOutput = nullptr;
    QVideoWidget *mediaVideoWidget = nullptr; ///< a window of its own
    QString selectedMediaPath;                ///< absolute; empty: none
    bool mediaIsVideo = false;
    bool mediaErrorReported = false; ///< for the loaded file
    bool mediaReadyLogged = false;   ///< for the loaded file

    // ---- mediasync.cpp: media beside the frames ----------------------------------------------
public:
    bool hasSelectedMedia() const;
    void playSelectedMedia();
    void pauseSelectedMedia();
    void stopSelectedMedia();
    void seekSelectedMedia(int frame);             ///< only while paused
    qint64 mediaPositionForFrame(int frame) const; ///< ms

private:
    void repeatMedia();
    using MediaCall = void (MainWindow::*)();
    void requestMedia(MediaCall call); ///< the last request counts
    void tellMedia(); ///< what was requested, once the frame that belongs to it is out
    void tellMediaNow();

    MediaCall mediaRequest = nullptr;   ///< what the media is to be told after the frame
    int mediaRequestNumber = 0;         ///< of the last one
    qint64 mediaTargetPositionMs = 0;   ///< where playback last asked the media to be
    bool mediaSeekWarningShown = false; ///< once per run
    bool mediaRepeatInProgress = false;
};

} // namespace qx
