#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "ui/FakeDesktop.h"
#include "ui/queue/list/QueueView.h"
#include "ui/queue/tree/QueueModel.h"

#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;

/// The sets s0 to s19 of three parts each.
class PlaceKeeperTest : public ::testing::Test
{
protected:
    PlaceKeeperTest()
    {
        QStringList urls;
        for (int i = 0; i < 60; ++i)
            urls << u"https://h.example/s%1.part%2.rar"_s.arg(i / 3).arg(i % 3 + 1);
        items = engine.add(urls);
        view.resize(600, 400);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
        turnEventLoop();
    }
    void remove(const QList<int>& which)
    {
        QSet<ItemId> ids;
        for (const int i : which)
            ids << items[static_cast<std::size_t>(i)]->id();
        engine.manager().commands().removeItems(ids);
        turnEventLoop();
    }
    QModelIndex header(const char* id) const { return model.headerOf(QString::fromLatin1(id)); }
    QModelIndex row(std::size_t item) const { return model.indexOf(items[item]->id()); }
    void select(const QModelIndex& index) { view.setCurrentIndex(index); }

    fixtures::EngineOnScript engine;
    std::vector<ItemPtr> items;
    fixtures::FakeDesktop desktop{engine};
    QueueModel model{engine.manager(), engine.clock};
    QueueView view{model, RowCommands(desktop.ports())};
};

TEST_F(PlaceKeeperTest, GroupsAreClosedUntilTheyAreOpened)
{
    for (int i = 0; i < model.rowCount(); ++i)
        EXPECT_FALSE(view.isExpanded(model.index(i, 0)));
}

TEST_F(PlaceKeeperTest, OpenGroupsStayOpenThroughAReset)
{
    view.expand(header("s3"));
    view.expand(header("s19"));
    engine.manager().commands().moveGroups({3}, 0, model.groupIds());
    turnEventLoop();
    EXPECT_EQ(header("s3").row(), 0);
    EXPECT_TRUE(view.isExpanded(header("s3")));
    EXPECT_TRUE(view.isExpanded(header("s19")));
    EXPECT_FALSE(view.isExpanded(header("s4")));
}

TEST_F(PlaceKeeperTest, AGroupThatFellApartIsOpenAgainWhenItComesBack)
{
    view.expand(header("s0"));
    remove({0, 1});
    EXPECT_FALSE(header("s0").isValid());
    engine.add(u"https://h.example/s0.part9.rar"_s);
    turnEventLoop();
    EXPECT_TRUE(view.isExpanded(header("s0")));
}

TEST_F(PlaceKeeperTest, TheSelectedItemStaysSelectedThroughAReset)
{
    view.expand(header("s5"));
    select(row(16));
    engine.manager().commands().moveGroups({5}, 18, model.groupIds());
    turnEventLoop();
    EXPECT_EQ(view.currentIndex(), row(16));
    EXPECT_TRUE(view.selectionModel()->isSelected(row(16)));
}

TEST_F(PlaceKeeperTest, TheSelectedHeaderStaysSelectedThroughAReset)
{
    select(header("s7"));
    engine.manager().commands().moveGroups({7}, 0, model.groupIds());
    turnEventLoop();
    EXPECT_EQ(view.currentIndex(), header("s7"));
    EXPECT_TRUE(view.selectionModel()->isSelected(header("s7")));
}

TEST_F(PlaceKeeperTest, WhatIsLeftOfASelectedGroupIsSelected)
{
    select(header("s2"));
    remove({6, 7});
    EXPECT_EQ(view.currentIndex(), row(8));
    EXPECT_FALSE(view.currentIndex().parent().isValid());
    EXPECT_TRUE(view.selectionModel()->isSelected(row(8)));
}

TEST_F(PlaceKeeperTest, TheOnlyOneLeftOfAnOpenGroupStaysSelected)
{
    view.expand(header("s2"));
    select(row(8));
    remove({6, 7});
    EXPECT_EQ(view.currentIndex(), row(8));
    EXPECT_TRUE(view.selectionModel()->isSelected(row(8)));
}

TEST_F(PlaceKeeperTest, OfASelectedFileThatJoinsAClosedGroupTheHeaderIsCurrentAndNotSelected)
{
    const ItemPtr file = engine.add(u"https://h.example/nameless"_s);
    select(model.indexOf(file->id()));
    file->setFilename(u"s0.part4.rar"_s);
    turnEventLoop();
    EXPECT_EQ(view.currentIndex(), header("s0"));
    EXPECT_FALSE(view.selectedRow().isValid());
    EXPECT_FALSE(view.isExpanded(header("s0")));
}

TEST_F(PlaceKeeperTest, ASelectedFileThatJoinsAnOpenGroupStaysSelected)
{
    view.expand(header("s0"));
    const ItemPtr file = engine.add(u"https://h.example/nameless"_s);
    select(model.indexOf(file->id()));
    file->setFilename(u"s0.part4.rar"_s);
    turnEventLoop();
    EXPECT_EQ(view.currentIndex(), model.indexOf(file->id()));
    EXPECT_EQ(view.currentIndex().parent(), header("s0"));
}

TEST_F(PlaceKeeperTest, ClosingAGroupMakesItCurrentInsteadOfItsItemAndSelectsNothing)
{
    view.expand(header("s1"));
    select(row(4));
    view.collapse(header("s1"));
    EXPECT_EQ(view.currentIndex(), header("s1"));
    EXPECT_FALSE(view.selectedRow().isValid());
}

TEST_F(PlaceKeeperTest, TheNextRowIsCurrentWhenTheSelectedOneGoesAndNothingIsSelected)
{
    select(header("s2"));
    remove({6, 7, 8});
    EXPECT_EQ(view.currentIndex(), header("s3"));
    EXPECT_FALSE(view.selectedRow().isValid());
}

TEST_F(PlaceKeeperTest, TheNeighbourOfASelectedItemThatGoesInAResetIsNotSelected)
{
    view.expand(header("s5"));
    select(row(16));
    QList<int> scattered{16}; // so many single steps that everything is read anew
    for (int i = 0; i < 60; i += 3) {
        if (i / 3 != 5)
            scattered << i;
    }
    remove(scattered);
    EXPECT_EQ(view.currentIndex().parent(), header("s5"));
    EXPECT_FALSE(view.selectedRow().isValid());
}

TEST_F(PlaceKeeperTest, ARowThatWasCurrentWithoutBeingSelectedStaysSo)
{
    view.selectionModel()->setCurrentIndex(header("s7"), QItemSelectionModel::NoUpdate);
    engine.manager().commands().moveGroups({7}, 0, model.groupIds());
    turnEventLoop();
    EXPECT_EQ(view.currentIndex(), header("s7"));
    EXPECT_FALSE(view.selectedRow().isValid());
}

TEST_F(PlaceKeeperTest, TheListStaysWhereItIsWhenRowsAboveItGo)
{
    view.verticalScrollBar()->setValue(600);
    const QModelIndex seen = view.indexAt(QPoint(100, 50));
    const QString id = model.group(seen).id;
    const int top = view.visualRect(seen).top();
    QList<int> scattered;
    for (int i = 0; i < 15; ++i)
        scattered << i;
    remove(scattered);
    EXPECT_EQ(view.visualRect(model.headerOf(id)).top(), top);
}

} // namespace
} // namespace vormel
