#include "model/DownloadItem.h"

#include "fixtures/EngineOnScript.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

DownloadItem itemOf(const char* url)
{
    return {fixtures::link(QString::fromUtf8(url)), ItemId::make()};
}

TEST(DownloadItem, IsNamedByTheLastPathComponentOfItsLink)
{
    EXPECT_EQ(itemOf("http://a/x/the%20file.zip?q=1").filename(), u"the file.zip");
    EXPECT_EQ(itemOf("http://a/x/").filename(), u"x");
}

TEST(DownloadItem, IsNamedDownloadWithoutAPathAndThatCountsAsNameless)
{
    for (const char* url : {"http://a", "http://a/", "http://a/?f=x.zip"}) {
        EXPECT_EQ(itemOf(url).filename(), u"download") << url;
        EXPECT_TRUE(isNamelessFile(itemOf(url).filename())) << url;
    }
    EXPECT_TRUE(isNamelessFile(u""));
    EXPECT_FALSE(isNamelessFile(u"Download"));
    EXPECT_FALSE(isNamelessFile(u"download.zip"));
}

TEST(DownloadItem, ShowsTheHostAsItWasPasted)
{
    EXPECT_EQ(itemOf("http://u@Files.EXAMPLE:81/x").hostName(), u"Files.EXAMPLE");
    EXPECT_EQ(itemOf("http:///x").hostName(), u"unknown");
    EXPECT_EQ(itemOf("mailto:me").hostName(), u"unknown");
}

TEST(DownloadItem, BeginsQueuedWithNothingKnown)
{
    const DownloadItem item = itemOf("http://a/x");
    EXPECT_TRUE(item.status() == DownloadStatus::queued);
    EXPECT_TRUE(item.extractionStatus() == ExtractionStatus::idle);
    EXPECT_EQ(item.resolvedURL(), std::nullopt);
    EXPECT_EQ(item.localPath(), std::nullopt);
    EXPECT_EQ(item.bytesReceived(), 0);
    EXPECT_EQ(item.totalBytes(), 0);
}

TEST(DownloadItem, WritesItsSpeedOnlyWhileThereIsOne)
{
    DownloadItem item = itemOf("http://a/x");
    EXPECT_EQ(item.speedText(), u"");
    item.setSpeedBytesPerSec(1.5 * 1024 * 1024);
    EXPECT_EQ(item.speedText(), u"1.5 MB/s");
    item.setSpeedBytesPerSec(-5);
    EXPECT_EQ(item.speedText(), u"");
    item.setSpeedBytesPerSec(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(item.speedText(), u"");
    item.setSpeedBytesPerSec(std::numeric_limits<double>::infinity());
    EXPECT_EQ(item.speedText(), u"7.98 EB/s");
}

TEST(DownloadItem, WritesItsSizeOnlyWhenItIsKnown)
{
    DownloadItem item = itemOf("http://a/x");
    EXPECT_EQ(item.sizeText(), u"");
    item.setTotalBytes(-1);
    EXPECT_EQ(item.sizeText(), u"");
    item.setTotalBytes(1);
    EXPECT_EQ(item.sizeText(), u"1 byte");
    item.setTotalBytes(qint64{5} * 1024 * 1024 * 1024);
    EXPECT_EQ(item.sizeText(), u"5 GB");
}

class RecordingWatcher final : public ItemWatcher
{
public:
    void itemChanged(DownloadItem& item, ItemField field) override
    {
        fields.push_back(field);
        names.push_back(item.filename());
    }

    std::vector<ItemField> fields;
    std::vector<QString> names;
};

struct Change
{
    ItemField field;
    std::function<void(DownloadItem&)> make;
};

std::vector<Change> changes()
{
    const WallTime time = WallTime(std::chrono::hours(1));
    return {
        {ItemField::resolvedUrl, [](DownloadItem& item) { item.setResolvedURL(fixtures::link(u"http://b/y"_s)); }},
        {ItemField::filename, [](DownloadItem& item) { item.setFilename(u"y"_s); }},
        {ItemField::status, [](DownloadItem& item) { item.setStatus(DownloadStatus::failure(u"m"_s)); }},
        {ItemField::progress, [](DownloadItem& item) { item.setProgress(0.5); }},
        {ItemField::bytesReceived, [](DownloadItem& item) { item.setBytesReceived(5); }},
        {ItemField::totalBytes, [](DownloadItem& item) { item.setTotalBytes(10); }},
        {ItemField::speed, [](DownloadItem& item) { item.setSpeedBytesPerSec(1); }},
        {ItemField::localPath, [](DownloadItem& item) { item.setLocalPath(u"/d/y"_s); }},
        {ItemField::extractionStatus, [](DownloadItem& item) { item.setExtractionStatus(ExtractionStatus::done); }},
        {ItemField::extractionProgress, [](DownloadItem& item) { item.setExtractionProgress(1); }},
        {ItemField::resolvedAt, [time](DownloadItem& item) { item.setResolvedAt(time); }},
        {ItemField::recoveryCountdown, [](DownloadItem& item) { item.setRecoveryCountdown(3); }},
        {ItemField::extractionStartedAt, [time](DownloadItem& item) { item.setExtractionStartedAt(time); }},
    };
}

TEST(DownloadItem, TellsItsWatcherEachChangeOnceAndNoEqualOne)
{
    DownloadItem item = itemOf("http://a/x");
    RecordingWatcher watcher;
    item.setWatcher(&watcher);
    for (const Change& change : changes()) {
        watcher.fields.clear();
        change.make(item);
        EXPECT_EQ(watcher.fields, std::vector{change.field});
        change.make(item);
        EXPECT_EQ(watcher.fields.size(), 1U) << "an equal value was told as a change";
    }
}

TEST(DownloadItem, IsAlreadyChangedWhenItsWatcherHears)
{
    DownloadItem item = itemOf("http://a/x");
    RecordingWatcher watcher;
    item.setWatcher(&watcher);
    item.setFilename(u"new"_s);
    EXPECT_EQ(watcher.names, std::vector{u"new"_s});
}

TEST(DownloadItem, TellsNobodyAfterTheWatchEnds)
{
    DownloadItem item = itemOf("http://a/x");
    RecordingWatcher watcher;
    item.setWatcher(&watcher);
    item.setWatcher(nullptr);
    item.setProgress(1);
    EXPECT_TRUE(watcher.fields.empty());
}

TEST(ItemId, IsWrittenInCapitalsWithoutBraces)
{
    const QUuid uuid(u"{01234567-89ab-cdef-0123-456789abcdef}"_s);
    EXPECT_EQ(ItemId(uuid).toString(), u"01234567-89AB-CDEF-0123-456789ABCDEF");
    EXPECT_TRUE(ItemId().isNull());
    EXPECT_FALSE(ItemId::make() == ItemId::make());
}

TEST(DownloadItem, LosesItsVerificationWithTheNextChangeOfEitherStatus)
{
    DownloadItem item = itemOf("http://a/x");
    const VerificationResult sound{VerificationResult::sound};
    item.setVerification(sound);
    item.setStatus(item.status());
    item.setExtractionStatus(item.extractionStatus());
    item.setExtractionProgress(0.5);
    item.setBytesReceived(7);
    EXPECT_EQ(item.verification(), sound);
    item.setStatus(DownloadStatus::completed);
    EXPECT_EQ(item.verification(), VerificationResult());
    item.setVerification(sound);
    item.setExtractionStatus(ExtractionStatus::extracting);
    EXPECT_EQ(item.verification(), VerificationResult());
}

} // namespace
} // namespace vormel
