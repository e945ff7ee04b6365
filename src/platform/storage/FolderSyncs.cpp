#include "platform/storage/FolderSyncs.h"

#include "platform/storage/FileDescriptor.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace vormel {

void FolderSyncs::note(const QString& folder)
{
    const std::lock_guard lock(m_mutex);
    m_folders.insert(folder);
}

void FolderSyncs::syncAll()
{
    QSet<QString> folders;
    {
        const std::lock_guard lock(m_mutex);
        folders = std::exchange(m_folders, {});
    }
    for (const QString& folder : folders)
        syncFolder(folder);
}

void syncFolder(const QString& folder)
{
    const FileDescriptor directory(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.isOpen())
        ::fsync(directory.get());
}

} // namespace vormel
