#include "platform/web/WebBrowser.h"

#include <gtest/gtest.h>

using namespace vormel;

namespace {

class NoJudge final : public WebPage::Judge
{
public:
    [[nodiscard]] bool mayAsk(const WebPage::Request& /*request*/) override { return true; }
    [[nodiscard]] bool mayShow(const WebPage::Response& /*response*/) override { return true; }
    void windowWanted(const Link& /*url*/) override {}
    void navigationEnded(WebPage::End /*end*/) override {}
};

} // namespace

TEST(NoWebBrowser, HasNoPagesAndSaysWhy)
{
    NoWebBrowser browser;
    NoJudge judge;
    EXPECT_EQ(browser.absence(), WebBrowser::Absence::notInstalled);
    EXPECT_EQ(browser.makePage(judge), nullptr);
}

TEST(NoWebBrowser, KeepsNoCookies)
{
    NoWebBrowser browser;
    browser.addCookie("site.example\tFALSE\t/\tTRUE\t0\tname\tvalue");
    EXPECT_TRUE(browser.cookies().isEmpty());
}
