#pragma once

#include <QString>
#include <QStringList>

namespace vormel {

/// The volumes of a set on disk, recovery volumes with them, by one of its RAR volumes. Other sets may lie in the same
/// folder, and their names may begin alike: those are not meant. Looks at the disk.
[[nodiscard]] QStringList volumesOfSet(const QString& archive);

/// Everything on disk that an archive was made of when it was downloaded and repaired: itself, or the volumes of its
/// set and what repairs replaced ("name.part2.rar.bad"). Looks at the disk.
[[nodiscard]] QStringList sourcesOf(const QString& archive);

} // namespace vormel
