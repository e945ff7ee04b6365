#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"
#include "fixtures/PlainRenames.h"
#include "fixtures/RealTools.h"
#include "text/FileName.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

const QByteArray contents = noise(150'000);

/// A real set of three volumes that comes down from a server, and the real tools.
class SetOnDiskTest : public ::testing::Test, protected ArchiveStep
{
protected:
    void makeSet(int recoveryVolumes = 0)
    {
        for (const char* const tool : {"rar", "unrar"})
            engine.tools.addReal(QString::fromLatin1(tool), u"/usr/bin/"_s + QString::fromLatin1(tool));
        RarSet set;
        set.files = {{u"film.mkv"_s, contents}};
        set.volumeBytes = 65'000;
        set.recoveryVolumes = recoveryVolumes;
        volumes = makeRarSet(engine.sandbox.path(u"server"_s), set);
        ASSERT_EQ(volumes.size(), 3 + recoveryVolumes);
    }
    /// The volume of that number under another set's name.
    [[nodiscard]] QString link(const QString& base, qsizetype number) const
    {
        const QString suffix = QFileInfo(volumes[number]).fileName().mid(3);
        return u"http://h/"_s + base + suffix;
    }
    /// What the running transfer asks for.
    void deliver(const QByteArray& bytes)
    {
        engine.http.last().head(200, {{"Content-Length", QByteArray::number(bytes.size())}});
        engine.http.last().data(bytes);
        engine.http.last().finish();
        turnEventLoop();
    }
    ItemPtr fetch(const QString& url, qsizetype number)
    {
        ItemPtr item = engine.add(url);
        engine.manager().commands().startItems({item});
        turnEventLoop();
        QFile volume(volumes[number]);
        if (!volume.open(QFile::ReadOnly))
            qFatal("A volume is gone");
        deliver(volume.readAll());
        return item;
    }
    /// The whole set, with its parts known before the first has come.
    std::vector<ItemPtr> fetchSet(const QString& base)
    {
        std::vector<ItemPtr> items;
        for (qsizetype i = 0; i < volumes.size(); ++i)
            items.push_back(engine.add(link(base, i)));
        for (qsizetype i = volumes.size() - 1; i >= 0; --i)
            fetchAgain(items[static_cast<std::size_t>(i)], i);
        return items;
    }
    void fetchAgain(const ItemPtr& item, qsizetype number)
    {
        engine.manager().commands().startItems({item});
        turnEventLoop();
        if (item->status() != DownloadStatus::downloading)
            return;
        QFile volume(volumes[number]);
        if (!volume.open(QFile::ReadOnly))
            qFatal("A volume is gone");
        deliver(volume.readAll());
    }

    QStringList volumes;
    const QTemporaryDir far{u"/dev/shm/vormel-far-XXXXXX"_s};
};

/// Far above what a file system takes as one name.
const QString longBase = u"電影"_s.repeated(60);

#define VORMEL_NEEDS_RAR()                                                                                             \
    VORMEL_NEEDS_TOOL("rar");                                                                                          \
    VORMEL_NEEDS_TOOL("unrar")

#define VORMEL_NEEDS_TWO_FILE_SYSTEMS()                                                                                \
    if (!far.isValid() || QStorageInfo(far.path()).device() == QStorageInfo(engine.sandbox.root()).device())           \
    GTEST_SKIP() << "there is only one file system to write to"

} // namespace

TEST_F(SetOnDiskTest, IsUnpackedUnderANameTooLongForTheDisk)
{
    VORMEL_NEEDS_RAR();
    makeSet(1);
    const std::vector<ItemPtr> items = fetchSet(longBase);
    ASSERT_TRUE(reaches(items[0], ExtractionStatus::done)) << items[0]->extractionStatus().message().toStdString();
    const QDir folder = QFileInfo(*items[0]->localPath()).dir();
    EXPECT_NE(folder.dirName(), longBase);
    QFile film(folder.filePath(u"film.mkv"_s));
    ASSERT_TRUE(film.open(QFile::ReadOnly));
    EXPECT_EQ(film.readAll(), contents);
    // The recovery volume is of no more use, and found to be so.
    EXPECT_EQ(engine.manager().item(items[3]->id()), nullptr);
}

