// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>

class QWidget;

namespace qx::test {

/// What a widget paints now, without what lies behind it, magnified eight times: what is sharp
/// there can be asked for at points, which antialiasing would blur.
class Magnified
{
public:
    explicit Magnified(QWidget &widget);

    /// At a point in the widget's own coordinates; transparent where nothing is painted.
    QColor at(QPointF point) const;

    /// Whether the colour there is `color`, but for the rounding of one gradient step.
    bool shows(QPointF point, const QColor &color) const;

    /// How much of a straight line shows `color`: 0..1.
    double shareOfLine(QPointF from, QPointF to, const QColor &color) const;

private:
    QImage image;
};

} // namespace qx::test
