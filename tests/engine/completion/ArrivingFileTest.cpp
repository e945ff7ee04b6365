#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

const QString url = u"http://h/x.rar"_s;

void lay(const EngineOnScript& engine)
{
    engine.sandbox.write(u"Downloads/x.rar"_s, "archive");
}

/// How an archive comes to be there.
struct Way
{
    const char* name;
    ItemPtr (*come)(EngineOnScript& engine);
};

const Way ways[] = {
    {"WithTheDownload",
     [](EngineOnScript& engine) {
         const ItemPtr item = engine.start(url);
         engine.http.last().head(200);
         engine.http.last().data("archive");
         engine.http.last().finish();
         return item;
     }},
    {"BeforeTheLinkWasAdded",
     [](EngineOnScript& engine) {
         lay(engine);
         return engine.add(url);
     }},
    {"BeforeTheItemWasStarted",
     [](EngineOnScript& engine) {
         const ItemPtr item = engine.add(url);
         lay(engine);
         engine.manager().commands().startAll();
         return item;
     }},
    {"BeforeTheDiskWasLookedAt",
     [](EngineOnScript& engine) {
         ItemPtr item = engine.add(url);
         lay(engine);
         engine.manager().commands().resyncItems({item});
         return item;
     }},
};

class ArrivingFile : public ::testing::TestWithParam<Way>
{};

} // namespace

TEST_P(ArrivingFile, IsHandedToTheArchiveStepOnlyIfThatIsWanted)
{
    for (const bool isWanted : {false, true}) {
        EngineOnScript engine;
        engine.settings().autoExtract.set(isWanted);
        const ItemPtr item = GetParam().come(engine);
        turnEventLoop();
        ASSERT_EQ(item->status(), DownloadStatus::completed);
        EXPECT_EQ(item->extractionStatus() != ExtractionStatus::idle, isWanted);
    }
}

INSTANTIATE_TEST_SUITE_P(All, ArrivingFile, ::testing::ValuesIn(ways),
                         [](const auto& row) { return std::string(row.param.name); });
