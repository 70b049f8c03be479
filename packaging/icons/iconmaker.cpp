// SPDX-License-Identifier: MIT
// Makes icons from a large square picture while the application is built:
//
//     icon-maker SOURCE OUTPUT.png SIZE
//     icon-maker SOURCE OUTPUT.ico SIZE...
//
// It is a program of ours because no converter is at hand on every system.
#include <QBuffer>
#include <QCoreApplication>
#include <QDataStream>
#include <QFile>
#include <QImage>

#include <cstdio>

namespace {

constexpr int largestSize = 1024;

// With an alpha channel, which Windows wants in icons.
QByteArray png(const QImage &source, int size)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    source.scaled(size, size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_ARGB32)
        .save(&buffer, "PNG");
    return bytes;
}

// A directory of the pictures, then the pictures; each is a whole PNG file.
QByteArray ico(const QImage &source, const QList<int> &sizes)
{
    constexpr qsizetype headerBytes = 6;
    constexpr qsizetype entryBytes = 16;
    QByteArray pictures;
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    out << quint16{0} << quint16{1} << static_cast<quint16>(sizes.size());
    for (const int size : sizes) {
        const QByteArray picture = png(source, size);
        const auto side = static_cast<quint8>(size); // 256 is written as 0
        const auto offset = headerBytes + entryBytes * sizes.size() + pictures.size();
        out << side << side << quint8{0} << quint8{0} << quint16{1} << quint16{32}
            << static_cast<quint32>(picture.size()) << static_cast<quint32>(offset);
        pictures += picture;
    }
    return bytes + pictures;
}

QList<int> readSizes(const QStringList &words, int largest)
{
    QList<int> sizes;
    for (const QString &word : words) {
        const int size = word.toInt();
        if (size < 1 || size > largest)
            return {};
        sizes += size;
    }
    return sizes;
}

int fail(const QString &message)
{
    std::fprintf(stderr, "icon-maker: %s\n", qPrintable(message));
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString output = arguments.value(2);
    const bool isIco = output.endsWith(QLatin1String(".ico"));
    const QList<int> sizes = readSizes(arguments.mid(3), isIco ? 256 : largestSize);
    if (sizes.isEmpty() || (!isIco && sizes.size() > 1)) {
        return fail(QStringLiteral("usage: icon-maker SOURCE OUTPUT.png SIZE\n"
                                   "       icon-maker SOURCE OUTPUT.ico SIZE..."));
    }
    const QImage source(arguments.at(1));
    if (source.isNull())
        return fail(QStringLiteral("cannot read %1").arg(arguments.at(1)));
    QFile file(output);
    const QByteArray bytes = isIco ? ico(source, sizes) : png(source, sizes.first());
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        return fail(QStringLiteral("cannot write %1: %2").arg(output, file.errorString()));
    return 0;
}
