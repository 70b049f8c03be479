// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTextDocument>

namespace qx {

/// The tool tip that shows a text letter by letter: escaped where Qt would take it for rich text,
/// else as it is.
inline QString plainToolTip(const QString &text)
{
    if (!Qt::mightBeRichText(text))
        return text;
    return QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped());
}

} // namespace qx
