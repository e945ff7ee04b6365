#include "ui/sheets/signin/PageSignInSheet.h"

#include "fixtures/EventLoop.h"
#include "platform/async/Spawn.h"
#include "ui/Part.h"
#include "ui/sheets/SignInSheetPorts.h"

#include <QPushButton>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class PageSignInSheetTest : public ::testing::Test
{
protected:
    PageSignInSheetTest()
    {
        desktop.web.onPage = [](fixtures::ScriptedPage& page) {
            page.onScript = [](const QString& /*script*/) -> std::optional<QVariant> { return u"my username"_s; };
        };
        window->show();
    }
    void ask(QWidget* above)
    {
        spawn(noteAnswer(SignInRequest{SupportedHost::terabytez, u"anna"_s, u"s3cret"_s, above}));
        fixtures::turnEventLoop();
    }
    QCoro::Task<> noteAnswer(SignInRequest request)
    {
        const SignInAnswer answer = co_await sheets.open(request, stop.get_token());
        answers.push_back(answer);
    }
    [[nodiscard]] QList<TerabytezLoginSheetView*> open() const
    {
        return window->findChildren<TerabytezLoginSheetView*>();
    }
    [[nodiscard]] static QPushButton& button(TerabytezLoginSheetView* sheet, const char* name)
    {
        return fixtures::partOf<QPushButton>(*sheet, name);
    }

    fixtures::EngineOnScript engine;
    fixtures::FakeDesktop desktop{engine};
    PageSignInSheet sheets{fixtures::signInPorts(desktop)};
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    std::stop_source stop;
    std::vector<SignInAnswer> answers;
};

TEST_F(PageSignInSheetTest, AnswersWithTheAccountThatWasRead)
{
    ask(window.get());
    ASSERT_EQ(open().size(), 1);
    desktop.web.pages.at(0)->arrivesAt(u"https://terabytez.example/login"_s);
    EXPECT_EQ(desktop.web.pages[0]->scripts.value(0), fillScript({u"anna"_s, u"s3cret"_s}));
    button(open()[0], "signInDone").click();
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_TRUE(answers[0].isSignedIn);
    EXPECT_TRUE(answers[0].info);
    fixtures::turnEventLoop();
    EXPECT_TRUE(open().isEmpty());
    EXPECT_TRUE(desktop.web.pages.empty());
}

TEST_F(PageSignInSheetTest, AnswersThatItWasCancelled)
{
    ask(window.get());
    button(open().at(0), "cancelSignIn").click();
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_FALSE(answers[0].isSignedIn);
}

TEST_F(PageSignInSheetTest, IsClosedByAStop)
{
    ask(window.get());
    button(open().at(0), "signInDone").click();
    stop.request_stop();
    fixtures::turnEventLoop();
    EXPECT_TRUE(open().isEmpty());
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_FALSE(answers[0].isSignedIn);
    engine.clock.advance(std::chrono::seconds(10));
    EXPECT_EQ(answers.size(), 1U);
}

TEST_F(PageSignInSheetTest, IsCancelledWhereItsParentGoes)
{
    ask(window.get());
    window.reset();
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_FALSE(answers[0].isSignedIn);
}

TEST_F(PageSignInSheetTest, DoesNotOpenForWhoHasGoneOrWasStopped)
{
    ask(nullptr);
    stop.request_stop();
    ask(window.get());
    EXPECT_TRUE(open().isEmpty());
    EXPECT_EQ(answers.size(), 2U);
}

TEST_F(PageSignInSheetTest, OpensASecondBesideTheFirstAndEndsEachByItself)
{
    QWidget one(window.get());
    QWidget other(window.get());
    ask(&one);
    ask(&other);
    ASSERT_EQ(open().size(), 2);
    fixtures::partOf<QPushButton>(other, "cancelSignIn").click();
    fixtures::turnEventLoop();
    EXPECT_EQ(answers.size(), 1U);
    EXPECT_EQ(open().size(), 1);
    EXPECT_EQ(desktop.web.pages.size(), 1U);
    stop.request_stop();
    EXPECT_EQ(answers.size(), 2U);
}

} // namespace
} // namespace vormel
