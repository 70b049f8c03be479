// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>

namespace qx {

/// An on/off switch that paints itself: a track with a knob at its left (off) or right (on) end.
class ToggleSwitch : public QAbstractButton
{
    Q_OBJECT

public:
    explicit ToggleSwitch(QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace qx
