#include "resolvers/filestore/FilestoreScene.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using sites::Answer;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const QByteArrayList loginRequests{
    "GET /login",
    "POST /login | Referer: https://filestore.example/login | Content-Type: application/x-www-form-urlencoded | "
    "op=login&token=t-5&rand=&login=ann&password=s3cret&redirect=/",
    "GET / | Referer: https://filestore.example/login | Cookie: xfss=s1",
};

QByteArray page(const QByteArray& path)
{
    return "GET " + path + " | Referer: https://filestore.example/ | Cookie: xfss=s1";
}

QByteArray probe(const QByteArray& path)
{
    return "GET " + path + " | Referer: https://filestore.example/f1 | Cookie: xfss=s1";
}

QByteArray post(const QByteArray& path, const QByteArray& body)
{
    return "POST " + path + " | Referer: https://filestore.example/f1 | Cookie: xfss=s1 | Content-Type: " +
           "application/x-www-form-urlencoded | " + body;
}

/// One way from a page to its file, as it is asked for after the login.
struct Way
{
    const char* name;
    sites::FilestoreSite::Shape shape;
    QByteArrayList requests;
    const char* url;
    const char* filename = "the.film.part1.rar";
    QByteArrayList fileRequests = {};
};

using Shape = sites::FilestoreSite::Shape;

constexpr const char* atFiles = "https://files.filestore.example/f1/the.film.part1.rar";

const std::vector<Way>& ways()
{
    static const std::vector<Way> all{
        {"LinkToFile",
         Shape::linkToFile,
         {page("/f1")},
         atFiles,
         "the.film.part1.rar",
         {probe("/f1/the.film.part1.rar")}},
        {"LinkOnSite", Shape::linkOnSite, {page("/f1"), probe("/dl/f1")}, atFiles},
        {"LinkServedHere", Shape::linkServedHere, {page("/f1"), probe("/dl/f1")}, "https://filestore.example/dl/f1"},
        {"OneForm",
         Shape::oneForm,
         {page("/f1"), post("/f1", "op=download2&id=f1&fname=the.film.part1.rar&method_premium=1")},
         atFiles},
        {"TwoForms",
         Shape::twoForms,
         {page("/f1"), post("/f1", "op=download1&id=f1&fname=the.film.part1.rar&method_premium=1"),
          post("/f1", "op=download2&id=f1&method_premium=1")},
         atFiles},
        {"FormThenLink",
         Shape::formThenLink,
         {page("/f1"), post("/f1", "op=download2&id=f1&fname=the.film.part1.rar&method_premium=1")},
         atFiles},
        {"FormServedHere",
         Shape::formServedHere,
         {page("/f1"), post("/f1", "op=download2&id=f1&fname=the.film.part1.rar&method_premium=1")},
         "https://filestore.example/f1"},
        {"RedirectToFile", Shape::redirectToFile, {page("/f1")}, atFiles, nullptr},
    };
    return all;
}

class FilestoreWays : public FilestoreScene, public testing::WithParamInterface<Way>
{};

TEST_P(FilestoreWays, IsAskedForInThisOrderAndWithNothingElse)
{
    constexpr std::int64_t size = std::int64_t{64} << 20; // no buffers between here and there take as much
    const WalkPtr walk = resolve(site.addFile("the.film.part1.rar", GetParam().shape, sites::PatternContent(1, size)));
    ASSERT_TRUE(walk->found);
    EXPECT_EQ(walk->url(), QString::fromLatin1(GetParam().url));
    EXPECT_EQ(walk->found->filename.value_or(QString()), QString::fromLatin1(GetParam().filename));
    EXPECT_EQ(asked(), loginRequests + GetParam().requests);
    EXPECT_EQ(fixtures::transcript(site.fileRequests()), GetParam().fileRequests);
    EXPECT_LT(site.files().bodyBytesSent(), size / 2) << "the file is the transfer's to fetch";
    EXPECT_EQ(keptCookies(), QByteArrayList{"#HttpOnly_.filestore.example\tTRUE\t/\tTRUE\t0\txfss\ts1"});
}

