#include "app/update/FeedUpdater.h"

#include "app/update/CheckForUpdatesView.h"
#include "app/update/CheckForUpdatesViewModel.h"
#include "fixtures/EventLoop.h"
#include "fixtures/ManualClock.h"
#include "fixtures/Sandbox.h"
#include "fixtures/ScriptedHttpClient.h"
#include "platform/storage/FileWriter.h"
#include "platform/storage/UserDefaults.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;
using namespace std::chrono_literals;

namespace {

const QString feedAddress = u"https://updates.example/feed.xml"_s;

QByteArray feedOf(const QByteArray& version)
{
    return "<rss><channel><item><title>" + version +
           "</title><link>https://vormel.example/get</link></item></channel></rss>";
}

class FeedUpdaterTest : public ::testing::Test
{
protected:
    void start(const QString& feed = feedAddress)
    {
        updater = std::make_unique<FeedUpdater>(client, defaults, clock, QUrl(feed), Version::parse(u"1.9"_s).value());
        QObject::connect(updater.get(), &FeedUpdater::updateFound,
                         [this](const AppcastItem& item) { told << item.version.text(); });
        QObject::connect(updater.get(), &FeedUpdater::upToDate, [this] { told << u"up to date"_s; });
        QObject::connect(updater.get(), &FeedUpdater::checkFailed, [this](FeedUpdater::Failure failure) {
            told << (failure == FeedUpdater::Failure::unreachable ? u"unreachable"_s : u"unusable answer"_s);
        });
        clock.advance(0s);
    }
    /// Starts with the check by itself behind it, and looks by hand.
    void lookByHand()
    {
        start();
        answer(feedOf("1.0"));
        updater->checkForUpdates();
    }
    void answer(const QByteArray& body, int status = 200)
    {
        if (client.last().head(status) && client.last().data(body))
            client.last().finish();
        turnEventLoop();
    }
    void fail()
    {
        client.last().fail(HttpError::Kind::cannotFindHost);
        turnEventLoop();
    }
    [[nodiscard]] std::size_t requests() const { return client.exchanges().size(); }

