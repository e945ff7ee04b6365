#include "platform/desktop/Folders.h"

#include <QDir>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString programFolder(QStandardPaths::StandardLocation location)
{
    return QDir(QStandardPaths::writableLocation(location)).filePath(u"Vormel"_s);
}

} // namespace

Folders Folders::ofThisUser()
{
    QString downloads = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    if (downloads.isEmpty())
        downloads = QDir::home().filePath(u"Downloads"_s);
    return {downloads, programFolder(QStandardPaths::GenericDataLocation),
            programFolder(QStandardPaths::GenericConfigLocation), programFolder(QStandardPaths::RuntimeLocation)};
}

Folders Folders::below(const QString& root)
{
    const QDir folder(root);
    return {folder.filePath(u"Downloads"_s), folder.filePath(u"data/Vormel"_s), folder.filePath(u"config/Vormel"_s),
            folder.filePath(u"run"_s)};
}

} // namespace vormel
