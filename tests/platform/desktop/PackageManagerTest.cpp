#include "platform/desktop/PackageManager.h"

#include "fixtures/Sandbox.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

class PackageManagerTest : public ::testing::Test
{
protected:
    void install(const char* path) { machine.write(QString::fromLatin1(path), {}); }

    fixtures::Sandbox machine;
    DesktopPackageManagers managers{machine.root()};
};

TEST_F(PackageManagerTest, AMachineMayHaveNone)
{
    EXPECT_EQ(managers.present(), std::nullopt);
}

TEST_F(PackageManagerTest, IsFoundByItsProgramAlone)
{
    const std::pair<const char*, PackageManager> programs[] = {
        {"usr/bin/apt", PackageManager::apt},         {"usr/bin/dnf", PackageManager::dnf},
        {"usr/bin/pacman", PackageManager::pacman},   {"usr/bin/zypper", PackageManager::zypper},
        {"usr/local/bin/brew", PackageManager::brew}, {"opt/homebrew/bin/brew", PackageManager::brew},
    };
    for (const auto& [path, manager] : programs) {
        const fixtures::Sandbox other;
        other.write(QString::fromLatin1(path), {});
        EXPECT_EQ(DesktopPackageManagers(other.root()).present(), manager) << path;
    }
}

TEST_F(PackageManagerTest, TheSystemsOwnComesBeforeAnAddedOne)
{
    install("usr/local/bin/brew");
    EXPECT_EQ(managers.present(), PackageManager::brew);
    install("usr/bin/zypper");
    EXPECT_EQ(managers.present(), PackageManager::zypper);
}

TEST_F(PackageManagerTest, IsAskedAnewEachTime)
{
    EXPECT_EQ(managers.present(), std::nullopt);
    install("usr/bin/dnf");
    EXPECT_EQ(managers.present(), PackageManager::dnf);
}

} // namespace
} // namespace vormel
