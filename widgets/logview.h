// SPDX-License-Identifier: MIT
#pragma once

#include <QPlainTextEdit>
#include <QString>

namespace qx {

class LogLayout;

/// The time-stamped log: the latest 3000 entries, a line each, with the newest in view, from its
/// beginning if it is too long for the view, unless the operator looks back.
///
/// An entry is in the document at once. Of entries that come faster than anyone can read, all but
/// the first few between two paintings are laid out together, by prepareToPaint().
class LogView : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit LogView(QWidget *parent = nullptr);

    /// Adds "[12:34:56.789] SYS   message", in local time. The channel is filled up or cut to five
    /// characters; control characters within the message are shown as their symbols. Channels that
    /// want attention, ERR, RETRY and WAIT, stand out by colour.
    void appendEntry(const QString &channel, const QString &message);

    /// Lays out what has come since the last painting; call it before each one.
    void prepareToPaint();

private:
    QString timeStamp();
    void layOutNewEntries();
    void stayAtEnd();
    int endPosition() const;

    LogLayout *logLayout;
    qint64 stampedSecond = -1; ///< since the epoch
    QString stampOfSecond;
    int newEntries = 0;  ///< since the last painting
    bool rushes = false; ///< too many before it to lay out each at once
    bool atEnd = true;   ///< the operator does not look back
};

} // namespace qx
