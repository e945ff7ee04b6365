#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// Many items of a host that goes away, and some of one that is there.
class HostsAwayTest : public ::testing::Test
{
protected:
    HostsAwayTest() { engine.settings().autoExtract.set(false); }

    using Exchange = ScriptedHttpClient::Exchange;

    std::vector<ItemPtr> addMany(const QString& host, int count)
    {
        QStringList urls;
        for (int i = 0; i < count; ++i)
            urls << u"http://%1/%1-%2.bin"_s.arg(host).arg(i);
        return engine.add(urls);
    }
    void startAll()
    {
        engine.manager().commands().startAll();
        turnEventLoop();
    }
    [[nodiscard]] std::vector<std::shared_ptr<Exchange>> running(const QString& host) const
    {
        std::vector<std::shared_ptr<Exchange>> found;
        for (const auto& exchange : engine.http.exchanges()) {
            if (exchange->request.url.host() == host && exchange->isRunning)
                found.push_back(exchange);
        }
        return found;
    }
    [[nodiscard]] std::ptrdiff_t asked(const QString& host) const
    {
        const auto& all = engine.http.exchanges();
        return std::count_if(all.begin(), all.end(),
                             [&host](const auto& exchange) { return exchange->request.url.host() == host; });
    }
    void failAll(const QString& host, HttpError::Kind kind = HttpError::Kind::cannotConnect)
    {
        for (const auto& exchange : running(host))
            exchange->fail(kind);
        turnEventLoop();
    }
    void serveAll(const QString& host)
    {
        for (auto all = running(host); !all.empty(); all = running(host)) {
            for (const auto& exchange : all) {
                exchange->head(200, {{"Content-Length", "3"}});
                exchange->data("abc");
                exchange->finish();
            }
            turnEventLoop();
        }
    }
    static std::ptrdiff_t count(const std::vector<ItemPtr>& items, DownloadStatus::Kind status)
    {
        return std::count_if(items.begin(), items.end(),
                             [status](const ItemPtr& item) { return item->status() == status; });
    }

    EngineOnScript engine;
};

} // namespace

TEST_F(HostsAwayTest, OneProbeAtATimeAsksWithTheDelaysOfItsTriesAndOthersGetTheSlots)
{
    engine.settings().maxConcurrentDownloads.set(3);
    const auto away = addMany(u"away"_s, 20);
    const auto near = addMany(u"near"_s, 3);
    startAll();
    ASSERT_EQ(running(u"away"_s).size(), 3U);
    failAll(u"away"_s);
    EXPECT_EQ(running(u"near"_s).size(), 3U);
    engine.settings().maxConcurrentDownloads.set(10);
    for (const auto delay : {2s, 4s, 6s, 8s}) {
        engine.clock.advance(delay - 1ms);
        EXPECT_TRUE(running(u"away"_s).empty());
        engine.clock.advance(1ms);
        EXPECT_EQ(running(u"away"_s).size(), 1U);
        failAll(u"away"_s);
    }
    EXPECT_EQ(count(away, DownloadStatus::queued), 20);
    EXPECT_EQ(running(u"near"_s).size(), 3U);
}

TEST_F(HostsAwayTest, AllGoOnAsSoonAsTheProbeGetsAnAnswer)
{
    engine.settings().maxConcurrentDownloads.set(10);
    const auto away = addMany(u"away"_s, 100);
    startAll();
    failAll(u"away"_s, HttpError::Kind::connectionLost);
    for (const auto delay : {2s, 4s, 6s}) {
        engine.clock.advance(delay);
        failAll(u"away"_s, HttpError::Kind::timedOut);
    }
    engine.clock.advance(8s);
    ASSERT_EQ(running(u"away"_s).size(), 1U);
    running(u"away"_s).front()->head(200, {{"Content-Length", "3"}});
    turnEventLoop();
    EXPECT_EQ(running(u"away"_s).size(), 10U);
    for (const auto& exchange : running(u"away"_s)) {
        exchange->data("abc");
        exchange->finish();
    }
    turnEventLoop();
    serveAll(u"away"_s);
    engine.clock.advance(10s);
    serveAll(u"away"_s);
    EXPECT_EQ(count(away, DownloadStatus::completed), 100);
}

TEST_F(HostsAwayTest, ARecoveryVolumeThatMayBeFetchedNoMoreHandsOver)
{
    engine.settings().maxConcurrentDownloads.set(2);
    engine.settings().downloadRevFiles.set(true);
    const ItemPtr volume = engine.add(u"http://away/m.part1.rev"_s);
    const ItemPtr part = engine.add(u"http://away/m.part2.rar"_s);
    const auto away = addMany(u"away"_s, 2);
    startAll();
    failAll(u"away"_s);
    addMany(u"near"_s, 2);
    startAll();
    ASSERT_EQ(running(u"away"_s).size(), 2U);
    failAll(u"away"_s);
    ASSERT_EQ(running(u"near"_s).size(), 2U);
    // The volume is to ask, but there is no slot for it.
    engine.clock.advance(10s);
    turnEventLoop();
    engine.settings().downloadRevFiles.set(false);
    engine.settings().maxConcurrentDownloads.set(3);
    engine.clock.advance(2s);
    turnEventLoop();
    ASSERT_EQ(running(u"away"_s).size(), 1U);
    EXPECT_EQ(volume->status(), DownloadStatus::queued);
    EXPECT_EQ(part->status(), DownloadStatus::downloading);
}

