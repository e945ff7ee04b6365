#include "ui/queue/list/ShownRow.h"

#include <QTreeView>

namespace vormel {

QModelIndex shownRow(const QTreeView& view, const QModelIndex& row)
{
    const QModelIndex header = row.parent();
    return header.isValid() && !view.isExpanded(header) ? header : row;
}

} // namespace vormel
