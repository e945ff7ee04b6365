#include "engine/queue/QueueFile.h"

#include "platform/storage/FileWriter.h"
#include "platform/storage/FolderSyncs.h"
#include "platform/storage/WholeFile.h"

#include <QFileInfo>

namespace vormel {

namespace {

constexpr qint64 maxFileSize = qint64{64} * 1024 * 1024;

constexpr ItemFields storedFields = ItemField::resolvedUrl | ItemField::filename | ItemField::status |
                                    ItemField::progress | ItemField::bytesReceived | ItemField::totalBytes |
                                    ItemField::localPath | ItemField::extractionStatus | ItemField::resolvedAt |
                                    ItemField::partPlace;

} // namespace

QueueFile::QueueFile(QString path, FileWriter& writer)
    : m_path(std::move(path))
    , m_writer(writer)
    , m_finishedIn(std::make_shared<FolderSyncs>())
{}

void QueueFile::noteChange(const DownloadItem& item, ItemField field)
{
    if (storedFields.testFlag(field))
        m_records.erase(item.id());
    if (field == ItemField::localPath && item.localPath())
        m_finishedIn->note(QFileInfo(*item.localPath()).path());
}

void QueueFile::noteRemoval(const QSet<ItemId>& ids)
{
    for (const ItemId& id : ids)
        m_records.erase(id);
}

void QueueFile::save(const ItemTable& table, const DownloadPaths& paths)
{
    if (!m_mayWrite)
        return;
    // Records leave out what is where it is looked for.
    if (m_recordedFor != paths)
        m_records.clear();
    m_recordedFor = paths;
    std::vector<std::shared_ptr<const QueueRecord>> records;
    records.reserve(table.items().size());
    for (const ItemPtr& item : table.items()) {
        if (item->status() == DownloadStatus::expanding)
            continue;
        std::shared_ptr<const QueueRecord>& record = m_records[item->id()];
        if (!record)
            record = encodeRecord(*item, paths);
        records.push_back(record);
    }
    m_writer.post(m_path, [records = std::move(records), finishedIn = m_finishedIn] {
        finishedIn->syncAll();
        return encodeQueue(records);
    });
}

std::vector<ItemPtr> QueueFile::restore(const DownloadPaths& paths)
{
    if (!QFileInfo::exists(m_path))
        return {};
    std::optional<QByteArray> bytes = readWholeFile(m_path, maxFileSize);
    std::optional<std::vector<ItemPtr>> items = bytes ? decodeQueue(std::move(*bytes), paths) : std::nullopt;
    if (!items) {
        m_mayWrite = keepUnreadableFile(m_path);
        return {};
    }
    return std::move(*items);
}

} // namespace vormel
