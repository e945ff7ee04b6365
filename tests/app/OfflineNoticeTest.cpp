#include "app/OfflineNotice.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "ui/notices/Notices.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class OfflineNoticeTest : public ::testing::Test
{
protected:
    void setOnline(bool isOnline)
    {
        engine.network.setOnline(isOnline);
        fixtures::turnEventLoop();
    }
    [[nodiscard]] const Notice* shown() const { return notices.find(u"offline"_s); }

    fixtures::EngineOnScript engine;
    Notices notices{engine.clock};
    OfflineNotice notice{engine.manager(), notices};
};

TEST_F(OfflineNoticeTest, SaysThatThereIsNoNetworkWhileSomethingWaitsForIt)
{
    setOnline(false);
    EXPECT_EQ(shown(), nullptr);
    const ItemPtr item = engine.start(u"http://h/x.bin"_s);
    ASSERT_NE(shown(), nullptr);
    EXPECT_FALSE(shown()->canClose);
    EXPECT_FALSE(shown()->life);
    EXPECT_EQ(shown()->text(AppLanguage::english), u"No network. Downloads go on by themselves when it is back.");
    EXPECT_EQ(shown()->text(AppLanguage::italian), u"Nessuna rete. I download riprenderanno da soli appena torna.");
    engine.manager().commands().stopItems({item});
    fixtures::turnEventLoop();
    EXPECT_EQ(shown(), nullptr);
}

TEST_F(OfflineNoticeTest, GoesWhenTheNetworkIsBack)
{
    engine.start(u"http://h/x.bin"_s);
    setOnline(false);
    EXPECT_NE(shown(), nullptr);
    setOnline(true);
    EXPECT_EQ(shown(), nullptr);
}

TEST_F(OfflineNoticeTest, GoesWithTheLastItemThatWaits)
{
    const ItemPtr item = engine.start(u"http://h/x.bin"_s);
    setOnline(false);
    ASSERT_NE(shown(), nullptr);
    engine.manager().commands().removeItems({item->id()});
    fixtures::turnEventLoop();
    EXPECT_EQ(shown(), nullptr);
}

TEST_F(OfflineNoticeTest, ComesBackWithAnItemThatIsPutBack)
{
    const ItemPtr item = engine.start(u"http://h/x.bin"_s);
    setOnline(false);
    engine.manager().removed().remove({item->id()});
    fixtures::turnEventLoop();
    ASSERT_EQ(shown(), nullptr);
    engine.manager().removed().putBack();
    fixtures::turnEventLoop();
    EXPECT_NE(shown(), nullptr);
}

TEST_F(OfflineNoticeTest, LetsTheUserTryAnyway)
{
    setOnline(false);
    const ItemPtr item = engine.start(u"http://h/x.bin"_s);
    ASSERT_NE(shown(), nullptr);
    notices.run(u"offline"_s, 0);
    fixtures::turnEventLoop();
    EXPECT_EQ(shown(), nullptr);
    EXPECT_EQ(item->status(), DownloadStatus::downloading);
}

TEST_F(OfflineNoticeTest, SaysNothingOfServersOfThisMachine)
{
    setOnline(false);
    engine.start(u"http://127.0.0.1/x.bin"_s);
    EXPECT_EQ(shown(), nullptr);
}

} // namespace
} // namespace vormel
