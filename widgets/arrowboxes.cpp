// SPDX-License-Identifier: MIT
#include "widgets/arrowboxes.h"

#include "widgets/colours.h"

#include <QStyleOptionComboBox>
#include <QStyleOptionSpinBox>
#include <QStylePainter>

namespace qx {

namespace {

constexpr qreal arrowWidth = 8;
constexpr qreal arrowHeight = 5;

// `height` is negative for an arrow that points down.
void drawArrow(QPainter &painter, const QRectF &button, qreal height, bool enabled)
{
    const QPointF c = button.center();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(enabled ? colours::dimText : colours::border);
    painter.drawPolygon(QPolygonF{{c.x() - arrowWidth / 2, c.y() + height / 2},
                                  {c.x() + arrowWidth / 2, c.y() + height / 2},
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
    const StepEnabled steps = isEnabled() ? stepEnabled() : StepNone;
    drawArrow(painter, button(QStyle::SC_SpinBoxUp), arrowHeight, steps.testFlag(StepUpEnabled));
    drawArrow(painter, button(QStyle::SC_SpinBoxDown), -arrowHeight,
              steps.testFlag(StepDownEnabled));
}

void ArrowComboBox::paintEvent(QPaintEvent *)
{
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const auto part = [this, &option](QStyle::SubControl which) {
        return style()->subControlRect(QStyle::CC_ComboBox, &option, which, this);
    };
    option.currentText = fontMetrics().elidedText(option.currentText, Qt::ElideRight,
                                                  part(QStyle::SC_ComboBoxEditField).width());
    QStylePainter painter(this);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
    drawArrow(painter, part(QStyle::SC_ComboBoxArrow), -arrowHeight, isEnabled());
}

} // namespace qx
