// SPDX-License-Identifier: MIT
#pragma once

#include <QEvent>
#include <QObject>

namespace qx::test {

/// Counts the events of one type that an object is given, before the object deals with them.
class EventCounter : public QObject
{
public:
    EventCounter(QObject *object, QEvent::Type type)
        : type(type)
    {
        object->installEventFilter(this);
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
