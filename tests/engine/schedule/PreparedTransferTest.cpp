#include "engine/ScriptedService.h"

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

const QString knownAddress = u"https://cdn.example/d/movie.rar"_s;

/// A start whose address is known from before, so that its host is only asked for what is not in the address.
class PreparedTransfer : public ScriptedService
{
protected:
    /// As a new start of the program finds it, with the host taking its time.
    ItemPtr startAfterRestart()
    {
        startFilestore();
        resolveTo(1, knownAddress);
        engine.manager().commands().pauseAll();
        engine.restart();
        exchangesBefore = engine.http.exchanges().size();
        log->holdsPreparations = true;
        const ItemPtr item = engine.manager().items().front();
        engine.manager().commands().startItems({item});
        turnEventLoop();
        return item;
    }
    void prepared(std::size_t call = 0, const std::variant<bool, ResolverError>& result = true)
    {
        log->preparations.at(call).answer->deliver(result);
        turnEventLoop();
    }
    [[nodiscard]] std::size_t transfersBegun() const { return engine.http.exchanges().size() - exchangesBefore; }

    std::size_t exchangesBefore = 0;
};

} // namespace

TEST_F(PreparedTransfer, BeginsWhenTheHostIsReady)
{
    const ItemPtr item = startAfterRestart();
    EXPECT_EQ(item->status(), DownloadStatus::resolving);
    EXPECT_EQ(transfersBegun(), 0U);
    prepared();
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
    ASSERT_EQ(transfersBegun(), 1U);
    EXPECT_EQ(engine.http.last().request.url, QUrl(knownAddress));
    EXPECT_EQ(log->resolves.size(), 2U);
}

TEST_F(PreparedTransfer, IsNotForAnAddressThatWasResolvedJustNow)
{
    startFilestore();
    resolveTo(1, knownAddress);
    EXPECT_TRUE(log->preparations.empty());
    EXPECT_EQ(engine.http.exchanges().size(), 1U);
}

TEST_F(PreparedTransfer, IsNotForADirectLink)
{
    engine.manager().accounts().set({account(SupportedHost::filestore)});
    engine.start(u"http://h/a.bin"_s);
    EXPECT_TRUE(log->preparations.empty());
}

TEST_F(PreparedTransfer, OfAnItemThatIsStoppedMeanwhileNeverBegins)
{
    const ItemPtr item = startAfterRestart();
    engine.manager().commands().interruptItem(*item, DownloadStatus::stopped);
    EXPECT_TRUE(log->preparations.at(0).stop.stop_requested());
    prepared();
    EXPECT_EQ(item->status(), DownloadStatus::stopped);
    EXPECT_EQ(transfersBegun(), 0U);
}

TEST_F(PreparedTransfer, OfAnItemThatIsRemovedMeanwhileNeverBegins)
{
    const ItemPtr item = startAfterRestart();
    engine.manager().commands().removeItems({item->id()});
    prepared();
    EXPECT_EQ(transfersBegun(), 0U);
}

TEST_F(PreparedTransfer, BeginsOnceThoughStoppedAndStartedMeanwhile)
{
    const ItemPtr item = startAfterRestart();
    engine.manager().commands().interruptItem(*item, DownloadStatus::paused);
    engine.manager().commands().startAll();
    turnEventLoop();
    ASSERT_EQ(log->preparations.size(), 2U);
    prepared();
    EXPECT_EQ(transfersBegun(), 0U);
    prepared(1);
    EXPECT_EQ(transfersBegun(), 1U);
}

TEST_F(PreparedTransfer, SurvivesTheEndOfTheManagerMeanwhile)
{
    startAfterRestart();
    engine.restart();
    exchangesBefore = engine.http.exchanges().size();
    prepared();
    EXPECT_EQ(transfersBegun(), 0U);
}

TEST_F(PreparedTransfer, ThatCannotBePreparedFailsTheItem)
{
    const ItemPtr item = startAfterRestart();
    prepared(0, ResolverError::authenticationFailed());
    EXPECT_EQ(item->status(), DownloadStatus::failure(u"Authentication failed"_s));
    EXPECT_EQ(transfersBegun(), 0U);
}
