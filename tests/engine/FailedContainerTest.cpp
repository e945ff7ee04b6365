#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "fixtures/Workshop.h"

#include <gtest/gtest.h>

using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// The row of a container that came with a password and could not be read, between two files.
class FailedContainerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        shop.add(QStringLiteral("http://h/before"));
        shop.manager().addURLs({link(QStringLiteral("https://container.example/c/XYZ"))}, QStringLiteral("secret"));
        turnEventLoop();
        shop.add(QStringLiteral("http://h/behind"));
        row = shop.manager().items().at(1);
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
        for (const auto& exchange : shop.http.exchanges())
            EXPECT_EQ(exchange->request.url.host(), QStringLiteral("h"));
    }

    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    Workshop shop{fakeServices(log)};
    ItemPtr row;
};

} // namespace

TEST_F(FailedContainerTest, IsReadAgainWithItsPasswordInItsPlace)
{
    shop.manager().commands().retryItem(*row);
    expectReads(2);
    EXPECT_EQ(log->containers.back().password, QStringLiteral("secret"));
    EXPECT_EQ(row->status(), DownloadStatus::expanding);
    EXPECT_EQ(shop.manager().items().at(1), row);
    answer(ContainerError::wrongPassword());
    EXPECT_EQ(row->status(), DownloadStatus::failed);
    shop.manager().commands().retryItem(*row);
    EXPECT_EQ(log->containers.back().password, QStringLiteral("secret"));
    answer(std::vector{link(QStringLiteral("http://h/1.rar")), link(QStringLiteral("http://h/2.rar"))});
    ASSERT_EQ(shop.manager().items().size(), 4U);
    EXPECT_EQ(shop.manager().items().at(3)->filename(), u"2.rar");
}

TEST_F(FailedContainerTest, IsReadAgainAfterARestart)
{
    shop.restart();
    row = shop.manager().items().at(1);
    ASSERT_EQ(row->status(), DownloadStatus::failed);
    shop.manager().commands().retryItem(*row);
    expectReads(2);
    EXPECT_EQ(log->containers.back().password, std::nullopt);
    EXPECT_EQ(row->filename(), u"container.example: XYZ");
}

TEST_F(FailedContainerTest, IsReadAgainWhenItIsToBeFetchedAgain)
{
    shop.manager().commands().redownloadItem(*row);
    expectReads(2);
    EXPECT_EQ(row->status(), DownloadStatus::expanding);
}

TEST_F(FailedContainerTest, IsNeverFetchedByStartOrResync)
{
    for (const auto& items : {std::vector{row}, shop.manager().items()}) {
        shop.settings().maxConcurrentDownloads.set(0);
        shop.manager().commands().resyncItems(items);
        shop.manager().commands().stopItems(items);
        shop.manager().commands().startAll();
        shop.settings().maxConcurrentDownloads.set(5);
        shop.manager().commands().startItems({row});
        expectReads(1);
        EXPECT_EQ(row->status(), DownloadStatus::failed);
    }
}

TEST_F(FailedContainerTest, AsksForItsCaptchaWhenThatIsWantedNow)
{
    shop.manager().commands().retryItem(*row);
    answer(ContainerError::captchaRequired());
    EXPECT_EQ(shop.manager().questions().pendingCaptcha(),
              (PendingCaptcha{row->id(), row->originalURL(), QStringLiteral("secret")}));
    shop.manager().questions().cancelCaptcha();
    shop.manager().commands().retryItem(*row);
    expectReads(3);
}

TEST_F(FailedContainerTest, ComesToNothingWhenItsRowIsRemovedMeanwhile)
{
    shop.manager().commands().retryItem(*row);
    shop.manager().commands().removeItems({row->id()});
    answer(std::vector{link(QStringLiteral("http://h/1.rar"))});
    EXPECT_EQ(shop.manager().items().size(), 2U);
}
