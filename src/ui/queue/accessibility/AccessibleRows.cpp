#include "ui/queue/accessibility/AccessibleRows.h"

#include "ui/queue/accessibility/AccessibleRow.h"
#include "ui/queue/list/QueueView.h"

namespace vormel {

AccessibleRows::~AccessibleRows()
{
    for (const QAccessible::Id id : std::as_const(m_ids))
        QAccessible::deleteAccessibleInterface(id);
}

QAccessibleInterface* AccessibleRows::row(const QModelIndex& index)
{
    if (!index.isValid())
        return nullptr;
    const RowKey key = keyOf(m_view.queue(), index);
    QAccessible::Id& id = m_ids[key];
    if (id == 0)
        id = QAccessible::registerAccessibleInterface(new AccessibleRow(m_view, key));
    return QAccessible::accessibleInterface(id);
}

QAccessibleInterface* AccessibleRows::known(const QModelIndex& index) const
{
    const QAccessible::Id id = index.isValid() ? m_ids.value(keyOf(m_view.queue(), index)) : 0;
    return id == 0 ? nullptr : QAccessible::accessibleInterface(id);
}

void AccessibleRows::forgetGone()
{
    m_ids.removeIf([this](const std::pair<const RowKey&, QAccessible::Id&>& row) {
        if (indexOf(m_view.queue(), row.first).isValid())
            return false;
        QAccessible::deleteAccessibleInterface(row.second);
        return true;
    });
}

} // namespace vormel
