#include "EngineTest.h"

#include <QApplication>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace vormel {
namespace {

using sites::Answer;

/// Waits of a page whose time only the test moves.
class LimitTest : public EngineTest
{
protected:
    LimitTest() { page = pageOf(world().slowBrowser(), judge); }

    fixtures::ManualClock& clock = world().clock();
};

TEST_F(LimitTest, ALoadWithoutAnAnswerEndsAfterAMinuteAndIsStopped)
{
    serveAnswer("/slow", Answer::page(200, "slow").stallBeforeHead());
    page->load(link(server.url("/slow")));
    ASSERT_TRUE(stalls());
    clock.advance(59s);
    linger(50ms);
    EXPECT_TRUE(judge.ends.empty());
    clock.advance(1s);
    EXPECT_EQ(nextEnd(), End::failed);
    server.release();
    linger();
    EXPECT_EQ(judge.ends.size(), 1U);
    EXPECT_EQ(shownUrl(), "nothing");
}

TEST_F(LimitTest, APageThatNeverGetsWholeIsShownAndEndsAfterAMinute)
{
    servePage("/page", "<p>page<img src=/slow>");
    serveAnswer("/slow", Answer::page(200, "slow").stallBeforeHead());
    page->load(link(server.url("/page")));
    ASSERT_TRUE(stalls());
    // The engine looks ahead for pictures: it asks for them before it shows the page and has read its words.
    EXPECT_TRUE(fixtures::waitUntil([this] { return shownUrl() == "/page"; }));
    EXPECT_TRUE(fixtures::waitUntil([this] { return text() == u"page"_s; }));
    clock.advance(60s);
    EXPECT_EQ(nextEnd(), End::loaded);
    linger();
    EXPECT_EQ(judge.ends.size(), 1U);
    EXPECT_EQ(shownUrl(), "/page");
}

TEST_F(LimitTest, AScriptWithoutEndGivesNothingAfterTenSeconds)
{
    servePage("/page", "<p>page");
    EXPECT_EQ(open("/page"), End::loaded);
    QMetaObject::invokeMethod(
        qApp, [this] { clock.advance(10s); }, Qt::QueuedConnection);
    EXPECT_EQ(answer(u"for (;;);"_s), QVariant());
}

TEST_F(LimitTest, WithNothingAfterAStopTheEndIsTold)
{
    serveAnswer("/nothing", Answer::empty(204));
    page->load(link(server.url("/nothing")));
    const int timersOfALoad = clock.pendingTimers();
    ASSERT_TRUE(fixtures::waitUntil([&] { return clock.pendingTimers() > timersOfALoad; })) << "it has stopped";
    linger();
    EXPECT_TRUE(judge.ends.empty());
    clock.advance(300ms);
    EXPECT_EQ(nextEnd(), End::failed);
}

} // namespace
} // namespace vormel
