#pragma once

#include "ui/queue/tree/RowKey.h"

#include <QAccessible>
#include <QHash>

namespace vormel {

class QueueView;

/// The rows that assistive technology asked for. A row keeps its interface wherever it goes, until it leaves the queue.
/// The view must outlive it.
class AccessibleRows
{
public:
    explicit AccessibleRows(QueueView& view)
        : m_view(view)
    {}
    AccessibleRows(const AccessibleRows&) = delete;
    AccessibleRows& operator=(const AccessibleRows&) = delete;
    ~AccessibleRows();

    /// Makes the interface when it is asked for first; null for no row.
    [[nodiscard]] QAccessibleInterface* row(const QModelIndex& index);
    /// Null for a row that nobody asked for.
    [[nodiscard]] QAccessibleInterface* known(const QModelIndex& index) const;
    /// Ends the interfaces of those that have left the queue.
    void forgetGone();
    [[nodiscard]] qsizetype count() const { return m_ids.size(); }

private:
    QueueView& m_view;
    QHash<RowKey, QAccessible::Id> m_ids;
};

} // namespace vormel
