#include "engine/QuietTable.h"
#include "engine/recovery/RevRule.h"
#include "model/SetName.h"

#include <gtest/gtest.h>

#include <random>

using namespace Qt::StringLiterals;

using namespace vormel;

namespace {

class SetTallyTest : public ::testing::Test, protected fixtures::QuietTable
{
protected:
    /// What a walk over the whole queue finds.
    [[nodiscard]] SetTally counted(const QString& base) const
    {
        SetTally tally;
        for (const ItemPtr& item : table.items()) {
            if (setBaseName(item->filename()) != base)
                continue;
            const bool isRar = item->filename().endsWith(u".rar"_s);
            tally.rarParts += isRar ? 1 : 0;
            tally.rarPartsMissing += isRar && item->status() != DownloadStatus::completed ? 1 : 0;
            tally.extracted += item->extractionStatus() == ExtractionStatus::done ? 1 : 0;
        }
        return tally;
    }
    void expectAllCounted() const
    {
        for (const ItemPtr& item : table.items()) {
            const SetTally kept = table.tallyOf(*item);
            const SetTally found = counted(setBaseName(item->filename()));
            EXPECT_EQ(kept.rarParts, found.rarParts);
            EXPECT_EQ(kept.rarPartsMissing, found.rarPartsMissing);
            EXPECT_EQ(kept.extracted, found.extracted);
        }
    }
};

} // namespace

TEST_F(SetTallyTest, IsRightAfterEveryChange)
{
    const QStringList names{u"a.part1.rar"_s, u"a.part2.rar"_s, u"a.part1.rev"_s, u"b.part1.rar"_s,
                            u"b.part1.rev"_s, u"a"_s,           u"a.rar"_s};
    std::minstd_rand random(7);
    const auto pick = [&random](std::size_t count) { return static_cast<qsizetype>(random() % count); };
    for (int step = 0; step < 2000; ++step) {
        const std::size_t size = table.items().size();
        const ItemPtr item = size == 0 ? nullptr : table.items()[static_cast<std::size_t>(pick(size))];
        const qsizetype change = pick(6);
        if (!item || (change == 0 && size < 12))
            add(names[pick(7)]);
        else if (change == 1)
            table.remove({item->id()});
        else if (change == 2)
            item->setFilename(names[pick(7)]);
        else if (change == 3)
            item->setStatus(pick(2) == 0 ? DownloadStatus::completed : DownloadStatus::queued);
        else if (change == 4)
            item->setExtractionStatus(pick(2) == 0 ? ExtractionStatus::done : ExtractionStatus::idle);
        else
            table.reorder({{item->id(), 0}});
        expectAllCounted();
    }
}

TEST_F(SetTallyTest, TellsWhetherARecoveryVolumeMayStillHelp)
{
    const ItemPtr rev = add(u"a.part1.rev"_s);
    EXPECT_FALSE(shouldDownloadRev(*rev, table));
    const ItemPtr one = add(u"a.part1.rar"_s);
    const ItemPtr two = add(u"a.part2.RAR"_s);
    EXPECT_TRUE(shouldDownloadRev(*rev, table));
    one->setStatus(DownloadStatus::completed);
    EXPECT_TRUE(shouldDownloadRev(*rev, table));
    two->setExtractionStatus(ExtractionStatus::done);
    EXPECT_FALSE(shouldDownloadRev(*rev, table));
    two->setExtractionStatus(ExtractionStatus::idle);
    two->setStatus(DownloadStatus::completed);
    EXPECT_FALSE(shouldDownloadRev(*rev, table));
}

TEST_F(SetTallyTest, KnowsTheHoldersOfAFileName)
{
    const QString name = u"x.bin"_s;
    const ItemPtr one = add(u"one"_s);
    const ItemPtr two = add(u"two"_s);
    EXPECT_TRUE(table.holdersOf(name).empty());
    one->setLocalPath(u"/a/x.bin"_s);
    two->setLocalPath(u"/b/x.bin"_s);
    EXPECT_EQ(table.holdersOf(name).size(), 2U);
    one->setLocalPath(u"/a/y.bin"_s);
    ASSERT_EQ(table.holdersOf(name).size(), 1U);
    EXPECT_EQ(table.holdersOf(name)[0], two);
    table.remove({two->id()});
    EXPECT_TRUE(table.holdersOf(name).empty());
    one->setLocalPath(std::nullopt);
    EXPECT_TRUE(table.holdersOf(u"y.bin"_s).empty());
}
