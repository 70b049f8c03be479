// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringView>

#include <optional>

namespace qx {

/// The hexadecimal digits of a typed text, in order. White space of any kind and the separators
/// '-', ':' and '_' may stand anywhere; nothing is returned if there is any other character.
std::optional<QByteArray> hexDigits(QStringView text);

/// The bytes of a typed text that holds exactly `count` of them, two digits each; nothing
/// otherwise.
std::optional<QByteArray> hexBytes(QStringView text, qsizetype count);

} // namespace qx
