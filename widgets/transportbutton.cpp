// SPDX-License-Identifier: MIT
#include "widgets/transportbutton.h"

#include "i18n/language.h"
#include "widgets/colours.h"

#include <QLinearGradient>
#include <QPainter>

namespace qx {

namespace {

struct Colors
{
    QColor top;
    QColor bottom;
    QColor border;
    QColor symbol;
};

Colors colorsOf(TransportButton::Kind kind)
{
    switch (kind) {
    case TransportButton::Kind::Play:
        return {colours::brightAccent, colours::accent, colours::brightAccent, colours::text};
    case TransportButton::Kind::Pause:
        return {colours::light, colours::lightShade, colours::dimText, colours::onLight};
    case TransportButton::Kind::Stop:
        return {colours::button, colours::surface, colours::border, colours::text};
    default:
        return {colours::buttonTop, colours::raised, colours::border, colours::text};
    }
}

QPen penOf(const QColor &color, qreal width, Qt::PenStyle style,
           Qt::PenCapStyle cap = Qt::SquareCap)
{
    return {color, width, style, cap, Qt::RoundJoin};
}

void drawPlay(QPainter &painter, const QRectF &rect)
{
    const QPointF c = rect.center();
    const qreal w = rect.width();
    const qreal h = rect.height();
    painter.drawPolygon(QPolygonF{{c.x() - 0.2 * w, c.y() - 0.31 * h},
                                  {c.x() - 0.2 * w, c.y() + 0.31 * h},
                                  {c.x() + 0.3 * w, c.y()}});
}

void drawPause(QPainter &painter, const QRectF &rect)
{
    const QPointF c = rect.center();
    const qreal barWidth = 0.17 * rect.width();
    const qreal radius = 0.18 * barWidth;
    for (const qreal left : {-0.28, 0.11}) {
        const QRectF bar(c.x() + left * rect.width(), c.y() - 0.31 * rect.height(), barWidth,
                         0.62 * rect.height());
        painter.drawRoundedRect(bar, radius, radius);
    }
}

void drawStop(QPainter &painter, const QRectF &rect)
{
    const qreal side = 0.52 * qMin(rect.width(), rect.height());
    QRectF square(0, 0, side, side);
    square.moveCenter(rect.center());
    painter.drawRoundedRect(square, 0.08 * side, 0.08 * side);
}

void drawHome(QPainter &painter, const QRectF &rect)
{
    const QPointF c = rect.center();
    const qreal w = rect.width();
    const qreal h = rect.height();
    painter.drawPolygon(QPolygonF{{c.x() - 0.34 * w, c.y() - 0.02 * h},
                                  {c.x(), c.y() - 0.34 * h},
                                  {c.x() + 0.34 * w, c.y() - 0.02 * h}});
    painter.drawRoundedRect(QRectF(c.x() - 0.26 * w, c.y() - 0.02 * h, 0.52 * w, 0.38 * h), 4, 4);
    painter.setBrush(colours::surface);
    painter.drawRect(QRectF(c.x() - 0.06 * w, c.y() + 0.14 * h, 0.12 * w, 0.22 * h));
}

// The arrow points down; sign -1 turns it up.
void drawArrow(QPainter &painter, const QRectF &rect, qreal sign)
{
    const QPointF c = rect.center();
    const qreal w = rect.width();
    const qreal h = sign * rect.height();
    painter.drawPolygon(QPolygonF{{c.x(), c.y() + 0.3 * h},
                                  {c.x() - 0.33 * w, c.y() - 0.15 * h},
                                  {c.x() - 0.13 * w, c.y() - 0.15 * h},
                                  {c.x() - 0.13 * w, c.y() - 0.34 * h},
                                  {c.x() + 0.13 * w, c.y() - 0.34 * h},
                                  {c.x() + 0.13 * w, c.y() - 0.15 * h},
                                  {c.x() + 0.33 * w, c.y() - 0.15 * h}});
}

void drawCircularArrow(QPainter &painter, const QRectF &rect, const QColor &color)
{
    const QPointF c = rect.center();
    const qreal w = rect.width();
    const qreal h = rect.height();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(penOf(color, qMax(0.08 * w, 3.0), Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(QRectF(c.x() - 0.28 * w, c.y() - 0.28 * h, 0.56 * w, 0.56 * h), 35 * 16,
                    285 * 16); // sixteenths of a degree
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(QPolygonF{{c.x() + 0.3 * w, c.y() - 0.12 * h},
                                  {c.x() + 0.09 * w, c.y() - 0.17 * h},
                                  {c.x() + 0.22 * w, c.y() + 0.01 * h}});
}

} // namespace

TransportButton::TransportButton(Kind kind, QWidget *parent)
    : QAbstractButton(parent)
    , kind(kind)
{
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover); // looks different under the mouse
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    retranslateUi();
}

void TransportButton::retranslateUi()
{
    const auto setTexts = [this](const QString &toolTip, UiText name) {
        setToolTip(toolTip);
        setAccessibleName(Language::text(name));
    };
    switch (kind) {
    case Kind::Play:
        return setTexts(Language::text(UiText::PlayDescription), UiText::Play);
    case Kind::Pause:
        return setTexts(Language::text(UiText::PauseDescription), UiText::Pause);
    case Kind::Stop:
        return setTexts(Language::text(UiText::StopDescription), UiText::Stop);
    case Kind::Home:
        return setTexts(Language::text(UiText::HomeDescription), UiText::Home);
    case Kind::Increase:
        return setTexts(QString(), UiText::Increase);
    case Kind::Decrease:
        return setTexts(QString(), UiText::Decrease);
    case Kind::QueryStatus:
        return setTexts(Language::text(UiText::QueryStatusDescription), UiText::QueryStatus);
    }
}

QSize TransportButton::sizeHint() const
{
    switch (kind) {
    case Kind::Play:
        return {112, 76};
    case Kind::Pause:
    case Kind::Stop:
        return {88, 76};
    case Kind::Home:
        return {96, 96};
    default:
        return {72, 72};
    }
}

void TransportButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body = QRectF(rect()).adjusted(2, 2, -2, -2);
    const qreal radius = kind == Kind::Increase || kind == Kind::Decrease ? 14 : 18;

