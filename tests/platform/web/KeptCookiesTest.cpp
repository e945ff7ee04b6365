#include "platform/web/KeptCookies.h"

#include "fixtures/EventLoop.h"
#include "fixtures/FakeSecrets.h"
#include "fixtures/ScriptedBrowser.h"
#include "platform/async/Spawn.h"
#include "platform/http/CookieStore.h"

#include <gtest/gtest.h>

using namespace vormel;
using namespace Qt::StringLiterals;

namespace {

const QString cookiesKey = u"vormel_web_cookies"_s;
const QByteArray sessionLine = ".files.example\tTRUE\t/\tFALSE\t0\tsession\tabc";
const QByteArray httpOnlyLine = "#HttpOnly_files.example\tFALSE\t/\tTRUE\t4102444800\tlogin\tdef";
const QByteArray strangerLine = "other.example\tFALSE\t/\tFALSE\t0\tsession\txyz";

class KeptCookiesTest : public testing::Test
{
protected:
    KeptCookiesTest() { makeKept(); }

    void makeKept() { makeKeptOf(browser); }
    void makeKeptOf(WebBrowser& which)
    {
        m_kept =
            std::make_unique<KeptCookies>(KeptCookies::Ports{which, secrets, transfers},
                                          [](const QByteArray& domain) { return domain.endsWith("files.example"); });
    }
    void endKept() { m_kept.reset(); }
    /// True once the task has ended.
    std::shared_ptr<bool> restore() { return ended(m_kept->restore()); }
    std::shared_ptr<bool> forget() { return ended(m_kept->forget()); }

    fixtures::ScriptedBrowser browser;
    fixtures::FakeSecrets secrets;
    CookieStore transfers;

private:
    static std::shared_ptr<bool> ended(QCoro::Task<> task)
    {
        auto mark = std::make_shared<bool>(false);
        spawn(noting(std::move(task), mark));
        fixtures::turnEventLoop();
        return mark;
    }
    static QCoro::Task<> noting(QCoro::Task<> task, std::shared_ptr<bool> mark)
    {
        co_await task;
        *mark = true;
    }

