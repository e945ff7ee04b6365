#include "ui/queue/accessibility/AccessibleRowButton.h"

#include "ui/queue/accessibility/AccessibleRow.h"
#include "ui/queue/list/QueueView.h"
#include "ui/queue/tree/QueueModel.h"

namespace vormel {

AccessibleRowButton::AccessibleRowButton(const AccessibleRow& row, RowButton button)
    : m_row(row)
    , m_button(button)
{}

/// In the viewport; empty while the row does not show it.
QRect AccessibleRowButton::place() const
{
    const QModelIndex index = m_row.index();
    if (!index.isValid())
        return {};
    for (const ButtonPlace& place : m_row.view().buttonsOf(index)) {
        if (place.button == m_button)
            return place.rect;
    }
    return {};
}

bool AccessibleRowButton::isValid() const
{
    return !place().isEmpty();
}

QWindow* AccessibleRowButton::window() const
{
    return m_row.window();
}

QAccessibleInterface* AccessibleRowButton::parent() const
{
    return const_cast<AccessibleRow*>(&m_row); // the tree of interfaces knows no const
}

QString AccessibleRowButton::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? buttonText(m_button, m_row.view().queue().language()) : QString();
}

QRect AccessibleRowButton::rect() const
{
    const QRect shown = place();
    return shown.isEmpty() ? QRect() : shown.translated(m_row.view().viewport()->mapToGlobal(QPoint()));
}

QAccessible::State AccessibleRowButton::state() const
{
    QAccessible::State state;
    const QRect shown = place();
    const QAccessible::State row = m_row.state();
    state.invalid = shown.isEmpty();
    state.invisible = row.invisible;
    state.offscreen = !shown.intersects(m_row.view().viewport()->rect());
    return state;
}

void* AccessibleRowButton::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList AccessibleRowButton::actionNames() const
{
    return isValid() ? QStringList{pressAction()} : QStringList();
}

void AccessibleRowButton::doAction(const QString& name)
{
    if (name == pressAction() && isValid())
        m_row.view().run(m_row.index(), m_button);
}

} // namespace vormel
