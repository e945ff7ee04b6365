#include "engine/schedule/Scheduler.h"

#include "engine/QuietTable.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;

namespace {

class OpenRules final : public SchedulingRules
{
public:
    [[nodiscard]] bool isHeldBack(DownloadItem& item) override { return held.contains(item.id()); }
    [[nodiscard]] bool mayFetchRev(const DownloadItem& /*item*/) const override { return revAllowed; }

    QSet<ItemId> held;
    bool revAllowed = false;
};

class SchedulerTest : public ::testing::Test, protected fixtures::QuietTable
{
protected:
    [[nodiscard]] QStringList chosen(qint64 limit, qint64 underWay = 0)
    {
        QStringList names;
        for (const ItemPtr& item : chooseStarts(table, limit, underWay, rules))
            names.append(item->filename());
        return names;
    }

    OpenRules rules;
};

} // namespace

TEST_F(SchedulerTest, TakesQueuedItemsInQueueOrderUpToTheLimit)
{
    for (const char* name : {"a", "b", "c", "d"})
        add(QLatin1StringView(name), DownloadStatus::queued);
    EXPECT_EQ(chosen(3), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
}

TEST_F(SchedulerTest, StartsNothingWhileAllSlotsAreTaken)
{
    add(u"1"_s, DownloadStatus::resolving);
    add(u"2"_s, DownloadStatus::resolving);
    add(u"3"_s, DownloadStatus::downloading);
    add(u"waiting"_s, DownloadStatus::queued);
    EXPECT_TRUE(chosen(3).isEmpty());
    EXPECT_EQ(chosen(4).size(), 1);
}

TEST_F(SchedulerTest, StartsNothingWithALimitOfZeroOrLess)
{
    add(u"waiting"_s, DownloadStatus::queued);
    EXPECT_TRUE(chosen(0).isEmpty());
    EXPECT_TRUE(chosen(-5).isEmpty());
    EXPECT_TRUE(chosen(std::numeric_limits<qint64>::min()).isEmpty());
}

TEST_F(SchedulerTest, GivesPlaceholdersNoSlot)
{
    for (int i = 0; i < 10; ++i)
        add(QString::number(i), DownloadStatus::expanding);
    add(u"direct"_s, DownloadStatus::queued);
    EXPECT_EQ(chosen(1), QStringList{u"direct"_s});
}

TEST_F(SchedulerTest, PassesOverWhatIsHeldBackAndTakesTheNext)
{
    const ItemPtr first = add(u"held"_s, DownloadStatus::queued);
    add(u"next"_s, DownloadStatus::queued);
    rules.held.insert(first->id());
    EXPECT_EQ(chosen(1), QStringList{u"next"_s});
}

TEST_F(SchedulerTest, PassesOverRecoveryVolumesUnlessAllowed)
{
    const ItemPtr rev = add(u"x.part1.REV"_s, DownloadStatus::queued);
    add(u"next"_s, DownloadStatus::queued);
    EXPECT_EQ(chosen(1), QStringList{u"next"_s});
    EXPECT_EQ(rev->status(), DownloadStatus::queued);
    rules.revAllowed = true;
    EXPECT_EQ(chosen(1), QStringList{u"x.part1.REV"_s});
}

TEST_F(SchedulerTest, CountsStartsThatAreUnderWay)
{
    add(u"a"_s, DownloadStatus::queued);
    EXPECT_TRUE(chosen(2, 2).isEmpty());
}

TEST_F(SchedulerTest, IgnoresEveryOtherStatus)
{
    for (const DownloadStatus::Kind kind : {DownloadStatus::paused, DownloadStatus::stopped, DownloadStatus::completed})
        add(QString::number(kind), kind);
    add(u"f"_s, DownloadStatus::failure(u"m"_s));
    EXPECT_TRUE(chosen(10).isEmpty());
}

TEST_F(SchedulerTest, SeesChangesOfStatusNameAndOrder)
{
    const ItemPtr a = add(u"a"_s, DownloadStatus::queued);
    const ItemPtr b = add(u"b"_s, DownloadStatus::queued);
    const ItemPtr c = add(u"c"_s, DownloadStatus::paused);
    table.remove({a->id()});
    EXPECT_EQ(table.find(a->id()), nullptr);
    EXPECT_EQ(table.find(c->id()), c);
    c->setStatus(DownloadStatus::downloading);
    EXPECT_EQ(table.activeCount(), 1);
    b->setFilename(u"b.rev"_s);
    EXPECT_TRUE(chosen(2).isEmpty());
    c->setSpeedBytesPerSec(5);
    b->setSpeedBytesPerSec(2);
    EXPECT_DOUBLE_EQ(table.totalSpeed(), 7);
    table.remove({c->id()});
    EXPECT_EQ(table.activeCount(), 0);
    EXPECT_DOUBLE_EQ(table.totalSpeed(), 2);
    EXPECT_EQ(table.rows().size(), 1U);
}
