#include "engine/queue/QueueFile.h"

#include "engine/SavedQueue.h"
#include "platform/storage/WholeFile.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <gmock/gmock.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class QueueFileTest : public SavedQueue
{};

} // namespace

TEST_F(QueueFileTest, WritesTheKeysInTheirOrder)
{
    const ItemPtr item = engine.add(u"http://Host.Example/a.bin"_s);
    const QString path = engine.sandbox.write(u"Downloads/done.bin"_s, "x");
    item->setStatus(DownloadStatus::failure(u"why \"so\"\n"_s));
    item->setResolvedURL(link(u"http://cdn/a.bin"_s));
    item->setResolvedAt(engine.clock.wallNow());
    item->setLocalPath(path);
    item->setExtractionStatus(ExtractionStatus::failure(u"e"_s));
    engine.manager().saveQueue();
    engine.flush();
    const QByteArray json = engine.sandbox.read(queueFile);
    qsizetype at = -1;
    for (const char* key :
         {"[{\"id\":\"", "\"originalURL\":\"http://Host.Example/a.bin\"", "\"filename\":\"a.bin\"",
          "\"statusType\":\"failed\"", R"("statusMessage":"why \"so\"\n")", "\"progress\":", "\"bytesReceived\":0",
          "\"totalBytes\":0", "\"resolvedURL\":\"http://cdn/a.bin\"", "\"resolvedAt\":", "\"localPath\":\"file:///",
          "\"hostName\":\"Host.Example\"", "\"extractionStatusType\":\"failed\"", "\"extractionError\":\"e\"}]"}) {
        const qsizetype next = json.indexOf(key, at + 1);
        EXPECT_GT(next, at) << key << " in " << json.constData();
        at = next;
    }
    EXPECT_TRUE(json.contains(item->id().toString().toLatin1()));
    EXPECT_EQ(item->id().toString(), item->id().toString().toUpper());
}

TEST_F(QueueFileTest, WritesWhateverFieldHasChangedSinceTheLastSave)
{
    using Change = void (*)(DownloadItem&);
    const Change changes[] = {
        [](DownloadItem& item) { item.setFilename(u"b.bin"_s); },
        [](DownloadItem& item) { item.setStatus(DownloadStatus::stopped); },
        [](DownloadItem& item) { item.setProgress(0.5); },
        [](DownloadItem& item) { item.setBytesReceived(5); },
        [](DownloadItem& item) { item.setTotalBytes(10); },
        [](DownloadItem& item) { item.setResolvedURL(link(u"http://cdn/a"_s)); },
        [](DownloadItem& item) { item.setResolvedAt(WallTime(std::chrono::hours(24))); },
        [](DownloadItem& item) { item.setExtractionStatus(ExtractionStatus::done); },
        [](DownloadItem& item) {
            item.setPartPlace(PartPlace{u"/x/a.bin.download"_s, false});
        },
        [](DownloadItem& item) { item.setLocalPath(u"/"_s); },
    };
    const ItemPtr item = engine.add(u"http://h/a.bin"_s);
    QJsonArray before = saved();
    int number = 0;
    for (const Change change : changes) {
        change(*item);
        const QJsonArray after = saved();
        EXPECT_NE(after, before) << number++;
        before = after;
    }
}

TEST_F(QueueFileTest, StoresDatesInSecondsSince2001)
{
    const ItemPtr item = engine.add(u"http://h/a.bin"_s);
    item->setResolvedURL(link(u"http://cdn/a"_s));
    item->setResolvedAt(WallTime(std::chrono::seconds(978307200 + 3600)));
    EXPECT_DOUBLE_EQ(saved()[0][u"resolvedAt"_s].toDouble(), 3600.0);
    engine.restart();
    EXPECT_EQ(only().resolvedAt(), WallTime(std::chrono::seconds(978307200 + 3600)));
}

TEST_F(QueueFileTest, LeavesOutWhatHasNoValue)
{
    engine.add(u"http://h/a.bin"_s);
    const QJsonObject stored = saved()[0].toObject();
    EXPECT_THAT(stored.keys(), ::testing::UnorderedElementsAre(
                                   u"id"_s, u"originalURL"_s, u"filename"_s, u"statusType"_s, u"progress"_s,
                                   u"bytesReceived"_s, u"totalBytes"_s, u"hostName"_s, u"extractionStatusType"_s));
}

