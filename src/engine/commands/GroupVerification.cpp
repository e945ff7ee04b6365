#include "engine/commands/GroupVerification.h"

#include "archive/pipeline/PostDownload.h"
#include "archive/tools/ArchiveExtractor.h"
#include "engine/commands/QueueCommands.h"
#include "model/SetName.h"
#include "platform/async/Spawn.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString nameOnDisk(const DownloadItem& item)
{
    return QFileInfo(item.localPath().value_or(QString())).fileName();
}

/// Of a test that blames no volume.
VerificationResult resultOf(const VolumeTest& tested)
{
    switch (tested.outcome) {
    case VolumeTest::Outcome::passwordNeeded:
        return {VerificationResult::passwordNeeded};
    case VolumeTest::Outcome::failed:
        return {VerificationResult::failed, 0, tested.reason};
    case VolumeTest::Outcome::sound:
    case VolumeTest::Outcome::damaged:
        break;
    }
    return {VerificationResult::sound};
}

/// Unless something else has become of the test meanwhile.
void tellProgress(DownloadItem& first, double share)
{
    VerificationResult result = first.verification();
    if (result.kind != VerificationResult::running)
        return;
    result.percent = qRound(share * 100);
    first.setVerification(std::move(result));
}

/// Ascending, each once.
std::vector<qint64> distinct(std::vector<qint64> numbers)
{
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

} // namespace

GroupVerification::GroupVerification(const ItemTable& table, ArchiveExtractor& extractor, QueueCommands& commands,
                                     PostDownload& postDownload)
    : m_table(table)
    , m_extractor(extractor)
    , m_commands(commands)
    , m_postDownload(postDownload)
{}

void GroupVerification::verifyGroup(const std::vector<ItemPtr>& items)
{
    const auto first =
        std::find_if(items.begin(), items.end(), [](const ItemPtr& item) { return isFirstVolume(nameOnDisk(*item)); });
    if (first == items.end())
        return;
    const QString archive = *(*first)->localPath();
    const auto isTested = [&archive](const RunPtr& run) { return run->archive == archive; };
    if (std::any_of(m_running.begin(), m_running.end(), isTested))
        return;
    if (m_postDownload.isWorkingOn((*first)->id())) {
        (*first)->setVerification({VerificationResult::busy});
        return;
    }
    spawn(verify(std::make_shared<const Run>(Run{items, *first, archive})));
}

void GroupVerification::fileIsGone(const ItemId& id)
{
    for (const RunPtr& run : m_running) {
        if (std::any_of(run->items.begin(), run->items.end(), [&id](const ItemPtr& item) { return item->id() == id; }))
            run->first->setVerification({});
    }
}

QCoro::Task<> GroupVerification::verify(RunPtr run)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    m_running.push_back(run);
    run->first->setVerification({VerificationResult::running});
    const VolumeTest tested = co_await test(run);
    if (lifetime.isOver())
        co_return;
    std::erase(m_running, run);
    // The set has been unpacked meanwhile, or a volume is on its way anew: what was seen is no longer true.
    if (run->first->verification().kind != VerificationResult::running)
        co_return;
    if (!tested.badVolumes.isEmpty()) {
        fetchAgain(*run, tested.badVolumes);
        co_return;
    }
    run->first->setVerification(resultOf(tested));
    extract(*run);
}

QCoro::Task<VolumeTest> GroupVerification::test(RunPtr run)
{
    const ArchiveExtractor::Progress onProgress = [first = std::weak_ptr(run->first)](double share) {
        if (const ItemPtr item = first.lock())
            tellProgress(*item, share);
    };
    VolumeTest tested;
    try {
        tested = co_await m_extractor.verify(run->archive, onProgress);
    } catch (const std::exception& error) {
        // Without a tool that can test, the extraction will tell.
        tested = {VolumeTest::Outcome::failed, {}, QString::fromUtf8(error.what())};
    }
    co_return tested;
}

std::vector<ItemPtr> GroupVerification::itemsLeft(const Run& run) const
{
    std::vector<ItemPtr> items = run.items;
    std::erase_if(items, [this](const ItemPtr& item) { return m_table.find(item->id()) != item; });
    return items;
}

void GroupVerification::extract(const Run& run)
{
    const std::vector<ItemPtr> items = itemsLeft(run);
    const auto next = std::find_if(items.begin(), items.end(), [](const ItemPtr& item) {
        return item->status() == DownloadStatus::completed && item->extractionStatus() == ExtractionStatus::idle;
    });
    if (next != items.end())
        m_postDownload.autoExtractAfterDownload((*next)->id());
}

void GroupVerification::fetchAgain(const Run& run, const QStringList& bad)
{
    std::vector<qint64> fetched;
    for (const ItemPtr& item : itemsLeft(run)) {
        // What failed with the bad volumes may be tried again when they are here anew.
        if (item->extractionStatus() == ExtractionStatus::failed)
            item->setExtractionStatus(ExtractionStatus::idle);
        const QString name = nameOnDisk(*item);
        if (!bad.contains(name, Qt::CaseInsensitive))
            continue;
        m_commands.redownloadItem(*item);
        fetched.push_back(partNumber(name));
    }
    // Last, as the changes above have taken the word away.
    VerificationResult result{VerificationResult::damaged, static_cast<int>(bad.size()), bad.join(u", "_s)};
    if (!fetched.empty()) {
        const auto count = static_cast<int>(fetched.size());
        result = {VerificationResult::fetchedAgain, count, {}, distinct(std::move(fetched))};
    }
    run.first->setVerification(result);
}

} // namespace vormel
