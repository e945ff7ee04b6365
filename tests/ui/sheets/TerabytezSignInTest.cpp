#include "ui/sheets/signin/TerabytezSignIn.h"

#include "fixtures/ManualClock.h"
#include "fixtures/ScriptedBrowser.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

const QString accountPage = u"<b>My Username</b> <a href=/logout>Logout</a> Premium"_s;
const QString loginPage = u"<form><input name=\"login\"><input name=\"password\"></form>"_s;
const QString loginUrl = u"https://terabytez.example/login"_s;

/// Lets everything pass.
class NoJudge final : public WebPage::Judge
{
public:
    [[nodiscard]] bool mayAsk(const WebPage::Request& /*request*/) override { return true; }
    [[nodiscard]] bool mayShow(const WebPage::Response& /*response*/) override { return true; }
    void windowWanted(const Link& /*url*/) override {}
    void navigationEnded(WebPage::End /*end*/) override {}
};

class TerabytezSignInTest : public ::testing::Test
{
protected:
    TerabytezSignInTest()
    {
        page->onScript = [this](const QString& script) -> std::optional<QVariant> {
            return script.startsWith(u"(function") ? QVariant() : html;
        };
        QObject::connect(signIn.get(), &TerabytezSignIn::loadRequested,
                         [this](const Link& url) { loads << url.absoluteString(); });
        QObject::connect(signIn.get(), &TerabytezSignIn::loggedIn,
                         [this](const std::optional<PremiumAccountInfo>& info) { ends.push_back(info); });
    }
    ~TerabytezSignInTest() override
    {
        signIn.reset();
        page.reset();
    }
    /// Has the page show that, and its navigation end.
    void show(const QVariant& text, const QString& url = loginUrl)
    {
        html = text;
        page->shownUrl = Link::parse(url).value();
        signIn->navigationOver(WebPage::End::loaded);
    }
    void begin(const Credentials& credentials = {u"anna"_s, u"s3cret"_s})
    {
        signIn->setCredentials(credentials);
        signIn->usePage(*page);
    }
    [[nodiscard]] qsizetype fills() const
    {
        return std::count_if(page->scripts.begin(), page->scripts.end(),
                             [](const QString& script) { return script.startsWith(u"(function"); });
    }
    [[nodiscard]] qsizetype readings() const { return page->scripts.size() - fills(); }

    fixtures::ManualClock clock;
    NoJudge judge;
    std::optional<QVariant> html = loginPage;
    std::unique_ptr<fixtures::ScriptedPage> page =
        std::make_unique<fixtures::ScriptedPage>(judge, [](fixtures::ScriptedPage* /*gone*/) {});
    std::unique_ptr<TerabytezSignIn> signIn =
        std::make_unique<TerabytezSignIn>(TerabytezSite{u"terabytez.example"_s}, clock, nullptr);
    QStringList loads;
    std::vector<std::optional<PremiumAccountInfo>> ends;
};

TEST_F(TerabytezSignInTest, BeginsAtTheFormWhenThereIsAPage)
{
    EXPECT_FALSE(signIn->canBeDone());
    signIn->done();
    EXPECT_FALSE(signIn->isLoading());
    begin();
    EXPECT_EQ(loads, QStringList{loginUrl});
    EXPECT_TRUE(signIn->canBeDone());
}

TEST_F(TerabytezSignInTest, FillsInWhatIsStoredAndThenReadsThePage)
{
    begin({u"an'na"_s, u"s3\\cret"_s});
    EXPECT_EQ(fills(), 0); // nothing is shown yet
    show(loginPage);
    EXPECT_EQ(page->scripts,
              (QStringList{fillScript({u"an'na"_s, u"s3\\cret"_s}), u"document.documentElement.innerHTML"_s}));
    EXPECT_FALSE(signIn->isLoggedIn());
    show(loginPage);
    EXPECT_EQ(fills(), 2);
}

TEST_F(TerabytezSignInTest, RunsNoScriptWithNothingToFillIn)
{
    begin({});
    show(loginPage);
    EXPECT_EQ(fills(), 0);
    EXPECT_EQ(readings(), 1);
}

TEST_F(TerabytezSignInTest, FillsInWhatComesLater)
{
    begin({});
    show(loginPage);
    signIn->setCredentials({u"anna"_s, QString()});
    EXPECT_EQ(page->scripts.back(), fillScript({u"anna"_s, QString()}));
}

TEST_F(TerabytezSignInTest, FillsInOnItsOwnHostsOnly)
{
    begin();
    for (const QString& stranger :
         {u"https://terabytez.example.evil.example/login"_s, u"https://evil-terabytez.example/login"_s,
          u"https://evil.example/terabytez.example"_s, u"https://terabytez.example@evil.example/login"_s,
          u"https://terabytez.other/login"_s, u"http://terabytez.example/login"_s}) {
        show(loginPage, stranger);
        EXPECT_EQ(fills(), 0) << qPrintable(stranger);
    }
    show(loginPage, u"https://www.Terabytez.Example/login"_s);
    EXPECT_EQ(fills(), 1);
}

