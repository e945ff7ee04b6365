#include "archive/tools/InstallAdvice.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

TEST(InstallAdvice, EachPackageManagerHasItsCommands)
{
    struct Row
    {
        PackageManager manager;
        const char* rar;
        const char* sevenZip;
    };
    const Row rows[] = {
        {PackageManager::apt, "sudo apt install rar unrar", "sudo apt install 7zip"},
        {PackageManager::dnf, "sudo dnf install unrar", "sudo dnf install 7zip"},
        {PackageManager::pacman, "sudo pacman -S unrar", "sudo pacman -S 7zip"},
        {PackageManager::zypper, "sudo zypper install unrar", "sudo zypper install 7zip"},
        {PackageManager::brew, "brew install rar", "brew install sevenzip"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(toolPackages(row.manager).rarCommand, QString::fromLatin1(row.rar));
        EXPECT_EQ(toolPackages(row.manager).sevenZipCommand, QString::fromLatin1(row.sevenZip));
    }
}

TEST(InstallAdvice, RarIsPromisedOnlyWhereThereIsAPackageOfIt)
{
    EXPECT_TRUE(toolPackages(PackageManager::apt).hasRar);
    EXPECT_TRUE(toolPackages(PackageManager::brew).hasRar);
    EXPECT_FALSE(toolPackages(PackageManager::dnf).hasRar);
    EXPECT_FALSE(toolPackages(PackageManager::pacman).hasRar);
    EXPECT_FALSE(toolPackages(PackageManager::zypper).hasRar);
}

} // namespace
} // namespace vormel
