// SPDX-License-Identifier: MIT
#include "widgets/groupcolumn.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGridLayout>
#include <QResizeEvent>

namespace qx {

namespace {

constexpr int tightGroupGap = 4;
constexpr int tightRowGap = 0;

} // namespace

bool GroupColumn::event(QEvent *event)
{
    const bool done = QWidget::event(event);
    const bool matters = event->type() == QEvent::Resize || event->type() == QEvent::Show ||
                         event->type() == QEvent::LayoutRequest;
    if (matters && isVisible()) // before that it has no height of its own
        fit();
    return done;
}

void GroupColumn::fit()
{
    const int usualHeight = minimumSizeHint().height() + (tight ? spared : 0);
    const bool tooLow = height() < usualHeight;
    if (tooLow == tight)
        return;
    setTight(tooLow);
    spared = usualHeight - minimumSizeHint().height();
}

void GroupColumn::setTight(bool on)
{
    if (on) {
        groupGap = layout()->spacing();
        rowGaps.clear();
        const auto grids = findChildren<QGridLayout *>();
        for (QGridLayout *grid : grids)
            rowGaps.append({grid, grid->verticalSpacing()});
    }
    tight = on;
    layout()->setSpacing(on ? tightGroupGap : groupGap);
    for (const auto &[grid, gap] : std::as_const(rowGaps)) {
        grid->setVerticalSpacing(on ? tightRowGap : gap);
        QWidget *group = grid->parentWidget();
        group->updateGeometry(); // else its old height is remembered for a while
        QResizeEvent inside(group->size(), group->size()); // which may be the new one already
        QCoreApplication::sendEvent(group, &inside);
    }
}

} // namespace qx
