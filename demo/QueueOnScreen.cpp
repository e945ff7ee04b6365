#include "demo/QueueOnScreen.h"

#include <QTreeView>

using namespace Qt::StringLiterals;

namespace vormel::demo {

QueueOnScreen::QueueOnScreen(const QWidget& window)
    : m_list(window.findChild<QTreeView*>(u"queueView"_s))
{}

void QueueOnScreen::setOpen(const FilmSet& set, bool isOpen) const
{
    if (!m_list)
        return;
    m_list->setExpanded(header(set), isOpen);
    m_list->scrollTo(header(set), isOpen ? QAbstractItemView::PositionAtTop : QAbstractItemView::EnsureVisible);
}

bool QueueOnScreen::isOpen(const FilmSet& set) const
{
    return m_list && m_list->isExpanded(header(set));
}

QModelIndex QueueOnScreen::header(const FilmSet& set) const
{
    const QAbstractItemModel& model = *m_list->model();
    const QModelIndexList found = model.match(model.index(0, 0), Qt::DisplayRole, set.name, 1, Qt::MatchExactly);
    return found.isEmpty() ? QModelIndex() : found.first();
}

} // namespace vormel::demo
