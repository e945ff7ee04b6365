#pragma once

#include <QSet>
#include <QString>

#include <mutex>

namespace vormel {

/// Remembers in which folders files were given names, until these are on the disk for good. Any thread.
class FolderSyncs
{
public:
    void note(const QString& folder);
    /// Blocks on the disk.
    void syncAll();

private:
    std::mutex m_mutex;
    QSet<QString> m_folders;
};

/// Has the names in a folder on the disk. Blocks on it.
void syncFolder(const QString& folder);

} // namespace vormel
