// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFile>
#include <QImage>
#include <QResource>
#include <QtEndian>
#include <QtTest>

extern int qInitResources_resources();
extern int qCleanupResources_resources();

namespace {

enum class ColourType : quint8 { // as the PNG format numbers them
    Rgb = 2,
    Rgba = 6,
};

// What the first chunk of a PNG file says.
struct PngHeader
{
    QByteArray signature;
    QByteArray chunkType;
    QSize size;
    quint8 bitDepth = 0; // per channel
    quint8 colourType = 0;
};

PngHeader readPngHeader(const QByteArray &file)
{
    if (file.size() < 26)
        return {};
    const QSize size(qFromBigEndian<qint32>(file.constData() + 16),
                     qFromBigEndian<qint32>(file.constData() + 20));
    return {file.first(8), file.sliced(12, 4), size, static_cast<quint8>(file.at(24)),
            static_cast<quint8>(file.at(25))};
}

} // namespace

class TestResources : public QObject
{
    Q_OBJECT

private slots:
    void image_data();
    void image();
    void holdsNothingElse();
    void canBeTakenOutAndPutBack();
};

void TestResources::image_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<ColourType>("colourType");
    QTest::newRow("logo1_icon.png") << QSize(1254, 1254) << ColourType::Rgb;
    QTest::newRow("logo1_dark.png") << QSize(1024, 1024) << ColourType::Rgba;
    QTest::newRow("logo1.png") << QSize(1024, 1024) << ColourType::Rgba;
    QTest::newRow("ico_play_png.png") << QSize(64, 64) << ColourType::Rgba;
    QTest::newRow("ico_u_png.png") << QSize(64, 64) << ColourType::Rgba;
    QTest::newRow("ico_timer.png") << QSize(64, 64) << ColourType::Rgba;
    QTest::newRow("ico_setup.png") << QSize(59, 60) << ColourType::Rgba;
    QTest::newRow("ico_net.png") << QSize(64, 64) << ColourType::Rgba;
    QTest::newRow("about.png") << QSize(64, 64) << ColourType::Rgba;
}

void TestResources::image()
{
    QFETCH(QSize, size);
    QFETCH(ColourType, colourType);
    const QString path = QStringLiteral(":/assets/") + QString::fromLatin1(QTest::currentDataTag());

    QFile file(path);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    const PngHeader header = readPngHeader(file.readAll());
    QCOMPARE(header.signature, QByteArray("\x89PNG\r\n\x1A\n"));
    QCOMPARE(header.chunkType, QByteArray("IHDR"));
    QCOMPARE(header.size, size);
    QCOMPARE(header.bitDepth, quint8{8});
    QCOMPARE(header.colourType, static_cast<quint8>(colourType));

    const QImage image(path);
    QCOMPARE(image.size(), size);
    QCOMPARE(image.hasAlphaChannel(), colourType == ColourType::Rgba);
    QCOMPARE(QResource(path).compressionAlgorithm(), QResource::NoCompression);
}

void TestResources::holdsNothingElse()
{
    QCOMPARE(QDir(QStringLiteral(":/assets")).entryList(),
             QStringList({QStringLiteral("about.png"), QStringLiteral("ico_net.png"),
                          QStringLiteral("ico_play_png.png"), QStringLiteral("ico_setup.png"),
                          QStringLiteral("ico_timer.png"), QStringLiteral("ico_u_png.png"),
                          QStringLiteral("logo1.png"), QStringLiteral("logo1_dark.png"),
                          QStringLiteral("logo1_icon.png")}));
}

void TestResources::canBeTakenOutAndPutBack()
{
    const QString path = QStringLiteral(":/assets/logo1.png");
    QVERIFY(QFile::exists(path)); // without anybody's asking
    QCOMPARE(qCleanupResources_resources(), 1);
    QVERIFY(!QFile::exists(path));
    QCOMPARE(qInitResources_resources(), 1);
    QVERIFY(QFile::exists(path));
}

QTEST_GUILESS_MAIN(TestResources)
#include "tst_resources.moc"
