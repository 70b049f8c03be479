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
        if (option->icon.cacheKey() != shownFor) { // a new icon each time would fill Qt's cache
            shownFor = option->icon.cacheKey();
            shown = enlarged(option->icon, option->iconSize);
        }
        option->icon = shown;
    }

private:
    QIcon enlarged(const QIcon &icon, const QSize &size) const
    {
        const QSize doubled = icon.actualSize(size) * 2;
        if (doubled.isEmpty() || doubled.width() >= size.width())
            return icon;
        QPixmap canvas(size * devicePixelRatioF());
        canvas.setDevicePixelRatio(devicePixelRatioF());
        canvas.fill(Qt::transparent);
        QRect target(QPoint(), doubled);
        target.moveCenter(QRect(QPoint(), size).center());
        QPainter painter(&canvas);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(target, icon.pixmap(doubled, devicePixelRatioF()));
        return canvas;
    }

    mutable QIcon shown;
    mutable qint64 shownFor = 0; ///< key of the icon that this one shows
};

} // namespace qx
