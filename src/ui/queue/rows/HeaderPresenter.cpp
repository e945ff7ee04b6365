#include "ui/queue/rows/HeaderPresenter.h"

#include "text/ByteCount.h"
#include "ui/queue/rows/RowPresenter.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr QStringView separator = u"·  ";

} // namespace

RowLines headerLines(const GroupTally& tally)
{
    RowLines lines;
    lines.setFlag(RowLine::progress, tally.downloading > 0 || tally.paused > 0 || tally.isStopped());
    return lines;
}

HeaderContent headerContent(const GroupTally& tally, AppLanguage language)
{
    HeaderContent content;
    content.lines = headerLines(tally);
    content.summary = tally.summary();
    content.summaryText = tally.text(language);
    content.partsText = separator.toString() + QString::number(tally.items) + pair(language, u" parts", u" parti");
    if (tally.totalBytes > 0)
        content.sizeText = separator.toString() + byteCountText(tally.totalBytes);
    content.progress = tally.progress();
    content.byteText = progressText(tally.bytesReceived, tally.totalBytes);
    content.speedText = speedText(tally.speedBytesPerSec);
    return content;
}

void addExtraction(HeaderContent& content, const DownloadGroup& group, AppLanguage language)
{
    const std::vector<ItemPtr>& items = group.items;
    const auto verified = std::find_if(items.begin(), items.end(), [](const ItemPtr& item) {
        return item->verification().kind != VerificationResult::none;
    });
    const auto extracted = std::find_if(items.begin(), items.end(), [](const ItemPtr& item) {
        return item->extractionStatus() != ExtractionStatus::idle;
    });
    if (extracted != items.end()) {
        content.extraction = (*extracted)->extractionStatus().kind();
        content.extractionText = separator.toString() + extractionWords(**extracted, language);
        content.archiveCommand = archiveCommand(**extracted);
    } else if (std::all_of(items.begin(), items.end(),
                           [](const ItemPtr& item) { return item->status() == DownloadStatus::completed; })) {
        content.archiveCommand = archiveCommand(*items.front());
    }
    if (verified != items.end()) { // the later word
        content.verification = (*verified)->verification().kind;
        content.extractionText = separator.toString() + verificationText((*verified)->verification(), language);
    }
}

QString summaryLine(const HeaderContent& content)
{
    QStringList parts{content.summaryText, content.partsText, content.sizeText};
    parts.removeAll(QString());
    return parts.join(u"  "_s);
}

QString accessibleText(const HeaderContent& content)
{
    QStringList parts{content.title, content.summaryText, content.partsText.mid(separator.size()),
                      content.sizeText.mid(separator.size()), content.extractionText.mid(separator.size())};
    parts.removeAll(QString());
    return parts.join(u", "_s);
}

} // namespace vormel
