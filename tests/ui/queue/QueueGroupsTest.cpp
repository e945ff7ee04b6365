#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "ui/queue/tree/QueueModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;

QString url(const QString& name)
{
    return u"https://h.example/"_s + name;
}

class QueueGroupsTest : public ::testing::Test
{
protected:
    ItemPtr add(const char* name) { return engine.add(url(QString::fromLatin1(name))); }
    /// "movie[a b] c": headers with their members, and plain rows.
    QString shown() const
    {
        QStringList top;
        for (int row = 0; row < model.rowCount(); ++row)
            top << textOf(model.index(row, 0));
        return top.join(u' ');
    }
    QString textOf(const QModelIndex& index) const
    {
        QStringList members;
        for (int row = 0; row < model.rowCount(index); ++row)
            members << model.index(row, 0, index).data(QueueModel::nameRole).toString();
        const QString name = index.data(QueueModel::nameRole).toString();
        return members.isEmpty() ? name : name + u'[' + members.join(u' ') + u']';
    }
    HeaderContent header(int row) const
    {
        return model.index(row, 0).data(QueueModel::headerRole).value<HeaderContent>();
    }

    fixtures::EngineOnScript engine;
    QueueModel model{engine.manager(), engine.clock};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy resets{&model, &QAbstractItemModel::modelReset};
    QSignalSpy changes{&model, &QAbstractItemModel::dataChanged};
};

