#pragma once

#include "model/ItemId.h"

#include <QModelIndex>
#include <QObject>
#include <QSet>

class QTreeView;

namespace vormel {

class QueueModel;

/// Keeps the selected item, the open groups and the place in the list while items move between rows, groups come to be
/// and dissolve, or everything is read anew. Groups are closed until they are opened. Both must outlive it.
class PlaceKeeper final : public QObject
{
    Q_OBJECT

public:
    PlaceKeeper(QTreeView& view, const QueueModel& model);

private:
    /// A row by what it shows.
    struct Row
    {
        ItemId item;     ///< null for a header
        QString groupId; ///< of a header
    };
    struct Mark
    {
        Row row;
        int top;
    };

    void noteClosed(const QModelIndex& header);
    void remember();
    void rememberSelection();
    void rememberPlace();
    void restore();
    void restoreSelection();
    void restorePlace();
    [[nodiscard]] Row rowOf(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex indexOf(const Row& row) const;

    QTreeView& m_view;
    const QueueModel& m_model;
    QSet<QString> m_openGroups;
    // Of the moment before a change:
    Row m_current;
    QList<ItemId> m_neighbours; ///< in the group of the current row
    QList<Mark> m_marks;        ///< the rows in sight; none while the list is at its top
};

} // namespace vormel
