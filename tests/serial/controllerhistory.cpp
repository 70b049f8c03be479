// SPDX-License-Identifier: MIT
#include "tests/serial/controllerhistory.h"

#include <QRegularExpression>

#include <cerrno>

namespace qx {

ControllerHistory::ControllerHistory(SerialController &controller)
    : controller(controller)
    , announcedOpen(controller.isOpen())
{
    connect(&controller, &SerialController::connectionChanged, this,
            &ControllerHistory::recordConnection);
    connect(&controller, &SerialController::errorOccurred, this,
            [this](const QString &message) { events.append(errorEvent(message)); });
    connect(&controller, &SerialController::rawReceived, this,
            [this](const QByteArray &data) { chunks.append(data); });
    connect(&controller, &SerialController::lineReceived, this,
            [this](const QByteArray &line) { lines.append(line); });
    connect(&controller, &SerialController::bytesTransmitted, this,
            [this](qint64 count) { transmitted += count; });
}

void ControllerHistory::clear()
{
    events.clear();
    chunks.clear();
    lines.clear();
    transmitted = 0;
}

void ControllerHistory::recordConnection(bool connected, const QString &message)
{
    const QString event =
        connected ? QStringLiteral("connected: %1").arg(message) : disconnectionEvent(message);
    events.append(event);
    // A failed open is announced although the port was closed already.
    const bool failure = QRegularExpression(QStringLiteral("^(Failed to |打开串口 |设置串口 )"))
                             .match(message)
                             .hasMatch();
    if (!failure && connected == announcedOpen)
        contradictions.append(QStringLiteral("announced twice: %1").arg(event));
    if (failure && announcedOpen)
        contradictions.append(QStringLiteral("an open port failed to open: %1").arg(event));
    if (controller.isOpen() != connected || controller.portName().isEmpty() == connected)
        contradictions.append(
            QStringLiteral("isOpen() or portName() tell otherwise: %1").arg(event));
    announcedOpen = connected;
}

QString connectedTo(const QString &port)
{
    return QStringLiteral("connected: Opened %1; host settings 115200 / 8N1").arg(port);
}

QString disconnectedFrom(const QString &port)
{
    return disconnectionEvent(QStringLiteral("Disconnected from %1").arg(port));
}

QString errorEvent(const QString &message)
{
    return QStringLiteral("error: ") + message;
}

QString disconnectionEvent(const QString &message)
{
    return QStringLiteral("disconnected: ") + message;
}

QStringList lineLost()
{
    const QString message = QStringLiteral("macOS serial port failed: ") + qt_error_string(EIO);
    return {errorEvent(message), disconnectionEvent(message)};
}

QStringList failedOpen(const QString &port, const QString &ownError, const QString &reason)
{
    const QString message = QStringLiteral("Failed to open serial port %1: %2").arg(port, reason);
    return {errorEvent(ownError), errorEvent(message), disconnectionEvent(message)};
}

} // namespace qx
