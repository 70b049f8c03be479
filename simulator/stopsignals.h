// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace qx {

/// Turns SIGINT, SIGTERM and SIGHUP into a signal that arrives in the event loop. One per
/// process; a second of those signals before the first was handled changes nothing.
class StopSignals : public QObject
{
    Q_OBJECT

public:
    explicit StopSignals(QObject *parent = nullptr);

signals:
    void stopRequested();
};

} // namespace qx