TEST_F(QueueGroupsTest, PartsFormOneGroupInTheOrderOfTheirNumbers)
{
    engine.add({url(u"Movie.part10.rar"_s), url(u"Movie.part1.rar"_s), url(u"Movie.PART2.RAR"_s), url(u"Movie.rar"_s)});
    EXPECT_EQ(shown(), u"Movie[Movie.part1.rar Movie.PART2.RAR Movie.part10.rar] Movie.rar");
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(QueueGroupsTest, ASetOfOneIsAPlainRow)
{
    add("Movie.part1.rar");
    EXPECT_EQ(shown(), u"Movie.part1.rar");
    EXPECT_FALSE(model.isHeader(model.index(0, 0)));
}

TEST_F(QueueGroupsTest, ALaterPartJoinsItsGroupWhereItStands)
{
    add("a.part1.rar");
    add("b.zip");
    const ItemPtr part = add("a.part3.rar");
    EXPECT_EQ(shown(), u"a[a.part1.rar a.part3.rar] b.zip");
    add("a.part2.rar");
    EXPECT_EQ(shown(), u"a[a.part1.rar a.part2.rar a.part3.rar] b.zip");
    EXPECT_EQ(model.indexOf(part->id()).row(), 2);
    EXPECT_EQ(model.indexOf(part->id()).parent(), model.index(0, 0));
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(QueueGroupsTest, ANameThatIsFoundOutMakesTwoRowsOneHeader)
{
    const auto items = engine.add({url(u"one"_s), url(u"between.zip"_s), url(u"two"_s)});
    items[2]->setFilename(u"a.part2.rar"_s);
    turnEventLoop();
    EXPECT_EQ(shown(), u"one between.zip a.part2.rar");
    items[0]->setFilename(u"a.part1.rar"_s);
    turnEventLoop();
    EXPECT_EQ(shown(), u"a[a.part1.rar a.part2.rar] between.zip");
    items[0]->setFilename(u"c.part1.rar"_s);
    turnEventLoop();
    EXPECT_EQ(shown(), u"c.part1.rar between.zip a.part2.rar");
}

TEST_F(QueueGroupsTest, NamesThatAreFoundOutInOneTurnAreFollowedTogether)
{
    const auto items = engine.add({url(u"one"_s), url(u"two"_s), url(u"three"_s)});
    for (std::size_t i = 0; i < 3; ++i)
        items[i]->setFilename(u"a.part%1.rar"_s.arg(i + 1));
    turnEventLoop();
    EXPECT_EQ(shown(), u"a[a.part1.rar a.part2.rar a.part3.rar]");
    EXPECT_EQ(model.headerOf(u"a"_s), model.index(0, 0));
}

TEST_F(QueueGroupsTest, ManyNewNamesOfPlainFilesAreNoNewRows)
{
    QStringList urls;
    for (int i = 0; i < 50; ++i)
        urls << url(u"f%1"_s.arg(i));
    const auto items = engine.add(urls);
    for (const ItemPtr& item : items)
        item->setFilename(item->filename() + u".zip"_s);
    turnEventLoop();
    EXPECT_EQ(resets.count(), 0);
    EXPECT_TRUE(shown().startsWith(u"f0.zip f1.zip "));
}

TEST_F(QueueGroupsTest, AGroupThatLosesAllButOneIsAPlainRow)
{
    const auto items =
        engine.add({url(u"a.part1.rar"_s), url(u"a.part2.rar"_s), url(u"a.part3.rar"_s), url(u"z.zip"_s)});
    engine.manager().commands().removeItems({items[1]->id()});
    EXPECT_EQ(shown(), u"a[a.part1.rar a.part3.rar] z.zip");
    engine.manager().commands().removeItems({items[0]->id()});
    EXPECT_EQ(shown(), u"a.part3.rar z.zip");
    EXPECT_EQ(model.indexOf(items[2]->id()), model.index(0, 0));
    engine.manager().commands().removeItems({items[2]->id()});
    EXPECT_EQ(shown(), u"z.zip");
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(QueueGroupsTest, AHiddenRecoveryVolumeAppearsWhenItDownloadsAndGoesAgain)
{
    add("a.part1.rar");
    const ItemPtr volume = add("a.part1.rev");
    EXPECT_EQ(shown(), u"a.part1.rar");
    volume->setStatus(DownloadStatus::downloading);
    turnEventLoop();
    EXPECT_EQ(shown(), u"a[a.part1.rar a.part1.rev]");
    volume->setStatus(DownloadStatus::queued);
    turnEventLoop();
    EXPECT_EQ(shown(), u"a.part1.rar");
}

TEST_F(QueueGroupsTest, TheStateOfOneVolumeMayHideAnother)
{
    const auto items = engine.add({url(u"a.part1.rar"_s), url(u"a.part2.rar"_s), url(u"a.part1.rev"_s)});
    engine.settings().downloadRevFiles.set(true);
    EXPECT_EQ(shown(), u"a[a.part1.rar a.part1.rev a.part2.rar]"); // volume and part 1 in the order of the queue
    items[0]->setStatus(DownloadStatus::completed);
    items[1]->setStatus(DownloadStatus::completed);
    turnEventLoop();
    EXPECT_EQ(shown(), u"a[a.part1.rar a.part2.rar]");
}

TEST_F(QueueGroupsTest, FollowsAnotherOrder)
{
    add("a.part1.rar");
    add("a.part2.rar");
    add("b.zip");
    engine.manager().commands().moveGroups({1}, 0, model.groupIds());
    EXPECT_EQ(shown(), u"b.zip a[a.part1.rar a.part2.rar]");
}

TEST_F(QueueGroupsTest, AHeaderTellsOfItsMembersAndOffersWhatTheyAllow)
{
    add("a.part1.rar");
    add("a.part2.rar");
    EXPECT_EQ(header(0).summaryText, u"Paused");
    EXPECT_EQ(header(0).buttons.front(), RowButton::startGroup);
    changes.clear();
    add("a.part1.rev");
    turnEventLoop();
    EXPECT_EQ(header(0).buttons[2], RowButton::repairGroup);
    ASSERT_EQ(changes.count(), 1); // the volume itself is hidden
    EXPECT_EQ(changes[0][0].toModelIndex(), model.index(0, 0));
    EXPECT_EQ(model.index(0, 0).data(Qt::AccessibleTextRole).toString(), u"a, Paused, 2 parts");
}

TEST_F(QueueGroupsTest, ATickTellsTheMemberAndItsHeader)
{
    add("a.part1.rar");
    const ItemPtr part = add("a.part2.rar");
    part->setStatus(DownloadStatus::downloading);
    turnEventLoop();
    changes.clear();
    part->setBytesReceived(5);
    turnEventLoop();
    ASSERT_EQ(changes.count(), 2);
    EXPECT_EQ(changes[0][0].toModelIndex(), model.index(0, 0));
    EXPECT_EQ(changes[1][0].toModelIndex(), model.index(1, 0, model.index(0, 0)));
    EXPECT_FALSE(changes[0][2].value<QList<int>>().contains(Qt::SizeHintRole));
}

TEST_F(QueueGroupsTest, AHeaderGrowsByItsProgressLine)
{
    const ItemPtr first = add("a.part1.rar");
    const ItemPtr second = add("a.part2.rar");
    first->setStatus(DownloadStatus::queued);
    second->setStatus(DownloadStatus::queued);
    turnEventLoop();
    changes.clear();
    second->setStatus(DownloadStatus::downloading);
    turnEventLoop();
    EXPECT_TRUE(changes[0][2].value<QList<int>>().contains(Qt::SizeHintRole));
    EXPECT_EQ(model.index(0, 0).data(QueueModel::linesRole).value<RowLines::Int>(),
              RowLines(RowLine::progress).toInt());
}

TEST_F(QueueGroupsTest, AHeaderTellsWhatItsSetLacks)
{
    const ItemPtr first = add("a.part1.rar");
    const ItemPtr second = add("a.part2.rar");
    first->setStatus(DownloadStatus::queued);
    second->setStatus(DownloadStatus::queued);
    turnEventLoop();
    EXPECT_EQ(header(0).lackText, u"");
    changes.clear();
    second->setStatus(DownloadStatus::failure(u"gone"_s));
    turnEventLoop();
    EXPECT_EQ(header(0).lackText, u"Part 2 of 2 failed; nothing can rebuild it");
    EXPECT_TRUE(changes[0][2].value<QList<int>>().contains(Qt::SizeHintRole));
    EXPECT_TRUE(model.index(0, 0).data(Qt::AccessibleTextRole).toString().contains(header(0).lackText));
    EXPECT_TRUE(model.index(0, 0).data(Qt::ToolTipRole).toString().contains(header(0).lackText));
    second->setStatus(DownloadStatus::queued);
    turnEventLoop();
    EXPECT_EQ(header(0).lackText, u"");
    EXPECT_EQ(model.index(0, 0).data(QueueModel::linesRole).value<RowLines::Int>(), 0);
    EXPECT_EQ(model.index(0, 0).data(Qt::ToolTipRole).toString(), u"");
}

TEST_F(QueueGroupsTest, APartThatComesOrGoesChangesWhatItsSetLacks)
{
    const auto items = engine.add({url(u"a.part1.rar"_s), url(u"a.part2.rar"_s), url(u"a.part4.rar"_s)});
    EXPECT_EQ(header(0).lackText, u"1 part not in the list");
    engine.manager().commands().removeItems({items[1]->id()});
    EXPECT_EQ(header(0).lackText, u"2 parts not in the list");
    EXPECT_EQ(model.index(0, 0).data(QueueModel::linesRole).value<RowLines::Int>(), RowLines(header(0).lines).toInt());
    engine.add({url(u"a.part3.rar"_s), url(u"a.part2.rar"_s)});
    EXPECT_EQ(header(0).lackText, u"");
    EXPECT_EQ(model.index(0, 0).data(QueueModel::linesRole).value<RowLines::Int>(), RowLines(header(0).lines).toInt());
}

TEST_F(QueueGroupsTest, HiddenRecoveryVolumesCountWhenTheyComeFailAndGo)
{
    engine.add({url(u"a.part1.rar"_s), url(u"a.part3.rar"_s), url(u"b.part1.rar"_s), url(u"b.part2.rar"_s)});
    const ItemPtr volume = add("a.part1.rev");
    EXPECT_EQ(shown(), u"a[a.part1.rar a.part3.rar] b[b.part1.rar b.part2.rar]");
    EXPECT_EQ(header(0).lackText, u"1 part not in the list, 1 recovery volume can rebuild it");
    turnEventLoop();
    changes.clear();
    volume->setStatus(DownloadStatus::failure(u"gone"_s));
    turnEventLoop();
    EXPECT_EQ(header(0).lackText, u"1 part not in the list");
    EXPECT_EQ(changes.count(), 1);
    volume->setStatus(DownloadStatus::queued);
    turnEventLoop();
    changes.clear();
    engine.manager().commands().removeItems({volume->id()});
    EXPECT_EQ(header(0).lackText, u"1 part not in the list");
    EXPECT_GE(changes.count(), 1);
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(QueueGroupsTest, AHiddenVolumeThatTurnsOutToBeAnotherSetsCountsThere)
{
    engine.add({url(u"a.part1.rar"_s), url(u"a.part3.rar"_s), url(u"b.part1.rar"_s), url(u"b.part3.rar"_s)});
    const ItemPtr volume = add("a.part1.rev");
    turnEventLoop();
    changes.clear();
    volume->setFilename(u"b.part1.rev"_s);
    turnEventLoop();
    for (const int row : {0, 1}) // a view asks for what it is told of
        EXPECT_TRUE(std::ranges::any_of(changes, [row](const QList<QVariant>& change) {
            return change[0].toModelIndex().row() <= row && change[1].toModelIndex().row() >= row;
        })) << row;
    EXPECT_EQ(header(0).lackText, u"1 part not in the list");
    EXPECT_EQ(header(1).lackText, u"1 part not in the list, 1 recovery volume can rebuild it");
}

TEST_F(QueueGroupsTest, ANewNameShowsAtOnce)
{
    add("a.part1.rar");
    add("a.part2.rar");
    changes.clear();
    engine.manager().renameGroup(u"a"_s, u"My film"_s);
    EXPECT_EQ(header(0).title, u"My film");
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(model.index(0, 0, model.index(0, 0)).data(QueueModel::nameRole).toString(), u"a.part1.rar");
}

TEST_F(QueueGroupsTest, FollowsManyStepsByReadingAllAnew)
{
    QStringList urls;
    for (int i = 0; i < 60; ++i)
        urls << url(u"s%1.part%2.rar"_s.arg(i / 3).arg(i % 3 + 1));
    const auto items = engine.add(urls);
    EXPECT_EQ(model.rowCount(), 20);
    QSet<ItemId> firsts;
    for (std::size_t i = 0; i < items.size(); i += 3)
        firsts << items[i]->id();
    engine.manager().commands().removeItems(firsts);
    EXPECT_EQ(model.rowCount(), 20);
    EXPECT_EQ(model.rowCount(model.index(19, 0)), 2);
    EXPECT_EQ(resets.count(), 1);
}

} // namespace
} // namespace vormel
