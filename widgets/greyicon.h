// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QImage>

namespace qx {

/// The image in grey, (11 red + 16 green + 5 blue) / 32 for each pixel, alpha kept.
QImage greyed(const QImage &image);

/// The icon of an image file in grey. A file that cannot be decoded gives QIcon(path) as it is.
QIcon greyIcon(const QString &path);

} // namespace qx
