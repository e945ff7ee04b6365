#include "fixtures/EngineOnNetwork.h"
#include "fixtures/EventLoop.h"
#include "sites/FileServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

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

    /// Knows its files before anybody can ask.
    static std::unique_ptr<FileServer> start(const std::string& name, std::uint16_t port = 0)
    {
        FileServer::Options options{.port = port};
        for (int i = 0; i < many; ++i)
            options.resources.emplace_back("/" + name + std::to_string(i) + ".bin",
                                           sites::Resource{.content = PatternContent(1, size)});
        return std::make_unique<FileServer>(options);
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
    /// What those that are not completed say, for who reads of a failure.
    static std::string left(const std::vector<ItemPtr>& items)
    {
        QStringList lines;
        for (const ItemPtr& item : items) {
            if (item->status() != DownloadStatus::completed)
                lines.append(item->filename() + u": "_s + statusLabel(item->status(), AppLanguage::english) + u' ' +
                             item->status().message() + u' ' + QString::number(item->wait().kind));
        }
        return lines.join(u'\n').toStdString();
    }
    /// Waits for one after the other, as the disk has them one after the other.
    [[nodiscard]] static bool areAllCompleted(const std::vector<ItemPtr>& items)
    {
        std::ptrdiff_t done = 0;
        do
            done = completed(items);
        while (done < many && waitUntil([&] { return completed(items) > done; }));
        return done == many;
    }
    [[nodiscard]] bool isAtWork()
    {
        const std::vector<ItemPtr>& items = engine.manager().items();
        return std::any_of(items.begin(), items.end(), [](const ItemPtr& item) {
            return item->status() == DownloadStatus::downloading || item->status() == DownloadStatus::resolving;
        });
    }
    /// Lets the engine work for so much time on its clock, or until the condition holds: does it? What is at work gets
    /// all the real time that it needs.
    [[nodiscard]] bool work(std::chrono::milliseconds time, const std::function<bool()>& condition)
    {
        constexpr auto step = 250ms;
        for (auto passed = 0ms; passed < time; passed += step) {
            if (waitUntil(condition, 20ms) || (waitUntil([&] { return condition() || !isAtWork(); }) && condition()))
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
    std::unique_ptr<FileServer> away = start("away");
    const std::unique_ptr<FileServer> busy = start("busy");
    engine.manager().settings().autoExtract.set(false);
    engine.manager().settings().maxConcurrentDownloads.set(4);
    const std::vector<ItemPtr> awayItems = add(*away, "away");
    const std::vector<ItemPtr> busyItems = add(*busy, "busy");
    engine.manager().commands().startAll();
    ASSERT_TRUE(waitUntil([&] { return completed(awayItems) >= 10; }));
    const std::uint16_t port = away->port();
    away.reset();
    const std::ptrdiff_t before = completed(awayItems);
    EXPECT_TRUE(areAllCompleted(busyItems));
    EXPECT_FALSE(work(20s, [&] { return completed(awayItems) > before + 4; }));
    EXPECT_LT(completed(awayItems), many);
    away = start("away", port);
    const std::ptrdiff_t meanwhile = completed(awayItems);
    EXPECT_TRUE(work(15s, [&] { return completed(awayItems) > meanwhile; }));
    EXPECT_TRUE(areAllCompleted(awayItems)) << left(awayItems);
}
