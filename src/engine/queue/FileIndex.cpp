#include "engine/queue/FileIndex.h"

#include "text/FileName.h"

namespace vormel {

void FileIndex::insert(const ItemPtr& item)
{
    if (!item->localPath())
        return;
    const QString name = lastComponent(*item->localPath());
    m_holders[name].push_back(item);
    m_names.insert(item->id(), name);
}

void FileIndex::remove(const ItemId& id)
{
    const auto holders = m_holders.find(m_names.take(id));
    if (holders == m_holders.end())
        return;
    std::erase_if(holders.value(), [&id](const ItemPtr& item) { return item->id() == id; });
    if (holders->empty())
        m_holders.erase(holders);
}

void FileIndex::update(const ItemPtr& item)
{
    remove(item->id());
    insert(item);
}

std::span<const ItemPtr> FileIndex::find(const QString& name) const
{
    const auto holders = m_holders.constFind(name);
    return holders == m_holders.cend() ? std::span<const ItemPtr>() : std::span<const ItemPtr>(holders.value());
}

} // namespace vormel
