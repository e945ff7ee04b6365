#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <QFile>

#include <gtest/gtest.h>

#include <array>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

using Kind = DownloadStatus::Kind;
using Items = QueueCommands::Items;

constexpr std::array<Kind, 8> allStatuses{
    DownloadStatus::queued, DownloadStatus::resolving, DownloadStatus::expanding, DownloadStatus::downloading,
    DownloadStatus::paused, DownloadStatus::stopped,   DownloadStatus::completed, DownloadStatus::failed};

constexpr Kind q = DownloadStatus::queued;
constexpr Kind r = DownloadStatus::resolving;
constexpr Kind e = DownloadStatus::expanding;
constexpr Kind d = DownloadStatus::downloading;
constexpr Kind p = DownloadStatus::paused;
constexpr Kind s = DownloadStatus::stopped;
constexpr Kind c = DownloadStatus::completed;
constexpr Kind f = DownloadStatus::failed;

struct TableCommand
{
    const char* name;
    void (*give)(DownloadManager& manager, const Items& items);
    bool isFileThere;
    /// The status of the item behind the command, for each of allStatuses. No slot is free.
    std::array<Kind, 8> outcome;
};

void moveToTheFront(DownloadManager& manager, const Items& items)
{
    QStringList ids;
    for (const DownloadGroup& group : manager.visibleGroups())
        ids << group.id;
    manager.commands().moveGroups({ids.indexOf(items[0]->filename())}, 0, ids);
}

const TableCommand commandTable[] = {
    {"Pause", [](DownloadManager& m, const Items& i) { m.commands().pauseItems(i); }, false, {q, r, e, p, p, s, c, f}},
    {"PauseAll", [](DownloadManager& m, const Items&) { m.commands().pauseAll(); }, false, {p, r, e, p, p, s, c, f}},
    {"Stop", [](DownloadManager& m, const Items& i) { m.commands().stopItems(i); }, false, {s, s, e, s, s, s, c, f}},
    {"Resume",
     [](DownloadManager& m, const Items& i) { m.commands().resumeItem(*i[0]); },
     false,
     {q, r, e, d, q, s, c, f}},
    {"Start", [](DownloadManager& m, const Items& i) { m.commands().startItems(i); }, false, {q, r, e, d, q, q, c, f}},
    {"StartAll", [](DownloadManager& m, const Items&) { m.commands().startAll(); }, false, {q, r, e, d, q, s, c, f}},
    {"Retry",
     [](DownloadManager& m, const Items& i) { m.commands().retryItem(*i[0]); },
     false,
     {q, q, q, q, q, q, q, q}},
    {"Redownload",
     [](DownloadManager& m, const Items& i) { m.commands().redownloadItem(*i[0]); },
     true,
     {q, q, q, q, q, q, q, q}},
    {"ResyncWithoutAFile",
     [](DownloadManager& m, const Items& i) { m.commands().resyncItems(i); },
     false,
     {q, r, e, d, q, q, q, q}},
    {"ResyncWithAFile",
     [](DownloadManager& m, const Items& i) { m.commands().resyncItems(i); },
     true,
     {c, r, e, d, c, c, c, c}},
    {"Reorder", moveToTheFront, false, {q, r, e, d, p, s, c, f}},
};

class CommandTable : public ::testing::TestWithParam<TableCommand>
{
protected:
    /// An item in that status, with no slot free for another.
    ItemPtr make(Kind kind)
    {
        const QString link = u"http://h/x%1.bin"_s.arg(static_cast<int>(kind));
        ItemPtr item = engine.add(link);
        if (kind == DownloadStatus::downloading) {
            engine.settings().maxConcurrentDownloads.set(100);
            engine.manager().commands().startItems({item});
            turnEventLoop();
            engine.settings().maxConcurrentDownloads.set(0);
            engine.http.last().head(200, {{"Content-Length", "6"}});
            engine.http.last().data("abc");
            turnEventLoop();
        } else {
            item->setStatus(kind == DownloadStatus::failed ? DownloadStatus::failure(u"gone"_s) : DownloadStatus(kind));
        }
        return item;
    }

    void SetUp() override { engine.settings().maxConcurrentDownloads.set(0); }

    EngineOnScript engine;
};

} // namespace

TEST_P(CommandTable, DoesWhatIsToldInEachStatus)
{
    for (std::size_t i = 0; i < allStatuses.size(); ++i) {
        const ItemPtr item = make(allStatuses[i]);
        ASSERT_EQ(item->status(), allStatuses[i]);
        if (GetParam().isFileThere)
            engine.sandbox.write(u"Downloads/"_s + item->filename(), "finished");
        GetParam().give(engine.manager(), {item});
        turnEventLoop();
        EXPECT_EQ(item->status().kind(), GetParam().outcome[i]) << "from status " << i;
        engine.manager().commands().removeItems({item->id()});
    }
}

INSTANTIATE_TEST_SUITE_P(All, CommandTable, ::testing::ValuesIn(commandTable),
                         [](const auto& param) { return std::string(param.param.name); });

TEST_F(CommandTable, RemovalOfARowTakesOutThatRowInEachStatusAndThePartFileOnlyOfARunningOne)
{
    for (const Kind status : allStatuses) {
        const ItemPtr item = make(status);
        const ItemPtr other = engine.add(u"http://h/other"_s);
        const QString part = engine.sandbox.path(u"Downloads/"_s + item->filename() + u".download"_s);
        if (status != DownloadStatus::downloading)
            engine.sandbox.write(u"Downloads/"_s + item->filename() + u".download"_s, "kept");
        engine.manager().commands().removeItems({item->id()});
        EXPECT_EQ(engine.manager().items(), Items{other});
        EXPECT_EQ(QFile::exists(part), status != DownloadStatus::downloading) << status;
        engine.manager().commands().removeItems({other->id()});
    }
}

TEST_F(CommandTable, RemovalOfAGroupTakesOutEveryMemberInWhateverStatus)
{
    const ItemPtr other = engine.add(u"http://h/M.part9.rar"_s);
    for (const Kind status : allStatuses) {
        const auto set = engine.add({u"http://h/m.part1.rar"_s, u"http://h/m.part2.rar"_s, u"http://h/m.part1.rev"_s});
        for (const ItemPtr& item : set)
            item->setStatus(status == DownloadStatus::failed ? DownloadStatus::failure(QString())
                                                             : DownloadStatus(status));
        engine.manager().commands().removeGroup(u"m"_s);
        EXPECT_EQ(engine.manager().items(), Items{other}) << status;
    }
}
