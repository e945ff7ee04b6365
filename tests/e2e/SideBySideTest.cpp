#include "e2e/sidebyside/Inspection.h"
#include "e2e/sidebyside/KilledProgram.h"
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

/// Downloads, sets and archives of every kind at once in one folder among the user's own files.
class SideBySide : public ::testing::Test
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

    /// All that was promised is brought about, and is looked at.
    static void expectEverythingRight(Scene& scene)
    {
        EXPECT_EQ(text(PatientUser(scene).finishEverything()), "");
        // What goes on behind the queue has ended with this, and what was saved has to be all.
        scene.restart(false);
        Inspection inspection(scene);
        EXPECT_EQ(text(inspection.wrongDownloads()), "");
        EXPECT_EQ(text(inspection.lostMembers()), "");
        EXPECT_EQ(text(inspection.debris()), "");
        EXPECT_EQ(text(scene.harm()), "");
    }

    fixtures::Sandbox sandbox;
    std::unique_ptr<Catalogue> catalogue;
};

/// Everything is pressed that can be pressed.
class SideBySideTest : public SideBySide, public ::testing::WithParamInterface<std::tuple<Manner, unsigned>>
{};

/// The program is a process of its own, which is killed as the system would.
class KilledSideBySideTest : public SideBySide
{};

} // namespace

TEST_P(SideBySideTest, NobodysFileIsLostAndEveryDownloadIsRight)
{
    const auto [manner, seed] = GetParam();
    Scene scene(*catalogue, manner, seed);
    RandomUser user(scene, seed);
    constexpr int deeds = 120;
    scene.manager().commands().startAll();
    for (int i = 0; i < deeds && !HasFailure(); ++i) {
        user.act();
        EXPECT_EQ(text(scene.harm()), "") << "after " << user.journal().back().toStdString();
    }
    expectEverythingRight(scene);
    if (HasFailure())
        std::cerr << "seed " << seed << '\n' << text(user.journal()) << '\n';
}

INSTANTIATE_TEST_SUITE_P(ByDefault, SideBySideTest,
                         ::testing::Combine(::testing::Values(Manner::byDefault), ::testing::ValuesIn(seeds())));
INSTANTIATE_TEST_SUITE_P(Tidy, SideBySideTest,
                         ::testing::Combine(::testing::Values(Manner::tidy), ::testing::ValuesIn(seeds())));

TEST_F(KilledSideBySideTest, NothingIsLostOrLeftBehind)
{
    constexpr int kills = 25;
    const unsigned seed = seeds().front();
    Scene scene(*catalogue, Manner::byDefault, seed);
    KilledProgram program(scene, seed);
    scene.handOver([&] {
        for (int i = 0; i < kills && !HasFailure(); ++i) {
            program.runAndKill();
            EXPECT_EQ(text(scene.harm()), "") << "seed " << seed << ", after kill " << i;
        }
    });
    EXPECT_GT(program.runsCutOff(), 0);
    expectEverythingRight(scene);
}
