// SPDX-License-Identifier: MIT
#pragma once

#include <QSpinBox>

namespace qx {

/// A spin box that paints its own two arrows: a style sheet that gives a spin box a border leaves
/// its arrows out.
class ArrowSpinBox : public QSpinBox
{
public:
    using QSpinBox::QSpinBox;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace qx
