#include "platform/desktop/PackageManager.h"

#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

DesktopPackageManagers::DesktopPackageManagers(const QString& root)
{
    const auto add = [this, &root](PackageManager manager, const QString& path) {
        m_programs.push_back({manager, root + path});
    };
#ifndef Q_OS_MACOS
    add(PackageManager::apt, u"/usr/bin/apt"_s);
    add(PackageManager::dnf, u"/usr/bin/dnf"_s);
    add(PackageManager::pacman, u"/usr/bin/pacman"_s);
    add(PackageManager::zypper, u"/usr/bin/zypper"_s);
#endif
    // Only where it installs into a folder that tools are looked for in: what it put elsewhere would stay "missing".
    add(PackageManager::brew, u"/opt/homebrew/bin/brew"_s);
    add(PackageManager::brew, u"/usr/local/bin/brew"_s);
}

std::optional<PackageManager> DesktopPackageManagers::present() const
{
    const auto found = std::find_if(m_programs.begin(), m_programs.end(),
                                    [](const Program& program) { return QFile::exists(program.path); });
    return found == m_programs.end() ? std::nullopt : std::optional(found->manager);
}

} // namespace vormel