TEST_F(TerabytezSignInTest, FillsInOverAVerifiedConnectionOnly)
{
    begin();
    page->shownConnection = WebPage::Connection::unprotected;
    show(loginPage);
    EXPECT_EQ(fills(), 0);
    EXPECT_EQ(readings(), 1);
}

TEST_F(TerabytezSignInTest, LeavesPagesAloneThatDidNotCome)
{
    begin();
    page->shownUrl = Link::parse(loginUrl);
    signIn->navigationOver(WebPage::End::failed);
    EXPECT_TRUE(page->scripts.isEmpty());
}

TEST_F(TerabytezSignInTest, SeesThatTheUserIsSignedIn)
{
    begin();
    show(u"<a>LOGOUT</a> <input NAME=\"Password\">"_s);
    EXPECT_FALSE(signIn->isLoggedIn());
    show(u"<a>LogOut</a>"_s);
    EXPECT_TRUE(signIn->isLoggedIn());
    EXPECT_FALSE(signIn->accountHTML());
}

TEST_F(TerabytezSignInTest, KeepsTheAccountPageAsItWas)
{
    begin();
    show(accountPage);
    EXPECT_EQ(signIn->accountHTML(), accountPage);
}

TEST_F(TerabytezSignInTest, TakesNothingBackForALaterPage)
{
    begin();
    show(accountPage);
    show(loginPage);
    EXPECT_TRUE(signIn->isLoggedIn());
    EXPECT_EQ(signIn->accountHTML(), accountPage);
}

TEST_F(TerabytezSignInTest, DropsAnswersThatAreNoText)
{
    begin();
    show(QVariant());
    show(QVariant(7));
    EXPECT_FALSE(signIn->isLoggedIn());
    EXPECT_FALSE(signIn->accountHTML());
}

TEST_F(TerabytezSignInTest, IsDoneAtOnceWithTheAccountPageInSight)
{
    begin();
    show(accountPage);
    signIn->done();
    ASSERT_EQ(ends.size(), 1U);
    ASSERT_TRUE(ends[0]);
    EXPECT_EQ(loads.size(), 1); // the form alone
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(TerabytezSignInTest, GoesToTheAccountPageByItselfAndReadsItThere)
{
    begin();
    show(loginPage);
    signIn->done();
    EXPECT_TRUE(signIn->isLoading());
    EXPECT_FALSE(signIn->canBeDone());
    signIn->done(); // changes nothing
    EXPECT_EQ(loads, (QStringList{loginUrl, u"https://terabytez.example/account/"_s}));
    clock.advance(std::chrono::milliseconds(1600));
    EXPECT_TRUE(ends.empty());
    html = accountPage;
    clock.advance(std::chrono::milliseconds(399));
    EXPECT_TRUE(ends.empty());
    clock.advance(std::chrono::milliseconds(1));
    ASSERT_EQ(ends.size(), 1U);
    EXPECT_TRUE(ends[0]);
    clock.advance(std::chrono::seconds(10));
    EXPECT_EQ(ends.size(), 1U);
}

TEST_F(TerabytezSignInTest, GivesUpAfterSixteenTriesOfHalfASecond)
{
    begin();
    html = loginPage;
    signIn->done();
    clock.advance(std::chrono::milliseconds(7999));
    EXPECT_EQ(readings(), 15);
    EXPECT_TRUE(ends.empty());
    clock.advance(std::chrono::milliseconds(1));
    EXPECT_EQ(readings(), 16);
    ASSERT_EQ(ends.size(), 1U);
    EXPECT_FALSE(ends[0]);
    EXPECT_EQ(clock.pendingTimers(), 0);
}

TEST_F(TerabytezSignInTest, CountsAnAnswerThatIsNoTextAsATry)
{
    begin();
    html = QVariant();
    signIn->done();
    clock.advance(std::chrono::seconds(8));
    ASSERT_EQ(ends.size(), 1U);
    EXPECT_FALSE(ends[0]);
}

TEST_F(TerabytezSignInTest, TriesAgainBehindAnAnswerOnly)
{
    begin();
    html.reset(); // an endless page
    signIn->done();
    clock.advance(std::chrono::seconds(60));
    EXPECT_EQ(readings(), 1); // the next try comes behind the answer
    EXPECT_TRUE(ends.empty());
}

TEST_F(TerabytezSignInTest, ComesToNothingWhenItGoesWhileItIsDone)
{
    begin();
    signIn->done();
    clock.advance(std::chrono::milliseconds(400));
    signIn.reset();
    EXPECT_EQ(clock.pendingTimers(), 0);
    clock.advance(std::chrono::seconds(10));
    EXPECT_TRUE(ends.empty());
}

TEST_F(TerabytezSignInTest, ComesToNothingWhenItGoesWhileThePageIsRead)
{
    begin();
    html.reset();
    signIn->done();
    clock.advance(std::chrono::milliseconds(500));
    ASSERT_EQ(readings(), 1);
    signIn.reset();
    page.reset(); // answers all that was asked
    EXPECT_TRUE(ends.empty());
    EXPECT_EQ(clock.pendingTimers(), 0);
}

} // namespace
} // namespace vormel
