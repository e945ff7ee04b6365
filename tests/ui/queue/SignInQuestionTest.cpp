#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "ui/FakeDesktop.h"
#include "ui/Part.h"
#include "ui/queue/DownloadQueueView.h"
#include "ui/sheets/AddURLView.h"
#include "ui/sheets/signin/TerabytezLoginSheetView.h"

#include <QPushButton>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::account;
using fixtures::turnEventLoop;

class SignInQuestionTest : public ::testing::Test
{
protected:
    SignInQuestionTest()
    {
        desktop.web.onPage = [](fixtures::ScriptedPage& made) {
            made.onScript = [](const QString& /*script*/) -> std::optional<QVariant> { return u"my username"_s; };
        };
        engine.manager().accounts().set({off, anna, account(SupportedHost::terabytez, u"bert"_s)});
        engine.secrets.kept.insert(keychainAccountKey(anna, HostProfiles()), u"s3cret"_s);
        page.show();
    }
    /// Starts an item, and has its host want a sign-in.
    ItemPtr ask()
    {
        const ItemPtr item = engine.add(u"https://terabytez.example/x/%1.bin"_s.arg(engine.manager().items().size()));
        engine.manager().commands().startItems({item});
        turnEventLoop();
        wantSignIn();
        turnEventLoop();
        return item;
    }
    void wantSignIn()
    {
        log->resolves.back().answer->deliver(fixtures::loginRequired(SupportedHost::terabytez));
        turnEventLoop();
    }
    [[nodiscard]] QList<TerabytezLoginSheetView*> sheets() const
    {
        return page.findChildren<TerabytezLoginSheetView*>();
    }
    void press(const char* button)
    {
        fixtures::partOf<QPushButton>(*sheets().at(0), button).click();
        turnEventLoop();
    }
    [[nodiscard]] fixtures::ScriptedPage& shown() const { return *desktop.web.pages.at(0); }
    /// What its fields were filled with.
    [[nodiscard]] QString filled() const
    {
        shown().arrivesAt(u"https://terabytez.example/login"_s);
        return shown().scripts.value(0);
    }

    HostAccount off{QUuid::createUuid(), SupportedHost::terabytez, u"off"_s, false};
    HostAccount anna = account(SupportedHost::terabytez, u"anna"_s);
    std::shared_ptr<fixtures::ServiceLog> log = std::make_shared<fixtures::ServiceLog>();
    fixtures::EngineOnScript engine{fixtures::fakeServices(log)};
    fixtures::FakeDesktop desktop{engine};
    DownloadQueueView page{desktop.ports()};
};

TEST_F(SignInQuestionTest, OpensOnceWithTheFirstAccountThatIsUsed)
{
    ask();
    ask();
    ASSERT_EQ(sheets().size(), 1);
    EXPECT_EQ(filled(), fillScript({u"anna"_s, u"s3cret"_s}));
}

TEST_F(SignInQuestionTest, LetsAllItemsGoOnThatWaited)
{
    engine.settings().maxConcurrentDownloads.set(2);
    const ItemPtr one = ask();
    const ItemPtr other = ask();
    shown().arrivesAt(u"https://terabytez.example/account/"_s);
    press("signInDone");
    EXPECT_TRUE(sheets().isEmpty());
    EXPECT_EQ(engine.manager().questions().pendingLogin(), std::nullopt);
    EXPECT_EQ(one->status(), DownloadStatus::resolving);
    EXPECT_EQ(other->status(), DownloadStatus::resolving);
}

TEST_F(SignInQuestionTest, CountsAsSignedInAlsoWhereTheAccountCannotBeRead)
{
    const ItemPtr item = ask();
    shown().onScript = [](const QString& /*script*/) -> std::optional<QVariant> { return u"home"_s; };
    press("signInDone");
    engine.clock.advance(std::chrono::seconds(8));
    turnEventLoop();
    EXPECT_TRUE(sheets().isEmpty());
    EXPECT_EQ(item->status(), DownloadStatus::resolving);
    wantSignIn(); // at once
    EXPECT_TRUE(sheets().isEmpty());
    EXPECT_EQ(item->status(),
              DownloadStatus::failure(fixtures::loginRequired(SupportedHost::terabytez).errorDescription()));
}

