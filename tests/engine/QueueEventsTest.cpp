#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "fixtures/Workshop.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

const QString directLink = QStringLiteral("http://h/x.bin");
const QString premiumLink = QStringLiteral("https://filestore.example/f/x.bin");
const QString containerLink = QStringLiteral("https://container.example/c/1");
const QString queueFile = QStringLiteral("data/Vormel/download_queue.json");

/// A queue with one slot. Its first item waits for it, unseen by the scheduler until a test queues it by hand.
struct Scene
{
    Scene()
    {
        shop.settings().maxConcurrentDownloads.set(1);
        waiting = shop.add(QStringLiteral("http://h/waiting.bin"));
        waiting->setStatus(DownloadStatus::stopped);
    }

    void add(const QString& url = directLink) { item = shop.add(url); }
    void add(const QString& url, const DownloadStatus& status)
    {
        add(url);
        item->setStatus(status);
    }
    /// The item has taken the slot, and half of its file is here.
    void run()
    {
        add();
        commands().startItems({item});
        turnEventLoop();
        server().head(200, {{"Content-Length", "6"}});
        server().data("abc");
        turnEventLoop();
    }
    void loseConnection()
    {
        server().fail(HttpError::Kind::ConnectionLost);
        turnEventLoop();
    }
    void cutShort()
    {
        server().head(206, {{"Content-Range", "bytes 3-5/6"}});
        server().finish();
        turnEventLoop();
    }
    void spendAllTries()
    {
        for (int i = 0; i < 8; ++i) {
            loseConnection();
            shop.clock.advance(10s);
        }
    }
    void resolve(const QString& url = premiumLink)
    {
        shop.manager().setAccounts({account(SupportedHost::filestore)});
        add(url);
        log->resolves[0].answer->deliver(ResolverError::unsupportedHost());
        turnEventLoop();
        commands().startItems({item});
        turnEventLoop();
    }
    void signInFirst()
    {
        resolve();
        log->resolves[1].answer->deliver(ResolverError::loginRequired(SupportedHost::filestore));
        turnEventLoop();
    }
    void openContainer()
    {
        shop.manager().addURLs({link(containerLink)}, std::nullopt);
        turnEventLoop();
    }
    void answerContainer(const std::variant<std::vector<Link>, ContainerError>& answer)
    {
        log->containers[0].answer->deliver(answer);
        turnEventLoop();
    }
    void laySetWithRecoveryVolume()
    {
        shop.add(QStringLiteral("http://h/m.part1.rar"));
        add(QStringLiteral("http://h/m.part1.rev"), DownloadStatus::stopped);
    }
    QString layFile(const QString& name) { return shop.sandbox.write(QStringLiteral("Downloads/") + name, "abcdef"); }
    QueueCommands& commands() { return shop.manager().commands(); }
    ScriptedHttpClient::Exchange& server() { return shop.http.last(); }

    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    Workshop shop{fakeServices(log)};
    ItemPtr waiting;
    ItemPtr item;
};

void nothing(Scene& /*scene*/) {}

constexpr bool yes = true;
constexpr bool no = false;
constexpr std::nullopt_t either = std::nullopt;

/// What can happen to a queue.
struct Event
{
    const char* name;
    void (*prepare)(Scene& scene);
    void (*happen)(Scene& scene);
    std::optional<bool> saves;
    std::optional<bool> startsWhatWaits;
};

const std::vector<Link> oneLink{link(QStringLiteral("http://h/1.bin"))};
const std::vector<Link> twoHosts{link(QStringLiteral("http://h/1.bin")), link(QStringLiteral("http://i/1.bin"))};

