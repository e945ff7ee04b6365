#include "HostilePages.h"

#include "LinkTexts.h"
#include "resolvers/containers/ClickNLoad.h"
#include "resolvers/containers/ContainerForm.h"
#include "resolvers/containers/ContainerLinks.h"
#include "resolvers/containers/ContainerPage.h"
#include "resolvers/containers/KeeplinksPage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <limits>

using namespace Qt::StringLiterals;

namespace vormel::tests {
namespace {

/// Sanitizers make everything slower, each part by another measure.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr bool isOptimised = false;
#else
constexpr bool isOptimised = true;
#endif

const QStringList& allHosts()
{
    static const QStringList hosts{u"filestore.example"_s, u"terabytez.example"_s, u"rapidgator.net"_s,
                                   u"turbobit.net"_s,      u"uploaded.net"_s,      u"1fichier.com"_s,
                                   u"katfile.com"_s,       u"nitroflare.com"_s,    u"mega.nz"_s,
                                   u"ddownload.com"_s,     u"mixdrop.co"_s,        u"filespace.com"_s};
    return hosts;
}

struct Parser
{
    const char* name;
    void (*run)(const QString& page);
};

const Parser parsers[] = {
    {"containsCaptcha", [](const QString& page) { static_cast<void>(containsCaptcha(page)); }},
    {"hasPasswordField", [](const QString& page) { static_cast<void>(hasPasswordField(page)); }},
    {"saysWrongPassword", [](const QString& page) { static_cast<void>(saysWrongPassword(page)); }},
    {"saysKeeplinksWrongPassword", [](const QString& page) { static_cast<void>(saysKeeplinksWrongPassword(page)); }},
    {"containerPasswordBody",
     [](const QString& page) { static_cast<void>(containerPasswordBody(page, u"password"_s)); }},
    {"decodeCNLLinks", [](const QString& page) { static_cast<void>(decodeCNLLinks(page)); }},
    {"extractGoLinks",
     [](const QString& page) { static_cast<void>(extractGoLinks(page, linkOf(u"https://box.example/"_s))); }},
    {"fileCryptHrefs",
     [](const QString& page) { static_cast<void>(extractHrefLinks(page, HrefScan::fileCrypt(), allHosts())); }},
    {"lfileCryptHrefs",
     [](const QString& page) { static_cast<void>(extractHrefLinks(page, HrefScan::lfileCrypt(), allHosts())); }},
    {"keeplinksHrefs", [](const QString& page) { static_cast<void>(extractKeeplinksHrefs(page, allHosts())); }},
    {"followMetaRefresh",
     [](const QString& page) { static_cast<void>(followMetaRefresh(page, linkOf(u"https://keep.example/"_s))); }},
};

class ContainerParser : public testing::TestWithParam<Parser>
{
protected:
    /// Processor time, so that other programs do not count.
    static double secondsFor(const QString& page)
    {
        const std::clock_t start = std::clock();
        GetParam().run(page);
        return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    }
};

TEST_P(ContainerParser, TakesTimeInProportionToTheMostHostilePage)
{
    constexpr qsizetype size = isOptimised ? 100 * 1024 : 10 * 1024;
    constexpr double growth = 25;           // what goes over a page anew takes a hundred times as long
    constexpr double leastMeasured = 0.005; // below it, what else the machine does counts for more
    constexpr double most = 0.05;
    constexpr int tries = 12; // a machine that is busy takes longer at times
    for (const HostilePage& hostile : hostilePages()) {
        const QString small = hostile.ofSize(size);
        const QString large = hostile.ofSize(10 * size);
        double least = std::numeric_limits<double>::max();
        double leastOfLarge = least;
        const auto isFine = [&] {
            return leastOfLarge <= growth * std::max(least, leastMeasured) && (least < most || !isOptimised);
        };
        for (int run = 0; run == 0 || (run < tries && !isFine()); ++run) {
            least = std::min(least, secondsFor(small));
            leastOfLarge = std::min(leastOfLarge, secondsFor(large));
        }
        EXPECT_TRUE(isFine()) << hostile.name << ": " << 1000 * least << " ms, and " << 1000 * leastOfLarge
                              << " ms for ten times as much";
    }
}

INSTANTIATE_TEST_SUITE_P(Hostile, ContainerParser, testing::ValuesIn(parsers),
                         [](const auto& parser) { return std::string(parser.param.name); });

TEST(HostilePages, TenThousandHiddenInputsAreAllRead)
{
    QString page;
    for (int i = 0; i < 10'000; ++i)
        page += u"<input type='hidden' name='n%1' value='v'>"_s.arg(i);
    EXPECT_EQ(parseFileCryptHiddenInputs(page).size(), 10'000U);
}

TEST(HostilePages, AHundredThousandLinksAreAllRead)
{
    QString page;
    for (int i = 0; i < 100'000; ++i)
        page += u"<a href=\"https://filestore.example/f/%1\">"_s.arg(i);
    const std::vector<Link> links = extractHrefLinks(page, HrefScan::fileCrypt(), allHosts());
    EXPECT_EQ(links.size(), 100'000U);
    EXPECT_EQ(joinedLinks({links, {}, links}, links).size(), 100'000U);
    EXPECT_EQ(extractHrefLinks(page, HrefScan::lfileCrypt(), allHosts()).size(), 100'000U);
    EXPECT_EQ(extractKeeplinksHrefs(page, allHosts()).size(), 100'000U);
}

} // namespace
} // namespace vormel::tests
