// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QProcess>
#include <QString>

namespace qx::test {

/// A frame as the simulated player prints it.
struct PrintedFrame
{
    int number = 0;
    int hy = 0;
    int red = 0;
    int green = 0;
    int blue = 0;
    int white = 0;

    bool operator==(const PrintedFrame &) const = default;
};

/// A simulated player in a process of its own, at a port with a fixed path. Starting it is
/// plugging in; killing it is pulling the cable.
class PlayerProcess
{
public:
    explicit PlayerProcess(const QString &linkPath);
    ~PlayerProcess();

    bool plugIn(); ///< true once the port is there
    void pullCable();

    const QList<PrintedFrame> &frames(); ///< since plugIn() or forget()
    int hellos();                        ///< likewise
    void forget();

private:
    void readOutput();

    QString linkPath;
    QProcess process;
    QList<PrintedFrame> received;
    int helloCount = 0;
};

} // namespace qx::test
