#pragma once

#include "platform/clock/Clock.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace vormel {

/// The number behind the last "/" of a Content-Range; nothing for "*" and for anything else that is no number.
[[nodiscard]] std::optional<qint64> totalFromContentRange(const QByteArray& value);

/// Which bytes of a file an answer brings.
struct ContentRange
{
    /// The first byte and the one behind the last; nothing in "bytes */1000", which tells only the size.
    std::optional<std::pair<qint64, qint64>> range;
    std::optional<qint64> total; ///< size of the whole file; nothing for "*"
};

/// Reads a Content-Range. Nothing for one that cannot be true or makes no sense: another unit than bytes, an end before
/// the start or behind the end of the file, anything that is no number.
[[nodiscard]] std::optional<ContentRange> contentRangeFrom(const QByteArray& value);

/// How long a Retry-After asks to wait, at most ten minutes: seconds, or the time until a date. Nothing for anything
/// else, and for what is over already.
[[nodiscard]] std::optional<std::chrono::seconds> retryAfterFrom(const QByteArray& value, WallTime now);

/// The file name that a Content-Disposition asks for, as a bare name; nothing without a usable one.
[[nodiscard]] std::optional<QString> filenameFromContentDisposition(const QString& header);

/// The bare name in a header's text: its last path component without quotes and blanks around it. Nothing if that is
/// empty,
/// "." or "..".
[[nodiscard]] std::optional<QString> sanitizedHeaderFilename(const QString& text);

} // namespace vormel
