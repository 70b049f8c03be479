// SPDX-License-Identifier: MIT
#include "tests/support/mediafiles.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QProcess>

namespace qx::test {

namespace {

using namespace Qt::StringLiterals;

constexpr int sampleRate = 44100;
constexpr int samplesPerBuffer = 441; // 10 ms
constexpr int picturesPerSecond = 25;

QString toneSource(int ms)
{
    return u"audiotestsrc samplesperbuffer=%1 num-buffers=%2 ! audio/x-raw,rate=%3,channels=1 "
           "! audioconvert"_s.arg(samplesPerBuffer)
               .arg(ms / 10)
               .arg(sampleRate);
}

QString pictureSource(int ms)
{
    return u"videotestsrc num-buffers=%1 ! video/x-raw,width=160,height=90,framerate=%2/1"_s
        .arg(ms * picturesPerSecond / 1000)
        .arg(picturesPerSecond);
}

} // namespace

MediaFiles::MediaFiles()
{
    // Files without permission are tested as another user, who has to get here.
    QFile::setPermissions(files.path(), QFile::permissions(files.path()) | QFile::ReadOther |
                                            QFile::ExeOther | QFile::ReadGroup | QFile::ExeGroup);
}

QString MediaFiles::tone(const QString &name, int ms)
{
    static const QHash<QString, QString> encoders = {
        {u"wav"_s, u"wavenc"_s},
        {u"mp3"_s, u"lamemp3enc"_s},
        {u"flac"_s, u"flacenc"_s},
        {u"ogg"_s, u"vorbisenc ! oggmux"_s},
        {u"m4a"_s, u"avenc_aac ! mp4mux"_s},
    };
    return run(name, u"%1 ! %2"_s.arg(toneSource(ms), encoders.value(QFileInfo(name).suffix())));
}

QString MediaFiles::video(const QString &name, int ms)
{
    struct Format
    {
        QString pictures;
        QString tone;
        QString container;
    };
    static const QHash<QString, Format> formats = {
        {u"webm"_s, {u"vp8enc deadline=1"_s, u"vorbisenc"_s, u"webmmux"_s}},
        {u"mkv"_s, {u"jpegenc"_s, u"vorbisenc"_s, u"matroskamux"_s}},
        {u"mp4"_s, {u"jpegenc"_s, u"avenc_aac"_s, u"qtmux"_s}},
    };
    const Format format = formats.value(QFileInfo(name).suffix().toLower());
    return run(name, u"%1 name=box %2 ! %3 ! box. %4 ! %5 ! box. box."_s.arg(
                         format.container, pictureSource(ms), format.pictures, toneSource(ms),
                         format.tone));
}

QString MediaFiles::unseekable(const QString &name)
{
    return run(name, u"%1 ! jpegenc ! multipartmux"_s.arg(pictureSource(2000)));
}

QString MediaFiles::emptyRecording(const QString &name)
{
    return file(name, QByteArray::fromHex("52494646 24000000 57415645 666d7420 10000000"
                                          "01000100 44ac0000 88580100 02001000"
                                          "64617461 00000000"));
}

QString MediaFiles::file(const QString &name, const QByteArray &content)
{
    QFile file(path(name));
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size())
        return file.fileName();
    lastProblem = file.errorString();
    return {};
}

QString MediaFiles::copy(const QString &source, const QString &name)
{
    QFile file(source);
    if (file.copy(path(name)))
        return path(name);
    lastProblem = file.errorString();
    return {};
}

// The file is made under a plain name first: the pipeline is split at blanks.
QString MediaFiles::run(const QString &name, const QString &pipeline)
{
    const QString plain = path(u"new"_s);
    QProcess gstreamer;
    gstreamer.setProcessChannelMode(QProcess::MergedChannels);
    gstreamer.start(u"gst-launch-1.0"_s,
                    QStringList{u"-q"_s} + pipeline.split(u' ') +
                        QStringList{u"!"_s, u"filesink"_s, u"location="_s + plain});
    if (gstreamer.waitForFinished() && gstreamer.exitStatus() == QProcess::NormalExit &&
        gstreamer.exitCode() == 0 && QFile::rename(plain, path(name)))
        return path(name);
    lastProblem = gstreamer.error() == QProcess::UnknownError
                      ? QString::fromLocal8Bit(gstreamer.readAll())
                      : gstreamer.errorString();
    return {};
}

} // namespace qx::test
