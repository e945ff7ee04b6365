#include "archive/workspace/AbandonedRuns.h"

#include "archive/workspace/WorkFolder.h"

#include <QDir>

namespace vormel {

void removeAbandonedRuns(const QStringList& folders)
{
    constexpr QDir::Filters below = QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks;
    QStringList all = folders;
    for (const QString& folder : folders)
        for (const QFileInfo& found : QDir(folder).entryInfoList(below))
            all << found.filePath();
    removeAbandonedWorkFolders(all);
}

} // namespace vormel
