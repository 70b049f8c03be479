// SPDX-License-Identifier: MIT
#include "widgets/toggleswitch.h"

#include "widgets/colours.h"

#include <QPainter>

namespace qx {

ToggleSwitch::ToggleSwitch(QWidget *parent)
    : QAbstractButton(parent)
{
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
}

QSize ToggleSwitch::sizeHint() const
{
    return {74, 34};
}

void ToggleSwitch::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto setPen = [&painter](const QColor &color, qreal width, Qt::PenStyle style) {
        painter.setPen(QPen(color, width, style, Qt::SquareCap, Qt::RoundJoin));
    };

    const QRectF track = QRectF(rect()).adjusted(1, 1, -1, -1);
    const qreal radius = track.height() / 2;
    const QColor trackColor = isChecked() ? colours::accent : colours::switchedOff;
    setPen(trackColor.darker(130), 1.5, Qt::SolidLine);
    painter.setBrush(trackColor);
    painter.drawRoundedRect(track, radius, radius);

    const qreal diameter = track.height() - 8;
    const qreal left = isChecked() ? track.right() - 4 - diameter : track.left() + 4;
    setPen(colours::border, 1.0, Qt::SolidLine);
    painter.setBrush(colours::text);
    painter.drawEllipse(QRectF(left, track.top() + 4, diameter, diameter));

    if (hasFocus()) {
        setPen(colours::brightAccent, 1.5, Qt::DashLine);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(track.adjusted(2, 2, -2, -2), radius, radius);
    }
}

} // namespace qx
