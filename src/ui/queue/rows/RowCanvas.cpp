#include "ui/queue/rows/RowCanvas.h"

#include "kit/FocusRing.h"
#include "kit/SpinnerArc.h"

#include <QPainter>
#include <QPainterPath>
#include <QTextLayout>
#include <QTextOption>

namespace vormel {

namespace {

QPalette::ColorGroup colorGroup(const QStyleOptionViewItem& option)
{
    return option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
}

/// How much of the text goes onto a first line of that width: whole words, unless these would leave most of it empty,
/// as links and paths do.
qsizetype firstLineOf(const QString& text, const QFont& font, int width)
{
    qsizetype length = 0;
    for (const QTextOption::WrapMode mode : {QTextOption::WordWrap, QTextOption::WrapAnywhere}) {
        QTextLayout layout(text, font);
        QTextOption option;
        option.setWrapMode(mode);
        layout.setTextOption(option);
        layout.beginLayout();
        QTextLine line = layout.createLine();
        line.setLineWidth(width);
        layout.endLayout();
        length = line.textLength();
        if (length >= text.size() || line.naturalTextWidth() > width / 2.0)
            break;
    }
    return length;
}

/// The text as at most two lines of that width, the second one elided.
QString brokenInTwo(const QString& text, const QFont& font, int width)
{
    const qsizetype first = firstLineOf(text, font, width);
    if (first >= text.size())
        return text;
    return text.left(first).trimmed() + QChar::LineSeparator +
           QFontMetrics(font).elidedText(text.mid(first).simplified(), Qt::ElideRight, width);
}

} // namespace

RowCanvas::RowCanvas(QPainter& painter, const QStyleOptionViewItem& option, const RowMetrics& metrics)
    : m_painter(painter)
    , m_option(option)
    , m_metrics(metrics)
    , m_theme(option.palette, colorGroup(option))
    , m_isSelected(option.state.testFlag(QStyle::State_Selected))
{
    m_painter.save();
    m_painter.setRenderHint(QPainter::Antialiasing);
}

RowCanvas::~RowCanvas()
{
    m_painter.restore();
}

QColor RowCanvas::color(Tint tint) const
{
    // No status colour is readable on every highlight, so a selected row is told apart by shapes and texts alone.
    return m_theme.color(m_isSelected ? Tint::highlightedText : tint);
}

/// The window's, but what is written from left to right stays so: its figures and full stops would change their places.
Qt::LayoutDirection RowCanvas::readingDirection(const QString& text) const
{
    return text.isRightToLeft() ? m_option.direction : Qt::LeftToRight;
}

void RowCanvas::background(int hairlineLeft) const
{
    constexpr int inset = 4;
    constexpr double corner = 6;
    const QRectF plate = QRectF(m_option.rect).adjusted(inset, 1.5, -inset, -1.5);
    if (m_isSelected || m_option.state.testFlag(QStyle::State_MouseOver)) {
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(m_theme.color(m_isSelected ? Tint::highlight : Tint::hover));
        m_painter.drawRoundedRect(plate, corner, corner);
    }
    if (!m_isSelected) {
        const QRect row = m_option.rect;
        const QRect hairline(hairlineLeft, row.bottom(), row.right() + 1 - RowMetrics::marginX - hairlineLeft, 1);
        m_painter.fillRect(QStyle::visualRect(m_option.direction, row, hairline), m_theme.color(Tint::hairline));
    }
    if (m_option.state.testFlag(QStyle::State_HasFocus))
        drawFocusRing(m_painter, plate.adjusted(1.5, 1.5, -1.5, -1.5), m_theme, corner - 1.5,
                      m_isSelected ? Tint::highlightedText : Tint::accent);
}

void RowCanvas::text(const QRect& rect, const QString& text, const QFont& font, Tint tint, Qt::TextElideMode elide,
                     Qt::Alignment alignment) const
{
    if (rect.isEmpty() || text.isEmpty())
        return;
    m_painter.setFont(font);
    m_painter.setPen(color(tint));
    const QString shown = QFontMetrics(font).elidedText(text, elide, rect.width());
    QTextOption place(QStyle::visualAlignment(m_option.direction, alignment));
    place.setWrapMode(QTextOption::NoWrap);
    place.setTextDirection(readingDirection(text));
    m_painter.drawText(rect, shown, place);
}

void RowCanvas::twoLines(const QRect& rect, const QString& text, Tint tint) const
{
    const QFont& font = m_metrics.captionFont;
    m_painter.setFont(font);
    m_painter.setPen(color(tint));
    QTextOption place(QStyle::visualAlignment(m_option.direction, Qt::AlignLeading | Qt::AlignVCenter));
    place.setWrapMode(QTextOption::NoWrap);
    place.setTextDirection(readingDirection(text));
    m_painter.drawText(rect, brokenInTwo(text, font, rect.width()), place);
}

void RowCanvas::track(const QRect& rect, const QRectF& filled, Tint tint) const
{
    const double corner = rect.height() / 2.0;
    QColor back = color(Tint::track);
    if (m_isSelected)
        back.setAlphaF(0.2F);
    QPainterPath shape;
    shape.addRoundedRect(rect, corner, corner);
    m_painter.fillPath(shape, back);
    QPainterPath part;
    part.addRoundedRect(filled, corner, corner);
    m_painter.fillPath(shape.intersected(part), color(tint));
}

void RowCanvas::bar(const QRect& rect, double share, Tint tint) const
{
    if (rect.isEmpty())
        return;
    QRectF filled = rect;
    // It begins in front of the bar, so that only its end is rounded.
    filled.setLeft(rect.left() - rect.height());
    filled.setRight(rect.left() + rect.width() * share);
    if (m_option.direction == Qt::RightToLeft)
        filled.moveLeft(rect.left() + rect.right() + 1 - filled.right());
    track(rect, share > 0 ? filled : QRectF(), tint);
}

void RowCanvas::endlessBar(const QRect& rect, Motion motion, Tint tint) const
{
    if (rect.isEmpty())
        return;
    constexpr int start = 120; // so that something is seen where nothing turns
    const double length = rect.width() * 0.3;
    QRectF filled = rect;
    filled.setWidth(length);
    filled.moveLeft(rect.left() - length + (rect.width() + length) * ((motion.spin + start) % 360) / 360);
    track(rect, filled, tint);
}

void RowCanvas::glyph(Glyph glyph, Tint tint, const QRect& rect) const
{
    if (rect.isEmpty())
        return;
    const qreal ratio = m_painter.device()->devicePixelRatioF();
    m_painter.drawPixmap(rect, glyphPixmap(glyph, color(tint), rect.height(), ratio));
}

void RowCanvas::spinner(const QRect& rect, Motion motion) const
{
    drawSpinner(m_painter, rect, color(Tint::secondary), motion.spin);
}

void RowCanvas::plate(const QRect& rect, bool isPressed) const
{
    constexpr double corner = 5;
    QColor fill = color(Tint::text);
    fill.setAlphaF(isPressed ? 0.20F : 0.10F);
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(fill);
    m_painter.drawRoundedRect(QRectF(rect).adjusted(1, 1, -1, -1), corner, corner);
}

void RowCanvas::buttons(const std::vector<ButtonPlace>& places, HotButton hot) const
{
    for (const ButtonPlace& place : places) {
        if (place.button == RowButton::retryExtraction)
            continue; // has a border and a text
        const bool isHot = hot.button == place.button;
        const ButtonLook look = buttonLook(place.button);
        if (isHot)
            plate(place.rect, hot.isPressed);
        const Tint hotTint = look.isDestructive ? Tint::red : look.tint == Tint::secondary ? Tint::text : look.tint;
        QRect square(0, 0, m_metrics.buttonGlyphSize, m_metrics.buttonGlyphSize);
        square.moveCenter(place.rect.center());
        glyph(look.glyph, isHot ? hotTint : look.tint, square);
    }
}

void RowCanvas::borderedButton(const ButtonPlace& place, const QString& text, HotButton hot) const
{
    constexpr double corner = 5;
    const int air = (place.rect.height() - m_metrics.captionHeight) / 2;
    if (hot.button == place.button)
        plate(place.rect, hot.isPressed);
    m_painter.setPen(QPen(color(Tint::tertiary), 1));
    m_painter.setBrush(Qt::NoBrush);
    m_painter.drawRoundedRect(QRectF(place.rect).adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
    const int size = m_metrics.smallIconSize - 2;
    const QRect icon = QRect(place.rect.left() + 8, place.rect.top() + (place.rect.height() - size) / 2, size, size);
    QRect words = place.rect.adjusted(8 + size + air, 0, -6, 0);
    glyph(buttonLook(place.button).glyph, Tint::text, QStyle::visualRect(m_option.direction, place.rect, icon));
    words = QStyle::visualRect(m_option.direction, place.rect, words);
    this->text(words, text, m_metrics.captionFont, Tint::text, Qt::ElideRight, Qt::AlignLeading | Qt::AlignVCenter);
}

} // namespace vormel
