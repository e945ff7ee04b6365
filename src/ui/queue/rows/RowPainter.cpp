#include "ui/queue/rows/RowPainter.h"

namespace vormel {

namespace {

constexpr Qt::Alignment leading = Qt::AlignLeading | Qt::AlignVCenter;
constexpr Qt::Alignment trailing = Qt::AlignTrailing | Qt::AlignVCenter;

struct StatusIcon
{
    Glyph glyph;
    Tint tint;
};

StatusIcon statusIcon(DownloadStatus::Kind status)
{
    switch (status) {
    case DownloadStatus::queued:
    case DownloadStatus::resolving: // has an indicator instead
        return {Glyph::clock, Tint::secondary};
    case DownloadStatus::expanding:
        return {Glyph::archiveboxFill, Tint::orange};
    case DownloadStatus::downloading:
        return {Glyph::arrowDownCircleFill, Tint::blue};
    case DownloadStatus::paused:
        return {Glyph::pauseCircleFill, Tint::orange};
    case DownloadStatus::stopped:
        return {Glyph::stopCircleFill, Tint::secondary};
    case DownloadStatus::completed:
        return {Glyph::checkmarkCircleFill, Tint::green};
    case DownloadStatus::failed:
        return {Glyph::exclamationmarkCircleFill, Tint::red};
    }
    Q_UNREACHABLE();
}

Glyph extractionGlyph(ExtractionStatus::Kind extraction)
{
    if (extraction == ExtractionStatus::failed)
        return Glyph::exclamationmarkTriangleFill;
    return extraction == ExtractionStatus::repairing ? Glyph::bandageFill : Glyph::archiveboxFill;
}

void paintExtraction(const RowCanvas& canvas, const RowMetrics& metrics, const RowContent& content,
                     const RowLayout& layout, Motion motion)
{
    if (layout.extractionIcon.isEmpty())
        return;
    canvas.glyph(extractionGlyph(content.extraction), extractionTint(content.extraction), layout.extractionIcon);
    if (content.extraction == ExtractionStatus::failed) {
        canvas.twoLines(layout.extractionText, content.extractionText, Tint::red);
        return;
    }
    const bool isRepairing = content.extraction == ExtractionStatus::repairing;
    const Tint barTint = isRepairing ? Tint::orange : Tint::blue;
    const Tint textTint = extractionTint(content.extraction);
    if (content.extractionProgress)
        canvas.bar(layout.extractionBar, *content.extractionProgress, barTint);
    else
        canvas.endlessBar(layout.extractionBar, motion, barTint);
    canvas.text(layout.extractionText, content.extractionText, metrics.captionFont, textTint, Qt::ElideRight,
                content.extractionProgress ? trailing : leading);
    canvas.text(layout.elapsed, content.elapsedText, metrics.digitsFont, textTint, Qt::ElideRight, trailing);
}

void paintVerification(const RowCanvas& canvas, const RowMetrics& metrics, const RowContent& content,
                       const RowLayout& layout)
{
    const Tint tint = verificationTint(content.verification);
    canvas.glyph(Glyph::checkmarkSeal, tint, layout.verificationIcon);
    canvas.text(layout.verification, content.verificationText, metrics.captionFont, tint, Qt::ElideRight, leading);
}

void paintError(const RowCanvas& canvas, const RowMetrics& metrics, const RowContent& content, const RowLayout& layout)
{
    const QString words = content.statusText.simplified(); // what others wrote may have lines of its own
    if (content.lines.testFlag(RowLine::longError))
        canvas.twoLines(layout.error, words, Tint::red);
    else
        canvas.text(layout.error, words, metrics.captionFont, Tint::red, Qt::ElideRight, leading);
}

void paintCaptions(const RowCanvas& canvas, const RowMetrics& metrics, const RowContent& content,
                   const RowLayout& layout)
{
    const QFont& caption = metrics.captionFont;
    const QString dot(u'·');
    canvas.text(layout.host, content.host, caption, Tint::tertiary, Qt::ElideRight, leading);
    canvas.text(layout.waitDot, dot, caption, Tint::tertiary, Qt::ElideNone, Qt::AlignCenter);
    canvas.text(layout.wait, content.waitText, caption, Tint::secondary, Qt::ElideRight, leading);
    canvas.text(layout.figuresDot, dot, caption, Tint::tertiary, Qt::ElideNone, Qt::AlignCenter);
    canvas.text(layout.figures, content.figuresText, caption, Tint::secondary, Qt::ElideRight, leading);
}

} // namespace

Tint extractionTint(ExtractionStatus::Kind extraction)
{
    switch (extraction) {
    case ExtractionStatus::done:
        return Tint::green;
    case ExtractionStatus::failed:
        return Tint::red;
    case ExtractionStatus::repairing:
        return Tint::orange;
    case ExtractionStatus::idle:
    case ExtractionStatus::extracting:
        return Tint::secondary;
    }
    Q_UNREACHABLE();
}

Tint verificationTint(VerificationResult::Kind verification)
{
    switch (verification) {
    case VerificationResult::sound:
        return Tint::green;
    case VerificationResult::fetchedAgain:
    case VerificationResult::damaged:
    case VerificationResult::passwordNeeded:
        return Tint::orange;
    case VerificationResult::failed:
        return Tint::red;
    case VerificationResult::none:
    case VerificationResult::running:
    case VerificationResult::busy:
        return Tint::secondary;
    }
    Q_UNREACHABLE();
}

void paintRow(const RowCanvas& canvas, const RowMetrics& metrics, const RowContent& content, const RowLayout& layout,
              HotButton hot, Motion motion)
{
    const QFont& caption = metrics.captionFont;
    const StatusIcon icon = statusIcon(content.status);
    if (content.status == DownloadStatus::resolving)
        canvas.spinner(layout.icon, motion);
    else
        canvas.glyph(icon.glyph, icon.tint, layout.icon);
    canvas.text(layout.name, content.name, metrics.nameFont, Tint::text, Qt::ElideMiddle, leading);
    canvas.text(layout.status, content.statusText, caption, Tint::secondary, Qt::ElideRight, trailing);
    canvas.buttons(layout.buttons, hot);
    paintError(canvas, metrics, content, layout);
    canvas.glyph(Glyph::bandageFill, Tint::orange, layout.recoveryIcon);
    canvas.text(layout.recovery, content.recoveryText, caption, Tint::orange, Qt::ElideRight, leading);
    canvas.bar(layout.progressBar, content.progress, Tint::blue);
    canvas.text(layout.bytes, content.byteText, caption, Tint::secondary, Qt::ElideRight, trailing);
    canvas.text(layout.speed, content.speedText, caption, Tint::secondary, Qt::ElideRight, trailing);
    paintExtraction(canvas, metrics, content, layout, motion);
    if (content.lines.testFlag(RowLine::failure))
        canvas.borderedButton(layout.buttons.back(), content.retryText, hot);
    paintVerification(canvas, metrics, content, layout);
    paintCaptions(canvas, metrics, content, layout);
}

} // namespace vormel
