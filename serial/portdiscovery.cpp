// SPDX-License-Identifier: MIT
#include "serial/portdiscovery.h"

#include "i18n/language.h"

#include <QFileInfo>
#include <QSerialPortInfo>

#include <algorithm>

namespace qx {

namespace {

bool isCandidate(const PortDescription &port, PortRule rule)
{
    if (port.requested)
        return true;
    const auto at = [&port](QLatin1String prefix) {
        return port.systemLocation.startsWith(prefix);
    };
    switch (rule) {
    case PortRule::Mac:
        return at(QLatin1String("/dev/cu."));
    case PortRule::Linux:
        return at(QLatin1String("/dev/ttyACM")) || at(QLatin1String("/dev/ttyUSB"));
    case PortRule::Windows:
        return true;
    }
    return false;
}

QString hexId(quint16 id)
{
    return QStringLiteral("%1").arg(id, 4, 16, QLatin1Char('0')).toUpper();
}

QString displayText(const SerialPortEntry &entry)
{
    const QString label =
        entry.description.isEmpty() ? Language::text(UiText::MacSerialPort) : entry.description;
    QString text = QStringLiteral("%1 — %2").arg(entry.portName, label);
    if (entry.hasVendorId && entry.hasProductId)
        text += QStringLiteral(" [%1:%2]").arg(hexId(entry.vendorId), hexId(entry.productId));
    return text;
}

SerialPortEntry entryFor(const PortDescription &port)
{
    SerialPortEntry entry;
    entry.portName = port.systemLocation;
    entry.description = port.description.trimmed();
    entry.manufacturer = port.manufacturer.trimmed();
    entry.hasVendorId = port.hasVendorId;
    entry.hasProductId = port.hasProductId;
    entry.vendorId = port.hasVendorId ? port.vendorId : quint16{0};
    entry.productId = port.hasProductId ? port.productId : quint16{0};
    entry.displayText = displayText(entry);
    return entry;
}

#ifdef Q_OS_LINUX
void appendRequestedPorts(QList<PortDescription> &ports)
{
    const QStringList paths =
        qEnvironmentVariable("TESSALY_SERIAL_PORTS").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString &path : paths) {
        const auto listed = std::find_if(ports.begin(), ports.end(), [&path](const auto &port) {
            return port.systemLocation == path;
        });
        if (listed != ports.end()) {
            listed->requested = true;
            continue;
        }
        if (!QFileInfo::exists(path))
            continue;
        PortDescription port;
        port.systemLocation = path;
        port.description = QStringLiteral("TESSALY_SERIAL_PORTS");
        port.requested = true;
        ports.append(port);
    }
}
#endif

} // namespace

QList<SerialPortEntry> portEntries(const QList<PortDescription> &ports, PortRule rule)
{
    QList<SerialPortEntry> entries;
    for (const PortDescription &port : ports) {
        if (isCandidate(port, rule))
            entries.append(entryFor(port));
    }
    std::sort(entries.begin(), entries.end(), [](const auto &a, const auto &b) {
        return a.portName.compare(b.portName, Qt::CaseInsensitive) < 0;
    });
    return entries;
}

PortRule systemPortRule()
{
#if defined(Q_OS_MACOS)
    return PortRule::Mac;
#elif defined(Q_OS_WIN)
    return PortRule::Windows;
#else
    return PortRule::Linux;
#endif
}

QList<PortDescription> systemPorts()
{
    QList<PortDescription> ports;
    const QList<QSerialPortInfo> infos = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &info : infos) {
        PortDescription port;
        port.systemLocation = info.systemLocation();
        port.description = info.description();
        port.manufacturer = info.manufacturer();
        port.vendorId = info.vendorIdentifier();
        port.productId = info.productIdentifier();
        port.hasVendorId = info.hasVendorIdentifier();
        port.hasProductId = info.hasProductIdentifier();
        ports.append(port);
    }
#ifdef Q_OS_LINUX
    appendRequestedPorts(ports);
#endif
    return ports;
}

} // namespace qx
