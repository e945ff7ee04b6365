#include "engine/tries/HostRests.h"

#include "fixtures/ManualClock.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;

namespace {

class HostRestsTest : public ::testing::Test
{
protected:
    [[nodiscard]] std::chrono::seconds left() const
    {
        return std::chrono::ceil<std::chrono::seconds>(rests.due(host).value_or(clock.steadyNow()) - clock.steadyNow());
    }
    /// The probe finds the host away each time, until it has no try left.
    void spendTheFirst()
    {
        for (const auto delay : {2s, 4s, 6s, 8s, 10s, 10s, 10s, 10s}) {
            rests.failed(host, first, delay);
            clock.advance(delay);
            rests.setProbe(host, first);
        }
        rests.failedForGood(host, first);
    }

    const QString host = u"http://away"_s;
    const QString page = u"https://page"_s;
    const ItemId first = ItemId::make();
    const ItemId second = ItemId::make();
    fixtures::ManualClock clock;
    int timesDue = 0;
    HostRests rests{clock, [this] { ++timesDue; }};
};

} // namespace

TEST_F(HostRestsTest, HoldNobodyBackBeforeAFailure)
{
    EXPECT_TRUE(rests.isEmpty());
    EXPECT_FALSE(rests.holdsBack(host, first));
    EXPECT_FALSE(rests.due(host));
}

TEST_F(HostRestsTest, LetTheItemThatFoundTheHostAwayAskFirstAndAlone)
{
    rests.failed(host, first, 4s);
    clock.advance(3999ms);
    EXPECT_TRUE(rests.holdsBack(host, first));
    EXPECT_EQ(timesDue, 0);
    clock.advance(1ms);
    EXPECT_EQ(timesDue, 1);
    EXPECT_EQ(rests.withoutProbe(), QSet<QString>{host});
    rests.setProbe(host, first);
    EXPECT_FALSE(rests.holdsBack(host, first));
    EXPECT_TRUE(rests.holdsBack(host, second));
    EXPECT_FALSE(rests.holdsBack(u"http://other"_s, second));
    EXPECT_TRUE(rests.withoutProbe().isEmpty());
}

TEST_F(HostRestsTest, AreNotProlongedByWhoWasAskedForBefore)
{
    rests.failed(host, first, 2s);
    rests.failed(host, second, 10s);
    EXPECT_EQ(left(), 2s);
    EXPECT_EQ(rests.failedItems(host), QSet<ItemId>({first, second}));
}

TEST_F(HostRestsTest, EndWithAnAnswer)
{
    rests.failed(host, first, 2s);
    EXPECT_EQ(rests.end(host), QSet<ItemId>{first});
    EXPECT_FALSE(rests.holdsBack(host, second));
    clock.advance(1min);
    EXPECT_EQ(timesDue, 0);
}

TEST_F(HostRestsTest, AreEachHostsOwn)
{
    rests.failed(host, first, 2s);
    rests.failed(u"http://other"_s, second, 6s);
    EXPECT_EQ(left(), 2s);
    rests.end(u"http://other"_s);
    EXPECT_TRUE(rests.holdsBack(host, second));
    EXPECT_EQ(rests.endAll(), QSet<ItemId>{first});
    EXPECT_TRUE(rests.isEmpty());
}

TEST_F(HostRestsTest, HandOverWhenTheProbeIsTakenAway)
{
    rests.failed(host, first, 10s);
    rests.left(first);
    EXPECT_EQ(left(), 10s);
    clock.advance(10s);
    EXPECT_EQ(rests.withoutProbe(), QSet<QString>{host});
    rests.setProbe(host, second);
    EXPECT_FALSE(rests.holdsBack(host, second));
    rests.left(second);
    EXPECT_EQ(left(), 2s);
}

TEST_F(HostRestsTest, HandOverWhenTheProbeIsAskedForElsewhere)
{
    rests.failed(host, first, 2s);
    clock.advance(2s);
    rests.setProbe(host, first);
    EXPECT_FALSE(rests.leads(host, first, host));
    EXPECT_FALSE(rests.holdsBack(host, first));
    EXPECT_FALSE(rests.leads(page, first, u"http://other"_s));
    clock.advance(2s);
    EXPECT_EQ(rests.withoutProbe(), QSet<QString>{host});
}

