#include "ui/queue/accessibility/AccessibleRow.h"

#include "ui/queue/accessibility/AccessibleRowButton.h"
#include "ui/queue/list/QueueView.h"
#include "ui/queue/tree/QueueModel.h"

#include <QContextMenuEvent>
#include <QCoreApplication>

#include <algorithm>

namespace vormel {

AccessibleRow::AccessibleRow(QueueView& view, RowKey key)
    : m_view(view)
    , m_key(std::move(key))
{}

AccessibleRow::~AccessibleRow()
{
    for (const QAccessible::Id id : std::as_const(m_buttons))
        QAccessible::deleteAccessibleInterface(id);
}

QModelIndex AccessibleRow::index() const
{
    return indexOf(m_view.queue(), m_key);
}

bool AccessibleRow::isHeader() const
{
    return m_key.item.isNull();
}

QWindow* AccessibleRow::window() const
{
    return m_view.window()->windowHandle();
}

QAccessibleInterface* AccessibleRow::parent() const
{
    return QAccessible::queryAccessibleInterface(&m_view);
}

QAccessibleInterface* AccessibleRow::buttonInterface(RowButton button) const
{
    QAccessible::Id& id = m_buttons[button];
    if (id == 0)
        id = QAccessible::registerAccessibleInterface(new AccessibleRowButton(*this, button));
    return QAccessible::accessibleInterface(id);
}

QAccessibleInterface* AccessibleRow::childAt(int x, int y) const
{
    const QPoint point = m_view.viewport()->mapFromGlobal(QPoint(x, y));
    for (const ButtonPlace& place : m_view.buttonsOf(index())) {
        if (place.rect.contains(point))
            return buttonInterface(place.button);
    }
    return nullptr;
}

QAccessibleInterface* AccessibleRow::child(int place) const
{
    const std::vector<ButtonPlace> places = m_view.buttonsOf(index());
    const bool isThere = place >= 0 && place < static_cast<int>(places.size());
    return isThere ? buttonInterface(places[static_cast<std::size_t>(place)].button) : nullptr;
}

int AccessibleRow::childCount() const
{
    return static_cast<int>(m_view.buttonsOf(index()).size());
}

int AccessibleRow::indexOfChild(const QAccessibleInterface* child) const
{
    const std::vector<ButtonPlace> places = m_view.buttonsOf(index());
    const auto found = std::find_if(places.begin(), places.end(), [this, child](const ButtonPlace& place) {
        return m_buttons.contains(place.button) && buttonInterface(place.button) == child;
    });
    return found == places.end() ? -1 : static_cast<int>(found - places.begin());
}

QString AccessibleRow::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? index().data(Qt::AccessibleTextRole).toString() : QString();
}

QRect AccessibleRow::rect() const
{
    const QRect place = m_view.visualRect(index());
    return place.isEmpty() ? QRect() : place.translated(m_view.viewport()->mapToGlobal(QPoint()));
}

QAccessible::State AccessibleRow::state() const
{
    QAccessible::State state;
    const QModelIndex index = this->index();
    if (!index.isValid()) {
        state.invalid = true;
        return state;
    }
    const QRect place = m_view.visualRect(index);
    const bool isCurrent = index == m_view.currentIndex();
    state.selectable = true;
    state.focusable = true;
    state.selected = m_view.selectionModel()->isSelected(index);
    state.active = isCurrent;
    state.focused = isCurrent && m_view.hasFocus();
    state.invisible = !m_view.isVisible() || place.isEmpty(); // also when its group is closed
    state.offscreen = !place.intersects(m_view.viewport()->rect());
    state.expandable = isHeader();
    state.expanded = isHeader() && m_view.isExpanded(index);
    state.collapsed = isHeader() && !m_view.isExpanded(index);
    return state;
}

void* AccessibleRow::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList AccessibleRow::actionNames() const
{
    if (!isValid())
        return {};
    QStringList names{setFocusAction(), showMenuAction()};
    if (isHeader())
        names.prepend(toggleAction()); // the first one is what a screen reader takes for a click
    return names;
}

void AccessibleRow::doAction(const QString& name)
{
    const QModelIndex index = this->index();
    if (!index.isValid())
        return;
    if (name == toggleAction() && isHeader())
        m_view.setExpanded(index, !m_view.isExpanded(index));
    else if (name == setFocusAction())
        select(index);
    else if (name == showMenuAction())
        openMenu(index);
}

void AccessibleRow::select(const QModelIndex& index)
{
    m_view.setFocus(Qt::OtherFocusReason);
    m_view.setCurrentIndex(index);
}

/// As the menu key of the keyboard does.
void AccessibleRow::openMenu(const QModelIndex& index)
{
    select(index);
    const QPoint point = m_view.visualRect(index).center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, point, m_view.viewport()->mapToGlobal(point));
    QCoreApplication::sendEvent(m_view.viewport(), &event);
}

} // namespace vormel
