// SPDX-License-Identifier: MIT
#pragma once

#include <QEvent>
#include <QList>
#include <QObject>
#include <QTimer>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace qx {

/// Holds the painting and the layout of widgets to the pace of a screen, 60 times a second.
///
/// With a fast device every frame changes a dozen texts; painting and laying them out each time
/// would cost ten times what the frame itself costs. What the widgets hold is always up to date,
/// only its showing waits, for one period at the most; the first change after a rest is shown at
/// once.
class ScreenPace : public QObject
{
public:
    explicit ScreenPace(QObject *parent = nullptr);

    void holdPainting(QWidget *window); ///< of a window and everything in it
    void holdLayout(QWidget *widget);   ///< of a widget's own layout

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Held
    {
        QObject *widget;
        QEvent::Type type;

        bool operator==(const Held &) const = default;
    };

    void release();

    QTimer period;     ///< runs from one showing to the earliest next one
    QList<Held> paced; ///< what is held back while the period runs; the widgets outlive this
    QList<Held> held;  ///< what came meanwhile
    bool releasing = false;
};

} // namespace qx
