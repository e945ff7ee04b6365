#pragma once

#include <QString>
#include <QStringList>

namespace vormel {

/// What goes to the Trash once an archive is extracted: the archive, all volumes of its set, or the set's whole folder.
/// A folder that must stay is never among them, and neither is one in which such a folder lies. Looks at the disk.
[[nodiscard]] QStringList sourcesToTrash(const QString& archive, bool wholeFolder, const QStringList& foldersToKeep);

} // namespace vormel
