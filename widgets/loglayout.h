// SPDX-License-Identifier: MIT
#pragma once

#include <QPlainTextDocumentLayout>
#include <QString>
#include <QTextCharFormat>

QT_BEGIN_NAMESPACE
class QTextCursor;
QT_END_NAMESPACE

namespace qx {

/// Lays out a log's new lines together instead of one by one.
///
/// A line is in the document at once. Laying it out, with the scroll bars and what has to be
/// painted again, costs far more and is only needed before the next painting.
class LogLayout : public QPlainTextDocumentLayout
{
public:
    /// Becomes the layout of the document, which owns it.
    explicit LogLayout(QTextDocument *document);

    /// Adds a line, which has no line breaks, at the end of the document, and removes the oldest
    /// one if the document's maximum is exceeded. True if it is the first since catchUp().
    bool append(const QString &line, const QTextCharFormat &format = {});

    /// Lays out the lines that were added since. False if there were none.
    bool catchUp();

protected:
    void documentChanged(int from, int charsRemoved, int charsAdded) override;

private:
    void dropOldest(QTextCursor &cursor);

    bool appending = false;
    int newFrom = -1; ///< character position of the first line that is not laid out; -1 without
};

} // namespace qx
