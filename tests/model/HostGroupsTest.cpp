#include "model/HostGroups.h"

#include "fixtures/EngineOnScript.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

std::string labelOf(const char* url)
{
    return hostGroupLabel(fixtures::link(QString::fromUtf8(url)), HostProfiles()).toStdString();
}

TEST(HostGroups, AHostIsLabelledInSmallLettersWithoutWww)
{
    EXPECT_EQ(labelOf("http://Rapidgator.NET/x"), "rapidgator.net");
    EXPECT_EQ(labelOf("http://WWW.rapidgator.net:80/x"), "rapidgator.net");
}

TEST(HostGroups, WwwIsDroppedOnceAndOnlyAtTheStart)
{
    EXPECT_EQ(labelOf("http://dl.www.a.example/x"), "dl.www.a.example");
    EXPECT_EQ(labelOf("http://www.www.example/x"), "www.example");
    EXPECT_EQ(labelOf("http://www2.a.example/x"), "www2.a.example");
}

TEST(HostGroups, ALinkWithoutAHostIsUnknown)
{
    EXPECT_EQ(labelOf("http:///x"), "unknown");
    EXPECT_EQ(plainHost(fixtures::link(u"mailto:me"_s)), u"unknown");
}

TEST(HostGroups, PremiumHostsAreLabelledByTheirDisplayName)
{
    EXPECT_EQ(labelOf("http://www.terabytez.other/x"), "Terabytez");
    EXPECT_EQ(labelOf("http://TERABYTEZ-mirror.example/x"), "Terabytez");
    EXPECT_EQ(labelOf("http://my-filestore.other/x"), "Filestore.example");
    EXPECT_EQ(labelOf("http://other.example/terabytez/filestore"), "other.example");
    EXPECT_EQ(labelOf("http://filestore.terabytez.example/x"), "Terabytez");
}

TEST(HostGroups, PlainHostKeepsThePremiumHostsOwnName)
{
    EXPECT_EQ(plainHost(fixtures::link(u"http://www.TERABYTEZ.example/x"_s)), u"terabytez.example");
}

TEST(HostGroups, RanksTerabytezThenFilestoreThenTheOthers)
{
    EXPECT_EQ(hostSortRank(u"Terabytez", HostProfiles()), 0);
    EXPECT_EQ(hostSortRank(u"my TERABYTEZ", HostProfiles()), 0);
    EXPECT_EQ(hostSortRank(u"Filestore.example", HostProfiles()), 1);
    EXPECT_EQ(hostSortRank(u"rapidgator.net", HostProfiles()), 2);
    EXPECT_EQ(hostSortRank(u"", HostProfiles()), 2);
}

TEST(HostGroups, LinksAreGroupedInTheirOrderAndGroupsSortedByRankThenName)
{
    const auto link = [](const char* url) { return fixtures::link(QString::fromUtf8(url)); };
    const std::vector<Link> urls = {link("http://z.example/1"), link("http://filestore.example/2"),
                                    link("http://b.example/3"), link("http://www.Z.example/0"),
                                    link("http://terabytez.example/4")};
    const std::vector<PendingHostSelection::HostGroup> expected = {{u"Terabytez"_s, {urls[4]}},
                                                                   {u"Filestore.example"_s, {urls[1]}},
                                                                   {u"b.example"_s, {urls[2]}},
                                                                   {u"z.example"_s, {urls[0], urls[3]}}};
    EXPECT_EQ(groupURLsByHost(urls, HostProfiles()), expected);
    EXPECT_TRUE(groupURLsByHost({}, HostProfiles()).empty());
}

TEST(HostGroups, NamesOfOneRankAreSortedLetterByLetter)
{
    std::vector<PendingHostSelection::HostGroup> groups;
    for (const char* name : {"b", "a10", "B", "a9", "filestore", "Terabytez 2", "Filestore"})
        groups.push_back({QString::fromLatin1(name), {}});
    sortHostGroups(groups, HostProfiles());
    std::vector<std::string> names;
    for (const auto& group : groups)
        names.push_back(group.displayName.toStdString());
    EXPECT_EQ(names, (std::vector<std::string>{"Terabytez 2", "Filestore", "filestore", "B", "a10", "a9", "b"}));
}

TEST(HostGroups, AServiceThatMovedStandsUnderItsLabelAndRankByWordAndByDomain)
{
    Services services = Services::builtIn();
    services.filestoreDomain = u"boxes.test"_s;
    services.filestoreDisplayName = u"Boxes"_s;
    services.terabytezDomain = u"terra.test"_s;
    services.terabytezDisplayName = u"The Other"_s;
    const HostProfiles profiles(services);
    const auto label = [&profiles](const char* url) {
        return hostGroupLabel(fixtures::link(QString::fromUtf8(url)), profiles).toStdString();
    };
    EXPECT_EQ(label("http://dl.Boxes.test/x"), "Boxes");
    EXPECT_EQ(label("http://filestore.example/x"), "Boxes");
    EXPECT_EQ(label("http://www.terra.test/x"), "The Other");
    EXPECT_EQ(label("http://terabytez.example/x"), "The Other");
    EXPECT_EQ(hostSortRank(u"The Other", profiles), 0);
    EXPECT_EQ(hostSortRank(u"Boxes", profiles), 1);
    EXPECT_EQ(hostSortRank(u"Others", profiles), 2);
}

} // namespace
} // namespace vormel
