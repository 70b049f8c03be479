// SPDX-License-Identifier: MIT
#include "widgets/steadylayout.h"

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

// What was deleted while the layout was disabled is still in it.
void SteadyLayout::forgetDeletedWidgets()
{
    for (int i = layout->count() - 1; i >= 0; --i) {
        QLayoutItem *item = layout->itemAt(i);
        if (!item->widget() && !item->layout() && !item->spacerItem())
            delete layout->takeAt(i);
    }
}

void SteadyLayout::relayout()
{
    forgetDeletedWidgets();
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
