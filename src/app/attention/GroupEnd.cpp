#include "app/attention/GroupEnd.h"

#include "archive/workspace/CustomName.h"
#include "engine/groups/GroupNames.h"
#include "engine/questions/Questions.h"
#include "model/AppSettings.h"
#include "model/SetName.h"

#include <QFileInfo>

#include <algorithm>

namespace vormel {

namespace {

bool mayGoOn(const DownloadItem& item)
{
    const ExtractionStatus::Kind extraction = item.extractionStatus().kind();
    const bool isOver = item.status() == DownloadStatus::completed || item.status() == DownloadStatus::failed;
    return !isOver || item.recoveryCountdown() || extraction == ExtractionStatus::extracting ||
           extraction == ExtractionStatus::repairing;
}

QString folderOfExtracted(const DownloadItem& archive, const QString& customName, const AppSettings& settings)
{
    const std::optional<QString> chosen = settings.effectiveExtractionFolder();
    if (!customName.isEmpty())
        return chosen.value_or(settings.downloadFolderPath.value()) + u'/' + folderNameOf(customName);
    return chosen.value_or(QFileInfo(archive.localPath().value_or(QString())).path());
}

template <typename Condition>
const DownloadItem* firstOf(const DownloadGroup& group, Condition condition)
{
    const auto found = std::find_if(group.items.begin(), group.items.end(),
                                    [&condition](const ItemPtr& item) { return condition(*item); });
    return found == group.items.end() ? nullptr : found->get();
}

const DownloadItem* firstOf(const DownloadGroup& group, ExtractionStatus::Kind extraction)
{
    return firstOf(group, [extraction](const DownloadItem& item) { return item.extractionStatus() == extraction; });
}

} // namespace

std::optional<GroupEnd> endOf(const DownloadGroup& group, const GroupNames& names, const AppSettings& settings,
                              const Questions& questions)
{
    const auto isLocked = [&questions](const DownloadItem& item) { return questions.isPasswordAskedFor(item.id()); };
    if (firstOf(group, mayGoOn) || firstOf(group, isLocked))
        return std::nullopt;
    const QString name = names.displayName(group.id);
    // What could be extracted is whole, whatever became of some of its parts.
    if (const DownloadItem* const archive = firstOf(group, ExtractionStatus::done)) {
        const bool isSet = isSetMember(archive->filename());
        const QString customName = isSet ? names.customName(group.id) : QString();
        return GroupEnd{
            GroupEnd::extracted, name, folderOfExtracted(*archive, customName, settings), {}, archive->id()};
    }
    if (const DownloadItem* const archive = firstOf(group, ExtractionStatus::failed))
        return GroupEnd{GroupEnd::extractionFailed, name, {}, archive->extractionStatus().message(), archive->id()};
    const auto hasFailed = [](const DownloadItem& item) { return item.status() == DownloadStatus::failed; };
    if (const DownloadItem* const failed = firstOf(group, hasFailed))
        return GroupEnd{GroupEnd::downloadFailed, name, {}, failed->status().message(), failed->id()};
    const DownloadItem& first = *group.items.front();
    return GroupEnd{GroupEnd::downloaded, name, first.localPath().value_or(QString()), {}, first.id()};
}

} // namespace vormel
