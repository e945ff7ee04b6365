#include "archive/tools/InstallAdvice.h"

namespace vormel {

namespace {

QString debianPackage(const QString& tool)
{
    if (tool == u"7z")
        return QStringLiteral("p7zip-full");
    // Either does; this is the smaller one.
    if (tool == u"unrar/rar")
        return QStringLiteral("unrar");
    return tool;
}

/// What the told name of the tool is followed by.
QString advice(PackageManager manager)
{
    return manager == PackageManager::brew ? QStringLiteral("brew install ") : QStringLiteral("sudo apt install ");
}

} // namespace

QString installCommand(const QString& tool, PackageManager manager)
{
    return advice(manager) + (manager == PackageManager::brew ? tool : debianPackage(tool));
}

QString toolNotFoundText(const QString& tool, PackageManager manager)
{
    return tool + QStringLiteral(" not found. Install it with: ") + installCommand(tool, manager);
}

QString repairToolNotFoundText(PackageManager manager)
{
    const QString tool = QStringLiteral("rar");
    const QString name = tool + QStringLiteral(" (needed to rebuild volumes from .rev — install with: ") +
                         installCommand(tool, manager) + u')';
    if (manager == PackageManager::brew)
        return toolNotFoundText(name, manager);
    return name + QStringLiteral(" not found. Install it with: ") + installCommand(tool, manager);
}

} // namespace vormel
