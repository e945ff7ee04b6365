#include "ui/queue/tree/QueueTree.h"

#include "ui/queue/tree/Runs.h"

#include <algorithm>

namespace vormel {

namespace {

/// Beyond so many separate steps views are faster when they read everything again.
constexpr std::size_t maxSteps = 16;

using Change = GroupChanges::Change;

bool hasSameItems(const Change& change)
{
    return change.entry && change.group && change.entry->group.items == change.group->items;
}

std::vector<int> goingRows(const std::vector<Change>& changes)
{
    std::vector<int> rows;
    for (const Change& change : changes) {
        if (change.entry && !change.group)
            rows.push_back(change.entry->row);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

std::size_t stepCount(const std::vector<Change>& changes)
{
    const auto regrouped = std::count_if(changes.begin(), changes.end(),
                                         [](const Change& change) { return change.entry && change.group; });
    return static_cast<std::size_t>(regrouped) + runsOf(goingRows(changes)).size();
}

} // namespace

QueueTree::QueueTree(const DownloadManager& manager, QObject* parent)
    : QAbstractItemModel(parent)
    , m_manager(manager)
{
    m_rows.assign(manager.visibleGroups());
}

QModelIndex QueueTree::indexOf(const ItemId& id) const
{
    const QueueRows::Place place = m_rows.find(id);
    if (!place.entry)
        return {};
    return place.entry->isHeader() ? createIndex(place.member, 0, place.entry) : indexOf(*place.entry);
}

QModelIndex QueueTree::headerOf(const QString& groupId) const
{
    const QueueEntry* const entry = m_rows.findSet(groupId);
    return entry && entry->isHeader() ? indexOf(*entry) : QModelIndex();
}

QueueEntry& QueueTree::entryOf(const QModelIndex& index) const
{
    auto* const parent = static_cast<QueueEntry*>(index.internalPointer());
    return parent ? *parent : m_rows.at(index.row());
}

bool QueueTree::isHeader(const QModelIndex& index) const
{
    return index.isValid() && !index.internalPointer() && entryOf(index).isHeader();
}

ItemPtr QueueTree::item(const QModelIndex& index) const
{
    if (!index.isValid() || isHeader(index))
        return {};
    return entryOf(index).item(index.internalPointer() ? index.row() : 0);
}

QStringList QueueTree::groupIds() const
{
    QStringList ids;
    for (int row = 0; row < m_rows.count(); ++row)
        ids << m_rows.at(row).group.id;
    return ids;
}

QModelIndex QueueTree::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return parent.isValid() ? createIndex(row, column, &entryOf(parent)) : createIndex(row, column);
}

QModelIndex QueueTree::parent(const QModelIndex& child) const
{
    const auto* const entry = static_cast<const QueueEntry*>(child.internalPointer());
    return entry ? indexOf(*entry) : QModelIndex();
}

int QueueTree::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return m_rows.count();
    return parent.internalPointer() ? 0 : entryOf(parent).memberCount();
}

int QueueTree::columnCount(const QModelIndex& /*parent*/) const
{
    return 1;
}

void QueueTree::reset()
{
    beginResetModel();
    m_rows.assign(m_manager.visibleGroups());
    endResetModel();
}

void QueueTree::rebuild()
{
    Q_EMIT structureAboutToChange();
    reset();
    Q_EMIT structureChanged();
}

void QueueTree::follow(std::vector<Change> changes)
{
    for (const Change& change : changes) {
        if (!hasSameItems(change))
            continue;
        m_rows.setId(*change.entry, change.group->id);
        change.entry->group.lack = change.group->lack;
    }
    std::erase_if(changes, hasSameItems);
    if (changes.empty())
        return;
    Q_EMIT structureAboutToChange();
    if (stepCount(changes) > maxSteps || !apply(changes))
        reset();
    Q_EMIT structureChanged();
}

/// False where single steps do not lead there.
bool QueueTree::apply(const std::vector<Change>& changes)
{
    std::vector<DownloadGroup> fresh;
    for (const Change& change : changes) {
        if (!change.entry)
            fresh.push_back(*change.group);
        else if (change.group && !setGroup(*change.entry, *change.group))
            return false;
    }
    dropRows(goingRows(changes));
    const bool isOrdered = std::all_of(changes.begin(), changes.end(), [this](const Change& change) {
        return !change.entry || !change.group || isInPlace(*change.entry);
    });
    if (!isOrdered)
        return false;
    std::sort(fresh.begin(), fresh.end(),
              [this](const DownloadGroup& a, const DownloadGroup& b) { return placeInQueue(a) < placeInQueue(b); });
    if (!comeInFewSteps(fresh))
        return false;
    insertGroups(std::move(fresh));
    return true;
}

bool QueueTree::setGroup(QueueEntry& entry, const DownloadGroup& group)
{
    const QModelIndex top = indexOf(entry);
    const int before = entry.memberCount();
    const int after = group.items.size() > 1 ? static_cast<int>(group.items.size()) : 0;
    if (before > 0 && after > 0) {
        if (!setMembers(entry, group))
            return false;
    } else if (after > 0) {
        beginInsertRows(top, 0, after - 1);
        m_rows.setGroup(entry, group);
        endInsertRows();
    } else if (before > 0) {
        beginRemoveRows(top, 0, before - 1);
        m_rows.setGroup(entry, group);
        endRemoveRows();
    } else {
        m_rows.setGroup(entry, group);
    }
    // NOLINTNEXTLINE(readability-misleading-indentation): the word before the call is an empty macro
    Q_EMIT dataChanged(top, top);
    return true;
}

bool QueueTree::setMembers(QueueEntry& entry, const DownloadGroup& group)
{
    const QModelIndex top = indexOf(entry);
    DownloadGroup step{group.id, entry.group.items, group.lack};
    if (const auto added = surplus(group.items, step.items)) {
        for (const Run& run : runsOf(*added)) {
            beginInsertRows(top, run.first, run.last);
            const auto from = group.items.begin();
            step.items.insert(step.items.begin() + run.first, from + run.first, from + run.last + 1);
            m_rows.setGroup(entry, step);
            endInsertRows();
        }
        return true;
    }
    const auto gone = surplus(step.items, group.items);
    if (!gone)
        return false;
    for (const Run& run : fromTheBack(runsOf(*gone))) {
        beginRemoveRows(top, run.first, run.last);
        step.items.erase(step.items.begin() + run.first, step.items.begin() + run.last + 1);
        m_rows.setGroup(entry, step);
        endRemoveRows();
    }
    return true;
}

bool QueueTree::comeInFewSteps(const std::vector<DownloadGroup>& groups) const
{
    if (groups.empty() || rowFor(groups.front()) == rowFor(groups.back()))
        return true;
    std::size_t steps = 0;
    int before = -1;
    for (auto group = groups.begin(); group != groups.end() && steps <= maxSteps; ++group) {
        if (const int row = rowFor(*group); std::exchange(before, row) != row)
            ++steps;
    }
    return steps <= maxSteps;
}

void QueueTree::insertGroups(std::vector<DownloadGroup> groups)
{
    // From the back, so that the rows of those in front stay right; all that go to one place in one step.
    while (!groups.empty()) {
        const int row = rowFor(groups.back());
        const auto first = std::find_if(groups.begin(), groups.end(),
                                        [&](const DownloadGroup& group) { return rowFor(group) == row; });
        std::vector<DownloadGroup> step(std::make_move_iterator(first), std::make_move_iterator(groups.end()));
        groups.erase(first, groups.end());
        beginInsertRows({}, row, row + static_cast<int>(step.size()) - 1);
        m_rows.insert(row, std::move(step));
        endInsertRows();
    }
}

void QueueTree::dropRows(const std::vector<int>& rows)
{
    for (const Run& run : fromTheBack(runsOf(rows))) {
        beginRemoveRows({}, run.first, run.last);
        m_rows.remove(run.first, run.last - run.first + 1);
        endRemoveRows();
    }
}

/// Groups stand in the order of their first items.
std::size_t QueueTree::placeInQueue(const DownloadGroup& group) const
{
    std::size_t place = m_manager.position(group.items.front()->id());
    for (const ItemPtr& item : group.items)
        place = std::min(place, m_manager.position(item->id()));
    return place;
}

int QueueTree::rowFor(const DownloadGroup& group) const
{
    const std::size_t place = placeInQueue(group);
    int first = 0;
    for (int count = m_rows.count(); count > 0;) {
        const int half = count / 2;
        if (placeInQueue(m_rows.at(first + half).group) < place) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}

bool QueueTree::isInPlace(const QueueEntry& entry) const
{
    const std::size_t place = placeInQueue(entry.group);
    const bool isBehind = entry.row == 0 || placeInQueue(m_rows.at(entry.row - 1).group) < place;
    const bool isBefore = entry.row + 1 == m_rows.count() || place < placeInQueue(m_rows.at(entry.row + 1).group);
    return isBehind && isBefore;
}

} // namespace vormel
