#pragma once

#include "engine/queue/ItemTable.h"

namespace vormel::fixtures {

/// The items of a queue without anybody who listens.
class QuietTable
{
protected:
    ItemPtr add(const QString& name, const DownloadStatus& status = DownloadStatus::queued)
    {
        auto item = std::make_shared<DownloadItem>(*Link::parse(QStringLiteral("http://h/") + name), ItemId::make());
        item->setFilename(name);
        item->setStatus(status);
        table.append({item});
        return item;
    }

private:
    class Nobody final : public ItemTable::Listener
    {
    public:
        void tableGrew(qsizetype /*first*/, qsizetype /*count*/) override {}
        void tableShrank(const QSet<ItemId>& /*ids*/) override {}
        void tableReordered() override {}
        void tableItemChanged(DownloadItem& /*item*/, ItemField /*field*/) override {}
    };

    Nobody m_nobody;

protected:
    ItemTable table{m_nobody};
};

} // namespace vormel::fixtures
