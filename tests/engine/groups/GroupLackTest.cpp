#include "engine/groups/GroupLack.h"

#include "fixtures/EngineOnScript.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using Ranges = std::vector<PartRange>;
using Rescue = GroupLack::Rescue;

class GroupLackTest : public ::testing::Test
{
protected:
    DownloadItem& add(const QString& name, const DownloadStatus& status = DownloadStatus::completed)
    {
        set.push_back(std::make_shared<DownloadItem>(fixtures::link(u"https://h.example/"_s + name), ItemId::make()));
        set.back()->setStatus(status);
        return *set.back();
    }
    DownloadItem& addPart(int number, const DownloadStatus& status = DownloadStatus::completed)
    {
        return add(u"a.part%1.rar"_s.arg(number), status);
    }
    void addVolumes(int count, const DownloadStatus& status = DownloadStatus::queued)
    {
        for (int i = 0; i < count; ++i)
            add(u"a.part%1.rev"_s.arg(++m_volumes), status);
    }
    [[nodiscard]] GroupLack lack() const { return lackOf(set); }

    static DownloadStatus failed() { return DownloadStatus::failure(u"gone"_s); }

    std::vector<ItemPtr> set;

private:
    int m_volumes = 0;
};

TEST_F(GroupLackTest, NothingIsLackingOfPartsOnTheirWay)
{
    using S = DownloadStatus;
    int number = 0;
    for (const auto kind : {S::queued, S::resolving, S::downloading, S::paused, S::stopped, S::completed})
        addPart(++number, kind);
    addVolumes(2);
    EXPECT_TRUE(lack().isNothing());
    EXPECT_EQ(lack(), GroupLack());
}

TEST_F(GroupLackTest, PartsThatHaveFailedAreLacking)
{
    for (int number = 1; number <= 8; ++number)
        addPart(number, number == 3 || number == 4 || number == 7 ? failed() : DownloadStatus::completed);
    EXPECT_EQ(lack().failed, (Ranges{{3, 4}, {7, 7}}));
    EXPECT_EQ(lack().missing, Ranges());
    EXPECT_EQ(lack().highest, 8);
    EXPECT_EQ(lack().parts(), 3);
}

TEST_F(GroupLackTest, GapsBelowTheHighestPartAreMissing)
{
    for (const int number : {10, 2, 6, 5})
        addPart(number, DownloadStatus::queued);
    EXPECT_EQ(lack().missing, (Ranges{{1, 1}, {3, 4}, {7, 9}}));
    EXPECT_EQ(lack().failed, Ranges());
    EXPECT_EQ(lack().parts(), 6);
}

TEST_F(GroupLackTest, PartsGoByTheirNumbersAndNotByTheirZeros)
{
    add(u"a.part01.rar"_s);
    add(u"a.part2.rar"_s);
    add(u"a.part003.RAR"_s);
    EXPECT_TRUE(lack().isNothing());
}

TEST_F(GroupLackTest, APartThatAnotherLinkStillBringsIsNotLacking)
{
    addPart(1);
    addPart(2, failed());
    addPart(2, DownloadStatus::downloading);
    EXPECT_TRUE(lack().isNothing());
    set.back()->setStatus(failed());
    EXPECT_EQ(lack().failed, (Ranges{{2, 2}}));
}

TEST_F(GroupLackTest, AnExtractedSetLacksNothing)
{
    addPart(1).setExtractionStatus(ExtractionStatus::done);
    addPart(4, failed());
    EXPECT_TRUE(lack().isNothing());
}

TEST_F(GroupLackTest, WithoutRecoveryVolumesNothingCanBeRebuilt)
{
    addPart(1);
    addPart(2, failed());
    EXPECT_EQ(lack().rescue(), Rescue::none);
    addVolumes(3, failed());
    EXPECT_EQ(lack().recoveryVolumes, 0);
    EXPECT_EQ(lack().rescue(), Rescue::none);
}

TEST_F(GroupLackTest, EachVolumeThereOrStillToComeRebuildsOnePart)
{
    addPart(1);
    addPart(2, failed());
    addPart(5);
    addVolumes(1, DownloadStatus::completed);
    addVolumes(1, DownloadStatus::queued);
    EXPECT_EQ(lack().rescue(), Rescue::tooFew); // of 2, 3 and 4
    addVolumes(1, DownloadStatus::stopped);
    EXPECT_EQ(lack().recoveryVolumes, 3);
    EXPECT_EQ(lack().rescue(), Rescue::enough);
}

TEST_F(GroupLackTest, TwoLinksToOneVolumeRebuildOnePart)
{
    addPart(1);
    addPart(4, DownloadStatus::queued);
    add(u"a.part1.rev"_s);
    add(u"a.part01.rev"_s);
    EXPECT_EQ(lack().recoveryVolumes, 1);
}

TEST_F(GroupLackTest, NothingIsRebuiltWithoutTheFirstPart)
{
    addPart(1, failed());
    addPart(2);
    addVolumes(2);
    EXPECT_EQ(lack().rescue(), Rescue::noFirst);
    set.erase(set.begin());
    EXPECT_EQ(lack().missing, (Ranges{{1, 1}}));
    EXPECT_EQ(lack().rescue(), Rescue::noFirst);
}

TEST_F(GroupLackTest, RecoveryVolumesAloneLackNothing)
{
    add(u"a.part3.rev"_s);
    EXPECT_TRUE(lack().isNothing());
}

TEST_F(GroupLackTest, APlainFileThatIsCalledAsTheSetCountsForNothing)
{
    addPart(1);
    addPart(2);
    add(u"a"_s, failed());
    EXPECT_TRUE(lack().isNothing());
}

TEST_F(GroupLackTest, ANumberBeyondAllSetsTellsNothingOfTheTotal)
{
    addPart(1, failed());
    add(u"a.part20260101.rar"_s);
    add(u"a.part99999999999999999999.rar"_s, failed());
    EXPECT_EQ(lack().failed, (Ranges{{1, 1}}));
    EXPECT_EQ(lack().missing, Ranges());
    EXPECT_EQ(lack().highest, 0);
}

} // namespace
} // namespace vormel
