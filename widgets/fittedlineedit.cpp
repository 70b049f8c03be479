// SPDX-License-Identifier: MIT
#include "widgets/fittedlineedit.h"

#include <QFontMetrics>
#include <QStyle>
#include <QStyleOptionFrame>

namespace qx {

namespace {

constexpr int margin = 2; // of a line edit on each side of its text
constexpr int narrowest = 62;

} // namespace

FittedLineEdit::FittedLineEdit(QWidget *parent)
    : QLineEdit(parent)
{
    setReadOnly(true);
}

void FittedLineEdit::showText(const QString &text)
{
    setText(text);
    setCursorPosition(0);
    fit();
}

void FittedLineEdit::resizeEvent(QResizeEvent *event)
{
    QLineEdit::resizeEvent(event);
    fit();
}

void FittedLineEdit::fit()
{
    QStyleOptionFrame option;
    initStyleOption(&option);
    const int room =
        style()->subElementRect(QStyle::SE_LineEditContents, &option, this).width() - 2 * margin;
    QFont fitted = font();
    fitted.setStretch(QFont::Unstretched);
    const int needed = QFontMetrics(fitted).horizontalAdvance(text());
    if (needed > room && room > 0)
        fitted.setStretch(qMax(narrowest, room * QFont::Unstretched / needed));
    if (fitted.stretch() != font().stretch())
        setFont(fitted);
}

} // namespace qx
