#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace vormel {

/// Undoes percent-encoding. Succeeds only when every escape is complete and the result is valid UTF-8.
[[nodiscard]] std::optional<QString> percentDecoded(QStringView text);

/// The text of bytes that claim to be UTF-8; nothing when they are not.
[[nodiscard]] std::optional<QString> strictUtf8(QByteArrayView bytes);

/// The text of bytes of unknown origin: as UTF-8 where they are that, else byte for byte as Latin-1.
[[nodiscard]] QString lenientText(QByteArrayView bytes);

} // namespace vormel
