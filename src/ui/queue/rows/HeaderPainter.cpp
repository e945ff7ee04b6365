#include "ui/queue/rows/HeaderPainter.h"

#include "ui/queue/rows/HeaderPresenter.h"
#include "ui/queue/rows/RowPainter.h"

namespace vormel {

namespace {

Tint summaryTint(GroupTally::Summary summary)
{
    switch (summary) {
    case GroupTally::Summary::completed:
        return Tint::green;
    case GroupTally::Summary::error:
        return Tint::red;
    case GroupTally::Summary::downloading:
        return Tint::blue;
    case GroupTally::Summary::paused:
        return Tint::orange;
    case GroupTally::Summary::stopped:
    case GroupTally::Summary::resolving:
    case GroupTally::Summary::queued:
        return Tint::secondary;
    }
    Q_UNREACHABLE();
}

} // namespace

void paintHeader(const RowCanvas& canvas, const RowMetrics& metrics, const HeaderContent& content,
                 const HeaderLayout& layout, HotButton hot, bool isOpen)
{
    constexpr int triangleSize = 11;
    constexpr Qt::Alignment leading = Qt::AlignLeading | Qt::AlignVCenter;
    constexpr Qt::Alignment trailing = Qt::AlignTrailing | Qt::AlignVCenter;
    const QFont& caption = metrics.captionFont;
    QRect square(0, 0, triangleSize, triangleSize);
    square.moveCenter(layout.disclosure.center() + QPoint(1, 0));
    canvas.glyph(isOpen ? Glyph::chevronDown : Glyph::chevronRight, Tint::tertiary, square);
    canvas.glyph(Glyph::docOnDocFill, summaryTint(content.summary), layout.icon);
    canvas.text(layout.title, content.title, metrics.nameFont, Tint::text, Qt::ElideMiddle, leading);
    canvas.buttons(layout.buttons, hot);
    canvas.text(layout.summary, summaryLine(content), caption, Tint::secondary, Qt::ElideRight, leading);
    const Tint step = content.verification == VerificationResult::none ? extractionTint(content.extraction)
                                                                       : verificationTint(content.verification);
    canvas.text(layout.extraction, content.extractionText, caption, step, Qt::ElideRight, leading);
    canvas.bar(layout.progressBar, content.progress, Tint::blue);
    canvas.text(layout.bytes, content.byteText, caption, Tint::secondary, Qt::ElideRight, trailing);
    const Tint lackTint = content.isLost ? Tint::red : Tint::orange;
    canvas.glyph(content.canBeRebuilt ? Glyph::bandageFill : Glyph::exclamationmarkTriangleFill, lackTint,
                 layout.lackIcon);
    canvas.text(layout.lack, content.lackText, caption, lackTint, Qt::ElideRight, leading);
    canvas.text(layout.speed, content.speedText, caption, Tint::secondary, Qt::ElideRight, trailing);
}

} // namespace vormel
