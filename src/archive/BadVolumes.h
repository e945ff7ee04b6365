#pragma once

#include <QString>
#include <QStringList>

namespace vormel {

/// The sorted names, without folders, of the volumes that the output of a failed test blames. The archive's name is
/// that of the volume the test began with; an output that speaks of a corrupt header blames it.
[[nodiscard]] QStringList badVolumes(const QString& output, const QString& archiveName);

} // namespace vormel
