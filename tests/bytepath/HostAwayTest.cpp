#include "fixtures/EngineOnNetwork.h"
#include "fixtures/EventLoop.h"
#include "sites/FileServer.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;
using vormel::sites::FileServer;
using vormel::sites::PatternContent;

namespace {

/// Two real servers, one of which goes away and comes back at its port.
class HostAwayTest : public ::testing::Test
{
protected:
    static constexpr int many = 100;
    static constexpr qint64 size = 20000;

    static void serve(FileServer& server, const std::string& name)
    {
        for (int i = 0; i < many; ++i)
            server.serve("/" + name + std::to_string(i) + ".bin", {.content = PatternContent(1, size)});
    }
    std::vector<ItemPtr> add(const FileServer& server, const std::string& name)
    {
        std::vector<ItemPtr> items;
        for (int i = 0; i < many; ++i)
            items.push_back(engine.add(QString::fromStdString(server.url("/" + name + std::to_string(i) + ".bin"))));
        return items;
    }
    static std::ptrdiff_t completed(const std::vector<ItemPtr>& items)
    {
        return std::count_if(items.begin(), items.end(),
                             [](const ItemPtr& item) { return item->status() == DownloadStatus::completed; });
    }
    /// Lets the engine work for so much time on its clock, or until the condition holds: does it?
    [[nodiscard]] bool work(std::chrono::milliseconds time, const std::function<bool()>& condition)
    {
        constexpr auto step = 250ms;
        for (auto passed = 0ms; passed < time; passed += step) {
            if (waitUntil(condition, 20ms))
                return true;
            engine.clock.advance(step);
        }
        return false;
    }

    EngineOnNetwork engine;
};

} // namespace

TEST_F(HostAwayTest, AHundredItemsOutliveItsAbsenceAndABusyHostNeverWaitsForThem)
{
    auto away = std::make_unique<FileServer>();
    FileServer busy;
    serve(*away, "away");
    serve(busy, "busy");
    engine.manager().settings().autoExtract.set(false);
    engine.manager().settings().maxConcurrentDownloads.set(4);
    const std::vector<ItemPtr> awayItems = add(*away, "away");
    const std::vector<ItemPtr> busyItems = add(busy, "busy");
    engine.manager().commands().startAll();
    ASSERT_TRUE(waitUntil([&] { return completed(awayItems) >= 10; }));
    const std::uint16_t port = away->port();
    away.reset();
    const std::ptrdiff_t before = completed(awayItems);
    EXPECT_TRUE(waitUntil([&] { return completed(busyItems) == many; }));
    EXPECT_FALSE(work(20s, [&] { return completed(awayItems) > before + 4; }));
    EXPECT_LT(completed(awayItems), many);
    away = std::make_unique<FileServer>(FileServer::Options{.port = port});
    serve(*away, "away");
    const std::ptrdiff_t meanwhile = completed(awayItems);
    EXPECT_TRUE(work(15s, [&] { return completed(awayItems) > meanwhile; }));
    EXPECT_TRUE(waitUntil([&] { return completed(awayItems) == many; }));
}
