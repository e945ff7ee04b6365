#include "engine/QuietTable.h"
#include "engine/recovery/RevFiles.h"
#include "fixtures/Sandbox.h"
#include "fixtures/Statuses.h"
#include "model/AppSettings.h"
#include "platform/storage/FileWriter.h"

#include <gtest/gtest.h>

using namespace vormel;
using namespace Qt::StringLiterals;

namespace {

using Kind = DownloadStatus::Kind;

constexpr Kind everyStatus[] = {
    DownloadStatus::queued, DownloadStatus::resolving, DownloadStatus::expanding, DownloadStatus::downloading,
    DownloadStatus::paused, DownloadStatus::stopped,   DownloadStatus::completed, DownloadStatus::failed,
};

DownloadStatus statusOf(Kind kind)
{
    return kind == DownloadStatus::failed ? DownloadStatus::failure(u"gone"_s) : DownloadStatus(kind);
}

/// Writes down what is asked of it, and does none of it.
class NotedTurn final : public QueueTurn
{
public:
    void processQueue() override { calls << u"pass"_s; }
    void saveQueue() override { calls << u"save"_s; }
    void later(std::function<void()> /*action*/) override { calls << u"later"_s; }

    QStringList calls;
};

/// A queue that nobody works on, with the recovery volumes in it.
class RevFilesRules : public ::testing::Test, protected fixtures::QuietTable
{
protected:
    ItemPtr addRev(Kind status = DownloadStatus::queued)
    {
        return add(u"m.part%1.rev"_s.arg(++m_lastRev), statusOf(status));
    }

private:
    fixtures::Sandbox m_sandbox;
    FileWriter m_writer;
    UserDefaults m_store{m_sandbox.path(u"preferences.json"_s), m_writer};
    int m_lastRev = 0;

protected:
    AppSettings settings{m_store, m_sandbox.path(u"Downloads"_s)};
    NotedTurn queue;
    RevFiles revFiles{table, settings, queue};
    const QString base = u"m"_s;
    const QStringList passAndSave{u"pass"_s, u"save"_s};
};

} // namespace

TEST_F(RevFilesRules, AreListedInTheOrderOfTheQueue)
{
    const ItemPtr third = add(u"m.part3.rev"_s);
    add(u"m.part1.rar"_s);
    const ItemPtr first = add(u"m.PART1.REV"_s, DownloadStatus::completed);
    add(u"M.part1.rev"_s);
    add(u"mm.part1.rev"_s);
    add(u"m.rev"_s);
    add(u"m"_s);
    EXPECT_EQ(revFiles.revItems(base), (std::vector{third, first}));
    EXPECT_TRUE(revFiles.revItems(u"n"_s).empty());
}

TEST_F(RevFilesRules, MayBeFetchedWhenLetThroughOrWhenWantedAndOfHelp)
{
    struct Row
    {
        bool isLetThrough;
        bool isWanted;
        bool isOfHelp;
        bool mayFetch;
    };
    const Row rows[] = {
        {false, false, false, false}, {false, false, true, false}, {false, true, false, false},
        {false, true, true, true},    {true, false, false, true},  {true, false, true, true},
        {true, true, false, true},    {true, true, true, true},
    };
    const ItemPtr part = add(u"m.part1.rar"_s);
    const ItemPtr rev = addRev();
    for (const Row& row : rows) {
        SCOPED_TRACE(::testing::Message() << row.isLetThrough << row.isWanted << row.isOfHelp);
        part->setStatus(row.isOfHelp ? DownloadStatus::queued : DownloadStatus::completed);
        settings.downloadRevFiles.set(row.isWanted);
        revFiles.forget({rev->id()});
        if (row.isLetThrough)
            revFiles.allowRevFiles(base);
        EXPECT_EQ(revFiles.isAllowed(rev->id()), row.isLetThrough);
        EXPECT_EQ(revFiles.mayFetch(*rev), row.mayFetch);
        EXPECT_EQ(revFiles.isHeldBack(*rev), !row.mayFetch);
        EXPECT_FALSE(revFiles.isHeldBack(*part));
    }
}

