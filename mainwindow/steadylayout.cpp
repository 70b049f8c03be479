// SPDX-License-Identifier: MIT
#include "mainwindow/steadylayout.h"

#include <QEvent>
#include <QLayout>
#include <QWidget>

namespace qx {

SteadyLayout::SteadyLayout(QWidget *widget)
    : QObject(widget)
    , layout(widget->layout())
{
    layout->setEnabled(false);
    widget->installEventFilter(this);
}

void SteadyLayout::relayout()
{
    layout->setEnabled(true);
    layout->invalidate();
    layout->activate();
    layout->setEnabled(false);
}

bool SteadyLayout::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        relayout();
    return false;
}

} // namespace qx
