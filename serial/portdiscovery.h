// SPDX-License-Identifier: MIT
#pragma once

#include "serial/serialcontroller.h"

#include <QList>
#include <QString>

namespace qx {

/// A serial port as a system describes it, before any selection.
struct PortDescription
{
    QString systemLocation; ///< "/dev/ttyACM0", "COM3"
    QString description;
    QString manufacturer;
    quint16 vendorId = 0;
    quint16 productId = 0;
    bool hasVendorId = false;
    bool hasProductId = false;
    bool requested = false; ///< named by the operator: a candidate whatever its location
};

/// Which ports of a system can be a player.
enum class PortRule : int {
    Mac,     ///< the call-out devices, "/dev/cu.…"
    Linux,   ///< USB serial ports, "/dev/ttyACM…" and "/dev/ttyUSB…"
    Windows, ///< every port
};

/// The candidates among `ports`, labelled in the current language and sorted by name without
/// regard to case.
QList<SerialPortEntry> portEntries(const QList<PortDescription> &ports, PortRule rule);

/// The rule of the system that this program was built for.
PortRule systemPortRule();

/// The ports that the system lists now. On Linux also those named in the environment variable
/// TESSALY_SERIAL_PORTS (paths separated by ':') that exist, for lines that the system does not
/// list: a simulator, a tunnel, a container's device.
QList<PortDescription> systemPorts();

} // namespace qx
