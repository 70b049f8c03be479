// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace qx {

/// The host's end of the cable by plain POSIX calls: nothing between the test and the device
/// that could repair what the device does wrong. Never blocks and never changes the terminal's
/// mode; the caller waits with QTRY_ macros.
class HostPort
{
public:
    HostPort() = default;
    ~HostPort() { close(); }
    Q_DISABLE_COPY_MOVE(HostPort)

    bool open(const QString &path);
    void close();

    /// How many of the bytes the line took.
    qint64 write(const QByteArray &bytes);

    /// Everything that has arrived since the port was opened or forget() was called.
    QByteArray received();
    void forget();

    /// Whether the device is gone from the line.
    bool isHungUp() const;

private:
    int descriptor = -1;
    QByteArray arrived;
};

} // namespace qx
