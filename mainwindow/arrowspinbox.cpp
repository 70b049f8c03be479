// SPDX-License-Identifier: MIT
#include "mainwindow/arrowspinbox.h"

#include <QPainter>
#include <QStyleOptionSpinBox>

namespace qx {

namespace {

// `height` is negative for an arrow that points down.
void drawArrow(QPainter &painter, const QRectF &button, qreal height, bool enabled)
{
    const QPointF c = button.center();
    painter.setBrush(enabled ? QColor(0xa8adb0) : QColor(0x3b4045));
    painter.drawPolygon(QPolygonF{{c.x() - 4, c.y() + height / 2},
                                  {c.x() + 4, c.y() + height / 2},
                                  {c.x(), c.y() - height / 2}});
}

} // namespace

void ArrowSpinBox::paintEvent(QPaintEvent *event)
{
    QSpinBox::paintEvent(event);
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    const auto button = [this, &option](QStyle::SubControl which) {
        return QRectF(style()->subControlRect(QStyle::CC_SpinBox, &option, which, this));
    };
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const StepEnabled steps = isEnabled() ? stepEnabled() : StepNone;
    drawArrow(painter, button(QStyle::SC_SpinBoxUp), 5, steps.testFlag(StepUpEnabled));
    drawArrow(painter, button(QStyle::SC_SpinBoxDown), -5, steps.testFlag(StepDownEnabled));
}

} // namespace qx
