// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
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

/// A combo box that paints its own arrow, for the same reason, and ends a text that is too long
/// for it with an ellipsis.
class ArrowComboBox : public QComboBox
{
public:
    using QComboBox::QComboBox;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace qx