TEST_F(RevFilesRules, AloneAreHeldBack)
{
    struct Row
    {
        const char16_t* name;
        bool isHeldBack;
    };
    const Row rows[] = {
        {u"x.part1.rev", true}, {u"x.PART1.REV", true}, {u"x.rev", true}, {u"x.part1.rar", false}, {u"x.rar", false},
        {u"x.zip", false},      {u"rev", false},        {u"x", false},    {u"x.rev.zip", false},
    };
    for (const Row& row : rows) {
        const QString name = QString::fromUtf16(row.name);
        EXPECT_EQ(revFiles.isHeldBack(*add(name)), row.isHeldBack) << name.toStdString();
    }
}

TEST_F(RevFilesRules, AreComingWhileTheyGoOnOrMayBeFetched)
{
    struct Row
    {
        Kind status;
        bool isComingOnceAllowed;
        bool isComingOtherwise;
    };
    const Row rows[] = {
        {DownloadStatus::queued, true, false},   {DownloadStatus::paused, true, false},
        {DownloadStatus::resolving, true, true}, {DownloadStatus::downloading, true, true},
        {DownloadStatus::stopped, false, false}, {DownloadStatus::failed, false, false},
    };
    const ItemPtr rev = addRev();
    for (const Row& row : rows) {
        revFiles.forget({rev->id()});
        rev->setStatus(statusOf(row.status));
        EXPECT_EQ(revFiles.isComing(*rev), row.isComingOtherwise) << row.status;
        rev->setStatus(DownloadStatus::queued);
        ASSERT_TRUE(revFiles.allowRevFiles(base));
        rev->setStatus(statusOf(row.status));
        EXPECT_EQ(revFiles.isComing(*rev), row.isComingOnceAllowed) << row.status;
    }
}

TEST_F(RevFilesRules, ComeByTheSettingToo)
{
    const ItemPtr part = add(u"m.part1.rar"_s);
    const ItemPtr rev = addRev();
    EXPECT_FALSE(revFiles.isComing(*rev));
    settings.downloadRevFiles.set(true);
    EXPECT_TRUE(revFiles.isComing(*rev));
    part->setStatus(DownloadStatus::completed);
    EXPECT_FALSE(revFiles.isComing(*rev));
}

TEST_F(RevFilesRules, AreLetThroughUnlessThereOrOnTheirWay)
{
    for (const Kind status : everyStatus) {
        SCOPED_TRACE(status);
        const bool isReleased = status != DownloadStatus::completed && status != DownloadStatus::downloading;
        const ItemPtr rev = addRev(status);
        queue.calls.clear();
        EXPECT_EQ(revFiles.allowRevFiles(base), isReleased);
        EXPECT_EQ(revFiles.isAllowed(rev->id()), isReleased);
        EXPECT_EQ(rev->status(), isReleased ? Kind(DownloadStatus::queued) : status);
        EXPECT_EQ(queue.calls, isReleased ? passAndSave : QStringList());
        table.remove({rev->id()});
    }
}

TEST_F(RevFilesRules, AreLetThroughOnce)
{
    const ItemPtr rev = addRev();
    EXPECT_TRUE(revFiles.allowRevFiles(base));
    for (const Kind status : everyStatus) {
        rev->setStatus(statusOf(status));
        queue.calls.clear();
        EXPECT_FALSE(revFiles.allowRevFiles(base)) << status;
        EXPECT_EQ(rev->status(), status);
        EXPECT_TRUE(queue.calls.isEmpty());
    }
}

