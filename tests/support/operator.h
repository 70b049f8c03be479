// SPDX-License-Identifier: MIT
#pragma once

#include "mainwindow/mainwindow.h"
#include "widgets/playerpanel.h"
#include "widgets/toggleswitch.h"
#include "widgets/transportbutton.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMediaPlayer>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QString>
#include <QStringList>

namespace qx::test {

/// A person at the window: finds controls where they stand, works them with mouse and keyboard,
/// and reads what is shown. Nothing here reaches past the widgets.
class Operator
{
public:
    explicit Operator(MainWindow &window);

    // Controls, as they stand from top to bottom.
    QAbstractButton *navigation(const char *name) const;
    PlayerPanel *panel() const;
    TransportButton *play() const;
    TransportButton *pause() const;
    TransportButton *stop() const;
    TransportButton *increase() const;
    TransportButton *decrease() const;
    ToggleSwitch *replay() const;
    QSlider *seekSlider() const;
    QSlider *timeSlider() const;
    QLabel *stateBadge() const;
    QLabel *panelConnection() const;
    QLabel *position() const;
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
    QString state() const { return text(stateBadge()); }
    bool lampIsLit() const;

    // What a hand does.
    void click(QAbstractButton *button) const;
    void setDemo(bool on) const; ///< clicks the check box if it stands otherwise
    void choosePort(const QString &path) const;
    void type(QSpinBox *spin, int value) const;
    void type(QLineEdit *edit, const QString &text) const;        ///< replaces the text
    void drag(QSlider *slider, int fromValue, int toValue) const; ///< press, move, release
    void dragTo(QSlider *slider, int value) const;                ///< from where the handle stands

    // The steps of a drag, for a look at what happens in between.
    void grab(QSlider *slider) const;
    void moveHandle(QSlider *slider, int toValue) const;
    void letGo(QSlider *slider) const; ///< where the handle is

private:
    static QString text(const QLabel *label);

    MainWindow &window;
};

} // namespace qx::test
