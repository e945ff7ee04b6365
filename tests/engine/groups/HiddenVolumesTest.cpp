#include "fixtures/EngineOnScript.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

struct Row
{
    DownloadStatus::Kind status;
    bool isShownWhileOff;
    bool isShownWhileOn;
    bool isShownOnceExtracted;
};

const Row rows[] = {
    {DownloadStatus::queued, false, true, false},    {DownloadStatus::resolving, false, true, false},
    {DownloadStatus::expanding, false, true, false}, {DownloadStatus::downloading, true, true, true},
    {DownloadStatus::paused, false, true, false},    {DownloadStatus::stopped, false, true, false},
    {DownloadStatus::completed, true, true, true},   {DownloadStatus::failed, false, true, false},
};

} // namespace

TEST(HiddenVolumes, DependOnTheirStatusTheSettingAndTheirSet)
{
    EngineOnScript engine;
    engine.settings().maxConcurrentDownloads.set(0);
    const auto set = engine.add({u"http://h/m.part1.rar"_s, u"http://h/m.part1.rev"_s});
    const auto isShown = [&](bool isOn, bool isExtracted) {
        engine.settings().downloadRevFiles.set(isOn);
        set[0]->setExtractionStatus(isExtracted ? ExtractionStatus::done : ExtractionStatus::idle);
        return engine.manager().visibleGroups().front().items.size() == 2;
    };
    for (const Row& row : rows) {
        set[1]->setStatus(row.status == DownloadStatus::failed ? DownloadStatus::failure({}) : row.status);
        EXPECT_EQ(isShown(false, false), row.isShownWhileOff) << row.status;
        EXPECT_EQ(isShown(true, false), row.isShownWhileOn) << row.status;
        EXPECT_EQ(isShown(true, true), row.isShownOnceExtracted) << row.status;
    }
}