TEST_F(RevFilesRules, AreLetThroughBesideThoseThatWereBefore)
{
    const ItemPtr earlier = addRev();
    ASSERT_TRUE(revFiles.allowRevFiles(base));
    earlier->setStatus(DownloadStatus::stopped);
    const ItemPtr later = addRev(DownloadStatus::paused);
    EXPECT_TRUE(revFiles.allowRevFiles(base));
    EXPECT_EQ(earlier->status(), DownloadStatus::stopped);
    EXPECT_EQ(later->status(), DownloadStatus::queued);
}

TEST_F(RevFilesRules, AreLetThroughWithTheirWholeSetAndNoOther)
{
    const ItemPtr part = add(u"m.part1.rar"_s, DownloadStatus::paused);
    const ItemPtr stranger = add(u"M.part1.rev"_s, DownloadStatus::paused);
    const std::vector set{addRev(DownloadStatus::paused), addRev(DownloadStatus::failed)};
    EXPECT_TRUE(revFiles.allowRevFiles(base));
    for (const ItemPtr& rev : set)
        EXPECT_EQ(rev->status(), DownloadStatus::queued);
    for (const ItemPtr& other : {part, stranger}) {
        EXPECT_EQ(other->status(), DownloadStatus::paused);
        EXPECT_FALSE(revFiles.isAllowed(other->id()));
    }
    EXPECT_EQ(queue.calls, passAndSave) << "one pass for all of them";
}

TEST_F(RevFilesRules, OfASetThatHasNoneLetNothingThrough)
{
    add(u"m.part1.rar"_s);
    EXPECT_FALSE(revFiles.allowRevFiles(base));
    EXPECT_FALSE(revFiles.allowRevFiles(u"n"_s));
    revFiles.fetchRevFiles(base);
    EXPECT_TRUE(queue.calls.isEmpty());
}

TEST_F(RevFilesRules, AreFetchedAgainAtTheUsersWishUnlessTheyGoOn)
{
    struct Row
    {
        Kind status;
        bool isQueuedAnew;
    };
    const Row rows[] = {
        {DownloadStatus::queued, false},      {DownloadStatus::resolving, false}, {DownloadStatus::expanding, true},
        {DownloadStatus::downloading, false}, {DownloadStatus::paused, true},     {DownloadStatus::stopped, true},
        {DownloadStatus::completed, false},   {DownloadStatus::failed, true},
    };
    const ItemPtr rev = addRev();
    ASSERT_TRUE(revFiles.allowRevFiles(base));
    for (const Row& row : rows) {
        SCOPED_TRACE(row.status);
        rev->setStatus(statusOf(row.status));
        queue.calls.clear();
        revFiles.fetchRevFiles(base);
        EXPECT_EQ(rev->status(), row.isQueuedAnew ? Kind(DownloadStatus::queued) : row.status);
        EXPECT_EQ(queue.calls, row.isQueuedAnew ? passAndSave : QStringList());
        EXPECT_TRUE(revFiles.isAllowed(rev->id()));
    }
}

TEST_F(RevFilesRules, ThatWereNotLetThroughAreFetchedAtTheUsersWish)
{
    for (const Kind status : everyStatus) {
        SCOPED_TRACE(status);
        const bool isReleased = status != DownloadStatus::completed && status != DownloadStatus::downloading;
        const ItemPtr rev = addRev(status);
        queue.calls.clear();
        revFiles.fetchRevFiles(base);
        EXPECT_EQ(revFiles.isAllowed(rev->id()), isReleased);
        EXPECT_EQ(rev->status(), isReleased ? Kind(DownloadStatus::queued) : status);
        EXPECT_EQ(queue.calls, isReleased ? passAndSave : QStringList());
        table.remove({rev->id()});
    }
}

TEST_F(RevFilesRules, ThatWereForgottenAreLetThroughAnew)
{
    const ItemPtr rev = addRev();
    const ItemPtr kept = addRev();
    ASSERT_TRUE(revFiles.allowRevFiles(base));
    revFiles.forget({rev->id()});
    EXPECT_FALSE(revFiles.isAllowed(rev->id()));
    EXPECT_TRUE(revFiles.isAllowed(kept->id()));
    EXPECT_TRUE(revFiles.allowRevFiles(base));
}

