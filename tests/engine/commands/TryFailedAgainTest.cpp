#include "engine/QueueScene.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

using S = DownloadStatus;

class TryFailedAgain : public ::testing::Test, protected QueueScene
{
protected:
    void tryAgain()
    {
        commands().tryFailedAgain(engine.manager().items());
        turnEventLoop();
    }
};

} // namespace

TEST_F(TryFailedAgain, GoesOnFromWhatIsOnDisk)
{
    run();
    spendAllTries();
    loseConnection();
    ASSERT_EQ(item->status(), S::failed);
    const qint64 bytes = item->bytesReceived();
    ASSERT_GT(bytes, 0);
    tryAgain();
    EXPECT_EQ(item->status(), S::downloading);
    EXPECT_EQ(server().header("Range"), "bytes=3-");
    EXPECT_EQ(item->bytesReceived(), bytes);
}

TEST_F(TryFailedAgain, GivesTheWholeBudgetOfTriesBack)
{
    run();
    spendAllTries();
    loseConnection();
    ASSERT_EQ(item->status(), S::failed);
    tryAgain();
    loseConnection();
    EXPECT_EQ(item->status(), S::queued);
}

TEST_F(TryFailedAgain, LetsAnItemStartOverOnceMore)
{
    const auto sendTooMuch = [this] {
        server().head(200, {{"Content-Length", "6"}});
        server().data("abcdefghi");
        server().finish();
        turnEventLoop();
    };
    add();
    commands().startItems({item});
    turnEventLoop();
    sendTooMuch();
    ASSERT_EQ(item->status(), S::queued);
    engine.clock.advance(std::chrono::seconds(10));
    sendTooMuch();
    ASSERT_EQ(item->status(), S::failed);
    tryAgain();
    sendTooMuch();
    EXPECT_EQ(item->status(), S::queued);
}

TEST_F(TryFailedAgain, LeavesEverythingElse)
{
    add(directLink, S::paused);
    tryAgain();
    EXPECT_EQ(item->status(), S::paused);
    EXPECT_EQ(waiting->status(), S::stopped);
}

TEST_F(TryFailedAgain, ResolvesTheAddressAnew)
{
    add(directLink, S::failure(u"gone"_s));
    engine.settings().maxConcurrentDownloads.set(0);
    item->setResolvedURL(link(u"http://cdn/x.bin"_s));
    tryAgain();
    EXPECT_EQ(item->status(), S::queued);
    EXPECT_FALSE(item->resolvedURL());
}

TEST_F(TryFailedAgain, ReadsFailedContainersAgain)
{
    openContainer();
    answerContainer(ContainerError::noLinksFound());
    tryAgain();
    ASSERT_EQ(log->containers.size(), 2U);
    EXPECT_EQ(engine.manager().items().back()->status(), S::expanding);
}

TEST_F(TryFailedAgain, EndsTheCountdownToTheRecovery)
{
    engine.settings().downloadRevFiles.set(false);
    const ItemPtr part = engine.add(u"https://filestore.example/f/m.part1.rar"_s); // without an account it fails
    add(u"http://h/m.part1.rev"_s, S::stopped);
    commands().startItems({part});
    turnEventLoop();
    ASSERT_TRUE(part->recoveryCountdown());
    engine.settings().maxConcurrentDownloads.set(0);
    tryAgain();
    EXPECT_FALSE(part->recoveryCountdown());
    engine.clock.advance(std::chrono::seconds(20));
    EXPECT_EQ(item->status(), S::stopped);
}
