// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QPainter>
#include <QStyleOptionToolButton>
#include <QToolButton>

namespace qx {

/// A button of the navigation column. An icon of the style's own may be much smaller than the
/// others there: it is shown doubled, on a canvas of their size, so that it looks like one of them
/// and its text stands where theirs does. icon() stays what it is.
class NavigationButton : public QToolButton
{
public:
    using QToolButton::QToolButton;

protected:
    void initStyleOption(QStyleOptionToolButton *option) const override
    {
        QToolButton::initStyleOption(option);
        const QSize doubled = option->icon.actualSize(option->iconSize) * 2;
        if (!doubled.isEmpty() && doubled.width() < option->iconSize.width())
            option->icon = onCanvas(option->icon.pixmap(doubled / 2), doubled, option->iconSize);
    }

private:
    QPixmap onCanvas(const QPixmap &picture, const QSize &shown, const QSize &canvasSize) const
    {
        QPixmap canvas(canvasSize * devicePixelRatioF());
        canvas.setDevicePixelRatio(devicePixelRatioF());
        canvas.fill(Qt::transparent);
        QRect target(QPoint(), shown);
        target.moveCenter(QRect(QPoint(), canvasSize).center());
        QPainter painter(&canvas);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(target, picture);
        return canvas;
    }
};

} // namespace qx
