// SPDX-License-Identifier: MIT
#include "mainwindow/screenpace.h"

#include <QCoreApplication>
#include <QWidget>

#include <chrono>
#include <utility>

namespace qx {

namespace {

constexpr std::chrono::milliseconds periodLength{16}; // 60 Hz

} // namespace

ScreenPace::ScreenPace(QObject *parent)
    : QObject(parent)
{
    period.setSingleShot(true);
    period.setTimerType(Qt::PreciseTimer);
    period.setInterval(periodLength);
    connect(&period, &QTimer::timeout, this, &ScreenPace::release);
}

void ScreenPace::holdPainting(QWidget *window)
{
    paced.append({window, QEvent::UpdateRequest});
    window->installEventFilter(this);
}

void ScreenPace::holdLayout(QWidget *widget)
{
    paced.append({widget, QEvent::LayoutRequest});
    widget->installEventFilter(this);
}

bool ScreenPace::eventFilter(QObject *watched, QEvent *event)
{
    const Held request{watched, event->type()};
    if (releasing || !paced.contains(request))
        return false;
    if (!period.isActive()) {
        period.start();
        return false;
    }
    if (!held.contains(request))
        held.append(request);
    return true;
}

// Layouts first, since they ask for painting.
void ScreenPace::release()
{
    if (held.isEmpty())
        return;
    period.start();
    releasing = true;
    const QList<Held> requests = std::exchange(held, {});
    for (const QEvent::Type type : {QEvent::LayoutRequest, QEvent::UpdateRequest}) {
        for (const Held &request : requests) {
            QEvent due(type);
            if (request.type == type)
                QCoreApplication::sendEvent(request.widget, &due);
        }
    }
    releasing = false;
}

} // namespace qx
