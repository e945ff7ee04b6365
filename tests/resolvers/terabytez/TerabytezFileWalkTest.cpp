#include "resolvers/terabytez/TerabytezScene.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;

const QByteArray loginCookie = ".terabytez.example\tTRUE\t/\tTRUE\t0\txfss\tabc";

class TerabytezFileWalkTest : public TerabytezScene
{};

TEST_F(TerabytezFileWalkTest, LoadsTheFilesPage)
{
    const WalkPtr walk = start();
    EXPECT_EQ(page().loads, std::vector<Link>{fixtures::link(filePage)});
    EXPECT_THAT(page().scripts, IsEmpty());
}

TEST_F(TerabytezFileWalkTest, ARedirectToAFileServerIsCaughtBeforeAByteOfItIsRead)
{
    const WalkPtr walk = start();
    EXPECT_TRUE(page().asks(filePage));
    EXPECT_FALSE(walk->isOver);
    EXPECT_FALSE(page().asks(fileAddress));
    expectFound(walk, "-");
}

TEST_F(TerabytezFileWalkTest, AFrameThatAsksForTheFileCountsToo)
{
    const WalkPtr walk = start();
    EXPECT_FALSE(page().asks(fileAddress, false));
    expectFound(walk, "-");
}

TEST_F(TerabytezFileWalkTest, AnAnswerThatIsNoPageIsTheFileWhateverItsAddress)
{
    const WalkPtr walk = start();
    EXPECT_TRUE(page().shows(filePage, true));
    EXPECT_FALSE(walk->isOver);
    static_cast<void>(page().shows(filePage, false));
    expectFound(walk, "-", filePage);
}

TEST_F(TerabytezFileWalkTest, AnAnswerThatIsNoPageInAFrameIsNone)
{
    const WalkPtr walk = start();
    EXPECT_TRUE(page().shows(u"https://ads.example/x.bin"_s, false, false));
    EXPECT_TRUE(waits());
    EXPECT_FALSE(walk->isOver);
    EXPECT_THAT(page().scripts, IsEmpty());
}

TEST_F(TerabytezFileWalkTest, AWindowForTheFileIsTheFileAndAnyOtherIsNothing)
{
    const WalkPtr walk = start();
    page().wantsWindow(u"https://ads.example/"_s);
    page().wantsWindow(u"about:blank"_s);
    EXPECT_FALSE(walk->isOver);
    EXPECT_THAT(page().scripts, IsEmpty());
    page().wantsWindow(fileAddress);
    expectFound(walk, "-");
}

TEST_F(TerabytezFileWalkTest, TheFileMayBeAskedForWhileThePageIsStillWaitedFor)
{
    loadsAtOnce();
    const WalkPtr walk = start();
    EXPECT_EQ(timesRun(formQuestion()), 1);
    EXPECT_FALSE(page().asks(fileAddress));
    expectFound(walk, "-");
}

TEST_F(TerabytezFileWalkTest, WaitsForTheFormThroughFourPagesAndGoesOnWithoutOne)
{
    loadsAtOnce();
    const WalkPtr walk = start();
    for (int number = 1; number <= 3; ++number) {
        EXPECT_EQ(timesRun(formQuestion()), number);
        page().ends();
    }
    EXPECT_EQ(timesRun(terabytezScripts::heading()), 0);
    {
        const HeldReading held(background);
        page().ends();
        EXPECT_EQ(timesRun(terabytezScripts::heading()), 1);
    }
    expectError(walk, Kind::linkNotFound);
}

TEST_F(TerabytezFileWalkTest, APageWithAFormIsNotWaitedForAnyLonger)
{
    loadsAtOnce();
    const WalkPtr walk = start();
    shown.hasForm = true;
    page().ends();
    EXPECT_EQ(timesRun(terabytezScripts::heading()), 1);
}

