#include "model/AppSettings.h"

#include "fixtures/Sandbox.h"
#include "platform/storage/FileWriter.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

const QString downloads = u"/home/me/Downloads"_s;

/// The settings of a user whose preferences file a test can look at, change and read anew.
class AppSettingsTest : public testing::Test
{
protected:
    AppSettingsTest() { start(); }

    AppSettings& settings() { return *m_settings; }

    /// Ends the program with all that it saves, and starts it again.
    void restart()
    {
        m_settings.reset();
        m_store.reset();
        m_writer.reset();
        start();
    }

    void restartWith(const QByteArray& json)
    {
        m_writer->flush();
        sandbox.write(u"preferences.json"_s, json);
        restart();
    }

    QJsonObject stored()
    {
        m_writer->flush();
        return QJsonDocument::fromJson(sandbox.read(u"preferences.json"_s)).object();
    }

    fixtures::Sandbox sandbox;

private:
    void start()
    {
        m_writer = std::make_unique<FileWriter>();
        m_store = std::make_unique<UserDefaults>(sandbox.path(u"preferences.json"_s), *m_writer);
        m_settings = std::make_unique<AppSettings>(*m_store, downloads);
    }

    std::unique_ptr<FileWriter> m_writer;
    std::unique_ptr<UserDefaults> m_store;
    std::unique_ptr<AppSettings> m_settings;
};

std::vector<Setting<bool>*> plainFlags(AppSettings& settings)
{
    return {&settings.deleteArchiveAfterExtract,  &settings.trashSourceFolderAfterExtract,
            &settings.removeGroupAfterExtract,    &settings.downloadRevFiles,
            &settings.extractedNamesDotsToSpaces, &settings.autoStartDownloads,
            &settings.useCustomExtractionFolder};
}

TEST_F(AppSettingsTest, AnEmptyStoreGivesTheDefaults)
{
    EXPECT_TRUE(settings().autoExtract.value());
    EXPECT_TRUE(settings().cleanExtractedNames.value());
    for (const Setting<bool>* flag : plainFlags(settings()))
        EXPECT_FALSE(flag->value());
    EXPECT_EQ(settings().maxConcurrentDownloads.value(), 3);
    EXPECT_EQ(settings().maxDownloadSpeedKBps.value(), 0);
    EXPECT_EQ(settings().downloadFolderPath.value(), downloads);
    EXPECT_EQ(settings().extractionFolderPath.value(), downloads);
    EXPECT_EQ(settings().language.value(), AppLanguage::english);
    EXPECT_EQ(settings().effectiveExtractionFolder(), std::nullopt);
    EXPECT_TRUE(stored().isEmpty()) << "reading the defaults must not write them";
}

TEST_F(AppSettingsTest, AFlagThatIsOnByDefaultStaysOffAfterARestart)
{
    settings().autoExtract.set(false);
    settings().cleanExtractedNames.set(false);
    restart();
    EXPECT_FALSE(settings().autoExtract.value());
    EXPECT_FALSE(settings().cleanExtractedNames.value());
}

TEST_F(AppSettingsTest, EverySettingSurvivesARestart)
{
    for (Setting<bool>* flag : plainFlags(settings()))
        flag->set(true);
    settings().maxConcurrentDownloads.set(7);
    settings().maxDownloadSpeedKBps.set(qint64{1} << 40);
    settings().downloadFolderPath.set(u"/data/caffè"_s);
    settings().extractionFolderPath.set(u"/data/out"_s);
    settings().language.set(AppLanguage::italian);
    restart();
    for (const Setting<bool>* flag : plainFlags(settings()))
        EXPECT_TRUE(flag->value());
    EXPECT_EQ(settings().maxConcurrentDownloads.value(), 7);
    EXPECT_EQ(settings().maxDownloadSpeedKBps.value(), qint64{1} << 40);
    EXPECT_EQ(settings().downloadFolderPath.value(), u"/data/caffè");
    EXPECT_EQ(settings().extractionFolderPath.value(), u"/data/out");
    EXPECT_EQ(settings().language.value(), AppLanguage::italian);
}

