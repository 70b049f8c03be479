// SPDX-License-Identifier: MIT
#pragma once

#include "serial/serialcontroller.h"

#include <QByteArrayList>
#include <QObject>
#include <QStringList>

namespace qx {

/// Everything that a controller said, in order. Connect it before any other receiver: a receiver
/// that calls the controller from inside a signal is then heard in the right order.
class ControllerHistory : public QObject
{
public:
    explicit ControllerHistory(SerialController &controller);

    void clear();

    QStringList events;    ///< the texts below, one for each connectionChanged and errorOccurred
    QByteArrayList chunks; ///< rawReceived
    QByteArrayList lines;  ///< lineReceived
    qint64 transmitted = 0;

    /// What the signals and the controller's own answers contradict each other in: a connection
    /// announced twice, a loss of nothing, isOpen() or portName() that tell otherwise. Empty when
    /// all is well.
    QStringList contradictions;

private:
    void recordConnection(bool connected, const QString &message);

    SerialController &controller;
    bool announcedOpen;
};

/// Entries of ControllerHistory::events, in English.
QString connectedTo(const QString &port);
QString disconnectedFrom(const QString &port);
QString errorEvent(const QString &message);
QString disconnectionEvent(const QString &message);
QStringList lineLost(); ///< an error, a disconnection
QStringList failedOpen(const QString &port, const QString &ownError, const QString &reason);

} // namespace qx
