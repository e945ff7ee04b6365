#pragma once

#include <QString>

namespace vormel {

/// Where the user gets a missing tool from.
enum class PackageManager
{
    apt,
    brew,
};

#ifdef Q_OS_MACOS
constexpr PackageManager buildsPackageManager = PackageManager::brew;
#else
constexpr PackageManager buildsPackageManager = PackageManager::apt;
#endif

/// The command that installs the tool, with the package that it is in.
[[nodiscard]] QString installCommand(const QString& tool, PackageManager manager = buildsPackageManager);

[[nodiscard]] QString toolNotFoundText(const QString& tool, PackageManager manager = buildsPackageManager);

/// As toolNotFoundText, for the one tool that can rebuild volumes; says what it is needed for.
[[nodiscard]] QString repairToolNotFoundText(PackageManager manager = buildsPackageManager);

} // namespace vormel
