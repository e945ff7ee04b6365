#include "ui/queue/tree/QueueRows.h"

#include "model/SetName.h"
#include "ui/queue/rows/HeaderPresenter.h"

namespace vormel {

QString setKey(const DownloadItem& item)
{
    // Only a member's base name differs from its name.
    QString base = setBaseName(item.filename());
    return base == item.filename() ? QString() : base;
}

void QueueEntry::readLines()
{
    members.clear();
    if (!isHeader()) {
        ownLines = rowLines(*group.items.front());
        return;
    }
    ownLines = headerLines(GroupTally(group), group.lack);
    for (const ItemPtr& item : group.items)
        members.push_back(rowLines(*item));
}

void QueueRows::assign(std::vector<DownloadGroup> groups)
{
    m_entries.clear();
    m_places.clear();
    m_sets.clear();
    insert(0, std::move(groups));
}

void QueueRows::insert(int row, std::vector<DownloadGroup> groups)
{
    std::vector<std::unique_ptr<QueueEntry>> fresh;
    fresh.reserve(groups.size());
    m_places.reserve(m_places.size() + static_cast<qsizetype>(groups.size()));
    for (DownloadGroup& group : groups) {
        fresh.push_back(std::make_unique<QueueEntry>());
        fresh.back()->group = std::move(group);
        place(*fresh.back());
        fresh.back()->readLines();
    }
    m_entries.insert(m_entries.begin() + row, std::make_move_iterator(fresh.begin()),
                     std::make_move_iterator(fresh.end()));
    numberFrom(row);
}

void QueueRows::remove(int first, int count)
{
    const auto begin = m_entries.begin() + first;
    for (auto entry = begin; entry != begin + count; ++entry)
        forget(**entry);
    m_entries.erase(begin, begin + count);
    numberFrom(first);
}

void QueueRows::setGroup(QueueEntry& entry, DownloadGroup group)
{
    forget(entry);
    entry.group = std::move(group);
    place(entry);
    entry.readLines();
}

void QueueRows::setId(QueueEntry& entry, const QString& id)
{
    forget(entry);
    entry.group.id = id;
    place(entry);
}

void QueueRows::numberFrom(int row) const
{
    for (int i = row; i < count(); ++i)
        at(i).row = i;
}

void QueueRows::place(QueueEntry& entry)
{
    entry.set = entry.group.id == entry.group.items.front()->filename() ? QString() : entry.group.id;
    if (!entry.set.isEmpty())
        m_sets.insert(entry.set, &entry);
    for (std::size_t i = 0; i < entry.group.items.size(); ++i)
        m_places.insert(entry.group.items[i]->id(), {&entry, static_cast<int>(i)});
}

void QueueRows::forget(const QueueEntry& entry)
{
    // Another entry may have taken the item, or the set, over.
    if (m_sets.value(entry.set) == &entry)
        m_sets.remove(entry.set);
    for (const ItemPtr& item : entry.group.items) {
        if (m_places.value(item->id()).entry == &entry)
            m_places.remove(item->id());
    }
}

std::optional<std::vector<int>> surplus(const std::vector<ItemPtr>& longer, const std::vector<ItemPtr>& shorter)
{
    std::vector<int> rows;
    std::size_t matched = 0;
    for (std::size_t i = 0; i < longer.size(); ++i) {
        if (matched < shorter.size() && longer[i] == shorter[matched])
            ++matched;
        else
            rows.push_back(static_cast<int>(i));
    }
    if (matched != shorter.size())
        return std::nullopt;
    return rows;
}

} // namespace vormel