TEST_F(HostRestsTest, APageThatLedToARestingHostRestsUntilThatAnswers)
{
    const ItemId third = ItemId::make();
    rests.failed(host, first, 2s);
    EXPECT_FALSE(rests.leads(page, second, host));
    EXPECT_EQ(rests.behind(page), host);
    EXPECT_TRUE(rests.holdsBack(page, third));
    // Who was asked for before says nothing new.
    EXPECT_FALSE(rests.leads(page, third, u"https://third"_s));
    EXPECT_TRUE(rests.holdsBack(page, third));
    clock.advance(20s);
    EXPECT_EQ(rests.withoutProbe(), (QSet<QString>{host, page}));
    EXPECT_EQ(rests.end(host), QSet<ItemId>{first});
    EXPECT_TRUE(rests.isEmpty());
}

TEST_F(HostRestsTest, APageIsAskedForByOneThatEndsItsRestElsewhere)
{
    rests.failed(host, first, 2s);
    EXPECT_FALSE(rests.leads(page, second, host));
    clock.advance(20s);
    rests.setProbe(page, second);
    EXPECT_FALSE(rests.holdsBack(page, second));
    EXPECT_FALSE(rests.leads(page, second, host));
    EXPECT_EQ(rests.due(page), clock.steadyNow() + 40s);
    clock.advance(40s);
    rests.setProbe(page, second);
    EXPECT_TRUE(rests.leads(page, second, u"https://third"_s));
    EXPECT_FALSE(rests.due(page));
    EXPECT_TRUE(rests.due(host));
}

TEST_F(HostRestsTest, APageWaitsForTheHostThatItsProbeAsksToo)
{
    const ItemId third = ItemId::make();
    rests.failed(host, first, 2s);
    rests.pageFailed(page, second);
    clock.advance(20s);
    rests.setProbe(host, first);
    rests.setProbe(page, first);
    EXPECT_FALSE(rests.leads(page, first, host));
    EXPECT_FALSE(rests.holdsBack(host, first));
    EXPECT_EQ(rests.behind(page), host);
    EXPECT_TRUE(rests.holdsBack(page, third));
    clock.advance(2s); // another one may ask meanwhile
    EXPECT_EQ(rests.withoutProbe(), QSet<QString>{page});
    rests.end(host);
    EXPECT_TRUE(rests.isEmpty());
}

TEST_F(HostRestsTest, APageThatLeadsToItselfRestsAsAHost)
{
    rests.failed(host, first, 2s);
    EXPECT_FALSE(rests.leads(host, second, host));
    EXPECT_FALSE(rests.behind(host));
    EXPECT_EQ(left(), 2s);
}

TEST_F(HostRestsTest, NobodyProbesAHostThatRestsNoMore)
{
    rests.setProbe(host, first);
    EXPECT_TRUE(rests.isEmpty());
}

TEST_F(HostRestsTest, GrowToTenMinutesOnceAnItemHasFailedForGoodAndTakeAnotherProbeEachTime)
{
    spendTheFirst();
    EXPECT_EQ(left(), 0s);
    rests.setProbe(host, second);
    rests.failed(host, second, 2s);
    for (const auto delay : {20s, 40s, 80s, 160s, 320s, 600s, 600s, 600s}) {
        EXPECT_EQ(left(), delay);
        clock.advance(delay);
        ASSERT_EQ(rests.withoutProbe(), QSet<QString>{host});
        rests.setProbe(host, second);
        rests.failed(host, second, 2s);
        EXPECT_TRUE(rests.holdsBack(host, second));
    }
}

TEST_F(HostRestsTest, AreShortAgainAfterAnAnswer)
{
    spendTheFirst();
    rests.end(host);
    rests.failed(host, second, 2s);
    EXPECT_EQ(left(), 2s);
}