TEST_F(SetOnDiskTest, IsRepairedUnderANameTooLongForTheDisk)
{
    VORMEL_NEEDS_RAR();
    makeSet(1);
    damageFile(volumes[1], 30'000, 2'000);
    std::vector<ItemPtr> items;
    for (qsizetype i = 0; i < volumes.size(); ++i)
        items.push_back(engine.add(link(longBase, i)));
    for (qsizetype i = 0; i < 3; ++i)
        fetchAgain(items[static_cast<std::size_t>(i)], i);
    ASSERT_TRUE(waitUntil([&] { return items[3]->status() == DownloadStatus::downloading; }));
    QFile rev(volumes[3]);
    ASSERT_TRUE(rev.open(QFile::ReadOnly));
    deliver(rev.readAll());
    ASSERT_TRUE(reaches(items[0], ExtractionStatus::done)) << items[0]->extractionStatus().message().toStdString();
}

TEST_F(SetOnDiskTest, FindsItsCustomNameUnderANameTooLongForTheDisk)
{
    VORMEL_NEEDS_RAR();
    makeSet();
    engine.manager().renameGroup(longBase, u"My film"_s);
    const std::vector<ItemPtr> items = fetchSet(longBase);
    ASSERT_TRUE(reaches(items[0], ExtractionStatus::done));
    EXPECT_TRUE(engine.sandbox.exists(u"Downloads/My film/My film.mkv"_s));
}

TEST_F(SetOnDiskTest, IsUnpackedUnderANameThatTheDiskTakesOnlyChanged)
{
    VORMEL_NEEDS_RAR();
    makeSet();
    const std::vector<ItemPtr> items = fetchSet(u"a%0Ab"_s);
    ASSERT_TRUE(reaches(items[0], ExtractionStatus::done));
    EXPECT_EQ(items[0]->filename(), u"a\nb.part1.rar");
}

TEST_F(SetOnDiskTest, IsUnpackedWhereItsFirstVolumeLies)
{
    VORMEL_NEEDS_RAR();
    makeSet();
    const std::vector<ItemPtr> items{engine.add(link(u"set"_s, 0)), engine.add(link(u"set"_s, 1)),
                                     engine.add(link(u"set"_s, 2))};
    fetchAgain(items[1], 1);
    engine.settings().downloadFolderPath.set(engine.sandbox.path(u"new"_s));
    fetchAgain(items[0], 0);
    engine.settings().downloadFolderPath.set(engine.sandbox.path(u"newest"_s));
    fetchAgain(items[2], 2);
    ASSERT_TRUE(reaches(items[0], ExtractionStatus::done)) << items[0]->extractionStatus().message().toStdString();
    EXPECT_EQ(engine.sandbox.read(u"new/set/film.mkv"_s), contents);
    for (const ItemPtr& item : items)
        EXPECT_EQ(QFileInfo(*item->localPath()).path(), engine.sandbox.path(u"new/set"_s));
    EXPECT_TRUE(engine.sandbox.files(u"Downloads"_s).isEmpty());
    EXPECT_TRUE(engine.sandbox.files(u"newest"_s).isEmpty());
    engine.restart(true);
    EXPECT_EQ(engine.manager().items().at(1)->localPath(), engine.sandbox.path(u"new/set/set.part2.rar"_s));
}

TEST_F(SetOnDiskTest, BringsTheOneFileOfTwoLinksForBothOfThem)
{
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const QString path = engine.sandbox.write(u"elsewhere/m.part2.rar"_s, "x");
    const auto mirrors = engine.add({u"http://a/m.part2.rar"_s, u"http://b/m.part2.rar"_s});
    for (const ItemPtr& mirror : mirrors) {
        mirror->setLocalPath(path);
        mirror->setStatus(DownloadStatus::completed);
    }
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::failed));
    for (const ItemPtr& mirror : mirrors)
        EXPECT_EQ(mirror->localPath(), engine.sandbox.path(u"Downloads/m/m.part2.rar"_s));
}