TEST_F(TerabytezFileWalkTest, APageThatNeverComesHoldsTheWalkUpFor20SecondsAtEachOfFiveWaits)
{
    const WalkPtr walk = start();
    for (int number = 0; number < 5; ++number) {
        clock.advance(20s - 1ms);
        EXPECT_EQ(timesRun(formQuestion()), number);
        clock.advance(1ms);
    }
    expectError(walk, Kind::linkNotFound);
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(TerabytezFileWalkTest, ALoadThatFailsIsAnEndAsAnyOther)
{
    shown.onLoad = [](Page& page) { page.ends(WebPage::End::failed); };
    const WalkPtr walk = start();
    EXPECT_EQ(timesRun(formQuestion()), 1);
}

TEST_F(TerabytezFileWalkTest, ATimerOfAWaitThatIsOverWakesNobody)
{
    const WalkPtr walk = start();
    clock.advance(5s);
    page().arrivesAt(filePage);
    EXPECT_EQ(timesRun(formQuestion()), 1);
    clock.advance(20s - 1ms);
    EXPECT_EQ(timesRun(formQuestion()), 1) << "the load's own 20 seconds are over, not those of this wait";
    clock.advance(1ms);
    EXPECT_EQ(timesRun(formQuestion()), 2);
}

TEST_F(TerabytezFileWalkTest, ANavigationThatEndsWhileNobodyWaitsLetsTheNextWaitPass)
{
    loadsWithForm();
    shown.onSubmit = [this](Page& page) {
        page.ends();
        shown.onSubmit = {};
    };
    const WalkPtr walk = start();
    ASSERT_TRUE(comes([this] { return timesRun(terabytezScripts::submitForm()) == 2; }));
    EXPECT_TRUE(waits()) << "only the second post waits for its page";
    EXPECT_EQ(timesRun(terabytezScripts::html()), 1);
}

TEST_F(TerabytezFileWalkTest, EachNavigationLetsOneWaitPass)
{
    shown.onLoad = [this](Page& page) {
        page.arrivesAt(filePage);
        page.ends();
        page.ends();
    };
    const WalkPtr walk = start();
    EXPECT_EQ(timesRun(formQuestion()), 3);
    EXPECT_TRUE(waits());
}

TEST_F(TerabytezFileWalkTest, APageAtAFilesAddressIsTheFile)
{
    const QString address = u"https://terabytez.example/d/f1"_s;
    loadsWithForm();
    shown.onLoad = [address](Page& page) { page.arrivesAt(address); };
    expectFound(start(), "film.rar", address);
}

TEST_F(TerabytezFileWalkTest, TheFormIsSubmittedAndTheFileThatItLeadsToCaught)
{
    loadsWithForm();
    const WalkPtr walk = start();
    ASSERT_TRUE(comes([this] { return timesRun(terabytezScripts::submitForm()) == 1; }));
    EXPECT_EQ(page().scripts, (QStringList{formQuestion(), terabytezScripts::heading(), formQuestion(),
                                           terabytezScripts::submitForm()}));
    EXPECT_TRUE(page().asks(u"https://terabytez.example/f1?post"_s));
    EXPECT_FALSE(page().asks(fileAddress));
    expectFound(walk);
}

TEST_F(TerabytezFileWalkTest, AFileThatIsAskedForByTheScriptItselfIsCaughtToo)
{
    loadsWithForm();
    shown.onSubmit = [](Page& page) { EXPECT_FALSE(page.asks(fileAddress)); };
    expectFound(start());
}

TEST_F(TerabytezFileWalkTest, AFileThatIsCaughtWhileThePageIsReadIsNotLost)
{
    loadsWithForm();
    shown.html = u"nothing"_s;
    shown.onSubmit = [](Page& page) { page.ends(); };
    shown.onRead = [](Page& page) { EXPECT_FALSE(page.asks(fileAddress)); };
    expectFound(start());
}

TEST_F(TerabytezFileWalkTest, AFormMayLeadToAPageAtAFilesAddress)
{
    const QString address = u"https://terabytez.example/d/f1"_s;
    loadsWithForm();
    shown.onSubmit = [address](Page& page) { page.arrivesAt(address); };
    expectFound(start(), "film.rar", address);
}

TEST_F(TerabytezFileWalkTest, ALinkOnThePageBehindTheFormIsTheFile)
{
    loadsWithForm();
    shown.html = u"<a href=\"%1\">here</a>"_s.arg(fileAddress);
    shown.onSubmit = [](Page& page) { page.ends(); };
    expectFound(start());
}

TEST_F(TerabytezFileWalkTest, ALinkIsFoundWithoutAnyFormToo)
{
    loadsWithForm();
    shown.hasForm = false;
    shown.html = fileAddress;
    const WalkPtr walk = start();
    for (int number = 0; number < 4; ++number)
        page().ends();
    expectFound(walk);
}

TEST_F(TerabytezFileWalkTest, APageThatLeadsNowhereIsSubmittedTwice)
{
    loadsWithForm();
    int posts = 0;
    shown.onSubmit = [&posts](Page& page) {
        ++posts;
        page.ends();
    };
    expectError(start(), Kind::linkNotFound);
    EXPECT_EQ(posts, 2);
}

TEST_F(TerabytezFileWalkTest, TheSecondPostMayLeadToTheFile)
{
    loadsWithForm();
    shown.onSubmit = [this](Page& page) {
        shown.onSubmit = [](Page& second) { EXPECT_FALSE(second.asks(fileAddress)); };
        page.ends();
    };
    expectFound(start());
}

TEST_F(TerabytezFileWalkTest, EachPostIsWaitedForFor20Seconds)
{
    loadsWithForm();
    const WalkPtr walk = start();
    for (int post = 1; post <= 2; ++post) {
        ASSERT_TRUE(comes([this, post] { return timesRun(terabytezScripts::submitForm()) == post; }));
        clock.advance(20s - 1ms);
        EXPECT_EQ(timesRun(terabytezScripts::html()), post - 1);
        clock.advance(1ms);
    }
    expectError(walk, Kind::linkNotFound);
}

TEST_F(TerabytezFileWalkTest, AFormThatIsGoneWhenItIsSubmittedIsNotWaitedFor)
{
    loadsWithForm();
    shown.isSubmitted = u"true"_s;
    expectError(start(), Kind::linkNotFound);
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(TerabytezFileWalkTest, OnlyTrueItselfSaysThatThereIsAForm)
{
    for (const QVariant& answer : {QVariant(1), QVariant(u"true"_s), QVariant(), QVariant(false)}) {
        browser.onPage = [this, answer](Page& page) {
            page.onLoad = [this, &page](const Link&) { page.arrivesAt(filePage); };
            page.onScript = [answer](const QString&) { return std::optional(answer); };
        };
        const WalkPtr walk = start();
        EXPECT_TRUE(waits());
        EXPECT_EQ(page().scripts, QStringList{formQuestion()});
        walk->stop.request_stop();
        fixtures::turnEventLoop();
    }
}

TEST_F(TerabytezFileWalkTest, TheSignInGoesOnToTheTransfersWithTheFile)
{
    const QByteArray own = "#HttpOnly_files.terabytez.example\tFALSE\t/\tFALSE\t0\ta\tb";
    browser.jar = {loginCookie, own, "other.example\tFALSE\t/\tFALSE\t0\tc\td",
                   "TERABYTEZ.example\tFALSE\t/\tFALSE\t0\te\tf", "terabytez"};
    const WalkPtr walk = start();
    EXPECT_THAT(transfers.cookies(), IsEmpty());
    EXPECT_FALSE(page().asks(fileAddress));
    expectFound(walk, "-");
    EXPECT_THAT(transfers.cookies(), testing::UnorderedElementsAre(loginCookie, own));
}

TEST_F(TerabytezFileWalkTest, AWalkThatFindsNothingHandsNothingOn)
{
    browser.jar = {loginCookie};
    shown.onLoad = [](Page& page) { page.arrivesAt(u"https://terabytez.example/login"_s); };
    expectError(start(), Kind::loginRequired);
    EXPECT_THAT(transfers.cookies(), IsEmpty());
}

} // namespace
} // namespace vormel
