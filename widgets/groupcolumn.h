// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QWidget>

QT_BEGIN_NAMESPACE
class QGridLayout;
QT_END_NAMESPACE

namespace qx {

/// A column of groups, each with its rows in a grid. While it is too low for all of them it takes
/// the height that lacks from the gaps between groups and rows, so that no button is crushed.
class GroupColumn : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    bool event(QEvent *event) override;

private:
    void fit();
    void setTight(bool on);

    bool tight = false;
    int spared = 0;                               ///< pixels that the tight gaps save
    QList<std::pair<QGridLayout *, int>> rowGaps; ///< the grids, each with its usual gap
    int groupGap = 0;                             ///< usual gap
};

} // namespace qx
