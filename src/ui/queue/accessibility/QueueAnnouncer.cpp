#include "ui/queue/accessibility/QueueAnnouncer.h"

#include "ui/queue/accessibility/AccessibleRows.h"
#include "ui/queue/list/QueueView.h"
#include "ui/queue/tree/QueueModel.h"

#include <QEvent>

namespace vormel {

namespace {

void tell(QAccessibleInterface* interface, QAccessible::Event kind)
{
    if (!interface)
        return;
    QAccessibleEvent event(interface, kind);
    QAccessible::updateAccessibility(&event);
}

bool isWithin(const QModelIndex& index, const QModelIndex& first, const QModelIndex& last)
{
    return index.isValid() && index.parent() == first.parent() && index.row() >= first.row() &&
           index.row() <= last.row();
}

} // namespace

QueueAnnouncer::QueueAnnouncer(QueueView& view, AccessibleRows& rows)
    : m_view(view)
    , m_rows(rows)
{
    view.installEventFilter(this);
    connect(view.selectionModel(), &QItemSelectionModel::currentChanged, this, &QueueAnnouncer::noteFocus);
    connect(&view, &QTreeView::expanded, this, &QueueAnnouncer::tellOpenOrClosed);
    connect(&view, &QTreeView::collapsed, this, &QueueAnnouncer::tellOpenOrClosed);
    followRows();
}

void QueueAnnouncer::followRows()
{
    const QueueModel& model = m_view.queue();
    connect(&model, &QAbstractItemModel::dataChanged, this, [this](const QModelIndex& first, const QModelIndex& last) {
        if (isWithin(m_view.currentIndex(), first, last))
            tellName();
    });
    connect(&model, &QAbstractItemModel::rowsInserted, this, &QueueAnnouncer::tellNew);
    connect(&model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &QueueAnnouncer::tellGoing);
    // Not at once: what made a row go may have come through its own interface.
    connect(
        &model, &QueueTree::structureChanged, this, [this] { m_rows.forgetGone(); }, Qt::QueuedConnection);
}

bool QueueAnnouncer::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        m_toldRow.reset();
        noteFocus();
    }
    return QObject::eventFilter(watched, event);
}

/// Rows change several times within one change of the queue, and Qt tells of the list itself when it gets the focus.
void QueueAnnouncer::noteFocus()
{
    if (!std::exchange(m_isFocusNoted, true))
        QMetaObject::invokeMethod(this, &QueueAnnouncer::tellFocus, Qt::QueuedConnection);
}

void QueueAnnouncer::tellFocus()
{
    m_isFocusNoted = false;
    const QModelIndex current = m_view.currentIndex();
    if (!QAccessible::isActive() || !m_view.hasFocus() || !current.isValid())
        return;
    const RowKey row = keyOf(m_view.queue(), current);
    if (m_toldRow == row)
        return;
    m_toldRow = row;
    m_toldName = current.data(Qt::AccessibleTextRole).toString();
    tell(m_rows.row(current), QAccessible::Focus);
}

void QueueAnnouncer::tellName()
{
    const QModelIndex current = m_view.currentIndex();
    if (!QAccessible::isActive() || m_toldRow != keyOf(m_view.queue(), current))
        return;
    const QString name = current.data(Qt::AccessibleTextRole).toString();
    if (std::exchange(m_toldName, name) != name)
        tell(m_rows.row(current), QAccessible::NameChanged);
}

void QueueAnnouncer::tellOpenOrClosed(const QModelIndex& header)
{
    QAccessibleInterface* const row = QAccessible::isActive() ? m_rows.known(header) : nullptr;
    if (!row)
        return;
    QAccessible::State changed;
    changed.expanded = true;
    changed.collapsed = true;
    QAccessibleStateChangeEvent event(row, changed);
    QAccessible::updateAccessibility(&event);
}

void QueueAnnouncer::tellNew(const QModelIndex& parent, int first, int last)
{
    constexpr int maxTold = 16; // assistive technology that is told of so many new rows reads the whole list anew
    if (!QAccessible::isActive() || (parent.isValid() && !m_view.isExpanded(parent)))
        return;
    for (int row = first; row <= qMin(last, first + maxTold - 1); ++row)
        tell(m_rows.row(m_view.queue().index(row, 0, parent)), QAccessible::ObjectCreated);
}

void QueueAnnouncer::tellGoing(const QModelIndex& parent, int first, int last)
{
    if (!QAccessible::isActive())
        return;
    for (int row = first; row <= last; ++row)
        tell(m_rows.known(m_view.queue().index(row, 0, parent)), QAccessible::ObjectDestroyed);
}

} // namespace vormel