TEST_F(QueueFileTest, PausesWhateverWasGoingOn)
{
    const auto items =
        engine.add({u"http://h/1"_s, u"http://h/2"_s, u"http://h/3"_s, u"http://h/4"_s, u"http://h/5"_s});
    items[0]->setStatus(DownloadStatus::queued);
    items[1]->setStatus(DownloadStatus::resolving);
    items[2]->setStatus(DownloadStatus::downloading);
    items[3]->setStatus(DownloadStatus::paused);
    items[4]->setStatus(DownloadStatus::stopped);
    const QJsonArray stored = saved();
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(stored[i][u"statusType"_s], u"paused"_s) << i;
    EXPECT_EQ(stored[4][u"statusType"_s], u"stopped"_s);
}

TEST_F(QueueFileTest, ForgetsPlaceholdersOfContainers)
{
    const ItemPtr item = engine.add(u"http://h/container"_s);
    item->setStatus(DownloadStatus::expanding);
    EXPECT_TRUE(saved().isEmpty());
}

TEST_F(QueueFileTest, BringsARunningExtractionBackIdle)
{
    const auto items = engine.add({u"http://h/1"_s, u"http://h/2"_s, u"http://h/3"_s});
    items[0]->setExtractionStatus(ExtractionStatus::repairing);
    items[1]->setExtractionStatus(ExtractionStatus::extracting);
    items[2]->setExtractionStatus(ExtractionStatus::done);
    engine.restart();
    EXPECT_EQ(engine.manager().items()[0]->extractionStatus(), ExtractionStatus::idle);
    EXPECT_EQ(engine.manager().items()[1]->extractionStatus(), ExtractionStatus::idle);
    EXPECT_EQ(engine.manager().items()[2]->extractionStatus(), ExtractionStatus::done);
}

TEST_F(QueueFileTest, LeavesOutALocalPathWhereNothingStands)
{
    const ItemPtr item = engine.add(u"http://h/a.bin"_s);
    item->setLocalPath(engine.sandbox.path(u"Downloads/a.bin"_s));
    EXPECT_FALSE(saved()[0].toObject().contains(u"localPath"_s));
    EXPECT_TRUE(item->localPath());
    engine.sandbox.write(u"Downloads/a.bin"_s, "x");
    EXPECT_TRUE(saved()[0].toObject().contains(u"localPath"_s));
}

TEST_F(QueueFileTest, KeepsALocalPathWithUnusualLetters)
{
    const ItemPtr item = engine.add(u"http://h/a.bin"_s);
    const QString path = engine.sandbox.write(u"Downloads/a #%41 ü?.bin"_s, "x");
    item->setStatus(DownloadStatus::completed);
    item->setLocalPath(path);
    engine.restart();
    EXPECT_EQ(only().localPath(), path);
}

TEST_F(QueueFileTest, GivesAnEmptyQueueAtTheFirstStart)
{
    EXPECT_TRUE(engine.manager().items().empty());
    EXPECT_FALSE(engine.sandbox.exists(queueFile + u".unreadable"_s));
}

TEST_F(QueueFileTest, TakesTheNumbersOfAPausedItemFromItsPartFile)
{
    engine.sandbox.write(u"Downloads/x.bin.download"_s, QByteArray(40, 'x'));
    restoreFrom(QJsonArray{record(u"http://h/x.bin"_s, u"paused"_s)});
    EXPECT_EQ(only().status(), DownloadStatus::paused);
    EXPECT_EQ(only().bytesReceived(), 40);
    EXPECT_DOUBLE_EQ(only().progress(), 0.4);
    EXPECT_EQ(only().hostName(), u"Host.Example"_s);
}

TEST_F(QueueFileTest, KeepsTheRecordsNumbersWithoutAPartFile)
{
    engine.sandbox.write(u"Downloads/x.bin.download"_s, "");
    restoreFrom(QJsonArray{record(u"http://h/x.bin"_s, u"paused"_s)});
    EXPECT_EQ(only().bytesReceived(), 25);
    EXPECT_DOUBLE_EQ(only().progress(), 0.25);
}

