#include "ui/queue/accessibility/RowOrder.h"

#include <QTreeView>

#include <algorithm>

namespace vormel {

RowOrder::RowOrder(const QTreeView& view)
    : m_view(view)
{
    const auto forget = [this] { m_isStale = true; };
    connect(&view, &QTreeView::expanded, this, forget);
    connect(&view, &QTreeView::collapsed, this, forget);
    connect(view.model(), &QAbstractItemModel::rowsInserted, this, forget);
    connect(view.model(), &QAbstractItemModel::rowsRemoved, this, forget);
    connect(view.model(), &QAbstractItemModel::modelReset, this, forget);
}

void RowOrder::read() const
{
    if (!std::exchange(m_isStale, false))
        return;
    m_open.clear();
    const QAbstractItemModel& model = *m_view.model();
    int above = 0;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex index = model.index(row, 0);
        const int below = model.rowCount(index);
        if (below == 0 || !m_view.isExpanded(index))
            continue;
        m_open.push_back({row, below, above});
        above += below;
    }
}

int RowOrder::count() const
{
    read();
    const int below = m_open.empty() ? 0 : m_open.back().above + m_open.back().below;
    return m_view.model()->rowCount() + below;
}

QModelIndex RowOrder::at(int place) const
{
    if (place < 0 || place >= count())
        return {};
    const QAbstractItemModel& model = *m_view.model();
    const auto next = std::upper_bound(m_open.begin(), m_open.end(), place,
                                       [](int wanted, const OpenRow& open) { return wanted < open.place(); });
    if (next == m_open.begin())
        return model.index(place, 0);
    const OpenRow& open = *std::prev(next);
    const int behind = place - open.place();
    if (behind > open.below)
        return model.index(place - open.above - open.below, 0);
    const QModelIndex top = model.index(open.row, 0);
    return behind == 0 ? top : model.index(behind - 1, 0, top);
}

int RowOrder::placeOf(const QModelIndex& index) const
{
    if (!index.isValid())
        return -1;
    read();
    const bool isBelow = index.parent().isValid();
    const int topRow = isBelow ? index.parent().row() : index.row();
    const auto open = std::lower_bound(m_open.begin(), m_open.end(), topRow,
                                       [](const OpenRow& candidate, int row) { return candidate.row < row; });
    const int above = open == m_open.begin() ? 0 : std::prev(open)->above + std::prev(open)->below;
    if (!isBelow)
        return topRow + above;
    const bool isOpen = open != m_open.end() && open->row == topRow;
    return isOpen ? topRow + above + 1 + index.row() : -1;
}

} // namespace vormel
