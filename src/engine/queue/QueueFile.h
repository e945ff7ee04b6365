#pragma once

#include "engine/queue/ItemTable.h"
#include "engine/queue/QueueRecords.h"

#include <QString>

namespace vormel {

class FileWriter;
class FolderSyncs;

/// Keeps the queue in one file. Only records that changed since the last save are made anew; joining and writing them
/// is the writer's work. UI thread only.
class QueueFile
{
public:
    /// The writer must outlive this.
    QueueFile(QString path, FileWriter& writer);

    [[nodiscard]] const QString& queueFileURL() const { return m_path; }

    /// Hands the queue as it is now to the writer. Failures are dropped without a word, and so is every save over a
    /// file that could neither be read nor be kept aside.
    void save(const ItemTable& table, const DownloadPaths& paths);

    /// The items of the last save. A file that cannot be understood, or is larger than 64 MB, gives none and is kept
    /// beside the new one.
    [[nodiscard]] std::vector<ItemPtr> restore(const DownloadPaths& paths);

    /// To be told of every change of an item and of every removal. The name of a finished file is on disk for good
    /// before the queue that tells of it.
    void noteChange(const DownloadItem& item, ItemField field);
    void noteRemoval(const QSet<ItemId>& ids);

private:
    QString m_path;
    FileWriter& m_writer;
    bool m_mayWrite = true;
    std::shared_ptr<FolderSyncs> m_finishedIn;
    std::optional<DownloadPaths> m_recordedFor;
    std::unordered_map<ItemId, std::shared_ptr<const QueueRecord>> m_records;
};

} // namespace vormel
