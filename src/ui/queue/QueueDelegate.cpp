#include "ui/queue/QueueDelegate.h"

#include "ui/queue/QueueModel.h"
#include "ui/queue/RowPainter.h"

namespace vormel {

const RowMetrics& QueueDelegate::metrics(const QFont& font) const
{
    if (!m_metrics || m_metrics->baseFont != font)
        m_metrics.emplace(font);
    return *m_metrics;
}

void QueueDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const RowMetrics& measures = metrics(option.font);
    const auto content = index.data(QueueModel::ContentRole).value<RowContent>();
    const RowLayout layout(measures, content, option.rect, option.direction);
    RowPainter(*painter, option, measures, m_spin).paint(content, layout);
}

QSize QueueDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const RowLines lines = RowLines::fromInt(index.data(QueueModel::LinesRole).value<RowLines::Int>());
    return {0, metrics(option.font).height(lines)};
}

} // namespace vormel
