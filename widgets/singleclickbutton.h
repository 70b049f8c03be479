// SPDX-License-Identifier: MIT
#pragma once

#include <QMouseEvent>
#include <QPushButton>

namespace qx {

/// A push button for which a double click is one click, since a second one would undo the first.
class SingleClickButton : public QPushButton
{
public:
    using QPushButton::QPushButton;

protected:
    void mouseDoubleClickEvent(QMouseEvent *event) override { event->accept(); }
};

} // namespace qx
