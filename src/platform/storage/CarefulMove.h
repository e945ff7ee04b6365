#pragma once

#include <QByteArray>
#include <QString>

namespace vormel {

/// Gives a file, folder or link another name, in one step and only where nothing stands yet. 0, or the system's error
/// number: EEXIST when the name is taken, EXDEV when the place is on another file system. Where renaming cannot refuse
/// to replace, a file is linked and unlinked instead; what cannot be linked there is looked for before it is renamed.
/// Any thread.
[[nodiscard]] int moveWithoutReplacing(const QString& from, const QString& to);

/// The same for names in two open folders, which no link on the way can lead elsewhere.
[[nodiscard]] int moveWithoutReplacing(int fromFolder, const QByteArray& from, int toFolder, const QByteArray& to);

/// Lets two files change places in one step. 0, or the system's error number: EINVAL where the file system cannot. Any
/// thread.
[[nodiscard]] int exchangeFiles(const QString& one, const QString& other);

} // namespace vormel
