// SPDX-License-Identifier: MIT
#pragma once

#include "mainwindow/mainwindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QEventLoop>
#include <QLabel>
#include <QPushButton>

namespace qx::bench {

/// Leaves demo mode, connects the window to the player at a port and returns when the handshake is
/// complete; never if there is no player.
inline void link(MainWindow &window, const QString &portPath)
{
    qputenv("TESSALY_SERIAL_PORTS", portPath.toLocal8Bit());
    window.findChild<QCheckBox *>()->setChecked(false);
    window.refreshPorts(true);
    const auto *caption = window.findChild<QLabel *>(QStringLiteral("portCaption"));
    auto *ports = qobject_cast<QComboBox *>(caption->buddy());
    ports->setCurrentIndex(ports->findData(portPath));
    window.findChild<QPushButton *>(QStringLiteral("primaryButton"))->click();
    while (!window.isUsbTransmissionReady())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

} // namespace qx::bench
