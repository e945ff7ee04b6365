#include "engine/commands/GroupVerification.h"

#include "archive/ArchiveExtractor.h"
#include "archive/PostDownload.h"
#include "engine/commands/QueueCommands.h"
#include "model/SetName.h"
#include "platform/async/Spawn.h"

#include <QFileInfo>

#include <algorithm>

namespace vormel {

namespace {

QString nameOnDisk(const DownloadItem& item)
{
    return QFileInfo(item.localPath().value_or(QString())).fileName();
}

} // namespace

GroupVerification::GroupVerification(const ItemTable& table, ArchiveExtractor& extractor, QueueCommands& commands,
                                     PostDownload& postDownload)
    : m_table(table)
    , m_extractor(extractor)
    , m_commands(commands)
    , m_postDownload(postDownload)
{}

void GroupVerification::verifyGroup(const std::vector<ItemPtr>& items)
{
    const auto first =
        std::find_if(items.begin(), items.end(), [](const ItemPtr& item) { return isFirstVolume(nameOnDisk(*item)); });
    if (first != items.end())
        spawn(verify(items, *(*first)->localPath()));
}

QCoro::Task<> GroupVerification::verify(std::vector<ItemPtr> items, QString archive)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    QStringList bad;
    try {
        bad = co_await m_extractor.verify(archive);
    } catch (const std::exception&) {
        // Without a tool that can test, the extraction will tell.
    }
    if (lifetime.isOver())
        co_return;
    // Some may have been removed meanwhile.
    std::erase_if(items, [this](const ItemPtr& item) { return m_table.find(item->id()) != item; });
    if (bad.isEmpty()) {
        const auto next = std::find_if(items.begin(), items.end(), [](const ItemPtr& item) {
            return item->status() == DownloadStatus::completed && item->extractionStatus() == ExtractionStatus::idle;
        });
        if (next != items.end())
            m_postDownload.autoExtractAfterDownload((*next)->id());
        co_return;
    }
    for (const ItemPtr& item : items) {
        // What failed with the bad volumes may be tried again when they are here anew.
        if (item->extractionStatus() == ExtractionStatus::failed)
            item->setExtractionStatus(ExtractionStatus::idle);
        if (bad.contains(nameOnDisk(*item), Qt::CaseInsensitive))
            m_commands.redownloadItem(*item);
    }
}

} // namespace vormel
