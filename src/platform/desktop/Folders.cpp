#include "platform/desktop/Folders.h"

#include <QDir>
#include <QStandardPaths>

namespace vormel {

namespace {

QString programFolder(QStandardPaths::StandardLocation location)
{
    return QDir(QStandardPaths::writableLocation(location)).filePath(QStringLiteral("Vormel"));
}

} // namespace

Folders Folders::ofThisUser()
{
    QString downloads = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    if (downloads.isEmpty())
        downloads = QDir::home().filePath(QStringLiteral("Downloads"));
    return {downloads, programFolder(QStandardPaths::GenericDataLocation),
            programFolder(QStandardPaths::GenericConfigLocation), programFolder(QStandardPaths::RuntimeLocation)};
}

Folders Folders::below(const QString& root)
{
    const QDir folder(root);
    return {folder.filePath(QStringLiteral("Downloads")), folder.filePath(QStringLiteral("data/Vormel")),
            folder.filePath(QStringLiteral("config/Vormel")), folder.filePath(QStringLiteral("run"))};
}

} // namespace vormel
