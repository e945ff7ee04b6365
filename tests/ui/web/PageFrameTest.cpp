#include "ui/web/PageFrame.h"

#include "fixtures/EventLoop.h"
#include "fixtures/ScriptedBrowser.h"
#include "kit/Theme.h"
#include "ui/FakeDesktop.h"
#include "ui/Part.h"
#include "ui/web/HostLine.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::link;
using fixtures::partOf;

class PageFrameTest : public ::testing::Test
{
protected:
    PageFrameTest()
    {
        browser.onPage = [this](fixtures::ScriptedPage& page) {
            auto* shown = new QLabel(u"the page"_s);
            page.onWidget = [shown] { return shown; };
            view = shown;
        };
    }
    ~PageFrameTest() override { unlock(); }
    void make()
    {
        const PageFrame::Ports ports{browser, [this] { return restore(); }, engine.clock, engine.settings()};
        frame = std::make_unique<PageFrame>(ports, nullptr);
        ready = std::make_unique<QSignalSpy>(frame.get(), &PageFrame::pageReady);
        frame->resize(500, 300);
        frame->show();
        fixtures::turnEventLoop();
    }
    QCoro::Task<> restore()
    {
        ++restores;
        if (const std::optional<SharedEventual<bool>> waiting = lock)
            co_await *waiting;
    }
    void unlock()
    {
        if (const std::optional<SharedEventual<bool>> waiting = std::exchange(lock, std::nullopt))
            waiting->deliver(true);
    }
    [[nodiscard]] fixtures::ScriptedPage& page() const { return *browser.pages.at(0); }
    [[nodiscard]] QString host() const { return partOf<HostLine>(*frame, "hostLine").accessibleName(); }
    [[nodiscard]] QString note() const
    {
        const auto& text = partOf<QLabel>(*frame, "pageNoteText");
        return text.isVisible() ? text.text() : QString();
    }
    [[nodiscard]] QLabel& command() const { return partOf<QLabel>(*frame, "installCommand"); }
    [[nodiscard]] QPushButton& reload() const { return partOf<QPushButton>(*frame, "reloadPage"); }

    fixtures::EngineOnScript engine;
    fixtures::ScriptedBrowser browser;
    QPointer<QLabel> view;
    std::optional<SharedEventual<bool>> lock;
    int restores = 0;
    std::unique_ptr<PageFrame> frame;
    std::unique_ptr<QSignalSpy> ready;
};

TEST_F(PageFrameTest, ShowsThePageBelowItsHost)
{
    make();
    frame->load(link(u"https://site.example/login"_s));
    EXPECT_EQ(host(), QString()); // nothing is shown yet
    ASSERT_EQ(page().loads, std::vector{link(u"https://site.example/login"_s)});
    page().arrivesAt(u"https://site.example/login"_s);
    EXPECT_TRUE(view->isVisible());
    EXPECT_GE(view->y(), partOf<HostLine>(*frame, "hostLine").geometry().bottom());
    EXPECT_EQ(host(), u"Verified connection to site.example");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(host(), u"Connessione verificata a site.example");
    EXPECT_EQ(partOf<QLabel>(*frame, "pageHost").text(), host());
}

TEST_F(PageFrameTest, WarnsOfAConnectionThatIsNotVerified)
{
    make();
    page().arrivesAt(u"https://site.example/"_s);
    const auto color = [this] { return partOf<QLabel>(*frame, "pageHost").palette().color(QPalette::WindowText); };
    const QColor usual = color();
    page().shownConnection = WebPage::Connection::unprotected;
    page().arrivesAt(u"http://other.example/"_s);
    EXPECT_EQ(host(), u"Connection not verified: other.example");
    EXPECT_NE(color(), usual);
    EXPECT_EQ(color(), Theme(frame->palette()).color(Tint::orange));
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(host(), u"Connessione non verificata: other.example");
}

TEST_F(PageFrameTest, FollowsThePageAlsoWhereItsLoadDoesNotEnd)
{
    make();
    page().arrivesAt(u"https://site.example/"_s);
    page().shownUrl = link(u"https://stranger.example/"_s);
    engine.clock.advance(std::chrono::seconds(1));
    EXPECT_EQ(host(), u"Verified connection to stranger.example");
}

