#include "sites/services/TerabytezSite.h"

#include "CurlClient.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace vormel::sites {
namespace {

using namespace std::chrono_literals;
using Shape = TerabytezSite::Shape;
using testing::HasSubstr;
using testing::Not;

class TerabytezSiteTest : public testing::Test
{
protected:
    TerabytezSiteTest()
    {
        m_site.addAccount("ann", "se cret");
        prepare(m_client);
    }

    void prepare(CurlClient& client)
    {
        client.trust(m_certificates.writeAuthority(m_folder.path()));
        client.connectTo(m_site.connectTo());
        client.keepCookies();
    }
    [[nodiscard]] Fetched fetch(const std::string& path)
    {
        return m_client.fetch(path.starts_with('/') ? "https://terabytez.example" + path : path);
    }
    [[nodiscard]] Fetched post(const std::string& path, const std::string& fields)
    {
        m_client.post(fields);
        return fetch(path);
    }
    Fetched signIn() { return post("/login", "op=login&redirect=&login=ann&password=se+cret"); }
    [[nodiscard]] std::string newFile(Shape shape) { return m_site.addFile("film.rar", shape, m_film); }
    [[nodiscard]] Fetched sendForm(const std::string& page)
    {
        EXPECT_THAT(fetch(page).body, AllOf(HasSubstr("<h1>film.rar</h1>"), HasSubstr("<form name=\"F1\"")));
        return post(page, "op=download2&id=t1");
    }

