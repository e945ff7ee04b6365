#include "archive/workspace/WorkFolder.h"

#include "archive/workspace/DestinationError.h"
#include "archive/workspace/OrdinaryUser.h"
#include "archive/workspace/Trees.h"
#include "archive/workspace/WorkMark.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

constexpr QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

class WorkFolderTest : public ::testing::Test
{
protected:
    WorkFolderTest() { QDir().mkpath(destination()); }

    [[nodiscard]] QString destination() const { return sandbox.path(u"dest"_s); }
    [[nodiscard]] static QStringList namesOf(const QString& folder) { return QDir(folder).entryList(everything); }
    [[nodiscard]] static QString marked(const WorkFolder& work) { return QFileInfo(work.path()).path(); }

    /// What a program leaves that is killed while it unpacks; gives the name of the folder.
    [[nodiscard]] QString leaveBehind() const
    {
        runAndBeKilled([this] {
            const WorkFolder work = WorkFolder::make(destination());
            writeIn(work.filesHandle(), "half", "half");
            ::raise(SIGKILL);
        });
        return destination() + u'/' + namesOf(destination()).filter(u".vormel-unpack-"_s).value(0);
    }
    void sweep() const { removeAbandonedWorkFolders({destination()}); }

    [[nodiscard]] static QString failureAt(const QString& destination)
    {
        try {
            static_cast<void>(WorkFolder::make(destination));
        } catch (const DestinationError& error) {
            return error.errorDescription();
        }
        return {};
    }

    fixtures::Sandbox sandbox;
};

TEST_F(WorkFolderTest, LiesHiddenInTheDestinationForItsOwnerOnly)
{
    const WorkFolder work = WorkFolder::make(destination());
    EXPECT_EQ(work.destination(), destination());
    ASSERT_EQ(namesOf(destination()).size(), 1);
    const QString name = namesOf(destination()).front();
    EXPECT_TRUE(name.startsWith(u".vormel-unpack-"_s) && name.size() == 21) << name.toStdString();
    struct stat facts = {};
    ASSERT_EQ(::lstat(QFile::encodeName(destination() + u'/' + name).constData(), &facts), 0);
    EXPECT_EQ(facts.st_mode & ALLPERMS, 0700U);
}

TEST_F(WorkFolderTest, TheToolFindsItEmpty)
{
    const WorkFolder work = WorkFolder::make(destination());
    EXPECT_TRUE(work.path().startsWith(destination() + u'/'));
    EXPECT_TRUE(QFileInfo(work.path()).isDir());
    EXPECT_TRUE(namesOf(work.path()).isEmpty());
}

TEST_F(WorkFolderTest, EachOneIsAnother)
{
    const WorkFolder first = WorkFolder::make(destination());
    const WorkFolder second = WorkFolder::make(destination());
    EXPECT_NE(first.path(), second.path());
}

TEST_F(WorkFolderTest, GoesWithAllThatIsInIt)
{
    {
        const WorkFolder work = WorkFolder::make(destination());
        writeIn(work.filesHandle(), "file", "x");
        QDir(work.path()).mkpath(u"a/b/c"_s);
        ASSERT_EQ(::mkfifoat(work.filesHandle(), "pipe", 0600), 0);
        ASSERT_EQ(::symlinkat("/etc", work.filesHandle(), "link"), 0);
    }
    EXPECT_TRUE(namesOf(destination()).isEmpty());
}

TEST_F(WorkFolderTest, GoesWithFoldersThatCanNeitherBeListedNorEnteredNorChanged)
{
    const OrdinaryUser user;
    for (const mode_t mode : {0555U, 0311U, 0111U, 0000U}) {
        {
            const WorkFolder work = WorkFolder::make(destination());
            QDir(work.path()).mkpath(u"closed/inner"_s);
            ASSERT_EQ(::fchmodat(work.filesHandle(), "closed", mode, 0), 0);
            ASSERT_EQ(::chmod(QFile::encodeName(work.path()).constData(), mode), 0);
        }
        EXPECT_TRUE(namesOf(destination()).isEmpty()) << mode;
    }
}

TEST_F(WorkFolderTest, GoesHoweverDeepItsFoldersAre)
{
    {
        std::optional<WorkFolder> work = WorkFolder::make(destination());
        writeIn(makeDeepFolders(work->filesHandle()).get(), "file", "x");
        runInNarrowPlace([&work] { work.reset(); });
    }
    EXPECT_TRUE(namesOf(destination()).isEmpty());
}

TEST_F(WorkFolderTest, MovingItMovesTheDutyToRemoveIt)
{
    std::optional<WorkFolder> kept;
    {
        WorkFolder work = WorkFolder::make(sandbox.path(u"new/dest"_s));
        kept.emplace(std::move(work));
    }
    EXPECT_TRUE(QFileInfo(kept->path()).isDir());
    kept.reset();
    EXPECT_FALSE(sandbox.exists(u"new"_s));
}

