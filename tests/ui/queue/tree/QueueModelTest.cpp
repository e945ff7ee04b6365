#include "ui/queue/tree/QueueModel.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;

QStringList links(int count, const QString& ending = u"zip"_s)
{
    QStringList urls;
    for (int i = 0; i < count; ++i)
        urls << u"https://host.example/file%1.%2"_s.arg(i).arg(ending);
    return urls;
}

class QueueModelTest : public ::testing::Test
{
protected:
    QStringList names() const
    {
        QStringList all;
        for (int row = 0; row < model.rowCount(); ++row)
            all << model.index(row, 0).data(QueueModel::nameRole).toString();
        return all;
    }
    QString text(int role) const { return model.index(0, 0).data(role).toString(); }

    fixtures::EngineOnScript engine;
    QueueModel model{engine.manager(), engine.clock};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy changes{&model, &QAbstractItemModel::dataChanged};
    QSignalSpy removals{&model, &QAbstractItemModel::rowsRemoved};
    QSignalSpy resets{&model, &QAbstractItemModel::modelReset};
};

TEST_F(QueueModelTest, FollowsTheQueueInItsOrder)
{
    const auto items = engine.add(links(4));
    EXPECT_EQ(names(), (QStringList{u"file0.zip"_s, u"file1.zip"_s, u"file2.zip"_s, u"file3.zip"_s}));
    engine.manager().commands().removeItems({items[0]->id(), items[2]->id()});
    EXPECT_EQ(names(), (QStringList{u"file1.zip"_s, u"file3.zip"_s}));
    EXPECT_EQ(model.indexOf(items[3]->id()).row(), 1);
    EXPECT_FALSE(model.indexOf(items[0]->id()).isValid());
}

TEST_F(QueueModelTest, ShowsWhatWasThereBeforeIt)
{
    engine.add(links(3));
    const QueueModel late(engine.manager(), engine.clock);
    EXPECT_EQ(late.rowCount(), 3);
}

TEST_F(QueueModelTest, ScatteredRemovalsAreOneReset)
{
    const auto items = engine.add(links(100));
    QSet<ItemId> every;
    for (std::size_t i = 0; i < items.size(); i += 2)
        every << items[i]->id();
    engine.manager().commands().removeItems(every);
    EXPECT_EQ(resets.count(), 1);
    EXPECT_EQ(removals.count(), 0);
    EXPECT_EQ(model.rowCount(), 50);
    EXPECT_EQ(model.indexOf(items[99]->id()).row(), 49);
}

TEST_F(QueueModelTest, TellsAllChangesOfATurnOnceAndOnlyForTheirRows)
{
    const auto items = engine.add(links(10));
    changes.clear();
    for (int step = 1; step <= 50; ++step) {
        items[4]->setBytesReceived(step);
        items[4]->setSpeedBytesPerSec(step);
    }
    EXPECT_EQ(changes.count(), 0);
    turnEventLoop();
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes[0][0].toModelIndex().row(), 4);
    EXPECT_EQ(changes[0][1].toModelIndex().row(), 4);
}

TEST_F(QueueModelTest, NeighbouringChangesAreOneSpan)
{
    const auto items = engine.add(links(10));
    changes.clear();
    for (const std::size_t row : {8U, 2U, 3U, 4U})
        items[row]->setBytesReceived(1);
    turnEventLoop();
    ASSERT_EQ(changes.count(), 2);
    EXPECT_EQ(changes[0][0].toModelIndex().row(), 2);
    EXPECT_EQ(changes[0][1].toModelIndex().row(), 4);
    EXPECT_EQ(changes[1][0].toModelIndex().row(), 8);
}

TEST_F(QueueModelTest, AsksForAnotherHeightOnlyWhenTheLinesDiffer)
{
    const auto item = engine.add(links(1)).front();
    const auto saysSize = [this] { return changes.last()[2].value<QList<int>>().contains(Qt::SizeHintRole); };
    item->setStatus(DownloadStatus::stopped);
    turnEventLoop();
    EXPECT_FALSE(saysSize());
    item->setStatus(DownloadStatus::downloading);
    turnEventLoop();
    EXPECT_TRUE(saysSize());
    item->setBytesReceived(5);
    turnEventLoop();
    EXPECT_FALSE(saysSize());
    item->setExtractionStatus(ExtractionStatus::extracting);
    turnEventLoop();
    EXPECT_TRUE(saysSize());
    item->setExtractionStatus(ExtractionStatus::done);
    turnEventLoop();
    EXPECT_FALSE(saysSize());
}

