#include "ui/queue/accessibility/AccessibleQueue.h"

#include "ui/queue/accessibility/AccessibleRow.h"
#include "ui/queue/list/QueueView.h"

namespace vormel {

AccessibleQueue::AccessibleQueue(QueueView& view)
    : QAccessibleWidget(&view, QAccessible::List)
    , m_view(view)
    , m_order(view)
    , m_rows(view)
    , m_announcer(view, m_rows)
{}

QAccessibleInterface* AccessibleQueue::childAt(int x, int y) const
{
    const QPoint point = m_view.viewport()->mapFromGlobal(QPoint(x, y));
    return m_view.viewport()->rect().contains(point) ? m_rows.row(m_view.indexAt(point)) : nullptr;
}

QAccessibleInterface* AccessibleQueue::child(int place) const
{
    return m_rows.row(m_order.at(place));
}

int AccessibleQueue::indexOfChild(const QAccessibleInterface* child) const
{
    const auto* const row = dynamic_cast<const AccessibleRow*>(child);
    return row && row->parent() == this ? m_order.placeOf(row->index()) : -1;
}

QAccessibleInterface* AccessibleQueue::focusChild() const
{
    if (!m_view.hasFocus())
        return nullptr;
    QAccessibleInterface* const row = m_rows.row(m_view.currentIndex());
    return row ? row : QAccessible::queryAccessibleInterface(&m_view);
}

void installQueueAccessibility()
{
    QAccessible::installFactory([](const QString& /*className*/, QObject* object) -> QAccessibleInterface* {
        auto* const view = qobject_cast<QueueView*>(object);
        return view ? new AccessibleQueue(*view) : nullptr;
    });
}

} // namespace vormel
