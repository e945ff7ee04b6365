#include "resolvers/captcha/BusyThreads.h"
#include "resolvers/captcha/CaptchaExtractionScene.h"

using namespace Qt::StringLiterals;

namespace vormel::tests {

using fixtures::ScriptedPage;
using fixtures::turnEventLoop;
using fixtures::waitUntil;

TEST_F(CaptchaExtractionTest, WithoutAPageNothingHappens)
{
    extraction->extract(nullptr);
    EXPECT_FALSE(extraction->isExtracting());
    EXPECT_EQ(changes, 0);
}

TEST_F(CaptchaExtractionTest, ReadsThePageOnceAtATime)
{
    browser.pages.front()->onScript = nullptr;
    extract();
    EXPECT_TRUE(extraction->isExtracting());
    EXPECT_EQ(changes, 1);
    extract();
    EXPECT_EQ(browser.pages.front()->scripts, QStringList{captchaPageScript()});
}

TEST_F(CaptchaExtractionTest, CallsGoBeforeEverythingElse)
{
    put(u"html"_s, cnlCallWith("http://rapidgator.net/file/1") + u"<a href=\"/Link/1.html\">"_s);
    put(u"cnlUrls"_s, u"https://field.example/1"_s);
    put(u"txtHref"_s, u"https://box.example/l.txt"_s);
    extract();
    ASSERT_TRUE(ends());
    EXPECT_EQ(results, std::vector<std::string>{"https://rapidgator.net/file/1"});
    EXPECT_TRUE(http.exchanges().empty());
    EXPECT_TRUE(opened.isEmpty());
    EXPECT_EQ(error(), "none");
}

TEST_F(CaptchaExtractionTest, TheFieldIsNext)
{
    put(u"html"_s, cnlCallWith("https://unknown.example/file/1") + u"<a href=\"/Link/1.html\">"_s);
    put(u"cnlUrls"_s, u"https://field.example/1\nhttps://field.example/2"_s);
    put(u"txtHref"_s, u"https://box.example/l.txt"_s);
    extract();
    ASSERT_TRUE(ends());
    EXPECT_EQ(results, std::vector<std::string>{"https://field.example/1\nhttps://field.example/2"});
    EXPECT_TRUE(http.exchanges().empty());
}

TEST_F(CaptchaExtractionTest, ThenTheTextListIsAskedFor)
{
    putLinkPages(1);
    put(u"cnlUrls"_s, u"no links"_s);
    put(u"txtHref"_s, u"https://box.example/l.txt"_s);
    extract();
    ASSERT_TRUE(asks(1));
    EXPECT_EQ(http.last().request.url, QUrl(u"https://box.example/l.txt"_s));
    EXPECT_EQ(http.last().request.method, "GET");
    EXPECT_EQ(http.last().header("User-Agent"), "Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15");
    answer("https://text.example/1\thttps://text.example/2");
    ASSERT_TRUE(ends());
    EXPECT_EQ(results, std::vector<std::string>{"https://text.example/1\nhttps://text.example/2"});
    EXPECT_TRUE(opened.isEmpty());
}

TEST_F(CaptchaExtractionTest, TheTextListGetsTheCookiesOfItsAddressAndNoOthers)
{
    browser.jar = {"#HttpOnly_.box.example\tTRUE\t/\tTRUE\t0\tsolved\tyes",
                   ".terabytez.example\tTRUE\t/\tTRUE\t0\tlogin\tsecret"};
    put(u"txtHref"_s, u"https://box.example/l.txt"_s);
    extract();
    ASSERT_TRUE(asks(1));
    ASSERT_NE(http.last().request.cookies, nullptr); // not those of the transfers
    EXPECT_EQ(http.last().request.cookies->cookies(), QByteArrayList{"box.example\tFALSE\t/\tTRUE\t0\tsolved\tyes"});
}

TEST_F(CaptchaExtractionTest, ATextListThatFailsOrIsEmptyLeavesTheLinkPages)
{
    onOpened = [](ScriptedPage& hidden) { leadTo(hidden, u"https://rapidgator.net/file/1"_s); };
    putLinkPages(1);
    put(u"txtHref"_s, u"https://box.example/l.txt"_s);
    extract();
    ASSERT_TRUE(asks(1));
    http.last().fail(HttpError::Kind::timedOut);
    ASSERT_TRUE(ends());
    extract();
    ASSERT_TRUE(asks(2));
    answer("nothing here");
    ASSERT_TRUE(ends());
    EXPECT_EQ(results, (std::vector<std::string>{"https://rapidgator.net/file/1", "https://rapidgator.net/file/1"}));
}

TEST_F(CaptchaExtractionTest, WithoutLinkPagesTheContainersOwnLinksCount)
{
    put(u"html"_s, u"<a href=\"http://rapidgator.net/file/1\"><a href=\"/go/one\">"_s);
    extract();
    ASSERT_TRUE(asks(1));
    EXPECT_EQ(http.last().request.url, QUrl(u"https://box.example/go/one"_s));
    EXPECT_EQ(http.last().header("User-Agent"), "Mozilla/5.0");
    EXPECT_EQ(http.last().header("Referer"), "https://box.example/Container/1.html");
    http.last().fail(HttpError::Kind::connectionLost);
    ASSERT_TRUE(ends());
    EXPECT_EQ(results, std::vector<std::string>{"https://rapidgator.net/file/1"});
}

TEST_F(CaptchaExtractionTest, APageWithoutLinksMayBeTriedAgain)
{
    put(u"html"_s, u"<p>Solve me</p>"_s);
    extract();
    ASSERT_TRUE(ends());
    EXPECT_EQ(error(), noLinks);
    put(u"cnlUrls"_s, u"https://field.example/1"_s);
    extract();
    EXPECT_EQ(error(), "none");
    ASSERT_TRUE(ends());
    EXPECT_EQ(error(), "none");
    EXPECT_EQ(results.size(), 1U);
}

TEST_F(CaptchaExtractionTest, APageThatTellsNoTextCannotBeRead)
{
    for (const QVariant& answer : {QVariant(), QVariant(7), QVariant(u"{\"html\":\"cut"_s)}) {
        browser.pages.front()->onScript = [&answer](const QString&) { return answer; };
        extract();
        ASSERT_TRUE(ends());
        EXPECT_EQ(error(), "Could not read page content");
    }
    EXPECT_TRUE(results.empty());
}

TEST_F(CaptchaExtractionTest, APageThatGoesInMidReadingCannotBeRead)
{
    browser.pages.front()->onScript = nullptr;
    extract();
    page.reset();
    ASSERT_TRUE(ends());
    EXPECT_EQ(error(), "Could not read page content");
}

TEST_F(CaptchaExtractionTest, LinkPagesAreOpenedOneAfterTheOther)
{
    putLinkPages(3);
    extract();
    ASSERT_TRUE(isAt({1, 3}));
    EXPECT_EQ(opened, QStringList{u"https://box.example/Link/1.html"_s});
    leadTo(*browser.pages.back(), u"https://rapidgator.net/file/1"_s);
    ASSERT_TRUE(isAt({2, 3}));
    EXPECT_EQ(browser.pages.size(), 2U); // the container's own and one hidden page
    browser.pages.back()->ends(WebPage::End::failed);
    ASSERT_TRUE(isAt({3, 3}));
    leadTo(*browser.pages.back(), u"https://rapidgator.net/file/3"_s);
    ASSERT_TRUE(ends());
    EXPECT_EQ(extraction->extractProgress(), std::nullopt);
    EXPECT_EQ(results, std::vector<std::string>{"https://rapidgator.net/file/1\nhttps://rapidgator.net/file/3"});
}

TEST_F(CaptchaExtractionTest, LinkPagesThatLeadNowhereTakeFifteenSecondsEach)
{
    putLinkPages(2);
    extract();
    ASSERT_TRUE(isAt({1, 2}));
    clock.advance(std::chrono::seconds(15));
    EXPECT_EQ(extraction->extractProgress(), (CaptchaExtraction::Progress{2, 2}));
    clock.advance(std::chrono::seconds(15));
    EXPECT_FALSE(extraction->isExtracting());
    EXPECT_EQ(error(), noLinks);
    EXPECT_EQ(extraction->extractProgress(), std::nullopt);
}

TEST_F(CaptchaExtractionTest, TwoHundredLinkPagesAreAllFollowed)
{
    onOpened = [this](ScriptedPage& hidden) { leadTo(hidden, u"https://rapidgator.net/file/%1"_s.arg(opened.size())); };
    putLinkPages(200);
    extract();
    ASSERT_TRUE(ends());
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(std::count(results.front().begin(), results.front().end(), '\n'), 199);
    EXPECT_EQ(browser.pages.size(), 1U);
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(CaptchaExtractionTest, LinksOfHostsWithAnAccountNeedNoChoice)
{
    make({SupportedHost::terabytez});
    put(u"cnlUrls"_s, u"https://terabytez.example/1 https://rapidgator.net/2"_s);
    extract();
    ASSERT_TRUE(ends());
    EXPECT_EQ(results, std::vector<std::string>{"https://terabytez.example/1"});
    EXPECT_TRUE(extraction->hostGroups().empty());
}

TEST_F(CaptchaExtractionTest, LinksOfSeveralHostsWaitForTheChoice)
{
    put(u"cnlUrls"_s, u"https://a.example/1 https://terabytez.example/2 https://a.example/3"_s);
    extract();
    ASSERT_TRUE(ends());
    EXPECT_TRUE(results.empty());
    ASSERT_EQ(extraction->hostGroups().size(), 2U);
    EXPECT_EQ(extraction->hostGroups().front().displayName, u"terabytez.example");
    extraction->choose(1);
    extraction->addAll();
    EXPECT_EQ(results,
              (std::vector<std::string>{"https://a.example/1\nhttps://a.example/3",
                                        "https://a.example/1\nhttps://terabytez.example/2\nhttps://a.example/3"}));
}

} // namespace vormel::tests
