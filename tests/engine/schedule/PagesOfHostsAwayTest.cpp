#include "engine/ScriptedService.h"

#include <algorithm>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// Many items whose addresses a service has to tell, and a few others behind them.
class PagesOfHostsAwayTest : public ScriptedService
{
protected:
    void SetUp() override
    {
        engine.settings().autoExtract.set(false);
        engine.settings().maxConcurrentDownloads.set(2);
        for (int i = 0; i < 20; ++i)
            pages.push_back(engine.add(u"https://filestore.example/f/%1"_s.arg(i)));
        for (int i = 0; i < 4; ++i)
            near.push_back(engine.add(u"http://near/%1.bin"_s.arg(i)));
        engine.manager().accounts().set({account(SupportedHost::filestore)});
        engine.manager().commands().startAll();
        turnEventLoop();
        ASSERT_EQ(log->resolves.size(), 2U);
    }
    /// The service has told the next two addresses.
    void tellTwo(const QString& first, const QString& second)
    {
        const std::size_t next = log->resolves.size() - 2;
        resolveTo(next, first, u"a%1.bin"_s.arg(next));
        resolveTo(next + 1, second, u"b%1.bin"_s.arg(next));
    }
    void failAll(const QString& host)
    {
        for (const auto& exchange : engine.http.exchanges()) {
            if (exchange->isRunning && exchange->request.url.host() == host)
                exchange->fail(HttpError::Kind::cannotConnect);
        }
        turnEventLoop();
    }
    [[nodiscard]] std::ptrdiff_t running(const QString& host) const
    {
        const auto& all = engine.http.exchanges();
        return std::count_if(all.begin(), all.end(), [&host](const auto& exchange) {
            return exchange->isRunning && exchange->request.url.host() == host;
        });
    }
    void wait(std::chrono::milliseconds time)
    {
        engine.clock.advance(time);
        turnEventLoop();
    }
    /// Its first two items have found the file server away, and the next two are led there, too.
    void leadTwoInVain()
    {
        tellTwo(away(0), away(1));
        failAll(u"cdn.example"_s);
        // Nothing is known of where the page leads others.
        ASSERT_EQ(log->resolves.size(), 4U);
        tellTwo(away(2), away(3));
    }
    static QString away(int number) { return u"https://cdn.example/%1"_s.arg(number); }

    std::vector<ItemPtr> pages;
    std::vector<ItemPtr> near;
};

} // namespace

TEST_F(PagesOfHostsAwayTest, AreNotAskedForAllTheirItemsInVain)
{
    leadTwoInVain();
    EXPECT_EQ(log->resolves.size(), 4U);
    EXPECT_EQ(running(u"near"_s), 2);
    EXPECT_EQ(pages[2]->status(), DownloadStatus::queued);
}

TEST_F(PagesOfHostsAwayTest, AreAskedAgainByOneItemNowAndThen)
{
    leadTwoInVain();
    engine.settings().maxConcurrentDownloads.set(10);
    for (const auto delay : {20s, 40s, 80s}) {
        const std::size_t before = log->resolves.size();
        wait(delay - 1ms);
        failAll(u"cdn.example"_s);
        EXPECT_EQ(log->resolves.size(), before);
        wait(1ms);
        failAll(u"cdn.example"_s);
        ASSERT_EQ(log->resolves.size(), before + 1);
        resolveTo(before, away(7), u"c%1.bin"_s.arg(before));
        failAll(u"cdn.example"_s);
    }
}

TEST_F(PagesOfHostsAwayTest, AreFreeAgainWhenTheyLeadElsewhere)
{
    leadTwoInVain();
    engine.settings().maxConcurrentDownloads.set(10);
    wait(20s);
    ASSERT_EQ(log->resolves.size(), 5U);
    pages[4]->setFilename(u"known.bin"_s);
    turnEventLoop();
    ASSERT_EQ(log->resolves.size(), 5U);
    resolveTo(4, u"https://other.example/4"_s);
    EXPECT_EQ(running(u"other.example"_s), 1);
    EXPECT_GT(log->resolves.size(), 5U);
}

