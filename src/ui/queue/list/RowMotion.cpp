#include "ui/queue/list/RowMotion.h"

#include "ui/queue/list/QueueDelegate.h"
#include "ui/queue/list/QueueView.h"
#include "ui/queue/tree/QueueModel.h"

#include <QStyle>

namespace vormel {

RowMotion::RowMotion(QueueView& view, QueueDelegate& delegate)
    : m_view(view)
    , m_delegate(delegate)
{}

void RowMotion::await()
{
    constexpr int stepMilliseconds = 40;
    constexpr int secondMilliseconds = 1000; // what counts goes on where nothing may turn
    if (isGoing() || movingRows().isEmpty())
        return;
    const bool mayTurn = m_view.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &m_view) > 0;
    m_timer.start(mayTurn ? stepMilliseconds : secondMilliseconds, this);
}

void RowMotion::timerEvent(QTimerEvent* /*event*/)
{
    constexpr int stepDegrees = 8;
    const QModelIndexList moving = movingRows();
    // A minimised window is visible to Qt, and is not painted.
    if (moving.isEmpty() || !m_view.isVisible() || m_view.window()->isMinimized()) {
        m_timer.stop(); // painting starts it again
        m_delegate.forgetUnseenBars();
        return;
    }
    m_delegate.setMotion({(m_delegate.motion().spin + stepDegrees) % 360});
    for (const QModelIndex& index : moving)
        m_view.update(index);
}

QModelIndexList RowMotion::movingRows() const
{
    QModelIndexList moving;
    for (const QModelIndex& row : m_view.rowsInSight()) {
        if (row.data(QueueModel::movingRole).toBool() || m_delegate.isGliding(row))
            moving << row;
    }
    return moving;
}

} // namespace vormel
