#include "engine/QueueScene.h"
#include "engine/SavedQueue.h"
#include "engine/queue/QueueRecords.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

void nothing(QueueScene& /*scene*/) {}

constexpr bool yes = true;
constexpr bool no = false;
constexpr std::nullopt_t either = std::nullopt;

/// What can happen to a queue.
struct Event
{
    const char* name;
    void (*prepare)(QueueScene& scene);
    void (*happen)(QueueScene& scene);
    std::optional<bool> saves;
    std::optional<bool> startsWhatWaits;
};

const std::vector<Link> oneLink{link(u"http://h/1.bin"_s)};
const std::vector<Link> twoHosts{link(u"http://h/1.bin"_s), link(u"http://i/1.bin"_s)};

const Event transferEvents[] = {
    {"AnAnswerComes",
     [](QueueScene& s) {
         s.add();
         s.commands().startItems({s.item});
         turnEventLoop();
     },
     [](QueueScene& s) {
         s.server().head(200, {{"Content-Length", "6"}});
     },
     yes, either},
    {"DataCome", [](QueueScene& s) { s.run(); },
     [](QueueScene& s) {
         s.engine.clock.advance(500ms);
         s.server().data("d");
     },
     no, no},
    {"AFileIsComplete",
     [](QueueScene& s) {
         s.run();
         s.server().data("def");
         turnEventLoop();
     },
     [](QueueScene& s) { s.server().finish(); }, yes, yes},
    {"AFileIsThereAlready",
     [](QueueScene& s) {
         s.add();
         s.layFile(u"x.bin"_s);
     },
     [](QueueScene& s) { s.commands().startItems({s.item}); }, yes, yes},
    {"APageCameInstead",
     [](QueueScene& s) {
         s.add();
         s.commands().startItems({s.item});
         turnEventLoop();
     },
     [](QueueScene& s) {
         s.server().head(200, {{"Content-Type", "text/html"}});
         s.server().finish();
     },
     either, yes},
    {"AConnectionIsLost", [](QueueScene& s) { s.run(); },
     [](QueueScene& s) {
         s.loseConnection();
         s.engine.clock.advance(2s);
     },
     either, yes},
    {"AConnectionIsLostForGood",
     [](QueueScene& s) {
         s.run();
         s.spendAllTries();
     },
     [](QueueScene& s) { s.loseConnection(); }, either, yes},
    {"AFileIsShort",
     [](QueueScene& s) {
         s.run();
         s.loseConnection();
         s.engine.clock.advance(2s);
     },
     [](QueueScene& s) { s.cutShort(); }, either, yes},
    {"AFileIsShortForGood",
     [](QueueScene& s) {
         s.run();
         s.spendAllTries();
     },
     [](QueueScene& s) { s.cutShort(); }, either, yes},
    {"AFileCannotBeMoved",
     [](QueueScene& s) {
         s.layFile(u"m"_s);
         s.add(u"http://h/get"_s);
         s.commands().startItems({s.item});
         turnEventLoop();
         s.server().head(200, {{"Content-Disposition", "filename=m.part1.rar"}});
         turnEventLoop();
     },
     [](QueueScene& s) { s.server().finish(); }, either, yes},
    {"AStartFails",
     [](QueueScene& s) {
         s.add();
         s.engine.settings().downloadFolderPath.set(s.layFile(u"file"_s));
     },
     [](QueueScene& s) { s.commands().startItems({s.item}); }, either, yes},
    {"AResolveFails", [](QueueScene& s) { s.add(premiumLink); },
     [](QueueScene& s) { s.commands().startItems({s.item}); }, either, yes},
    {"ALoginIsNeeded", [](QueueScene& s) { s.resolve(); },
     [](QueueScene& s) { s.log->resolves[1].answer->deliver(loginRequired(SupportedHost::filestore)); }, either, yes},
    {"ALoginEndsWell", [](QueueScene& s) { s.signInFirst(); },
     [](QueueScene& s) { s.engine.manager().questions().loginSucceeded(); }, either, yes},
    {"ALoginIsCancelled", [](QueueScene& s) { s.signInFirst(); },
     [](QueueScene& s) { s.engine.manager().questions().cancelLogin(); }, either, no},
    {"ARecoveryVolumeIsFoundByResolving", [](QueueScene& s) { s.resolve(); },
     [](QueueScene& s) { answerWithAddress(s.log->resolves[1], u"http://h/m.part1.rev"_s); }, either, yes},
    {"ARecoveryVolumeIsHeldBackAfterAll",
     [](QueueScene& s) {
         s.engine.settings().downloadRevFiles.set(true);
         s.add(u"http://h/m.part1.rar"_s, DownloadStatus::stopped);
         s.resolve(u"https://filestore.example/f/m.part1.rev"_s);
         s.engine.settings().downloadRevFiles.set(false);
     },
     [](QueueScene& s) { answerWithAddress(s.log->resolves[1], u"http://h/opaque"_s); }, either, yes},
};

