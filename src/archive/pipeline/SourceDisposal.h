#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

namespace vormel {

/// What an archive was made of, and what must outlive it.
struct SpentArchive
{
    QString path;
    QStringList sources;              ///< files that came down for it, or that a repair made of them
    QStringList foldersToKeep;        ///< and all that they lie in
    QSet<QString> filesOfOthers = {}; ///< what belongs to other items, and files and folders that were just unpacked
    bool areSourcesSpent = false;     ///< else nothing goes
    bool isFolderSpent = false;       ///< the folder that a set came in goes as a whole
};

/// What goes to the Trash once an archive is extracted: its sources, or the whole folder that a set came in where
/// nothing in there must stay. Looks at the disk.
[[nodiscard]] QStringList pathsToTrash(const SpentArchive& archive);

} // namespace vormel
