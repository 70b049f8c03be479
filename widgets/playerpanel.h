// SPDX-License-Identifier: MIT
#pragma once

#include "protocol/protocol.h"

#include <QString>
#include <QWidget>

QT_BEGIN_NAMESPACE
class QGroupBox;
class QLabel;
class QSlider;
QT_END_NAMESPACE

namespace qx {

class ToggleSwitch;
class TransportButton;

/// The device's own player screen on the desktop, 680 x 520 pixels: summary, transport buttons,
/// file selector, frame slider and Time slider.
///
/// Plays nothing: it shows what its setters are told and reports what the operator does. Setters
/// clamp instead of refusing, and none of them emits a signal.
class PlayerPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PlayerPanel(QWidget *parent = nullptr);

    QSize sizeHint() const override;

    PlaybackState playbackState() const;
    int currentFrame() const;
    int totalFrames() const; ///< the last frame number: frames run from 0 to this
    int intervalMs() const;  ///< 30..150 ms, where the Time slider stands
    int fileIndex() const;
    bool repeatEnabled() const;

    /// `text` is shown instead of "Connected" or "Not connected" unless it is empty.
    void setConnected(bool connected, const QString &text);
    void setPlaybackState(PlaybackState state);
    void setCurrentFrame(int frame); ///< clamped to 0..totalFrames()
    void setTotalFrames(int total);  ///< at least 0; the current frame follows
    void setFileCount(int count);    ///< at least 0; 0: not known
    /// Clamped to the known files, or to 0..9999; an empty name gives "<index>.bin".
    void setFileIndex(int index, const QString &name);
    void setWhiteLevel(int level); ///< 0..255; kept, not shown
    void setRepeatEnabled(bool on);
    void setIntervalMs(int ms); ///< clamped to 30..150 ms

    /// Sets every text in the current language.
    void retranslateUi();

signals:
    void playRequested();
    void pauseRequested();
    void stopRequested();
    void homeRequested(); ///< reserved: the panel has no Home button
    void fileChanged(int index);
    void repeatChanged(bool on);
    void intervalChanged(int ms); ///< when the handle of the Time slider is released
    void seekStarted();
    void seekPreviewRequested(int frame); ///< each position that a drag passes
    void seekRequested(int frame);        ///< when the handle of the frame slider is released

private:
    struct State
    {
        PlaybackState playbackState = PlaybackState::Stopped;
        int fileIndex = 0;
        int fileCount = 0;
        QString fileName = QStringLiteral("0.bin");
        int whiteLevel = 0;
        int currentFrame = 0;
        int totalFrames = 0;
        bool connected = false;
        QString connectionText;
    };

    QLabel *makeLabel(const QString &text, const QRect &rect, int pointSize, bool bold);
    void createSummary();
    void createTransport();
    void createFileSelector();
    void createSliders();
    void connectChildren();
    int lastFileIndex() const;
    void changeFile(int delta);
    void moveSeekSlider();
    void showRepeat(bool on);
    void updateConnectionText();
    void updateFileDisplay();
    void updatePositionDisplay();
    void updateStatistics();

    State state;
    QGroupBox *summaryBox = nullptr;
    QLabel *fileTotalLabel = nullptr;
    QLabel *frameTotalLabel = nullptr;
    QLabel *timeLabel = nullptr;
    QLabel *stateBadge = nullptr;
    QLabel *connectionLabel = nullptr;
    ToggleSwitch *repeatSwitch = nullptr;
    QLabel *repeatLabel = nullptr;
    QLabel *repeatStateLabel = nullptr;
    QGroupBox *transportBox = nullptr;
    TransportButton *stopButton = nullptr;
    TransportButton *pauseButton = nullptr;
    TransportButton *playButton = nullptr;
    TransportButton *increaseButton = nullptr;
    QLabel *fileNameLabel = nullptr;
    QLabel *fileCaption = nullptr;
    TransportButton *decreaseButton = nullptr;
    QLabel *positionLabel = nullptr;
    QSlider *seekSlider = nullptr;
    QLabel *timeCaption = nullptr;
    QSlider *intervalSlider = nullptr;
};

} // namespace qx
