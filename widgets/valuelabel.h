// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace qx {

/// A value of the status group: plain text that can be selected, and is drawn like any other label
/// while nothing is.
///
/// QLabel keeps a document for selectable text and lays that out anew, several times, whenever a
/// changed text is painted. Values that change with every frame cannot afford it. A text that has
/// grown too long for its room, as counters do in a long show, is drawn narrower, never cut.
class ValueLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ValueLabel(QWidget *parent = nullptr);

    /// Shows a new value; what the operator has selected, or is just selecting, stays selected.
    void showValue(const QString &value);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace qx
