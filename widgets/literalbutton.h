// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>
#include <QStyleOptionButton>

namespace qx {

/// A push button that shows its text letter by letter: an ampersand is an ampersand, not the
/// mark of a shortcut.
class LiteralButton : public QPushButton
{
public:
    using QPushButton::QPushButton;

    QSize sizeHint() const override
    {
        const auto ampersands = static_cast<int>(text().count(u'&'));
        const int width = fontMetrics().horizontalAdvance(u'&') * ampersands;
        return QPushButton::sizeHint() + QSize(width, 0);
    }

    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void initStyleOption(QStyleOptionButton *option) const override
    {
        QPushButton::initStyleOption(option);
        option->text.replace(QLatin1String("&"), QLatin1String("&&"));
    }
};

} // namespace qx
