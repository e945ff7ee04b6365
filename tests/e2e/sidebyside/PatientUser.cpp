#include "e2e/sidebyside/PatientUser.h"

#include "fixtures/EventLoop.h"
#include "model/SetName.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel::e2e {

using namespace std::chrono_literals;

PatientUser::PatientUser(Scene& scene)
    : m_scene(scene)
{
    scene.server().calmDown();
    scene.tools().letGo();
}

QStringList PatientUser::finishEverything()
{
    constexpr int longest = 3600; // seconds of the engine's clock
    for (int i = 0; i < longest && !isAllDone(); ++i) {
        nudge();
        // What is at work needs real time only, what waits for its next try the engine's only.
        if (!waitForWork())
            break;
        m_scene.clock().advance(1s);
    }
    return missing();
}

bool PatientUser::waitForWork()
{
    const auto isStill = [this] {
        m_scene.server().release();
        return !isAtWork() || m_scene.manager().questions().pendingExtractionPassword();
    };
    int changes = -1;
    // As long as anything changes it is at work.
    while (changes != m_scene.changes()) {
        changes = m_scene.changes();
        if (fixtures::waitUntil(isStill))
            return true;
    }
    return false;
}

void PatientUser::nudge()
{
    answerQuestions();
    m_scene.manager().commands().startAll();
    const std::vector<ItemPtr> items = m_scene.manager().items();
    for (const ItemPtr& item : items)
        nudge(*item);
    for (const PackedArchive& archive : m_scene.catalogue().archives())
        nudge(archive);
}

void PatientUser::nudge(DownloadItem& item)
{
    QueueCommands& commands = m_scene.manager().commands();
    if (item.status() == DownloadStatus::stopped)
        commands.startItems({m_scene.manager().item(item.id())});
    else if (item.status() == DownloadStatus::failed && m_scene.offerOf(item).habit != Habit::dead &&
             hasPatienceFor(item.filename()))
        commands.retryItem(item);
}

void PatientUser::nudge(const PackedArchive& archive)
{
    const ItemPtr item = m_scene.itemOf(archive);
    if (!item || isDone(archive) || item->status() != DownloadStatus::completed ||
        item->extractionStatus() == ExtractionStatus::extracting ||
        item->extractionStatus() == ExtractionStatus::repairing || !areVolumesThere(archive))
        return;
    if (hasPatienceFor(archive.name))
        m_scene.manager().commands().retryExtraction(item->id());
}

bool PatientUser::areVolumesThere(const PackedArchive& archive)
{
    const std::vector<ItemPtr>& items = m_scene.manager().items();
    return std::all_of(items.begin(), items.end(), [&](const ItemPtr& item) {
        return m_scene.offerOf(*item).archive != archive.name || isDone(*item);
    });
}

void PatientUser::answerQuestions()
{
    while (const auto question = m_scene.manager().questions().pendingExtractionPassword()) {
        const QString name = question->archiveName;
        m_scene.manager().questions().submitExtractionPassword(m_scene.catalogue().archives().value(name).password);
        fixtures::turnEventLoop();
    }
}

bool PatientUser::hasPatienceFor(const QString& what)
{
    constexpr int most = 5;
    return ++m_tries[what] <= most;
}

bool PatientUser::isAtWork()
{
    const std::vector<ItemPtr>& items = m_scene.manager().items();
    return std::any_of(items.begin(), items.end(), [](const ItemPtr& item) {
        return item->status() == DownloadStatus::downloading || item->status() == DownloadStatus::resolving ||
               item->extractionStatus() == ExtractionStatus::extracting ||
               item->extractionStatus() == ExtractionStatus::repairing;
    });
}

bool PatientUser::isAllDone()
{
    return !isAtWork() && missing().isEmpty();
}

bool PatientUser::isDone(const DownloadItem& item)
{
    // Recovery volumes are fetched where they are needed only.
    if (m_scene.offerOf(item).habit == Habit::dead)
        return item.status() == DownloadStatus::failed;
    return item.status() == DownloadStatus::completed || isRevName(item.filename());
}

bool PatientUser::isDone(const PackedArchive& archive)
{
    return m_scene.isGivenUp(archive) || m_scene.isUnpacked(archive);
}

QStringList PatientUser::missing()
{
    QStringList lines;
    for (const ItemPtr& item : m_scene.manager().items())
        if (!isDone(*item))
            lines << u"%1 is not complete: %2 %3"_s.arg(
                item->filename(), statusLabel(item->status(), AppLanguage::english), item->status().message());
    for (const PackedArchive& archive : m_scene.catalogue().archives()) {
        const ItemPtr item = m_scene.itemOf(archive);
        if (!isDone(archive))
            lines << u"%1 is not unpacked: %2"_s.arg(archive.name,
                                                     item ? item->extractionStatus().message() : u"not in the queue"_s);
    }
    return lines;
}

} // namespace vormel::e2e