TEST_F(WorkFolderTest, ADestinationThatIsMovedAwayIsLeftCleanToo)
{
    {
        const WorkFolder work = WorkFolder::make(destination());
        writeIn(work.filesHandle(), "file", "x");
        ASSERT_TRUE(QDir().rename(destination(), sandbox.path(u"moved"_s)));
        sandbox.write(u"dest/own"_s, "mine");
    }
    EXPECT_TRUE(namesOf(sandbox.path(u"moved"_s)).isEmpty());
    EXPECT_EQ(sandbox.read(u"dest/own"_s), "mine");
}

TEST_F(WorkFolderTest, FoldersMadeForTheDestinationGoAgainWhenNothingIsInThem)
{
    const QString deep = sandbox.path(u"dest/a/b/c"_s);
    {
        const WorkFolder work = WorkFolder::make(deep);
        EXPECT_TRUE(QFileInfo(deep).isDir());
        writeIn(work.filesHandle(), "file", "x");
    }
    EXPECT_TRUE(QFileInfo(destination()).isDir());
    EXPECT_TRUE(namesOf(destination()).isEmpty());
}

TEST_F(WorkFolderTest, FoldersMadeForTheDestinationStayWhenSomethingIsInThem)
{
    {
        const WorkFolder work = WorkFolder::make(sandbox.path(u"dest/a/b/c"_s));
        sandbox.write(u"dest/a/note"_s, "mine");
    }
    EXPECT_EQ(namesOf(sandbox.path(u"dest/a"_s)), QStringList{u"note"_s});
}

TEST_F(WorkFolderTest, ADestinationMadeForOneRunStaysWhileAnotherWorksInIt)
{
    const QString made = sandbox.path(u"dest/made"_s);
    std::optional<WorkFolder> first = WorkFolder::make(made);
    const WorkFolder second = WorkFolder::make(made);
    first.reset();
    EXPECT_TRUE(QFileInfo(second.path()).isDir());
}

TEST_F(WorkFolderTest, WhatCannotBeMadeIsToldInTheSystemsWords)
{
    sandbox.write(u"dest/file"_s, "x");
    EXPECT_EQ(failureAt(sandbox.path(u"dest/file"_s)), u"Not a directory");
    EXPECT_EQ(failureAt(sandbox.path(u"dest/file/below"_s)), u"Not a directory");
    ASSERT_EQ(::symlink("nowhere", sandbox.path(u"dest/link"_s).toUtf8().constData()), 0);
    EXPECT_EQ(failureAt(sandbox.path(u"dest/link"_s)), u"No such file or directory");
}

