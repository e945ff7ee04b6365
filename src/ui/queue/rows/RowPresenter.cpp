#include "ui/queue/rows/RowPresenter.h"

#include "archive/sources/ArchiveFormat.h"
#include "text/ByteCount.h"
#include "ui/queue/rows/PartNumbers.h"
#include "ui/queue/rows/RowCaptions.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

bool hasProgress(const DownloadItem& item)
{
    return item.extractionStatus() == ExtractionStatus::extracting && item.extractionProgress() > 0;
}

bool hasBar(const DownloadItem& item)
{
    return item.extractionStatus() == ExtractionStatus::extracting ||
           item.extractionStatus() == ExtractionStatus::repairing;
}

bool hasEndlessBar(const DownloadItem& item)
{
    return hasBar(item) && !hasProgress(item);
}

double fraction(double value)
{
    return std::clamp(value, 0.0, 1.0);
}

QString runningText(const VerificationResult& result, AppLanguage language)
{
    const QString text = pair(language, u"Verifying…", u"Verifica in corso…");
    return result.percent ? u"%1 %2%"_s.arg(text).arg(*result.percent) : text;
}

/// Has the whole label room on one line of the narrowest window, even in a large font? In the longer language, as
/// another one changes no heights.
bool isShort(const DownloadStatus& failure)
{
    constexpr qsizetype shortLabel = 40;
    return QStringView(u"Errore: ").size() + failure.message().size() <= shortLabel;
}

/// By their numbers where these are few.
QString fetchedAgainText(const VerificationResult& result, AppLanguage language)
{
    constexpr std::size_t maxNamed = 3;
    const std::vector<PartRange> parts = rangesOf(result.parts);
    if (parts.empty() || parts.size() > maxNamed)
        return pair(language, u"Verified — %1 damaged or missing parts are downloaded again",
                    u"Verificato — %1 parti danneggiate o mancanti vengono riscaricate")
            .arg(result.volumes);
    const QString text = result.parts.size() == 1
                             ? pair(language, u"Verified — part %1 is damaged or missing, and downloaded again",
                                    u"Verificato — la parte %1 è danneggiata o manca, e viene riscaricata")
                             : pair(language, u"Verified — parts %1 are damaged or missing, and downloaded again",
                                    u"Verificato — le parti %1 sono danneggiate o mancano, e vengono riscaricate");
    return text.arg(partNumbersText(parts, language));
}

} // namespace

RowLines rowLines(const DownloadItem& item)
{
    RowLines lines;
    lines.setFlag(RowLine::recovery, item.recoveryCountdown().has_value());
    lines.setFlag(RowLine::progress, item.status() == DownloadStatus::downloading);
    const bool isFailed = item.extractionStatus() == ExtractionStatus::failed;
    lines.setFlag(RowLine::extraction, !isFailed && item.extractionStatus() != ExtractionStatus::idle);
    lines.setFlag(RowLine::failure, isFailed);
    const bool hasError = item.status() == DownloadStatus::failed;
    lines.setFlag(RowLine::error, hasError);
    lines.setFlag(RowLine::longError, hasError && !isShort(item.status()));
    lines.setFlag(RowLine::verification, item.verification().kind != VerificationResult::none);
    return lines;
}

QString recoveryText(const DownloadItem& item, AppLanguage language)
{
    if (!item.recoveryCountdown())
        return {};
    return pair(language, u"Recovery starts in ", u"Recupero tra ") + QString::number(*item.recoveryCountdown()) +
           u"s…"_s;
}

QString extractionText(const DownloadItem& item, AppLanguage language)
{
    if (hasProgress(item))
        return QString::asprintf("%.0f%%", fraction(item.extractionProgress()) * 100);
    return extractionWords(item, language);
}