const Event intakeEvents[] = {
    {"LinksAreAdded", nothing, [](QueueScene& s) { s.engine.manager().addURLs(oneLink, std::nullopt); }, yes, yes},
    {"DirectLinksAreAdded", nothing, [](QueueScene& s) { s.engine.manager().addDirectURLs(oneLink); }, yes, yes},
    {"AContainerIsRead", [](QueueScene& s) { s.openContainer(); }, [](QueueScene& s) { s.answerContainer(oneLink); },
     yes, yes},
    {"AHostIsChosen",
     [](QueueScene& s) {
         s.openContainer();
         s.answerContainer(twoHosts);
     },
     [](QueueScene& s) { s.engine.manager().questions().confirmHostSelection(oneLink); }, yes, yes},
    {"ACaptchaIsSolved",
     [](QueueScene& s) {
         s.openContainer();
         s.answerContainer(ContainerError::captchaRequired());
     },
     [](QueueScene& s) { s.engine.manager().questions().addCaptchaLinks(oneLink); }, yes, yes},
    {"AContainerFails", [](QueueScene& s) { s.openContainer(); },
     [](QueueScene& s) { s.answerContainer(ContainerError::noLinksFound()); }, no, no},
    {"TwoLinksTurnOutToBeOneFile",
     [](QueueScene& s) {
         s.engine.manager().accounts().set({account(SupportedHost::filestore)});
         s.engine.add({premiumLink, u"https://filestore.example/f/y"_s});
         answerWithAddress(s.log->resolves[0], u"http://h/1.bin"_s, u"1.bin"_s);
         turnEventLoop();
     },
     [](QueueScene& s) { answerWithAddress(s.log->resolves[1], u"http://h/2"_s, u"1.BIN"_s); }, yes, either},
};

const Event commandEvents[] = {
    {"PausedByHand", [](QueueScene& s) { s.run(); }, [](QueueScene& s) { s.commands().pauseItems({s.item}); }, no, no},
    {"AllPaused", [](QueueScene& s) { s.run(); }, [](QueueScene& s) { s.engine.manager().commands().pauseAll(); }, no,
     either},
    {"Resumed", [](QueueScene& s) { s.add(); }, [](QueueScene& s) { s.commands().resumeItem(*s.item); }, no, yes},
    {"StartedByHand",
     [](QueueScene& s) {
         s.add();
         s.engine.settings().maxConcurrentDownloads.set(2);
     },
     [](QueueScene& s) { s.commands().startItems({s.item}); }, no, yes},
    {"AllStarted", [](QueueScene& s) { s.add(); }, [](QueueScene& s) { s.engine.manager().commands().startAll(); }, no,
     yes},
    {"Stopped", [](QueueScene& s) { s.run(); }, [](QueueScene& s) { s.commands().stopItems({s.item}); }, yes, yes},
    {"Retried", [](QueueScene& s) { s.add(directLink, DownloadStatus::failure({})); },
     [](QueueScene& s) { s.commands().retryItem(*s.item); }, no, yes},
    {"FetchedAgain",
     [](QueueScene& s) {
         s.layFile(u"x.bin"_s);
         s.add();
     },
     [](QueueScene& s) { s.commands().redownloadItem(*s.item); }, yes, yes},
    {"ResyncedWithItsFile",
     [](QueueScene& s) {
         s.add();
         s.layFile(u"x.bin"_s);
     },
     [](QueueScene& s) { s.commands().resyncItems({s.item}); }, yes, yes},
    {"ResyncedWithoutItsFile", [](QueueScene& s) { s.add(directLink, DownloadStatus::completed); },
     [](QueueScene& s) { s.commands().resyncItems({s.item}); }, yes, yes},
    {"Removed", [](QueueScene& s) { s.run(); }, [](QueueScene& s) { s.commands().removeItems({s.item->id()}); }, yes,
     yes},
    {"RemovedAsAGroup", [](QueueScene& s) { s.add(u"http://h/m.part1.rar"_s); },
     [](QueueScene& s) { s.commands().removeGroup(u"m"_s); }, yes, yes},
    {"CompletedOnesCleared", [](QueueScene& s) { s.add(directLink, DownloadStatus::completed); },
     [](QueueScene& s) { s.engine.manager().commands().clearCompleted(); }, yes, no},
    {"ExtractedOnesCleared",
     [](QueueScene& s) {
         s.add();
         s.item->setExtractionStatus(ExtractionStatus::done);
     },
     [](QueueScene& s) { s.engine.manager().commands().clearExtracted(); }, yes, either},
    {"Reordered", [](QueueScene& s) { s.add(); },
     [](QueueScene& s) {
         s.commands().moveGroups({1}, 0, {u"waiting.bin"_s, u"x.bin"_s});
     },
     yes, no},
    {"RecoveryVolumesReleased", [](QueueScene& s) { s.laySetWithRecoveryVolume(); },
     [](QueueScene& s) { s.engine.manager().commands().retryWithRevFiles({s.item}); }, yes, yes},
    {"TheProgramEnds",
     [](QueueScene& s) {
         s.run();
         s.item->setFilename(u"told.bin"_s);
     },
     [](QueueScene& s) { s.engine.manager().shutDown(); }, yes, either},
    {"RecoveryVolumesSwitchedOn", nothing, [](QueueScene& s) { s.engine.settings().downloadRevFiles.set(true); }, no,
     yes},
    {"TheLimitRaised", nothing, [](QueueScene& s) { s.engine.settings().maxConcurrentDownloads.set(3); }, no, no},
};

