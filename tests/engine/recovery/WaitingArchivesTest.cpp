#include "engine/recovery/WaitingArchives.h"

#include "archive/pipeline/PostDownload.h"
#include "engine/QuietTable.h"
#include "engine/recovery/RevFiles.h"
#include "fixtures/EngineOnScript.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;

namespace {

class CountedLooks final : public PostDownload
{
public:
    void autoExtractAfterDownload(const ItemId& item) override { looks.append(item); }
    void retryExtraction(const ItemId& /*item*/) override {}
    [[nodiscard]] bool isWorkingOn(const ItemId& /*item*/) const override { return false; }
    void stopWorkOn(const ItemId& /*item*/) override {}

    QList<ItemId> looks;
};

class PatientQueue final : public QueueTurn
{
public:
    void processQueue() override {}
    void saveQueue() override {}
    void later(std::function<void()> action) override { m_actions.push_back(std::move(action)); }

    void runLater()
    {
        for (const std::function<void()>& action : std::exchange(m_actions, {}))
            action();
    }

private:
    std::vector<std::function<void()>> m_actions;
};

/// A set of which one volume is here, and rows that are about to leave the queue.
class WaitingArchivesTest : public ::testing::Test, protected fixtures::QuietTable
{
protected:
    ItemPtr addFirstVolume(const QString& base)
    {
        const ItemPtr item = add(base + u".part1.rar"_s, DownloadStatus::completed);
        item->setLocalPath(u"/d/"_s + item->filename());
        return item;
    }

    fixtures::EngineOnScript engine;
    PatientQueue queue;
    RevFiles revFiles{table, engine.settings(), queue};
    CountedLooks postDownload;
    WaitingArchives archives{table, engine.settings(), revFiles, postDownload, queue};
};

} // namespace

TEST_F(WaitingArchivesTest, LooksOnceAtEachSetOfWhichManyRowsGo)
{
    const ItemPtr first = addFirstVolume(u"m"_s);
    const ItemPtr other = addFirstVolume(u"n"_s);
    for (int i = 2; i < 50; ++i) {
        archives.willBeRemoved(*add(u"m.part%1.rar"_s.arg(i)));
        archives.willBeRemoved(*add(u"n.part%1.rar"_s.arg(i)));
    }
    EXPECT_TRUE(postDownload.looks.isEmpty()) << "the rows are still there";
    queue.runLater();
    EXPECT_EQ(postDownload.looks, (QList<ItemId>{first->id(), other->id()}));
}

TEST_F(WaitingArchivesTest, LooksAgainWhenAnotherRowGoesAfterwards)
{
    const ItemPtr first = addFirstVolume(u"m"_s);
    for (int i = 2; i < 4; ++i) {
        archives.willBeRemoved(*add(u"m.part%1.rar"_s.arg(i)));
        queue.runLater();
    }
    EXPECT_EQ(postDownload.looks, (QList<ItemId>{first->id(), first->id()}));
}

TEST_F(WaitingArchivesTest, LooksAtNothingForARowThatNobodyWaitedFor)
{
    addFirstVolume(u"m"_s);
    archives.willBeRemoved(*add(u"m.part2.rar"_s, DownloadStatus::failed));
    archives.willBeRemoved(*add(u"m.part3.rar"_s, DownloadStatus::completed));
    archives.willBeRemoved(*add(u"m.part1.rev"_s));
    archives.willBeRemoved(*add(u"m.zip"_s));
    queue.runLater();
    EXPECT_TRUE(postDownload.looks.isEmpty());
}
