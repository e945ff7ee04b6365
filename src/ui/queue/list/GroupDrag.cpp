#include "ui/queue/list/GroupDrag.h"

#include "kit/Theme.h"
#include "ui/queue/list/DragPicture.h"

#include <QApplication>
#include <QPainter>
#include <QScrollBar>
#include <QTimerEvent>
#include <QTreeView>

#include <algorithm>

namespace vormel {

namespace {

QModelIndex groupOf(const QModelIndex& row)
{
    return row.parent().isValid() ? row.parent() : row;
}

} // namespace

GroupDrag::GroupDrag(QTreeView& view)
    : QObject(&view)
    , m_view(view)
{}

void GroupDrag::press(QPoint point)
{
    cancel();
    m_group = groupOf(m_view.indexAt(point));
    if (m_group.isValid())
        m_pressed = point;
}

bool GroupDrag::move(QPoint point)
{
    if (!m_pressed)
        return false;
    m_point = point;
    if (!isDragging() && (point - *m_pressed).manhattanLength() >= QApplication::startDragDistance())
        begin();
    if (isDragging())
        m_view.viewport()->update();
    return isDragging();
}

void GroupDrag::begin()
{
    constexpr int scrollMilliseconds = 16;
    if (!m_group.isValid())
        return; // it has left the queue
    m_picture = dragPicture(m_group.data().toString(), m_view.model()->hasChildren(m_group), m_view);
    m_view.viewport()->setCursor(Qt::ClosedHandCursor);
    m_scrolling.start(scrollMilliseconds, this);
}

bool GroupDrag::isDragged(const QModelIndex& row) const
{
    return isDragging() && m_group.isValid() && groupOf(row) == m_group;
}

/// Behind the pointer, or in front of it where that has no room.
QRect GroupDrag::pictureRect() const
{
    constexpr QPoint away(14, 12);
    const QRect area = m_view.viewport()->rect();
    QRect rect(m_point + away, m_picture.deviceIndependentSize().toSize());
    if (m_view.isRightToLeft() || rect.right() > area.right())
        rect.moveRight(m_point.x() - away.x());
    rect.moveLeft(qBound(0, rect.left(), qMax(0, area.width() - rect.width())));
    rect.moveTop(qBound(0, rect.top(), qMax(0, area.height() - rect.height())));
    return rect;
}

void GroupDrag::end()
{
    m_pressed.reset();
    if (!isDragging())
        return;
    m_picture = {};
    m_scrolling.stop();
    m_view.viewport()->unsetCursor();
    m_view.viewport()->update();
}

void GroupDrag::cancel()
{
    end();
    m_group = QModelIndex();
}

void GroupDrag::release()
{
    const bool isDropped = isDragging() && m_group.isValid(); // it may have left the queue
    const int row = m_group.row();
    const int target = destination();
    cancel();
    if (isDropped && target != row && target != row + 1)
        Q_EMIT dropped(row, target);
}

/// A group with all that is open below it.
QRect GroupDrag::blockOf(const QModelIndex& group) const
{
    QRect block = m_view.visualRect(group);
    const int members = m_view.isExpanded(group) ? group.model()->rowCount(group) : 0;
    if (members > 0)
        block.setBottom(m_view.visualRect(group.model()->index(members - 1, 0, group)).bottom());
    return block;
}

int GroupDrag::destination() const
{
    const QAbstractItemModel& model = *m_view.model();
    const int y = std::clamp(m_point.y(), 0, m_view.viewport()->height() - 1);
    const QModelIndex below = groupOf(m_view.indexAt(QPoint(1, y)));
    if (!below.isValid())
        return model.rowCount();
    return y < blockOf(below).center().y() ? below.row() : below.row() + 1;
}

int GroupDrag::lineY() const
{
    const QAbstractItemModel& model = *m_view.model();
    const int target = destination();
    if (target < model.rowCount())
        return m_view.visualRect(model.index(target, 0)).top();
    return blockOf(model.index(target - 1, 0)).bottom() + 1;
}

void GroupDrag::paint(QPainter& painter) const
{
    constexpr int margin = 8;
    constexpr int radius = 3;
    if (!isDragging() || !m_group.isValid())
        return;
    const QRect area = m_view.viewport()->rect();
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme theme(m_view.palette());
    const int y = std::clamp(lineY(), radius + 1, area.height() - radius - 1);
    const QColor ground = m_view.palette().color(QPalette::Base);
    painter.setBrush(ground);
    // With a rim, as what it lies on may have the same colour.
    for (const auto& [color, width] : {std::pair(ground, 5), std::pair(theme.color(Tint::accent), 2)}) {
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(margin + 2 * radius, y, area.width() - margin, y);
        painter.drawEllipse(QPoint(margin + radius, y), radius, radius);
    }
    painter.drawPixmap(pictureRect().topLeft(), m_picture);
}

/// How far the list goes with each step while the pointer is near an edge, faster the further out it is.
int GroupDrag::scrollStep() const
{
    constexpr int zone = 28;
    constexpr int slowness = 3;
    const int height = m_view.viewport()->height();
    const int above = std::max(0, zone - m_point.y());
    const int below = std::max(0, m_point.y() - (height - zone));
    return (std::min(below, 2 * zone) - std::min(above, 2 * zone)) / slowness;
}

void GroupDrag::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_scrolling.timerId() || scrollStep() == 0)
        return;
    QScrollBar& bar = *m_view.verticalScrollBar();
    bar.setValue(bar.value() + scrollStep());
    m_view.viewport()->update();
}

} // namespace vormel
