#pragma once

#include "ui/queue/tree/RowKey.h"

#include <QObject>
#include <QSet>

#include <optional>

class QTreeView;

namespace vormel {

class QueueModel;

/// Keeps the current row, selected or not, the open groups and the place in the list while items move between rows,
/// groups come to be and dissolve, or everything is read anew. Groups are closed until they are opened. Both must
/// outlive it.
class PlaceKeeper final : public QObject
{
    Q_OBJECT

public:
    PlaceKeeper(QTreeView& view, const QueueModel& model);

private:
    struct Mark
    {
        RowKey row;
        int top;
    };

    void noteClosed(const QModelIndex& header);
    void remember();
    void rememberSelection();
    void rememberPlace();
    void restore();
    void restoreSelection();
    void restorePlace();

    QTreeView& m_view;
    const QueueModel& m_model;
    QSet<QString> m_openGroups;
    // Of the moment before a change:
    std::optional<RowKey> m_current;
    bool m_isSelected = false;  ///< the current row
    QList<ItemId> m_neighbours; ///< in the group of the current row
    QList<Mark> m_marks;        ///< the rows in sight; none while the list is at its top
};

} // namespace vormel
