#include "archive/SourceDisposal.h"

#include "archive/SiblingVolumes.h"
#include "model/SetName.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace vormel {

namespace {

bool contains(const QString& folder, const QString& other)
{
    const QString outer = QDir(folder).canonicalPath();
    const QString inner = QDir(other).canonicalPath();
    return inner == outer || inner.startsWith(outer + u'/');
}

/// Other sets may lie beside this one, and their names may begin alike.
QStringList volumesOfSet(const QString& archive)
{
    const QString base = setBaseName(QFileInfo(archive).fileName());
    QStringList volumes = siblingVolumes(archive);
    volumes.removeIf([&base](const QString& path) {
        const QString name = QFileInfo(path).fileName();
        return !isSetMember(name) || setBaseName(name) != base;
    });
    return volumes;
}

} // namespace

QStringList sourcesToTrash(const QString& archive, bool wholeFolder, const QStringList& foldersToKeep)
{
    const QFileInfo file(archive);
    if (!isRarPart(file.fileName()))
        return {archive};
    const bool holdsWhatStays = std::any_of(foldersToKeep.begin(), foldersToKeep.end(),
                                            [&](const QString& folder) { return contains(file.path(), folder); });
    return wholeFolder && !holdsWhatStays ? QStringList{file.path()} : volumesOfSet(archive);
}

} // namespace vormel
