#pragma once

#include "archive/sources/ArchiveFormat.h"

#include <QString>

namespace vormel {

/// Looks over what a tool unpacked, in place, before it meets files of the user's. Nobody else works in the tree
/// meanwhile. Afterwards everything in it can be listed, moved and removed, and nothing in it leads elsewhere:
/// - Symbolic links that are absolute or lead out of the tree are removed, also those that do so through others.
/// - Files that have a name outside the tree as well (hard links), devices, pipes and sockets are removed.
/// - Set-uid, set-gid and sticky bits go; the owner may read everything, and enter and change each folder.
/// - Names that are no UTF-8 become readable ones (ReadableName.h).
/// - In a ZIP a backslash separates folders, as some packers write it; where the tool did not do that, this does.
/// 0, or the system's error number; then the tree must not be used. Not for the UI thread; opens nothing but folders.
[[nodiscard]] int makeHarmless(const QString& root, ArchiveFormat format);

} // namespace vormel
