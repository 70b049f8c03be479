// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace qx::test {

/// Media files, made on the spot by GStreamer in a directory that goes with this object.
///
/// Each call returns the path of the new file, or an empty string if it could not be made;
/// `problem()` then tells why.
class MediaFiles
{
public:
    MediaFiles();

    QString directory() const { return files.path(); }
    QString path(const QString &name) const { return files.filePath(name); }
    QString problem() const { return lastProblem; }

    /// A tone; the suffix of `name` chooses the format: wav, mp3, flac, ogg or m4a.
    QString tone(const QString &name, int ms = 1000);

    /// A small test picture with a tone: webm, mkv or mp4.
    QString video(const QString &name, int ms = 1000);

    /// Pictures one after another, without an index or a duration: cannot be sought.
    QString unseekable(const QString &name);

    /// A recording (wav) that was broken off: the header of a sound without a sample.
    QString emptyRecording(const QString &name);

    /// Any bytes.
    QString file(const QString &name, const QByteArray &content);

    /// The same file under another name.
    QString copy(const QString &source, const QString &name);

private:
    QString run(const QString &name, const QString &pipeline);

    QTemporaryDir files;
    QString lastProblem;
};

} // namespace qx::test
