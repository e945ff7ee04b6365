#include "EngineTest.h"
#include "fixtures/ProcessEnd.h"

#include <QApplication>
#include <QFile>
#include <QPointer>
#include <QWebEngineView>

#include <csignal>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using sites::Answer;

/// What the page's own process does, or somebody does to it.
class RendererTest : public EngineTest
{
protected:
    RendererTest()
    {
        servePage("/page", "<p>page");
        servePage("/endless", "<script>for (;;);</script>");
    }

    /// Its process; 0 while there is none.
    [[nodiscard]] int renderer()
    {
        const auto* const view = qobject_cast<QWebEngineView*>(page->widget());
        return static_cast<int>(view->page()->renderProcessPid());
    }
    void kill()
    {
        ASSERT_GT(renderer(), 0);
        ::kill(renderer(), SIGKILL);
    }
};

TEST_F(RendererTest, ThatDiesLeavesNoPageAndEndsOnce)
{
    EXPECT_EQ(open("/page"), End::loaded);
    kill();
    EXPECT_EQ(nextEnd(), End::failed);
    EXPECT_EQ(shownUrl(), "nothing");
    linger();
    EXPECT_EQ(judge.ends.size(), 2U);
    EXPECT_EQ(open("/page"), End::loaded) << "the page works on";
    EXPECT_EQ(shownUrl(), "/page");
}

TEST_F(RendererTest, ThatDiesInALoadEndsIt)
{
    EXPECT_EQ(open("/page"), End::loaded);
    serveAnswer("/half", Answer::page(200, "<p>half of it").stallAfter(7));
    page->load(link(server.url("/half")));
    ASSERT_TRUE(stalls());
    linger(std::chrono::milliseconds(100));
    kill();
    EXPECT_EQ(nextEnd(), End::failed);
    linger();
    EXPECT_EQ(judge.ends.size(), 2U);
    EXPECT_EQ(shownUrl(), "nothing");
}

TEST_F(RendererTest, ThatDiesBeforeTheAnswerIsNotFollowedByItsPage)
{
    EXPECT_EQ(open("/page"), End::loaded);
    serveAnswer("/late", Answer::page(200, "late").stallBeforeHead());
    page->load(link(server.url("/late")));
    ASSERT_TRUE(stalls());
    kill();
    EXPECT_EQ(nextEnd(), End::failed);
    server.release();
    linger();
    EXPECT_EQ(judge.ends.size(), 2U);
    EXPECT_EQ(shownUrl(), "nothing");
}

TEST_F(RendererTest, ThatDiesAnswersTheScriptsThatRun)
{
    EXPECT_EQ(open("/page"), End::loaded);
    QMetaObject::invokeMethod(
        qApp, [this] { kill(); }, Qt::QueuedConnection);
    EXPECT_EQ(answer(u"for (;;);"_s), QVariant());
}

TEST_F(RendererTest, ThatIsBusyForEverGoesWithItsPage)
{
    page->load(link(server.url("/endless")));
    ASSERT_TRUE(isAsked("/endless"));
    ASSERT_TRUE(fixtures::waitUntil([this] { return renderer() > 0; }));
    const int busy = renderer();
    tell(u"1"_s);
    page.reset();
    EXPECT_TRUE(fixtures::waitUntil([&] { return fixtures::hasEnded(busy); }));
    page = pageOf(world().browser(), judge);
    EXPECT_EQ(open("/page"), End::loaded);
}

TEST_F(RendererTest, ThatTakesMemoryWithoutEndDiesAlone)
{
    servePage("/hungry", "<script>const all = []; for (;;) all.push(new Array(1e6).fill({}))</script>");
    page->load(link(server.url("/hungry")));
    ASSERT_TRUE(fixtures::waitUntil([this] { return !judge.ends.empty(); }));
    EXPECT_EQ(nextEnd(), End::failed);
    EXPECT_EQ(shownUrl(), "nothing");
    EXPECT_EQ(open("/page"), End::loaded);
}

TEST_F(RendererTest, RunsTheTimersOfAHiddenPageAtFullSpeed)
{
    servePage("/counting", "<script>window.n = 0; addEventListener('load', () => setTimeout(() => {"
                           "setInterval(() => document.title = 't' + ++n, 50);"
                           "(function frame() { document.body.dataset.f = (+document.body.dataset.f || 0) + 1;"
                           "requestAnimationFrame(frame) })() }, 200))</script><body>");
    EXPECT_EQ(open("/counting"), End::loaded);
    linger(std::chrono::milliseconds(1500));
    EXPECT_GT(answer(u"+document.title.slice(1)"_s)->toInt(), 10);
    EXPECT_GT(answer(u"+document.body.dataset.f"_s)->toInt(), 10);
    EXPECT_EQ(answer(u"document.visibilityState"_s), QVariant(u"visible"_s));
}

TEST_F(RendererTest, GoesOnWhileItsPageIsShownAndAfterTheWidgetIsGone)
{
    EXPECT_EQ(open("/page"), End::loaded);
    QWidget* const widget = page->widget();
    ASSERT_TRUE(widget);
    EXPECT_EQ(page->widget(), widget);
    widget->resize(300, 200);
    widget->show();
    EXPECT_EQ(text(), u"page"_s);
    EXPECT_EQ(answer(u"innerWidth > 0"_s), QVariant(true));
    delete widget;
    EXPECT_EQ(text(), u"page"_s);
}

TEST_F(RendererTest, TheWidgetGoesWithItsPage)
{
    const QPointer<QWidget> widget = page->widget();
    widget->show();
    EXPECT_EQ(open("/page"), End::loaded);
    page.reset();
    EXPECT_FALSE(widget && widget->isVisible());
    fixtures::turnEventLoop();
    EXPECT_FALSE(widget);
}

TEST_F(RendererTest, AZoomHoldsOnEverySite)
{
    page->setZoom(0.5);
    const auto isSmall = [this] { return answer(u"devicePixelRatio"_s) == QVariant(0.5); };
    EXPECT_EQ(open("/page"), End::loaded);
    EXPECT_TRUE(fixtures::waitUntil(isSmall));
    EXPECT_EQ(load(server.url("other.example", "/page")), End::loaded);
    EXPECT_TRUE(fixtures::waitUntil(isSmall));
}

} // namespace
} // namespace vormel
