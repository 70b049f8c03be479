// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QAbstractSpinBox;
class QColor;
class QWidget;
QT_END_NAMESPACE

namespace qx {

/// Makes a widget cheap to show anew with every frame; whoever makes such a widget calls it once.
///
/// Its background is filled with `surface`, which is what lies behind it, so that no parent is
/// painted again, borders and all. Its text is unshaped: joining and kerning letters is more than
/// half of laying a text out and does nothing for digits and short words. Holds across changes of
/// style sheets, which would make the widget see-through again.
void prepareFrameDisplay(QWidget *widget, const QColor &surface);

/// The same for a spin box, with the field in which its number stands.
void prepareFrameDisplay(QAbstractSpinBox *box, const QColor &surface);

} // namespace qx
