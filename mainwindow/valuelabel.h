// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QPainter>
#include <QStyle>

namespace qx {

/// A label with selectable text that is drawn like any other while nothing is selected.
///
/// QLabel keeps a document for selectable text and lays that out anew, several times, whenever a
/// changed text is painted. Values that change with every frame cannot afford it.
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
        style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(),
                              isEnabled(), text(), foregroundRole());
    }
};

} // namespace qx
