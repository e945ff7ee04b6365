#include "resolvers/containers/ContainerScene.h"

#include <gmock/gmock.h>

#include <atomic>
#include <map>
#include <memory>
#include <semaphore>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using sites::Answer;
using testing::IsEmpty;

const std::string oneLink = "<a href=\"http://rapidgator.net/file/1\">1</a>";
const QByteArray formPost = " | Content-Type: application/x-www-form-urlencoded | token=a%20b&password=";

/// A redirect whose answer breaks off.
Answer brokenRedirect(const std::string& target)
{
    return Answer::page(302, "0123456789").withHeader("Location", target).closeAfter(4);
}

class ContainerWalkTest : public ContainerScene
{
protected:
    [[nodiscard]] QByteArrayList asked() const { return fixtures::transcript(cryptSite.requests()); }
};

TEST_F(ContainerWalkTest, FileCryptIsAskedForItsPageAndNothingElse)
{
    const ReadingPtr reading = read(fileCrypt, cryptSite.add({.body = oneLink}));
    EXPECT_EQ(reading->urls(), QStringList{u"https://rapidgator.net/file/1"_s});
    EXPECT_EQ(asked(), QByteArrayList{"GET /Container/C1.html | Referer: https://filecrypt.example/Container/C1.html"});
    EXPECT_THAT(client->sharedCookies()->cookies(), IsEmpty());
}

TEST_F(ContainerWalkTest, APasswordGoesToThePageItselfWithItsHiddenInputs)
{
    const std::string url = cryptSite.add({.body = oneLink, .password = "a/b ü"});
    EXPECT_EQ(read(fileCrypt, url, u"a/b ü"_s)->urls(), QStringList{u"https://rapidgator.net/file/1"_s});
    const QByteArray page = "/Container/C1.html | Referer: https://filecrypt.example/Container/C1.html";
    EXPECT_EQ(asked(), (QByteArrayList{"GET " + page, "POST " + page + formPost + "a/b%20%C3%BC"}));
}

TEST_F(ContainerWalkTest, WithoutItsPasswordAContainerStaysShut)
{
    const std::string url = cryptSite.add({.body = oneLink, .password = "x"});
    expectError(read(fileCrypt, url), Kind::wrongPassword);
    expectError(read(fileCrypt, url, u""_s), Kind::wrongPassword);
    EXPECT_EQ(asked().size(), 2);
    expectError(read(fileCrypt, url, u"y"_s), Kind::wrongPassword);
    EXPECT_EQ(asked().size(), 4);
}

TEST_F(ContainerWalkTest, ACaptchaComesBeforeAnyPassword)
{
    const std::string url = cryptSite.add({.body = oneLink, .password = "x", .hasCaptcha = true});
    expectError(read(fileCrypt, url, u"x"_s), Kind::captchaRequired);
    expectError(read(fileCrypt, url), Kind::captchaRequired);
    EXPECT_EQ(asked().size(), 2);
    expectError(read(fileCrypt, cryptSite.add({.body = oneLink, .password = "x", .asksAnew = true}), u"x"_s),
                Kind::captchaRequired);
}

TEST_F(ContainerWalkTest, APageWithoutLinksHasNone)
{
    expectError(read(fileCrypt, cryptSite.add({.body = "<p>rapidgator.net</p>"})), Kind::noLinksFound);
    expectError(read(keeplinks, keeplinksSite.add({.body = "<p></p>"})), Kind::noLinksFound);
}

TEST_F(ContainerWalkTest, APageThatCannotBeReadIsANetworkError)
{
    const std::string url = cryptSite.add({});
    cryptSite.server().serve("/Container/C1.html",
                             {.content = sites::PatternContent(1, std::int64_t{50} << 20), .contentType = "text/html"});
    const ReadingPtr reading = read(fileCrypt, url);
    expectError(reading, Kind::networkError);
    EXPECT_EQ(reading->error->errorDescription(), u"Network error: The page is too large to be read.");
}

