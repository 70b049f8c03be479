// SPDX-License-Identifier: MIT
#include "mainwindow/screenpace.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

#include <chrono>
#include <utility>

namespace qx {

namespace {

constexpr std::chrono::milliseconds periodLength{16}; // 60 Hz

} // namespace

ScreenPace::ScreenPace(QWidget *window)
    : QObject(window)
    , window(window)
{
    period.setSingleShot(true);
    period.setTimerType(Qt::PreciseTimer);
    period.setInterval(periodLength);
    connect(&period, &QTimer::timeout, this, &ScreenPace::release);
    window->installEventFilter(this);
}

bool ScreenPace::eventFilter(QObject *, QEvent *event)
{
    if (event->type() != QEvent::UpdateRequest || releasing)
        return false;
    held = period.isActive();
    if (!held)
        period.start();
    return held;
}

void ScreenPace::release()
{
    if (!std::exchange(held, false))
        return;
    period.start();
    releasing = true;
    QEvent due(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(window, &due);
    releasing = false;
}

} // namespace qx
