// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

QT_BEGIN_NAMESPACE
class QLayout;
class QWidget;
QT_END_NAMESPACE

namespace qx {

/// Leaves a widget's layout as it is when texts in it change.
///
/// For texts that change with every frame and have their room anyway: each change would lay out
/// the whole window again. The layout is still done when the widget is resized, and by relayout()
/// when more than such a text has changed.
class SteadyLayout : public QObject
{
    Q_OBJECT

public:
    /// Becomes a child of the widget, which has a layout.
    explicit SteadyLayout(QWidget *widget);

    void relayout();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void forgetDeletedWidgets();

    QLayout *layout;
};

} // namespace qx
