#include "platform/web/PluginBrowser.h"

#include "fixtures/ManualClock.h"
#include "fixtures/Sandbox.h"
#include "fixtures/ScriptedBrowser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class SilentJudge final : public WebPage::Judge
{
public:
    [[nodiscard]] bool mayAsk(const WebPage::Request& /*request*/) override { return true; }
    [[nodiscard]] bool mayShow(const WebPage::Response& /*response*/) override { return true; }
    void windowWanted(const Link& /*url*/) override {}
    void navigationEnded(WebPage::End /*end*/) override {}
};

/// A browser whose plugin comes and goes.
class PluginBrowserTest : public testing::Test
{
protected:
    using Absence = WebBrowser::Absence;

    [[nodiscard]] QString plugin() const { return sandbox.path(u"vormel-web.so"_s); }
    void install() const { ASSERT_TRUE(QFile::copy(QStringLiteral(VORMEL_SCRIPTED_WEB_PLUGIN), plugin())); }
    /// One that says that it needs what nobody has.
    void installWithoutItsLibrary() const
    {
        QFile good(QStringLiteral(VORMEL_SCRIPTED_WEB_PLUGIN));
        ASSERT_TRUE(good.open(QIODevice::ReadOnly));
        QByteArray bytes = good.readAll();
        ASSERT_TRUE(bytes.contains("libresolv.so.2"));
        sandbox.write(u"vormel-web.so"_s, bytes.replace("libresolv.so.2", "libmissin.so.2"));
    }
    void uninstall() const { ASSERT_TRUE(QFile::remove(plugin())); }
    [[nodiscard]] bool hasEngine() const { return sandbox.exists(u"data/web/made"_s); }

    fixtures::Sandbox sandbox;
    fixtures::ManualClock clock;
    SilentJudge judge;
    PluginBrowser browser{{.plugin = plugin(), .profile = sandbox.path(u"data/web"_s)}, clock};
};

const QByteArray lineA = "site.example\tFALSE\t/\tTRUE\t0\ta\t1";
const QByteArray lineB = ".site.example\tTRUE\t/\tTRUE\t0\tb\t2";

TEST_F(PluginBrowserTest, WithoutItsPluginIsNotInstalledAndHasNoPages)
{
    EXPECT_EQ(browser.absence(), Absence::notInstalled);
    EXPECT_FALSE(browser.makePage(judge));
    EXPECT_EQ(browser.absence(), Absence::notInstalled);
    QDir().mkpath(plugin());
    EXPECT_EQ(browser.absence(), Absence::notInstalled) << "a folder is no plugin";
}

TEST_F(PluginBrowserTest, WithoutThePluginsLibrariesIsNotInstalled)
{
    installWithoutItsLibrary();
    EXPECT_EQ(browser.absence(), Absence::notInstalled);
}

TEST_F(PluginBrowserTest, WithABrokenPluginDoesNotStart)
{
    sandbox.write(u"vormel-web.so"_s, "no plugin");
    EXPECT_EQ(browser.absence(), Absence::doesNotStart);
    EXPECT_FALSE(browser.makePage(judge));
    EXPECT_EQ(browser.absence(), Absence::doesNotStart);
}

TEST_F(PluginBrowserTest, FindsAPluginThatIsInstalledLater)
{
    EXPECT_FALSE(browser.makePage(judge));
    install();
    EXPECT_EQ(browser.absence(), std::nullopt);
    EXPECT_TRUE(browser.makePage(judge));
}

TEST_F(PluginBrowserTest, NoticesThatThePluginIsGoneAgainUntilItIsInUse)
{
    install();
    EXPECT_EQ(browser.absence(), std::nullopt);
    uninstall();
    EXPECT_EQ(browser.absence(), Absence::notInstalled);
    install();
    EXPECT_TRUE(browser.makePage(judge));
    uninstall();
    EXPECT_EQ(browser.absence(), std::nullopt);
    EXPECT_TRUE(browser.makePage(judge));
}

TEST_F(PluginBrowserTest, StartsNothingBeforeTheFirstPage)
{
    install();
    EXPECT_EQ(browser.absence(), std::nullopt);
    browser.addCookie(lineA);
    EXPECT_EQ(browser.cookies(), QByteArrayList{lineA});
    EXPECT_FALSE(sandbox.exists(u"data"_s));
    EXPECT_TRUE(browser.makePage(judge));
    EXPECT_TRUE(hasEngine());
}

TEST_F(PluginBrowserTest, MakesTheFolderForItsOwnerAlone)
{
    install();
    EXPECT_TRUE(browser.makePage(judge));
    const auto all = QFileInfo(sandbox.path(u"data/web"_s)).permissions();
    EXPECT_FALSE(all & (QFile::ReadGroup | QFile::ExeGroup | QFile::WriteGroup | QFile::ReadOther | QFile::ExeOther));
    EXPECT_TRUE(all & QFile::WriteUser);
}

TEST_F(PluginBrowserTest, DoesNotStartWhereItsFolderCannotBe)
{
    install();
    sandbox.write(u"data/web"_s, "in the way");
    EXPECT_FALSE(browser.makePage(judge));
    EXPECT_EQ(browser.absence(), Absence::doesNotStart);
    QFile::remove(sandbox.path(u"data/web"_s));
    EXPECT_EQ(browser.absence(), std::nullopt) << "asked anew";
    EXPECT_TRUE(browser.makePage(judge));
}

TEST_F(PluginBrowserTest, GivesTheEngineTheCookiesThatCameBefore)
{
    install();
    int changes = 0;
    QObject::connect(&browser, &WebBrowser::cookiesChanged, &browser, [&] { ++changes; });
    browser.addCookie(lineA);
    browser.addCookie("site.example\tFALSE\t/\tTRUE\t0\ta\tnewer");
    browser.addCookie(lineB);
    browser.addCookie("no cookie");
    EXPECT_EQ(changes, 3);
    browser.removeCookies({lineB, "no cookie"});
    browser.removeCookies({lineB});
    EXPECT_EQ(changes, 4);
    EXPECT_TRUE(browser.makePage(judge));
    EXPECT_EQ(browser.cookies(), QByteArrayList{"site.example\tFALSE\t/\tTRUE\t0\ta\tnewer"});
    EXPECT_EQ(changes, 4) << "nothing changed by that";
}

TEST_F(PluginBrowserTest, TellsOfTheEnginesCookies)
{
    install();
    EXPECT_TRUE(browser.makePage(judge));
    int changes = 0;
    QObject::connect(&browser, &WebBrowser::cookiesChanged, &browser, [&] { ++changes; });
    browser.addCookie(lineA);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(browser.cookies(), QByteArrayList{lineA});
    browser.removeCookies({lineA});
    EXPECT_EQ(changes, 2);
    EXPECT_TRUE(browser.cookies().isEmpty());
}

} // namespace
} // namespace vormel
