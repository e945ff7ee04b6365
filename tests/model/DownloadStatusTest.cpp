#include "model/DownloadStatus.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(DownloadStatus, TwoFailedOnesAreEqualWithEqualMessagesOnly)
{
    EXPECT_EQ(DownloadStatus::failure(u"a"_s), DownloadStatus::failure(u"a"_s));
    EXPECT_NE(DownloadStatus::failure(u"a"_s), DownloadStatus::failure(u"b"_s));
    EXPECT_NE(ExtractionStatus::failure(u"a"_s), ExtractionStatus::failure(u"b"_s));
}

TEST(DownloadStatus, IsComparedWithAKindWhateverItsMessage)
{
    EXPECT_TRUE(DownloadStatus::failure(u"a"_s) == DownloadStatus::failed);
    EXPECT_FALSE(DownloadStatus::failure(u"a"_s) == DownloadStatus::stopped);
    EXPECT_TRUE(ExtractionStatus::failure(u"a"_s) == ExtractionStatus::failed);
}

TEST(DownloadStatus, BeginsQueuedAndIdle)
{
    EXPECT_TRUE(DownloadStatus() == DownloadStatus::queued);
    EXPECT_TRUE(ExtractionStatus() == ExtractionStatus::idle);
    EXPECT_EQ(DownloadStatus().message(), u"");
}

TEST(DownloadStatus, HasALabelInBothLanguages)
{
    struct Row
    {
        DownloadStatus status;
        const char* english;
        const char* italian;
    };
    const std::vector<Row> rows = {
        {DownloadStatus::queued, "Queued", "In coda"},
        {DownloadStatus::resolving, "Resolving...", "Risoluzione..."},
        {DownloadStatus::expanding, "Reading container...", "Lettura container..."},
        {DownloadStatus::downloading, "Downloading", "Download"},
        {DownloadStatus::paused, "Paused", "In pausa"},
        {DownloadStatus::stopped, "Stopped", "Fermato"},
        {DownloadStatus::completed, "Completed", "Completato"},
        {DownloadStatus::failure(u"HTTP 404"_s), "Error: HTTP 404", "Errore: HTTP 404"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(statusLabel(row.status, AppLanguage::english).toStdString(), row.english);
        EXPECT_EQ(statusLabel(row.status, AppLanguage::italian).toStdString(), row.italian);
    }
}

} // namespace
} // namespace vormel
