// SPDX-License-Identifier: MIT
#pragma once

#include "i18n/language.h"
#include "mainwindow/mainwindow.h"
#include "tests/support/panelcontrols.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMediaPlayer>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QString>
#include <QStringList>

namespace qx::test {

/// A person at the window: finds the controls by their names, works them with mouse and keyboard,
/// and reads what is shown. Nothing here reaches past the widgets.
class Operator
{
public:
    explicit Operator(MainWindow &window);

    // Controls, as they stand from top to bottom.
    QAbstractButton *navigation(const char *name) const;
    PlayerPanel *panel() const;
    TransportButton *play() const { return onPanel.play; }
    TransportButton *pause() const { return onPanel.pause; }
    TransportButton *stop() const { return onPanel.stop; }
    TransportButton *increase() const { return onPanel.increase; }
    TransportButton *decrease() const { return onPanel.decrease; }
    ToggleSwitch *replay() const { return onPanel.replay; }
    QSlider *seekSlider() const { return onPanel.seekSlider; }
    QSlider *timeSlider() const { return onPanel.timeSlider; }
    QLabel *stateBadge() const { return onPanel.label(PanelLabel::StateBadge); }
    QLabel *panelConnection() const { return onPanel.label(PanelLabel::Connection); }
    QLabel *position() const { return onPanel.label(PanelLabel::Position); }
    QComboBox *ports() const;
    QComboBox *hostSettings() const;
    QPushButton *refresh() const;
    QPushButton *connectButton() const;
    QCheckBox *demo() const;
    QLabel *lamp() const;
    QLabel *linkText() const;
    QSpinBox *header() const;
    QSpinBox *frame() const;
    QSpinBox *total() const;
    QSpinBox *red() const;
    QSpinBox *green() const;
    QSpinBox *blue() const;
    QSpinBox *white() const;
    QLineEdit *reserved() const;
    QLineEdit *summary() const;
    QLabel *row(int index) const; ///< value labels of the status group, 0..6
    QPushButton *stopZero() const;
    QPushButton *sendFrame() const;
    QPushButton *handshakeAgain() const;
    QPlainTextEdit *logView() const;
    QLineEdit *manual() const;
    QPushButton *sendHex() const;
    QPushButton *clearLog() const;
    QMediaPlayer *media() const;

    // What is shown.
    QStringList log() const; ///< the lines, each "TAG  message" without its time stamp
    QStringList log(const char *tag) const;  ///< the messages of one tag, in order
    int logCount(const QString &line) const; ///< how many lines read so, without time stamp
    QString lastLog() const;
    bool everyLogLineIsStamped() const; ///< "[12:34:56.789] " before a tag of five characters
    QString statusBar() const;
    int statusLifetimeMs() const; ///< of the message in the status bar; 0: until the next one
    QString state() const { return stateBadge()->text(); }
    bool lampIsLit() const;

    // What a hand does.
    void click(QAbstractButton *button) const;
    void setDemo(bool on) const; ///< clicks the check box if it stands otherwise
    void choosePort(const QString &path) const;
    void chooseLanguage(UiLanguage language) const;
    void typeLevels(int red, int green, int blue, int white) const;
    void offer(int hy) const; ///< types HY, which tells one frame from another, and sends it
    void type(QSpinBox *spin, int value) const;
    void type(QLineEdit *edit, const QString &text) const;        ///< replaces the text
    void drag(QSlider *slider, int fromValue, int toValue) const; ///< press, move, release
    void dragTo(QSlider *slider, int value) const;                ///< from where the handle stands

    // The steps of a drag, for a look at what happens in between.
    void grab(QSlider *slider) const;
    void moveHandle(QSlider *slider, int toValue) const;
    void letGo(QSlider *slider) const; ///< where the handle is

private:
    QGroupBox &group(const char *name) const;

    MainWindow &window;
    const PanelControls onPanel;
};

} // namespace qx::test
