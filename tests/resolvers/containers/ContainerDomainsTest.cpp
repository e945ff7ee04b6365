#include "config/Services.h"
#include "text/Link.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vormel::tests {
namespace {

TEST(ContainerDomains, TheThreeServicesHaveTheirNumberOfThem)
{
    EXPECT_EQ(fileCryptDomains.size(), 2U);
    EXPECT_EQ(lfileCryptDomains.size(), 4U);
    EXPECT_EQ(keeplinksDomains.size(), 2U);
}

TEST(ContainerDomains, NoneHasAnotherInIt)
{
    std::vector<QString> domains;
    domains.insert(domains.end(), fileCryptDomains.begin(), fileCryptDomains.end());
    domains.insert(domains.end(), lfileCryptDomains.begin(), lfileCryptDomains.end());
    domains.insert(domains.end(), keeplinksDomains.begin(), keeplinksDomains.end());
    for (std::size_t i = 0; i < domains.size(); ++i) {
        EXPECT_TRUE(domains[i].contains(QLatin1Char('.'))) << domains[i].toStdString();
        for (std::size_t j = 0; j < domains.size(); ++j)
            EXPECT_TRUE(i == j || !domains[i].contains(domains[j])) << domains[i].toStdString();
    }
}

TEST(ContainerDomains, TheRootOfKeeplinksIsAnAddressOfTheService)
{
    const std::optional<Link> root = Link::parse(QString(keeplinksRootUrl));
    ASSERT_TRUE(root && root->isHttp());
    EXPECT_TRUE(root->host().contains(keeplinksDomains.front()));
}

} // namespace
} // namespace vormel::tests