TEST_F(SetOnDiskTest, LeavesAVolumeWhereItIsWhenItsPlaceIsTaken)
{
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const ItemPtr second = engine.add(u"http://h/m.part2.rar"_s);
    second->setLocalPath(engine.sandbox.write(u"elsewhere/m.part2.rar"_s, "ours"));
    second->setStatus(DownloadStatus::completed);
    engine.sandbox.write(u"Downloads/m/m.part2.rar"_s, "the user's own");
    run(first);
    ASSERT_TRUE(reaches(first, ExtractionStatus::failed));
    EXPECT_EQ(engine.sandbox.read(u"Downloads/m/m.part2.rar"_s), "the user's own");
    EXPECT_EQ(engine.sandbox.read(u"elsewhere/m.part2.rar"_s), "ours");
}

TEST_F(SetOnDiskTest, TheFreshRecoveryVolumeTakesThePlaceOfTheOldOneOnAnyFileSystem)
{
    engine.settings().autoExtract.set(false);
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    engine.settings().downloadFolderPath.set(engine.sandbox.path(u"new"_s));
    for (const bool hasFlags : {true, false}) {
        std::optional<PlainRenames> plain;
        if (!hasFlags)
            plain.emplace();
        engine.sandbox.write(u"Downloads/m/m.part1.rev"_s, "old");
        const ItemPtr rev = engine.add(u"http://h/m.part1.rev"_s);
        engine.manager().commands().retryWithRevFiles({first});
        turnEventLoop();
        deliver("new");
        EXPECT_EQ(rev->localPath(), engine.sandbox.path(u"Downloads/m/m.part1.rev"_s));
        EXPECT_EQ(engine.sandbox.read(u"Downloads/m/m.part1.rev"_s), "new");
        engine.manager().commands().removeItems({rev->id()});
    }
    EXPECT_EQ(engine.sandbox.files(u"Trash"_s).size(), 2);
    EXPECT_TRUE(engine.sandbox.files(u"new"_s).isEmpty());
}

TEST_F(SetOnDiskTest, KeepsARecoveryVolumeWhoseSuccessorCannotGetThere)
{
    VORMEL_NEEDS_TWO_FILE_SYSTEMS();
    QFile old(far.filePath(u"m.part1.rev"_s));
    ASSERT_TRUE(old.open(QFile::WriteOnly) && old.write("old") == 3);
    old.close();
    engine.settings().autoExtract.set(false);
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    first->setLocalPath(far.filePath(u"m.part1.rar"_s));
    const ItemPtr rev = engine.add(u"http://h/m.part1.rev"_s);
    engine.manager().commands().retryWithRevFiles({first});
    turnEventLoop();
    deliver("new");
    ASSERT_EQ(rev->status(), DownloadStatus::completed);
    EXPECT_EQ(engine.sandbox.read(u"Downloads/m/m.part1.rev"_s), "new");
    EXPECT_TRUE(QFile::exists(old.fileName()));
}

TEST_F(SetOnDiskTest, FetchesAVolumeAgainWhileItIsBroughtFromAnotherDisk)
{
    VORMEL_NEEDS_TWO_FILE_SYSTEMS();
    unpackerMakes("film.mkv");
    const ItemPtr first = onDisk(u"m.part1.rar"_s);
    const ItemPtr second = engine.add(u"http://h/m.part2.rar"_s);
    QFile old(far.filePath(u"m.part2.rar"_s));
    ASSERT_TRUE(old.open(QFile::WriteOnly) && old.resize(qint64{64} << 20));
    second->setLocalPath(old.fileName());
    second->setStatus(DownloadStatus::completed);
    run(first);
    const QDir set(engine.sandbox.path(u"Downloads/m"_s));
    ASSERT_TRUE(
        waitUntil([&] { return set.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size() > 1; }));
    engine.manager().commands().redownloadItem(*second);
    ASSERT_TRUE(waitUntil([&] { return first->extractionStatus() == ExtractionStatus::idle; }));
    turnEventLoop();
    deliver("new");
    ASSERT_TRUE(reaches(first, ExtractionStatus::done));
    EXPECT_EQ(set.entryList(QDir::Files | QDir::Hidden),
              (QStringList{u"film.mkv"_s, u"m.part1.rar"_s, u"m.part2.rar"_s}));
    EXPECT_EQ(engine.sandbox.read(u"Downloads/m/m.part2.rar"_s), "new");
    EXPECT_FALSE(QFile::exists(old.fileName()));
}
