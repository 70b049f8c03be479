// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QSpinBox>

namespace qx {

/// A spin box for the hands of an operator during a show.
///
/// A typed number counts at Return, Enter, Tab or any other loss of the focus, an arrow or page key
/// or an arrow button, never digit by digit; Escape gives it up. A value that the program sets
/// meanwhile holds at once, and only the text stays the operator's. The wheel works while the box
/// has the focus, and is left to the parent otherwise.
///
/// It paints its own two arrows: a style sheet that gives a spin box a border leaves them out.
class ArrowSpinBox : public QSpinBox
{
    Q_OBJECT

public:
    explicit ArrowSpinBox(QWidget *parent = nullptr);

    /// The typed number becomes the value, if one is being typed.
    void takeTyped();

    void stepBy(int steps) override; ///< from the typed number

protected:
    StepEnabled stepEnabled() const override; ///< both ways from a typed number
    QString textFromValue(int value) const override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void wheelEvent(QWheelEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void giveUpTyped();

    bool typing = false; ///< the text is the operator's, and not taken yet
};

/// A combo box that paints its own arrow, for the same reason, and ends a text that is too long
/// for it with an ellipsis. The wheel as above.
class ArrowComboBox : public QComboBox
{
public:
    explicit ArrowComboBox(QWidget *parent = nullptr);

protected:
    void wheelEvent(QWheelEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};

} // namespace qx
