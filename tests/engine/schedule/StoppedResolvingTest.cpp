#include "engine/ScriptedService.h"

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// What ends the resolving of an item, and whether it then begins anew.
struct Ending
{
    const char* name;
    void (*end)(EngineOnScript&, const ItemPtr&);
    bool beginsAnew = false;
};

const Ending endings[] = {
    {"Stop", [](EngineOnScript& e, const ItemPtr& item) { e.manager().commands().stopItems({item}); }},
    {"Remove", [](EngineOnScript& e, const ItemPtr& item) { e.manager().commands().removeItems({item->id()}); }},
    {"Retry", [](EngineOnScript& e, const ItemPtr& item) { e.manager().commands().retryItem(*item); }, true},
    {"Redownload", [](EngineOnScript& e, const ItemPtr& item) { e.manager().commands().redownloadItem(*item); }, true},
    {"Quit", [](EngineOnScript& e, const ItemPtr&) { e.restart(true); }, true},
};

class StoppedResolving : public ScriptedService, public ::testing::WithParamInterface<Ending>
{};

} // namespace

TEST_P(StoppedResolving, AsksItsServiceNoMore)
{
    const ItemPtr item = startFilestore();
    ASSERT_EQ(item->status(), DownloadStatus::resolving);
    ASSERT_EQ(log->resolves.size(), 2U);
    const std::stop_token stop = log->resolves[1].stop;
    EXPECT_FALSE(stop.stop_requested());
    GetParam().end(engine, item);
    EXPECT_TRUE(stop.stop_requested());
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), GetParam().beginsAnew ? 3U : 2U);
    EXPECT_FALSE(log->resolves.back().stop.stop_requested() && GetParam().beginsAnew);
}

INSTANTIATE_TEST_SUITE_P(Endings, StoppedResolving, ::testing::ValuesIn(endings),
                         [](const ::testing::TestParamInfo<Ending>& ending) { return std::string(ending.param.name); });
