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
constexpr std::chrono::milliseconds gathering{4};     // a frame, then its reply

} // namespace

ScreenPace::ScreenPace(QWidget *window)
    : QObject(window)
    , window(window)
{
    period.setSingleShot(true);
    period.setTimerType(Qt::PreciseTimer);
    connect(&period, &QTimer::timeout, this, &ScreenPace::release);
    window->installEventFilter(this);
}

bool ScreenPace::eventFilter(QObject *, QEvent *event)
{
    if (event->type() != QEvent::UpdateRequest || releasing)
        return false;
    held = true;
    if (!period.isActive())
        period.start(gathering);
    return true;
}

void ScreenPace::release()
{
    if (!std::exchange(held, false))
        return;
    period.start(periodLength);
    emit due();
    releasing = true;
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(window, &request);
    releasing = false;
}

} // namespace qx
