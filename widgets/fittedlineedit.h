// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

namespace qx {

/// A read-only line that shows its text from the beginning, in a narrower font where it would be
/// cut otherwise.
class FittedLineEdit : public QLineEdit
{
public:
    explicit FittedLineEdit(QWidget *parent = nullptr);

    void showText(const QString &text);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void fit();
};

} // namespace qx
