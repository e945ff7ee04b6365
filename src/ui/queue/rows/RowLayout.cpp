#include "ui/queue/rows/RowLayout.h"

#include <QFontMetrics>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Takes a small icon from the start of the line.
QRect takeSmallIcon(QRect& line, const RowMetrics& metrics, int height)
{
    constexpr int gap = 6;
    const QRect icon = centred(QRect(line.left(), line.top(), metrics.smallIconSize, height), metrics.smallIconSize);
    line.setLeft(icon.right() + 1 + gap);
    return icon;
}

int captionWidth(const RowMetrics& metrics, const QString& text)
{
    return QFontMetrics(metrics.captionFont).horizontalAdvance(text) + 1;
}

/// Nothing for a text that is not there.
int shownWidth(const RowMetrics& metrics, const QString& text)
{
    return text.isEmpty() ? 0 : captionWidth(metrics, text);
}

/// Of what can be seen of it in that room.
int elidedWidth(const RowMetrics& metrics, const QString& text, int room)
{
    return qMin(room, shownWidth(metrics, QFontMetrics(metrics.captionFont).elidedText(text, Qt::ElideRight, room)));
}

/// Does not change with each minute.
int elapsedWidth(const RowMetrics& metrics, const QString& text)
{
    const QFontMetrics digits(metrics.digitsFont);
    return qMax(digits.horizontalAdvance(text), digits.horizontalAdvance(u"00:00"_s)) + 1;
}

} // namespace

RowLayout::RowLayout(const RowMetrics& metrics, const RowContent& content, const QRect& row,
                     Qt::LayoutDirection direction)
{
    const int start = RowMetrics::gutter + (content.isMember ? RowMetrics::indent : 0);
    const QRect inner = row.adjusted(start, RowMetrics::marginY, -RowMetrics::marginX, -RowMetrics::marginY);
    const int firstHeight = metrics.firstHeight();
    icon = centred(QRect(inner.left(), inner.top(), metrics.iconSize, firstHeight), metrics.iconSize);
    const int textLeft = icon.right() + 1 + RowMetrics::gapX;
    const QRect column(textLeft, inner.top(), qMax(0, inner.right() + 1 - textLeft), inner.height());
    placeFirstLine(metrics, content, QRect(column.left(), column.top(), column.width(), firstHeight));
    LineCursor lines(column.adjusted(0, firstHeight, 0, 0), metrics.captionHeight);
    if (content.lines.testFlag(RowLine::error))
        error = lines.next(metrics.errorHeight(content.lines));
    if (content.lines.testFlag(RowLine::recovery)) {
        recovery = lines.next();
        recoveryIcon = takeSmallIcon(recovery, metrics, recovery.height());
    }
    if (content.lines.testFlag(RowLine::progress))
        placeProgress(metrics, lines.next());
    if (content.lines.testFlag(RowLine::extraction))
        placeExtraction(metrics, content, lines.next());
    if (content.lines.testFlag(RowLine::failure))
        placeFailure(metrics, content, lines.next(metrics.failureHeight()));
    if (content.lines.testFlag(RowLine::verification)) {
        verification = lines.next();
        verificationIcon = takeSmallIcon(verification, metrics, verification.height());
    }
    placeCaptions(metrics, content, lines.next());
    for (QRect* rect : all()) {
        if (!rect->isEmpty())
            *rect = QStyle::visualRect(direction, row, *rect);
    }
}

void RowLayout::placeFirstLine(const RowMetrics& metrics, const RowContent& content, QRect line)
{
    // The name may have what buttons and status leave, and never less than a good half of the rest of the line.
    constexpr double minShareOfName = 0.55;
    buttons = placeButtons(content.buttons, metrics, line);
    if (content.lines.testFlag(RowLine::error)) {
        name = centred(line, metrics.nameHeight);
        return;
    }
    const int available = qMax(0, line.width() - RowMetrics::gapX);
    const int nameWanted = QFontMetrics(metrics.nameFont).horizontalAdvance(content.name) + 1;
    const int nameKept = qMin(nameWanted, static_cast<int>(available * minShareOfName));
    status = takeEnd(line, qMin(captionWidth(metrics, content.statusText), available - nameKept));
    name = centred(line, metrics.nameHeight);
}

void RowLayout::placeProgress(const RowMetrics& metrics, const QRect& line)
{
    const FigurePlaces places = placeFigures(metrics, line, metrics.byteWidth);
    progressBar = places.bar;
    bytes = places.bytes;
    speed = places.speed;
}

void RowLayout::placeExtraction(const RowMetrics& metrics, const RowContent& content, QRect line)
{
    extractionIcon = takeSmallIcon(line, metrics, line.height());
    if (!content.hasExtractionBar) {
        extractionText = line;
        return;
    }
    if (content.extractionProgress) {
        extractionText = takeEnd(line, captionWidth(metrics, u"100%"_s));
    } else {
        if (!content.elapsedText.isEmpty())
            elapsed = takeEnd(line, elapsedWidth(metrics, content.elapsedText));
        extractionText = line;
        extractionText.setWidth(qMin(captionWidth(metrics, content.extractionText), line.width() * 2 / 3));
        line.setLeft(extractionText.right() + 1 + RowMetrics::gapX);
    }
    extractionBar = centred(line, metrics.barHeight);
}

void RowLayout::placeFailure(const RowMetrics& metrics, const RowContent& content, QRect line)
{
    constexpr int air = 8; // around the button's glyph and text
    extractionIcon = takeSmallIcon(line, metrics, line.height());
    const int width = captionWidth(metrics, content.retryText) + metrics.smallIconSize + 2 * air + air / 2;
    const QRect end = takeEnd(line, qMin(width, line.width() / 2));
    buttons.push_back({RowButton::retryExtraction, centred(end, qMin(line.height(), metrics.captionHeight + air))});
    extractionText = line;
}

/// Host, wait and figures, one behind the other. The wait is not cut as long as it alone has room, and half a figure
/// would be a wrong one, so figures are there as a whole or not at all. The host takes what they leave.
void RowLayout::placeCaptions(const RowMetrics& metrics, const RowContent& content, const QRect& line)
{
    const int waitWidth = qMin(shownWidth(metrics, content.waitText), line.width());
    int room = line.width() - waitWidth - (waitWidth > 0 ? metrics.dotWidth : 0);
    int figuresWidth = shownWidth(metrics, content.figuresText);
    if (figuresWidth + metrics.dotWidth > room)
        figuresWidth = 0;
    room -= figuresWidth > 0 ? figuresWidth + metrics.dotWidth : 0;
    const bool isHostWorthIt = room >= qMin(shownWidth(metrics, content.host), captionWidth(metrics, u"mmmm…"_s));
    CaptionCursor captions(line, metrics.dotWidth);
    host = captions.next(isHostWorthIt ? elidedWidth(metrics, content.host, room) : 0, nullptr);
    wait = captions.next(waitWidth, &waitDot);
    figures = captions.next(figuresWidth, &figuresDot);
}

std::vector<QRect*> RowLayout::all()
{
    std::vector<QRect*> rects{
        &icon,         &name,  &status,         &error,         &recoveryIcon,   &recovery, &progressBar,
        &bytes,        &speed, &extractionIcon, &extractionBar, &extractionText, &elapsed,  &verificationIcon,
        &verification, &host,  &waitDot,        &wait,          &figuresDot,     &figures};
    for (ButtonPlace& button : buttons)
        rects.push_back(&button.rect);
    return rects;
}

std::vector<QRect> RowLayout::shown() const
{
    return notEmpty(RowLayout(*this).all());
}

} // namespace vormel
