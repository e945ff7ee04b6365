#include "platform/desktop/PackageManager.h"

#include <QFile>

#include <algorithm>

namespace vormel {

DesktopPackageManagers::DesktopPackageManagers(const QString& root)
{
    const auto add = [this, &root](PackageManager manager, const QString& path) {
        m_programs.push_back({manager, root + path});
    };
#ifndef Q_OS_MACOS
    add(PackageManager::apt, QStringLiteral("/usr/bin/apt"));
    add(PackageManager::dnf, QStringLiteral("/usr/bin/dnf"));
    add(PackageManager::pacman, QStringLiteral("/usr/bin/pacman"));
    add(PackageManager::zypper, QStringLiteral("/usr/bin/zypper"));
#endif
    // Only where it installs into a folder that tools are looked for in: what it put elsewhere would stay "missing".
    add(PackageManager::brew, QStringLiteral("/opt/homebrew/bin/brew"));
    add(PackageManager::brew, QStringLiteral("/usr/local/bin/brew"));
}

std::optional<PackageManager> DesktopPackageManagers::present() const
{
    const auto found = std::find_if(m_programs.begin(), m_programs.end(),
                                    [](const Program& program) { return QFile::exists(program.path); });
    return found == m_programs.end() ? std::nullopt : std::optional(found->manager);
}

} // namespace vormel
