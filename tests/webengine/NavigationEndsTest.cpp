#include "webengine/NavigationEnds.h"

#include "fixtures/EventLoop.h"
#include "fixtures/ManualClock.h"

#include <gmock/gmock.h>

namespace vormel {
namespace {

using namespace std::chrono_literals;
using End = WebPage::End;
using testing::ElementsAre;
using testing::IsEmpty;

/// The engine's signals in every order, by hand.
class NavigationEndsTest : public testing::Test, protected NavigationEnds::Owner
{
protected:
    void stopNavigation() override
    {
        ++stops;
        ends.stopped(); // as the engine says at once
    }
    void navigationEnded(End end) override { told.push_back(end); }

    [[nodiscard]] const std::vector<End>& toldByNow()
    {
        fixtures::turnEventLoop();
        return told;
    }

    fixtures::ManualClock clock;
    NavigationEnds ends{clock, *this};
    std::vector<End> told;
    int stops = 0;
};

TEST_F(NavigationEndsTest, AreToldInALaterTurn)
{
    ends.begin();
    ends.finished(End::loaded);
    EXPECT_THAT(told, IsEmpty());
    EXPECT_THAT(toldByNow(), ElementsAre(End::loaded));
}

TEST_F(NavigationEndsTest, WaitForAFileAfterAStop)
{
    ends.begin();
    ends.asked(true);
    ends.stopped();
    clock.advance(299ms);
    EXPECT_THAT(toldByNow(), IsEmpty());
    ends.fileCame();
    EXPECT_THAT(toldByNow(), ElementsAre(End::failed));
    clock.advance(1min);
    EXPECT_THAT(toldByNow(), ElementsAre(End::failed));
}

TEST_F(NavigationEndsTest, WaitForAFileNoLongerThanThat)
{
    ends.begin();
    ends.stopped();
    clock.advance(300ms);
    EXPECT_THAT(toldByNow(), ElementsAre(End::failed));
}

TEST_F(NavigationEndsTest, DoNotWaitForTheFileOfARefusedRequest)
{
    ends.begin();
    ends.asked(true);
    ends.asked(false);
    ends.started();
    ends.stopped();
    EXPECT_THAT(toldByNow(), ElementsAre(End::failed));
}

TEST_F(NavigationEndsTest, AnotherNavigationInTheWaitHasTheOneEnd)
{
    ends.begin();
    ends.stopped();
    ends.asked(true);
    clock.advance(1s);
    EXPECT_THAT(toldByNow(), IsEmpty());
    ends.finished(End::loaded);
    EXPECT_THAT(toldByNow(), ElementsAre(End::loaded));
}

TEST_F(NavigationEndsTest, AnotherNavigationBeforeAnEndWasToldHasTheOneEnd)
{
    ends.begin();
    ends.finished(End::failed);
    ends.begin();
    ends.finished(End::loaded);
    EXPECT_THAT(toldByNow(), ElementsAre(End::loaded));
}

TEST_F(NavigationEndsTest, APageThatArrivedAndStopsIsLoaded)
{
    ends.begin();
    ends.arrived();
    ends.stopped();
    EXPECT_THAT(toldByNow(), ElementsAre(End::loaded));
}

TEST_F(NavigationEndsTest, ARequestAfterThePageArrivedIsAnotherNavigation)
{
    ends.begin();
    ends.arrived();
    ends.asked(true);
    ends.stopped();
    EXPECT_THAT(toldByNow(), IsEmpty()) << "perhaps a file";
    ends.fileCame();
    EXPECT_THAT(toldByNow(), ElementsAre(End::failed));
}

TEST_F(NavigationEndsTest, AFileWithoutANavigationIsOne)
{
    ends.fileCame();
    EXPECT_THAT(toldByNow(), ElementsAre(End::failed));
}

TEST_F(NavigationEndsTest, AFileInTheMiddleOfANavigationLeavesItUnderWay)
{
    ends.begin();
    ends.fileCame();
    EXPECT_THAT(toldByNow(), IsEmpty());
    ends.finished(End::loaded);
    EXPECT_THAT(toldByNow(), ElementsAre(End::loaded));
}

TEST_F(NavigationEndsTest, WhatIsSaidWithoutANavigationIsNoEnd)
{
    ends.stopped();
    ends.finished(End::loaded);
    ends.arrived();
    clock.advance(2min);
    EXPECT_THAT(toldByNow(), IsEmpty());
}

TEST_F(NavigationEndsTest, ADeathIsAnEndInAnyCase)
{
    ends.died();
    EXPECT_THAT(toldByNow(), ElementsAre(End::failed));
    ends.begin();
    ends.stopped();
    ends.died();
    ends.stopped();
    clock.advance(2min);
    EXPECT_THAT(toldByNow(), ElementsAre(End::failed, End::failed));
}

TEST_F(NavigationEndsTest, ComeAfterAMinuteAtTheLatest)
{
    ends.begin();
    clock.advance(60s);
    EXPECT_THAT(toldByNow(), ElementsAre(End::failed));
    EXPECT_EQ(stops, 1);
    ends.begin();
    ends.arrived();
    clock.advance(60s);
    EXPECT_THAT(toldByNow(), ElementsAre(End::failed, End::loaded));
    EXPECT_EQ(stops, 2);
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(NavigationEndsTest, GoSilentWithTheirPage)
{
    {
        NavigationEnds gone(clock, *this);
        gone.begin();
        gone.stopped();
        gone.died();
    }
    clock.advance(2min);
    EXPECT_THAT(toldByNow(), IsEmpty());
}

} // namespace
} // namespace vormel
