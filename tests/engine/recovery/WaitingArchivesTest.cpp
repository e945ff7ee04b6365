#include "engine/recovery/WaitingArchives.h"

#include "archive/pipeline/PostDownload.h"
#include "engine/QuietTable.h"
#include "engine/recovery/RevFiles.h"
#include "fixtures/EngineOnScript.h"

#include <gtest/gtest.h>

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
        const ItemPtr item = add(base + QStringLiteral(".part1.rar"), DownloadStatus::completed);
        item->setLocalPath(QStringLiteral("/d/") + item->filename());
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
    const ItemPtr first = addFirstVolume(QStringLiteral("m"));
    const ItemPtr other = addFirstVolume(QStringLiteral("n"));
    for (int i = 2; i < 50; ++i) {
        archives.willBeRemoved(*add(QStringLiteral("m.part%1.rar").arg(i)));
        archives.willBeRemoved(*add(QStringLiteral("n.part%1.rar").arg(i)));
    }
    EXPECT_TRUE(postDownload.looks.isEmpty()) << "the rows are still there";
    queue.runLater();
    EXPECT_EQ(postDownload.looks, (QList<ItemId>{first->id(), other->id()}));
}

TEST_F(WaitingArchivesTest, LooksAgainWhenAnotherRowGoesAfterwards)
{
    const ItemPtr first = addFirstVolume(QStringLiteral("m"));
    for (int i = 2; i < 4; ++i) {
        archives.willBeRemoved(*add(QStringLiteral("m.part%1.rar").arg(i)));
        queue.runLater();
    }
    EXPECT_EQ(postDownload.looks, (QList<ItemId>{first->id(), first->id()}));
}

TEST_F(WaitingArchivesTest, LooksAtNothingForARowThatNobodyWaitedFor)
{
    addFirstVolume(QStringLiteral("m"));
    archives.willBeRemoved(*add(QStringLiteral("m.part2.rar"), DownloadStatus::failed));
    archives.willBeRemoved(*add(QStringLiteral("m.part3.rar"), DownloadStatus::completed));
    archives.willBeRemoved(*add(QStringLiteral("m.part1.rev")));
    archives.willBeRemoved(*add(QStringLiteral("m.zip")));
    queue.runLater();
    EXPECT_TRUE(postDownload.looks.isEmpty());
}