namespace {

struct Volumes
{
    const char* name;
    std::vector<Kind> revs;
    bool areAllThere;
    bool isAnyPending;
};

class RevVolumes : public RevFilesRules, public ::testing::WithParamInterface<Volumes>
{};

using namespace fixtures::statuses;

const Volumes volumes[] = {
    {"none", {}, false, false},
    {"there", {completed}, true, false},
    {"allThere", {completed, completed}, true, false},
    {"failed", {failed}, false, true},
    {"allFailed", {failed, failed}, false, true},
    {"oneThereTheOtherFailed", {completed, failed}, true, true},
    {"oneFailedTheOtherThere", {failed, completed}, true, true},
    {"comingDown", {downloading}, false, false},
    {"oneThereTheOtherComingDown", {completed, downloading}, false, false},
    {"waiting", {queued}, false, true},
    {"oneThereTheOtherWaiting", {completed, queued}, false, true},
    {"resolving", {DownloadStatus::resolving}, false, true},
    {"paused", {DownloadStatus::paused}, false, true},
    {"stopped", {DownloadStatus::stopped}, false, true},
    {"oneThereTheOtherStopped", {completed, DownloadStatus::stopped}, false, true},
};

} // namespace

TEST_P(RevVolumes, AreToldByTheirStatuses)
{
    const ItemPtr part = add(u"m.part1.rar"_s);
    for (const Kind status : GetParam().revs)
        addRev(status);
    EXPECT_EQ(revFiles.areAllThere(base), GetParam().areAllThere);
    EXPECT_EQ(revFiles.hasPendingRevFiles({part}), GetParam().isAnyPending);
}

INSTANTIATE_TEST_SUITE_P(Rows, RevVolumes, ::testing::ValuesIn(volumes),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(RevFilesRules, ArePendingInAnySetOfTheItems)
{
    const ItemPtr done = add(u"n.part1.rar"_s);
    add(u"n.part1.rev"_s, DownloadStatus::completed);
    const ItemPtr waiting = add(u"m.part1.rar"_s);
    const ItemPtr rev = addRev();
    EXPECT_FALSE(revFiles.hasPendingRevFiles({}));
    EXPECT_FALSE(revFiles.hasPendingRevFiles({done}));
    EXPECT_TRUE(revFiles.hasPendingRevFiles({done, waiting}));
    EXPECT_TRUE(revFiles.hasPendingRevFiles({rev}));
    rev->setStatus(DownloadStatus::downloading);
    EXPECT_FALSE(revFiles.hasPendingRevFiles({done, waiting, rev}));
}

TEST_F(RevFilesRules, AreToComeFromTheirReleaseUntilTheyAreThere)
{
    const ItemPtr part = add(u"m.part1.rar"_s);
    const ItemPtr other = add(u"n.part1.rar"_s);
    const ItemPtr rev = addRev();
    EXPECT_FALSE(revFiles.areRevFilesComing({part}));
    revFiles.allowRevFiles(base);
    EXPECT_TRUE(revFiles.areRevFilesComing({other, part}));
    EXPECT_FALSE(revFiles.areRevFilesComing({other}));
    rev->setStatus(DownloadStatus::downloading);
    EXPECT_TRUE(revFiles.areRevFilesComing({part}));
    rev->setStatus(DownloadStatus::completed);
    EXPECT_FALSE(revFiles.areRevFilesComing({part}));
}

TEST_F(RevFilesRules, KnowTheSetsOfItemsEachOnce)
{
    const std::vector items{add(u"m.part1.rar"_s), add(u"m.part2.REV"_s), add(u"M.part1.rar"_s), add(u"m.rar"_s)};
    EXPECT_EQ(baseNames(items), (QSet{u"m"_s, u"M"_s, u"m.rar"_s}));
    EXPECT_TRUE(baseNames({}).isEmpty());
}
