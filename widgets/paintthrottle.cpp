// SPDX-License-Identifier: MIT
#include "widgets/paintthrottle.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

#include <chrono>
#include <utility>

namespace qx {

namespace {

constexpr std::chrono::milliseconds periodLength{16}; // 60 Hz
constexpr std::chrono::milliseconds gathering{4};     // a frame, then its reply

} // namespace

PaintThrottle::PaintThrottle(QWidget *window)
    : QObject(window)
    , window(window)
{
    period.setSingleShot(true);
    period.setTimerType(Qt::PreciseTimer);
    connect(&period, &QTimer::timeout, this, &PaintThrottle::release);
    window->installEventFilter(this);
}

bool PaintThrottle::eventFilter(QObject *, QEvent *event)
{
    if (event->type() != QEvent::UpdateRequest || releasing)
        return false;
    deferred = true;
    if (!period.isActive())
        period.start(gathering);
    return true;
}

void PaintThrottle::release()
{
    if (!std::exchange(deferred, false))
        return;
    period.start(periodLength);
    emit aboutToPaint();
    releasing = true;
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(window, &request);
    releasing = false;
}

} // namespace qx
