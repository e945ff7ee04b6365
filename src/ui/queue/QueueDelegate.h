#pragma once

#include "ui/queue/RowMetrics.h"

#include <QAbstractItemDelegate>

#include <optional>

namespace vormel {

/// Draws the rows of the queue from the roles of QueueModel.
class QueueDelegate final : public QAbstractItemDelegate
{
    Q_OBJECT

public:
    using QAbstractItemDelegate::QAbstractItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /// Only the height means something; rows are as wide as their view.
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    /// Turns the indicator of the rows that wait, in degrees.
    void setSpin(int degrees) { m_spin = degrees; }
    [[nodiscard]] int spin() const { return m_spin; }

private:
    [[nodiscard]] const RowMetrics& metrics(const QFont& font) const;

    mutable std::optional<RowMetrics> m_metrics; ///< of the font that was asked for last
    int m_spin = 0;
};

} // namespace vormel
