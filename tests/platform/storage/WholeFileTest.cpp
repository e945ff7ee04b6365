#include "platform/storage/WholeFile.h"

#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <random>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::Sandbox;

mode_t modeOf(const QString& path)
{
    struct stat facts = {};
    EXPECT_EQ(::lstat(QFile::encodeName(path).constData(), &facts), 0);
    return facts.st_mode & 0777;
}

TEST(WholeFile, AFileIsMadeForItsOwnerOnly)
{
    const Sandbox sandbox;
    ASSERT_TRUE(replaceWholeFile(sandbox.path(u"caffè"_s), "content"));
    EXPECT_EQ(sandbox.read(u"caffè"_s), "content");
    EXPECT_EQ(modeOf(sandbox.path(u"caffè"_s)), mode_t{0600});
}

TEST(WholeFile, AnOldFileIsReplacedWholeWithItsMode)
{
    const Sandbox sandbox;
    const QString path = sandbox.write(u"f"_s, "a much longer old content");
    ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    ASSERT_TRUE(replaceWholeFile(path, "new"));
    EXPECT_EQ(sandbox.read(u"f"_s), "new");
    EXPECT_EQ(modeOf(path), mode_t{0600});
    ASSERT_TRUE(replaceWholeFile(path, ""));
    EXPECT_EQ(QFileInfo(path).size(), 0);
}

TEST(WholeFile, NothingIsLeftBesideIt)
{
    const Sandbox sandbox;
    ASSERT_TRUE(replaceWholeFile(sandbox.path(u"f"_s), "1"));
    ASSERT_TRUE(replaceWholeFile(sandbox.path(u"f"_s), "2"));
    EXPECT_EQ(sandbox.files(), QStringList(u"f"_s));
}

TEST(WholeFile, ASymbolicLinkIsReplacedAndNotFollowed)
{
    const Sandbox sandbox;
    const QString target = sandbox.write(u"target"_s, "precious");
    const QString path = sandbox.path(u"f"_s);
    ASSERT_TRUE(QFile::link(target, path));
    ASSERT_TRUE(replaceWholeFile(path, "new"));
    EXPECT_EQ(sandbox.read(u"target"_s), "precious");
    EXPECT_FALSE(QFileInfo(path).isSymLink());
    EXPECT_EQ(sandbox.read(u"f"_s), "new");
}

TEST(WholeFile, ASymbolicLinkInThePlaceOfItsFreshFileIsNotFollowed)
{
    const Sandbox sandbox;
    const QString target = sandbox.write(u"target"_s, "precious");
    ASSERT_TRUE(QFile::link(target, sandbox.path(u"f.new"_s)));
    static_cast<void>(replaceWholeFile(sandbox.path(u"f"_s), "new"));
    EXPECT_EQ(sandbox.read(u"target"_s), "precious");
    EXPECT_TRUE(replaceWholeFile(sandbox.path(u"f"_s), "new")) << "one such link must not block saving for ever";
}

TEST(WholeFile, WhatAKillLeftBesideItIsUsedAgain)
{
    const Sandbox sandbox;
    const QString left = sandbox.write(u"f.new"_s, "half of something that is longer");
    ASSERT_TRUE(QFile::setPermissions(left, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    ASSERT_TRUE(replaceWholeFile(sandbox.path(u"f"_s), "new"));
    EXPECT_EQ(sandbox.read(u"f"_s), "new");
    EXPECT_EQ(modeOf(sandbox.path(u"f"_s)), mode_t{0600});
    EXPECT_EQ(sandbox.files(), QStringList(u"f"_s));
}

TEST(WholeFile, APipeOrFolderInThePlaceOfItsFreshFileHoldsNothingUp)
{
    const Sandbox sandbox;
    const QString path = sandbox.write(u"f"_s, "old");
    ASSERT_EQ(::mkfifo(QFile::encodeName(path + u".new"_s).constData(), 0600), 0);
    ASSERT_TRUE(replaceWholeFile(path, "first"));
    EXPECT_EQ(sandbox.read(u"f"_s), "first");
    ASSERT_TRUE(QDir().mkpath(path + u".new/inside"_s));
    ASSERT_TRUE(replaceWholeFile(path, "second"));
    EXPECT_EQ(sandbox.read(u"f"_s), "second");
    EXPECT_EQ(sandbox.files(), QStringList(u"f"_s));
}

TEST(WholeFile, ASecondNameOfItsFreshFileIsNotWrittenThrough)
{
    const Sandbox sandbox;
    const QByteArray precious = QFile::encodeName(sandbox.write(u"target"_s, "precious"));
    ASSERT_EQ(::link(precious.constData(), QFile::encodeName(sandbox.path(u"f.new"_s)).constData()), 0);
    ASSERT_TRUE(replaceWholeFile(sandbox.path(u"f"_s), "new"));
    EXPECT_EQ(sandbox.read(u"target"_s), "precious");
}

TEST(WholeFile, AFailureLeavesTheOldFileAndNothingElse)
{
    const Sandbox sandbox;
    EXPECT_FALSE(replaceWholeFile(sandbox.path(u"missing/f"_s), "new"));
    ASSERT_TRUE(QDir().mkpath(sandbox.path(u"folder/inside"_s)));
    EXPECT_FALSE(replaceWholeFile(sandbox.path(u"folder"_s), "new"));
    EXPECT_TRUE(QFileInfo(sandbox.path(u"folder/inside"_s)).isDir());
    EXPECT_TRUE(sandbox.files().isEmpty());
}

/// Allows this process no file larger than a few bytes while it lives, as a full disk would.
class TinyFiles
{
public:
    explicit TinyFiles(rlim_t bytes)
        : m_signal(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit tiny{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &tiny);
    }
    TinyFiles(const TinyFiles&) = delete;
    TinyFiles& operator=(const TinyFiles&) = delete;
    ~TinyFiles()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_signal);
    }

private:
    rlimit m_before = {};
    void (*m_signal)(int);
};