TEST_F(AppSettingsTest, EachSettingIsStoredUnderItsKeyInItsType)
{
    settings().autoExtract.set(false);
    settings().deleteArchiveAfterExtract.set(true);
    settings().trashSourceFolderAfterExtract.set(true);
    settings().removeGroupAfterExtract.set(true);
    settings().downloadRevFiles.set(true);
    settings().cleanExtractedNames.set(false);
    settings().extractedNamesDotsToSpaces.set(true);
    settings().autoStartDownloads.set(true);
    settings().maxConcurrentDownloads.set(5);
    settings().maxDownloadSpeedKBps.set(1000);
    settings().downloadFolderPath.set(u"/a"_s);
    settings().useCustomExtractionFolder.set(true);
    settings().extractionFolderPath.set(u"/b"_s);
    settings().language.set(AppLanguage::italian);
    const QJsonObject expected = {{u"autoExtract"_s, false},
                                  {u"deleteArchiveAfterExtract"_s, true},
                                  {u"trashSourceFolderAfterExtract"_s, true},
                                  {u"removeGroupAfterExtract"_s, true},
                                  {u"downloadRevFiles"_s, true},
                                  {u"cleanExtractedNames"_s, false},
                                  {u"extractedNamesDotsToSpaces"_s, true},
                                  {u"autoStartDownloads"_s, true},
                                  {u"maxConcurrentDownloads"_s, 5},
                                  {u"maxDownloadSpeedKBps"_s, 1000},
                                  {u"downloadFolderPath"_s, u"/a"_s},
                                  {u"useCustomExtractionFolder"_s, true},
                                  {u"extractionFolderPath"_s, u"/b"_s},
                                  {u"appLanguage"_s, u"Italiano"_s}};
    EXPECT_EQ(stored(), expected);
}

TEST_F(AppSettingsTest, NumbersAreTakenAsTheyStandAndNotClamped)
{
    restartWith(R"({"maxConcurrentDownloads": 0, "maxDownloadSpeedKBps": -5})");
    EXPECT_EQ(settings().maxConcurrentDownloads.value(), 0);
    EXPECT_EQ(settings().maxDownloadSpeedKBps.value(), -5);
    restartWith(R"({"maxConcurrentDownloads": 1000000})");
    EXPECT_EQ(settings().maxConcurrentDownloads.value(), 1'000'000);
}

TEST_F(AppSettingsTest, OnlyTheExactItalianNameGivesItalian)
{
    const std::vector<std::pair<QByteArray, AppLanguage>> rows = {{R"("Italiano")", AppLanguage::italian},
                                                                  {R"("English")", AppLanguage::english},
                                                                  {R"("Italian")", AppLanguage::english},
                                                                  {R"("italiano")", AppLanguage::english},
                                                                  {R"("Italiano ")", AppLanguage::english},
                                                                  {R"("")", AppLanguage::english},
                                                                  {"1", AppLanguage::english},
                                                                  {"null", AppLanguage::english}};
    for (const auto& [value, language] : rows) {
        restartWith("{\"appLanguage\": " + value + "}");
        EXPECT_EQ(settings().language.value(), language) << value.toStdString();
    }
}

TEST_F(AppSettingsTest, ACustomExtractionFolderCountsEvenWhenItsPathIsEmpty)
{
    settings().useCustomExtractionFolder.set(true);
    EXPECT_EQ(settings().effectiveExtractionFolder(), downloads);
    settings().extractionFolderPath.set(QString());
    ASSERT_TRUE(settings().effectiveExtractionFolder());
    EXPECT_EQ(*settings().effectiveExtractionFolder(), u"");
}

TEST_F(AppSettingsTest, TheExtractionFolderIsKeptWhileItIsNotUsed)
{
    settings().extractionFolderPath.set(u"/data/out"_s);
    settings().useCustomExtractionFolder.set(true);
    settings().useCustomExtractionFolder.set(false);
    EXPECT_EQ(settings().effectiveExtractionFolder(), std::nullopt);
    restart();
    EXPECT_EQ(settings().extractionFolderPath.value(), u"/data/out");
    settings().useCustomExtractionFolder.set(true);
    EXPECT_EQ(settings().effectiveExtractionFolder(), u"/data/out"_s);
}

