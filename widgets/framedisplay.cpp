// SPDX-License-Identifier: MIT
#include "widgets/framedisplay.h"

#include "widgets/colours.h"

#include <QAbstractSpinBox>
#include <QEvent>
#include <QFont>
#include <QLineEdit>
#include <QPalette>

namespace qx {

namespace {

// Prepares its parent again whenever a style sheet has done with it.
class FrameDisplay : public QObject
{
public:
    FrameDisplay(QWidget *widget, const QColor &surface)
        : QObject(widget)
        , widget(widget)
        , surface(surface)
    {
        widget->installEventFilter(this);
        prepare();
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Polish || event->type() == QEvent::StyleChange)
            prepare();
        return false;
    }

private:
    void prepare()
    {
        QPalette palette = widget->palette();
        palette.setColor(widget->backgroundRole(), surface);
        widget->setPalette(palette);
        widget->setAutoFillBackground(true);
        QFont font = widget->font();
        font.setStyleStrategy(QFont::PreferNoShaping);
        widget->setFont(font);
    }

    QWidget *widget;
    QColor surface;
};

} // namespace

void prepareFrameDisplay(QWidget *widget, const QColor &surface)
{
    new FrameDisplay(widget, surface);
}

void prepareFrameDisplay(QAbstractSpinBox *box, const QColor &surface)
{
    new FrameDisplay(box, surface);
    new FrameDisplay(box->findChild<QLineEdit *>(), colours::field);
}

} // namespace qx