TEST_F(QueueModelTest, AnItemThatGoesWhileItsChangeWaitsIsForgotten)
{
    const auto items = engine.add(links(2));
    changes.clear();
    items[1]->setBytesReceived(9);
    engine.manager().commands().removeItems({items[1]->id()});
    turnEventLoop();
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(QueueModelTest, HidesRecoveryVolumesThatAreNeitherComingNorThere)
{
    const auto items =
        engine.add({u"https://h.example/a.rar"_s, u"https://h.example/a.ReV"_s, u"https://h.example/b.rar"_s});
    EXPECT_EQ(names(), (QStringList{u"a.rar"_s, u"b.rar"_s}));
    items[1]->setStatus(DownloadStatus::downloading);
    turnEventLoop();
    EXPECT_EQ(names(), (QStringList{u"a.rar"_s, u"a.ReV"_s, u"b.rar"_s}));
    EXPECT_EQ(model.indexOf(items[2]->id()).row(), 2);
    items[1]->setStatus(DownloadStatus::failure(u"x"_s));
    turnEventLoop();
    EXPECT_EQ(model.rowCount(), 2);
    items[1]->setStatus(DownloadStatus::completed);
    turnEventLoop();
    EXPECT_EQ(model.rowCount(), 3);
}

TEST_F(QueueModelTest, ShowsRecoveryVolumesWhenTheyAreWanted)
{
    engine.add({u"https://h.example/a.part1.rar"_s, u"https://h.example/a.part1.rev"_s});
    EXPECT_EQ(model.rowCount(model.index(0, 0)), 0);
    engine.settings().downloadRevFiles.set(true);
    EXPECT_EQ(model.rowCount(model.index(0, 0)), 2);
    engine.settings().downloadRevFiles.set(false);
    EXPECT_EQ(model.rowCount(model.index(0, 0)), 0);
}

TEST_F(QueueModelTest, ManyRowsMayComeToSightAtOnce)
{
    const auto items = engine.add(links(40, u"rev"_s));
    for (const ItemPtr& item : items)
        item->setStatus(DownloadStatus::downloading);
    turnEventLoop();
    EXPECT_EQ(model.rowCount(), 40);
    EXPECT_EQ(model.indexOf(items[39]->id()).row(), 39);
}

TEST_F(QueueModelTest, RolesGiveFinishedValues)
{
    const auto item = engine.add(links(1)).front();
    item->setStatus(DownloadStatus::downloading);
    item->setBytesReceived(1024);
    item->setTotalBytes(2048);
    item->setProgress(0.5);
    item->setSpeedBytesPerSec(2048);
    EXPECT_EQ(model.index(0, 0).data(QueueModel::idRole).value<ItemId>(), item->id());
    EXPECT_EQ(text(Qt::DisplayRole), u"file0.zip");
    EXPECT_EQ(text(QueueModel::statusTextRole), u"Downloading");
    EXPECT_EQ(text(QueueModel::byteTextRole), u"1 KB / 2 KB");
    EXPECT_EQ(text(QueueModel::speedTextRole), u"2 KB/s");
    EXPECT_EQ(text(QueueModel::hostRole), u"host.example");
    EXPECT_EQ(model.index(0, 0).data(QueueModel::progressRole).toDouble(), 0.5);
    EXPECT_EQ(model.index(0, 0).data(QueueModel::statusRole).toInt(), DownloadStatus::downloading);
    EXPECT_TRUE(text(Qt::AccessibleTextRole).startsWith(u"file0.zip, Downloading"));
}

TEST_F(QueueModelTest, CopiesTheNameOfAGroupAndTheLinkOfARow)
{
    engine.add({u"https://h.example/film.part1.rar"_s, u"https://h.example/film.part2.rar"_s});
    EXPECT_EQ(text(QueueModel::copyRole), u"film");
    engine.add(u"https://h.example/film.part4.rar"_s);
    EXPECT_EQ(text(QueueModel::copyRole), u"film\n1 part not in the list\nNot in the list: 3");
    const QModelIndex member = model.index(1, 0, model.index(0, 0));
    EXPECT_EQ(member.data(QueueModel::copyRole).toString(), u"https://h.example/film.part2.rar");
}

TEST_F(QueueModelTest, TellsOfAWait)
{
    const auto items = engine.add(links(3));
    changes.clear();
    items[1]->setWait({ItemWait::sameName});
    turnEventLoop();
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes[0][0].toModelIndex().row(), 1);
    EXPECT_TRUE(model.index(1, 0).data(Qt::AccessibleTextRole).toString().contains(u"Waits for another link"));
    EXPECT_FALSE(changes[0][2].value<QList<int>>().contains(Qt::SizeHintRole));
}

TEST_F(QueueModelTest, ChangesItsTextsWithTheLanguage)
{
    engine.add(links(3));
    changes.clear();
    engine.settings().language.set(AppLanguage::italian);
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes[0][1].toModelIndex().row(), 2);
    EXPECT_EQ(text(QueueModel::statusTextRole), u"In pausa");
}

} // namespace
} // namespace vormel