TEST(WholeFile, AWriteThatIsCutLeavesTheOldFileAndNothingElse)
{
    const Sandbox sandbox;
    const QString path = sandbox.write(u"f"_s, "old");
    {
        const TinyFiles limit(4096);
        EXPECT_FALSE(replaceWholeFile(path, QByteArray(10'000, 'x')));
    }
    EXPECT_EQ(sandbox.read(u"f"_s), "old");
    EXPECT_EQ(sandbox.files(), QStringList(u"f"_s));
}

/// A JSON document that a cut at any place would spoil; each version has another size.
QByteArray document(int version)
{
    QJsonArray numbers;
    for (int i = 0; i < 200 + (version * 37) % 2000; ++i)
        numbers.append(version);
    return QJsonDocument(numbers).toJson();
}

/// Starts a process that replaces the file again and again; it is at it when this returns.
pid_t startWriter(const QString& path)
{
    std::array<int, 2> pipe{};
    EXPECT_EQ(::pipe2(pipe.data(), O_CLOEXEC), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (int version = 0;; ++version) {
            if (!replaceWholeFile(path, document(version)))
                ::_exit(1);
            if (version == 0)
                static_cast<void>(!::write(pipe[1], "x", 1));
        }
    }
    ::close(pipe[1]);
    char ready = 0;
    EXPECT_EQ(::read(pipe[0], &ready, 1), 1);
    ::close(pipe[0]);
    return child;
}

TEST(WholeFile, AKillInTheMiddleOfWritingNeverLeavesACutFile)
{
    const Sandbox sandbox;
    const QString path = sandbox.path(u"f"_s);
    std::mt19937 random(20260101);
    std::uniform_int_distribution<useconds_t> moments(0, 8000);
    for (int kill = 0; kill < 50; ++kill) {
        const pid_t child = startWriter(path);
        ASSERT_GT(child, 0);
        ::usleep(moments(random)); // the moment of the kill, not a wait for anything
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the writer ended by itself";
        const QJsonDocument found = QJsonDocument::fromJson(sandbox.read(u"f"_s));
        ASSERT_TRUE(found.isArray()) << "cut at kill " << kill;
        const int version = found.array().first().toInt(-1);
        EXPECT_EQ(found.toJson(), document(version));
        for (const QString& file : sandbox.files())
            EXPECT_TRUE(file == u"f" || file == u"f.new") << file.toStdString();
    }
    ASSERT_TRUE(replaceWholeFile(path, "after"));
    EXPECT_EQ(sandbox.files(), QStringList(u"f"_s));
}

TEST(WholeFile, AFileUpToTheLimitIsReadWhole)
{
    const Sandbox sandbox;
    const QString path = sandbox.write(u"f"_s, "12345");
    EXPECT_EQ(readWholeFile(path, 5), QByteArray("12345"));
    EXPECT_EQ(readWholeFile(path, 4), std::nullopt);
    EXPECT_EQ(readWholeFile(sandbox.write(u"empty"_s, ""), 0), QByteArray());
}

TEST(WholeFile, WhatIsMissingOrNoFileIsNotRead)
{
    const Sandbox sandbox;
    EXPECT_EQ(readWholeFile(sandbox.path(u"missing"_s), 100), std::nullopt);
    EXPECT_EQ(readWholeFile(sandbox.root(), 100'000), std::nullopt);
    const QString fifo = sandbox.path(u"fifo"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    EXPECT_EQ(readWholeFile(fifo, 100), std::nullopt) << "and it must not block";
}

TEST(WholeFile, UnreadableFilesAreAllKeptBeside)
{
    const Sandbox sandbox;
    for (const QByteArray broken : {"first", "second", "third"})
        EXPECT_TRUE(keepUnreadableFile(sandbox.write(u"f"_s, broken)));
    EXPECT_EQ(sandbox.read(u"f.unreadable"_s), "first");
    EXPECT_EQ(sandbox.read(u"f.unreadable.2"_s), "second");
    EXPECT_EQ(sandbox.read(u"f.unreadable.3"_s), "third");
    EXPECT_EQ(sandbox.files().size(), 3);
    EXPECT_FALSE(keepUnreadableFile(sandbox.path(u"f"_s)));
}

} // namespace
} // namespace vormel
