#pragma once

#include "engine/DownloadManager.h"
#include "ui/queue/tree/GroupChanges.h"

#include <QAbstractItemModel>

namespace vormel {

/// Which rows the list has, and where: at its top a plain row for a single file, or a header for a group of two or more
/// with the rows of its items below. What a row shows is for the model above it. The manager must outlive it.
class QueueTree : public QAbstractItemModel
{
    Q_OBJECT

public:
    /// The item's own row; invalid for an item that has none.
    [[nodiscard]] QModelIndex indexOf(const ItemId& id) const;
    /// The header of the group; invalid where there is none.
    [[nodiscard]] QModelIndex headerOf(const QString& groupId) const;
    [[nodiscard]] bool isHeader(const QModelIndex& index) const;
    /// Null for a header.
    [[nodiscard]] ItemPtr item(const QModelIndex& index) const;
    /// What the header or row at the top of the list stands for, or is below of.
    [[nodiscard]] const DownloadGroup& group(const QModelIndex& index) const { return entryOf(index).group; }
    /// Of everything at the top of the list, in display order.
    [[nodiscard]] QStringList groupIds() const;

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;

Q_SIGNALS:
    /// Around all steps that follow one change of the queue; items move between rows, groups come to be and dissolve.
    void structureAboutToChange();
    void structureChanged();

protected:
    QueueTree(const DownloadManager& manager, QObject* parent);

    [[nodiscard]] const QueueRows& rows() const { return m_rows; }
    [[nodiscard]] QueueEntry& entryOf(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex indexOf(const QueueEntry& entry) const { return createIndex(entry.row, 0); }

    /// Reads the whole queue anew.
    void rebuild();
    /// Goes from the rows that there are to those that the changes tell, in single steps where these are few.
    void follow(std::vector<GroupChanges::Change> changes);

private:
    void reset();
    [[nodiscard]] bool apply(const std::vector<GroupChanges::Change>& changes);
    [[nodiscard]] bool setGroup(QueueEntry& entry, const DownloadGroup& group);
    [[nodiscard]] bool setMembers(QueueEntry& entry, const DownloadGroup& group);
    /// The groups must be in queue order, as for the next.
    [[nodiscard]] bool comeInFewSteps(const std::vector<DownloadGroup>& groups) const;
    void insertGroups(std::vector<DownloadGroup> groups);
    void dropRows(const std::vector<int>& rows);
    [[nodiscard]] bool isInPlace(const QueueEntry& entry) const;
    [[nodiscard]] std::size_t placeInQueue(const DownloadGroup& group) const;
    [[nodiscard]] int rowFor(const DownloadGroup& group) const;

    const DownloadManager& m_manager;
    QueueRows m_rows;
};

} // namespace vormel
