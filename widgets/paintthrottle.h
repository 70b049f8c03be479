// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace qx {

/// Throttles the painting of a window to the pace of a screen, 60 times a second.
///
/// With a fast device every frame changes a dozen texts; painting them each time would cost ten
/// times what the frame itself costs. What the widgets hold is always up to date, only its showing
/// waits, for one period at the most. The first change after a rest waits for a quarter of that, so
/// that a frame and its reply are painted together.
class PaintThrottle : public QObject
{
    Q_OBJECT

public:
    /// Becomes a child of the window.
    explicit PaintThrottle(QWidget *window);

signals:
    void aboutToPaint();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void release();

    QWidget *window;
    QTimer period;         ///< runs until the earliest next showing
    bool deferred = false; ///< a painting waits for that
    bool releasing = false;
};

} // namespace qx
