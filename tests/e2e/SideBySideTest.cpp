#include "e2e/sidebyside/Inspection.h"
#include "e2e/sidebyside/PatientUser.h"
#include "e2e/sidebyside/RandomUser.h"
#include "fixtures/RealTools.h"

#include <gtest/gtest.h>

#include <iostream>
#include <memory>

using namespace vormel;
using namespace vormel::e2e;

namespace {

std::string text(const QStringList& lines)
{
    return lines.join(u'\n').toStdString();
}

/// VORMEL_SEED gives another beginning to try.
std::vector<unsigned> seeds()
{
    constexpr unsigned count = 5;
    const unsigned first = qEnvironmentVariableIntValue("VORMEL_SEED") > 0
                               ? static_cast<unsigned>(qEnvironmentVariableIntValue("VORMEL_SEED"))
                               : 1;
    std::vector<unsigned> all;
    for (unsigned i = 0; i < count; ++i)
        all.push_back(first + i);
    return all;
}

/// Downloads, sets and archives of every kind at once in one folder among the user's own files, while everything is
/// pressed that can be pressed.
class SideBySideTest : public ::testing::TestWithParam<std::tuple<Manner, unsigned>>
{
protected:
    void SetUp() override
    {
        VORMEL_NEEDS_TOOL("unrar");
        VORMEL_NEEDS_TOOL("rar");
        VORMEL_NEEDS_TOOL("7zz");
        VORMEL_NEEDS_TOOL("unzip");
        VORMEL_NEEDS_TOOL("tar");
        catalogue = std::make_unique<Catalogue>(sandbox.root());
        ASSERT_EQ(text(catalogue->faults()), "");
    }

    fixtures::Sandbox sandbox;
    std::unique_ptr<Catalogue> catalogue;
};

} // namespace

TEST_P(SideBySideTest, NobodysFileIsLostAndEveryDownloadIsRight)
{
    const auto [manner, seed] = GetParam();
    Scene scene(*catalogue, manner, seed);
    RandomUser user(scene, seed);
    constexpr int deeds = 120;
    scene.manager().startAll();
    for (int i = 0; i < deeds && !HasFailure(); ++i) {
        user.act();
        EXPECT_EQ(text(scene.harm()), "") << "after " << user.journal().back().toStdString();
    }
    EXPECT_EQ(text(PatientUser(scene).finishEverything()), "");
    // What goes on behind the queue has ended with this, and what was saved has to be all.
    scene.restart(false);
    Inspection inspection(scene);
    EXPECT_EQ(text(inspection.wrongDownloads()), "");
    EXPECT_EQ(text(inspection.lostMembers()), "");
    EXPECT_EQ(text(inspection.debris()), "");
    EXPECT_EQ(text(scene.harm()), "");
    if (HasFailure())
        std::cerr << "seed " << seed << '\n' << text(user.journal()) << '\n';
}

INSTANTIATE_TEST_SUITE_P(ByDefault, SideBySideTest,
                         ::testing::Combine(::testing::Values(Manner::byDefault), ::testing::ValuesIn(seeds())));
INSTANTIATE_TEST_SUITE_P(Tidy, SideBySideTest,
                         ::testing::Combine(::testing::Values(Manner::tidy), ::testing::ValuesIn(seeds())));
