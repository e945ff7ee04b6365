#pragma once

#include <QByteArray>
#include <QStringView>

#include <optional>

namespace vormel {

/// The bytes that the text writes in hexadecimal, two digits each, in either letter case. Nothing if a digit is missing
/// or is none.
[[nodiscard]] std::optional<QByteArray> bytesFromHex(QStringView text);

} // namespace vormel