    Colors colors = colorsOf(kind);
    if (isDown()) {
        colors.top = colors.top.darker(125);
        colors.bottom = colors.bottom.darker(125);
    } else if (underMouse()) {
        colors.top = colors.top.lighter(108);
        colors.bottom = colors.bottom.lighter(108);
    }
    QLinearGradient fill(body.topLeft(), body.bottomLeft());
    fill.setColorAt(0, colors.top);
    fill.setColorAt(1, colors.bottom);
    painter.setPen(penOf(colors.border, 3.0, Qt::SolidLine));
    painter.setBrush(fill);
    painter.drawRoundedRect(body, radius, radius);

    drawSymbol(painter, body.adjusted(10, 10, -10, -10), colors.symbol);

    if (hasFocus()) {
        painter.setPen(penOf(colours::brightAccent, 2.0, Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(body.adjusted(5, 5, -5, -5), radius - 3, radius - 3);
    }
}

void TransportButton::drawSymbol(QPainter &painter, const QRectF &rect, const QColor &color) const
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    switch (kind) {
    case Kind::Play:
        return drawPlay(painter, rect);
    case Kind::Pause:
        return drawPause(painter, rect);
    case Kind::Stop:
        return drawStop(painter, rect);
    case Kind::Home:
        return drawHome(painter, rect);
    case Kind::Increase:
        return drawArrow(painter, rect, -1);
    case Kind::Decrease:
        return drawArrow(painter, rect, +1);
    case Kind::QueryStatus:
        return drawCircularArrow(painter, rect, color);
    }
}

} // namespace qx
