// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QSlider;
QT_END_NAMESPACE

namespace qx::test {

/// Where a mouse takes hold of a control, in the control's own coordinates, as its style draws it.
QPoint handleOf(const QSlider *slider, int value); ///< the middle of the handle at `value`
QPoint boxOf(const QCheckBox *check);              ///< the middle of the box beside the text

} // namespace qx::test
