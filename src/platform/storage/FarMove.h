#pragma once

#include <QString>

namespace vormel {

/// Moves a file as moveWithoutReplacing() does, and also to another file system: there it is copied, synced, and only
/// then removed where it was. 0, or the system's error number. Takes as long as the copy takes: never on the UI thread.
[[nodiscard]] int moveFar(const QString& from, const QString& to);

} // namespace vormel
