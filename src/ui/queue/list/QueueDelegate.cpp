#include "ui/queue/list/QueueDelegate.h"

#include "ui/queue/rows/HeaderPainter.h"
#include "ui/queue/rows/RowPainter.h"
#include "ui/queue/tree/QueueModel.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

RowHit buttonAt(const std::vector<ButtonPlace>& places, QPoint point)
{
    const auto place = std::find_if(places.begin(), places.end(),
                                    [point](const ButtonPlace& candidate) { return candidate.rect.contains(point); });
    return place == places.end() ? RowHit{} : RowHit{RowHit::Part::button, place->button, place->rect};
}

/// Whether anything may move by itself in this style.
bool mayMove(const QStyleOptionViewItem& option)
{
    const QStyle* const style = option.widget ? option.widget->style() : nullptr;
    return style && style->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, option.widget) > 0;
}

/// How far the place is from the start of the row, as if it was read from left to right.
int startOf(const QRect& place, const QStyleOptionViewItem& option)
{
    return QStyle::visualRect(option.direction, option.rect, place).left();
}

QString extractionKey(const QString& barKey)
{
    return barKey + u"-extraction"_s;
}

} // namespace

QueueDelegate::QueueDelegate(const QueueModel& model, QObject* parent)
    : QAbstractItemDelegate(parent)
    , m_model(model)
    , m_glides(model.clock())
{}

const RowMetrics& QueueDelegate::metrics(const QFont& font) const
{
    if (!m_metrics || m_metrics->baseFont != font)
        m_metrics.emplace(font);
    return *m_metrics;
}

/// Of the bar of the transfer.
QString QueueDelegate::barKey(const QModelIndex& index) const
{
    const ItemPtr item = m_model.item(index);
    return item ? item->id().toString() : m_model.group(index).id;
}

bool QueueDelegate::isGliding(const QModelIndex& index) const
{
    const QString key = barKey(index);
    return m_glides.isGliding(key) || m_glides.isGliding(extractionKey(key));
}

void QueueDelegate::glide(RowContent& content, const QModelIndex& index, bool mayMove) const
{
    const BarGlides::Duration transferTime(mayMove ? 400 : 0);
    const BarGlides::Duration extractionTime(mayMove ? 300 : 0);
    if (content.lines.testFlag(RowLine::progress))
        content.progress = m_glides.value(barKey(index), content.progress, transferTime);
    if (content.extractionProgress)
        content.extractionProgress =
            m_glides.value(extractionKey(barKey(index)), *content.extractionProgress, extractionTime);
}

void QueueDelegate::glide(HeaderContent& content, const QModelIndex& index, bool mayMove) const
{
    const BarGlides::Duration transferTime(mayMove ? 400 : 0);
    if (content.lines.testFlag(RowLine::progress))
        content.progress = m_glides.value(barKey(index), content.progress, transferTime);
}

void QueueDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const RowMetrics& measures = metrics(option.font);
    const RowCanvas canvas(*painter, option, measures);
    const HotButton hot = m_hotIndex == index ? m_hot : HotButton{};
    if (m_model.isHeader(index)) {
        auto content = index.data(QueueModel::headerRole).value<HeaderContent>();
        glide(content, index, mayMove(option));
        const HeaderLayout layout(measures, content, option.rect, option.direction);
        canvas.background(startOf(layout.icon, option));
        paintHeader(canvas, measures, content, layout, hot, option.state.testFlag(QStyle::State_Open));
        return;
    }
    auto content = index.data(QueueModel::contentRole).value<RowContent>();
    m_countdowns.note(index.data(QueueModel::idRole).value<ItemId>(), content.staysUntil);
    glide(content, index, mayMove(option));
    const RowLayout layout(measures, content, option.rect, option.direction);
    canvas.background(startOf(layout.icon, option));
    paintRow(canvas, measures, content, layout, hot, m_motion);
}

QSize QueueDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const RowLines lines = RowLines::fromInt(index.data(QueueModel::linesRole).value<RowLines::Int>());
    return {0, metrics(option.font).height(lines)};
}

void QueueDelegate::setHot(const QModelIndex& index, HotButton hot)
{
    m_hotIndex = index;
    m_hot = hot;
}

std::vector<ButtonPlace> QueueDelegate::buttons(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const RowMetrics& measures = metrics(option.font);
    if (m_model.isHeader(index)) {
        const auto content = index.data(QueueModel::headerRole).value<HeaderContent>();
        return HeaderLayout(measures, content, option.rect, option.direction).buttons;
    }
    const auto content = index.data(QueueModel::contentRole).value<RowContent>();
    return RowLayout(measures, content, option.rect, option.direction).buttons;
}

RowHit QueueDelegate::hitTest(const QStyleOptionViewItem& option, const QModelIndex& index, QPoint point) const
{
    const RowMetrics& measures = metrics(option.font);
    if (!m_model.isHeader(index)) {
        const auto content = index.data(QueueModel::contentRole).value<RowContent>();
        return buttonAt(RowLayout(measures, content, option.rect, option.direction).buttons, point);
    }
    const auto content = index.data(QueueModel::headerRole).value<HeaderContent>();
    const HeaderLayout layout(measures, content, option.rect, option.direction);
    if (layout.disclosure.contains(point))
        return {RowHit::Part::disclosure, {}, layout.disclosure};
    if (layout.title.contains(point))
        return {RowHit::Part::title, {}, layout.title};
    return buttonAt(layout.buttons, point);
}

QString QueueDelegate::toolTip(const RowHit& hit, const QModelIndex& index) const
{
    const AppLanguage language = m_model.language();
    if (hit.isButton())
        return buttonText(hit.button, language);
    if (hit.part == RowHit::Part::title)
        return pair(language, u"Double-click to rename this group", u"Doppio clic per rinominare il gruppo");
    return index.data(Qt::ToolTipRole).toString();
}

bool QueueDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                              const QModelIndex& index)
{
    if (event->type() != QEvent::ToolTip)
        return QAbstractItemDelegate::helpEvent(event, view, option, index);
    const RowHit hit = hitTest(option, index, event->pos());
    const QRect rect = hit.rect.isEmpty() ? option.rect : hit.rect;
    QToolTip::showText(event->globalPos(), toolTip(hit, index), view->viewport(), rect);
    return true;
}

} // namespace vormel
