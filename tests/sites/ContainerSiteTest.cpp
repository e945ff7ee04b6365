#include "sites/services/ContainerSite.h"

#include "CurlClient.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>

namespace vormel::sites {
namespace {

using testing::HasSubstr;
using testing::Not;

class ContainerSiteTest : public testing::Test
{
protected:
    ContainerSiteTest()
    {
        prepare(m_client);
        m_client.keepCookies();
    }

    void prepare(CurlClient& client)
    {
        client.trust(m_certificates.writeAuthority(m_folder.path()));
        client.connectTo(m_site.connectTo());
    }
    // As the page's own script does for a click.
    void solve(const std::string& container)
    {
        const std::size_t id = container.rfind('/') + 1;
        m_client.setHeader("Cookie: solved_" + container.substr(id, container.rfind('.') - id) + "=1");
    }
    [[nodiscard]] std::string textOf(LinkPage kind)
    {
        const std::string container = m_site.add({.body = "open", .hasCaptcha = true});
        solve(container);
        static_cast<void>(m_client.fetch(container));
        return m_client.fetch("https://crypt.example" + m_site.addLinkPage(kind, m_target)).body;
    }

    const std::string m_target = "https://files.example/a/film.rar";
    TemporaryFolder m_folder;
    TestCertificates m_certificates;
    ContainerSite m_site{m_certificates, "crypt.example"};
    CurlClient m_client;
};

TEST_F(ContainerSiteTest, ShowsItsLinksOnceTheChallengeIsSolved)
{
    const std::string container = m_site.add({.body = urlsField(m_target), .hasCaptcha = true});
    const std::string asked = m_client.fetch(container).body;
    EXPECT_THAT(asked, AllOf(HasSubstr("h-captcha"), HasSubstr("id=\"challenge\""), HasSubstr("solved_C1=1"),
                             Not(HasSubstr(m_target))));
    solve(container);
    const std::string open = m_client.fetch(container).body;
    EXPECT_THAT(open, AllOf(HasSubstr("name=\"urls\" value=\"" + m_target), Not(HasSubstr("h-captcha"))));
    const std::string other = m_site.add({.body = "other", .hasCaptcha = true});
    EXPECT_THAT(m_client.fetch(other).body, HasSubstr("h-captcha")) << "each has its own";
}

TEST_F(ContainerSiteTest, GivesNothingToWhoeverHasSolvedNoChallenge)
{
    const std::string list = m_site.addTextList(m_target + "\r\n");
    const std::string page = "https://crypt.example" + m_site.addLinkPage(LinkPage::link, m_target);
    const std::string container = m_site.add({.body = anchorTo(list), .hasCaptcha = true});
    static_cast<void>(m_client.fetch(container));
    EXPECT_EQ(m_client.fetch(list).status, 403);
    EXPECT_EQ(m_client.fetch(page).status, 403);
    solve(container);
    EXPECT_THAT(m_client.fetch(container).body, HasSubstr("<a href=\"" + list + "\">"));
    EXPECT_EQ(m_client.fetch(list).body, m_target + "\r\n");
    EXPECT_EQ(m_client.fetch(page).status, 200);
    CurlClient stranger;
    prepare(stranger);
    EXPECT_EQ(stranger.fetch(list).status, 403);
}

TEST_F(ContainerSiteTest, LeadsFromAPageToItsLinkInEachWay)
{
    const std::string inPieces = "'https:' + '//files.example/a/film.rar'";
    EXPECT_THAT(textOf(LinkPage::newTab), AllOf(HasSubstr("target=\"_blank\""), HasSubstr(inPieces)));
    EXPECT_THAT(textOf(LinkPage::newWindow), HasSubstr("window.open(" + inPieces));
    EXPECT_THAT(textOf(LinkPage::refresh), HasSubstr("content=\"86400; url=" + m_target));
    EXPECT_THAT(textOf(LinkPage::script), HasSubstr("location.href = '" + m_target + "'"));
    EXPECT_THAT(textOf(LinkPage::moving), HasSubstr("location.href = " + inPieces));
    EXPECT_THAT(textOf(LinkPage::link), HasSubstr("<a href=\"" + m_target));
    EXPECT_THAT(textOf(LinkPage::nothing), Not(HasSubstr("film.rar")));
    EXPECT_THAT(textOf(LinkPage::endless), HasSubstr("for (;;)"));
    static_cast<void>(textOf(LinkPage::redirect));
    const std::string page = m_site.addLinkPage(LinkPage::redirect, m_target);
    EXPECT_THAT(page, testing::MatchesRegex("/Link/[A-Za-z0-9]+\\.html"));
    EXPECT_EQ(m_client.fetch("https://crypt.example" + page).header("Location"), m_target);
}

} // namespace
} // namespace vormel::sites
