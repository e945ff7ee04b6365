#include "ui/queue/list/RowCommands.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "ui/FakeDesktop.h"

#include <QFile>
#include <QUrl>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;
using S = DownloadStatus;

class RowCommandsTest : public ::testing::Test
{
protected:
    ItemPtr add(const char* name, DownloadStatus::Kind status)
    {
        const ItemPtr item = engine.add(u"https://h.example/"_s + QString::fromLatin1(name));
        item->setStatus(status);
        turnEventLoop();
        return item;
    }
    DownloadGroup addSet(DownloadStatus::Kind status)
    {
        add("a.part1.rar", status);
        return *engine.manager().visibleGroupOf(*add("a.part2.rar", status));
    }
    /// What becomes of an item in that state.
    S::Kind resultOf(RowButton button, S::Kind before)
    {
        const ItemPtr item = add("a.zip", before);
        commands.run(button, item);
        const S::Kind after = item->status().kind();
        engine.manager().commands().removeItems({item->id()});
        return after;
    }

    fixtures::EngineOnScript engine;
    fixtures::FakeDesktop desktop{engine};
    RowCommands commands{desktop.ports()};
};

TEST_F(RowCommandsTest, PauseIsForWhatIsStillDownloading)
{
    EXPECT_EQ(resultOf(RowButton::pause, S::downloading), S::paused);
    EXPECT_EQ(resultOf(RowButton::pause, S::completed), S::completed);
}

TEST_F(RowCommandsTest, StopKeepsTheItemOut)
{
    EXPECT_EQ(resultOf(RowButton::stop, S::queued), S::stopped);
}

TEST_F(RowCommandsTest, ResumeIsForWhatIsStillPaused)
{
    EXPECT_NE(resultOf(RowButton::resume, S::paused), S::paused);
    EXPECT_EQ(resultOf(RowButton::resume, S::stopped), S::stopped);
}

TEST_F(RowCommandsTest, StartBringsAStoppedItemBack)
{
    EXPECT_NE(resultOf(RowButton::start, S::stopped), S::stopped);
}

TEST_F(RowCommandsTest, RetryQueuesAFailedItemAgain)
{
    EXPECT_NE(resultOf(RowButton::retry, S::failed), S::failed);
}

TEST_F(RowCommandsTest, ResyncBelievesTheDisk)
{
    const ItemPtr item = add("a.zip", S::completed);
    item->setLocalPath(engine.sandbox.path(u"gone.zip"_s));
    commands.run(RowButton::redownload, item);
    EXPECT_NE(item->status().kind(), S::completed);
    item->setStatus(S::paused);
    engine.sandbox.write(u"Downloads/a.zip"_s, "x");
    commands.run(RowButton::resync, item);
    turnEventLoop();
    EXPECT_EQ(item->status().kind(), S::completed);
}

TEST_F(RowCommandsTest, RemoveTakesTheItemOut)
{
    const ItemPtr item = add("a.zip", S::paused);
    commands.run(RowButton::remove, item);
    EXPECT_TRUE(engine.manager().items().empty());
}

TEST_F(RowCommandsTest, ShowsTheFileOfAnItemThatHasOne)
{
    const ItemPtr item = add("a.zip", S::completed);
    commands.run(RowButton::showInViewer, item);
    EXPECT_TRUE(desktop.viewer.shown.isEmpty());
    item->setLocalPath(u"/srv/a.zip"_s);
    commands.run(RowButton::showInViewer, item);
    EXPECT_EQ(desktop.viewer.shown, QStringList{u"/srv/a.zip"_s});
}

TEST_F(RowCommandsTest, ShowsTheFirstFinishedFileOfAGroup)
{
    const DownloadGroup group = addSet(S::completed);
    group.items[0]->setStatus(S::paused);
    group.items[1]->setLocalPath(u"/srv/a/a.part2.rar"_s);
    commands.run(RowButton::showGroup, group);
    EXPECT_EQ(desktop.viewer.shown, QStringList{u"/srv/a/a.part2.rar"_s});
    EXPECT_TRUE(desktop.opener.opened.isEmpty());
}

