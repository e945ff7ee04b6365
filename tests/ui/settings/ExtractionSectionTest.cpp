#include "ui/settings/SettingsPage.h"

#include <QGroupBox>

namespace vormel {
namespace {

class ExtractionSectionTest : public fixtures::SettingsPage
{};

TEST_F(ExtractionSectionTest, SpeaksBothLanguages)
{
    const std::tuple<const char*, QStringView, QStringView> texts[] = {
        {"autoExtractLabel", u"Auto-extract after download", u"Estrai automaticamente dopo il download"},
        {"deleteArchiveAfterExtractLabel", u"Move archive to Trash after extraction",
         u"Sposta l'archivio nel cestino dopo l'estrazione"},
        {"trashSourceFolderAfterExtractLabel", u"Move source folder to Trash (multi-part RAR)",
         u"Sposta la cartella sorgente nel cestino (RAR multi-parte)"},
        {"removeGroupAfterExtractLabel", u"Remove group from list after extraction",
         u"Rimuovi il gruppo dalla lista dopo l'estrazione"},
        {"useCustomExtractionFolderLabel", u"Use custom extraction folder",
         u"Usa una cartella di estrazione personalizzata"},
        {"useCustomExtractionFolderNote", u"Archives are extracted into the same folder as the downloaded file.",
         u"Gli archivi vengono estratti nella stessa cartella del file scaricato."},
        {"cleanExtractedNamesLabel", u"Clean up extracted file names", u"Pulisci i nomi dei file estratti"},
        {"cleanExtractedNamesNote",
         u"Strips the release string (resolution, codec, source, group…) from the end of extracted file names.",
         u"Rimuove la stringa di release (risoluzione, codec, sorgente, gruppo…) dalla fine dei nomi dei file "
         u"estratti."},
        {"extractedNamesDotsToSpacesLabel", u"Replace dots with spaces", u"Sostituisci i punti con spazi"},
    };
    EXPECT_EQ(part<QGroupBox>("extractionSection").title(), u"Archive Extraction");
    for (const auto& [name, english, italian] : texts)
        EXPECT_EQ(text(name), english);
    useItalian();
    EXPECT_EQ(part<QGroupBox>("extractionSection").title(), u"Estrazione archivi");
    for (const auto& [name, english, italian] : texts)
        EXPECT_EQ(text(name), italian);
}

TEST_F(ExtractionSectionTest, EachToggleSetsItsOwnSettingAndFollowsIt)
{
    const std::pair<const char*, Setting<bool> AppSettings::*> toggles[] = {
        {"autoExtract", &AppSettings::autoExtract},
        {"deleteArchiveAfterExtract", &AppSettings::deleteArchiveAfterExtract},
        {"trashSourceFolderAfterExtract", &AppSettings::trashSourceFolderAfterExtract},
        {"removeGroupAfterExtract", &AppSettings::removeGroupAfterExtract},
        {"useCustomExtractionFolder", &AppSettings::useCustomExtractionFolder},
        {"cleanExtractedNames", &AppSettings::cleanExtractedNames},
        {"extractedNamesDotsToSpaces", &AppSettings::extractedNamesDotsToSpaces},
    };
    for (const auto& [name, setting] : toggles) {
        const bool before = (settings().*setting).value();
        part<QAbstractButton>(name).click();
        EXPECT_EQ((settings().*setting).value(), !before) << name;
        (settings().*setting).set(before);
        EXPECT_EQ(part<QAbstractButton>(name).isChecked(), before) << name;
    }
}

TEST_F(ExtractionSectionTest, WhatFollowsAnExtractionIsHiddenWithoutOneAndKeepsItsValue)
{
    settings().deleteArchiveAfterExtract.set(true);
    settings().trashSourceFolderAfterExtract.set(true);
    settings().removeGroupAfterExtract.set(true);
    for (const char* toggle : {"deleteArchiveAfterExtract", "trashSourceFolderAfterExtract", "removeGroupAfterExtract"})
        EXPECT_TRUE(isShown(toggle)) << toggle;
    click("autoExtract");
    for (const char* toggle : {"deleteArchiveAfterExtract", "trashSourceFolderAfterExtract", "removeGroupAfterExtract"})
        EXPECT_FALSE(isShown(toggle)) << toggle;
    EXPECT_TRUE(settings().deleteArchiveAfterExtract.value());
    EXPECT_TRUE(settings().trashSourceFolderAfterExtract.value());
    EXPECT_TRUE(settings().removeGroupAfterExtract.value());
}

TEST_F(ExtractionSectionTest, TheSourceFolderIsAskedAboutOnlyWhenTheArchiveGoes)
{
    EXPECT_FALSE(isShown("trashSourceFolderAfterExtract"));
    click("deleteArchiveAfterExtract");
    EXPECT_TRUE(isShown("trashSourceFolderAfterExtract"));
}

TEST_F(ExtractionSectionTest, ShowsTheCustomFolderOrWhereArchivesGoWithoutOne)
{
    EXPECT_FALSE(isShown("extractionFolder"));
    EXPECT_TRUE(isShown("useCustomExtractionFolderNote"));
    click("useCustomExtractionFolder");
    EXPECT_TRUE(isShown("extractionFolder"));
    EXPECT_FALSE(isShown("useCustomExtractionFolderNote"));
}

TEST_F(ExtractionSectionTest, CleaningOfNamesHasANoteAndAnOption)
{
    EXPECT_TRUE(isShown("cleanExtractedNamesNote"));
    EXPECT_TRUE(isShown("extractedNamesDotsToSpaces"));
    click("cleanExtractedNames");
    EXPECT_FALSE(isShown("cleanExtractedNamesNote"));
    EXPECT_FALSE(isShown("extractedNamesDotsToSpaces"));
}

} // namespace
} // namespace vormel
