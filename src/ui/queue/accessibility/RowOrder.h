#pragma once

#include <QModelIndex>
#include <QObject>

#include <vector>

class QTreeView;

namespace vormel {

/// Numbers the rows of a tree of two levels from the top down: those at its top, and those below the open ones. Counts
/// the open rows when first asked after a change, and finds every place by halving. The view must outlive it.
class RowOrder final : public QObject
{
    Q_OBJECT

public:
    explicit RowOrder(const QTreeView& view);

    [[nodiscard]] int count() const;
    /// Invalid for a place that there is not.
    [[nodiscard]] QModelIndex at(int place) const;
    /// -1 for a row that is below a closed one.
    [[nodiscard]] int placeOf(const QModelIndex& index) const;

private:
    struct OpenRow
    {
        int row;
        int below; ///< how many rows stand below it
        int above; ///< how many rows stand below open ones above it
        [[nodiscard]] int place() const { return row + above; }
    };

    void read() const;

    const QTreeView& m_view;
    mutable bool m_isStale = true;
    mutable std::vector<OpenRow> m_open; ///< from the top down
};

} // namespace vormel
