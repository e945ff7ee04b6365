#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

constexpr double shownSpeed = 2000;

/// A transfer of six bytes, of which three are here.
struct Running
{
    Running() { begin(u"http://h/x.bin"_s, {}); }

    void begin(const QString& url, const std::vector<HttpHeader>& headers)
    {
        item = engine.start(url);
        std::vector<HttpHeader> all{{"Content-Length", "6"}};
        all.insert(all.end(), headers.begin(), headers.end());
        answer(200, all);
        server().data("abc");
        turnEventLoop();
    }
    void answer(int status, const std::vector<HttpHeader>& headers)
    {
        server().head(status, headers);
        turnEventLoop();
    }
    void loseConnection()
    {
        server().fail(HttpError::Kind::connectionLost);
        turnEventLoop();
        engine.clock.advance(10s);
    }
    void spendAllTries()
    {
        for (int i = 0; i < 8; ++i)
            loseConnection();
    }
    void resume()
    {
        loseConnection();
        answer(206, {{"Content-Range", "bytes 3-5/6"}});
    }
    QueueCommands& commands() { return engine.manager().commands(); }
    ScriptedHttpClient::Exchange& server() { return engine.http.last(); }

    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    EngineOnScript engine{fakeServices(log)};
    ItemPtr item;
};

void nothing(Running& /*transfer*/) {}

struct End
{
    const char* name;
    void (*prepare)(Running& transfer);
    void (*come)(Running& transfer);
    DownloadStatus::Kind status;
};

void blockTheFolderOfASet(Running& transfer)
{
    transfer.engine.sandbox.write(u"Downloads/m"_s, "a file where the folder of the set should be");
    transfer.begin(u"http://h/get"_s, {{"Content-Disposition", "filename=m.part1.rar"}});
    transfer.server().data("def");
}

void askForALogin(Running& transfer)
{
    transfer.engine.manager().accounts().set({account(SupportedHost::filestore)});
    transfer.item = transfer.engine.add(u"https://filestore.example/f/y.bin"_s);
    transfer.log->resolves[0].answer->deliver(ResolverError::unsupportedHost());
    transfer.commands().startItems({transfer.item});
    turnEventLoop();
}

const End ends[] = {
    {"AFileThatIsComplete", [](Running& t) { t.server().data("def"); }, [](Running& t) { t.server().finish(); },
     DownloadStatus::completed},
    {"APageThatCameInstead", [](Running& t) { t.loseConnection(); },
     [](Running& t) {
         t.server().head(200, {{"Content-Type", "text/html"}});
         t.server().finish();
     },
     DownloadStatus::failed},
    {"ALostConnection", nothing, [](Running& t) { t.server().fail(HttpError::Kind::connectionLost); },
     DownloadStatus::queued},
    {"AConnectionLostForGood", [](Running& t) { t.spendAllTries(); },
     [](Running& t) { t.server().fail(HttpError::Kind::timedOut); }, DownloadStatus::failed},
    {"AnErrorAnswer", [](Running& t) { t.loseConnection(); }, [](Running& t) { t.server().head(503); },
     DownloadStatus::queued},
    {"AShortFile", [](Running& t) { t.resume(); }, [](Running& t) { t.server().finish(); }, DownloadStatus::queued},
    {"AShortFileForGood",
     [](Running& t) {
         t.spendAllTries();
         t.answer(206, {{"Content-Range", "bytes 3-5/6"}});
     },
     [](Running& t) { t.server().finish(); }, DownloadStatus::failed},
    {"AFileThatCannotBeMoved", blockTheFolderOfASet, [](Running& t) { t.server().finish(); }, DownloadStatus::failed},
    {"APause", nothing, [](Running& t) { t.commands().pauseItems({t.item}); }, DownloadStatus::paused},
    {"APauseOfAll", nothing, [](Running& t) { t.engine.manager().commands().pauseAll(); }, DownloadStatus::paused},
    {"AStop", nothing, [](Running& t) { t.commands().stopItems({t.item}); }, DownloadStatus::stopped},
    {"ARetry", nothing, [](Running& t) { t.commands().retryItem(*t.item); }, DownloadStatus::downloading},
    {"ARedownload", nothing, [](Running& t) { t.commands().redownloadItem(*t.item); }, DownloadStatus::downloading},
    {"ALoginThatIsNeeded", askForALogin,
     [](Running& t) { t.log->resolves[1].answer->deliver(loginRequired(SupportedHost::filestore)); },
     DownloadStatus::queued},
};

