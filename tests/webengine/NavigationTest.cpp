#include "EngineTest.h"

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace vormel {
namespace {

using sites::Answer;

class NavigationTest : public EngineTest
{};

TEST_F(NavigationTest, HasNoPageBeforeTheFirstLoad)
{
    EXPECT_EQ(shownUrl(), "nothing");
    EXPECT_EQ(page->connection(), Connection::none);
}

TEST_F(NavigationTest, ShowsAPageThatWasAskedForOnce)
{
    servePage("/page?a=1", "<p>words");
    EXPECT_EQ(open("/page?a=1"), End::loaded);
    EXPECT_EQ(shownUrl(), "/page?a=1");
    EXPECT_EQ(page->connection(), Connection::unprotected);
    EXPECT_EQ(text(), u"words"_s);
    EXPECT_THAT(judge.asked, ElementsAre("/page?a=1"));
    EXPECT_THAT(judge.shown, ElementsAre("/page?a=1"));
    linger();
    EXPECT_EQ(judge.ends.size(), 1U);
    EXPECT_EQ(server.requests().size(), 1U) << "no icon is asked for";
}

TEST_F(NavigationTest, AsksAboutEachRedirectAndNeverFetchesTheOneThatIsRefused)
{
    serveAnswer("/first", Answer::redirect(302, "/second"));
    serveAnswer("/second", Answer::redirect(302, "/target"));
    servePage("/target", "target");
    judge.onAsk = [](const auto& request) { return request.url.lastPathComponent() != u"target"; };
    EXPECT_EQ(open("/first"), End::failed);
    EXPECT_THAT(judge.asked, ElementsAre("/first", "/second", "/target"));
    EXPECT_EQ(requests("/target"), 0U);
    EXPECT_EQ(shownUrl(), "nothing");
}

TEST_F(NavigationTest, ARefusedLoadIsNeverAskedForAndKeepsThePageBefore)
{
    servePage("/before", "before");
    servePage("/target", "target");
    EXPECT_EQ(open("/before"), End::loaded);
    judge.onAsk = [](const auto&) { return false; };
    EXPECT_EQ(open("/target"), End::failed);
    EXPECT_EQ(requests("/target"), 0U);
    EXPECT_EQ(shownUrl(), "/before");
    linger();
    EXPECT_EQ(judge.ends.size(), 2U);
}

TEST_F(NavigationTest, EveryWayThatAPageGoesIsAskedAbout)
{
    servePage("/start", R"(<meta http-equiv="refresh" content="0; url=/refreshed">)");
    servePage("/refreshed", "<script>location = '/scripted'</script>");
    servePage("/scripted", R"(<form id=f method=post action="/posted"></form>)");
    serveAnswer("/posted", Answer::redirect(302, "/target"));
    judge.onAsk = [](const auto& request) { return request.url.lastPathComponent() != u"target"; };
    page->load(link(server.url("/start")));
    ASSERT_TRUE(fixtures::waitUntil([this] { return answer(u"!!document.getElementById('f')"_s) == QVariant(true); }));
    tell(u"document.getElementById('f').submit()"_s);
    ASSERT_TRUE(fixtures::waitUntil([this] { return judge.asked.size() == 5; }));
    EXPECT_THAT(judge.asked, ElementsAre("/start", "/refreshed", "/scripted", "/posted", "/target"));
    EXPECT_TRUE(fixtures::waitUntil([this] { return !judge.ends.empty() && judge.ends.back() == End::failed; }));
    linger();
    EXPECT_EQ(requests("/target"), 0U);
}

TEST_F(NavigationTest, FramesAreAskedAboutAsSuchAndEndNothing)
{
    servePage("/page",
              R"(<iframe src="/frame"></iframe><iframe src="/refused"></iframe><iframe srcdoc="own"></iframe>)");
    servePage("/frame", "frame");
    servePage("/refused", "refused");
    judge.onAsk = [](const auto& request) { return request.url.lastPathComponent() != u"refused"; };
    EXPECT_EQ(open("/page"), End::loaded);
    linger();
    EXPECT_THAT(judge.asked, ElementsAre("/page", "[/frame]", "[/refused]"));
    EXPECT_EQ(requests("/frame"), 1U);
    EXPECT_EQ(requests("/refused"), 0U);
    EXPECT_EQ(judge.ends.size(), 1U);
    EXPECT_EQ(answer(u"frames[2].document.body.textContent"_s)->toString(), u"own"_s);
}

TEST_F(NavigationTest, AFrameRefusesWhatIsNoHttp)
{
    servePage("/page", R"(<iframe src="data:text/html,<p>data"></iframe><iframe src="file:///etc/passwd"></iframe>)");
    EXPECT_EQ(open("/page"), End::loaded);
    linger();
    EXPECT_THAT(judge.asked, ElementsAre("/page"));
}

TEST_F(NavigationTest, AStatusOfFailureIsStillAPage)
{
    serveAnswer("/gone", Answer::page(404, "not here"));
    serveAnswer("/busy", Answer::page(503, "later"));
    EXPECT_EQ(open("/gone"), End::loaded);
    EXPECT_EQ(text(), u"not here"_s);
    EXPECT_EQ(open("/busy"), End::loaded);
    EXPECT_EQ(shownUrl(), "/busy");
}

TEST_F(NavigationTest, AStatusOfFailureWithoutAPageIsNone)
{
    serveAnswer("/empty", Answer::empty(404));
    EXPECT_EQ(open("/empty"), End::failed);
    EXPECT_EQ(shownUrl(), "nothing");
    EXPECT_EQ(answer(u"document.forms.length"_s), QVariant());
}

TEST_F(NavigationTest, AFailedLoadShowsNoPageAndRunsNoScript)
{
    servePage("/before", "before");
    EXPECT_EQ(open("/before"), End::loaded);
    serveAnswer("/broken", Answer::nothing());
    EXPECT_EQ(open("/broken"), End::failed);
    EXPECT_EQ(shownUrl(), "nothing");
    EXPECT_EQ(page->connection(), Connection::none);
    EXPECT_EQ(answer(u"document.documentElement.outerHTML"_s), QVariant());
    EXPECT_EQ(open("/before"), End::loaded) << "the page works on";
    EXPECT_EQ(shownUrl(), "/before");
}

TEST_F(NavigationTest, AnAnswerWithoutAnythingKeepsThePageAndEndsOnce)
{
    servePage("/before", "before");
    EXPECT_EQ(open("/before"), End::loaded);
    serveAnswer("/nothing", Answer::empty(204));
    EXPECT_EQ(open("/nothing"), End::failed);
    EXPECT_EQ(shownUrl(), "/before");
    linger();
    EXPECT_EQ(judge.ends.size(), 2U);
}

TEST_F(NavigationTest, ALoadThatAnotherReplacesEndsWithThat)
{
    serveAnswer("/slow", Answer::page(200, "slow").stallBeforeHead());
    servePage("/quick", "quick");
    page->load(link(server.url("/slow")));
    ASSERT_TRUE(stalls());
    EXPECT_EQ(open("/quick"), End::loaded);
    linger();
    EXPECT_EQ(judge.ends.size(), 1U);
    EXPECT_EQ(shownUrl(), "/quick");
}

TEST_F(NavigationTest, TwoLoadsInOneTurnHaveOneEnd)
{
    servePage("/one", "one");
    servePage("/two", "two");
    page->load(link(server.url("/one")));
    EXPECT_EQ(open("/two"), End::loaded);
    linger();
    EXPECT_EQ(judge.ends.size(), 1U);
    EXPECT_EQ(shownUrl(), "/two");
}

TEST_F(NavigationTest, LoadsNothingButHttp)
{
    servePage("/page", "<a id=a href='mailto:x@site.example'>mail</a>");
    EXPECT_EQ(open("/page"), End::loaded);
    for (const char* url : {"file:///etc/passwd", "chrome://version", "qrc:/x", "data:text/html,x", "blob:x",
                            "about:blank", "javascript:1", "view-source:http://127.0.0.1/", "magnet:?x"}) {
        page->load(link(url));
        EXPECT_EQ(nextEnd(), End::failed) << url;
    }
    EXPECT_EQ(shownUrl(), "/page");
    EXPECT_THAT(judge.asked, ElementsAre("/page"));
}

TEST_F(NavigationTest, APageCannotGoWhereNoHttpIs)
{
    servePage("/page", "<p>page");
    EXPECT_EQ(open("/page"), End::loaded);
    for (const QString& way : {u"file:///etc/passwd"_s, u"chrome://gpu"_s, u"qrc:/x"_s, u"data:text/html,x"_s,
                               u"magnet:?x"_s, u"vormel:add"_s}) {
        tell(u"location = '%1'"_s.arg(way));
        linger(std::chrono::milliseconds(60));
    }
    tell(u"location = URL.createObjectURL(new Blob(['<p>made'], {type: 'text/html'}))"_s);
    linger();
    EXPECT_EQ(shownUrl(), "/page");
    EXPECT_EQ(text(), u"page"_s);
    EXPECT_THAT(judge.asked, ElementsAre("/page"));
}

TEST_F(NavigationTest, APageThatEmptiesItselfIsNoneAnyMore)
{
    servePage("/page", "<p>page");
    EXPECT_EQ(open("/page"), End::loaded);
    tell(u"location = 'about:blank'"_s);
    EXPECT_EQ(nextEnd(), End::failed);
    EXPECT_EQ(shownUrl(), "nothing");
}

TEST_F(NavigationTest, ARedirectToAFileOfThisMachineFails)
{
    serveAnswer("/first", Answer::redirect(302, "file:///etc/passwd"));
    EXPECT_EQ(open("/first"), End::failed);
    EXPECT_EQ(shownUrl(), "nothing");
}

TEST_F(NavigationTest, WindowsAreToldAndNeverOpened)
{
    servePage(
        "/page",
        R"(<a id=a target=_blank href="/blank">x</a><form id=f target=_blank method=post action="/form"></form>)");
    EXPECT_EQ(open("/page"), End::loaded);
    for (const QString& script : {u"window.open('/opened'); 1"_s, u"document.getElementById('a').click()"_s,
                                  u"document.getElementById('f').submit()"_s, u"window.open(''); 1"_s,
                                  u"window.open('about:blank'); 1"_s, u"window.open('file:///etc/passwd'); 1"_s})
        EXPECT_TRUE(answer(script));
    linger();
    EXPECT_THAT(judge.windows, ElementsAre("/opened", "/blank", "/form"));
    EXPECT_EQ(server.requests().size(), 1U);
    EXPECT_EQ(judge.ends.size(), 1U);
}

TEST_F(NavigationTest, AnAddressThatThePageMadeUpIsItsOwn)
{
    servePage("/page", "page");
    EXPECT_EQ(open("/page"), End::loaded);
    EXPECT_TRUE(answer(u"history.pushState({}, '', '/login')"_s));
    EXPECT_TRUE(fixtures::waitUntil([this] { return shownUrl() == "/login"; }));
    EXPECT_EQ(judge.ends.size(), 1U);
}

TEST_F(NavigationTest, AJudgeThatRefusesToShowAPageHasNone)
{
    servePage("/page", "page");
    judge.onShow = [](const auto&) { return false; };
    EXPECT_EQ(open("/page"), End::failed);
    EXPECT_EQ(shownUrl(), "nothing");
}

TEST_F(NavigationTest, MayBeDeletedByEachAnswerOfItsJudge)
{
    serveAnswer("/page", Answer::page(200, "<script>window.open('/window')</script>"));
    serveFile("/file");
    const auto go = [this] { page.reset(); };
    const auto deletedBy = [&](const std::string& path) {
        page = pageOf(world().browser(), judge);
        page->load(link(server.url(path)));
        const bool isDeleted = fixtures::waitUntil([this] { return !page; }, std::chrono::seconds(10));
        const std::size_t ends = judge.ends.size();
        linger(std::chrono::milliseconds(100));
        return isDeleted && judge.ends.size() == ends;
    };
    judge.onEnd = go;
    EXPECT_TRUE(deletedBy("/page"));
    judge.onEnd = nullptr;
    judge.onWindow = go;
    EXPECT_TRUE(deletedBy("/page"));
    judge.onShow = [&](const auto&) { return go(), true; };
    EXPECT_TRUE(deletedBy("/file"));
    judge.onAsk = [&](const auto&) { return go(), true; };
    EXPECT_TRUE(deletedBy("/page"));
}

} // namespace
} // namespace vormel
