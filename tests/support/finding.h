// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QList>
#include <QString>
#include <QWidget>

namespace qx::test {

/// The descendant of a kind with this accessible name; null if there is none.
template<typename Widget>
Widget *spokenAs(const QWidget &owner, const QString &accessibleName)
{
    const auto widgets = owner.findChildren<Widget *>();
    for (Widget *widget : widgets) {
        if (widget->accessibleName() == accessibleName)
            return widget;
    }
    return nullptr;
}

/// The control that the label with this object name is the caption of; null if there is none.
template<typename Widget>
Widget *captionedBy(const QWidget &owner, const char *labelName)
{
    const auto *caption = owner.findChild<QLabel *>(QLatin1String(labelName));
    return caption ? qobject_cast<Widget *>(caption->buddy()) : nullptr;
}

/// The descendants of a kind that have no object name, in the order in which they were made.
template<typename Widget>
QList<Widget *> nameless(const QWidget &owner)
{
    QList<Widget *> widgets = owner.findChildren<Widget *>();
    widgets.removeIf([](const Widget *widget) { return !widget->objectName().isEmpty(); });
    return widgets;
}

} // namespace qx::test
