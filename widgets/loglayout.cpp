// SPDX-License-Identifier: MIT
#include "widgets/loglayout.h"

#include <QScopedValueRollback>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <utility>

namespace qx {

LogLayout::LogLayout(QTextDocument *document)
    : QPlainTextDocumentLayout(document)
{
    document->setDocumentLayout(this);
}

bool LogLayout::append(const QString &line, const QTextCharFormat &format)
{
    const QScopedValueRollback guard(appending, true);
    const bool caughtUp = newFrom < 0;
    const int end = document()->characterCount() - 1;
    if (caughtUp)
        newFrom = end;
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    cursor.setPosition(end); // movePosition() would lay out the last line
    if (end > 0)
        cursor.insertBlock({}, {});
    cursor.insertText(line, format);
    dropOldest(cursor);
    cursor.endEditBlock();
    return caughtUp;
}

// The document would do it by itself, but lay out the line that it removes.
void LogLayout::dropOldest(QTextCursor &cursor)
{
    if (document()->blockCount() <= document()->maximumBlockCount())
        return;
    const int length = document()->firstBlock().length();
    cursor.setPosition(0);
    cursor.setPosition(length, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    newFrom = std::max(0, newFrom - length);
}

bool LogLayout::catchUp()
{
    if (newFrom < 0)
        return false;
    const int from = std::exchange(newFrom, -1);
    QPlainTextDocumentLayout::documentChanged(from, 0, document()->characterCount() - from);
    emit documentSizeChanged(documentSize()); // lines were wrapped, though as many went as came
    return true;
}

void LogLayout::documentChanged(int from, int charsRemoved, int charsAdded)
{
    if (appending)
        return;
    if (newFrom < 0) {
        QPlainTextDocumentLayout::documentChanged(from, charsRemoved, charsAdded);
    } else {
        newFrom = 0; // where the new lines are now is not known
        catchUp();
    }
}

} // namespace qx
