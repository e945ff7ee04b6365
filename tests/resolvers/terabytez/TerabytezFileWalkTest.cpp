#include "resolvers/terabytez/TerabytezScene.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;

const QString filePage = u"https://terabytez.example/f1"_s;
const QString fileAddress = u"https://dl7.any.example/x/film.rar"_s;
const QByteArray loginCookie = ".terabytez.example\tTRUE\t/\tTRUE\t0\txfss\tabc";

class TerabytezFileWalkTest : public TerabytezScene
{
protected:
    /// The page is loaded at once, at its own address.
    void loadsAtOnce()
    {
        shown.onLoad = [](Page& page) { page.arrivesAt(filePage); };
    }
    /// Its file has the name that its heading tells.
    void loadsWithForm()
    {
        loadsAtOnce();
        shown.hasForm = true;
        shown.heading = u"Download: film.rar (2 GB)"_s;
    }
    void expectFound(const WalkPtr& walk, const std::string& name = "film.rar", const QString& url = fileAddress)
    {
        ASSERT_TRUE(ends(walk));
        EXPECT_EQ(walk->url(), url.toStdString());
        EXPECT_EQ(walk->name(), name);
        EXPECT_THAT(browser.pages, IsEmpty());
    }
    void expectError(const WalkPtr& walk, Kind kind)
    {
        ASSERT_TRUE(ends(walk));
        EXPECT_EQ(walk->error, kind);
        EXPECT_THAT(browser.pages, IsEmpty());
    }
};

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
    shown.onLoad = [](Page& page) {
        page.arrivesAt(filePage);
        page.ends();
        page.ends();
    };
    const WalkPtr walk = start();
    EXPECT_EQ(timesRun(formQuestion()), 3);
    EXPECT_TRUE(waits());
}

TEST_F(TerabytezFileWalkTest, ALoginPageInPlaceOfTheFilesWantsASignIn)
{
    for (const QString& path : {u"/login"_s, u"/login.html?redirect=f1"_s, u"/%6cogin"_s}) {
        shown.onLoad = [path](Page& page) { page.arrivesAt(u"https://terabytez.example"_s + path); };
        const WalkPtr walk = start();
        expectError(walk, Kind::loginRequired);
    }
}

TEST_F(TerabytezFileWalkTest, AWordForLoginElsewhereInTheAddressWantsNone)
{
    for (const QString& path : {u"/f/login"_s, u"/?login"_s, u"/Login"_s}) {
        shown.onLoad = [path](Page& page) { page.arrivesAt(u"https://terabytez.example"_s + path); };
        const WalkPtr walk = start();
        EXPECT_EQ(timesRun(formQuestion()), 1);
        walk->stop.request_stop();
        fixtures::turnEventLoop();
    }
}

TEST_F(TerabytezFileWalkTest, ALoginPageThatTheFormLeadsToWantsASignIn)
{
    loadsWithForm();
    shown.onSubmit = [](Page& page) { page.arrivesAt(u"https://terabytez.example/login"_s); };
    expectError(start(), Kind::loginRequired);
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
        browser.onPage = [answer](Page& page) {
            page.onLoad = [&page](const Link&) { page.arrivesAt(filePage); };
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

/// Where a walk is stopped.
enum class Moment
{
    load,
    formWait,
    script,
    reading,
    post,
};

class TerabytezFileWalkStop : public TerabytezFileWalkTest, public testing::WithParamInterface<Moment>
{};

TEST_P(TerabytezFileWalkStop, EndsThePageAtOnceAndTellsNothing)
{
    browser.jar = {loginCookie};
    shown.html = fileAddress;
    if (GetParam() == Moment::post || GetParam() == Moment::reading)
        loadsWithForm();
    else if (GetParam() != Moment::load)
        loadsAtOnce();
    if (GetParam() == Moment::script)
        browser.onPage = [](Page& page) { page.onLoad = [&page](const Link&) { page.arrivesAt(filePage); }; };
    if (GetParam() == Moment::reading)
        shown.onSubmit = [](Page& page) { page.ends(); };
    std::optional<HeldReading> held;
    if (GetParam() == Moment::reading)
        held.emplace(background);
    const WalkPtr walk = start();
    ASSERT_TRUE(GetParam() != Moment::post || comes([this] { return timesRun(terabytezScripts::submitForm()) == 1; }));
    ASSERT_FALSE(walk->isOver);
    walk->stop.request_stop();
    EXPECT_THAT(browser.pages, IsEmpty());
    held.reset();
    ASSERT_TRUE(ends(walk));
    EXPECT_FALSE(walk->found || walk->error);
    EXPECT_EQ(clock.pendingTimers(), 0);
    EXPECT_THAT(transfers.cookies(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Moments, TerabytezFileWalkStop,
                         testing::Values(Moment::load, Moment::formWait, Moment::script, Moment::reading,
                                         Moment::post));

} // namespace
} // namespace vormel
