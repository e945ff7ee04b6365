#include "fixtures/EngineOnScript.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

using Items = QueueCommands::Items;

struct Command
{
    const char* name;
    void (*give)(QueueCommands& commands, const ItemPtr& item);
    bool isDateForgotten; ///< the one of the address
    bool isExtractionForgotten;
};

const Command commands[] = {
    {"Retry", [](QueueCommands& to, const ItemPtr& item) { to.retryItem(*item); }, false, false},
    {"Redownload", [](QueueCommands& to, const ItemPtr& item) { to.redownloadItem(*item); }, true, true},
    {"ResyncWithoutAFile", [](QueueCommands& to, const ItemPtr& item) { to.resyncItems({item}); }, true, false},
};

class BeginningAnew : public ::testing::TestWithParam<Command>
{};

} // namespace

TEST_P(BeginningAnew, ForgetsWhatWasReached)
{
    EngineOnScript engine;
    engine.settings().maxConcurrentDownloads.set(0);
    const ItemPtr item = engine.add(u"http://h/x.bin"_s);
    item->setStatus(DownloadStatus::failure(u"gone"_s));
    item->setTotalBytes(100);
    item->setBytesReceived(50);
    item->setProgress(0.5);
    item->setSpeedBytesPerSec(5);
    item->setResolvedURL(link(u"http://cdn/x.bin"_s));
    item->setResolvedAt(engine.clock.wallNow());
    item->setExtractionStatus(ExtractionStatus::failure(u"broken"_s));
    GetParam().give(engine.manager().commands(), item);
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    EXPECT_EQ(item->bytesReceived(), 0);
    EXPECT_DOUBLE_EQ(item->progress(), 0);
    EXPECT_DOUBLE_EQ(item->speedBytesPerSec(), 0);
    EXPECT_FALSE(item->resolvedURL());
    EXPECT_EQ(!item->resolvedAt(), GetParam().isDateForgotten);
    EXPECT_EQ(item->extractionStatus() == ExtractionStatus::idle, GetParam().isExtractionForgotten);
}

INSTANTIATE_TEST_SUITE_P(All, BeginningAnew, ::testing::ValuesIn(commands),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ClearCompleted, LeavesWhatHasAnyOtherStatus)
{
    EngineOnScript engine;
    engine.settings().maxConcurrentDownloads.set(0);
    Items others;
    for (const auto status :
         {DownloadStatus::queued, DownloadStatus::resolving, DownloadStatus::expanding, DownloadStatus::downloading,
          DownloadStatus::paused, DownloadStatus::stopped, DownloadStatus::failed, DownloadStatus::completed}) {
        const ItemPtr item = engine.add(u"http://h/%1"_s.arg(static_cast<int>(status)));
        item->setStatus(status == DownloadStatus::failed ? DownloadStatus::failure({}) : status);
        if (status != DownloadStatus::completed)
            others.push_back(item);
    }
    engine.manager().commands().clearCompleted();
    EXPECT_EQ(engine.manager().items(), others);
}
