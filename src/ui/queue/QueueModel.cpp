#include "ui/queue/QueueModel.h"

#include "model/SetName.h"

#include <algorithm>

namespace vormel {

namespace {

/// Beyond so many separate steps views are faster when they read everything again.
constexpr std::size_t mostSteps = 16;

/// How far a run of consecutive rows that starts at `first` reaches.
std::size_t endOfRun(const std::vector<int>& rows, std::size_t first)
{
    std::size_t end = first + 1;
    while (end < rows.size() && rows[end] == rows[end - 1] + 1)
        ++end;
    return end;
}

std::size_t countRuns(const std::vector<int>& rows)
{
    std::size_t runs = 0;
    for (std::size_t first = 0; first < rows.size(); first = endOfRun(rows, first))
        ++runs;
    return runs;
}

} // namespace

QueueModel::QueueModel(DownloadManager& manager, QObject* parent)
    : QAbstractItemModel(parent)
    , m_manager(manager)
{
    m_rows.assign(visibleItems(0, static_cast<qsizetype>(m_manager.items().size())));
    connect(&manager, &DownloadManager::itemsInserted, this, &QueueModel::insertItems);
    connect(&manager, &DownloadManager::itemsRemoved, this, &QueueModel::removeItems);
    connect(&manager, &DownloadManager::itemChanged, this, [this](const ItemId& id) { noteChange(id); });
    connect(&manager.settings(), &AppSettings::downloadRevFilesSet, this, &QueueModel::rebuild);
    connect(&manager.settings(), &AppSettings::languageSet, this, &QueueModel::tellAll);
}

bool QueueModel::isVisible(const DownloadItem& item) const
{
    if (!isRevName(item.filename()) || m_manager.settings().downloadRevFiles.value())
        return true;
    return item.status() == DownloadStatus::downloading || item.status() == DownloadStatus::completed;
}

std::vector<ItemPtr> QueueModel::visibleItems(qsizetype first, qsizetype count) const
{
    const auto begin = m_manager.items().begin() + first;
    std::vector<ItemPtr> visible;
    visible.reserve(static_cast<std::size_t>(count));
    std::copy_if(begin, begin + count, std::back_inserter(visible), [this](const ItemPtr& i) { return isVisible(*i); });
    return visible;
}

/// How many rows stand before the item at that position of the queue.
int QueueModel::rowBefore(qsizetype position) const
{
    int row = 0;
    for (qsizetype i = 0; i < position && row < m_rows.count(); ++i) {
        if (m_manager.items()[static_cast<std::size_t>(i)] == m_rows.at(row).item)
            ++row;
    }
    return row;
}

QModelIndex QueueModel::indexOf(const ItemId& id) const
{
    return index(m_rows.find(id), 0);
}

QModelIndex QueueModel::index(int row, int column, const QModelIndex& parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

QModelIndex QueueModel::parent(const QModelIndex& /*child*/) const
{
    return {};
}

int QueueModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows.count();
}

int QueueModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 1;
}

QVariant QueueModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const DownloadItem& item = *m_rows.at(index.row()).item;
    switch (role) {
    case IdRole:
        return QVariant::fromValue(item.id());
    case LinesRole:
        return QVariant::fromValue(rowLines(item).toInt());
    case Qt::DisplayRole:
    case NameRole:
        return item.filename();
    case StatusRole:
        return static_cast<int>(item.status().kind());
    case HostRole:
        return item.hostName();
    case Qt::DecorationRole:
    case Qt::FontRole:
    case Qt::SizeHintRole:
        return {};
    default:
        return contentValue(rowContent(item, language()), role);
    }
}

QVariant QueueModel::contentValue(const RowContent& content, int role) const
{
    switch (role) {
    case ContentRole:
        return QVariant::fromValue(content);
    case StatusTextRole:
        return content.statusText;
    case ProgressRole:
        return content.progress;
    case ByteTextRole:
        return content.byteText;
    case SpeedTextRole:
        return content.speedText;
    case RecoveryTextRole:
        return content.recoveryText;
    case ExtractionTextRole:
        return content.extractionText;
    case Qt::AccessibleTextRole:
        return accessibleText(content);
    case Qt::ToolTipRole:
        return rowToolTip(content);
    default:
        return {};
    }
}

