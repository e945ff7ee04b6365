#include "resolvers/captcha/LinkPageResolver.h"

#include "fixtures/EventLoop.h"
#include "fixtures/ManualClock.h"
#include "fixtures/ScriptedBrowser.h"
#include "model/Services.h"
#include "platform/async/Background.h"
#include "platform/async/Spawn.h"
#include "resolvers/captcha/BusyThreads.h"
#include "resolvers/captcha/LinkTargets.h"
#include "resolvers/containers/LinkTexts.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel::tests {
namespace {

using fixtures::ScriptedPage;

/// One page of a container is opened in the background.
class LinkPageResolverTest : public testing::Test
{
protected:
    struct Outcome
    {
        bool isThere = false;
        std::optional<Link> link;

        [[nodiscard]] std::string text() const
        {
            if (!isThere)
                return "nothing yet";
            return link ? link->absoluteString().toStdString() : "nothing";
        }
    };

    LinkPageResolverTest()
    {
        browser.onPage = [this](ScriptedPage& page) {
            page.onScript = [this](const QString&) { return html; };
            page.onLoad = onLoad;
        };
    }
    /// The end may wait for a coroutine that is on another thread.
    ~LinkPageResolverTest() override
    {
        resolver.reset();
        fixtures::turnEventLoop();
    }
    ScriptedPage& open()
    {
        resolve();
        return *browser.pages.front();
    }
    void resolve() { spawn(wait(*resolver, outcome)); }
    static QCoro::Task<> wait(LinkPageResolver& resolver, std::shared_ptr<Outcome> outcome)
    {
        Eventual<std::optional<Link>> resolving = resolver.resolve(linkOf(u"https://box.example/Link/1.html"_s));
        outcome->link = co_await resolving;
        outcome->isThere = true;
    }
    std::string end() const
    {
        fixtures::turnEventLoop();
        return outcome->text();
    }
    std::string endOfReading() const
    {
        static_cast<void>(fixtures::waitUntil([this] { return outcome->isThere; }));
        return outcome->text();
    }
    /// What was read so far has told nothing.
    void expectItWaitsOn()
    {
        background = nullptr; // its end waits for the reading
        fixtures::turnEventLoop();
        EXPECT_EQ(outcome->text(), "nothing yet");
        clock.advance(std::chrono::seconds(15));
        EXPECT_EQ(outcome->text(), "nothing");
    }

