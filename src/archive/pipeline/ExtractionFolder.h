#pragma once

#include <QString>

namespace vormel {

class AppSettings;

/// The folder that what is in an archive comes to. An archive of a set with a name of the user's has one of that name.
[[nodiscard]] QString extractionFolder(const AppSettings& settings, const QString& archivePath,
                                       const QString& customName);

} // namespace vormel
