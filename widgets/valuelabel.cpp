// SPDX-License-Identifier: MIT
#include "widgets/valuelabel.h"

#include <QPainter>
#include <QStyle>

namespace qx {

ValueLabel::ValueLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setTextFormat(Qt::PlainText);
}

void ValueLabel::showValue(const QString &value)
{
    if (value == text())
        return;
    const int start = selectionStart();
    const auto length = static_cast<int>(selectedText().size());
    setText(value);
    if (length > 0)
        setSelection(start, length);
}

void ValueLabel::paintEvent(QPaintEvent *event)
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

} // namespace qx