class QueueEvent : public ::testing::TestWithParam<Event>
{
protected:
    void prepare()
    {
        GetParam().prepare(scene);
        turnEventLoop();
    }
    void happen()
    {
        GetParam().happen(scene);
        turnEventLoop();
    }
    /// What was saved since the last call, or nothing.
    [[nodiscard]] std::string takeSaved()
    {
        scene.engine.flush();
        std::string saved = scene.engine.sandbox.read(queueFile).toStdString();
        QFile::remove(scene.engine.sandbox.path(queueFile));
        return saved;
    }

    /// What a save would have to write now.
    [[nodiscard]] std::string toBeSaved()
    {
        const DownloadPaths paths(scene.engine.settings().downloadFolderPath.value());
        std::vector<std::shared_ptr<const QueueRecord>> records;
        for (const ItemPtr& item : scene.engine.manager().items())
            if (auto record = encodeRecord(*item, paths))
                records.push_back(std::move(record));
        return encodeQueue(records).toStdString();
    }

    QueueScene scene;
};

class SavingEvent : public QueueEvent
{};
class StartingEvent : public QueueEvent
{};

std::vector<Event> eventsThatTell(std::optional<bool> Event::*what)
{
    std::vector<Event> events;
    for (const std::span<const Event> table :
         {std::span<const Event>(transferEvents), std::span<const Event>(intakeEvents),
          std::span<const Event>(commandEvents)})
        std::copy_if(table.begin(), table.end(), std::back_inserter(events),
                     [&](const Event& event) { return event.*what; });
    return events;
}

std::string nameOf(const ::testing::TestParamInfo<Event>& row)
{
    return row.param.name;
}

} // namespace

TEST_P(SavingEvent, IsFollowedByASaveOfAllThatItChangedIfTold)
{
    prepare();
    (void)takeSaved();
    happen();
    EXPECT_EQ(takeSaved(), *GetParam().saves ? toBeSaved() : std::string());
}

TEST_P(StartingEvent, IsFollowedByALookAtWhatWaitsIfTold)
{
    prepare();
    scene.waiting->setStatus(DownloadStatus::queued);
    turnEventLoop();
    ASSERT_EQ(scene.waiting->status(), DownloadStatus::queued);
    happen();
    EXPECT_EQ(scene.waiting->status() != DownloadStatus::queued, *GetParam().startsWhatWaits);
}

INSTANTIATE_TEST_SUITE_P(All, SavingEvent, ::testing::ValuesIn(eventsThatTell(&Event::saves)), nameOf);
INSTANTIATE_TEST_SUITE_P(All, StartingEvent, ::testing::ValuesIn(eventsThatTell(&Event::startsWhatWaits)), nameOf);
