// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>

namespace qx {

/// A push button that paints itself: one of seven symbols on a rounded, gradient-filled body.
class TransportButton : public QAbstractButton
{
    Q_OBJECT

public:
    enum class Kind : int { Play, Pause, Stop, Home, Increase, Decrease, QueryStatus };

    /// The kind stays what it is for the button's life. A value outside the enumeration gives a
    /// button without symbol and texts.
    explicit TransportButton(Kind kind, QWidget *parent = nullptr);

    /// Sets tool tip and accessible name in the current language.
    void retranslateUi();

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void drawSymbol(QPainter &painter, const QRectF &rect, const QColor &color) const;

    Kind kind;
};

} // namespace qx