TEST_F(RowCommandsTest, ShowsTheFolderOfAGroupWithoutAFinishedFile)
{
    const DownloadGroup group = addSet(S::paused);
    const QString downloads = engine.settings().downloadFolderPath.value();
    commands.run(RowButton::showGroup, group);
    engine.sandbox.write(u"Downloads/a/a.part1.rar.download"_s, "x");
    commands.run(RowButton::showGroup, group);
    EXPECT_EQ(desktop.opener.opened, (QList{QUrl::fromLocalFile(downloads), QUrl::fromLocalFile(downloads + u"/a"_s)}));
    EXPECT_TRUE(desktop.viewer.shown.isEmpty());
}

TEST_F(RowCommandsTest, OpensAFinishedFileThatIsThere)
{
    const ItemPtr item = add("a.zip", S::paused);
    const QString path = engine.sandbox.write(u"Downloads/a.zip"_s, "x");
    item->setLocalPath(path);
    commands.open(*item);
    EXPECT_TRUE(desktop.opener.opened.isEmpty());
    item->setStatus(S::completed);
    commands.open(*item);
    EXPECT_EQ(desktop.opener.opened, QList{QUrl::fromLocalFile(path)});
    QFile::remove(path);
    commands.open(*item);
    EXPECT_EQ(desktop.opener.opened.size(), 1);
}

TEST_F(RowCommandsTest, OfAnExtractedSetOpensTheFolder)
{
    const DownloadGroup group = addSet(S::completed);
    const ItemPtr first = group.items[0];
    first->setLocalPath(engine.sandbox.write(u"Downloads/a/a.part1.rar"_s, "x"));
    first->setExtractionStatus(ExtractionStatus::done);
    commands.open(*first);
    EXPECT_EQ(desktop.opener.opened.back(), QUrl::fromLocalFile(engine.sandbox.path(u"Downloads/a"_s)));
    engine.manager().renameGroup(u"a"_s, u"My film"_s);
    commands.open(*first); // nothing was unpacked to there
    EXPECT_EQ(desktop.opener.opened.size(), 2);
    EXPECT_EQ(desktop.opener.opened.back(), QUrl::fromLocalFile(engine.sandbox.path(u"Downloads/a"_s)));
    engine.sandbox.write(u"Downloads/My film/film.mkv"_s, "x");
    commands.open(*first);
    EXPECT_EQ(desktop.opener.opened.back(), QUrl::fromLocalFile(engine.sandbox.path(u"Downloads/My film"_s)));
}

TEST_F(RowCommandsTest, EveryPartOfAnExtractedSetOpensTheFolder)
{
    const DownloadGroup group = addSet(S::completed);
    for (const ItemPtr& item : group.items)
        item->setLocalPath(engine.sandbox.write(u"Downloads/a/"_s + item->filename(), "x"));
    commands.open(*group.items[1]);
    EXPECT_EQ(desktop.opener.opened.back(), QUrl::fromLocalFile(*group.items[1]->localPath()));
    group.items[0]->setExtractionStatus(ExtractionStatus::done);
    commands.open(*group.items[1]);
    EXPECT_EQ(desktop.opener.opened.back(), QUrl::fromLocalFile(engine.sandbox.path(u"Downloads/a"_s)));
    engine.settings().extractionFolderPath.set(engine.sandbox.path(u"Unpacked"_s));
    engine.settings().useCustomExtractionFolder.set(true);
    engine.manager().renameGroup(u"a"_s, u"My film"_s);
    engine.sandbox.write(u"Unpacked/film.mkv"_s, "x");
    group.items[1]->setLocalPath(std::nullopt); // volumes may go when they are unpacked
    commands.open(*group.items[1]);
    EXPECT_EQ(desktop.opener.opened.back(), QUrl::fromLocalFile(engine.sandbox.path(u"Unpacked"_s)));
    engine.sandbox.write(u"Unpacked/My film/film.mkv"_s, "x");
    commands.open(*group.items[1]);
    EXPECT_EQ(desktop.opener.opened.back(), QUrl::fromLocalFile(engine.sandbox.path(u"Unpacked/My film"_s)));
}

