#include "ui/queue/rows/HeaderPresenter.h"

#include "text/ByteCount.h"
#include "ui/queue/rows/LackText.h"
#include "ui/queue/rows/RowPresenter.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr QStringView separator = u"·  ";

} // namespace

RowLines headerLines(const GroupTally& tally, const GroupLack& lack)
{
    RowLines lines;
    lines.setFlag(RowLine::progress, tally.downloading > 0 || tally.paused > 0 || tally.isStopped());
    lines.setFlag(RowLine::lack, !lack.isNothing());
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

void addLack(HeaderContent& content, const GroupLack& lack, AppLanguage language)
{
    if (lack.isNothing())
        return;
    content.lines.setFlag(RowLine::lack);
    content.lackText = lackText(lack, language);
    content.lackDetail = lackDetail(lack, language);
    content.canBeRebuilt = lack.rescue() == GroupLack::Rescue::enough;
    content.isLost = !content.canBeRebuilt && !lack.failed.empty();
}

QString summaryLine(const HeaderContent& content)
{
    QStringList parts{content.summaryText, content.partsText, content.sizeText};
    parts.removeAll(QString());
    return parts.join(u"  "_s);
}

QString accessibleText(const HeaderContent& content)
{
    QStringList parts{content.title,
                      content.summaryText,
                      content.partsText.mid(separator.size()),
                      content.sizeText.mid(separator.size()),
                      content.extractionText.mid(separator.size()),
                      content.lackText};
    parts << content.lackDetail.split(u'\n');
    parts.removeAll(QString());
    return parts.join(u", "_s);
}

QString copiedText(const HeaderContent& content)
{
    QStringList lines{content.title, content.lackText, content.lackDetail};
    lines.removeAll(QString());
    return lines.join(u'\n');
}

QString headerToolTip(const HeaderContent& content)
{
    QStringList lines{content.extractionText.mid(separator.size()), content.lackText, content.lackDetail};
    lines.removeAll(QString());
    if (lines.isEmpty())
        return {};
    lines.prepend(content.title);
    return plainToolTip(lines);
}

} // namespace vormel
