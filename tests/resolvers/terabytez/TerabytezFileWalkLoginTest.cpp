#include "resolvers/terabytez/TerabytezScene.h"

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using namespace std::chrono_literals;

const QString loginPage = u"https://terabytez.example/login"_s;
const QString firstPage = u"https://terabytez.example/"_s;

class TerabytezFileWalkLogin : public TerabytezScene
{};

TEST_F(TerabytezFileWalkLogin, ALoginPageInPlaceOfTheFilesWantsASignIn)
{
    for (const QString& path : {u"/login"_s, u"/login.html?redirect=f1"_s, u"/%6cogin"_s}) {
        int loads = 0;
        shown.onLoad = [path, &loads](Page& page) {
            ++loads;
            EXPECT_TRUE(page.asks(u"https://terabytez.example"_s + path));
            page.arrivesAt(u"https://terabytez.example"_s + path);
        };
        expectError(start(), Kind::loginRequired);
        EXPECT_EQ(loads, 1);
    }
}

TEST_F(TerabytezFileWalkLogin, AWordForLoginElsewhereInTheAddressWantsNone)
{
    for (const QString& path : {u"/f/login"_s, u"/?login"_s, u"/Login"_s}) {
        shown.onLoad = [path](Page& page) { page.arrivesAt(u"https://terabytez.example"_s + path); };
        const WalkPtr walk = start();
        EXPECT_EQ(timesRun(formQuestion()), 1);
        walk->stop.request_stop();
        fixtures::turnEventLoop();
    }
}

TEST_F(TerabytezFileWalkLogin, ALoginPageThatTheFormLeadsToWantsASignIn)
{
    loadsWithForm();
    shown.onSubmit = [](Page& page) { page.arrivesAt(loginPage); };
    expectError(start(), Kind::loginRequired);
}

TEST_F(TerabytezFileWalkLogin, ASignInWhileThePageIsOnItsWayToTheLoginHasTheFilesPageLoadedAnew)
{
    shown.onLoad = [this](Page& page) {
        const bool isSignedIn = page.loads.size() == 2;
        EXPECT_TRUE(isSignedIn || page.asks(loginPage));
        page.arrivesAt(isSignedIn ? filePage : firstPage);
    };
    const WalkPtr walk = start();
    EXPECT_EQ(page().loads, (std::vector<Link>{fixtures::link(filePage), fixtures::link(filePage)}));
    EXPECT_EQ(page().url(), fixtures::link(filePage));
    EXPECT_FALSE(page().asks(fileAddress));
    expectFound(walk, "-");
}

TEST_F(TerabytezFileWalkLogin, APageThatLeadsPastTheLoginAgainIsNotLoadedAThirdTime)
{
    shown.onLoad = [](Page& page) {
        EXPECT_TRUE(page.asks(loginPage));
        page.arrivesAt(firstPage);
    };
    const WalkPtr walk = start();
    EXPECT_EQ(page().loads.size(), 2U);
    clock.advance(4 * 20s);
    expectError(walk, Kind::linkNotFound);
}

TEST_F(TerabytezFileWalkLogin, OnlyALoginThatThePageItselfWasSentToHasItLoadedAnew)
{
    const std::vector<std::function<void(Page&)>> others{
        [this](Page& page) { page.arrivesAt(filePage); },
        [](Page& page) { page.arrivesAt(firstPage); },
        [](Page& page) {
            EXPECT_TRUE(page.asks(loginPage, false));
            page.arrivesAt(firstPage);
        },
        [](Page& page) {
            EXPECT_TRUE(page.asks(loginPage));
            page.ends(WebPage::End::failed);
        },
    };
    for (const auto& onLoad : others) {
        shown.onLoad = onLoad;
        const WalkPtr walk = start();
        EXPECT_EQ(page().loads.size(), 1U);
        walk->stop.request_stop();
        fixtures::turnEventLoop();
    }
}

TEST_F(TerabytezFileWalkLogin, AFileThatTheLoginLeadsToIsCaught)
{
    int loads = 0;
    shown.onLoad = [&loads](Page& page) {
        ++loads;
        page.shownUrl = fixtures::link(firstPage);
        EXPECT_TRUE(page.asks(loginPage));
        EXPECT_FALSE(page.asks(fileAddress));
    };
    expectFound(start(), "-");
    EXPECT_EQ(loads, 1);
}

} // namespace
} // namespace vormel
