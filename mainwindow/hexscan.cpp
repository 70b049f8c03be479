// SPDX-License-Identifier: MIT
#include "mainwindow/hexscan.h"

#include <QChar>

namespace qx {

namespace {

bool isHexDigit(QChar c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'F') || (c >= u'a' && c <= u'f');
}

} // namespace

std::optional<QByteArray> hexDigits(QStringView text)
{
    QByteArray digits;
    for (const QChar c : text) {
        if (isHexDigit(c))
            digits.append(c.toLatin1());
        else if (!c.isSpace() && c != u'-' && c != u':' && c != u'_')
            return std::nullopt;
    }
    return digits;
}

std::optional<QByteArray> hexBytes(QStringView text, qsizetype count)
{
    const std::optional<QByteArray> digits = hexDigits(text);
    if (!digits || digits->size() != 2 * count)
        return std::nullopt;
    return QByteArray::fromHex(*digits);
}

} // namespace qx
