#pragma once

#include <QPoint>

class QMenu;
class QModelIndex;

namespace vormel {

class QueueView;
class RowCommands;

/// The menus of the list's rows, and the popover for the name of a group. The entries of a menu do nothing once their
/// row has left the queue.
class RowMenus
{
public:
    /// Both must outlive it.
    RowMenus(QueueView& view, const RowCommands& commands);

    void openAt(const QModelIndex& index, QPoint globalPoint);
    /// Selects the row first, and brings it into sight.
    void openBelow(const QModelIndex& index);
    /// Adds everything that the row can be told; nothing for no row.
    void fill(QMenu& menu, const QModelIndex& index);
    /// Opens the popover for the name of that group.
    void rename(const QModelIndex& header);

private:
    QueueView& m_view;
    const RowCommands& m_commands;
};

} // namespace vormel
