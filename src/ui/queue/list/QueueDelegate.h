#pragma once

#include "ui/queue/rows/BarGlides.h"
#include "ui/queue/rows/RowCanvas.h"
#include "ui/queue/rows/RowCountdowns.h"
#include "ui/queue/rows/RowHit.h"

#include <QAbstractItemDelegate>

#include <optional>

namespace vormel {

class QueueModel;

/// Draws the rows and headers of the queue from the roles of its model, and tells what of them lies under the pointer.
class QueueDelegate final : public QAbstractItemDelegate
{
    Q_OBJECT

public:
    /// The model must outlive the delegate.
    explicit QueueDelegate(const QueueModel& model, QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /// Only the height means something; rows are as wide as their view.
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

    /// Where the buttons of a row or header are.
    [[nodiscard]] std::vector<ButtonPlace> buttons(const QStyleOptionViewItem& option, const QModelIndex& index) const;
    [[nodiscard]] RowHit hitTest(const QStyleOptionViewItem& option, const QModelIndex& index, QPoint point) const;

    /// Is a bar of the row, as it was painted last, on its way to its value?
    [[nodiscard]] bool isGliding(const QModelIndex& index) const;
    void forgetUnseenBars() { m_glides.forgetUnseen(); }
    /// Of the rows as they were painted last.
    [[nodiscard]] RowCountdowns& countdowns() { return m_countdowns; }

    void setMotion(Motion motion) { m_motion = motion; }
    [[nodiscard]] Motion motion() const { return m_motion; }
    /// The one row that the pointer is on, and what it does to a button there.
    void setHot(const QModelIndex& index, HotButton hot);

private:
    [[nodiscard]] const RowMetrics& metrics(const QFont& font) const;
    [[nodiscard]] QString barKey(const QModelIndex& index) const;
    void glide(RowContent& content, const QModelIndex& index, bool mayMove) const;
    void glide(HeaderContent& content, const QModelIndex& index, bool mayMove) const;
    [[nodiscard]] QString toolTip(const RowHit& hit, const QModelIndex& index) const;

    const QueueModel& m_model;
    mutable std::optional<RowMetrics> m_metrics; ///< of the font that was asked for last
    mutable BarGlides m_glides;                  ///< moves on with each painting
    mutable RowCountdowns m_countdowns;
    Motion m_motion;
    QPersistentModelIndex m_hotIndex;
    HotButton m_hot;
};

} // namespace vormel