    fixtures::ManualClock clock;
    fixtures::ScriptedBrowser browser;
    std::unique_ptr<Background> background = std::make_unique<Background>();
    std::optional<QVariant> html = QVariant(u"<p>Please wait</p>"_s);
    std::function<void(const Link&)> onLoad;
    std::shared_ptr<Outcome> outcome = std::make_shared<Outcome>();
    std::unique_ptr<LinkPageResolver> resolver = std::make_unique<LinkPageResolver>(
        LinkPageResolver::Ports{browser, clock, *background}, std::make_shared<const LinkTargets>(Services::builtIn()));
};

TEST_F(LinkPageResolverTest, OpensThePage)
{
    const ScriptedPage& page = open();
    ASSERT_EQ(page.loads.size(), 1U);
    EXPECT_EQ(page.loads.front(), linkOf(u"https://box.example/Link/1.html"_s));
    EXPECT_EQ(end(), "nothing yet");
}

TEST_F(LinkPageResolverTest, ARequestForAFileIsStoppedAndTellsIt)
{
    ScriptedPage& page = open();
    EXPECT_TRUE(page.asks(u"https://box.example/out/1"_s));
    EXPECT_TRUE(page.asks(u"https://rapidgator.net/"_s));
    EXPECT_FALSE(page.asks(u"http://rapidgator.net/file/1"_s));
    EXPECT_TRUE(browser.pages.empty());
    EXPECT_EQ(end(), "https://rapidgator.net/file/1");
}

TEST_F(LinkPageResolverTest, TheRequestOfAFrameCountsAsWell)
{
    EXPECT_FALSE(open().asks(u"https://rapidgator.net/file/1"_s, false));
    EXPECT_EQ(end(), "https://rapidgator.net/file/1");
}

TEST_F(LinkPageResolverTest, ThePageMayLeadOnAtOnce)
{
    onLoad = [this](const Link&) { EXPECT_FALSE(browser.pages.front()->asks(u"https://rapidgator.net/file/1"_s)); };
    resolve();
    EXPECT_EQ(end(), "https://rapidgator.net/file/1");
}

TEST_F(LinkPageResolverTest, WhatThePageShowsIsNotJudged)
{
    ScriptedPage& page = open();
    EXPECT_TRUE(page.shows(u"https://rapidgator.net/file/1"_s, true));
    EXPECT_TRUE(page.shows(u"https://box.example/x"_s, false));
    EXPECT_EQ(end(), "nothing yet");
}

TEST_F(LinkPageResolverTest, AWindowForAFileTellsIt)
{
    open().wantsWindow(u"http://rapidgator.net/file/1"_s);
    EXPECT_TRUE(browser.pages.empty());
    EXPECT_EQ(end(), "https://rapidgator.net/file/1");
}

TEST_F(LinkPageResolverTest, AnyOtherWindowIsLoadedInThePage)
{
    ScriptedPage& page = open();
    page.wantsWindow(u"https://box.example/out"_s);
    ASSERT_EQ(page.loads.size(), 2U);
    EXPECT_EQ(page.loads.back(), linkOf(u"https://box.example/out"_s));
    EXPECT_EQ(browser.pagesMade, 1);
}

TEST_F(LinkPageResolverTest, AnEmptyWindowIsNoPageToLoad)
{
    ScriptedPage& page = open();
    page.wantsWindow(u"about:blank"_s);
    EXPECT_EQ(page.loads.size(), 1U);
    EXPECT_EQ(end(), "nothing yet");
}

TEST_F(LinkPageResolverTest, TheAddressWhereThePageEndsUpIsTakenAsItIs)
{
    open().arrivesAt(u"http://rapidgator.net/file/1"_s);
    EXPECT_TRUE(browser.pages.empty());
    EXPECT_EQ(end(), "http://rapidgator.net/file/1");
}

TEST_F(LinkPageResolverTest, WhatStandsInThePageTellsTheFile)
{
    html = u"<a href='http://rapidgator.net/file/1'>"_s;
    ScriptedPage& page = open();
    page.arrivesAt(u"https://box.example/Link/1.html"_s);
    EXPECT_EQ(page.scripts, QStringList{u"document.documentElement.outerHTML"_s});
    EXPECT_EQ(endOfReading(), "https://rapidgator.net/file/1");
    EXPECT_TRUE(browser.pages.empty());
}

TEST_F(LinkPageResolverTest, APageThatTellsNothingIsWaitedFor)
{
    open().arrivesAt(u"https://box.example/Link/1.html"_s);
    expectItWaitsOn();
}

TEST_F(LinkPageResolverTest, GivesUpWhileThePageIsRead)
{
    html = u"<a href='https://rapidgator.net/file/late'>"_s;
    auto busy = std::make_unique<BusyThreads>(*background);
    open().arrivesAt(u"https://box.example/Link/1.html"_s);
    clock.advance(std::chrono::seconds(15));
    EXPECT_EQ(end(), "nothing");
    busy.reset();
    background = nullptr;
    EXPECT_EQ(end(), "nothing");
}

TEST_F(LinkPageResolverTest, ALaterNavigationMayTell)
{
    ScriptedPage& page = open();
    page.arrivesAt(u"https://box.example/Link/1.html"_s);
    html = u"location='https://rapidgator.net/file/1'"_s;
    page.arrivesAt(u"https://box.example/Link/1b.html"_s);
    EXPECT_EQ(endOfReading(), "https://rapidgator.net/file/1");
}

TEST_F(LinkPageResolverTest, APageThatCannotBeReadIsWaitedFor)
{
    html = QVariant();
    open().arrivesAt(u"https://box.example/Link/1.html"_s);
    expectItWaitsOn();
}

TEST_F(LinkPageResolverTest, AFailedNavigationTellsNothing)
{
    open().ends(WebPage::End::failed);
    EXPECT_TRUE(browser.pages.empty());
    EXPECT_EQ(end(), "nothing");
}

TEST_F(LinkPageResolverTest, WithoutABrowserThereIsNothing)
{
    browser.missing = WebBrowser::Absence::notInstalled;
    resolve();
    EXPECT_EQ(end(), "nothing");
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(LinkPageResolverTest, GivesUpAfterFifteenSeconds)
{
    open();
    clock.advance(std::chrono::milliseconds(14999));
    EXPECT_EQ(end(), "nothing yet");
    clock.advance(std::chrono::milliseconds(1));
    EXPECT_EQ(end(), "nothing");
    EXPECT_TRUE(browser.pages.empty());
}

TEST_F(LinkPageResolverTest, AFileThatWasFoundIsNotGivenUpLater)
{
    EXPECT_FALSE(open().asks(u"https://rapidgator.net/file/1"_s));
    clock.advance(std::chrono::seconds(15));
    EXPECT_EQ(end(), "https://rapidgator.net/file/1");
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(LinkPageResolverTest, AScriptThatNeverAnswersIsCutOffWithThePage)
{
    html = std::nullopt;
    open().arrivesAt(u"https://box.example/Link/1.html"_s);
    EXPECT_EQ(end(), "nothing yet");
    clock.advance(std::chrono::seconds(15));
    EXPECT_EQ(end(), "nothing");
}

TEST_F(LinkPageResolverTest, AReadingThatComesTooLateChangesNothing)
{
    html = u"<a href='https://rapidgator.net/file/late'>"_s;
    auto busy = std::make_unique<BusyThreads>(*background);
    ScriptedPage& page = open();
    page.arrivesAt(u"https://box.example/Link/1.html"_s);
    EXPECT_FALSE(page.asks(u"https://rapidgator.net/file/first"_s));
    busy.reset();
    background = nullptr;
    EXPECT_EQ(end(), "https://rapidgator.net/file/first");
}

TEST_F(LinkPageResolverTest, ItsEndEndsTheSearch)
{
    html = std::nullopt;
    open().arrivesAt(u"https://box.example/Link/1.html"_s);
    resolver.reset();
    EXPECT_EQ(outcome->text(), "nothing");
    EXPECT_TRUE(browser.pages.empty());
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(LinkPageResolverTest, MayEndBetweenWhatItFoundAndWhoWaitsForIt)
{
    EXPECT_FALSE(open().asks(u"https://rapidgator.net/file/1"_s));
    resolver.reset();
    EXPECT_EQ(end(), "nothing");
}

TEST_F(LinkPageResolverTest, MayEndWhileThePageIsRead)
{
    html = u"<a href='https://rapidgator.net/file/1'>"_s;
    auto busy = std::make_unique<BusyThreads>(*background);
    open().arrivesAt(u"https://box.example/Link/1.html"_s);
    resolver.reset();
    busy.reset();
    background = nullptr;
    EXPECT_EQ(end(), "nothing");
}

} // namespace
} // namespace vormel::tests
