// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

namespace qx {

/// Turns SIGINT, SIGTERM and SIGHUP into a Qt signal in the event loop, so that a program which is
/// told to end can do so in order. Make one for the whole program, after the application object;
/// once it exists these signals no longer end the process, not even after it is deleted.
///
/// Elsewhere than on Unix it can be made, but never emits.
class EndSignals : public QObject
{
    Q_OBJECT

public:
    explicit EndSignals(QObject *parent = nullptr);

    /// Why the signals are not caught and end the process as ever; empty if they are.
    QString errorString() const { return failure; }

signals:
    /// Once, upon the first of the signals, however many come.
    void endRequested();

private:
    QString failure;
};

} // namespace qx
