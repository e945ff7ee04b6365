#pragma once

#include <QString>

namespace vormel {

/// What stands behind the last full stop of a name; empty without one, for a name that begins with its only full stop
/// (".profile") and for a name that ends in one.
[[nodiscard]] QString pathExtension(QStringView name);

/// The name without its path extension and the full stop before that.
[[nodiscard]] QString withoutPathExtension(QStringView name);

/// The name that a file gets where its own is taken: "name (1).ext".
[[nodiscard]] QString numberedFileName(const QString& name, int number);
/// File systems allow 255 bytes; this leaves room for ".download" and for " (12345)".
inline constexpr qsizetype maxNameBytes = 235;

/// The text behind the last "/"; slashes at the end do not count.
[[nodiscard]] QString lastComponent(QStringView path);

/// Makes any text from outside a name that can only ever stand for one file inside a folder: no slash, no NUL, no
/// control character, neither "." nor "..", not empty, without ".download" at its end, which marks unfinished files
/// alone, and short enough in UTF-8 that this ending and a number may still be added. A name that is safe already comes
/// back as it is. Every name on its way to the disk goes through here.
[[nodiscard]] QString safeFileName(const QString& name, qsizetype maxBytes = maxNameBytes);

/// A name of any length cut to what somebody may still want to read. It keeps its end, and safeFileName() makes the
/// same of it.
[[nodiscard]] QString readableName(const QString& name);

} // namespace vormel
