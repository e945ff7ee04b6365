#include "ui/settings/InstallSection.h"

#include "fixtures/Languages.h"
#include "kit/PlatformTexts.h"
#include "ui/settings/BrewInstallRow.h"
#include "ui/settings/SettingsPage.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::english;
using fixtures::italian;

class InstallSectionTest : public fixtures::SettingsPage
{
protected:
    void use(std::optional<PackageManager> manager)
    {
        desktop.managers.manager = manager;
        part<InstallSection>("installSection").look();
    }
    void install(const char* tool)
    {
        engine.tools.add(QString::fromLatin1(tool));
        desktop.tools.look();
    }
    [[nodiscard]] QString inRow(const char* row, const char* label) const
    {
        return fixtures::partOf<QLabel>(part(row), label).text();
    }
    [[nodiscard]] QString command(const char* row) const { return inRow(row, "installCommand"); }
    [[nodiscard]] QString description(const char* row) const { return inRow(row, "installDescription"); }
};

TEST_F(InstallSectionTest, IsAbsentWhenNothingIsMissing)
{
    EXPECT_TRUE(isShown("installSection"));
    install("unrar");
    EXPECT_TRUE(isShown("installSection"));
    install("7zz");
    EXPECT_FALSE(isShown("installSection")); // "rar" alone does not bring it back
    use(std::nullopt);
    EXPECT_TRUE(isShown("installSection"));
}

TEST_F(InstallSectionTest, OffersEachMissingTool)
{
    EXPECT_TRUE(isShown("installRar"));
    EXPECT_TRUE(isShown("installSevenZip"));
    install("unrar");
    EXPECT_FALSE(isShown("installRar"));
    EXPECT_TRUE(isShown("installSevenZip"));
    engine.tools.remove(u"unrar"_s);
    install("7za");
    EXPECT_TRUE(isShown("installRar"));
    EXPECT_FALSE(isShown("installSevenZip"));
}

TEST_F(InstallSectionTest, WithoutAPackageManagerThereIsOnlyTheWarning)
{
    EXPECT_FALSE(isShown("managerWarning"));
    use(std::nullopt);
    EXPECT_TRUE(isShown("managerWarning"));
    EXPECT_FALSE(isShown("installRar"));
    EXPECT_FALSE(isShown("installSevenZip"));
    EXPECT_EQ(text("warningTitle"), platformText(PlatformText::packageManagerMissing, english));
    EXPECT_EQ(text("warningText"), platformText(PlatformText::packageManagerMissingIs, english));
    useItalian();
    EXPECT_EQ(text("warningTitle"), platformText(PlatformText::packageManagerMissing, italian));
    EXPECT_EQ(text("warningText"), platformText(PlatformText::packageManagerMissingIs, italian));
}

TEST_F(InstallSectionTest, SpeaksTheCommandsOfThePackageManagerThatIsThere)
{
    use(PackageManager::brew);
    EXPECT_EQ(command("installRar"), u"brew install rar");
    EXPECT_EQ(command("installSevenZip"), u"brew install sevenzip");
    use(PackageManager::pacman);
    EXPECT_EQ(command("installRar"), u"sudo pacman -S unrar");
    EXPECT_EQ(command("installSevenZip"), u"sudo pacman -S 7zip");
}

TEST_F(InstallSectionTest, TellsWhatACommandBrings)
{
    EXPECT_EQ(description("installRar"), u"Installs rar + unrar — for RAR archives and .rev repair");
    EXPECT_EQ(description("installSevenZip"), u"Installs 7zz — needed for 7-Zip archives");
    use(PackageManager::dnf);
    EXPECT_EQ(description("installRar"), u"Installs unrar — for RAR archives");
    EXPECT_EQ(description("installSevenZip"), u"Installs 7z — needed for 7-Zip archives");
    useItalian();
    EXPECT_EQ(description("installRar"), u"Installa unrar — per archivi RAR");
    use(PackageManager::brew);
    EXPECT_EQ(description("installRar"), u"Installa rar + unrar — per archivi RAR e riparazione .rev");
    EXPECT_EQ(description("installSevenZip"), u"Installa 7zz — necessario per gli archivi 7-Zip");
    EXPECT_EQ(fixtures::partOf<QAbstractButton>(part("installRar"), "openInTerminal").text(), u"Open in Terminal");
}

TEST_F(InstallSectionTest, TellsOfNonFreeWhereDebiansPackagesAreUsed)
{
    EXPECT_EQ(
        inRow("installRar", "installNote"),
        u"Debian keeps both in its “non-free” component: free of charge, but not free software. Where apt does not "
        u"find them, switch it on first: add “non-free” behind “main” in /etc/apt/sources.list or "
        u"/etc/apt/sources.list.d/debian.sources, then run “sudo apt update”.");
    EXPECT_TRUE(fixtures::partOf<QLabel>(part("installRar"), "installNote").isVisible());
    EXPECT_FALSE(fixtures::partOf<QLabel>(part("installSevenZip"), "installNote").isVisible());
    useItalian();
    EXPECT_EQ(inRow("installRar", "installNote"),
              u"Debian li tiene nel componente “non-free”: gratuiti, ma non software libero. Se apt non li trova, "
              u"attivalo prima: aggiungi “non-free” dopo “main” in /etc/apt/sources.list o in "
              u"/etc/apt/sources.list.d/debian.sources, poi esegui “sudo apt update”.");
    for (const PackageManager other :
         {PackageManager::brew, PackageManager::dnf, PackageManager::pacman, PackageManager::zypper}) {
        use(other);
        EXPECT_FALSE(fixtures::partOf<QLabel>(part("installRar"), "installNote").isVisible());
    }
}

TEST_F(InstallSectionTest, InstallingAPackageManagerIsOfferedOnlyWithAnAddress)
{
    desktop.managers.manager = std::nullopt;
    InstallSection without(desktop.ports(), {}, nullptr);
    InstallSection with(desktop.ports(), u"https://brew.example/Homebrew/install/HEAD/install.sh"_s, nullptr);
    without.show();
    with.show();
    EXPECT_FALSE(fixtures::partOf<QWidget>(without, "installManager").isVisible());
    auto& button = fixtures::partOf<QAbstractButton>(with, "installManager");
    EXPECT_EQ(button.text(), u"Install Homebrew");
    const QSignalSpy asked(&with, &InstallSection::asked);
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(asked.value(0).value(0).toString(),
              u"/bin/bash -c \"$(curl -fsSL https://brew.example/Homebrew/install/HEAD/install.sh)\"");
    useItalian();
    EXPECT_EQ(button.text(), u"Installa Homebrew");
}

} // namespace
} // namespace vormel