TEST_F(RowCommandsTest, WhatIsRemovedCanBePutBack)
{
    const DownloadGroup group = addSet(S::paused);
    const ItemPtr item = add("b.zip", S::paused);
    commands.run(RowButton::remove, item);
    commands.run(RowButton::removeGroup, group);
    EXPECT_TRUE(engine.manager().items().empty());
    engine.manager().removed().putBack();
    EXPECT_EQ(engine.manager().items().size(), 3U);
}

TEST_F(RowCommandsTest, VerifyOfAGroupTestsItsFirstVolumeAndFetchesABadOneAgain)
{
    engine.settings().autoStartDownloads.set(true);
    const DownloadGroup group = addSet(S::completed);
    for (std::size_t i : {0U, 1U}) {
        const QString name = group.items[i]->filename();
        group.items[i]->setLocalPath(engine.sandbox.write(u"Downloads/a/"_s + name, "x"));
    }
    engine.tools.add(u"unrar"_s, "echo 'Cannot find volume a.part2.rar'; exit 3");
    commands.run(RowButton::verifyGroup, group);
    EXPECT_TRUE(fixtures::waitUntil([&group] { return group.items[1]->status() != S::completed; }));
    EXPECT_EQ(group.items[0]->status().kind(), S::completed);
    const QList<QStringList> calls = engine.tools.calls(u"unrar"_s);
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls.front().front(), u"t");
    EXPECT_EQ(calls.front().back(), *group.items[0]->localPath());
}

TEST_F(RowCommandsTest, StopExtractingEndsTheToolOfTheRowOrOfTheGroup)
{
    const DownloadGroup group = addSet(S::completed);
    for (const ItemPtr& item : group.items)
        item->setLocalPath(engine.sandbox.write(u"Downloads/a/"_s + item->filename(), "x"));
    engine.tools.add(u"unrar"_s, "exec sleep 600");
    const auto begin = [&] {
        const qsizetype calls = engine.tools.calls(u"unrar"_s).size();
        engine.manager().commands().retryExtraction(group.items[0]->id());
        EXPECT_TRUE(fixtures::waitUntil([&] { return engine.tools.calls(u"unrar"_s).size() > calls; }));
        EXPECT_EQ(group.items[0]->extractionStatus(), ExtractionStatus::extracting);
    };
    const auto isStopped = [&group] { return group.items[0]->extractionStatus() == ExtractionStatus::idle; };
    begin();
    commands.run(RowButton::stopExtraction, group.items[0]);
    EXPECT_TRUE(fixtures::waitUntil(isStopped));
    begin();
    commands.run(RowButton::stopExtraction, group);
    EXPECT_TRUE(fixtures::waitUntil(isStopped));
}

TEST_F(RowCommandsTest, VerifyOfAGroupWithoutItsFirstVolumeSaysAndDoesNothing)
{
    const DownloadGroup group = addSet(S::completed);
    group.items[1]->setLocalPath(engine.sandbox.write(u"Downloads/a/a.part2.rar"_s, "x"));
    engine.tools.add(u"unrar"_s);
    commands.run(RowButton::verifyGroup, group);
    for (const ItemPtr& item : group.items)
        EXPECT_EQ(item->verification().kind, VerificationResult::none);
    EXPECT_EQ(group.items[1]->status().kind(), S::completed);
}

TEST_F(RowCommandsTest, ResyncOfAGroupIsForAllItsItems)
{
    const DownloadGroup group = addSet(S::paused);
    engine.sandbox.write(u"Downloads/a/a.part1.rar"_s, "x");
    group.items[0]->setTotalBytes(1);
    group.items[1]->setStatus(S::completed);
    group.items[1]->setLocalPath(engine.sandbox.path(u"Downloads/a/a.part2.rar"_s)); // gone
    commands.run(RowButton::resyncGroup, group);
    EXPECT_TRUE(fixtures::waitUntil(
        [&group] { return group.items[0]->status() == S::completed && group.items[1]->status() != S::completed; }));
}