const Event transferEvents[] = {
    {"AnAnswerComes",
     [](Scene& s) {
         s.add();
         s.commands().startItems({s.item});
         turnEventLoop();
     },
     [](Scene& s) {
         s.server().head(200, {{"Content-Length", "6"}});
     },
     yes, either},
    {"DataCome", [](Scene& s) { s.run(); },
     [](Scene& s) {
         s.shop.clock.advance(500ms);
         s.server().data("d");
     },
     no, no},
    {"AFileIsComplete",
     [](Scene& s) {
         s.run();
         s.server().data("def");
         turnEventLoop();
     },
     [](Scene& s) { s.server().finish(); }, yes, yes},
    {"AFileIsThereAlready",
     [](Scene& s) {
         s.add();
         s.layFile(QStringLiteral("x.bin"));
     },
     [](Scene& s) { s.commands().startItems({s.item}); }, yes, yes},
    {"APageCameInstead",
     [](Scene& s) {
         s.add();
         s.commands().startItems({s.item});
         turnEventLoop();
     },
     [](Scene& s) {
         s.server().head(200, {{"Content-Type", "text/html"}});
         s.server().finish();
     },
     either, yes},
    {"AConnectionIsLost", [](Scene& s) { s.run(); },
     [](Scene& s) {
         s.loseConnection();
         s.shop.clock.advance(2s);
     },
     either, yes},
    {"AConnectionIsLostForGood",
     [](Scene& s) {
         s.run();
         s.spendAllTries();
     },
     [](Scene& s) { s.loseConnection(); }, either, yes},
    {"AFileIsShort",
     [](Scene& s) {
         s.run();
         s.loseConnection();
         s.shop.clock.advance(2s);
     },
     [](Scene& s) { s.cutShort(); }, either, yes},
    {"AFileIsShortForGood",
     [](Scene& s) {
         s.run();
         s.spendAllTries();
     },
     [](Scene& s) { s.cutShort(); }, either, yes},
    {"AFileCannotBeMoved",
     [](Scene& s) {
         s.layFile(QStringLiteral("m"));
         s.add(QStringLiteral("http://h/get"));
         s.commands().startItems({s.item});
         turnEventLoop();
         s.server().head(200, {{"Content-Disposition", "filename=m.part1.rar"}});
         turnEventLoop();
     },
     [](Scene& s) { s.server().finish(); }, either, yes},
    {"AStartFails",
     [](Scene& s) {
         s.add();
         s.shop.settings().downloadFolderPath.set(s.layFile(QStringLiteral("file")));
     },
     [](Scene& s) { s.commands().startItems({s.item}); }, either, yes},
    {"AResolveFails", [](Scene& s) { s.add(premiumLink); }, [](Scene& s) { s.commands().startItems({s.item}); }, either,
     yes},
    {"ALoginIsNeeded", [](Scene& s) { s.resolve(); },
     [](Scene& s) { s.log->resolves[1].answer->deliver(ResolverError::loginRequired(SupportedHost::filestore)); },
     either, yes},
    {"ALoginEndsWell", [](Scene& s) { s.signInFirst(); }, [](Scene& s) { s.shop.manager().loginSucceeded(); }, either,
     yes},
    {"ALoginIsCancelled", [](Scene& s) { s.signInFirst(); }, [](Scene& s) { s.shop.manager().cancelLogin(); }, either,
     no},
    {"ARecoveryVolumeIsFoundByResolving", [](Scene& s) { s.resolve(); },
     [](Scene& s) { answerWithAddress(s.log->resolves[1], QStringLiteral("http://h/m.part1.rev")); }, either, yes},
    {"ARecoveryVolumeIsHeldBackAfterAll",
     [](Scene& s) {
         s.shop.settings().downloadRevFiles.set(true);
         s.add(QStringLiteral("http://h/m.part1.rar"), DownloadStatus::stopped);
         s.resolve(QStringLiteral("https://filestore.example/f/m.part1.rev"));
         s.shop.settings().downloadRevFiles.set(false);
     },
     [](Scene& s) { answerWithAddress(s.log->resolves[1], QStringLiteral("http://h/opaque")); }, either, yes},
};

const Event intakeEvents[] = {
    {"LinksAreAdded", nothing, [](Scene& s) { s.shop.manager().addURLs(oneLink, std::nullopt); }, yes, yes},
    {"DirectLinksAreAdded", nothing, [](Scene& s) { s.shop.manager().addDirectURLs(oneLink); }, yes, yes},
    {"AContainerIsRead", [](Scene& s) { s.openContainer(); }, [](Scene& s) { s.answerContainer(oneLink); }, yes, yes},
    {"AHostIsChosen",
     [](Scene& s) {
         s.openContainer();
         s.answerContainer(twoHosts);
     },
     [](Scene& s) { s.shop.manager().confirmHostSelection(oneLink); }, yes, yes},
    {"ACaptchaIsSolved",
     [](Scene& s) {
         s.openContainer();
         s.answerContainer(ContainerError::captchaRequired());
     },
     [](Scene& s) { s.shop.manager().addCaptchaLinks(oneLink); }, yes, yes},
    {"AContainerFails", [](Scene& s) { s.openContainer(); },
     [](Scene& s) { s.answerContainer(ContainerError::noLinksFound()); }, no, no},
    {"TwoLinksTurnOutToBeOneFile",
     [](Scene& s) {
         s.shop.manager().setAccounts({account(SupportedHost::filestore)});
         s.shop.add({premiumLink, QStringLiteral("https://filestore.example/f/y")});
         answerWithAddress(s.log->resolves[0], QStringLiteral("http://h/1.bin"), QStringLiteral("1.bin"));
         turnEventLoop();
     },
     [](Scene& s) { answerWithAddress(s.log->resolves[1], QStringLiteral("http://h/2"), QStringLiteral("1.BIN")); },
     yes, either},
};

