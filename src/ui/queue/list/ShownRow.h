#pragma once

#include <QModelIndex>

class QTreeView;

namespace vormel {

/// The row itself, or the header of its closed group; invalid for no row.
[[nodiscard]] QModelIndex shownRow(const QTreeView& view, const QModelIndex& row);

} // namespace vormel