void QueueModel::insertItems(qsizetype first, qsizetype count)
{
    const std::vector<ItemPtr> items = visibleItems(first, count);
    if (items.empty())
        return;
    const bool isAtEnd = first + count == static_cast<qsizetype>(m_manager.items().size());
    const int row = isAtEnd ? m_rows.count() : rowBefore(first);
    beginInsertRows({}, row, row + static_cast<int>(items.size()) - 1);
    m_rows.insert(row, items);
    endInsertRows();
}

void QueueModel::removeItems(const QSet<ItemId>& ids)
{
    std::vector<int> rows;
    for (const ItemId& id : ids) {
        if (const int row = m_rows.find(id); row >= 0)
            rows.push_back(row);
    }
    dropRows(std::move(rows));
}

void QueueModel::dropRows(std::vector<int> rows)
{
    std::sort(rows.begin(), rows.end());
    if (countRuns(rows) > mostSteps) {
        rebuild();
        return;
    }
    while (!rows.empty()) {
        const int last = rows.back();
        int first = last;
        for (rows.pop_back(); !rows.empty() && rows.back() == first - 1; rows.pop_back())
            --first;
        beginRemoveRows({}, first, last);
        m_rows.remove(first, last - first + 1);
        endRemoveRows();
    }
}

void QueueModel::rebuild()
{
    beginResetModel();
    m_rows.assign(visibleItems(0, static_cast<qsizetype>(m_manager.items().size())));
    endResetModel();
}

void QueueModel::noteChange(const ItemId& id)
{
    if (m_changed.isEmpty())
        QMetaObject::invokeMethod(this, &QueueModel::tellChanges, Qt::QueuedConnection);
    m_changed.insert(id);
}

void QueueModel::tellChanges()
{
    std::vector<int> stale;
    std::vector<int> hidden;
    std::vector<ItemPtr> shown;
    for (const ItemId& id : std::exchange(m_changed, {})) {
        const ItemPtr item = m_manager.item(id);
        if (!item)
            continue;
        const int row = m_rows.find(id);
        if (row < 0 && isVisible(*item))
            shown.push_back(item);
        else if (row >= 0)
            (isVisible(*item) ? stale : hidden).push_back(row);
    }
    tellSpans(stale);
    if (shown.size() + hidden.size() > mostSteps) {
        rebuild();
        return;
    }
    dropRows(std::move(hidden));
    for (const ItemPtr& item : shown)
        showItem(item);
}

void QueueModel::showItem(const ItemPtr& item)
{
    const std::vector<ItemPtr>& items = m_manager.items();
    insertItems(std::find(items.begin(), items.end(), item) - items.begin(), 1);
}

void QueueModel::tellSpans(const std::vector<int>& unsorted)
{
    std::vector<int> rows = unsorted;
    std::sort(rows.begin(), rows.end());
    for (std::size_t first = 0; first < rows.size(); first = endOfRun(rows, first)) {
        const std::size_t end = endOfRun(rows, first);
        bool isOtherHeight = false;
        for (std::size_t i = first; i < end; ++i) {
            QueueRows::Row& row = m_rows.at(rows[i]);
            const RowLines told = std::exchange(row.lines, rowLines(*row.item));
            isOtherHeight |= told != row.lines;
        }
        QList<int> roles{Qt::DisplayRole, Qt::AccessibleTextRole, ContentRole};
        if (isOtherHeight)
            roles << Qt::SizeHintRole << LinesRole;
        Q_EMIT dataChanged(index(rows[first], 0), index(rows[end - 1], 0), roles);
    }
}

void QueueModel::tellAll()
{
    if (m_rows.count() > 0)
        Q_EMIT dataChanged(index(0, 0), index(m_rows.count() - 1, 0),
                           {Qt::DisplayRole, Qt::AccessibleTextRole, ContentRole});
}

} // namespace vormel