TEST_F(PageFrameTest, SpellsAHostOfLookAlikesAsItStandsInTheNet)
{
    make();
    page().arrivesAt(u"https://tеrabytez.example/"_s); // the first "e" is Cyrillic
    EXPECT_TRUE(host().contains(u"xn--")) << qPrintable(host());
}

TEST_F(PageFrameTest, KeepsTheEndOfALongHostInSight)
{
    make();
    const QString longHost = QString(60, u'a') + u".terabytez.example."_s + QString(60, u'b') + u".stranger.example"_s;
    page().arrivesAt(u"https://"_s + longHost + u'/');
    const QString shown = partOf<QLabel>(*frame, "pageHost").text();
    EXPECT_LT(shown.size(), longHost.size());
    EXPECT_TRUE(shown.endsWith(u".stranger.example")) << qPrintable(shown);
    EXPECT_TRUE(host().endsWith(longHost));
    EXPECT_EQ(frame->width(), 500);
}

TEST_F(PageFrameTest, AsksForWebPagesOnly)
{
    make();
    EXPECT_TRUE(page().asks(u"https://site.example/"_s));
    EXPECT_TRUE(page().asks(u"http://site.example/"_s, false));
    EXPECT_FALSE(page().asks(u"file:///etc/passwd"_s));
    EXPECT_FALSE(page().asks(u"ftp://site.example/"_s, false));
    EXPECT_TRUE(page().shows(u"https://site.example/"_s, true));
    EXPECT_FALSE(page().shows(u"https://site.example/a.rar"_s, false));
}

TEST_F(PageFrameTest, LoadsWhatWantsAWindowInItsPlace)
{
    make();
    page().wantsWindow(u"https://site.example/challenge"_s);
    page().wantsWindow(u"about:blank"_s);
    page().wantsWindow(u"file:///etc/passwd"_s);
    EXPECT_EQ(page().loads, std::vector{link(u"https://site.example/challenge"_s)});
    EXPECT_EQ(browser.pagesMade, 1);
}

TEST_F(PageFrameTest, TellsOfEachEndWhenItKnowsWhereThePageIs)
{
    make();
    QStringList hosts;
    QObject::connect(frame.get(), &PageFrame::navigationOver, frame.get(),
                     [&](WebPage::End end) { hosts << (end == WebPage::End::loaded ? host() : u"failed"_s); });
    page().arrivesAt(u"https://site.example/"_s);
    page().ends(WebPage::End::failed);
    EXPECT_EQ(hosts, (QStringList{u"Verified connection to site.example"_s, u"failed"_s}));
}

TEST_F(PageFrameTest, OffersToLoadAPageAgainWhoseProcessHasDied)
{
    make();
    frame->load(link(u"https://site.example/login"_s));
    page().arrivesAt(u"https://site.example/account"_s);
    page().shownUrl.reset();
    page().ends(WebPage::End::failed);
    EXPECT_EQ(note(), u"The page could not be shown.");
    EXPECT_EQ(host(), QString());
    EXPECT_FALSE(command().isVisible());
    EXPECT_EQ(reload().text(), u"Reload");
    reload().click();
    EXPECT_EQ(page().loads.back(), link(u"https://site.example/account"_s));
    EXPECT_TRUE(view->isVisible());
}

TEST_F(PageFrameTest, OffersToLoadAgainWhatDidNotCome)
{
    make();
    frame->load(link(u"https://site.example/login"_s));
    page().ends(WebPage::End::failed);
    EXPECT_TRUE(reload().isVisible());
    reload().click();
    EXPECT_EQ(page().loads.size(), 2U);
    EXPECT_EQ(page().loads.back(), link(u"https://site.example/login"_s));
}

TEST_F(PageFrameTest, KeepsThePageWhereALinkOfItWasRefused)
{
    make();
    page().arrivesAt(u"https://site.example/"_s);
    page().ends(WebPage::End::failed);
    EXPECT_EQ(note(), QString());
    EXPECT_TRUE(view->isVisible());
}

