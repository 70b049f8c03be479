// SPDX-License-Identifier: MIT
#include "widgets/arrowboxes.h"

#include "widgets/colours.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QStyleOptionComboBox>
#include <QStyleOptionSpinBox>
#include <QStylePainter>
#include <QWheelEvent>

#include <utility>

namespace qx {

namespace {

constexpr qreal arrowWidth = 8;
constexpr qreal arrowHeight = 5;

// `height` is negative for an arrow that points down.
void drawArrow(QPainter &painter, const QRectF &button, qreal height, bool enabled)
{
    const QPointF c = button.center();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(enabled ? colours::dimText : colours::border);
    painter.drawPolygon(QPolygonF{{c.x() - arrowWidth / 2, c.y() + height / 2},
                                  {c.x() + arrowWidth / 2, c.y() + height / 2},
                                  {c.x(), c.y() - height / 2}});
}

} // namespace

ArrowSpinBox::ArrowSpinBox(QWidget *parent)
    : QSpinBox(parent)
{
    setKeyboardTracking(false);
    setFocusPolicy(Qt::StrongFocus); // not by the wheel
    connect(lineEdit(), &QLineEdit::textEdited, this, [this] { typing = true; });
}

// Once the text is no longer protected, Qt's own taking finds it where it was typed.
void ArrowSpinBox::takeTyped()
{
    if (std::exchange(typing, false))
        interpretText();
}

void ArrowSpinBox::giveUpTyped()
{
    typing = false;
    setValue(value()); // writes its text
}

void ArrowSpinBox::stepBy(int steps)
{
    takeTyped(); // Qt forgets the text once the program has set a value
    QSpinBox::stepBy(steps);
}

// Qt asks before it steps, of the value that the typed number replaces.
QAbstractSpinBox::StepEnabled ArrowSpinBox::stepEnabled() const
{
    return typing ? StepUpEnabled | StepDownEnabled : QSpinBox::stepEnabled();
}

QString ArrowSpinBox::textFromValue(int number) const
{
    return typing && number == value() ? lineEdit()->text() : QSpinBox::textFromValue(number);
}

void ArrowSpinBox::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        takeTyped();
        break;
    case Qt::Key_Escape:
        if (typing) {
            giveUpTyped();
            return;
        }
        break;
    default:
        break;
    }
    QSpinBox::keyPressEvent(event);
}

void ArrowSpinBox::focusOutEvent(QFocusEvent *event)
{
    takeTyped();
    QSpinBox::focusOutEvent(event);
}

// Tab moves on without a loss of the focus where the window is not the active one.
bool ArrowSpinBox::focusNextPrevChild(bool next)
{
    takeTyped();
    return QSpinBox::focusNextPrevChild(next);
}

void ArrowSpinBox::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QSpinBox::wheelEvent(event);
    else
        event->ignore();
}

void ArrowSpinBox::paintEvent(QPaintEvent *event)
{
    QSpinBox::paintEvent(event);
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    const auto button = [this, &option](QStyle::SubControl which) {
        return QRectF(style()->subControlRect(QStyle::CC_SpinBox, &option, which, this));
    };
    QPainter painter(this);
    const StepEnabled steps = isEnabled() ? stepEnabled() : StepNone;
    drawArrow(painter, button(QStyle::SC_SpinBoxUp), arrowHeight, steps.testFlag(StepUpEnabled));
    drawArrow(painter, button(QStyle::SC_SpinBoxDown), -arrowHeight,
              steps.testFlag(StepDownEnabled));
}

ArrowComboBox::ArrowComboBox(QWidget *parent)
    : QComboBox(parent)
{
    setFocusPolicy(Qt::StrongFocus); // not by the wheel
}

void ArrowComboBox::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}

void ArrowComboBox::paintEvent(QPaintEvent *)
{
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const auto part = [this, &option](QStyle::SubControl which) {
        return style()->subControlRect(QStyle::CC_ComboBox, &option, which, this);
    };
    option.currentText = fontMetrics().elidedText(option.currentText, Qt::ElideRight,
                                                  part(QStyle::SC_ComboBoxEditField).width());
    QStylePainter painter(this);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
    drawArrow(painter, part(QStyle::SC_ComboBoxArrow), -arrowHeight, isEnabled());
}

} // namespace qx
