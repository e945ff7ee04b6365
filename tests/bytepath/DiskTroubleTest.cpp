#include "fixtures/EngineOnNetwork.h"
#include "fixtures/EventLoop.h"
#include "sites/FileServer.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;
using vormel::sites::Answer;
using vormel::sites::FileServer;
using vormel::sites::PatternContent;

namespace {

constexpr qint64 fileSize = 2000000;

class DiskTrouble : public ::testing::Test
{
protected:
    void SetUp() override { server.serve("/file.bin", {.content = source}); }

    ItemPtr fetch()
    {
        const ItemPtr item = engine.add(QString::fromStdString(server.url("/file.bin")));
        engine.manager().commands().startAll();
        EXPECT_TRUE(engine.runToEnd(item));
        return item;
    }
    void retry(const ItemPtr& item)
    {
        item->setStatus(DownloadStatus::queued);
        engine.manager().processQueue();
        EXPECT_TRUE(engine.runToEnd(item));
    }
    [[nodiscard]] bool isWhole(const QString& path) const
    {
        QFile file(path);
        const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        return bytes.size() == fileSize &&
               !source.firstMismatch(0, std::span(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    }
    [[nodiscard]] QString downloaded() const { return engine.sandbox.path(u"Downloads/file.bin"_s); }

    PatternContent source{11, fileSize};
    FileServer server;
    EngineOnNetwork engine;
};

/// A file system of one megabyte, for as long as this lives.
class SmallDisk
{
public:
    explicit SmallDisk(QString folder)
        : m_folder(QFile::encodeName(folder))
    {
        QDir().mkpath(folder);
        m_isMounted = ::mount("tmpfs", m_folder.constData(), "tmpfs", 0, "size=1m") == 0;
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk()
    {
        if (m_isMounted)
            ::umount2(m_folder.constData(), MNT_DETACH);
    }
    [[nodiscard]] bool isMounted() const { return m_isMounted; }
    void enlarge() const { ::mount("tmpfs", m_folder.constData(), "tmpfs", MS_REMOUNT, "size=64m"); }

private:
    QByteArray m_folder;
    bool m_isMounted = false;
};

} // namespace

TEST_F(DiskTrouble, EndsAsIncompleteOnAFullDiskAndCompletesWhenThereIsRoom)
{
    const QString folder = engine.sandbox.path(u"small"_s);
    const SmallDisk disk(folder);
    if (!disk.isMounted())
        GTEST_SKIP() << "only the superuser can make a small disk";
    engine.manager().settings().downloadFolderPath.set(folder);
    const ItemPtr item = fetch();
    EXPECT_TRUE(item->status().message().startsWith(u"Incomplete download ("_s));
    EXPECT_EQ(item->bytesReceived(), 1024 * 1024);
    disk.enlarge();
    retry(item);
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_TRUE(isWhole(folder + u"/file.bin"_s));
}

TEST_F(DiskTrouble, NeverCompletesAFileOfUnknownLengthThatTheDiskDidNotTake)
{
    server.setAnswers("/file.bin", {Answer::wholeFile().untilClose()});
    std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit old = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    const struct rlimit small = {500000, old.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const ItemPtr item = fetch();
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &old), 0);
    EXPECT_EQ(item->status().kind(), DownloadStatus::failed);
    EXPECT_TRUE(item->status().message().startsWith(u"The file could not be written: "_s));
    EXPECT_FALSE(QFile::exists(downloaded()));
    retry(item);
    EXPECT_TRUE(isWhole(downloaded()));
}

TEST_F(DiskTrouble, FailsInAReadOnlyFolderAndCompletesWhenItIsWritable)
{
    const QByteArray folder = QFile::encodeName(engine.sandbox.path(u"Downloads"_s));
    if (::geteuid() == 0) {
        if (::mount(folder.constData(), folder.constData(), nullptr, MS_BIND, nullptr) != 0)
            GTEST_SKIP() << "no mounts here";
        ASSERT_EQ(::mount(nullptr, folder.constData(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr), 0);
    } else {
        ASSERT_EQ(::chmod(folder.constData(), 0500), 0);
    }
    const ItemPtr item = fetch();
    if (::geteuid() == 0)
        ASSERT_EQ(::umount2(folder.constData(), MNT_DETACH), 0);
    else
        ASSERT_EQ(::chmod(folder.constData(), 0700), 0);
    EXPECT_EQ(item->status(), DownloadStatus::failure(u"The download folder cannot be written to."_s));
    retry(item);
    EXPECT_TRUE(isWhole(downloaded()));
}

TEST_F(DiskTrouble, StartsAnewWhenTheFolderIsRemovedDuringTheDownload)
{
    server.setAnswers("/file.bin", {Answer::file().stallAfter(400000), Answer::file()});
    const ItemPtr item = engine.add(QString::fromStdString(server.url("/file.bin")));
    engine.manager().commands().startAll();
    ASSERT_TRUE(waitUntil([this] { return engine.sandbox.read(u"Downloads/file.bin.download"_s).size() >= 262144; }));
    ASSERT_TRUE(QDir(engine.sandbox.path(u"Downloads"_s)).removeRecursively());
    server.release();
    ASSERT_TRUE(engine.runToEnd(item));
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_TRUE(isWhole(downloaded()));
}

TEST_F(DiskTrouble, HarmsNoOtherItem)
{
    server.serve("/fine.bin", {.content = PatternContent(12, 100000)});
    const ItemPtr fine = engine.add(QString::fromStdString(server.url("/fine.bin")));
    server.setAnswers("/file.bin", {Answer::file().stallAfter(400000), Answer::file()});
    const ItemPtr item = engine.add(QString::fromStdString(server.url("/file.bin")));
    engine.manager().commands().startAll();
    ASSERT_TRUE(waitUntil([this] { return engine.sandbox.read(u"Downloads/file.bin.download"_s).size() >= 262144; }));
    ASSERT_TRUE(QFile::remove(engine.sandbox.path(u"Downloads/file.bin.download"_s)));
    server.release();
    ASSERT_TRUE(engine.runToEnd(fine));
    ASSERT_TRUE(engine.runToEnd(item));
    EXPECT_EQ(fine->status(), DownloadStatus::completed);
    EXPECT_TRUE(isWhole(downloaded()));
}
