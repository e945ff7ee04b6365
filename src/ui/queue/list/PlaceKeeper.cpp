#include "ui/queue/list/PlaceKeeper.h"

#include "ui/queue/list/ShownRow.h"
#include "ui/queue/tree/QueueModel.h"

#include <QScrollBar>
#include <QTreeView>

namespace vormel {

PlaceKeeper::PlaceKeeper(QTreeView& view, const QueueModel& model)
    : m_view(view)
    , m_model(model)
{
    connect(&view, &QTreeView::expanded, this,
            [this](const QModelIndex& header) { m_openGroups.insert(m_model.group(header).id); });
    connect(&view, &QTreeView::collapsed, this, &PlaceKeeper::noteClosed);
    connect(&model, &QueueModel::structureAboutToChange, this, &PlaceKeeper::remember);
    connect(&model, &QueueModel::structureChanged, this, &PlaceKeeper::restore);
}

void PlaceKeeper::noteClosed(const QModelIndex& header)
{
    m_openGroups.remove(m_model.group(header).id);
    if (m_view.currentIndex().parent() == header)
        // What is current stays in sight. The whole group is selected only by the user, as it can be removed by one
        // key.
        m_view.selectionModel()->setCurrentIndex(header, QItemSelectionModel::Clear);
}

void PlaceKeeper::remember()
{
    rememberSelection();
    rememberPlace();
}

void PlaceKeeper::rememberSelection()
{
    const QModelIndex current = m_view.currentIndex();
    m_current.reset();
    m_neighbours.clear();
    if (!current.isValid())
        return;
    m_current = keyOf(m_model, current);
    m_isSelected = m_view.selectionModel()->isSelected(current);
    for (const ItemPtr& item : m_model.group(current).items)
        m_neighbours << item->id();
}

void PlaceKeeper::rememberPlace()
{
    m_marks.clear();
    if (m_view.verticalScrollBar()->value() == 0)
        return;
    const int height = m_view.viewport()->height();
    for (QModelIndex index = m_view.indexAt(QPoint(0, 0)); index.isValid(); index = m_view.indexBelow(index)) {
        const int top = m_view.visualRect(index).top();
        if (top >= height)
            break;
        m_marks.push_back({keyOf(m_model, index), top});
    }
}

void PlaceKeeper::restore()
{
    for (const QString& id : std::as_const(m_openGroups)) {
        if (const QModelIndex header = m_model.headerOf(id); header.isValid())
            m_view.setExpanded(header, true);
    }
    // The selection is to follow its item, and not the list the selection.
    m_view.setAutoScroll(false);
    restoreSelection();
    m_view.setAutoScroll(true);
    restorePlace();
}

void PlaceKeeper::restoreSelection()
{
    QModelIndex index = m_current ? indexOf(m_model, *m_current) : QModelIndex();
    if (!index.isValid() && m_view.currentIndex().isValid())
        return; // the view has chosen the next row
    for (const ItemId& neighbour : std::as_const(m_neighbours)) {
        if (!index.isValid())
            index = m_model.indexOf(neighbour);
    }
    if (!index.isValid())
        return;
    // What is left of a selected group stays selected; a neighbour and a whole group that it joined never come to be.
    const QModelIndex row = shownRow(m_view, index);
    const bool isPartOfIt = row == index && (keyOf(m_model, index) == m_current || m_current->item.isNull());
    m_view.selectionModel()->setCurrentIndex(row, m_isSelected && isPartOfIt ? QItemSelectionModel::ClearAndSelect
                                                                             : QItemSelectionModel::Clear);
}

void PlaceKeeper::restorePlace()
{
    for (const Mark& mark : std::as_const(m_marks)) {
        const QRect now = m_view.visualRect(indexOf(m_model, mark.row)); // empty for a row in a closed group
        if (now.isEmpty())
            continue;
        QScrollBar& bar = *m_view.verticalScrollBar();
        bar.setValue(bar.value() + now.top() - mark.top);
        return;
    }
}

} // namespace vormel
