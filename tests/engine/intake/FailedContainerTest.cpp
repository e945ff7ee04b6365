#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// The row of a container that came with a password and could not be read, between two files.
class FailedContainerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        engine.add(u"http://h/before"_s);
        engine.manager().addURLs({link(u"https://container.example/c/XYZ"_s)}, u"secret"_s);
        turnEventLoop();
        engine.add(u"http://h/behind"_s);
        row = engine.manager().items().at(1);
        answer(ContainerError::noLinksFound());
        ASSERT_EQ(row->status(), DownloadStatus::failed);
    }
    void answer(const std::variant<std::vector<Link>, ContainerError>& result)
    {
        log->containers.back().answer->deliver(result);
        turnEventLoop();
    }
    /// Was the container read so often, and its page never fetched?
    void expectReads(std::size_t count)
    {
        turnEventLoop();
        EXPECT_EQ(log->containers.size(), count);
        for (const auto& exchange : engine.http.exchanges())
            EXPECT_EQ(exchange->request.url.host(), u"h"_s);
    }

    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    EngineOnScript engine{fakeServices(log)};
    ItemPtr row;
};

} // namespace

TEST_F(FailedContainerTest, IsReadAgainWithItsPasswordInItsPlace)
{
    engine.manager().commands().retryItem(*row);
    expectReads(2);
    EXPECT_EQ(log->containers.back().password, u"secret"_s);
    EXPECT_EQ(row->status(), DownloadStatus::expanding);
    EXPECT_EQ(engine.manager().items().at(1), row);
    answer(ContainerError::wrongPassword());
    EXPECT_EQ(row->status(), DownloadStatus::failed);
    engine.manager().commands().retryItem(*row);
    EXPECT_EQ(log->containers.back().password, u"secret"_s);
    answer(std::vector{link(u"http://h/1.rar"_s), link(u"http://h/2.rar"_s)});
    ASSERT_EQ(engine.manager().items().size(), 4U);
    EXPECT_EQ(engine.manager().items().at(3)->filename(), u"2.rar");
}

TEST_F(FailedContainerTest, IsReadAgainAfterARestart)
{
    engine.restart();
    row = engine.manager().items().at(1);
    ASSERT_EQ(row->status(), DownloadStatus::failed);
    engine.manager().commands().retryItem(*row);
    expectReads(2);
    EXPECT_EQ(log->containers.back().password, std::nullopt);
    EXPECT_EQ(row->filename(), u"container.example: XYZ");
}

TEST_F(FailedContainerTest, IsReadAgainWhenItIsToBeFetchedAgain)
{
    engine.manager().commands().redownloadItem(*row);
    expectReads(2);
    EXPECT_EQ(row->status(), DownloadStatus::expanding);
}

TEST_F(FailedContainerTest, IsNeverFetchedByStartOrResync)
{
    for (const auto& items : {std::vector{row}, engine.manager().items()}) {
        engine.settings().maxConcurrentDownloads.set(0);
        engine.manager().commands().resyncItems(items);
        engine.manager().commands().stopItems(items);
        engine.manager().commands().startAll();
        engine.settings().maxConcurrentDownloads.set(5);
        engine.manager().commands().startItems({row});
        expectReads(1);
        EXPECT_EQ(row->status(), DownloadStatus::failed);
    }
}

TEST_F(FailedContainerTest, AsksForItsCaptchaWhenThatIsWantedNow)
{
    engine.manager().commands().retryItem(*row);
    answer(ContainerError::captchaRequired());
    EXPECT_EQ(engine.manager().questions().pendingCaptcha(),
              (PendingCaptcha{row->id(), row->originalURL(), u"secret"_s}));
    engine.manager().questions().cancelCaptcha();
    engine.manager().commands().retryItem(*row);
    expectReads(3);
}

TEST_F(FailedContainerTest, ComesToNothingWhenItsRowIsRemovedMeanwhile)
{
    engine.manager().commands().retryItem(*row);
    engine.manager().commands().removeItems({row->id()});
    answer(std::vector{link(u"http://h/1.rar"_s)});
    EXPECT_EQ(engine.manager().items().size(), 2U);
}

TEST_F(FailedContainerTest, AsksNobodyAnyMoreWhenItsRowIsRemoved)
{
    engine.manager().commands().retryItem(*row);
    const std::stop_token stop = log->containers.back().stop;
    EXPECT_FALSE(stop.stop_requested());
    engine.manager().commands().removeItems({row->id()});
    EXPECT_TRUE(stop.stop_requested());
}

TEST_F(FailedContainerTest, IsNotReadTwiceAtOnceNorFetchedWhenItIsRetriedWhileItIsRead)
{
    engine.manager().commands().retryItem(*row);
    for (const auto& retry : {&QueueCommands::retryItem, &QueueCommands::redownloadItem}) {
        (engine.manager().commands().*retry)(*row);
        expectReads(2);
        EXPECT_EQ(row->status(), DownloadStatus::expanding);
    }
    EXPECT_FALSE(log->containers.back().stop.stop_requested());
    answer(std::vector{link(u"http://h/1.rar"_s)});
    EXPECT_EQ(engine.manager().items().back()->filename(), u"1.rar");
}

TEST_F(FailedContainerTest, AsksNobodyAnyMoreOnceTheProgramEnds)
{
    engine.manager().commands().retryItem(*row);
    const std::stop_token stop = log->containers.back().stop;
    engine.restart();
    EXPECT_TRUE(stop.stop_requested());
}
