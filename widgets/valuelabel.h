// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QPainter>
#include <QStyle>

namespace qx {

/// A label with selectable text that is drawn like any other while nothing is selected.
///
/// QLabel keeps a document for selectable text and lays that out anew, several times, whenever a
/// changed text is painted. Values that change with every frame cannot afford it. A text that has
/// grown too long for its room, as counters do in a long show, is drawn narrower, never cut.
class ValueLabel : public QLabel
{
protected:
    void paintEvent(QPaintEvent *event) override
    {
        if (hasSelectedText()) {
            QLabel::paintEvent(event);
            return;
        }
        QPainter painter(this);
        QRect room = contentsRect();
        const int needed = fontMetrics().horizontalAdvance(text());
        if (needed > room.width()) {
            painter.scale(static_cast<qreal>(room.width()) / needed, 1);
            room.setWidth(needed);
        }
        style()->drawItemText(&painter, room, static_cast<int>(alignment()), palette(), isEnabled(),
                              text(), foregroundRole());
    }
};

} // namespace qx