TEST_F(PagesOfHostsAwayTest, AreFreeAgainWhenTheHostAnswers)
{
    leadTwoInVain();
    engine.settings().maxConcurrentDownloads.set(10);
    wait(2s);
    ASSERT_EQ(running(u"cdn.example"_s), 1);
    for (const auto& exchange : engine.http.exchanges()) {
        if (exchange->isRunning && exchange->request.url.host() == u"cdn.example")
            exchange->head(200, {{"Content-Length", "3"}});
    }
    turnEventLoop();
    EXPECT_EQ(running(u"cdn.example"_s), 4);
    EXPECT_GT(log->resolves.size(), 4U);
}

TEST_F(PagesOfHostsAwayTest, AreFreeAgainForWhatTheUserStarts)
{
    leadTwoInVain();
    engine.settings().maxConcurrentDownloads.set(5);
    engine.manager().commands().startItems({pages[10]});
    turnEventLoop();
    EXPECT_EQ(pages[10]->status(), DownloadStatus::resolving);
    resolveTo(4, away(10), u"j.bin"_s);
    EXPECT_EQ(pages[10]->status(), DownloadStatus::downloading);
}

TEST_F(PagesOfHostsAwayTest, AreAskedForTheOneThatAsksTheHostThoughItsAddressIsTooOld)
{
    leadTwoInVain();
    engine.settings().maxConcurrentDownloads.set(3);
    for (const ItemPtr& item : pages) {
        if (item->resolvedURL())
            item->setResolvedAt(engine.clock.wallNow() - 1h);
    }
    wait(2s);
    ASSERT_EQ(log->resolves.size(), 5U);
    EXPECT_EQ(pages[0]->status(), DownloadStatus::resolving);
    resolveTo(4, away(0));
    EXPECT_EQ(pages[0]->status(), DownloadStatus::downloading);
}

TEST_F(PagesOfHostsAwayTest, ThatAreAwayThemselvesCostOneItemAtATime)
{
    answer(0, ResolverError::networkError(u"no route"_s));
    answer(1, ResolverError::networkError(u"no route"_s));
    EXPECT_EQ(running(u"near"_s), 2);
    engine.settings().maxConcurrentDownloads.set(10);
    wait(19s);
    EXPECT_EQ(log->resolves.size(), 2U);
    wait(1s);
    ASSERT_EQ(log->resolves.size(), 3U);
    answer(2, ResolverError::networkError(u"no route"_s));
    wait(39s);
    EXPECT_EQ(log->resolves.size(), 3U);
    wait(1s);
    ASSERT_EQ(log->resolves.size(), 4U);
    // Whatever it says: it is there.
    answer(3, ResolverError::linkNotFound());
    EXPECT_EQ(pages[3]->status(), DownloadStatus::failed);
    EXPECT_EQ(log->resolves.size(), 10U);
}

TEST_F(PagesOfHostsAwayTest, TryFailedAgainEndsTheRestOfTheHostThatAnItemFailedAt)
{
    for (std::size_t i = 2; i < pages.size(); ++i)
        pages[i]->setStatus(DownloadStatus::stopped);
    tellTwo(away(0), away(1));
    failAll(u"cdn.example"_s);
    engine.settings().maxConcurrentDownloads.set(10);
    const auto isFailed = [](const ItemPtr& item) { return item->status() == DownloadStatus::failed; };
    for (int tries = 0; tries < 20 && std::none_of(pages.begin(), pages.end(), isFailed); ++tries) {
        wait(10s);
        failAll(u"cdn.example"_s);
    }
    const auto failed = std::find_if(pages.begin(), pages.end(), isFailed);
    ASSERT_NE(failed, pages.end());
    pages[failed == pages.begin() ? 1 : 0]->setStatus(DownloadStatus::stopped);
    const std::size_t before = log->resolves.size();
    engine.manager().commands().tryFailedAgain({*failed});
    turnEventLoop();
    ASSERT_EQ(log->resolves.size(), before + 1);
    resolveTo(before, away(0));
    EXPECT_EQ((*failed)->status(), DownloadStatus::downloading);
}
