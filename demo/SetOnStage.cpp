#include "demo/SetOnStage.h"

#include "demo/DemoScript.h"
#include "demo/DiskEvidence.h"
#include "model/DownloadPaths.h"
#include "model/SetName.h"

#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel::demo {

SetOnStage::SetOnStage(const Stage& stage, FilmSet set, RecoveryCount recoveryVolumesAskedFor)
    : m_stage(stage)
    , m_set(std::move(set))
    , m_recoveryVolumesAskedFor(std::move(recoveryVolumesAskedFor))
{
    QObject::connect(&m_stage.manager, &DownloadManager::itemChanged, &m_hearing,
                     [this](const ItemId& id, ItemField field) {
                         if (field == ItemField::extractionStatus)
                             note(m_stage.manager.item(id));
                     });
}

void SetOnStage::note(const ItemPtr& item)
{
    if (!item || setBaseName(item->filename()) != m_set.name)
        return;
    m_history.push_back(item->extractionStatus());
    if (item->extractionStatus() == ExtractionStatus::repairing && timesIn(ExtractionStatus::repairing) == 1)
        m_askedForTooEarly = m_recoveryVolumesAskedFor();
}

std::vector<ItemPtr> SetOnStage::items() const
{
    std::vector<ItemPtr> members;
    const std::vector<ItemPtr>& items = m_stage.manager.items();
    std::copy_if(items.begin(), items.end(), std::back_inserter(members),
                 [this](const ItemPtr& item) { return setBaseName(item->filename()) == m_set.name; });
    return members;
}

int SetOnStage::countRecoveryVolumes() const
{
    const std::vector<ItemPtr> members = items();
    return static_cast<int>(
        std::count_if(members.begin(), members.end(), [](const ItemPtr& item) { return isRevName(item->filename()); }));
}

int SetOnStage::count(DownloadStatus::Kind status) const
{
    const std::vector<ItemPtr> members = items();
    return static_cast<int>(std::count_if(members.begin(), members.end(),
                                          [status](const ItemPtr& item) { return item->status() == status; }));
}

double SetOnStage::share() const
{
    qint64 received = 0;
    for (const ItemPtr& item : items()) {
        // The end of a transfer leaves the bytes of its last tick.
        const bool isWhole = item->status() == DownloadStatus::completed;
        if (!isRevName(item->filename()))
            received += isWhole ? item->totalBytes() : item->bytesReceived();
    }
    return static_cast<double>(received) / static_cast<double>(m_set.film.size());
}

QString SetOnStage::progress() const
{
    constexpr double hundred = 100;
    return u"%1 volumes of %2 completed, %3 at work, %4 % of the bytes"_s.arg(count(DownloadStatus::completed))
        .arg(m_set.volumes.size())
        .arg(count(DownloadStatus::downloading))
        .arg(static_cast<int>(share() * hundred));
}

int SetOnStage::timesIn(ExtractionStatus::Kind status) const
{
    return static_cast<int>(std::count_if(m_history.begin(), m_history.end(),
                                          [status](const ExtractionStatus& each) { return each == status; }));
}

QString SetOnStage::folder() const
{
    return DownloadPaths(m_stage.folders.downloads).groupFolder(m_set.volumes.front().name);
}

QString SetOnStage::objectionToGroup() const
{
    const std::size_t visible = m_set.volumes.size() - static_cast<std::size_t>(m_set.recoveryVolumes);
    const std::vector<DownloadGroup> groups = m_stage.manager.visibleGroups();
    const auto group =
        std::find_if(groups.begin(), groups.end(), [this](const DownloadGroup& each) { return each.id == m_set.name; });
    if (group == groups.end())
        return u"there is no group of that name"_s;
    return unless(group->items.size() == visible && items().size() == m_set.volumes.size(),
                  u"%1 of %2 volumes in sight"_s.arg(group->items.size()).arg(items().size()));
}

QString SetOnStage::missingUnderWay() const
{
    constexpr double shareToShow = 0.1;
    const int atWork = count(DownloadStatus::downloading);
    if (atWork < 2)
        return u"%1 downloading instead of several"_s.arg(atWork);
    return unless(share() >= shareToShow, u"only a share of %1 is here"_s.arg(share()));
}

QString SetOnStage::objectionToRecovery() const
{
    return unless(m_askedForTooEarly == 0, u"%1 were asked for"_s.arg(m_askedForTooEarly));
}

QString SetOnStage::missingEnd() const
{
    if (timesIn(ExtractionStatus::done) > 0)
        return objectionToFolder();
    const bool isFailed = !m_history.empty() && m_history.back() == ExtractionStatus::failed;
    return isFailed ? m_history.back().message() : u"the archive is not unpacked"_s;
}

QString SetOnStage::objectionToFilm() const
{
    return objectionToFile(QDir(folder()).filePath(m_set.cleanName), m_set.film);
}

QString SetOnStage::objectionToFolder() const
{
    QStringList expected{m_set.cleanName};
    for (const FilmSet::Volume& volume : m_set.volumes) {
        if (!volume.isRecovery)
            expected << volume.name;
    }
    if (m_set.spoilt) // what the repair replaced
        expected << m_set.volumes[*m_set.spoilt].name + u".bad"_s;
    expected.sort();
    const QStringList found = filesBelow(folder());
    return unless(found == expected, u"found "_s + found.join(u", "_s));
}

QString SetOnStage::objectionToTrash() const
{
    const QDir trash(m_stage.trash);
    for (const FilmSet::Volume& volume : m_set.volumes) {
        if (volume.isRecovery && !trash.exists(volume.name))
            return u"%1 is not in %2"_s.arg(volume.name, trash.path());
    }
    return {};
}

} // namespace vormel::demo
