#include "EngineTest.h"
#include "platform/web/PluginBrowser.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// The plugin as the program finds it.
class PluginTest : public EngineTest
{
protected:
    PluginTest() { servePage("/page", "<p>page"); }

    SystemClock clock;
    PluginBrowser browser{{.plugin = QStringLiteral(VORMEL_WEB_PLUGIN), .profile = world().home().path(u"plugin"_s)},
                          clock};
};

TEST_F(PluginTest, GivesPagesOfTheRealEngineWithTheCookiesThatCameBefore)
{
    EXPECT_EQ(browser.absence(), std::nullopt);
    browser.addCookie("127.0.0.1\tFALSE\t/\tFALSE\t0\tearly\t1");
    page = pageOf(browser, judge);
    ASSERT_TRUE(page);
    EXPECT_EQ(open("/page"), End::loaded);
    EXPECT_EQ(text(), u"page"_s);
    EXPECT_EQ(server.requests("/page").back().header("Cookie"), "early=1");
    page.reset();
}

TEST_F(PluginTest, LeavesNothingBehindOutsideOfItsFolder)
{
    page = pageOf(browser, judge);
    EXPECT_EQ(open("/page"), End::loaded);
    page.reset();
    for (const QString& file : world().home().files()) {
        const QString top = file.section(u'/', 0, 0);
        EXPECT_TRUE((QStringList{u".pki"_s, u"plugin"_s, u"profile"_s, u"slow-profile"_s}.contains(top)))
            << file.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(world().home().path(u".local/share/vormel_webengine_tests/QtWebEngine"_s)));
    // The engine writes it on a thread of its own.
    EXPECT_TRUE(fixtures::waitUntil([] { return world().home().exists(u"plugin/user_prefs.json"_s); }));
}

} // namespace
} // namespace vormel
