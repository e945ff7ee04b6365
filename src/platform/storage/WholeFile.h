#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace vormel {

/// Puts `bytes` in the place of the file, whole or not at all, also when the power goes: written beside it with mode
/// 0600, synced, renamed over it, and the folder synced. A symbolic link of that name is replaced, not followed. At
/// most one file, `path` + ".new", is ever left behind by a kill, and the next call removes it, as it does whatever
/// else stands there; only a folder stays, and the file beside is then ".new1" and so on. False if anything failed; the
/// old file then stands as it was. Blocks on the disk, and on nothing else.
[[nodiscard]] bool replaceWholeFile(const QString& path, const QByteArray& bytes);

/// The whole content of a regular file of at most `limit` bytes; nothing if it cannot be read, is larger or is no file.
[[nodiscard]] std::optional<QByteArray> readWholeFile(const QString& path, qint64 limit);

/// Moves an unreadable file out of the way to `path` + ".unreadable" or, where earlier ones are kept, ".unreadable.2"
/// and so on. False if it is still there, and must then not be written over, or if there is no such file.
[[nodiscard]] bool keepUnreadableFile(const QString& path);

} // namespace vormel
