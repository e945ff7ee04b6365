#pragma once

#include "platform/storage/FileDescriptor.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace vormel {

/// A hidden folder inside a destination, hence on its file system, in which one tool unpacks one archive and meets no
/// file of the user's. It carries a mark by which one that a killed program left is known. While the object lives, the
/// mark is locked, so that nobody takes it for abandoned. The destructor removes the folder with all that is in it,
/// which may take long. Not for the UI thread; one thread at a time.
class WorkFolder
{
public:
    /// Makes the destination with its parents where needed, then the folder. The path is absolute. Throws
    /// DestinationError in the system's words.
    [[nodiscard]] static WorkFolder make(const QString& destination);
    WorkFolder(WorkFolder&&) noexcept = default;
    WorkFolder& operator=(WorkFolder&&) = delete;
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    /// Also removes the folders that make() had to make for the destination, where nothing is in them.
    ~WorkFolder();

    [[nodiscard]] const QString& destination() const { return m_destination; }
    /// Where the tool is to write. The mark is out of its sight.
    [[nodiscard]] QString path() const;

    /// The same two folders, open: what happens to their paths meanwhile leads nowhere else.
    [[nodiscard]] int destinationHandle() const { return m_destinationHandle.get(); }
    [[nodiscard]] int filesHandle() const { return m_files.get(); }

private:
    explicit WorkFolder(const QString& destination);
    [[nodiscard]] bool makeInside();

    QString m_destination;
    QStringList m_madeFolders; ///< innermost first
    QByteArray m_name;
    FileDescriptor m_destinationHandle;
    FileDescriptor m_folder;
    FileDescriptor m_files;
    FileDescriptor m_mark;
};

/// Removes what a killed program left in these folders: work folders that carry the mark, are this user's and are not
/// locked, and empty ones of such a name that were not marked yet. Nothing else, ever. Looks at each folder itself, not
/// at what is below it. Not for the UI thread.
void removeAbandonedWorkFolders(const QStringList& folders);

} // namespace vormel
