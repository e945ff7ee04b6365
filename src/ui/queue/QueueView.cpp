#include "ui/queue/QueueView.h"

#include "ui/queue/QueueDelegate.h"
#include "ui/queue/QueueModel.h"

#include <QScrollBar>
#include <QTimerEvent>

namespace vormel {

QueueView::QueueView(QueueModel& model, QWidget* parent)
    : QListView(parent)
    , m_model(model)
    , m_delegate(new QueueDelegate(this))
{
    setObjectName(QStringLiteral("queueView"));
    setItemDelegate(m_delegate);
    setSelectionMode(SingleSelection);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(NoFrame);
    // Connected before the view itself listens, so that the place is known when it is about to be lost.
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, &QueueView::rememberPlace);
    setModel(&model);
    connect(&model, &QAbstractItemModel::modelReset, this, &QueueView::returnToPlace);
}

void QueueView::rememberPlace()
{
    m_currentItem = currentIndex().data(QueueModel::IdRole).value<ItemId>();
    m_scrollPlace = verticalScrollBar()->value();
}

void QueueView::returnToPlace()
{
    const QModelIndex current = m_model.indexOf(m_currentItem);
    if (!current.isValid())
        return;
    selectionModel()->setCurrentIndex(current, QItemSelectionModel::ClearAndSelect);
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(m_scrollPlace);
}

QueueView::Span QueueView::visibleRows() const
{
    const QModelIndex first = indexAt(QPoint(viewport()->width() / 2, 0));
    const QModelIndex last = indexAt(QPoint(viewport()->width() / 2, viewport()->height() - 1));
    return {first.isValid() ? first.row() : 0, last.isValid() ? last.row() + 1 : m_model.rowCount()};
}

void QueueView::dataChanged(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles)
{
    if (roles.isEmpty() || roles.contains(Qt::SizeHintRole)) {
        QListView::dataChanged(first, last, roles);
        return;
    }
    // QListView would lay out all rows again, and QAbstractItemView would repaint everything for more than one row.
    const Span visible = visibleRows();
    for (int row = qMax(first.row(), visible.first); row <= last.row() && row < visible.end; ++row) {
        const QModelIndex changed = m_model.index(row, 0);
        // NOLINTNEXTLINE(bugprone-parent-virtual-call): to pass over QListView is what this is about
        QAbstractItemView::dataChanged(changed, changed, roles);
    }
}

QList<QModelIndex> QueueView::waitingRows() const
{
    QList<QModelIndex> waiting;
    const Span visible = visibleRows();
    for (int row = visible.first; row < visible.end; ++row) {
        const QModelIndex index = m_model.index(row, 0);
        if (index.data(QueueModel::StatusRole).toInt() == DownloadStatus::resolving)
            waiting << index;
    }
    return waiting;
}

void QueueView::paintEvent(QPaintEvent* event)
{
    constexpr int stepMilliseconds = 60;
    QListView::paintEvent(event);
    const bool mayMove = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    if (!isSpinning() && mayMove && !waitingRows().isEmpty())
        m_spinTimer.start(stepMilliseconds, this);
}

void QueueView::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_spinTimer.timerId())
        turnIndicators();
    else
        QListView::timerEvent(event);
}

void QueueView::turnIndicators()
{
    constexpr int stepDegrees = 24;
    const QList<QModelIndex> waiting = waitingRows();
    if (waiting.isEmpty() || !isVisible()) {
        m_spinTimer.stop(); // painting starts it again
        return;
    }
    m_delegate->setSpin((m_delegate->spin() + stepDegrees) % 360);
    for (const QModelIndex& index : waiting)
        update(index);
}

} // namespace vormel