TEST_F(HostsAwayTest, AnErrorAnswerOfTheProbeIsAnAnswer)
{
    engine.settings().maxConcurrentDownloads.set(5);
    addMany(u"away"_s, 20);
    startAll();
    failAll(u"away"_s);
    engine.clock.advance(2s);
    ASSERT_EQ(running(u"away"_s).size(), 1U);
    running(u"away"_s).front()->head(404, {{"Content-Type", "text/plain"}});
    turnEventLoop();
    EXPECT_EQ(running(u"away"_s).size(), 5U);
}

TEST_F(HostsAwayTest, AnErrorAnswerAboutOneFileHoldsNobodyElseBack)
{
    engine.settings().maxConcurrentDownloads.set(1);
    addMany(u"busy"_s, 2);
    startAll();
    running(u"busy"_s).front()->head(503, {{"Content-Type", "text/plain"}});
    turnEventLoop();
    EXPECT_EQ(running(u"busy"_s).size(), 0U);
    engine.manager().processQueue();
    turnEventLoop();
    EXPECT_EQ(running(u"busy"_s).size(), 1U);
    EXPECT_TRUE(running(u"busy"_s).front()->request.url.path().endsWith(u"busy-1.bin"_s));
}

TEST_F(HostsAwayTest, AnotherTransferThatStillMovesShowsThatTheHostIsThere)
{
    engine.settings().maxConcurrentDownloads.set(2);
    addMany(u"host"_s, 5);
    startAll();
    const auto both = running(u"host"_s);
    both[0]->head(200, {{"Content-Length", "900"}});
    both[0]->data("abc");
    turnEventLoop();
    both[1]->fail(HttpError::Kind::connectionLost);
    turnEventLoop();
    ASSERT_EQ(running(u"host"_s).size(), 1U);
    engine.clock.advance(600ms);
    both[0]->data("def");
    turnEventLoop();
    EXPECT_EQ(running(u"host"_s).size(), 2U);
}

TEST_F(HostsAwayTest, StartByHandGoesAheadOfTheRest)
{
    engine.settings().maxConcurrentDownloads.set(2);
    const auto away = addMany(u"away"_s, 5);
    startAll();
    failAll(u"away"_s);
    engine.manager().commands().startItems({away[4]});
    turnEventLoop();
    EXPECT_EQ(away[4]->status(), DownloadStatus::downloading);
}

TEST_F(HostsAwayTest, APausedProbeHandsOver)
{
    engine.settings().maxConcurrentDownloads.set(1);
    const auto away = addMany(u"away"_s, 3);
    startAll();
    failAll(u"away"_s);
    engine.clock.advance(2s);
    ASSERT_EQ(away[0]->status(), DownloadStatus::downloading);
    engine.manager().commands().pauseItems({away[0]});
    turnEventLoop();
    EXPECT_TRUE(running(u"away"_s).empty());
    engine.clock.advance(2s);
    EXPECT_EQ(away[1]->status(), DownloadStatus::downloading);
    EXPECT_EQ(running(u"away"_s).size(), 1U);
}

TEST_F(HostsAwayTest, ARemovedProbeHandsOver)
{
    engine.settings().maxConcurrentDownloads.set(1);
    const auto away = addMany(u"away"_s, 3);
    startAll();
    failAll(u"away"_s);
    engine.manager().commands().removeItems({away[0]->id()});
    turnEventLoop();
    engine.clock.advance(2s);
    EXPECT_EQ(away[1]->status(), DownloadStatus::downloading);
}

TEST_F(HostsAwayTest, ANightWithoutAWordFromTheDesktopCostsOneItemAndTheRestGoOnWithinTenMinutes)
{
    engine.settings().maxConcurrentDownloads.set(3);
    const auto items = addMany(u"away"_s, 100);
    startAll();
    for (int i = 0; i < 8 * 60 * 30; ++i) {
        failAll(u"away"_s);
        engine.clock.advance(2s);
    }
    EXPECT_EQ(count(items, DownloadStatus::failed), 1);
    EXPECT_EQ(count(items, DownloadStatus::queued) + count(items, DownloadStatus::downloading), 99);
    EXPECT_LE(asked(u"away"_s), 9 + 2 + 60);
    for (int i = 0; i < 300; ++i) {
        serveAll(u"away"_s);
        engine.clock.advance(2s);
    }
    serveAll(u"away"_s);
    EXPECT_EQ(count(items, DownloadStatus::completed), 99);
}

TEST_F(HostsAwayTest, WhoHasFailedSaysWhenItIsTriedAgain)
{
    engine.settings().maxConcurrentDownloads.set(2);
    const auto away = addMany(u"away"_s, 3);
    startAll();
    failAll(u"away"_s);
    const SteadyTime now = engine.clock.steadyNow();
    EXPECT_EQ(away[0]->wait(), (ItemWait{ItemWait::nextTry, now + 2s, {}}));
    EXPECT_EQ(away[2]->wait(), ItemWait());
    engine.clock.advance(2s);
    EXPECT_EQ(away[0]->wait(), ItemWait());
    failAll(u"away"_s);
    // The second waits as long as the first, which asks for both.
    EXPECT_EQ(away[0]->wait(), (ItemWait{ItemWait::nextTry, now + 6s, {}}));
    EXPECT_EQ(away[1]->wait(), (ItemWait{ItemWait::nextTry, now + 6s, {}}));
    engine.clock.advance(4s);
    running(u"away"_s).front()->head(200, {{"Content-Length", "3"}});
    turnEventLoop();
    EXPECT_EQ(away[1]->wait(), ItemWait());
}
