// SPDX-License-Identifier: MIT
#include "tests/widgets/magnified.h"

#include <QWidget>

namespace qx::test {

namespace {

constexpr int magnification = 8;
constexpr int gradientStep = 2; // of 255, in each channel

} // namespace

Magnified::Magnified(QWidget &widget)
    : image(widget.size() * magnification, QImage::Format_ARGB32_Premultiplied)
{
    image.setDevicePixelRatio(magnification);
    image.fill(Qt::transparent);
    widget.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
}

QColor Magnified::at(QPointF point) const
{
    return image.pixelColor((point * magnification).toPoint());
}

bool Magnified::shows(QPointF point, const QColor &color) const
{
    const QColor found = at(point);
    const auto close = [](int a, int b) { return std::abs(a - b) <= gradientStep; };
    return close(found.red(), color.red()) && close(found.green(), color.green()) &&
           close(found.blue(), color.blue()) && close(found.alpha(), color.alpha());
}

double Magnified::shareOfLine(QPointF from, QPointF to, const QColor &color) const
{
    constexpr int steps = 400;
    int hits = 0;
    for (int i = 0; i < steps; ++i)
        hits += shows(from + (to - from) * (i + 0.5) / steps, color) ? 1 : 0;
    return static_cast<double>(hits) / steps;
}

} // namespace qx::test