TEST_F(WorkFolderTest, ADestinationThatCannotBeWrittenToIsToldAndNothingIsLeftInIt)
{
    const OrdinaryUser user;
    ASSERT_TRUE(QFile::setPermissions(destination(), QFile::ReadOwner | QFile::ExeOwner));
    EXPECT_EQ(failureAt(destination()), u"Permission denied");
    EXPECT_EQ(failureAt(destination() + u"/a/b"_s), u"Permission denied");
    ASSERT_TRUE(QFile::setPermissions(destination(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    EXPECT_TRUE(namesOf(destination()).isEmpty());
}

TEST_F(WorkFolderTest, ADestinationThatIsReachedByALinkIsUsed)
{
    ASSERT_EQ(::symlink("dest", sandbox.path(u"alias"_s).toUtf8().constData()), 0);
    const WorkFolder work = WorkFolder::make(sandbox.path(u"alias"_s));
    EXPECT_EQ(namesOf(destination()).size(), 1);
}

TEST_F(WorkFolderTest, WhatAKilledProgramLeftIsFoundAndRemoved)
{
    sandbox.write(u"dest/own"_s, "mine");
    const QString left = leaveBehind();
    ASSERT_TRUE(QFileInfo(left + u"/files/half"_s).exists());
    sweep();
    EXPECT_EQ(namesOf(destination()), QStringList{u"own"_s});
}

TEST_F(WorkFolderTest, WhatAKillLeftBeforeOrAfterTheMarkSaidSoIsRemoved)
{
    constexpr auto ownersOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    const QDir dest(destination());
    for (const char* const name : {"abcdef", "012345"}) {
        const QString left = dest.filePath(u".vormel-unpack-"_s + QLatin1StringView(name));
        ASSERT_TRUE(dest.mkpath(left) && QFile::setPermissions(left, ownersOnly));
    }
    sandbox.write(u"dest/.vormel-unpack-012345/%1"_s.arg(QLatin1StringView(workMarkName)), "");
    sweep();
    EXPECT_EQ(namesOf(destination()), QStringList());
}

TEST_F(WorkFolderTest, AnEmptyFolderThatNoRunWouldMakeIsTheUsersOwn)
{
    const QDir dest(destination());
    const QString longer = dest.filePath(u".vormel-unpack-mine123"_s);
    ASSERT_TRUE(dest.mkpath(longer) && dest.mkpath(u".vormel-unpack-abcdef"_s));
    ASSERT_TRUE(QFile::setPermissions(longer, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const QStringList before = namesOf(destination());
    sweep();
    EXPECT_EQ(namesOf(destination()), before);
}

TEST_F(WorkFolderTest, OneThatIsInUseIsNotAbandoned)
{
    const WorkFolder work = WorkFolder::make(destination());
    writeIn(work.filesHandle(), "file", "x");
    sweep();
    EXPECT_EQ(readIn(work.filesHandle(), "file"), "x");
    EXPECT_TRUE(QFileInfo(work.path() + u"/file"_s).exists());
}

TEST_F(WorkFolderTest, AFolderOfSuchANameWithoutTheMarkIsTheUsersOwn)
{
    sandbox.write(u"dest/.vormel-unpack-abcdef/files/own"_s, "mine");
    sandbox.write(u"dest/.vormel-unpack-empty1/files/own"_s, "mine");
    sandbox.write(u"dest/.vormel-unpack-empty1/%1"_s.arg(QLatin1StringView(workMarkName)), "");
    sandbox.write(u"dest/.vormel-unpack-other1/files/own"_s, "mine");
    sandbox.write(u"dest/.vormel-unpack-other1/%1"_s.arg(QLatin1StringView(workMarkName)), "Vormel unpacks");
    const QStringList before = sandbox.files();
    sweep();
    EXPECT_EQ(sandbox.files(), before);
}

TEST_F(WorkFolderTest, AMarkedFolderOfAnotherNameIsTheUsersOwn)
{
    const QString left = leaveBehind();
    ASSERT_TRUE(QDir().rename(left, destination() + u"/mine"_s));
    sweep();
    EXPECT_EQ(namesOf(destination()), QStringList{u"mine"_s});
}

TEST_F(WorkFolderTest, ALinkToALeftFolderIsNotFollowed)
{
    const QString left = leaveBehind();
    QDir().mkpath(sandbox.path(u"other"_s));
    const QString link = sandbox.path(u"other/.vormel-unpack-abcdef"_s);
    ASSERT_EQ(::symlink(QFile::encodeName(left).constData(), QFile::encodeName(link).constData()), 0);
    removeAbandonedWorkFolders({sandbox.path(u"other"_s)});
    EXPECT_TRUE(QFileInfo(left + u"/files/half"_s).exists());
    EXPECT_TRUE(QFileInfo(link).isSymLink());
}

TEST_F(WorkFolderTest, OnlyTheFoldersThemselvesAreLookedAt)
{
    const QString left = leaveBehind();
    removeAbandonedWorkFolders({sandbox.root()});
    EXPECT_TRUE(QFileInfo(left).isDir());
}

TEST_F(WorkFolderTest, APipeInPlaceOfTheMarkHoldsNothingUp)
{
    QDir().mkpath(destination() + u"/.vormel-unpack-abcdef"_s);
    const QString mark = destination() + u"/.vormel-unpack-abcdef/"_s + QLatin1StringView(workMarkName);
    ASSERT_EQ(::mkfifo(QFile::encodeName(mark).constData(), 0600), 0);
    sweep();
    EXPECT_TRUE(QFileInfo(mark).exists());
}

TEST_F(WorkFolderTest, FoldersThatAreGoneOrCannotBeListedArePassedOver)
{
    const QString left = leaveBehind();
    const OrdinaryUser user;
    const QString closed = sandbox.path(u"closed"_s);
    QDir().mkpath(closed);
    ASSERT_TRUE(QFile::setPermissions(closed, QFile::ExeOwner));
    removeAbandonedWorkFolders({u"/no/such/folder"_s, closed, destination()});
    EXPECT_FALSE(QFileInfo::exists(left));
    ASSERT_TRUE(QFile::setPermissions(closed, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

TEST_F(WorkFolderTest, WhatAnotherUserLeftIsNotOurs)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can give a file away";
    const QString left = leaveBehind();
    constexpr uid_t somebody = 12345;
    const QString mark = left + u'/' + QLatin1StringView(workMarkName);
    ASSERT_EQ(::chown(QFile::encodeName(mark).constData(), somebody, somebody), 0);
    sweep();
    EXPECT_TRUE(QFileInfo(left + u"/files/half"_s).exists());
}

TEST_F(WorkFolderTest, WhatCouldNotBeRemovedKeepsTheMarkAndIsFoundNextTime)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can give a folder away";
    std::optional<WorkFolder> work = WorkFolder::make(destination());
    QDir(work->path()).mkpath(u"theirs/inner"_s);
    constexpr uid_t somebody = 12345;
    ASSERT_EQ(::fchownat(work->filesHandle(), "theirs", somebody, somebody, 0), 0);
    {
        const OrdinaryUser user;
        work.reset();
    }
    EXPECT_EQ(namesOf(destination()).size(), 1);
    sweep();
    EXPECT_TRUE(namesOf(destination()).isEmpty());
}

} // namespace
} // namespace vormel
