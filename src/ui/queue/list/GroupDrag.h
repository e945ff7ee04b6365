#pragma once

#include <QBasicTimer>
#include <QObject>
#include <QPersistentModelIndex>
#include <QPixmap>

#include <optional>

class QPainter;
class QTreeView;

namespace vormel {

/// Drags a group of the list with the mouse: a small picture of it goes beside the pointer, a line shows where
/// it would land, and the list scrolls near its edges. The view passes its mouse events on. The view must outlive it.
class GroupDrag final : public QObject
{
    Q_OBJECT

public:
    explicit GroupDrag(QTreeView& view);

    /// The mouse went down on a row that may be dragged.
    void press(QPoint point);
    /// True once it has gone far enough to drag.
    bool move(QPoint point);
    void release();
    void cancel();

    /// Is the mouse down on a row, dragging it or not yet?
    [[nodiscard]] bool isPressed() const { return m_pressed.has_value(); }
    [[nodiscard]] bool isDragging() const { return !m_picture.isNull(); }
    /// Is this row among those that are being dragged?
    [[nodiscard]] bool isDragged(const QModelIndex& row) const;
    /// Where the picture is in the viewport.
    [[nodiscard]] QRect pictureRect() const;
    /// In front of which group it would land; their number for the end of the list.
    [[nodiscard]] int destination() const;
    /// On top of the rows.
    void paint(QPainter& painter) const;

Q_SIGNALS:
    /// To be put in front of the group that stands at the destination.
    void dropped(int row, int destination);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void begin();
    void end();
    [[nodiscard]] QRect blockOf(const QModelIndex& group) const;
    [[nodiscard]] int lineY() const;
    [[nodiscard]] int scrollStep() const;

    QTreeView& m_view;
    std::optional<QPoint> m_pressed; ///< while the mouse is down on a row
    QPoint m_point;
    QPersistentModelIndex m_group;
    QPixmap m_picture;
    QBasicTimer m_scrolling;
};

} // namespace vormel
