#pragma once

#include "platform/desktop/PackageManager.h"

#include <QString>

namespace vormel {

/// Texts of errors do not ask the machine: they name the package manager that most systems of this kind have.
#ifdef Q_OS_MACOS
inline constexpr PackageManager buildsPackageManager = PackageManager::brew;
#else
inline constexpr PackageManager buildsPackageManager = PackageManager::apt;
#endif

/// What a package manager installs for the archives that the system itself cannot open.
struct ToolPackages
{
    QString rarCommand;      ///< for RAR archives
    bool hasRar = false;     ///< that command brings "rar", which alone can repair, and not only "unrar"
    QString sevenZipCommand; ///< for 7-Zip archives
    QString sevenZipProgram; ///< what the program that it brings is called
};

[[nodiscard]] ToolPackages toolPackages(PackageManager manager);

[[nodiscard]] QString toolNotFoundText(const QString& tool, PackageManager manager = buildsPackageManager);

/// As toolNotFoundText, for the one tool that can rebuild volumes; says what it is needed for.
[[nodiscard]] QString repairToolNotFoundText(PackageManager manager = buildsPackageManager);

} // namespace vormel
