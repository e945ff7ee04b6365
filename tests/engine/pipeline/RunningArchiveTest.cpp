#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// A set that is being unpacked and is a third done.
class RunningArchiveTest : public ::testing::Test, protected ArchiveStep
{
protected:
    void SetUp() override
    {
        engine.tools.add(u"unrar"_s, "printf ' 33%%\\r'; " + waitForGo());
        set = {onDisk(u"m.part1.rar"_s), onDisk(u"m.part2.rar"_s)};
        run(set[0]);
        ASSERT_TRUE(waitUntil([this] { return set[0]->extractionProgress() == 0.33; }));
    }

    std::vector<ItemPtr> set;
};

} // namespace

TEST_F(RunningArchiveTest, IsLeftAloneByEveryoneWhoWantsItUnpacked)
{
    engine.manager().commands().retryExtraction(set[0]->id());
    engine.manager().commands().retryExtraction(set[1]->id());
    engine.manager().commands().verifyGroup(set);
    engine.manager().commands().retryWithRevFiles(set);
    arrive(set[1]);
    turnEventLoop();
    EXPECT_EQ(set[0]->extractionStatus(), ExtractionStatus::extracting);
    EXPECT_DOUBLE_EQ(set[0]->extractionProgress(), 0.33);
    EXPECT_EQ(set[1]->extractionStatus(), ExtractionStatus::idle);
    go();
    ASSERT_TRUE(reaches(set[0], ExtractionStatus::done));
    turnEventLoop();
    EXPECT_EQ(engine.tools.calls(u"unrar"_s).size(), 1);
}