QString extractionWords(const DownloadItem& item, AppLanguage language)
{
    switch (item.extractionStatus().kind()) {
    case ExtractionStatus::idle:
        return {};
    case ExtractionStatus::extracting:
        if (item.awaitsExtractionTurn())
            return pair(language, u"Waiting for its turn to be extracted…", u"In attesa del turno di estrazione…");
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

QString verificationText(const VerificationResult& result, AppLanguage language)
{
    switch (result.kind) {
    case VerificationResult::none:
        return {};
    case VerificationResult::running:
        return runningText(result, language);
    case VerificationResult::sound:
        return pair(language, u"Verified — all parts are sound", u"Verificato — tutte le parti sono integre");
    case VerificationResult::fetchedAgain:
        return fetchedAgainText(result, language);
    case VerificationResult::damaged:
        return pair(language, u"Verified — damaged or missing, and not in the list: ",
                    u"Verificato — danneggiate o mancanti, e non nella lista: ") +
               result.detail;
    case VerificationResult::passwordNeeded:
        return pair(language, u"Not verified — the archive needs a password",
                    u"Non verificato — l'archivio richiede una password");
    case VerificationResult::busy:
        return pair(language, u"Not verified — the archive is being extracted",
                    u"Non verificato — l'archivio è in estrazione");
    case VerificationResult::failed:
        return pair(language, u"Verification failed: ", u"Verifica fallita: ") + result.detail;
    }
    Q_UNREACHABLE();
}

QString elapsedText(const DownloadItem& item, WallTime now)
{
    using std::chrono::seconds;
    if (!item.extractionStartedAt())
        return {};
    const auto passed = std::chrono::duration_cast<seconds>(now - *item.extractionStartedAt());
    const qint64 whole = std::max(passed, seconds(0)).count();
    return u"%1:%2"_s.arg(whole / 60).arg(whole % 60, 2, 10, QChar(u'0'));
}

std::optional<RowButton> archiveCommand(const DownloadItem& item)
{
    if (hasBar(item))
        return RowButton::stopExtraction;
    const bool canExtract = item.status() == DownloadStatus::completed &&
                            item.extractionStatus() == ExtractionStatus::idle && item.localPath() &&
                            formatOf(*item.localPath());
    return canExtract ? std::optional(RowButton::extract) : std::nullopt;
}

bool isMoving(const DownloadItem& item)
{
    return item.status() == DownloadStatus::resolving || hasEndlessBar(item);
}

RowContent rowContent(const DownloadItem& item, AppLanguage language, Moment now)
{
    RowContent content;
    content.lines = rowLines(item);
    content.status = item.status().kind();
    content.name = item.filename();
    content.statusText = statusLabel(item.status(), language);
    content.buttons = itemButtons(item.status().kind());
    content.recoveryText = recoveryText(item, language);
    content.progress = fraction(item.progress());
    content.byteText = progressText(item.bytesReceived(), item.totalBytes());
    content.speedText = item.speedText();
    content.extraction = item.extractionStatus().kind();
    content.hasExtractionBar = hasBar(item);
    if (hasProgress(item))
        content.extractionProgress = fraction(item.extractionProgress());
    if (hasEndlessBar(item) && !item.awaitsExtractionTurn())
        content.elapsedText = elapsedText(item, now.wall);
    if (content.lines.testFlag(RowLine::failure))
        content.retryText = buttonText(RowButton::retryExtraction, language);
    content.archiveCommand = archiveCommand(item);
    content.extractionText = extractionText(item, language);
    content.verification = item.verification().kind;
    content.verificationText = verificationText(item.verification(), language);
    content.host = item.hostName();
    content.waitText = waitText(item.wait(), language, now.steady);
    content.figuresText = figuresText(item, language);
    content.staysUntil = waitTextChangesAt(item.wait(), now.steady);
    return content;
}

QString accessibleText(const RowContent& content)
{
    QStringList parts{content.name, content.statusText, content.recoveryText};
    if (content.lines.testFlag(RowLine::progress))
        parts << content.byteText << content.speedText;
    parts << content.extractionText << content.verificationText << content.host << content.waitText
          << content.figuresText;
    parts.removeAll(QString());
    return parts.join(u", "_s);
}

QString copiedText(const DownloadItem& item, AppLanguage language)
{
    QStringList lines{item.filename()};
    if (item.status() == DownloadStatus::failed)
        lines << statusLabel(item.status(), language);
    if (item.extractionStatus() == ExtractionStatus::failed)
        lines << extractionWords(item, language);
    return lines.size() > 1 ? lines.join(u'\n') : item.originalURL().absoluteString();
}

QString plainToolTip(const QStringList& lines)
{
    // Names come from outside; as rich text they could be anything.
    return u"<p>"_s + lines.join(u'\n').toHtmlEscaped().replace(u'\n', u"<br>"_s) + u"</p>"_s;
}

QString rowToolTip(const RowContent& content)
{
    QStringList lines{content.name};
    if (content.status == DownloadStatus::failed)
        lines << content.statusText;
    if (content.extraction == ExtractionStatus::failed)
        lines << content.extractionText;
    if (content.lines.testFlag(RowLine::verification))
        lines << content.verificationText;
    QStringList captions{content.host, content.figuresText}; // a countdown would stand still here
    captions.removeAll(QString());
    if (!captions.isEmpty())
        lines << captions.join(u" · "_s);
    return plainToolTip(lines);
}

} // namespace vormel
