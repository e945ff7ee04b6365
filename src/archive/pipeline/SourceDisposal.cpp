#include "archive/pipeline/SourceDisposal.h"

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

bool holdsWhatStays(const QString& folder, const SpentArchive& archive)
{
    const QString beginning = folder + u'/';
    return std::any_of(archive.foldersToKeep.begin(), archive.foldersToKeep.end(),
                       [&](const QString& kept) { return contains(folder, kept); }) ||
           std::any_of(archive.filesOfOthers.begin(), archive.filesOfOthers.end(), [&](const QString& file) {
               return (file == folder || file.startsWith(beginning)) && !archive.sources.contains(file);
           });
}

} // namespace

QStringList pathsToTrash(const SpentArchive& archive)
{
    if (!archive.areSourcesSpent)
        return {};
    const QFileInfo file(archive.path);
    if (archive.isFolderSpent && isRarPart(file.fileName()) && !holdsWhatStays(file.path(), archive))
        return {file.path()};
    QStringList sources = archive.sources;
    sources.removeIf([&](const QString& source) { return archive.filesOfOthers.contains(source); });
    return sources;
}

} // namespace vormel
