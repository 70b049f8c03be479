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
    if (!held) {
        period.start();
        emit due();
    }
    return held;
}

void ScreenPace::release()
{
    if (!std::exchange(held, false))
        return;
    period.start();
    emit due();
    releasing = true;
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(window, &request);
    releasing = false;
}

} // namespace qx
