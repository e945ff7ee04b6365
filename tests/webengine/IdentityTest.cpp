#include "webengine/Identity.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {

TEST(Identity, IsThatOfAnOrdinaryBrowserOfTheEnginesVersion)
{
    EXPECT_EQ(
        ordinaryUserAgent(u"Mozilla/5.0 (X11; Linux x86_64) AppleWebKit/537.36 (KHTML, like Gecko) QtWebEngine/6.4.2 "
                          "Chrome/102.0.5005.177 Safari/537.36"_s),
        u"Mozilla/5.0 (X11; Linux x86_64) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/102.0.0.0 Safari/537.36"_s);
}

TEST(Identity, PrefersLanguagesInTheirOrder)
{
    EXPECT_EQ(acceptLanguage({u"it-IT"_s, u"it"_s, u"en"_s}), u"it-IT,it;q=0.9,en;q=0.8"_s);
    EXPECT_EQ(acceptLanguage({u"en"_s}), u"en"_s);
    EXPECT_TRUE(acceptLanguage(QStringList(12, u"en"_s)).endsWith(u"en;q=0.1"_s));
}

} // namespace vormel