    std::unique_ptr<KeptCookies> m_kept;
};

TEST_F(KeptCookiesTest, WhatWasKeptIsInTheBrowserAndWithTheTransfers)
{
    secrets.kept[cookiesKey] = QString::fromUtf8(httpOnlyLine + '\n' + sessionLine);
    EXPECT_TRUE(*restore());
    EXPECT_EQ(browser.jar, (QByteArrayList{httpOnlyLine, sessionLine}));
    EXPECT_EQ(transfers.cookies().size(), 2);
}

TEST_F(KeptCookiesTest, TheSecretStoreIsAskedForNothingBeforeSomebodyNeedsIt)
{
    secrets.kept[cookiesKey] = QString::fromUtf8(sessionLine);
    EXPECT_TRUE(browser.jar.isEmpty());
    browser.setCookies({httpOnlyLine});
    EXPECT_EQ(secrets.kept[cookiesKey], QString::fromUtf8(sessionLine));
}

TEST_F(KeptCookiesTest, WhatIsRestoredOnceIsNotRestoredAgain)
{
    secrets.kept[cookiesKey] = QString::fromUtf8(sessionLine);
    EXPECT_TRUE(*restore());
    browser.jar.clear();
    EXPECT_TRUE(*restore());
    EXPECT_TRUE(browser.jar.isEmpty());
}

TEST_F(KeptCookiesTest, AllWhoWaitForALockedStoreGoOnTogether)
{
    secrets.kept[cookiesKey] = QString::fromUtf8(sessionLine);
    secrets.lock();
    const auto first = restore();
    const auto second = restore();
    EXPECT_FALSE(*first);
    EXPECT_FALSE(*second);
    secrets.unlock();
    EXPECT_TRUE(*first);
    EXPECT_TRUE(*second);
    EXPECT_EQ(browser.jar, QByteArrayList{sessionLine});
}

TEST_F(KeptCookiesTest, WhoWaitsGoesOnWhenTheProgramEnds)
{
    secrets.kept[cookiesKey] = QString::fromUtf8(sessionLine);
    secrets.lock();
    const auto waiting = restore();
    endKept();
    EXPECT_TRUE(*waiting);
    secrets.unlock();
    EXPECT_TRUE(browser.jar.isEmpty());
}

TEST_F(KeptCookiesTest, ASignInIsKeptAtOnceAndNothingOfOtherSites)
{
    EXPECT_TRUE(*restore());
    browser.setCookies({sessionLine, strangerLine, httpOnlyLine});
    EXPECT_EQ(secrets.kept.value(cookiesKey), QString::fromUtf8(httpOnlyLine + '\n' + sessionLine));
}

TEST_F(KeptCookiesTest, AChangeThatConcernsOtherSitesIsNotSaved)
{
    secrets.kept[cookiesKey] = QString::fromUtf8(sessionLine);
    EXPECT_TRUE(*restore());
    secrets.kept[cookiesKey] = u"not written over"_s;
    browser.setCookies({strangerLine, sessionLine});
    EXPECT_EQ(secrets.kept.value(cookiesKey), u"not written over"_s);
}

TEST_F(KeptCookiesTest, ALogoutOnTheSiteLeavesNothingInTheStore)
{
    secrets.kept[cookiesKey] = QString::fromUtf8(sessionLine);
    EXPECT_TRUE(*restore());
    browser.setCookies({strangerLine});
    EXPECT_FALSE(secrets.kept.contains(cookiesKey));
}

TEST_F(KeptCookiesTest, OfChangesDuringASlowSaveTheLastOneIsKept)
{
    EXPECT_TRUE(*restore());
    secrets.lock();
    browser.setCookies({sessionLine});
    browser.setCookies({sessionLine, httpOnlyLine});
    browser.setCookies({httpOnlyLine});
    EXPECT_FALSE(secrets.kept.contains(cookiesKey));
    secrets.unlock();
    fixtures::turnEventLoop();
    EXPECT_EQ(secrets.kept.value(cookiesKey), QString::fromUtf8(httpOnlyLine));
}

TEST_F(KeptCookiesTest, SigningOutLeavesNothingAnywhereButOtherSites)
{
    secrets.kept[cookiesKey] = QString::fromUtf8(sessionLine + '\n' + httpOnlyLine);
    EXPECT_TRUE(*restore());
    browser.setCookies(browser.jar + QByteArrayList{strangerLine});
    transfers.add(strangerLine);
    EXPECT_TRUE(*forget());
    EXPECT_EQ(browser.jar, QByteArrayList{strangerLine});
    EXPECT_EQ(transfers.cookies(), QByteArrayList{strangerLine});
    EXPECT_FALSE(secrets.kept.contains(cookiesKey));
}

TEST_F(KeptCookiesTest, SigningOutAtTheStartForgetsWhatWasNeverRestored)
{
    secrets.kept[cookiesKey] = QString::fromUtf8(sessionLine);
    EXPECT_TRUE(*forget());
    EXPECT_FALSE(secrets.kept.contains(cookiesKey));
    EXPECT_TRUE(*restore());
    EXPECT_TRUE(browser.jar.isEmpty());
}

TEST_F(KeptCookiesTest, SigningOutWithoutABrowserForgetsWhatIsStored)
{
    NoWebBrowser none;
    makeKeptOf(none);
    secrets.kept[cookiesKey] = QString::fromUtf8(sessionLine);
    EXPECT_TRUE(*forget());
    EXPECT_FALSE(secrets.kept.contains(cookiesKey));
    EXPECT_TRUE(transfers.cookies().isEmpty());
    endKept();
}

TEST_F(KeptCookiesTest, SigningOutDuringASaveHasTheLastWord)
{
    EXPECT_TRUE(*restore());
    secrets.lock();
    browser.setCookies({sessionLine});
    const auto forgotten = forget();
    secrets.unlock();
    fixtures::turnEventLoop();
    EXPECT_TRUE(*forgotten);
    EXPECT_FALSE(secrets.kept.contains(cookiesKey));
}

TEST_F(KeptCookiesTest, TextThatIsNoCookieDoesNothing)
{
    secrets.kept[cookiesKey] = u"ALL\nfiles.example\n\nfiles.example\tFALSE\t/\n"_s;
    transfers.add(strangerLine);
    EXPECT_TRUE(*restore());
    EXPECT_TRUE(browser.jar.isEmpty());
    EXPECT_EQ(transfers.cookies(), QByteArrayList{strangerLine});
}

} // namespace
