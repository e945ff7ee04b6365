#include "ui/queue/tree/QueueModel.h"

#include "model/SetName.h"
#include "platform/clock/Clock.h"
#include "ui/queue/rows/HeaderPresenter.h"
#include "ui/queue/tree/Runs.h"

#include <algorithm>
#include <map>

namespace vormel {

QueueModel::QueueModel(DownloadManager& manager, Clock& clock, QObject* parent)
    : QueueTree(manager, parent)
    , m_manager(manager)
    , m_clock(clock)
{
    connect(&manager, &DownloadManager::itemsInserted, this, &QueueModel::insertItems);
    connect(&manager, &DownloadManager::itemsRemoved, this, &QueueModel::removeItems);
    connect(&manager, &DownloadManager::itemsPutBack, this, &QueueModel::putBackItems);
    connect(&manager, &DownloadManager::itemsReordered, this, &QueueModel::rebuild);
    connect(&manager, &DownloadManager::itemChanged, this, &QueueModel::noteChange);
    connect(&manager, &DownloadManager::groupRenamed, this, &QueueModel::tellHeader);
    connect(&manager.settings(), &AppSettings::downloadRevFilesSet, this, &QueueModel::rebuild);
    connect(&manager.settings(), &AppSettings::languageSet, this, &QueueModel::tellAll);
}

QVariant QueueModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role == linesRole)
        return QVariant::fromValue(toldLines(entryOf(index), index).toInt());
    const ItemPtr shown = item(index);
    return shown ? rowData(*shown, index, role) : groupData(entryOf(index), role);
}

RowLines QueueModel::toldLines(const QueueEntry& entry, const QModelIndex& index)
{
    return index.internalPointer() ? entry.members[static_cast<std::size_t>(index.row())] : entry.ownLines;
}

QVariant QueueModel::rowData(const DownloadItem& item, const QModelIndex& index, int role) const
{
    switch (role) {
    case idRole:
        return QVariant::fromValue(item.id());
    case movingRole:
        return isMoving(item);
    case Qt::DisplayRole:
    case nameRole:
        return item.filename();
    case statusRole:
        return static_cast<int>(item.status().kind());
    case hostRole:
        return item.hostName();
    case copyRole:
        return copiedText(item, language());
    case headerRole:
    case Qt::DecorationRole:
    case Qt::FontRole:
    case Qt::SizeHintRole:
        return {};
    default:
        break;
    }
    RowContent content = rowContent(item, language(), {m_clock.wallNow(), m_clock.steadyNow()});
    content.isMember = index.internalPointer() != nullptr;
    return contentValue(content, role);
}

QVariant QueueModel::contentValue(const RowContent& content, int role) const
{
    switch (role) {
    case contentRole:
        return QVariant::fromValue(content);
    case statusTextRole:
        return content.statusText;
    case progressRole:
        return content.progress;
    case byteTextRole:
        return content.byteText;
    case speedTextRole:
        return content.speedText;
    case recoveryTextRole:
        return content.recoveryText;
    case extractionTextRole:
        return content.extractionText;
    case Qt::AccessibleTextRole:
        return accessibleText(content);
    case Qt::ToolTipRole:
        return rowToolTip(content);
    default:
        return {};
    }
}

QVariant QueueModel::groupData(const QueueEntry& entry, int role) const
{
    switch (role) {
    case idRole:
        return QVariant::fromValue(ItemId());
    case Qt::DisplayRole:
    case nameRole:
        return m_manager.groupNames().displayName(entry.group.id);
    case copyRole:
        return copiedText(header(entry));
    case headerRole:
        return QVariant::fromValue(header(entry));
    case Qt::AccessibleTextRole:
        return accessibleText(header(entry));
    case Qt::ToolTipRole:
        return headerToolTip(header(entry));
    default:
        return {};
    }
}

HeaderContent QueueModel::header(const QueueEntry& entry) const
{
    const GroupTally tally(entry.group);
    HeaderContent content = headerContent(tally, language());
    content.title = m_manager.groupNames().displayName(entry.group.id);
    addLack(content, entry.group.lack, language());
    addExtraction(content, entry.group, language());
    content.buttons = groupButtons(tally, m_manager.hasPendingRevFiles(entry.group.items));
    return content;
}

void QueueModel::insertItems(qsizetype first, qsizetype count)
{
    const auto begin = m_manager.items().begin() + first;
    showItems({begin, begin + count});
}

void QueueModel::putBackItems(const QSet<ItemId>& ids)
{
    std::vector<ItemPtr> items;
    for (const ItemId& id : ids)
        items.push_back(m_manager.item(id));
    showItems(items);
}

void QueueModel::showItems(const std::vector<ItemPtr>& items)
{
    GroupChanges changes(m_manager, rows());
    noteRegrouped(changes);
    for (const ItemPtr& item : items)
        changes.noteItem(item);
    follow(std::move(changes.changes()));
    for (const ItemPtr& item : items) {
        if (!rows().find(item->id()).entry)
            noteChange(item->id(), {}); // hidden, but its header may offer it
    }
}

void QueueModel::removeItems(const QSet<ItemId>& ids)
{
    GroupChanges changes(m_manager, rows());
    bool isAnyHidden = false;
    for (const ItemId& id : ids) {
        isAnyHidden |= rows().find(id).entry == nullptr;
        changes.noteRemoval(id);
    }
    if (isAnyHidden)
        noteLacking(changes);
    follow(std::move(changes.changes()));
    if (isAnyHidden)
        tellAll(); // some header may have offered what is gone
}

