// SPDX-License-Identifier: MIT
#include "widgets/greyicon.h"

#include <QPixmap>

namespace qx {

QImage greyed(const QImage &image)
{
    QImage grey = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < grey.height(); ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(grey.scanLine(y));
        for (int x = 0; x < grey.width(); ++x) {
            const int level = qGray(pixels[x]);
            pixels[x] = qRgba(level, level, level, qAlpha(pixels[x]));
        }
    }
    return grey;
}

QIcon greyIcon(const QString &path)
{
    const QImage image(path);
    return image.isNull() ? QIcon(path) : QIcon(QPixmap::fromImage(greyed(image)));
}

} // namespace qx