TEST_F(ContainerWalkTest, CallsComeFirstThenFollowedLinksThenThoseInSight)
{
    // The redirect of one link breaks off, and so counts; the other comes whole, and so does not.
    const std::string target = "http://www.filestore.example/go1/file";
    cryptSite.addGoLink("one", brokenRedirect(target));
    cryptSite.addGoLink("two", Answer::redirect(302, target + "2"));
    const std::string url = cryptSite.add(
        {.body = oneLink + "<a href='/go/one'></a><a href='/go/two'></a>" +
                 sites::clickNLoadCall("http://rapidgator.net/file/cnl\r\nhttp://unknown.example/a/b\r\n" +
                                       std::string("https://rapidgator.net/file/1\n"))});
    EXPECT_EQ(read(fileCrypt, url)->urls(),
              (QStringList{u"https://rapidgator.net/file/cnl"_s, u"https://rapidgator.net/file/1"_s,
                           u"https://www.filestore.example/go1/file"_s}));
    const auto goes = fixtures::transcript(cryptSite.server().requests("/go/one"));
    EXPECT_EQ(goes, QByteArrayList{"GET /go/one | Referer: https://filecrypt.example/Container/C1.html"});
}

TEST_F(ContainerWalkTest, AllLinksAreFollowedAtTheSameTimeAndCountAsTheyEnd)
{
    /// What the site's threads wait for, and the test.
    struct Gate
    {
        std::atomic<int> asked = 0;
        std::map<std::string, std::binary_semaphore> answers;
    };
    const auto gate = std::make_shared<Gate>();
    std::string body;
    for (const std::string word : {"a", "b", "c"}) {
        gate->answers.try_emplace(word, 0);
        cryptSite.server().serve("/go/" + word, {.respond = [word, gate](const sites::Request&) {
                                     ++gate->asked;
                                     static_cast<void>(
                                         gate->answers.at(word).try_acquire_for(std::chrono::seconds(20)));
                                     return brokenRedirect("https://rapidgator.net/file/" + word);
                                 }});
        body += "<a href='/go/" + word + "'>";
    }
    const ReadingPtr reading = start(fileCrypt, cryptSite.add({.body = body}));
    ASSERT_TRUE(fixtures::waitUntil([&gate] { return gate->asked == 3; }));
    for (const std::string word : {"c", "b", "a"}) {
        const int open = cryptSite.server().connectionsOpen();
        gate->answers.at(word).release();
        ASSERT_TRUE(fixtures::waitUntil([&] { return cryptSite.server().connectionsOpen() < open; }));
    }
    ASSERT_TRUE(fixtures::waitUntil([&reading] { return reading->isOver(); }));
    EXPECT_EQ(reading->urls(), (QStringList{u"https://rapidgator.net/file/c"_s, u"https://rapidgator.net/file/b"_s,
                                            u"https://rapidgator.net/file/a"_s}));
}

TEST_F(ContainerWalkTest, AFollowedLinkThatFailsCostsNothingElse)
{
    cryptSite.addGoLink("bad", Answer::raw("nonsense"));
    const std::string url = cryptSite.add({.body = "<a href='/go/bad'></a>" + oneLink});
    EXPECT_EQ(read(fileCrypt, url)->urls(), QStringList{u"https://rapidgator.net/file/1"_s});
}

TEST_F(ContainerWalkTest, AStoppedReadingLeavesItsSite)
{
    cryptSite.addGoLink("slow", Answer::page(200, "never").stallBeforeHead());
    const ReadingPtr reading = start(fileCrypt, cryptSite.add({.body = "<a href='/go/slow'></a>" + oneLink}));
    ASSERT_TRUE(fixtures::waitUntil([this] { return cryptSite.server().waitForStalled(1, {}); }));
    reading->stop.request_stop();
    ASSERT_TRUE(fixtures::waitUntil([&reading] { return reading->isOver(); }));
    EXPECT_TRUE(fixtures::waitUntil([this] { return !cryptSite.server().waitForStalled(1, {}); }));
}

TEST_F(ContainerWalkTest, LFileCryptFindsAddressesInScriptsToo)
{
    const std::string url = otherCryptSite.add({.body = "<script>open(http://rapidgator.net/file/1);</script> see "
                                                        "http://rapidgator.net/file/2."});
    EXPECT_EQ(read(lfileCrypt, url)->urls(),
              (QStringList{u"https://rapidgator.net/file/1"_s, u"https://rapidgator.net/file/2"_s}));
    expectError(read(fileCrypt, url), Kind::noLinksFound);
}

