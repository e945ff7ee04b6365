#include "ui/queue/RowPresenter.h"

#include "text/ByteCount.h"

#include <QStringList>

#include <algorithm>

namespace vormel {

namespace {

bool hasExtractionBar(const DownloadItem& item)
{
    return item.extractionStatus() == ExtractionStatus::extracting && item.extractionProgress() > 0;
}

double fraction(double value)
{
    return std::clamp(value, 0.0, 1.0);
}

} // namespace

RowLines rowLines(const DownloadItem& item)
{
    RowLines lines;
    lines.setFlag(RowLine::recovery, item.recoveryCountdown().has_value());
    lines.setFlag(RowLine::progress, item.status() == DownloadStatus::downloading);
    lines.setFlag(RowLine::extraction, !(item.extractionStatus() == ExtractionStatus::idle));
    return lines;
}

QString byteText(const DownloadItem& item)
{
    const QString received = byteCountText(item.bytesReceived());
    return item.totalBytes() > 0 ? received + QStringLiteral(" / ") + byteCountText(item.totalBytes()) : received;
}

QString recoveryText(const DownloadItem& item, AppLanguage language)
{
    if (!item.recoveryCountdown())
        return {};
    return pair(language, u"Recovery starts in ", u"Recupero tra ") + QString::number(*item.recoveryCountdown()) +
           QStringLiteral("s…");
}

QString extractionText(const DownloadItem& item, AppLanguage language)
{
    switch (item.extractionStatus().kind()) {
    case ExtractionStatus::idle:
        return {};
    case ExtractionStatus::extracting:
        if (hasExtractionBar(item))
            return QString::asprintf("%.0f%%", fraction(item.extractionProgress()) * 100);
        return pair(language, u"Checking / extracting…", u"Verifica / estrazione…");
    case ExtractionStatus::repairing:
        return pair(language, u"Repairing with .rev…", u"Riparazione con .rev…");
    case ExtractionStatus::done:
        return pair(language, u"Extracted", u"Estratto");
    case ExtractionStatus::failed:
        return pair(language, u"Extraction failed: ", u"Estrazione fallita: ") + item.extractionStatus().message();
    }
    Q_UNREACHABLE();
}

RowContent rowContent(const DownloadItem& item, AppLanguage language)
{
    RowContent content;
    content.lines = rowLines(item);
    content.status = item.status().kind();
    content.name = item.filename();
    content.statusText = statusLabel(item.status(), language);
    content.recoveryText = recoveryText(item, language);
    content.progress = fraction(item.progress());
    content.byteText = byteText(item);
    content.speedText = item.speedText();
    content.extraction = item.extractionStatus().kind();
    content.hasExtractionBar = hasExtractionBar(item);
    content.extractionProgress = fraction(item.extractionProgress());
    content.extractionText = extractionText(item, language);
    content.host = item.hostName();
    return content;
}

QString accessibleText(const RowContent& content)
{
    QStringList parts{content.name, content.statusText, content.recoveryText};
    if (content.lines.testFlag(RowLine::progress))
        parts << content.byteText << content.speedText;
    parts << content.extractionText << content.host;
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

QString rowToolTip(const RowContent& content)
{
    QStringList lines{content.name};
    if (content.status == DownloadStatus::failed)
        lines << content.statusText;
    if (content.extraction == ExtractionStatus::failed)
        lines << content.extractionText;
    // Names come from outside; as rich text they could be anything.
    return QStringLiteral("<p>") + lines.join(u'\n').toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")) +
           QStringLiteral("</p>");
}

} // namespace vormel
