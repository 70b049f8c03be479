// SPDX-License-Identifier: MIT
// MainWindow, link: the port, the handshake, the device's replies, offline demo mode.
// Owns usbLinked, handshakeAttempts, handshakeTimer.
#include "mainwindow/mainwindow.h"
#include "mainwindow/messagelifetimes.h"
#include "serial/serialcontroller.h"
#include "widgets/plaintooltip.h"
#include "widgets/playerpanel.h"
#include "widgets/valuelabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

namespace qx {

namespace {

const QString &demoLabel()
{
    static const QString label = QStringLiteral("DEMO");
    return label;
}

} // namespace

void MainWindow::refreshPorts(bool announce)
{
    const QString chosen = portCombo->currentData(Qt::UserRole).toString();
    const QList<SerialPortEntry> entries = serialController->availablePorts();
    int chosenIndex = -1;
    portCombo->clear();
    for (const SerialPortEntry &entry : entries) {
        portCombo->addItem(entry.displayText, entry.portName);
        if (entry.portName == chosen)
            chosenIndex = portCombo->count() - 1;
    }
    if (chosenIndex >= 0)
        portCombo->setCurrentIndex(chosenIndex);
    if (announce) {
        appendLog(QStringLiteral("SYS"),
                  entries.isEmpty() ? Language::text(UiText::NoPortSwitchEspHint)
                                    : Language::text(UiText::PortsFound).arg(entries.size()));
    }
}

void MainWindow::toggleConnection()
{
    if (isDemo())
        return;
    if (serialController->isOpen()) {
        serialController->close();
        return;
    }
    if (portCombo->currentIndex() < 0) {
        appendLog(QStringLiteral("ERR"), Language::text(UiText::NoUsablePort));
        return;
    }
    if (serialController->open(portCombo->currentData().toString(),
                               hostSettingsCombo->currentData().toInt()))
        beginHandshake();
}

void MainWindow::beginHandshake()
{
    if (isDemo()) {
        appendLog(QStringLiteral("SYS"), Language::text(UiText::HandshakeNotRequiredInDemo));
        return;
    }
    if (!serialController->isOpen()) {
        appendLog(QStringLiteral("ERR"), Language::text(UiText::HandshakePortDisconnected));
        return;
    }
    setUsbLinked(false, Language::text(UiText::Handshaking));
    handshakeAttempts = 0;
    sendHandshake();
    if (serialController->isOpen()) // the device can vanish while it is written to
        handshakeTimer->start();
}

void MainWindow::sendHandshake()
{
    if (!serialController->isOpen() || usbLinked) {
        handshakeTimer->stop();
        return;
    }
    ++handshakeAttempts;
    appendLog(QStringLiteral("TX"), Language::text(UiText::HelloLogLine).arg(handshakeAttempts));
    serialController->send(Protocol::handshake());
    if (serialController->isOpen()) {
        showLink(Language::text(UiText::HandshakingAttempt).arg(handshakeAttempts),
                 Language::text(UiText::Handshaking));
    }
}

void MainWindow::processReceivedLine(const QByteArray &line)
{
    appendLog(QStringLiteral("RX"), QString::fromLatin1(line));
    switch (Protocol::parseReply(line).kind) {
    case ReplyKind::Ready:
        if (!usbLinked)
            sendHandshake();
        break;
    case ReplyKind::Ok:
        setUsbLinked(true, Language::text(UiText::HandshakeComplete));
        showStatus(Language::text(UiText::HandshakeSucceeded), lifetimes::handshake);
        releasePendingFrame();
        followWithStop();
        break;
    case ReplyKind::RxOk:
        finishPendingFrame(true, Language::text(UiText::EspFrameAccepted));
        break;
    case ReplyKind::NeedHello:
        requeueInFlightFrame();
        beginHandshake();
        break;
    case ReplyKind::BadChecksum:
        if (!inFlightFrame.isEmpty())
            sendPendingFrame(true);
        break;
    case ReplyKind::Ac39Fail:
        finishPendingFrame(false, Language::text(UiText::EspForwardingFailed));
        break;
    case ReplyKind::Unknown:
        break;
    }
}

bool MainWindow::isDemo() const
{
    return demoModeCheck && demoModeCheck->isChecked();
}

bool MainWindow::isUsbTransmissionReady() const
{
    if (!demoModeCheck)
        return false;
    return isDemo() || (serialController->isOpen() && usbLinked);
}

void MainWindow::setUsbLinked(bool linked, const QString &message)
{
    usbLinked = linked;
    if (linked) {
        handshakeTimer->stop();
        setLamp(true);
        showLink(message.isEmpty() ? Language::text(UiText::HandshakeComplete) : message,
                 QStringLiteral("QXUSB OK"));
        playerPanel->setConnected(true, serialController->portName());
        return;
    }
    if (isDemo())
        return;
    const QString notHandshaken = Language::text(UiText::NotHandshaken);
    const QString &text = message.isEmpty() ? notHandshaken : message;
    setLamp(false);
    showLink(text, text);
    playerPanel->setConnected(false, notHandshaken);
}

void MainWindow::setConnectedUi(bool connected, const QString &message)
{
    if (connected) {
        setLamp(false);
        showLink(Language::text(UiText::SerialOpenWaitingHandshake), QString());
        playerPanel->setConnected(false, Language::text(UiText::Handshaking));
    } else {
        handshakeTimer->stop();
        clearFrames();
        setUsbLinked(false, Language::text(UiText::Disconnected));
        stopPlayback(false);
    }
    connectButton->setText(
        Language::text(connected ? UiText::DisconnectButton : UiText::ConnectHandshakeButton));
    appendLog(QStringLiteral("SYS"), message);
    showStatus(message, lifetimes::connection);
}

void MainWindow::setDemoMode(bool enabled)
{
    if (enabled && serialController->isOpen())
        serialController->close();
    for (QWidget *control :
         {static_cast<QWidget *>(portCombo), static_cast<QWidget *>(hostSettingsCombo),
          static_cast<QWidget *>(connectButton), static_cast<QWidget *>(refreshPortsButton)})
        control->setEnabled(!enabled);
    if (enabled) {
        handshakeTimer->stop();
        clearFrames();
        setLamp(true);
        showLink(Language::text(UiText::OfflineDemo), demoLabel());
        playerPanel->setConnected(true, demoLabel());
        appendLog(QStringLiteral("SYS"), Language::text(UiText::DemoModeDescription));
    } else {
        stopPlayback(false);
        setUsbLinked(false, Language::text(UiText::Disconnected));
        appendLog(QStringLiteral("SYS"), Language::text(UiText::DemoModeDisabled));
    }
    updateLocalStatus();
}

// An empty text leaves the handshake row as it is.
void MainWindow::showLink(const QString &channel, const QString &handshake)
{
    linkStatusLabel->setText(channel);
    linkStatusLabel->setToolTip(plainToolTip(channel));
    if (!handshake.isEmpty())
        statusValueLabels.at(1)->showValue(handshake);
}

void MainWindow::setLamp(bool lit)
{
    linkIndicator->setAccessibleName(
        Language::text(lit ? UiText::Connected : UiText::NotConnected));
    linkIndicator->setStyleSheet(lit ? QStringLiteral("background:#1479e8;border-radius:6px;")
                                     : QStringLiteral("background:#747a7e;border-radius:6px;"));
}

void MainWindow::refreshLinkTexts()
{
    setLamp(isDemo() || (serialController->isOpen() && usbLinked)); // which says it in words, too
    const QString handshaking = Language::text(UiText::Handshaking);
    const QString disconnected = Language::text(UiText::Disconnected);
    if (isDemo()) {
        showLink(Language::text(UiText::OfflineDemo), demoLabel());
        playerPanel->setConnected(true, demoLabel());
    } else if (!serialController->isOpen()) {
        showLink(disconnected, disconnected);
        playerPanel->setConnected(false, QString());
    } else if (usbLinked) {
        showLink(Language::text(UiText::HandshakeComplete), QStringLiteral("QXUSB OK"));
        playerPanel->setConnected(true, serialController->portName());
    } else {
        showLink(handshakeAttempts == 0
                     ? Language::text(UiText::SerialOpenWaitingHandshake)
                     : Language::text(UiText::HandshakingAttempt).arg(handshakeAttempts),
                 handshaking);
        playerPanel->setConnected(false, handshaking);
    }
}

} // namespace qx