TEST_F(AppSettingsTest, ValuesOfTheWrongTypeGiveTheDefault)
{
    for (const QByteArray value : {"\"no\"", "2", "0.5", "[]", "{}", "null"}) {
        restartWith("{\"autoExtract\": " + value + ", \"cleanExtractedNames\": " + value + "}");
        EXPECT_TRUE(settings().autoExtract.value()) << value.toStdString();
        EXPECT_TRUE(settings().cleanExtractedNames.value()) << value.toStdString();
    }
    for (const QByteArray value : {"\"5\"", "true", "2.5", "1e300", "[]", "{}", "null"}) {
        restartWith("{\"maxConcurrentDownloads\": " + value + ", \"maxDownloadSpeedKBps\": " + value + "}");
        EXPECT_EQ(settings().maxConcurrentDownloads.value(), 3) << value.toStdString();
        EXPECT_EQ(settings().maxDownloadSpeedKBps.value(), 0) << value.toStdString();
    }
    for (const QByteArray value : {"5", "true", "[]", "{}", "null"}) {
        restartWith("{\"downloadFolderPath\": " + value + ", \"extractionFolderPath\": " + value + "}");
        EXPECT_EQ(settings().downloadFolderPath.value(), downloads) << value.toStdString();
        EXPECT_EQ(settings().extractionFolderPath.value(), downloads) << value.toStdString();
    }
}

TEST_F(AppSettingsTest, AnEmptyDownloadFolderIsNotTheRootOfTheDisk)
{
    restartWith(R"({"downloadFolderPath": ""})");
    EXPECT_EQ(settings().downloadFolderPath.value(), downloads);
}

TEST_F(AppSettingsTest, SettingTheSameValueAgainNotifiesAndWritesAgain)
{
    int changes = 0;
    QObject::connect(&settings(), &AppSettings::changed, &settings(), [&changes] { ++changes; });
    settings().maxConcurrentDownloads.set(3);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(stored().value(u"maxConcurrentDownloads"_s).toInt(), 3);
    ASSERT_TRUE(QFile::remove(sandbox.path(u"preferences.json"_s)));
    settings().maxConcurrentDownloads.set(3);
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(stored().value(u"maxConcurrentDownloads"_s).toInt(), 3);
}

TEST_F(AppSettingsTest, TheChangesThatOthersActOnAreToldApart)
{
    std::vector<bool> revs;
    int speeds = 0;
    int languages = 0;
    QObject::connect(&settings(), &AppSettings::downloadRevFilesSet, &settings(),
                     [&revs](bool value) { revs.push_back(value); });
    QObject::connect(&settings(), &AppSettings::maxDownloadSpeedSet, &settings(), [&speeds] { ++speeds; });
    QObject::connect(&settings(), &AppSettings::languageSet, &settings(), [&languages] { ++languages; });
    settings().autoExtract.set(true);
    settings().maxConcurrentDownloads.set(1);
    settings().downloadFolderPath.set(downloads);
    EXPECT_TRUE(revs.empty());
    EXPECT_EQ(speeds + languages, 0);
    settings().downloadRevFiles.set(true);
    settings().downloadRevFiles.set(false);
    settings().maxDownloadSpeedKBps.set(5);
    settings().language.set(AppLanguage::italian);
    EXPECT_EQ(revs, (std::vector<bool>{true, false}));
    EXPECT_EQ(speeds, 1);
    EXPECT_EQ(languages, 1);
}

TEST_F(AppSettingsTest, AValueIsAlreadyTheNewOneWhenItsChangeIsHeard)
{
    qint64 heard = 0;
    QObject::connect(&settings(), &AppSettings::changed, &settings(),
                     [this, &heard] { heard = settings().maxConcurrentDownloads.value(); });
    settings().maxConcurrentDownloads.set(9);
    EXPECT_EQ(heard, 9);
}

TEST_F(AppSettingsTest, UnknownKeysAreKept)
{
    restartWith(R"({"fromANewerVersion": [1, 2]})");
    settings().autoExtract.set(true);
    EXPECT_EQ(stored().value(u"fromANewerVersion"_s).toArray().size(), 2);
}

} // namespace
} // namespace vormel
