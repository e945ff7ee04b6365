#pragma once

#include "demo/FilmSet.h"

#include <QModelIndex>

class QTreeView;
class QWidget;

namespace vormel::demo {

/// The list of the queue in the window, which must outlive it.
class QueueOnScreen
{
public:
    explicit QueueOnScreen(const QWidget& window);

    /// Brings the set's group into sight in either case; nothing while it is not in the list.
    void setOpen(const FilmSet& set, bool isOpen) const;
    [[nodiscard]] bool isOpen(const FilmSet& set) const;

private:
    [[nodiscard]] QModelIndex header(const FilmSet& set) const;

    QTreeView* m_list;
};

} // namespace vormel::demo
