// SPDX-License-Identifier: MIT
#include "mainwindow/groupcolumn.h"

#include <QEvent>
#include <QGridLayout>

namespace qx {

namespace {

constexpr int tightGroupGap = 4;
constexpr int tightRowGap = 0;

} // namespace

bool GroupColumn::event(QEvent *event)
{
    const bool done = QWidget::event(event);
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest)
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
    for (const auto &[grid, gap] : std::as_const(rowGaps))
        grid->setVerticalSpacing(on ? tightRowGap : gap);
}

} // namespace qx
