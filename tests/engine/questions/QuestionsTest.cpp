#include "engine/questions/Questions.h"

#include "fixtures/EngineOnScript.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class QuestionsTest : public ::testing::Test
{
protected:
    [[nodiscard]] static PendingCaptcha captcha(const QString& url) { return {ItemId::make(), link(url), {}}; }
    [[nodiscard]] static PendingExtractionPassword password(const ItemId& id, bool wasWrong = false)
    {
        return {id, u"film"_s, wasWrong};
    }

    /// How often the signal comes from now on.
    template <typename... Arguments>
    [[nodiscard]] std::shared_ptr<int> countOf(void (Questions::*signal)(Arguments...))
    {
        auto count = std::make_shared<int>(0);
        QObject::connect(&questions, signal, [count] { ++*count; });
        return count;
    }

    fixtures::ManualClock clock;
    Questions questions{clock};
    std::shared_ptr<int> changes = countOf(&Questions::changed);
};

} // namespace

TEST_F(QuestionsTest, PutsTheCaptchaOfASecondContainerBehindThatOfTheFirst)
{
    const PendingCaptcha first = captcha(u"http://c/1"_s);
    const PendingCaptcha second = captcha(u"http://c/2"_s);
    questions.ask(first);
    questions.ask(second);
    EXPECT_EQ(questions.pendingCaptcha(), first);
    std::vector<Link> links;
    QObject::connect(&questions, &Questions::captchaSolved,
                     [&](const PendingCaptcha& question, const std::vector<Link>& urls) {
                         EXPECT_EQ(question, first);
                         EXPECT_EQ(questions.pendingCaptcha(), second);
                         links = urls;
                     });
    questions.addCaptchaLinks({link(u"http://h/x"_s)});
    EXPECT_EQ(links, std::vector{link(u"http://h/x"_s)});
    const auto cancelled = countOf(&Questions::captchaCancelled);
    questions.cancelCaptcha();
    EXPECT_EQ(*cancelled, 1);
    EXPECT_EQ(questions.pendingCaptcha(), std::nullopt);
    EXPECT_EQ(*changes, 4);
}

TEST_F(QuestionsTest, PutsTheHostsOfASecondContainerBehindThoseOfTheFirst)
{
    const PendingHostSelection first{{}, {link(u"http://a/1"_s)}};
    const PendingHostSelection second{{}, {link(u"http://b/1"_s)}};
    const auto chosen = countOf(&Questions::hostsChosen);
    const auto cancelled = countOf(&Questions::hostsCancelled);
    questions.ask(first);
    questions.ask(second);
    EXPECT_EQ(questions.pendingHostSelection(), first);
    questions.cancelHostSelection();
    EXPECT_EQ(*chosen, 0);
    EXPECT_EQ(questions.pendingHostSelection(), second);
    questions.confirmHostSelection(second.allURLs);
    EXPECT_EQ(*chosen, 1);
    EXPECT_EQ(*cancelled, 1);
    EXPECT_EQ(questions.pendingHostSelection(), std::nullopt);
}

TEST_F(QuestionsTest, AsksForThePasswordOfAnArchiveOnceAtATime)
{
    const ItemId id = ItemId::make();
    questions.ask(password(id));
    questions.ask(password(id, true));
    EXPECT_EQ(questions.pendingExtractionPassword(), password(id));
    const auto given = countOf(&Questions::extractionPasswordGiven);
    questions.submitExtractionPassword(u"secret"_s);
    EXPECT_EQ(*given, 1);
    EXPECT_EQ(questions.pendingExtractionPassword(), std::nullopt);
    EXPECT_EQ(*changes, 2);
}

TEST_F(QuestionsTest, ForgetTheArchivesWhoseRowsAreGone)
{
    const ItemId first = ItemId::make();
    const ItemId second = ItemId::make();
    questions.ask(password(first));
    questions.ask(password(second));
    questions.forget({first});
    EXPECT_EQ(questions.pendingExtractionPassword(), password(second));
    questions.cancelExtractionPassword();
    EXPECT_EQ(questions.pendingExtractionPassword(), std::nullopt);
    const int before = *changes;
    questions.forget({second});
    EXPECT_EQ(*changes, before);
}

TEST_F(QuestionsTest, DoNothingForAnAnswerThatNobodyAskedFor)
{
    questions.addCaptchaLinks({});
    questions.cancelCaptcha();
    questions.confirmHostSelection({});
    questions.cancelHostSelection();
    questions.submitExtractionPassword({});
    questions.cancelExtractionPassword();
    EXPECT_EQ(*changes, 0);
}

TEST_F(QuestionsTest, TellWhoWaitedForACancelledSignIn)
{
    const ItemId first = ItemId::make();
    const ItemId second = ItemId::make();
    EXPECT_TRUE(questions.awaitLogin(first, SupportedHost::filestore, clock.steadyNow()));
    EXPECT_TRUE(questions.awaitLogin(second, SupportedHost::terabytez, clock.steadyNow()));
    EXPECT_EQ(questions.pendingLogin(), SupportedHost::filestore);
    EXPECT_EQ(*changes, 1);
    questions.forgetLogin(second);
    QSet<ItemId> waited;
    QObject::connect(&questions, &Questions::signInCancelled, [&](const QSet<ItemId>& ids) { waited = ids; });
    questions.cancelLogin();
    EXPECT_EQ(waited, QSet{first});
    EXPECT_FALSE(questions.isLoginAwaited(first));
    EXPECT_EQ(questions.pendingLogin(), std::nullopt);
}