TEST_F(PageFrameTest, SaysHowToInstallTheEngine)
{
    browser.missing = WebBrowser::Absence::notInstalled;
    make();
    EXPECT_EQ(note(), u"This page needs the web engine, which is not installed: run the command below, and the page "
                      u"opens by itself.");
    EXPECT_TRUE(command().isVisible());
    EXPECT_EQ(command().text(), u"sudo apt install libqt6webenginewidgets6");
    EXPECT_TRUE(command().textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
    EXPECT_TRUE(command().textInteractionFlags().testFlag(Qt::TextSelectableByKeyboard));
    EXPECT_FALSE(reload().isVisible());
    EXPECT_EQ(restores, 0); // the keyring is not troubled for nothing
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(note(), u"Questa pagina richiede il motore web, che non è installato: esegui il comando qui sotto e la "
                      u"pagina si aprirà da sola.");
}

TEST_F(PageFrameTest, SaysSoWhereTheEngineDoesNotStart)
{
    browser.missing = WebBrowser::Absence::doesNotStart;
    make();
    EXPECT_EQ(note(), u"This page cannot be shown, because the web engine is installed but does not start.");
    EXPECT_FALSE(command().isVisible());
    EXPECT_FALSE(reload().isVisible());
}

TEST_F(PageFrameTest, GoesOnByItselfOnceTheEngineIsThere)
{
    browser.missing = WebBrowser::Absence::notInstalled;
    make();
    frame->load(link(u"https://site.example/login"_s));
    frame->setZoom(0.85);
    engine.clock.advance(std::chrono::seconds(5));
    EXPECT_EQ(ready->count(), 0);
    browser.missing.reset();
    engine.clock.advance(std::chrono::seconds(1));
    EXPECT_EQ(ready->count(), 1);
    ASSERT_EQ(page().loads, std::vector{link(u"https://site.example/login"_s)});
    EXPECT_EQ(page().zoom, 0.85);
    EXPECT_EQ(note(), QString());
    EXPECT_TRUE(view->isVisible());
    engine.clock.advance(std::chrono::seconds(5));
    EXPECT_EQ(browser.pagesMade, 1);
}

TEST_F(PageFrameTest, MakesThePageWhenTheCookiesOfBeforeAreThere)
{
    lock.emplace();
    make();
    frame->load(link(u"https://site.example/login"_s));
    engine.clock.advance(std::chrono::seconds(3));
    EXPECT_EQ(browser.pagesMade, 0);
    EXPECT_EQ(restores, 1);
    unlock();
    ASSERT_EQ(browser.pagesMade, 1);
    EXPECT_EQ(page().loads.size(), 1U);
}

TEST_F(PageFrameTest, LooksOnWhereTheEngineGoesWhileTheCookiesAreFetched)
{
    lock.emplace();
    make();
    browser.missing = WebBrowser::Absence::notInstalled;
    unlock();
    EXPECT_EQ(ready->count(), 0);
    engine.clock.advance(std::chrono::seconds(1));
    EXPECT_TRUE(command().isVisible());
    browser.missing.reset();
    engine.clock.advance(std::chrono::seconds(1));
    EXPECT_EQ(ready->count(), 1);
}

TEST_F(PageFrameTest, MakesNoPageOnceItHasGone)
{
    lock.emplace();
    make();
    frame.reset();
    unlock();
    EXPECT_EQ(browser.pagesMade, 0);
    EXPECT_EQ(engine.clock.pendingTimers(), 0);
}

TEST_F(PageFrameTest, TakesThePageWithIt)
{
    make();
    frame.reset();
    EXPECT_TRUE(browser.pages.empty());
}

TEST_F(PageFrameTest, LetsTheKeyboardGoFromTheHostToThePage)
{
    make();
    view->setFocusPolicy(Qt::StrongFocus);
    frame->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(frame.get()));
    auto& line = partOf<HostLine>(*frame, "hostLine");
    line.setFocus();
    EXPECT_FALSE(line.hasFocus()); // it is empty
    page().arrivesAt(u"https://site.example/"_s);
    line.setFocus();
    QTest::keyClick(&line, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), view);
}

} // namespace
} // namespace vormel
