#pragma once

#include "model/ItemId.h"

#include <QBasicTimer>
#include <QListView>

namespace vormel {

class QueueDelegate;
class QueueModel;

/// The list of the queue: one selected row, smooth scrolling. Repaints only the rows that changed, lays out again only
/// when a height did, and keeps the selected item through a reset of the model.
class QueueView final : public QListView
{
    Q_OBJECT

public:
    /// The model must outlive the view.
    explicit QueueView(QueueModel& model, QWidget* parent = nullptr);

    /// Is an indicator turning?
    [[nodiscard]] bool isSpinning() const { return m_spinTimer.isActive(); }

protected:
    void dataChanged(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) override;
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    /// Rows on the screen, as the first and one behind the last.
    struct Span
    {
        int first = 0;
        int end = 0;
    };
    [[nodiscard]] Span visibleRows() const;
    [[nodiscard]] QList<QModelIndex> waitingRows() const;
    void turnIndicators();
    void rememberPlace();
    void returnToPlace();

    QueueModel& m_model;
    QueueDelegate* m_delegate;
    QBasicTimer m_spinTimer;
    ItemId m_currentItem; ///< while the model is being reset
    int m_scrollPlace = 0;
};

} // namespace vormel