void QueueModel::noteChange(const ItemId& id, ItemFields fields)
{
    if (m_changed.isEmpty())
        QMetaObject::invokeMethod(this, &QueueModel::tellChanges, Qt::QueuedConnection);
    m_changed[id] |= fields;
}

/// May the change of these fields have moved the item, or others of its set, to other rows?
bool QueueModel::mayRegroup(const DownloadItem& item, ItemFields fields) const
{
    if (fields.testFlag(ItemField::filename))
        return true;
    if (!fields.testFlag(ItemField::status) && !fields.testFlag(ItemField::extractionStatus))
        return false;
    const QueueEntry* const entry = rows().find(item.id()).entry;
    const bool isPlain = entry && entry->set.isEmpty();
    return !isPlain || isRevName(item.filename());
}

/// The items' places as they are by now: groups are made of the queue as it stands, and know nothing of what is still
/// to be told. True where a hidden item has another name, which may be told by the headers of two sets.
bool QueueModel::noteRegrouped(GroupChanges& changes) const
{
    bool isHiddenRenamed = false;
    for (auto change = m_changed.begin(); change != m_changed.end(); ++change) {
        const ItemPtr item = m_manager.item(change.key());
        if (!item || !mayRegroup(*item, *change))
            continue;
        isHiddenRenamed |= change->testFlag(ItemField::filename) && !rows().find(item->id()).entry;
        changes.noteItem(item);
    }
    if (isHiddenRenamed)
        noteLacking(changes); // nobody remembers the set that it has left
    return isHiddenRenamed;
}

void QueueModel::noteLacking(GroupChanges& changes) const
{
    for (const int row : lackingRows())
        changes.noteEntry(&rows().at(row));
}

/// What has no row is a recovery volume, and means something to those groups alone.
std::vector<int> QueueModel::lackingRows() const
{
    std::vector<int> lacking;
    for (int row = 0; row < rows().count(); ++row) {
        if (!rows().at(row).group.lack.isNothing())
            lacking.push_back(row);
    }
    return lacking;
}

void QueueModel::tellChanges()
{
    GroupChanges changes(m_manager, rows());
    const bool isHiddenRenamed = noteRegrouped(changes);
    const QHash<ItemId, ItemFields> changed = std::exchange(m_changed, {});
    follow(std::move(changes.changes()));
    tellRows(changed);
    if (isHiddenRenamed)
        tellSpans(nullptr, lackingRows());
}

void QueueModel::tellRows(const QHash<ItemId, ItemFields>& changed)
{
    std::map<QueueEntry*, std::vector<int>> members;
    std::vector<int> top;
    QSet<const QueueEntry*> headers;
    for (auto change = changed.begin(); change != changed.end(); ++change) {
        const QueueRows::Place place = rows().find(change.key());
        const ItemPtr item = m_manager.item(change.key());
        // What is hidden shows in its header, which may offer it.
        QueueEntry* const entry = place.entry || !item ? place.entry : rows().findSet(setKey(*item));
        if (!entry)
            continue;
        if (place.entry && entry->isHeader())
            members[entry].push_back(place.member);
        if (!headers.contains(entry)) {
            headers.insert(entry);
            top.push_back(entry->row);
        }
    }
    tellSpans(nullptr, std::move(top));
    for (auto& [entry, rows] : members)
        tellSpans(entry, std::move(rows));
}

/// Has the row another height than the views were told?
bool QueueModel::readLines(QueueEntry* parent, int row)
{
    const QueueEntry& entry = parent ? *parent : rows().at(row);
    RowLines& told = parent ? parent->members[static_cast<std::size_t>(row)] : rows().at(row).ownLines;
    const bool isHeader = !parent && entry.isHeader();
    const RowLines now =
        isHeader ? headerLines(GroupTally(entry.group), entry.group.lack) : rowLines(*entry.item(parent ? row : 0));
    return std::exchange(told, now) != now;
}

void QueueModel::tellSpans(QueueEntry* parent, std::vector<int> unsorted)
{
    std::sort(unsorted.begin(), unsorted.end());
    const QModelIndex above = parent ? indexOf(*parent) : QModelIndex();
    for (const Run& run : runsOf(unsorted)) {
        bool isOtherHeight = false;
        for (int row = run.first; row <= run.last; ++row)
            isOtherHeight |= readLines(parent, row);
        QList<int> roles{Qt::DisplayRole, Qt::AccessibleTextRole, contentRole, headerRole};
        if (isOtherHeight)
            roles << Qt::SizeHintRole << linesRole;
        Q_EMIT dataChanged(index(run.first, 0, above), index(run.last, 0, above), roles);
    }
}

void QueueModel::tellHeader(const QString& groupId)
{
    if (const QModelIndex header = headerOf(groupId); header.isValid())
        Q_EMIT dataChanged(header, header, {Qt::DisplayRole, Qt::AccessibleTextRole, headerRole});
}

void QueueModel::tellAll()
{
    const QList<int> roles{Qt::DisplayRole, Qt::AccessibleTextRole, contentRole, headerRole};
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, 0), roles);
    for (int row = 0; row < rowCount(); ++row) {
        const QModelIndex header = index(row, 0);
        if (const int members = rowCount(header); members > 0)
            Q_EMIT dataChanged(index(0, 0, header), index(members - 1, 0, header), roles);
    }
}

} // namespace vormel
