// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace qx {

/// The pace of unasked text: says every 10 ms which lines are due.
class TextFlood : public QObject
{
    Q_OBJECT

public:
    explicit TextFlood(QObject *parent = nullptr);

    /// Counts lines from 1 on, so many a second; with 0 there are none.
    void restart(int linesPerSecond);
    void stop();

signals:
    /// These lines, numbered without gap; whoever cannot write them leaves them out.
    void linesDue(qint64 first, qint64 last);

private:
    void announceLines();

    int rate = 0; ///< lines a second
    qint64 announced = 0;
    QElapsedTimer clock;
    QTimer timer;
};

} // namespace qx
