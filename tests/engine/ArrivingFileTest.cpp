#include "fixtures/EventLoop.h"
#include "fixtures/Workshop.h"

#include <gtest/gtest.h>

using namespace vormel;
using namespace vormel::fixtures;

namespace {

const QString url = QStringLiteral("http://h/x.rar");

void lay(const Workshop& shop)
{
    shop.sandbox.write(QStringLiteral("Downloads/x.rar"), "archive");
}

/// How an archive comes to be there.
struct Way
{
    const char* name;
    ItemPtr (*come)(Workshop& shop);
};

const Way ways[] = {
    {"WithTheDownload",
     [](Workshop& shop) {
         const ItemPtr item = shop.start(url);
         shop.http.last().head(200);
         shop.http.last().data("archive");
         shop.http.last().finish();
         return item;
     }},
    {"BeforeTheLinkWasAdded",
     [](Workshop& shop) {
         lay(shop);
         return shop.add(url);
     }},
    {"BeforeTheItemWasStarted",
     [](Workshop& shop) {
         const ItemPtr item = shop.add(url);
         lay(shop);
         shop.manager().commands().startAll();
         return item;
     }},
    {"BeforeTheDiskWasLookedAt",
     [](Workshop& shop) {
         ItemPtr item = shop.add(url);
         lay(shop);
         shop.manager().commands().resyncItems({item});
         return item;
     }},
};

class ArrivingFile : public ::testing::TestWithParam<Way>
{};

} // namespace

TEST_P(ArrivingFile, IsHandedToTheArchiveStepOnlyIfThatIsWanted)
{
    for (const bool isWanted : {false, true}) {
        Workshop shop;
        shop.settings().autoExtract.set(isWanted);
        const ItemPtr item = GetParam().come(shop);
        turnEventLoop();
        ASSERT_EQ(item->status(), DownloadStatus::completed);
        EXPECT_EQ(item->extractionStatus() != ExtractionStatus::idle, isWanted);
    }
}

INSTANTIATE_TEST_SUITE_P(All, ArrivingFile, ::testing::ValuesIn(ways),
                         [](const auto& row) { return std::string(row.param.name); });
