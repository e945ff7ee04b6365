#include "ui/queue/list/GroupDrag.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "ui/FakeDesktop.h"
#include "ui/queue/list/QueueView.h"
#include "ui/queue/rows/RowMetrics.h"
#include "ui/queue/tree/QueueModel.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;

/// A list with the set "s" of two parts, open, and the plain files f0, f1 and so on below it.
class GroupDragTest : public ::testing::Test
{
protected:
    GroupDragTest()
    {
        QStringList urls{u"https://h.example/s.part1.rar"_s, u"https://h.example/s.part2.rar"_s};
        for (int i = 0; i < 20; ++i)
            urls << u"https://h.example/f%1.bin"_s.arg(i);
        engine.add(urls);
        view.resize(600, 420);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
        view.expand(model.index(0, 0));
        turnEventLoop();
    }
    QRect rect(int row) const { return view.visualRect(model.index(row, 0)); }
    static QPoint left(const QRect& rect) { return {60, rect.center().y()}; }
    void press(QPoint point) { QTest::mousePress(view.viewport(), Qt::LeftButton, {}, point); }
    void moveTo(QPoint point)
    {
        QMouseEvent move(QEvent::MouseMove, point, view.viewport()->mapToGlobal(point), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(view.viewport(), &move);
    }
    void drop(QPoint point)
    {
        moveTo(point);
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, point);
        turnEventLoop();
    }
    QString order(int count = 4)
    {
        QStringList ids = model.groupIds().mid(0, count);
        return ids.replaceInStrings(u".bin"_s, QString()).join(u' ');
    }

    fixtures::EngineOnScript engine;
    fixtures::FakeDesktop desktop{engine};
    QueueModel model{engine.manager(), engine.clock};
    QueueView view{model, RowCommands(desktop.ports())};
};

TEST_F(GroupDragTest, AFileIsPutInFrontOfAnother)
{
    press(left(rect(3)));
    drop(rect(1).topLeft() + QPoint(60, 2));
    EXPECT_EQ(order(), u"s f2 f0 f1");
}

TEST_F(GroupDragTest, AGroupGoesBehindAnotherWithAllItsParts)
{
    press(left(rect(0)));
    drop(rect(1).bottomLeft() + QPoint(60, -2));
    EXPECT_EQ(order(), u"f0 s f1 f2");
    EXPECT_TRUE(view.isExpanded(model.index(1, 0)));
}

TEST_F(GroupDragTest, ARowOfAGroupDragsItsGroup)
{
    press(left(view.visualRect(model.index(1, 0, model.index(0, 0)))));
    drop(rect(2).bottomLeft() + QPoint(60, -2));
    EXPECT_EQ(order(), u"f0 f1 s f2");
}

TEST_F(GroupDragTest, NothingLandsAmongThePartsOfAnOpenGroup)
{
    press(left(rect(2)));
    drop(rect(0).bottomLeft() + QPoint(60, -2)); // in the upper half of the whole group
    EXPECT_EQ(order(), u"f1 s f0 f2");
}

TEST_F(GroupDragTest, BelowTheLastRowIsTheEnd)
{
    view.resize(600, 4000);
    turnEventLoop();
    press(left(rect(1)));
    drop(QPoint(60, 3990));
    EXPECT_EQ(model.groupIds().back(), u"f0.bin");
}

TEST_F(GroupDragTest, ASmallMoveIsAClick)
{
    press(left(rect(1)));
    drop(left(rect(1)) + QPoint(2, 2));
    EXPECT_EQ(order(), u"s f0 f1 f2");
    EXPECT_EQ(view.currentIndex(), model.index(1, 0));
}

TEST_F(GroupDragTest, DroppedWhereItIsItStays)
{
    press(left(rect(1)));
    moveTo(left(rect(3)));
    drop(left(rect(1)));
    EXPECT_EQ(order(), u"s f0 f1 f2");
}

TEST_F(GroupDragTest, EscapeEndsIt)
{
    press(left(rect(3)));
    moveTo(left(rect(1)));
    QTest::keyClick(&view, Qt::Key_Escape);
    drop(left(rect(1)));
    EXPECT_EQ(order(), u"s f0 f1 f2");
}

TEST_F(GroupDragTest, DraggingSelectsTheDraggedRowAndNoOther)
{
    press(left(rect(2)));
    moveTo(left(rect(1)));
    moveTo(left(rect(3)));
    EXPECT_EQ(view.currentIndex(), model.index(2, 0));
}

TEST_F(GroupDragTest, AFileThatLeavesTheQueueUnderWayIsNotDropped)
{
    press(left(rect(3)));
    moveTo(left(rect(1)));
    engine.manager().commands().removeGroup(u"f2.bin"_s);
    drop(left(rect(0)));
    EXPECT_EQ(order(), u"s f0 f1 f3");
}

