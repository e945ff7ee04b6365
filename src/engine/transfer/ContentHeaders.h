#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace vormel {

/// The number behind the last "/" of a Content-Range; nothing for "*" and for anything else that is no number.
[[nodiscard]] std::optional<qint64> totalFromContentRange(const QByteArray& value);

/// Where the range of a Content-Range begins; nothing without one, as in "bytes */1000".
[[nodiscard]] std::optional<qint64> startFromContentRange(const QByteArray& value);

/// The file name that a Content-Disposition asks for, as a bare name; nothing without a usable one.
[[nodiscard]] std::optional<QString> filenameFromContentDisposition(const QString& header);

/// The bare name in a header's text: its last path component without quotes and blanks around it. Nothing if that is
/// empty,
/// "." or "..".
[[nodiscard]] std::optional<QString> sanitizedHeaderFilename(const QString& text);

} // namespace vormel