TEST_F(QueueFileTest, KeepsTheNumbersOfAStoppedItem)
{
    engine.sandbox.write(u"Downloads/x.bin.download"_s, QByteArray(40, 'x'));
    restoreFrom(QJsonArray{record(u"http://h/x.bin"_s, u"stopped"_s)});
    EXPECT_EQ(only().status(), DownloadStatus::stopped);
    EXPECT_EQ(only().bytesReceived(), 25);
}

TEST_F(QueueFileTest, HasNoProgressWithoutATotal)
{
    engine.sandbox.write(u"Downloads/x.bin.download"_s, QByteArray(40, 'x'));
    QJsonObject unknown = record(u"http://h/x.bin"_s, u"paused"_s);
    unknown[u"totalBytes"_s] = 0;
    restoreFrom(QJsonArray{unknown});
    EXPECT_EQ(only().bytesReceived(), 40);
    EXPECT_DOUBLE_EQ(only().progress(), 0.0);
}

TEST_F(QueueFileTest, ReadsAFailureWithoutAMessage)
{
    restoreFrom(QJsonArray{record(u"http://h/x.bin"_s, u"failed"_s)});
    EXPECT_EQ(only().status(), DownloadStatus::failure(QString()));
}

TEST_F(QueueFileTest, ReadsAnUnknownStatusAsPaused)
{
    restoreFrom(QJsonArray{record(u"http://h/x.bin"_s, u"levitating"_s)});
    EXPECT_EQ(only().status(), DownloadStatus::paused);
}

TEST_F(QueueFileTest, KeepsTheFirstOfTwoRecordsOfOneLink)
{
    QJsonObject second = record(u"http://H/X.bin"_s, u"stopped"_s, QUuid::createUuid().toString(QUuid::WithoutBraces));
    restoreFrom(QJsonArray{record(u"http://h/x.bin"_s, u"completed"_s), second});
    ASSERT_EQ(engine.manager().items().size(), 1U);
    EXPECT_EQ(only().status(), DownloadStatus::completed);
}

TEST_F(QueueFileTest, NormalisesLinksAsItReadsThem)
{
    restoreFrom(QJsonArray{record(u"http://h/x.bin..."_s, u"paused"_s)});
    EXPECT_EQ(only().originalURL().absoluteString(), u"http://h/x.bin"_s);
}

TEST_F(QueueFileTest, StartsNothingAfterARestart)
{
    engine.settings().autoStartDownloads.set(true);
    restoreFrom(QJsonArray{record(u"http://h/x.bin"_s, u"paused"_s)});
    EXPECT_EQ(only().status(), DownloadStatus::paused);
    EXPECT_TRUE(engine.http.exchanges().empty());
}

TEST_F(QueueFileTest, IsOnDiskWithin100MillisecondsBesidesWhatTheDiskTakes)
{
    // The best of a few, as the machine may be busy with other tests.
    qint64 best = std::numeric_limits<qint64>::max();
    for (int i = 0; i < 5; ++i) {
        const QByteArray name = "file" + QByteArray::number(i) + ".bin";
        QElapsedTimer timer;
        timer.start();
        engine.add(u"http://h/"_s + QString::fromLatin1(name));
        ASSERT_TRUE(waitUntil([this, &name] { return engine.sandbox.read(queueFile).contains(name); }));
        const qint64 whole = timer.restart();
        ASSERT_TRUE(replaceWholeFile(engine.sandbox.path(u"another"_s), engine.sandbox.read(queueFile)));
        best = std::min(best, whole - timer.elapsed());
    }
    EXPECT_LT(best, 100);
}

TEST_F(QueueFileTest, BelongsToItsUserAlone)
{
    engine.add(u"http://h/x.bin"_s);
    engine.flush();
    struct stat facts = {};
    ASSERT_EQ(::stat(QFile::encodeName(engine.sandbox.path(queueFile)).constData(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777U, 0600U);
}

TEST_F(QueueFileTest, MakesAMissingFolderAtTheNextSave)
{
    QDir(engine.sandbox.path(u"data"_s)).removeRecursively();
    engine.add(u"http://h/x.bin"_s);
    engine.flush();
    EXPECT_TRUE(engine.sandbox.exists(queueFile));
}
