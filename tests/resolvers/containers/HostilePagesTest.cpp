#include "HostilePages.h"

#include "LinkTexts.h"
#include "resolvers/ParseTimes.h"
#include "resolvers/containers/ClickNLoad.h"
#include "resolvers/containers/ContainerForm.h"
#include "resolvers/containers/ContainerLinks.h"
#include "resolvers/containers/ContainerPage.h"
#include "resolvers/containers/KeeplinksPage.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel::tests {
namespace {

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
{};

TEST_P(ContainerParser, TakesTimeInProportionToTheMostHostilePage)
{
    constexpr qsizetype share = isOptimised ? 1 : 10;
    for (const HostilePage& hostile : hostilePages()) {
        const ParseTimes times(GetParam().run, hostile.ofSize(ParseTimes::usualSize / share),
                               hostile.ofSize(ParseTimes::tenfoldSize / share));
        EXPECT_TRUE(times.areFine()) << hostile.name << ": " << times.shown();
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