TEST_F(ContainerWalkTest, EachServiceClaimsItsOwnHosts)
{
    const auto claims = [](const ContainerResolver& resolver, const char16_t* url) {
        return resolver.canHandle(fixtures::link(QString::fromUtf16(url)));
    };
    EXPECT_TRUE(claims(fileCrypt, u"https://www.FileCrypt.example/a"));
    EXPECT_TRUE(claims(fileCrypt, u"https://filecrypt-safe.example/a"));
    EXPECT_FALSE(claims(fileCrypt, u"https://lfile.example/filecrypt.example"));
    EXPECT_TRUE(claims(lfileCrypt, u"https://lfile.example/a"));
    EXPECT_TRUE(claims(keeplinks, u"http://keeplinks.example/p/1"));
    EXPECT_FALSE(claims(keeplinks, u"mailto:keeplinks.example"));
    EXPECT_EQ(fileCrypt.name(), u"FileCrypt");
    EXPECT_EQ(lfileCrypt.name(), u"LFileCrypt");
    EXPECT_EQ(keeplinks.name(), u"Keeplinks");
}

class KeeplinksWalkTest : public ContainerScene
{
protected:
    [[nodiscard]] QByteArrayList asked() const { return fixtures::transcript(keeplinksSite.requests()); }
    static std::string refresh(const std::string& to)
    {
        return "<meta http-equiv=\"refresh\" content=\"0; url=" + to + "\">";
    }
};

TEST_F(KeeplinksWalkTest, LinksOnThePageAreTakenAsTheyAreAndARefreshIsNotFollowed)
{
    const std::string url = keeplinksSite.add({.body = oneLink + refresh("/next")});
    EXPECT_EQ(read(keeplinks, url)->urls(), QStringList{u"http://rapidgator.net/file/1"_s});
    EXPECT_EQ(asked(), QByteArrayList{"GET /Container/C1.html | Referer: https://www.keeplinks.example/"});
}

TEST_F(KeeplinksWalkTest, OneRefreshIsFollowedAndNoSecond)
{
    keeplinksSite.server().serve("/next", {.answers = {Answer::page(200, oneLink)}});
    keeplinksSite.server().serve("/first", {.answers = {Answer::page(200, refresh("/next"))}});
    EXPECT_EQ(read(keeplinks, keeplinksSite.add({.body = refresh("/next")}))->urls(),
              QStringList{u"http://rapidgator.net/file/1"_s});
    EXPECT_EQ(asked().last(), "GET /next");
    expectError(read(keeplinks, keeplinksSite.add({.body = refresh("/first")})), Kind::noLinksFound);
}

TEST_F(KeeplinksWalkTest, APasswordIsPostedAndTheAnswersRefreshFollowed)
{
    keeplinksSite.server().serve("/next", {.answers = {Answer::page(200, oneLink)}});
    const std::string url =
        keeplinksSite.add({.body = refresh("/next"), .password = "x", .refusal = "Invalid password"});
    EXPECT_EQ(read(keeplinks, url, u"x"_s)->urls(), QStringList{u"http://rapidgator.net/file/1"_s});
    EXPECT_EQ(asked(),
              (QByteArrayList{"GET /Container/C1.html | Referer: https://www.keeplinks.example/",
                              "POST /Container/C1.html | Referer: https://keeplinks.example/Container/C1.html" +
                                  formPost + "x",
                              "GET /next"}));
    expectError(read(keeplinks, url, u"y"_s), Kind::wrongPassword);
    expectError(read(keeplinks, url), Kind::wrongPassword);
}

TEST_F(KeeplinksWalkTest, KnowsNoCaptcha)
{
    const std::string url = keeplinksSite.add({.body = "<p class='g-recaptcha'>" + oneLink});
    EXPECT_EQ(read(keeplinks, url)->urls(), QStringList{u"http://rapidgator.net/file/1"_s});
}

} // namespace
} // namespace vormel