    TemporaryFolder m_folder;
    TestCertificates m_certificates;
    TerabytezSite m_site{m_certificates};
    const std::string m_film = "the bytes of the film";
    CurlClient m_client;
};

TEST_F(TerabytezSiteTest, SignsInWithItsFormAlone)
{
    EXPECT_THAT(fetch("/login").body, AllOf(HasSubstr("name=\"login\""), HasSubstr("name=\"password\"")));
    EXPECT_THAT(fetch("/").body, AllOf(HasSubstr("name=\"password\""), Not(HasSubstr("logout"))));
    EXPECT_THAT(post("/login", "login=ann&password=other").body, HasSubstr("Incorrect Login or Password"));
    EXPECT_EQ(m_site.signIns(), 0);

    const Fetched answer = signIn();
    EXPECT_EQ(answer.status, 302);
    EXPECT_THAT(
        answer.header("Set-Cookie").value_or(""),
        AllOf(HasSubstr("; Secure; HttpOnly"), HasSubstr("Max-Age=2592000"), HasSubstr("Domain=terabytez.example")));
    EXPECT_THAT(fetch("/").body,
                AllOf(HasSubstr("/logout"), HasSubstr("<a href=\"/account/\""), Not(HasSubstr("name=\"password\""))));
    EXPECT_EQ(m_site.signIns(), 1);
}

TEST_F(TerabytezSiteTest, TakesNoFormWhoseChallengeWasNotClicked)
{
    m_site.setChallenge(true);
    EXPECT_THAT(fetch("/login").body, HasSubstr("id=\"challenge\""));
    EXPECT_THAT(signIn().body, HasSubstr("Wrong captcha"));
    EXPECT_EQ(post("/login", "login=ann&password=se+cret&human=h-7").status, 302);
}

TEST_F(TerabytezSiteTest, ShowsTheAccountToMembersUntilTheySignOut)
{
    EXPECT_EQ(fetch("/account/").header("Location"), "/login");
    signIn();
    EXPECT_THAT(fetch("/account/").body, HasSubstr("Premium account expire"));
    m_site.setAccountPage("<p>My username: ann</p>");
    EXPECT_THAT(fetch("/account").body, HasSubstr("My username"));
    EXPECT_THAT(fetch("/logout").header("Set-Cookie").value_or(""), HasSubstr("Max-Age=-1"));
    EXPECT_EQ(fetch("/account/").header("Location"), "/login");
    EXPECT_EQ(m_site.requests().back().header("Cookie"), std::nullopt) << "the client has dropped it";
    m_client.setHeader("Cookie: xfst=s1");
    EXPECT_EQ(fetch("/account/").header("Location"), "/login") << "and it is worth nothing any more";
}

TEST_F(TerabytezSiteTest, GivesAFileToWhoeverHasTheCookie)
{
    signIn();
    const std::string address = sendForm(newFile(Shape::redirect)).header("Location").value_or("");
    EXPECT_EQ(address, "https://srv1.terabytez.example/t1/film.rar");
    EXPECT_TRUE(m_site.fileRequests().empty());
    EXPECT_EQ(fetch(address).body, m_film);
    EXPECT_EQ(m_site.formsSentTo("https://terabytez.example/t1/film.rar.html"), 1);

    CurlClient stranger;
    prepare(stranger);
    stranger.setHeader("User-Agent: stranger");
    EXPECT_EQ(stranger.fetch(address).status, 403);
    ASSERT_EQ(m_site.fileRequests().size(), 2U);
    EXPECT_EQ(m_site.fileRequests().front().header("Cookie"), "xfst=s1");
    EXPECT_EQ(m_site.fileRequests().back().header("User-Agent"), "stranger");
    m_site.signEverybodyOut();
    EXPECT_EQ(fetch(address).status, 403);
}

TEST_F(TerabytezSiteTest, SignsAMemberInWithoutTheForm)
{
    m_client.setHeader("Cookie: " + m_site.signIn("ann", "se cret"));
    EXPECT_THAT(fetch("/").body, HasSubstr("/logout"));
    EXPECT_THROW(m_site.signIn("ann", "other"), std::invalid_argument);
}

TEST_F(TerabytezSiteTest, KeepsACookieOfItsHostAloneFromTheFileServer)
{
    m_site.setSessionCookie({.isForSubdomains = false, .lifetime = TerabytezSite::untilBrowserEnds});
    const std::string cookie = signIn().header("Set-Cookie").value_or("");
    EXPECT_EQ(cookie, "xfst=s1; Path=/; Secure; HttpOnly");
    const std::string address = sendForm(newFile(Shape::redirect)).header("Location").value_or("");
    EXPECT_EQ(fetch(address).status, 403);
}

TEST_F(TerabytezSiteTest, LeadsWhoeverIsSignedOutToTheForm)
{
    const std::string page = newFile(Shape::redirect);
    EXPECT_EQ(fetch(page).header("Location"), "/login");
    signIn();
    EXPECT_EQ(fetch(page).status, 200);
    m_site.signEverybodyOut();
    EXPECT_EQ(post(page, "op=download2&id=t1").header("Location"), "/login");
}

TEST_F(TerabytezSiteTest, AnswersTheFormInTheWayOfTheFile)
{
    signIn();
    const auto answerTo = [this](Shape shape) {
        const std::string page = newFile(shape);
        const std::size_t id = page.find("/t", page.find("://") + 3) + 1;
        return post(page, "op=download2&id=" + page.substr(id, page.rfind('/') - id));
    };
    const std::string address = "https://srv1.terabytez.example/";
    EXPECT_EQ(answerTo(Shape::redirectToFilesHost).header("Location"), "https://files.terabytez.example/t1/film.rar");
    const std::string onSite = answerTo(Shape::redirectOnSite).header("Location").value_or("");
    EXPECT_EQ(onSite, "https://terabytez.example/get/t2");
    EXPECT_EQ(fetch(onSite).header("Content-Disposition"), "attachment; filename=\"film.rar\"");
    const Fetched attachment = answerTo(Shape::attachmentHere);
    EXPECT_EQ(attachment.body, m_film);
    EXPECT_EQ(attachment.header("Content-Disposition"), "attachment; filename=\"film.rar\"");
    EXPECT_THAT(answerTo(Shape::script).body,
                HasSubstr("location.href = 'https:' + '//srv1.terabytez.example/t4/film.rar'"));
    EXPECT_THAT(answerTo(Shape::countdown).body, HasSubstr("location.href = '" + address + "t5/film.rar'"));
    EXPECT_THAT(answerTo(Shape::link).body, HasSubstr("<a href=\"" + address + "t6/film.rar\">"));
    EXPECT_THAT(answerTo(Shape::newWindow).body, HasSubstr("window.open('https:' + '//srv1.terabytez.example/t7"));
    EXPECT_THAT(answerTo(Shape::nothing).body, AllOf(Not(HasSubstr("href")), Not(HasSubstr("<form"))));
    EXPECT_EQ(answerTo(Shape::missing).status, 404);
    EXPECT_TRUE(m_site.fileRequests().empty());
}

TEST_F(TerabytezSiteTest, GivesAnAttachmentToAFormAndToWhoeverAsksAgain)
{
    signIn();
    const std::string page = newFile(Shape::attachment);
    EXPECT_THAT(fetch(page).body, HasSubstr("action=\"/get/t1\""));
    EXPECT_EQ(post("/get/t1", "op=download2&id=t1").body, m_film);
    EXPECT_EQ(fetch("/get/t1").header("Content-Disposition"), "attachment; filename=\"film.rar\"");
    EXPECT_EQ(m_site.formsSentTo(page), 1);
    EXPECT_EQ(m_site.formsSentTo("/t1/film.rar.html"), 1);
    m_site.signEverybodyOut();
    EXPECT_EQ(post("/get/t1", "op=download2&id=t1").status, 403);
}

TEST_F(TerabytezSiteTest, MayAskForAFormTwice)
{
    signIn();
    const std::string page = newFile(Shape::twoForms);
    EXPECT_THAT(fetch(page).body, Not(HasSubstr("name=\"op\""))) << "whoever sends it adds that";
    EXPECT_THAT(post(page, "op=download2&id=t1").body, HasSubstr("name=\"second\""));
    EXPECT_EQ(post(page, "op=download2&id=t1&second=1").status, 302);
    EXPECT_THAT(post(page, "id=t1&second=1").body, HasSubstr("Wrong form"));
}

TEST_F(TerabytezSiteTest, MayLeadOnBeforeTheForm)
{
    signIn();
    m_site.setCountdown(300ms);
    EXPECT_EQ(fetch(newFile(Shape::pageRedirects)).header("Location"), "https://srv1.terabytez.example/t1/film.rar");
    const std::string waiting = newFile(Shape::countdownBeforeForm);
    EXPECT_THAT(fetch(waiting).body, AllOf(HasSubstr("let left = 3"), Not(HasSubstr("<form"))));
    EXPECT_THAT(fetch(waiting + "?ready").body, HasSubstr("<form name=\"F1\""));
}

TEST_F(TerabytezSiteTest, LeadsFromHttpToHttps)
{
    const std::string page = newFile(Shape::link);
    const Fetched answer = fetch("http" + page.substr(5) + "?ready");
    EXPECT_EQ(answer.status, 301);
    EXPECT_EQ(answer.header("Location"), page + "?ready");
}

TEST_F(TerabytezSiteTest, HasItsTroublesOnCommand)
{
    m_site.setTrouble(Answer::page(503, "later"));
    EXPECT_EQ(fetch("/login").status, 503);
    m_site.setTrouble({});
    m_site.setDelay(50ms);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(fetch("/login").status, 200);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 50ms);
}

} // namespace
} // namespace vormel::sites
