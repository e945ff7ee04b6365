#pragma once

#include "ui/queue/list/RowCommands.h"
#include "ui/queue/rows/RowHit.h"
#include "ui/queue/rows/RowPlaces.h"

#include <QTreeView>

namespace vormel {

class CountdownWake;
class GroupDrag;
class PlaceKeeper;
class QueueDelegate;
class QueueModel;
class RowMenus;
class RowMotion;

/// The list of the queue: groups that open and close, one selected row, smooth scrolling, buttons in the rows. Repaints
/// only the rows that changed, lays out again only when a height did, and keeps the selected item and the open groups
/// through every change of the model.
class QueueView final : public QTreeView
{
    Q_OBJECT

public:
    /// The model must outlive the view.
    QueueView(QueueModel& model, const RowCommands& commands, QWidget* parent = nullptr);
    ~QueueView() override;

    /// Does something in sight move, or show how long it has been going on?
    [[nodiscard]] bool isMoving() const;
    [[nodiscard]] const QueueModel& queue() const { return m_model; }
    [[nodiscard]] QList<QModelIndex> rowsInSight() const;
    /// Invalid while there is none. The current row, from which keys go on, need not be selected.
    [[nodiscard]] QModelIndex selectedRow() const;
    /// The buttons of a row, where they stand in the viewport; those of rows out of sight stand outside of it.
    [[nodiscard]] std::vector<ButtonPlace> buttonsOf(const QModelIndex& index) const;
    /// Does what a click on that button of the row does. The row may be gone when this returns.
    void run(const QModelIndex& index, RowButton button);
    /// What lies at a point of the viewport.
    [[nodiscard]] RowHit hitAt(QPoint point) const;
    [[nodiscard]] RowMenus& menus() { return *m_menus; }
    /// Past its neighbour.
    void moveGroup(const QModelIndex& index, bool isUp);
    /// Brings the first of the items that has a row to the top, or the header of its closed group. The selection stays.
    /// Nothing moves below a mouse that is down.
    void reveal(const std::vector<ItemId>& items);
    /// Selects the row of the item, or makes the header of its closed group the current row, and has it in sight.
    /// Nothing happens if the item has no row.
    void goTo(const ItemId& id);
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) override;
    void dataChanged(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) override;
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void setUp();
    void point(const QModelIndex& index, const RowHit& hit, bool isPressed);
    void pointNowhere();
    void followPointer();
    void notePointer(QPoint point);
    void pressRow(QMouseEvent* event);
    void selectPressed(const QModelIndex& index);
    void activate(const QModelIndex& index);
    void removeRow(const QModelIndex& index);

    QueueModel& m_model;
    RowCommands m_commands;
    QueueDelegate* m_delegate;
    GroupDrag* m_drag;
    std::unique_ptr<RowMenus> m_menus;
    std::unique_ptr<CountdownWake> m_countdowns;
    std::unique_ptr<RowMotion> m_motion;
    std::unique_ptr<PlaceKeeper> m_place;
    std::optional<QPoint> m_pointer;    ///< where it is, while it is above the rows
    QPersistentModelIndex m_pointedRow; ///< that it is on
    std::optional<RowButton> m_pointed;
    bool m_isPressed = false; ///< the mouse went down on that button and is not up yet
};

} // namespace vormel
