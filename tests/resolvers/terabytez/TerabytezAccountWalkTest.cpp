#include "resolvers/terabytez/TerabytezScene.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::SizeIs;

const QString signedInPage = u"<a href=\"/?op=Logout\">Logout</a>"_s;
const QString loginForm = u"<a>Logout</a><form><input name=\"password\"></form>"_s;
const QString accountPage = u"<h1>My Username</h1> Gold account, traffic left 5 GB"_s;

class TerabytezAccountWalkTest : public TerabytezScene
{
protected:
    TerabytezAccountWalkTest()
    {
        shown.onLoad = [](Page& page) { page.arrivesAt(u"https://terabytez.example/"_s); };
    }
    /// The link to the account works.
    void accountOpens()
    {
        shown.onOpenAccount = [this](Page& page) {
            shown.html = accountPage;
            page.ends();
        };
    }
    /// Whoever reads pages has come to this number of them, and waits.
    bool hasRead(qsizetype number)
    {
        return comes(
            [this, number] { return timesRun(terabytezScripts::html()) == number && clock.pendingTimers() == 1; });
    }
    void expectPolls(qsizetype before)
    {
        for (qsizetype poll = 1; poll <= 12; ++poll) {
            ASSERT_TRUE(hasRead(before + poll));
            clock.advance(500ms - 1us);
            EXPECT_EQ(timesRun(terabytezScripts::html()), before + poll);
            clock.advance(1us);
        }
    }
    [[nodiscard]] QString opening() const { return terabytezScripts::openAccount({u"terabytez.example"_s}); }
};

