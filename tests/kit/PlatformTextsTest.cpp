#include "kit/PlatformTexts.h"

#include "fixtures/Languages.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

using fixtures::english;
using fixtures::italian;

TEST(PlatformTexts, OnlyTheToldPlatformIsNamedThere)
{
    for (int i = 0; i <= static_cast<int>(PlatformText::externalTools); ++i) {
        for (const AppLanguage language : allLanguages) {
            const QString linuxText = platformText(static_cast<PlatformText>(i), language, Desktop::freedesktop);
            EXPECT_FALSE(linuxText.isEmpty());
            EXPECT_FALSE(linuxText.contains(u"macOS") || linuxText.contains(u"Finder") || linuxText.contains(u"Xcode"))
                << qPrintable(linuxText);
        }
    }
}

TEST(PlatformTexts, TheFileViewerHasItsName)
{
    EXPECT_EQ(platformText(PlatformText::openInViewer, english, Desktop::finder), u"Open in Finder");
    EXPECT_EQ(platformText(PlatformText::openInViewer, italian, Desktop::finder), u"Apri nel Finder");
    EXPECT_EQ(platformText(PlatformText::openInViewer, english, Desktop::freedesktop), u"Open in File Manager");
    EXPECT_EQ(platformText(PlatformText::openInViewer, italian, Desktop::freedesktop), u"Apri nel gestore file");
}

TEST(PlatformTexts, AMissingPackageManagerIsWarnedOf)
{
    EXPECT_EQ(platformText(PlatformText::packageManagerMissing, english, Desktop::finder), u"Homebrew not found");
    EXPECT_EQ(platformText(PlatformText::packageManagerMissing, italian, Desktop::finder), u"Homebrew non trovato");
    EXPECT_EQ(platformText(PlatformText::packageManagerMissingIs, english, Desktop::finder),
              u"Required to install unrar and 7-Zip.");
    EXPECT_EQ(platformText(PlatformText::packageManagerMissingIs, italian, Desktop::finder),
              u"Necessario per installare unrar e 7-Zip.");
    EXPECT_EQ(platformText(PlatformText::packageManagerMissing, english, Desktop::freedesktop),
              u"No package manager found");
    EXPECT_EQ(platformText(PlatformText::packageManagerMissing, italian, Desktop::freedesktop),
              u"Nessun gestore di pacchetti trovato");
}

TEST(PlatformTexts, HelpTellsOfTheSystem)
{
    EXPECT_EQ(platformText(PlatformText::kindOfProgram, english, Desktop::finder), u"macOS Download Manager");
    EXPECT_EQ(platformText(PlatformText::kindOfProgram, italian, Desktop::finder), u"Download Manager per macOS");
    EXPECT_EQ(platformText(PlatformText::kindOfProgram, english, Desktop::freedesktop), u"Linux Download Manager");
    EXPECT_EQ(platformText(PlatformText::kindOfProgram, italian, Desktop::freedesktop), u"Download Manager per Linux");
    EXPECT_EQ(platformText(PlatformText::requirement, english, Desktop::finder),
              u"Requires macOS 12.4 Monterey or later.");
    EXPECT_EQ(platformText(PlatformText::requirement, italian, Desktop::finder),
              u"Richiede macOS 12.4 Monterey o versioni successive.");
    EXPECT_TRUE(platformText(PlatformText::externalTools, english, Desktop::finder).contains(u"via Homebrew. Go"));
    EXPECT_TRUE(platformText(PlatformText::externalTools, italian, Desktop::finder).contains(u"tramite Homebrew. Vai"));
    EXPECT_TRUE(platformText(PlatformText::description, italian, Desktop::finder).contains(u"manager per macOS"));
}

} // namespace
} // namespace vormel