TEST_F(SignInQuestionTest, FailsTheItemsWhenItIsCancelled)
{
    const ItemPtr item = ask();
    press("cancelSignIn");
    EXPECT_TRUE(sheets().isEmpty());
    EXPECT_EQ(item->status(), DownloadStatus::failure(u"Authentication failed"_s));
    EXPECT_EQ(engine.manager().questions().pendingLogin(), std::nullopt);
}

TEST_F(SignInQuestionTest, FailsTheItemsWhenItIsCancelledWhileItReadsTheAccount)
{
    const ItemPtr item = ask();
    press("signInDone");
    press("cancelSignIn");
    engine.clock.advance(std::chrono::seconds(10));
    EXPECT_EQ(item->status(), DownloadStatus::failure(u"Authentication failed"_s));
}

TEST_F(SignInQuestionTest, StaysOpenWhenTheRowOfTheItemGoes)
{
    const ItemPtr item = ask();
    engine.manager().commands().removeItems({item->id()});
    turnEventLoop();
    ASSERT_EQ(sheets().size(), 1);
    press("cancelSignIn");
    EXPECT_EQ(engine.manager().questions().pendingLogin(), std::nullopt);
}

TEST_F(SignInQuestionTest, ClosesWhenTheQuestionIsTakenBack)
{
    ask();
    engine.manager().questions().loginSucceeded();
    turnEventLoop();
    EXPECT_TRUE(sheets().isEmpty());
    EXPECT_TRUE(desktop.web.pages.empty());
}

TEST_F(SignInQuestionTest, WaitsBehindAnotherSheet)
{
    page.showAddURLs();
    ask();
    EXPECT_TRUE(sheets().isEmpty());
    page.findChild<AddURLView*>()->reject();
    turnEventLoop();
    EXPECT_EQ(sheets().size(), 1);
}

TEST_F(SignInQuestionTest, WaitsForNoKeyring)
{
    engine.secrets.lock();
    ask();
    EXPECT_EQ(sheets().size(), 1);
}

TEST_F(SignInQuestionTest, FillsInWhatALockedKeyringGivesLater)
{
    ask();
    press("cancelSignIn");
    desktop.web.onPage = [](fixtures::ScriptedPage& made) {
        made.shownUrl = fixtures::link(u"https://terabytez.example/login"_s);
        made.onScript = [](const QString& /*script*/) -> std::optional<QVariant> { return QVariant(); };
    };
    engine.secrets.lock();
    ask();
    EXPECT_TRUE(shown().scripts.isEmpty());
    engine.secrets.unlock();
    EXPECT_EQ(shown().scripts, QStringList{fillScript({u"anna"_s, u"s3cret"_s})});
}

TEST_F(SignInQuestionTest, FillsInNothingForASheetThatHasGone)
{
    engine.secrets.lock();
    ask();
    press("cancelSignIn");
    engine.secrets.unlock();
    EXPECT_TRUE(sheets().isEmpty());
}

TEST_F(SignInQuestionTest, FillsInNothingWithoutAnAccount)
{
    ask();
    press("cancelSignIn");
    engine.manager().accounts().set({off});
    EXPECT_TRUE(
        engine.manager().questions().awaitLogin(ItemId::make(), SupportedHost::terabytez, engine.clock.steadyNow()));
    turnEventLoop();
    ASSERT_EQ(sheets().size(), 1);
    EXPECT_EQ(filled(), u"document.documentElement.innerHTML");
    engine.manager().questions().loginSucceeded();
}

} // namespace
} // namespace vormel