TEST_F(TerabytezAccountWalkTest, GoesFromTheFirstPageToTheAccountAndTellsItsPlan)
{
    shown.html = signedInPage;
    accountOpens();
    const WalkPtr walk = check();
    EXPECT_EQ(page().loads, std::vector<Link>{fixtures::link(u"https://terabytez.example/"_s)});
    ASSERT_TRUE(ends(walk));
    ASSERT_TRUE(walk->account);
    EXPECT_EQ(*walk->account, (PremiumAccountInfo{u"Gold"_s, {}, 5'000'000'000, {}}));
    EXPECT_THAT(browser.pages, IsEmpty());
    EXPECT_EQ(browser.pagesMade, 1);
}

TEST_F(TerabytezAccountWalkTest, RunsOneScriptBetweenThePages)
{
    shown.html = signedInPage;
    const WalkPtr walk = check();
    ASSERT_TRUE(comes([this] { return timesRun(opening()) == 1; }));
    EXPECT_EQ(page().scripts, (QStringList{terabytezScripts::html(), opening()}));
    clock.advance(20s - 1ms);
    EXPECT_THAT(page().scripts, SizeIs(2));
    clock.advance(1ms);
    EXPECT_THAT(page().scripts, SizeIs(3));
}

TEST_F(TerabytezAccountWalkTest, ALoginFormEndsThePassAndTheThirdOneTheWalk)
{
    shown.html = loginForm;
    const WalkPtr walk = check();
    for (std::size_t pass = 1; pass <= 3; ++pass) {
        ASSERT_TRUE(hasRead(static_cast<qsizetype>(pass)));
        EXPECT_THAT(page().loads, SizeIs(pass));
        EXPECT_EQ(timesRun(opening()), 0);
        clock.advance(1s - 1us);
        EXPECT_FALSE(walk->isOver);
        clock.advance(1us);
    }
    ASSERT_TRUE(ends(walk));
    EXPECT_EQ(walk->error, Kind::loginRequired);
    EXPECT_THAT(browser.pages, IsEmpty());
}

TEST_F(TerabytezAccountWalkTest, APageThatTellsNothingIsReadTwelveTimesInEachPass)
{
    const WalkPtr walk = check();
    for (std::size_t pass = 1; pass <= 3; ++pass) {
        ASSERT_NO_FATAL_FAILURE(expectPolls(static_cast<qsizetype>(pass - 1) * 12));
        EXPECT_THAT(page().loads, SizeIs(pass));
        clock.advance(1s - 1us);
        EXPECT_FALSE(walk->isOver);
        clock.advance(1us);
    }
    ASSERT_TRUE(ends(walk));
    EXPECT_EQ(walk->error, Kind::loginRequired);
}

TEST_F(TerabytezAccountWalkTest, APageMayTellOfTheSignInLate)
{
    const WalkPtr walk = check();
    ASSERT_TRUE(hasRead(1));
    shown.html = signedInPage;
    accountOpens();
    clock.advance(500ms);
    ASSERT_TRUE(ends(walk));
    EXPECT_TRUE(walk->account);
}

TEST_F(TerabytezAccountWalkTest, TheAccountIsLookedForTwelveTimesBeforeItIsGoneToAnew)
{
    shown.html = signedInPage;
    shown.onOpenAccount = [](Page& page) { page.ends(); };
    const WalkPtr walk = check();
    ASSERT_NO_FATAL_FAILURE(expectPolls(1));
    EXPECT_THAT(page().loads, SizeIs(1));
    EXPECT_EQ(timesRun(opening()), 1);
    accountOpens();
    clock.advance(1s);
    ASSERT_TRUE(ends(walk));
    EXPECT_TRUE(walk->account);
}

TEST_F(TerabytezAccountWalkTest, AnAccountThatNeverShowsWantsASignIn)
{
    shown.html = signedInPage;
    shown.onOpenAccount = [](Page& page) { page.ends(); };
    const WalkPtr walk = check();
    for (int pass = 0; pass < 3; ++pass) {
        ASSERT_NO_FATAL_FAILURE(expectPolls(pass * 13 + 1));
        clock.advance(1s);
    }
    ASSERT_TRUE(ends(walk));
    EXPECT_EQ(walk->error, Kind::loginRequired);
}

TEST_F(TerabytezAccountWalkTest, TheAccountMayShowLate)
{
    shown.html = signedInPage;
    shown.onOpenAccount = [](Page& page) { page.ends(); };
    const WalkPtr walk = check();
    ASSERT_TRUE(hasRead(2));
    shown.html = accountPage;
    clock.advance(500ms);
    ASSERT_TRUE(ends(walk));
    EXPECT_TRUE(walk->account);
}

TEST_F(TerabytezAccountWalkTest, AFirstPageThatDoesNotComeIsReadAfter20Seconds)
{
    shown.onLoad = {};
    const WalkPtr walk = check();
    clock.advance(20s - 1ms);
    EXPECT_THAT(page().scripts, IsEmpty());
    clock.advance(1ms);
    EXPECT_THAT(page().scripts, SizeIs(1));
}

TEST_F(TerabytezAccountWalkTest, ANavigationThatNobodyWaitedForStandsForTheAccounts)
{
    shown.html = signedInPage;
    shown.onLoad = [](Page& page) {
        page.arrivesAt(u"https://terabytez.example/"_s);
        page.ends();
    };
    const WalkPtr walk = check();
    EXPECT_TRUE(hasRead(2));
}

/// How far a check has come when it is stopped.
enum class CheckMoment
{
    load,
    poll,
    reading,
    opening,
    markerPoll,
};

class TerabytezAccountWalkStop : public TerabytezAccountWalkTest, public testing::WithParamInterface<CheckMoment>
{};

TEST_P(TerabytezAccountWalkStop, EndsThePageAtOnceAndTellsNothing)
{
    const CheckMoment moment = GetParam();
    if (moment == CheckMoment::load)
        shown.onLoad = {};
    if (moment == CheckMoment::opening || moment == CheckMoment::markerPoll)
        shown.html = signedInPage;
    if (moment == CheckMoment::markerPoll)
        shown.onOpenAccount = [](Page& page) { page.ends(); };
    const WalkPtr walk = check();
    ASSERT_TRUE(moment != CheckMoment::poll || hasRead(1));
    ASSERT_TRUE(moment != CheckMoment::opening || comes([this] { return timesRun(opening()) == 1; }));
    ASSERT_TRUE(moment != CheckMoment::markerPoll || hasRead(2));
    walk->stop.request_stop();
    EXPECT_THAT(browser.pages, IsEmpty());
    ASSERT_TRUE(ends(walk));
    EXPECT_FALSE(walk->account || walk->error);
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(TerabytezAccountWalkTest, AnAccountThatIsReadWhenTheCheckIsStoppedIsNotTold)
{
    std::optional<HeldReading> held;
    shown.html = signedInPage;
    shown.onOpenAccount = [this, &held](Page& page) {
        shown.html = accountPage;
        held.emplace(background);
        page.ends();
    };
    const WalkPtr walk = check();
    ASSERT_TRUE(comes([this] { return timesRun(terabytezScripts::html()) == 2; }));
    walk->stop.request_stop();
    held.reset();
    ASSERT_TRUE(ends(walk));
    EXPECT_FALSE(walk->account || walk->error);
}

INSTANTIATE_TEST_SUITE_P(Moments, TerabytezAccountWalkStop,
                         testing::Values(CheckMoment::load, CheckMoment::poll, CheckMoment::reading,
                                         CheckMoment::opening, CheckMoment::markerPoll));

} // namespace
} // namespace vormel
