#include "archive/tools/InstallAdvice.h"

#include <array>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

struct Packages
{
    PackageManager manager = PackageManager::apt;
    QLatin1StringView install;
    QLatin1StringView forRar;
    bool hasRar = false;
    QLatin1StringView forSevenZip;
    QLatin1StringView sevenZipProgram;
};

/// In the order of PackageManager. Only two of them have a package of "rar".
constexpr std::array<Packages, 5> allPackages{{
    {PackageManager::apt, QLatin1StringView("sudo apt install "), QLatin1StringView("rar unrar"), true,
     QLatin1StringView("7zip"), QLatin1StringView("7zz")},
    {PackageManager::dnf, QLatin1StringView("sudo dnf install "), QLatin1StringView("unrar"), false,
     QLatin1StringView("7zip"), QLatin1StringView("7z")},
    {PackageManager::pacman, QLatin1StringView("sudo pacman -S "), QLatin1StringView("unrar"), false,
     QLatin1StringView("7zip"), QLatin1StringView("7z")},
    {PackageManager::zypper, QLatin1StringView("sudo zypper install "), QLatin1StringView("unrar"), false,
     QLatin1StringView("7zip"), QLatin1StringView("7z")},
    {PackageManager::brew, QLatin1StringView("brew install "), QLatin1StringView("rar"), true,
     QLatin1StringView("sevenzip"), QLatin1StringView("7zz")},
}};

const Packages& packagesOf(PackageManager manager)
{
    return allPackages.at(static_cast<std::size_t>(manager));
}

/// The command that stands in an error behind the name of the missing tool.
QString errorsCommand(const QString& tool, PackageManager manager)
{
    const Packages& packages = packagesOf(manager);
    QString package = tool;
    if (manager != PackageManager::brew) { // its line names the tool as it is
        if (tool == u"7z")
            package = packages.forSevenZip;
        else if (tool == u"unrar/rar")
            package = u"unrar"_s; // either does; this is the smaller one
    }
    return packages.install + package;
}

} // namespace

ToolPackages toolPackages(PackageManager manager)
{
    const Packages& packages = packagesOf(manager);
    return {packages.install + QString(packages.forRar), packages.hasRar,
            packages.install + QString(packages.forSevenZip), packages.sevenZipProgram};
}

QString toolNotFoundText(const QString& tool, PackageManager manager)
{
    return tool + u" not found. Install it with: "_s + errorsCommand(tool, manager);
}

QString repairToolNotFoundText(PackageManager manager)
{
    const QString tool = u"rar"_s;
    const QString command = errorsCommand(tool, manager);
    const QString name = tool + u" (needed to rebuild volumes from .rev — install with: "_s + command + u')';
    if (manager == PackageManager::brew)
        return toolNotFoundText(name, manager);
    return name + u" not found. Install it with: "_s + command;
}

} // namespace vormel