const Event commandEvents[] = {
    {"PausedByHand", [](Scene& s) { s.run(); }, [](Scene& s) { s.commands().pauseItems({s.item}); }, no, no},
    {"AllPaused", [](Scene& s) { s.run(); }, [](Scene& s) { s.shop.manager().pauseAll(); }, no, either},
    {"Resumed", [](Scene& s) { s.add(); }, [](Scene& s) { s.commands().resumeItem(*s.item); }, no, yes},
    {"StartedByHand",
     [](Scene& s) {
         s.add();
         s.shop.settings().maxConcurrentDownloads.set(2);
     },
     [](Scene& s) { s.commands().startItems({s.item}); }, no, yes},
    {"AllStarted", [](Scene& s) { s.add(); }, [](Scene& s) { s.shop.manager().startAll(); }, no, yes},
    {"Stopped", [](Scene& s) { s.run(); }, [](Scene& s) { s.commands().stopItems({s.item}); }, yes, yes},
    {"Retried", [](Scene& s) { s.add(directLink, DownloadStatus::failure({})); },
     [](Scene& s) { s.commands().retryItem(*s.item); }, no, yes},
    {"FetchedAgain",
     [](Scene& s) {
         s.layFile(QStringLiteral("x.bin"));
         s.add();
     },
     [](Scene& s) { s.commands().redownloadItem(*s.item); }, yes, yes},
    {"ResyncedWithItsFile",
     [](Scene& s) {
         s.add();
         s.layFile(QStringLiteral("x.bin"));
     },
     [](Scene& s) { s.commands().resyncItems({s.item}); }, yes, yes},
    {"ResyncedWithoutItsFile", [](Scene& s) { s.add(directLink, DownloadStatus::completed); },
     [](Scene& s) { s.commands().resyncItems({s.item}); }, yes, yes},
    {"Removed", [](Scene& s) { s.run(); }, [](Scene& s) { s.commands().removeItems({s.item->id()}); }, yes, yes},
    {"RemovedAsAGroup", [](Scene& s) { s.add(QStringLiteral("http://h/m.part1.rar")); },
     [](Scene& s) { s.commands().removeGroup(QStringLiteral("m")); }, yes, yes},
    {"CompletedOnesCleared", [](Scene& s) { s.add(directLink, DownloadStatus::completed); },
     [](Scene& s) { s.shop.manager().clearCompleted(); }, yes, no},
    {"ExtractedOnesCleared",
     [](Scene& s) {
         s.add();
         s.item->setExtractionStatus(ExtractionStatus::done);
     },
     [](Scene& s) { s.shop.manager().clearExtracted(); }, yes, either},
    {"Reordered", [](Scene& s) { s.add(); },
     [](Scene& s) {
         s.commands().moveGroups({1}, 0, {QStringLiteral("waiting.bin"), QStringLiteral("x.bin")});
     },
     yes, no},
    {"RecoveryVolumesReleased", [](Scene& s) { s.laySetWithRecoveryVolume(); },
     [](Scene& s) { s.shop.manager().retryWithRevFiles({s.item}); }, yes, yes},
    {"RecoveryVolumesSwitchedOn", nothing, [](Scene& s) { s.shop.settings().downloadRevFiles.set(true); }, no, yes},
    {"TheLimitRaised", nothing, [](Scene& s) { s.shop.settings().maxConcurrentDownloads.set(3); }, no, no},
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
        scene.shop.flush();
        std::string saved = scene.shop.sandbox.read(queueFile).toStdString();
        QFile::remove(scene.shop.sandbox.path(queueFile));
        return saved;
    }

    Scene scene;
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
    const std::string saved = takeSaved();
    scene.shop.manager().saveQueue();
    EXPECT_EQ(saved, *GetParam().saves ? takeSaved() : std::string());
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