TEST_F(GroupDragTest, ScrollsNearTheLowerEdge)
{
    press(left(rect(1)));
    moveTo(QPoint(60, view.viewport()->height() - 2));
    EXPECT_TRUE(fixtures::waitUntil([this] { return view.verticalScrollBar()->value() > 20; }));
    QTest::keyClick(&view, Qt::Key_Escape);
    const int place = view.verticalScrollBar()->value();
    QTest::qWait(50);
    EXPECT_EQ(view.verticalScrollBar()->value(), place);
}

TEST_F(GroupDragTest, NothingComesIntoSightWhileTheMouseIsDown)
{
    const std::vector<ItemId> last{engine.manager().items().back()->id()};
    press(left(rect(1)));
    view.reveal(last);
    EXPECT_EQ(view.verticalScrollBar()->value(), 0);
    moveTo(left(rect(3)));
    view.reveal(last);
    EXPECT_EQ(view.verticalScrollBar()->value(), 0);
    drop(left(rect(3)));
    view.reveal(last);
    EXPECT_GT(view.verticalScrollBar()->value(), 0);
}

TEST_F(GroupDragTest, WhatIsDraggedIsDimmedWhereItStands)
{
    view.resize(600, 900); // the picture stays away from the rows that are looked at
    turnEventLoop();
    const auto picture = [this](const QModelIndex& index) {
        return view.viewport()->grab(view.visualRect(index)).toImage();
    };
    const QModelIndex set = model.index(0, 0);
    const QModelIndex part = model.index(0, 0, set);
    press(left(rect(0)));
    view.clearSelection(); // what is dragged does not show that it is selected
    const std::vector<QImage> before{picture(set), picture(part), picture(model.index(1, 0))};
    moveTo(left(rect(6)));
    turnEventLoop();
    EXPECT_NE(picture(set), before[0]);
    EXPECT_NE(picture(part), before[1]);
    EXPECT_EQ(picture(model.index(1, 0)), before[2]);
    QTest::keyClick(&view, Qt::Key_Escape);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(view.viewport(), &leave);
    EXPECT_EQ(picture(set), before[0]);
    EXPECT_EQ(picture(part), before[1]);
}

TEST_F(GroupDragTest, ThePictureIsSmallAndStaysBesideThePointer)
{
    GroupDrag drag(view);
    const QRect area = view.viewport()->rect();
    drag.press(left(rect(2)));
    ASSERT_TRUE(drag.move(left(rect(1))));
    EXPECT_LT(drag.pictureRect().width(), 280);
    EXPECT_LT(drag.pictureRect().height(), rect(2).height());
    for (const QPoint point :
         {left(rect(1)), area.topLeft(), area.topRight(), area.bottomLeft(), area.bottomRight(), area.center()}) {
        drag.move(point);
        EXPECT_TRUE(area.contains(drag.pictureRect()));
        EXPECT_FALSE(drag.pictureRect().contains(point));
    }
    drag.cancel();
}

TEST_F(GroupDragTest, TheOtherButtonCallsADragOffAndOpensNoMenu)
{
    const QPoint there = left(rect(1));
    press(left(rect(3)));
    moveTo(there);
    QTest::mousePress(view.viewport(), Qt::RightButton, {}, there);
    QContextMenuEvent menu(QContextMenuEvent::Mouse, there, view.viewport()->mapToGlobal(there));
    QCoreApplication::sendEvent(view.viewport(), &menu);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(view.currentIndex(), model.index(3, 0));
    const QImage calm = view.grab().toImage();
    moveTo(left(rect(5)));
    EXPECT_EQ(view.grab().toImage(), calm) << "nothing is dragged";
    drop(left(rect(5)));
    EXPECT_EQ(order(), u"s f0 f1 f2");
}

TEST_F(GroupDragTest, EndsWhereItsPageGoes)
{
    QWidget window;
    view.setParent(&window);
    window.resize(view.size());
    window.show();
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    press(left(rect(3)));
    moveTo(left(rect(1)));
    view.hide();
    view.show();
    drop(left(rect(1)));
    EXPECT_EQ(order(), u"s f0 f1 f2");
    view.setParent(nullptr);
}

TEST_F(GroupDragTest, ButtonsAreNotDragged)
{
    const QRect row = rect(2);
    press(QPoint(view.viewport()->width() - RowMetrics::marginX - 8, row.top() + RowMetrics::marginY + 10));
    drop(left(rect(1)));
    EXPECT_EQ(order(), u"s f0 f1 f2");
}

} // namespace
} // namespace vormel
