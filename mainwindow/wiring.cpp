// SPDX-License-Identifier: MIT
// MainWindow, wiring: the timers and every connection between the parts of a session.
#include "mainwindow/mainwindow.h"
#include "mainwindow/messagelifetimes.h"
#include "serial/serialcontroller.h"
#include "widgets/playerpanel.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>

#include <chrono>

namespace qx {

namespace {

constexpr std::chrono::milliseconds handshakeInterval{1000};

} // namespace

// Coarse timers would run up to 5 % off.
void MainWindow::setUpTimers()
{
    handshakeTimer->setObjectName(QStringLiteral("handshakeTimer"));
    ackTimer->setObjectName(QStringLiteral("ackTimer"));
    playbackTimer->setObjectName(QStringLiteral("playbackTimer"));
    handshakeTimer->setInterval(handshakeInterval);
    handshakeTimer->setTimerType(Qt::PreciseTimer);
    ackTimer->setSingleShot(true);
    ackTimer->setTimerType(Qt::PreciseTimer);
    playbackTimer->setTimerType(Qt::PreciseTimer);
    playbackTimer->setInterval(playerPanel->intervalMs());
}

void MainWindow::connectSession()
{
    connect(handshakeTimer, &QTimer::timeout, this, &MainWindow::sendHandshake);
    connect(ackTimer, &QTimer::timeout, this, &MainWindow::handleAckTimeout);
    connect(playbackTimer, &QTimer::timeout, this, &MainWindow::playbackTick);
    connect(refreshPortsButton, &QPushButton::clicked, this, [this] { refreshPorts(true); });
    connect(connectButton, &QPushButton::clicked, this, &MainWindow::toggleConnection);
    connect(demoModeCheck, &QCheckBox::toggled, this, &MainWindow::setDemoMode);
    connect(sendHexButton, &QPushButton::clicked, this, &MainWindow::sendManualFrame);
    connect(manualFrameEdit, &QLineEdit::returnPressed, this, &MainWindow::sendManualFrame);
    connectController();
    connectPanel();
}

void MainWindow::connectController()
{
    connect(serialController, &SerialController::connectionChanged, this,
            &MainWindow::setConnectedUi);
    connect(serialController, &SerialController::lineReceived, this,
            &MainWindow::processReceivedLine);
    connect(serialController, &SerialController::rawReceived, this, &MainWindow::countReceived);
    connect(serialController, &SerialController::bytesTransmitted, this,
            &MainWindow::countTransmitted);
    connect(serialController, &SerialController::errorOccurred, this,
            [this](const QString &message) {
                appendLog(QStringLiteral("ERR"), message);
                showStatus(message, lifetimes::connection);
            });
}

void MainWindow::connectPanel()
{
    connect(playerPanel, &PlayerPanel::playRequested, this, &MainWindow::startPlayback);
    connect(playerPanel, &PlayerPanel::pauseRequested, this, &MainWindow::pausePlayback);
    connect(playerPanel, &PlayerPanel::stopRequested, this, [this] { stopPlayback(true); });
    connect(playerPanel, &PlayerPanel::fileChanged, this, &MainWindow::chooseFile);
    connect(playerPanel, &PlayerPanel::repeatChanged, this, &MainWindow::updateLocalStatus);
    connect(playerPanel, &PlayerPanel::intervalChanged, this, &MainWindow::changeInterval);
    connect(playerPanel, &PlayerPanel::seekStarted, this, &MainWindow::beginSeek);
    connect(playerPanel, &PlayerPanel::seekPreviewRequested, this, &MainWindow::previewSeek);
    connect(playerPanel, &PlayerPanel::seekRequested, this, &MainWindow::finishSeek);
    connect(playerPanel, &PlayerPanel::homeRequested, this, [this] { stopPlayback(true); });
}

// The panel mirrors the editors; its setters emit nothing, so nothing comes back.
void MainWindow::connectEditors()
{
    const auto onEdit = [this](QSpinBox *spin, auto &&reaction) {
        connect(spin, &QSpinBox::valueChanged, this, reaction);
    };
    onEdit(headerSpin, [this](int index) { playerPanel->setFileIndex(index, QString()); });
    onEdit(frameSpin, [this](int frame) {
        fitFrameMaximum();
        playerPanel->setCurrentFrame(frame);
    });
    onEdit(totalSpin, [this](int total) { setTotal(total); });
    onEdit(redSpin, [this](int level) { rgbwEdited(&RgbwLevels::red, level); });
    onEdit(greenSpin, [this](int level) { rgbwEdited(&RgbwLevels::green, level); });
    onEdit(blueSpin, [this](int level) { rgbwEdited(&RgbwLevels::blue, level); });
    onEdit(whiteSpin, [this](int level) {
        rgbwEdited(&RgbwLevels::white, level);
        playerPanel->setWhiteLevel(level);
    });
    for (QSpinBox *spin :
         {headerSpin, frameSpin, totalSpin, redSpin, greenSpin, blueSpin, whiteSpin}) {
        onEdit(spin, [this] {
            updateFramePreview();
            updateLocalStatus();
        });
    }
    connect(reservedEdit, &QLineEdit::textChanged, this, &MainWindow::updateFramePreview);
}

} // namespace qx
