#pragma once

#include <QStringList>

namespace vormel {

/// The paths of all volumes and recovery volumes on disk whose names begin like that of the given volume, which is one
/// of them. Empty for an archive that is no numbered volume.
[[nodiscard]] QStringList siblingVolumes(const QString& archive);

} // namespace vormel