INSTANTIATE_TEST_SUITE_P(Shapes, FilestoreWays, testing::ValuesIn(ways()),
                         [](const testing::TestParamInfo<Way>& way) { return std::string(way.param.name); });

class FilestoreResolverTest : public FilestoreScene
{
protected:
    std::string add(Shape shape = Shape::linkToFile) { return site.addFile("f.rar", shape, "bytes"); }
    void expectError(const WalkPtr& walk, Kind kind)
    {
        ASSERT_TRUE(walk->error);
        EXPECT_EQ(walk->error->kind(), kind) << walk->error->what();
        EXPECT_THAT(keptCookies(), IsEmpty());
    }
};

TEST_F(FilestoreResolverTest, WithoutPasswordOrNameNobodyIsAsked)
{
    const std::string url = add();
    secrets.kept.clear();
    const WalkPtr walk = resolve(url);
    expectError(walk, Kind::noAccountConfigured);
    EXPECT_EQ(walk->error->errorDescription(), u"No account configured for Filestore.example");
    ann.username.clear();
    secrets.kept.insert(keychainAccountKey(ann, profiles), u"s3cret"_s);
    expectError(resolve(url), Kind::noAccountConfigured);
    EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(FilestoreResolverTest, AnAddressWithoutAPathLeadsNowhere)
{
    expectError(resolve(u"https://filestore.example/"_s), Kind::linkNotFound);
    expectError(resolve(u"https://filestore.example"_s), Kind::linkNotFound);
    EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(FilestoreResolverTest, ARefusedLoginIsTheEndThoughItsStatusIsGood)
{
    const std::string url = add();
    secrets.kept.insert(keychainAccountKey(ann, profiles), u"wrong"_s);
    for (const char* const refusal :
         {"Wrong Login", "invalid login", "Incorrect password!", "wrong password", "Invalid credentials",
          "login error 5", "invalid email", "Wrong email", "incorrect email"}) {
        site.setRefusal(refusal);
        const std::size_t before = site.requests().size();
        expectError(resolve(url), Kind::authenticationFailed);
        EXPECT_EQ(site.requests().size() - before, 2U) << refusal;
    }
}

TEST_F(FilestoreResolverTest, ALoginThatCannotBeAskedForIsAFailedLogin)
{
    const std::string url = add();
    site.setTrouble(Answer::nothing());
    expectError(resolve(url), Kind::authenticationFailed);
}

TEST_F(FilestoreResolverTest, APasswordGoesOutAsItIsWhereAQueryAllowsIt)
{
    site.addAccount("ann", "a&b");
    secrets.kept.insert(keychainAccountKey(ann, profiles), u"a+b/c=d&e è%"_s);
    expectError(resolve(add()), Kind::authenticationFailed);
    EXPECT_THAT(asked().at(1).toStdString(), HasSubstr("&password=a+b/c=d&e%20%C3%A8%25&redirect=/"));
}

TEST_F(FilestoreResolverTest, APageWithoutLinkAndFormIsTriedThreeTimesWithPauses)
{
    const std::string url = add(Shape::nothing);
    const WalkPtr walk = start(QString::fromStdString(url));
    const auto pages = [this] { return site.pages().requests("/f1").size(); };
    ASSERT_TRUE(fixtures::waitUntil([&] { return pages() == 1 && clock.pendingTimers() > 0; }));
    clock.advance(std::chrono::milliseconds(999));
    fixtures::turnEventLoop();
    EXPECT_EQ(pages(), 1U);
    clock.advance(std::chrono::milliseconds(1));
    ASSERT_TRUE(fixtures::waitUntil([&] { return pages() == 2 && clock.pendingTimers() > 0; }));
    clock.advance(std::chrono::milliseconds(1999));
    fixtures::turnEventLoop();
    EXPECT_EQ(pages(), 2U);
    clock.advance(std::chrono::milliseconds(1));
    ASSERT_TRUE(fixtures::waitUntil([&walk] { return walk->isOver(); }));
    expectError(walk, Kind::linkNotFound);
    EXPECT_EQ(pages(), 3U);
    EXPECT_EQ(site.logins(), 1) << "the login was good";
}

TEST_F(FilestoreResolverTest, ASessionThatHasEndedIsBegunAnewAtOnce)
{
    const std::string url = add();
    ASSERT_TRUE(resolve(url)->found);
    site.logEverybodyOut();
    const WalkPtr walk = resolve(url);
    EXPECT_TRUE(walk->found);
    EXPECT_EQ(site.logins(), 2);
}

TEST_F(FilestoreResolverTest, ASiteThatForgetsEveryLoginIsGivenUpAfterThree)
{
    const std::string url = add();
    site.pages().serve("/f1", {.answers = {Answer::redirect(302, "/login?next=f1")}});
    expectError(resolve(url), Kind::authenticationFailed);
    EXPECT_EQ(site.logins(), 3);
    EXPECT_EQ(site.pages().requests("/f1").size(), 3U);
}

TEST_F(FilestoreResolverTest, ThirtyFilesNeedOneLoginAndOneMoreWhenAllAreLoggedOut)
{
    std::vector<QString> urls;
    for (int i = 0; i < 30; ++i)
        urls.push_back(QString::fromStdString(add()));
    for (const int expected : {1, 2}) {
        std::vector<WalkPtr> walks;
        for (const QString& url : urls)
            walks.push_back(start(url));
        for (const WalkPtr& walk : walks) {
            ASSERT_TRUE(end(walk));
            EXPECT_TRUE(walk->found);
        }
        EXPECT_EQ(site.logins(), expected);
        site.logEverybodyOut();
    }
}

TEST_F(FilestoreResolverTest, ALinkToAnotherSiteIsTakenAsItIs)
{
    const std::string url = add();
    site.pages().serve("/f1", {.answers = {Answer::page(200, "<a href=\"http://cdn.example/f.rar\">")}});
    EXPECT_EQ(resolve(url)->url(), u"http://cdn.example/f.rar");
    EXPECT_THAT(asked(), SizeIs(4));
}

TEST_F(FilestoreResolverTest, ANetworkErrorIsTheEndAndLeavesNothing)
{
    const std::string url = add();
    site.pages().serve("/f1",
                       {.content = "<p>cut", .contentType = "text/html", .answers = {Answer::file().closeAfter(2)}});
    const WalkPtr walk = resolve(url);
    expectError(walk, Kind::networkError);
    EXPECT_EQ(walk->error->errorDescription(), u"Network error: The connection to the server was lost.");
    EXPECT_EQ(site.pages().requests("/f1").size(), 1U);
}

TEST_F(FilestoreResolverTest, APageThatIsTooLargeIsANetworkError)
{
    const std::string url = add();
    site.pages().serve("/f1",
                       {.content = sites::PatternContent(1, std::int64_t{50} << 20), .contentType = "text/html"});
    const WalkPtr walk = resolve(url);
    expectError(walk, Kind::networkError);
    EXPECT_EQ(walk->error->errorDescription(), u"Network error: The page is too large to be read.");
    EXPECT_LT(site.pages().bodyBytesSent(), std::int64_t{20} << 20);
}

TEST_F(FilestoreResolverTest, OfTheAnswerToAFormOnlyItsBeginningIsRead)
{
    const std::string url = add(Shape::oneForm);
    const std::string link = "<a href=\"https://cdn.example/f.rar\">";
    const auto answerWith = [this](std::size_t before, const std::string& text) {
        sites::Resource resource;
        resource.respond = [before, text](const sites::Request& request) {
            if (request.method == "POST")
                return Answer::page(200, std::string(before, ' ') + text + std::string(1'000'000, ' '));
            return Answer::page(200, "<form action=\"\"><input type='hidden' name='id' value='1'></form>");
        };
        site.pages().serve("/f1", resource);
    };
    answerWith(262'144 - link.size(), link);
    EXPECT_EQ(resolve(url)->url(), u"https://cdn.example/f.rar");
    answerWith(262'144 - link.size() + 2, link);
    EXPECT_TRUE(resolve(url)->error);
}

TEST_F(FilestoreResolverTest, AFormThatLeadsToAnotherHostIsNotPosted)
{
    const std::string url = add();
    site.pages().serve("/f1", {.answers = {Answer::page(200, "<form action='https://files.filestore.example.evil/x'>"
                                                             "<input type='hidden' name='id' value='1'></form>")}});
    expectError(resolve(url), Kind::linkNotFound);
    EXPECT_THAT(asked(), Not(Contains(testing::Property(&QByteArray::toStdString, HasSubstr("id=1")))));
}

TEST_F(FilestoreResolverTest, AProbeThatFailsLeavesTheForm)
{
    const std::string url = add();
    site.pages().serve("/f1", {.answers = {Answer::page(200, "<a href=\"https://filestore.example/d/x\"></a><form>"
                                                             "<input type='hidden' name='id' value='1'></form>"),
                                           Answer::redirect(302, "https://cdn.example/f.rar")}});
    site.pages().serve("/d/x", {.answers = {Answer::raw("nonsense")}});
    EXPECT_EQ(resolve(url)->url(), u"https://cdn.example/f.rar");
    EXPECT_EQ(asked().last(), post("/f1", "id=1"));
}

TEST_F(FilestoreResolverTest, AStoppedWalkLeavesItsSiteAndTheLoginToOthers)
{
    const std::string url = add();
    site.setDelay(std::chrono::milliseconds(150));
    const WalkPtr first = start(QString::fromStdString(url));
    const WalkPtr second = start(QString::fromStdString(url));
    ASSERT_TRUE(site.pages().waitForRequests("/login", 1, std::chrono::seconds(5)));
    first->stop.request_stop();
    ASSERT_TRUE(end(first));
    EXPECT_TRUE(first->error);
    ASSERT_TRUE(end(second));
    EXPECT_TRUE(second->found);
    EXPECT_EQ(site.pages().requests("/f1").size(), 1U);
    EXPECT_EQ(site.logins(), 1);
}

TEST_F(FilestoreResolverTest, AStopEndsTheRequestUnderWay)
{
    const std::string url = add();
    site.pages().serve("/f1",
                       {.content = "<p>", .contentType = "text/html", .answers = {Answer::file().stallAfter(2)}});
    const WalkPtr walk = start(QString::fromStdString(url));
    ASSERT_TRUE(fixtures::waitUntil([this] { return site.pages().waitForStalled(1, {}); }));
    walk->stop.request_stop();
    ASSERT_TRUE(fixtures::waitUntil([&walk] { return walk->isOver(); }));
    EXPECT_TRUE(walk->error);
    EXPECT_TRUE(fixtures::waitUntil([this] { return !site.pages().waitForStalled(1, {}); }));
    EXPECT_THAT(keptCookies(), IsEmpty());
}

TEST_F(FilestoreResolverTest, OnlyTheServicesCookiesAreKept)
{
    const std::string url = add();
    site.pages().serve("/f1", {.answers = {Answer::redirect(302, "https://files.filestore.example/x")
                                               .withCookie("other=1")
                                               .withCookie("foreign=1; Domain=cdn.example")}});
    ASSERT_TRUE(resolve(url)->found);
    QByteArrayList names;
    for (const QByteArray& cookie : keptCookies())
        names.append(cookie.split('\t').at(5));
    EXPECT_THAT(names, testing::UnorderedElementsAre("xfss", "other"));
}

} // namespace
} // namespace vormel