TEST_F(RowCommandsTest, PauseOfAGroupIsForItsRunningItems)
{
    DownloadGroup group = addSet(S::downloading);
    group.items[0]->setStatus(S::completed);
    commands.run(RowButton::pauseGroup, group);
    EXPECT_EQ(group.items[0]->status().kind(), S::completed);
    EXPECT_EQ(group.items[1]->status().kind(), S::paused);
}

TEST_F(RowCommandsTest, StopAndStartAreForAllOfAGroup)
{
    const DownloadGroup group = addSet(S::queued);
    commands.run(RowButton::stopGroup, group);
    for (const ItemPtr& item : group.items)
        EXPECT_EQ(item->status().kind(), S::stopped);
    for (const RowButton start : {RowButton::startStoppedGroup, RowButton::startGroup}) {
        commands.run(start, group);
        for (const ItemPtr& item : group.items) {
            EXPECT_NE(item->status().kind(), S::stopped);
            item->setStatus(S::stopped);
        }
    }
}

TEST_F(RowCommandsTest, RepairReleasesTheRecoveryVolumes)
{
    const DownloadGroup group = addSet(S::completed);
    const ItemPtr volume = add("a.part1.rev", S::paused);
    commands.run(RowButton::repairGroup, group);
    turnEventLoop();
    EXPECT_NE(volume->status().kind(), S::paused);
}

TEST_F(RowCommandsTest, VerifyWithoutAFirstVolumeDoesNothing)
{
    const DownloadGroup group = addSet(S::completed);
    commands.run(RowButton::verifyGroup, group); // no item has a file
    turnEventLoop();
    for (const ItemPtr& item : group.items)
        EXPECT_EQ(item->status().kind(), S::completed);
}

TEST_F(RowCommandsTest, RemoveOfAGroupTakesItsHiddenVolumesToo)
{
    const DownloadGroup group = addSet(S::paused);
    add("a.part1.rev", S::paused);
    add("b.zip", S::paused);
    commands.run(RowButton::removeGroup, group);
    ASSERT_EQ(engine.manager().items().size(), 1U);
    EXPECT_EQ(engine.manager().items().front()->filename(), u"b.zip");
}

TEST_F(RowCommandsTest, AButtonOfAnotherKindOfRowDoesNothing)
{
    const DownloadGroup group = addSet(S::paused);
    commands.run(RowButton::remove, group);
    commands.run(RowButton::removeGroup, group.items[0]);
    EXPECT_EQ(engine.manager().items().size(), 2U);
}

TEST_F(RowCommandsTest, GroupsMoveByOnePlaceAndStopAtTheEnds)
{
    add("a.zip", S::paused);
    add("b.zip", S::paused);
    add("c.zip", S::paused);
    const auto names = [this] {
        QString all;
        for (const ItemPtr& item : engine.manager().items())
            all += item->filename().left(1);
        return all;
    };
    const QStringList ids{u"a.zip"_s, u"b.zip"_s, u"c.zip"_s};
    commands.moveGroup(ids, 0, -1);
    commands.moveGroup(ids, 2, 4);
    EXPECT_EQ(names(), u"abc");
    commands.moveGroup(ids, 0, 2);
    EXPECT_EQ(names(), u"bac");
    commands.moveGroup({ids[1], ids[0], ids[2]}, 2, 1);
    EXPECT_EQ(names(), u"bca");
}

TEST_F(RowCommandsTest, AnEmptyNameBringsTheOwnOneBack)
{
    EXPECT_FALSE(commands.hasCustomName(u"a"_s));
    commands.renameGroup(u"a"_s, u"My film"_s);
    EXPECT_TRUE(commands.hasCustomName(u"a"_s));
    commands.renameGroup(u"a"_s, {});
    EXPECT_FALSE(commands.hasCustomName(u"a"_s));
}

} // namespace
} // namespace vormel