    Sandbox sandbox;
    FileWriter writer;
    ManualClock clock;
    ScriptedHttpClient client;
    UserDefaults defaults{sandbox.path(u"preferences.json"_s), writer};
    std::unique_ptr<FeedUpdater> updater;
    QStringList told;
};

TEST_F(FeedUpdaterTest, TheFirstStartLooksByItselfAndTellsOfAnUpdate)
{
    start();
    ASSERT_EQ(requests(), 1U);
    EXPECT_EQ(client.last().request.url, QUrl(feedAddress));
    answer(feedOf("1.10"));
    EXPECT_EQ(told, QStringList{u"1.10"_s});
}

TEST_F(FeedUpdaterTest, ByItselfItTellsOfNothingElse)
{
    start();
    answer(feedOf("1.9"));
    clock.advance(24h);
    answer("no feed");
    clock.advance(24h);
    fail();
    EXPECT_EQ(requests(), 3U);
    EXPECT_EQ(told, QStringList());
}

TEST_F(FeedUpdaterTest, ByHandItTellsEveryOutcome)
{
    lookByHand();
    answer(feedOf("1.9"));
    updater->checkForUpdates();
    answer(feedOf("1.9-rc1"));
    updater->checkForUpdates();
    answer(feedOf("2"));
    updater->checkForUpdates();
    fail();
    updater->checkForUpdates();
    answer("<html/>");
    updater->checkForUpdates();
    answer(feedOf("2"), 404);
    EXPECT_EQ(told, QStringList({u"up to date"_s, u"up to date"_s, u"2"_s, u"unreachable"_s, u"unusable answer"_s,
                                 u"unusable answer"_s}));
}

TEST_F(FeedUpdaterTest, ItLooksByItselfOnceADayAcrossStarts)
{
    start();
    answer(feedOf("1.0"));
    clock.advance(23h);
    start();
    EXPECT_EQ(requests(), 1U);
    clock.advance(59min);
    EXPECT_EQ(requests(), 1U);
    clock.advance(1min);
    EXPECT_EQ(requests(), 2U);
}

TEST_F(FeedUpdaterTest, AFailedLookIsNotRepeatedOnTheSameDay)
{
    start();
    fail();
    start();
    EXPECT_EQ(requests(), 1U);
}

TEST_F(FeedUpdaterTest, ALookByHandPutsTheNextOneOff)
{
    start();
    answer(feedOf("1.0"));
    clock.advance(12h);
    updater->checkForUpdates();
    answer(feedOf("1.0"));
    clock.advance(23h);
    EXPECT_EQ(requests(), 2U);
    clock.advance(1h);
    EXPECT_EQ(requests(), 3U);
}

TEST_F(FeedUpdaterTest, ALastTimeInTheFutureDoesNotKeepItFromLooking)
{
    defaults.setInteger(u"lastUpdateCheck"_s, 4'000'000'000);
    start();
    EXPECT_EQ(requests(), 1U);
}

TEST_F(FeedUpdaterTest, ALastTimeBeyondAllSenseDoesNoHarm)
{
    for (const qint64 time : {std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()}) {
        defaults.setInteger(u"lastUpdateCheck"_s, time);
        start();
        answer(feedOf("1.0"));
    }
    EXPECT_EQ(requests(), 2U);
}

TEST_F(FeedUpdaterTest, WithoutASecureFeedNothingIsEverSent)
{
    for (const QString& feed : {QString(), u"http://updates.example/feed.xml"_s, u"file:///feed.xml"_s, u"updates"_s}) {
        start(feed);
        EXPECT_FALSE(updater->canCheckForUpdates());
        updater->checkForUpdates();
        clock.advance(48h);
    }
    EXPECT_EQ(requests(), 0U);
    EXPECT_FALSE(defaults.objectForKey(u"lastUpdateCheck"_s));
}

TEST_F(FeedUpdaterTest, ARedirectMayLeadToHttpsOnly)
{
    lookByHand();
    EXPECT_TRUE(client.last().redirect(QUrl(u"https://other.example/feed.xml"_s)));
    EXPECT_FALSE(client.last().redirect(QUrl(u"http://other.example/feed.xml"_s)));
    answer({}, 302);
    EXPECT_EQ(told, QStringList{u"unusable answer"_s});
}

TEST_F(FeedUpdaterTest, AFeedOfMoreThanAMebibyteIsRefused)
{
    lookByHand();
    answer(feedOf("2") + QByteArray(1024 * 1024, ' '));
    EXPECT_EQ(told, QStringList{u"unusable answer"_s});
}

TEST_F(FeedUpdaterTest, OneLookAtATime)
{
    start();
    EXPECT_FALSE(updater->canCheckForUpdates());
    updater->checkForUpdates();
    EXPECT_EQ(requests(), 1U);
    answer(feedOf("1.0"));
    EXPECT_TRUE(updater->canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, AnAnswerAfterTheEndOfTheProgramTouchesNothing)
{
    start();
    updater.reset();
    answer(feedOf("2"));
    EXPECT_EQ(told, QStringList());
}

TEST_F(FeedUpdaterTest, TheMenuCommandIsEnabledWhileTheUpdaterCanLook)
{
    start();
    const CheckForUpdatesViewModel model(*updater);
    const CheckForUpdatesView command(model);
    EXPECT_EQ(command.text(), u"Check for Updates…"_s);
    EXPECT_FALSE(model.canCheckForUpdates());
    EXPECT_FALSE(command.isEnabled());
    answer(feedOf("1.0"));
    EXPECT_TRUE(model.canCheckForUpdates());
    EXPECT_TRUE(command.isEnabled());
}

TEST_F(FeedUpdaterTest, TheMenuCommandLooks)
{
    start();
    answer(feedOf("1.0"));
    const CheckForUpdatesViewModel model(*updater);
    CheckForUpdatesView command(model);
    command.trigger();
    EXPECT_EQ(requests(), 2U);
    EXPECT_FALSE(command.isEnabled());
}

TEST_F(FeedUpdaterTest, AModelMadeWhileTheUpdaterCanLookKnowsIt)
{
    start();
    answer(feedOf("1.0"));
    EXPECT_TRUE(CheckForUpdatesViewModel(*updater).canCheckForUpdates());
}

} // namespace
