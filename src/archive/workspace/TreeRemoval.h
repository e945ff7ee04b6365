#pragma once

#include <QByteArray>

namespace vormel {

/// Removes a folder with all that is in it, whatever its depth and its permissions. A link in its place is no folder.
/// False if something stayed. Not for the UI thread.
[[nodiscard]] bool removeTree(int parent, const QByteArray& name);

} // namespace vormel
