#include "ProgramOnWeb.h"

#include <algorithm>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

using Shape = sites::TerabytezSite::Shape;

const QString signInSheet = u"terabytezLoginSheet"_s;

class TerabytezOnWeb : public ProgramOnWeb
{
protected:
    TerabytezOnWeb() { addTerabytezAccount(); }

    /// Who asked the file servers for files, and how.
    void expectFilesAskedForByTransfersAlone()
    {
        for (const sites::Request& request : services.terabytez.fileRequests()) {
            EXPECT_EQ(request.method, "GET");
            EXPECT_EQ(request.header("User-Agent").value_or("").find("Chrome"), std::string::npos);
        }
    }
    [[nodiscard]] std::string pageOf(const Link& url) { return url.absoluteString().toStdString(); }
};

class TerabytezShapes : public TerabytezOnWeb, public ::testing::WithParamInterface<Shape>
{};

} // namespace

TEST_F(TerabytezOnWeb, ItemsThatNeedASignInWaitForOneSheetAndAllGoOnAfterIt)
{
    const std::vector<Link> urls{services.newFile(), services.newFile(), services.newFile()};
    manager().addURLs(urls, std::nullopt);
    const std::vector<ItemPtr> items = manager().items();
    ASSERT_EQ(items.size(), 3U);
    ASSERT_NE(waitFor(signInSheet), nullptr);
    for (const ItemPtr& item : items)
        EXPECT_NE(item->status(), DownloadStatus::failed);
    signIn();
    for (int i = 0; i < 3; ++i)
        expectWhole(items[static_cast<std::size_t>(i)], i + 1);
    EXPECT_EQ(services.terabytez.signIns(), 1);
    for (const Link& url : urls)
        EXPECT_EQ(services.terabytez.formsSentTo(pageOf(url)), 1);
    expectFilesAskedForByTransfersAlone();
}

TEST_F(TerabytezOnWeb, ACancelledSignInEndsTheItemsThatWaitForIt)
{
    const ItemPtr item = add(services.newFile());
    ASSERT_NE(waitFor(signInSheet), nullptr);
    press(u"cancelSignIn"_s);
    EXPECT_TRUE(waitForStatus(item, DownloadStatus::failed));
    EXPECT_TRUE(waitUntilGone(signInSheet));
    EXPECT_EQ(services.terabytez.signIns(), 0);
}

TEST_F(TerabytezOnWeb, ASignInHoldsAfterANewStart)
{
    const ItemPtr first = add(services.newFile());
    ASSERT_NE(waitFor(signInSheet), nullptr);
    signIn();
    expectWhole(first, 1);
    quit();
    start();
    expectWhole(add(services.newFile()), 2);
    EXPECT_EQ(services.terabytez.signIns(), 1);
}

TEST_F(TerabytezOnWeb, ATransferGoesOnAfterANewStartWithoutAnotherWalk)
{
    constexpr qint64 size = 6'000'000;
    manager().settings().maxDownloadSpeedKBps.set(1000);
    const Link url = services.newFile(Shape::redirect, size);
    const ItemPtr before = add(url);
    ASSERT_NE(waitFor(signInSheet), nullptr);
    signIn();
    ASSERT_TRUE(waitUntil([&] { return before->bytesReceived() > 500'000; }));
    manager().commands().pauseItems({before});
    ASSERT_EQ(before->status(), DownloadStatus::paused);
    quit();
    start();
    manager().settings().maxDownloadSpeedKBps.set(0);
    const ItemPtr after = manager().items().front();
    manager().commands().startItems({after});
    expectWhole(after, 1, size);
    EXPECT_EQ(services.terabytez.formsSentTo(pageOf(url)), 1);
    const std::vector<sites::Request> asked = services.terabytez.fileRequests();
    EXPECT_TRUE(
        std::any_of(asked.begin(), asked.end(), [](const auto& one) { return one.header("Range").has_value(); }));
}

TEST_F(TerabytezOnWeb, RemovingTheItemAtWorkLetsTheNextOneGoOn)
{
    const ItemPtr first = add(services.newFile());
    ASSERT_NE(waitFor(signInSheet), nullptr);
    signIn();
    expectWhole(first, 1);
    services.terabytez.setCountdown(std::chrono::minutes(5));
    const ItemPtr slow = add(services.newFile(Shape::countdown));
    ASSERT_TRUE(waitForStatus(slow, DownloadStatus::resolving));
    const ItemPtr next = add(services.newFile());
    ASSERT_TRUE(waitUntil([&] { return services.terabytez.formsSentTo(pageOf(slow->originalURL())) == 1; }));
    manager().commands().removeItems({slow->id()});
    expectWhole(next, 3);
}

TEST_F(TerabytezOnWeb, ASheetStaysUsableWhenTheSiteShowsAChallenge)
{
    services.terabytez.setChallenge(true);
    const ItemPtr item = add(services.newFile());
    ASSERT_TRUE(waitInPage(u"!!document.querySelector('#challenge')"_s));
    static_cast<void>(inPage(u"document.querySelector('#challenge').click()"_s));
    signIn();
    expectWhole(item, 1);
}

TEST_F(TerabytezOnWeb, TheCheckOfAnAccountSignsInAndSigningOutEndsThat)
{
    window().showPage(Page::accounts);
    press(u"checkAccount"_s);
    ASSERT_NE(waitFor(signInSheet), nullptr);
    signIn();
    EXPECT_NE(waitFor(u"premiumPlan"_s), nullptr);
    window().showPage(Page::downloads);
    expectWhole(add(services.newFile()), 1);

    window().showPage(Page::accounts);
    press(u"signOutAccount"_s);
    EXPECT_TRUE(waitUntilGone(u"premiumPlan"_s));
    window().showPage(Page::downloads);
    static_cast<void>(add(services.newFile()));
    EXPECT_NE(waitFor(signInSheet), nullptr) << "the session is still there";
    EXPECT_EQ(services.terabytez.signIns(), 1);
}

TEST_P(TerabytezShapes, LeadToTheFile)
{
    services.terabytez.setCountdown(std::chrono::milliseconds(300));
    const ItemPtr item = add(services.newFile(GetParam()));
    ASSERT_NE(waitFor(signInSheet), nullptr);
    signIn();
    expectWhole(item, 1);
    expectFilesAskedForByTransfersAlone();
}

INSTANTIATE_TEST_SUITE_P(Each, TerabytezShapes,
                         ::testing::Values(Shape::redirect, Shape::redirectToFilesHost, Shape::redirectOnSite,
                                           Shape::attachment, Shape::script, Shape::countdown,
                                           Shape::countdownBeforeForm, Shape::link, Shape::newWindow, Shape::twoForms,
                                           Shape::pageRedirects));
