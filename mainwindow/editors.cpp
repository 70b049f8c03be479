// SPDX-License-Identifier: MIT
// MainWindow, editors: the frame being edited, its preview, frames typed by hand.
// Owns editorsSyncing.
#include "mainwindow/hexscan.h"
#include "mainwindow/mainwindow.h"
#include "widgets/arrowboxes.h"
#include "widgets/fittedlineedit.h"
#include "widgets/playerpanel.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>
#include <utility>

namespace qx {

namespace {

constexpr int standardTotal = 1800;   // frames that the current-frame editor reaches at least
constexpr qsizetype encodedSize = 20; // bytes of a whole frame

} // namespace

ControlFrame MainWindow::frameFromEditors(bool *ok) const
{
    ControlFrame frame;
    frame.hy = static_cast<quint8>(headerSpin->value());
    frame.frame = static_cast<quint16>(frameSpin->value());
    frame.red = static_cast<quint8>(redSpin->value());
    frame.green = static_cast<quint8>(greenSpin->value());
    frame.blue = static_cast<quint8>(blueSpin->value());
    frame.white = static_cast<quint8>(whiteSpin->value());
    const auto reserved =
        hexBytes(reservedEdit->text(), static_cast<qsizetype>(frame.reserved.size()));
    for (std::size_t i = 0; reserved && i < frame.reserved.size(); ++i)
        frame.reserved[i] = static_cast<quint8>(reserved->at(static_cast<qsizetype>(i)));
    if (ok)
        *ok = reserved.has_value();
    return frame;
}

RgbwLevels MainWindow::rgbwFromEditors() const
{
    if (!redSpin || !greenSpin || !blueSpin || !whiteSpin)
        return {};
    return {redSpin->value(), greenSpin->value(), blueSpin->value(), whiteSpin->value()};
}

void MainWindow::setRgbwEditors(const RgbwLevels &levels)
{
    if (!redSpin || !greenSpin || !blueSpin || !whiteSpin)
        return;
    const auto set = [](QSpinBox *spin, int level) { spin->setValue(qBound(0, level, 255)); };
    const QSignalBlocker blockers[] = {QSignalBlocker(redSpin), QSignalBlocker(greenSpin),
                                       QSignalBlocker(blueSpin), QSignalBlocker(whiteSpin)};
    const bool wasSyncing = std::exchange(editorsSyncing, true);
    set(redSpin, levels.red);
    set(greenSpin, levels.green);
    set(blueSpin, levels.blue);
    set(whiteSpin, levels.white);
    editorsSyncing = wasSyncing;
    playerPanel->setWhiteLevel(whiteSpin->value());
    updateFramePreview();
    updateLocalStatus();
}

// A player at rest is sent frame 0 with all channels off, whatever the editors hold.
ControlFrame MainWindow::outgoingFrame(bool *ok) const
{
    ControlFrame frame = frameFromEditors(ok);
    if (playerPanel->playbackState() == PlaybackState::Stopped) {
        frame.frame = 0;
        frame.red = frame.green = frame.blue = frame.white = 0;
    }
    return frame;
}

void MainWindow::updateFramePreview()
{
    bool ok = false;
    const ControlFrame frame = outgoingFrame(&ok);
    const QString mark = ok ? QString() : QStringLiteral("border:1px solid #9b4d55;");
    if (reservedEdit->styleSheet() != mark)
        reservedEdit->setStyleSheet(mark);
    completeFrameEdit->showText(ok ? Protocol::frameSummary(frame)
                                   : Language::text(UiText::ReservedFieldInvalid));
}

void MainWindow::sendManualFrame()
{
    const QString text = manualFrameEdit->text().trimmed();
    if (text.isEmpty())
        return;
    const auto is = [&text](QLatin1String word) {
        return text.compare(word, Qt::CaseInsensitive) == 0;
    };
    if (is(QLatin1String("HELLO")) || is(QLatin1String("QXUSB HELLO"))) {
        beginHandshake();
        return;
    }
    const auto frame = hexBytes(text, encodedSize);
    if (!frame) {
        appendLog(QStringLiteral("ERR"), Language::text(UiText::ManualFrameIncomplete));
        return;
    }
    if (!Protocol::isValidControlFrame(*frame)) {
        appendLog(QStringLiteral("ERR"), Language::text(UiText::ManualFrameInvalid));
        return;
    }
    transmitFrame(*frame);
    manualFrameEdit->selectAll();
}

void MainWindow::setTotal(int total)
{
    fitFrameMaximum();
    playerPanel->setTotalFrames(total);
    playerPanel->setCurrentFrame(frameSpin->value());
}

// The current-frame editor reaches the last frame of a longer file, else playback would stick. A
// frame beyond a total that has fallen stays where it is.
void MainWindow::fitFrameMaximum()
{
    const int maximum = std::max({standardTotal, totalSpin->value(), frameSpin->value()});
    if (frameSpin->maximum() != maximum) // setting it lays out the group again
        frameSpin->setMaximum(maximum);
}

void MainWindow::takeTypedNumbers()
{
    const auto boxes = findChildren<ArrowSpinBox *>();
    for (ArrowSpinBox *box : boxes)
        box->takeTyped();
}

} // namespace qx
