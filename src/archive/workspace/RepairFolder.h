#pragma once

#include "archive/workspace/OpenFolder.h"
#include "archive/workspace/WorkFolder.h"

#include <QHash>

namespace vormel {

/// Where a set of volumes is repaired: a work folder beside them with symbolic links to them under plain names. The
/// tool renames and rewrites only what lies in there, so that a kill in the middle leaves the set as it was. Not for
/// the UI thread.
class RepairFolder
{
public:
    /// By the first volume. Where there can be no links, the set itself is what the tool works on. Throws
    /// DestinationError.
    [[nodiscard]] static RepairFolder make(const QString& archive);

    /// What to hand to the tool: a volume that it will recognise as one.
    [[nodiscard]] const QString& archive() const { return m_archive; }

    /// Puts what the tool rebuilt into the place of the volumes, which are kept as "*.bad" where there are any. A
    /// volume that came or changed meanwhile stays. Gives the paths of both.
    [[nodiscard]] QStringList adopt();

private:
    /// Tells whether a file is still the one that it was; a number alone is soon used again.
    struct FileState
    {
        FileIdentity identity;
        qint64 size = 0;
        qint64 writtenAt = 0; ///< in nanoseconds; rar changes the mode of a bad volume, which is no news

        friend bool operator==(const FileState&, const FileState&) = default;
    };
    [[nodiscard]] static FileState stateOf(const QString& path);

    explicit RepairFolder(WorkFolder folder);
    void link(const QStringList& volumes);
    [[nodiscard]] QStringList putIntoPlace(const QString& made, const QString& place) const;

    WorkFolder m_folder;
    QString m_archive;
    QHash<QString, FileState> m_linked;
    QString m_setPath; ///< of any volume, up to where their names differ
};

} // namespace vormel