class SpeedAfter : public ::testing::TestWithParam<End>
{
protected:
    Running transfer;
};

} // namespace

TEST_P(SpeedAfter, IsZero)
{
    GetParam().prepare(transfer);
    turnEventLoop();
    transfer.item->setSpeedBytesPerSec(shownSpeed);
    GetParam().come(transfer);
    turnEventLoop();
    EXPECT_EQ(transfer.item->status(), GetParam().status);
    EXPECT_DOUBLE_EQ(transfer.item->speedBytesPerSec(), 0);
}

INSTANTIATE_TEST_SUITE_P(All, SpeedAfter, ::testing::ValuesIn(ends),
                         [](const auto& row) { return std::string(row.param.name); });

namespace {

/// Three transfers that tick together.
class TotalSpeedTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        items = engine.add({u"http://h/a"_s, u"http://h/b"_s, u"http://h/c"_s});
        engine.manager().commands().startAll();
        turnEventLoop();
        for (const auto& exchange : engine.http.exchanges())
            exchange->head(200);
        engine.clock.advance(500ms);
        tick(0, 100);
        tick(1, 1000);
        tick(2, 10000);
    }
    void tick(std::size_t transfer, qsizetype bytes)
    {
        engine.http.exchanges()[transfer]->data(QByteArray(bytes, 'x'));
        turnEventLoop();
    }
    [[nodiscard]] double total() { return engine.manager().totalSpeedBytesPerSec(); }

    EngineOnScript engine;
    std::vector<ItemPtr> items;
};

} // namespace

TEST_F(TotalSpeedTest, IsTheSumOverAllItems)
{
    EXPECT_DOUBLE_EQ(total(), 22200);
}

TEST_F(TotalSpeedTest, KeepsItsLastValueUntilTheNextTick)
{
    engine.http.exchanges()[1]->finish();
    engine.manager().commands().pauseItems({items[2]});
    turnEventLoop();
    EXPECT_DOUBLE_EQ(total(), 22200);
    engine.clock.advance(500ms);
    tick(0, 200);
    EXPECT_DOUBLE_EQ(total(), 400);
}

TEST_F(TotalSpeedTest, CountsNoItemThatWasRemoved)
{
    engine.manager().commands().removeItems({items[1]->id()});
    engine.clock.advance(500ms);
    tick(0, 200);
    EXPECT_DOUBLE_EQ(total(), 20400);
}

TEST_F(TotalSpeedTest, IsToldAtEachTick)
{
    std::vector<double> told;
    QObject::connect(&engine.manager(), &DownloadManager::totalSpeedChanged, &engine.manager(),
                     [&] { told.push_back(total()); });
    engine.clock.advance(500ms);
    tick(0, 50);
    tick(1, 100);
    EXPECT_EQ(told, (std::vector<double>{22100, 20300}));
}

TEST(StoredSpeedCap, HoldsFromTheStart)
{
    EngineOnScript engine;
    engine.settings().maxDownloadSpeedKBps.set(1);
    engine.restart();
    EXPECT_EQ(engine.http.blockSize(), 16 * 1024);
    engine.start(u"http://h/x.bin"_s);
    engine.http.last().head(200);
    engine.http.last().data(QByteArray(10240, 'x'));
    turnEventLoop();
    EXPECT_EQ(engine.http.last().suspensions, 1);
}
