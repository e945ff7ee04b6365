#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

namespace vormel {

class Trash;
class WorkFolder;

struct PlacementRules
{
    /// Absolute paths of files that must not be taken away, nor their names be given to others: volumes of the running
    /// set, files and part files of other items.
    QSet<QString> protectedPaths;
    Trash* trash = nullptr; ///< without one nothing is taken away
};

struct PlacementResult
{
    /// What the run brought, at the top of the destination: files, and folders that were moved there or merged into.
    QStringList placed;
    /// 0, or why not everything was placed. What was placed stays.
    int systemError = 0;
};

/// Moves every entry of the work folder into its destination, folder merged into folder. What stands in the way goes
/// to the Trash. If it must not, or the Trash does not take it, the newcomer takes the first free "name (1).ext".
/// Follows no symbolic link in the destination and overwrites nothing. Not for the UI thread.
[[nodiscard]] PlacementResult placeInto(const WorkFolder& from, const PlacementRules& rules);

} // namespace vormel
