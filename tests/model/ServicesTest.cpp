#include "model/Services.h"

#include "model/ServicesClash.h"
#include "model/ServicesFields.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

TEST(Services, KnownFileHostsAreThePremiumOnesThenTenOthers)
{
    const Services services = Services::builtIn();
    const QStringList known = services.knownFileHostDomains();
    ASSERT_EQ(known.size(), 13);
    EXPECT_EQ(known[0], services.filestoreDomain);
    EXPECT_EQ(known[1], services.terabytezDomain);
    EXPECT_EQ(known[2], services.terabytezHostKey);
    for (std::size_t i = 0; i < services.otherFileHostDomains.size(); ++i)
        EXPECT_EQ(known[static_cast<qsizetype>(i) + 3], services.otherFileHostDomains.at(i));
}

TEST(Services, TheBuiltInOnesKeepTheRulesOfTheFile)
{
    Services services = Services::builtIn();
    int values = 0;
    for (const ServicesField& field : servicesFields()) {
        for (const QString& value : field.values(services)) {
            EXPECT_EQ(wrongForm(value, field.form), std::nullopt) << value.toStdString();
            ++values;
        }
    }
    EXPECT_EQ(values, 25);
    EXPECT_EQ(clashAmong(services, {}), std::nullopt);
}

TEST(Services, LabelKeyAndDomainOfAServiceAreDifferentThings)
{
    const Services services = Services::builtIn();
    EXPECT_NE(services.terabytezHostKey, services.terabytezDomain);
    EXPECT_NE(services.terabytezHostKey, services.terabytezDisplayName);
    EXPECT_NE(services.filestoreDisplayName, services.filestoreDomain);
    EXPECT_EQ(services.filestoreKey, services.filestoreDomain);
}

} // namespace
} // namespace vormel
