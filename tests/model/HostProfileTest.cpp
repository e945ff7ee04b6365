#include "model/HostProfile.h"

#include "fixtures/EngineOnScript.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace vormel {
namespace {

TEST(HostProfile, EachHostHasOneRowAndAKeyAndALabelOfItsOwn)
{
    for (const HostProfile& profile : hostProfiles()) {
        EXPECT_EQ(&profileOf(profile.host), &profile);
        const auto alike = std::count_if(hostProfiles().begin(), hostProfiles().end(), [&](const HostProfile& other) {
            return other.key == profile.key || other.label == profile.label || other.rank == profile.rank;
        });
        EXPECT_EQ(alike, 1) << profile.label.data();
    }
}

TEST(HostProfile, TheRowsStandInTheOrderOfTheirRank)
{
    EXPECT_TRUE(std::is_sorted(hostProfiles().begin(), hostProfiles().end(),
                               [](const HostProfile& a, const HostProfile& b) { return a.rank < b.rank; }));
}

TEST(HostProfile, NamesOfTerabytezAreNotLookedUp)
{
    const auto mayLookUp = [](const char* url) { return mayLookUpNames(fixtures::link(QString::fromUtf8(url))); };
    EXPECT_TRUE(mayLookUp("http://filestore.example/x"));
    EXPECT_TRUE(mayLookUp("http://h/terabytez.example"));
    EXPECT_FALSE(mayLookUp("http://www.TeraBytez.other/x"));
    EXPECT_FALSE(mayLookUp("http://terabytez.filestore.example/x"));
}

} // namespace
} // namespace vormel
