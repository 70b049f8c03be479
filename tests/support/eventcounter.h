// SPDX-License-Identifier: MIT
#pragma once

#include <QEvent>
#include <QWidget>

namespace qx::test {

/// Counts the events of one type that a widget is given.
class EventCounter : public QObject
{
public:
    EventCounter(QWidget *widget, QEvent::Type type)
        : type(type)
    {
        widget->installEventFilter(this);
    }
    int count = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == type;
        return false;
    }

private:
    const QEvent::Type type;
};

} // namespace qx::test
