#include "resolvers/captcha/CaptchaChoice.h"

#include "resolvers/containers/LinkTexts.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel::tests {
namespace {

const std::vector<Link>& linksOfThreeHosts()
{
    static const std::vector<Link> links{linkOf(u"https://rapidgator.net/1"_s),
                                         linkOf(u"https://www.Terabytez.example/2"_s),
                                         linkOf(u"https://filestore.example/3"_s),
                                         linkOf(u"https://terabytez.other/4"_s), linkOf(u"https://RapidGator.net/5"_s)};
    return links;
}

CaptchaChoice chosen(const std::vector<Link>& links, const std::vector<SupportedHost>& accountHosts)
{
    return chooseLinks(links, accountHosts, HostProfiles());
}

TEST(CaptchaChoice, LinksOfHostsWithAnAccountAreTakenAndTheOthersDropped)
{
    CaptchaChoice choice = chosen(linksOfThreeHosts(), {SupportedHost::terabytez});
    EXPECT_EQ(textOf(choice.urls), "https://www.Terabytez.example/2\nhttps://terabytez.other/4");
    EXPECT_TRUE(choice.groups.empty());
    choice = chosen(linksOfThreeHosts(), {SupportedHost::filestore, SupportedHost::terabytez});
    EXPECT_EQ(choice.urls.size(), 3U);
    choice = chosen(linksOfThreeHosts(), {SupportedHost::filestore});
    EXPECT_EQ(textOf(choice.urls), "https://filestore.example/3");
}

TEST(CaptchaChoice, WithoutAMatchingAccountTheUserChoosesAmongHosts)
{
    const CaptchaChoice choice = chosen(linksOfThreeHosts(), {});
    EXPECT_EQ(choice.urls, linksOfThreeHosts());
    QStringList hosts;
    for (const auto& group : choice.groups)
        hosts << group.displayName;
    EXPECT_EQ(hosts, (QStringList{u"terabytez.other"_s, u"www.terabytez.example"_s, u"filestore.example"_s,
                                  u"rapidgator.net"_s}));
    EXPECT_EQ(textOf(choice.groups.back().urls), "https://rapidgator.net/1\nhttps://RapidGator.net/5");
}

TEST(CaptchaChoice, AnAccountWithoutLinksDoesNotSpareTheChoice)
{
    const CaptchaChoice choice =
        chosen({linkOf(u"https://a.example/1"_s), linkOf(u"https://www.a.example/2"_s)}, {SupportedHost::terabytez});
    EXPECT_EQ(choice.groups.size(), 2U); // "www." makes another host
}

TEST(CaptchaChoice, LinksOfOneHostAreAllTaken)
{
    const CaptchaChoice choice = chosen({linkOf(u"https://a.example/1"_s), linkOf(u"https://A.example/2"_s)}, {});
    EXPECT_EQ(choice.urls.size(), 2U);
    EXPECT_TRUE(choice.groups.empty());
}

TEST(CaptchaChoice, LinksWithoutAHostStandTogether)
{
    const CaptchaChoice choice = chosen({linkOf(u"mailto:a"_s), linkOf(u"https://a.example/1"_s)}, {});
    ASSERT_EQ(choice.groups.size(), 2U);
    EXPECT_EQ(choice.groups.back().displayName, u"unknown");
}

} // namespace
} // namespace vormel::tests
