// SPDX-License-Identifier: MIT
#pragma once

#include <QSlider>
#include <QWheelEvent>

namespace qx {

/// A slider that no wheel moves: a turn over it is left to the parent, for nobody notices it during
/// a show.
class DragSlider : public QSlider
{
public:
    using QSlider::QSlider;

protected:
    void wheelEvent(QWheelEvent *event) override { event->ignore(); }
};

} // namespace qx
