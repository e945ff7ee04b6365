#include "resolvers/captcha/BusyThreads.h"
#include "resolvers/captcha/CaptchaExtractionScene.h"

using namespace Qt::StringLiterals;

namespace vormel::tests {

using fixtures::turnEventLoop;
using fixtures::waitUntil;

TEST_F(CaptchaExtractionTest, CancellingEndsTheLinkPagesAndAddsNothing)
{
    putLinkPages(3);
    extract();
    ASSERT_TRUE(isAt({1, 3}));
    leadTo(*browser.pages.back(), u"https://rapidgator.net/file/1"_s);
    extraction->cancel(); // what was found is not told yet
    EXPECT_FALSE(extraction->isExtracting());
    EXPECT_EQ(extraction->extractProgress(), std::nullopt);
    turnEventLoop();
    clock.advance(std::chrono::seconds(60));
    EXPECT_TRUE(results.empty());
    EXPECT_EQ(error(), "none");
    EXPECT_EQ(opened.size(), 1);
    EXPECT_EQ(browser.pages.size(), 1U);
}

TEST_F(CaptchaExtractionTest, CancellingClosesTheHiddenPageAtOnce)
{
    putLinkPages(2);
    extract();
    ASSERT_TRUE(isAt({1, 2}));
    extraction->cancel();
    EXPECT_EQ(browser.pages.size(), 1U);
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(CaptchaExtractionTest, CancellingEndsTheRequestForTheTextList)
{
    putLinkPages(1);
    put(u"txtHref"_s, u"https://box.example/l.txt"_s);
    extract();
    ASSERT_TRUE(asks(1));
    extraction->cancel();
    EXPECT_TRUE(waitUntil([this] { return http.last().isDropped; }));
    turnEventLoop();
    EXPECT_TRUE(opened.isEmpty());
    EXPECT_TRUE(results.empty());
    EXPECT_EQ(error(), "none");
}

TEST_F(CaptchaExtractionTest, CancellingWhileThePageIsReadAddsNothing)
{
    put(u"cnlUrls"_s, u"https://field.example/1"_s);
    auto busy = std::make_unique<BusyThreads>(*background);
    extract();
    extraction->cancel();
    busy.reset();
    background.reset();
    turnEventLoop();
    EXPECT_TRUE(results.empty());
    EXPECT_FALSE(extraction->isExtracting());
}

TEST_F(CaptchaExtractionTest, WhoCancelsWhenHeHearsOfAPageOpensNone)
{
    QObject::connect(extraction.get(), &CaptchaExtraction::changed, [this] {
        if (extraction->extractProgress())
            extraction->cancel();
    });
    putLinkPages(3);
    extract();
    ASSERT_TRUE(ends());
    turnEventLoop();
    EXPECT_TRUE(opened.isEmpty());
}

TEST_F(CaptchaExtractionTest, ACancelledReadingDoesNotDisturbTheNext)
{
    putLinkPages(1);
    extract();
    ASSERT_TRUE(isAt({1, 1}));
    extraction->cancel();
    put(u"cnlUrls"_s, u"https://field.example/1"_s);
    extract();
    clock.advance(std::chrono::seconds(15));
    ASSERT_TRUE(ends());
    EXPECT_EQ(results, std::vector<std::string>{"https://field.example/1"});
}

TEST_F(CaptchaExtractionTest, ItsEndEndsTheWork)
{
    putLinkPages(2);
    extract();
    ASSERT_TRUE(isAt({1, 2}));
    extraction.reset();
    EXPECT_EQ(browser.pages.size(), 1U);
    EXPECT_EQ(clock.pendingTimers(), 0);
    clock.advance(std::chrono::seconds(60));
    EXPECT_EQ(opened.size(), 1);
    EXPECT_TRUE(results.empty());
}

TEST_F(CaptchaExtractionTest, ItsEndLeavesTheReadingOfAPage)
{
    put(u"html"_s, u"<a href=\"/go/one\">"_s);
    auto busy = std::make_unique<BusyThreads>(*background);
    extract();
    extraction.reset();
    busy.reset();
    background.reset();
    turnEventLoop();
    EXPECT_TRUE(results.empty());
    EXPECT_TRUE(http.exchanges().empty());
}

TEST_F(CaptchaExtractionTest, ItsEndEndsTheFollowingOfTheContainersLinks)
{
    put(u"html"_s, u"<a href=\"/go/one\">"_s);
    extract();
    ASSERT_TRUE(asks(1));
    extraction.reset();
    EXPECT_TRUE(waitUntil([this] { return http.last().isDropped; }));
    turnEventLoop();
    EXPECT_TRUE(results.empty());
}

} // namespace vormel::tests
