#include "ui/queue/list/QueueView.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "ui/FakeDesktop.h"
#include "ui/queue/SetAndFile.h"
#include "ui/queue/list/QueueDelegate.h"
#include "ui/queue/tree/QueueModel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPaintEvent>
#include <QProxyStyle>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;

/// Collects what a viewport is asked to paint.
class PaintWatch final : public QObject
{
public:
    explicit PaintWatch(QWidget* watched) { watched->installEventFilter(this); }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            painted += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

    QRegion painted;
};

/// Counts how often the heights of rows are asked for.
class CountingModel final : public QueueModel
{
public:
    using QueueModel::QueueModel;
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role == linesRole)
            ++heightsAsked;
        if (role == contentRole)
            ++rowsMade;
        return QueueModel::data(index, role);
    }

    mutable int heightsAsked = 0;
    mutable int rowsMade = 0;
};

/// One that lets things move, whatever the desktop says.
class LivelyStyle final : public QProxyStyle
{
public:
    explicit LivelyStyle(QObject* parent) { setParent(parent); }
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override
    {
        constexpr int duration = 200;
        return hint == SH_Widget_Animation_Duration ? duration : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

/// One that lets nothing move.
class StillStyle final : public QProxyStyle
{
public:
    explicit StillStyle(QObject* parent) { setParent(parent); }
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override
    {
        return hint == SH_Widget_Animation_Duration ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

class QueueViewTest : public ::testing::Test
{
protected:
    QueueViewTest()
    {
        QStringList urls;
        for (int i = 0; i < 200; ++i)
            urls << u"https://host.example/file%1.zip"_s.arg(i);
        items = engine.add(urls);
        view.resize(600, 400);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
        turnEventLoop();
    }
    QRect rowRect(int row) const { return view.visualRect(model.index(row, 0)); }

    fixtures::EngineOnScript engine;
    std::vector<ItemPtr> items;
    fixtures::FakeDesktop desktop{engine};
    CountingModel model{engine.manager(), engine.clock};
    QueueView view{model, RowCommands(desktop.ports())};
};

TEST_F(QueueViewTest, ATickRepaintsItsRowAndNothingElse)
{
    items[2]->setStatus(DownloadStatus::downloading);
    turnEventLoop();
    view.repaint();
    PaintWatch watch(view.viewport());
    model.heightsAsked = 0;
    model.rowsMade = 0;
    items[2]->setBytesReceived(77);
    turnEventLoop();
    EXPECT_EQ(watch.painted, QRegion(rowRect(2)));
    EXPECT_EQ(model.rowsMade, 1);
    EXPECT_LT(model.heightsAsked, 20); // those around the row; a new layout would ask for all 200
}

TEST_F(QueueViewTest, NeighbouringTicksRepaintJustTheirRows)
{
    PaintWatch watch(view.viewport());
    items[1]->setBytesReceived(5);
    items[2]->setBytesReceived(5);
    turnEventLoop();
    EXPECT_EQ(watch.painted, QRegion(rowRect(1)) + QRegion(rowRect(2)));
}

TEST_F(QueueViewTest, ATickOfARowOutOfSightPaintsNothing)
{
    PaintWatch watch(view.viewport());
    items[190]->setBytesReceived(5);
    turnEventLoop();
    EXPECT_TRUE(watch.painted.isEmpty());
}

TEST_F(QueueViewTest, MakesOnlyTheRowsThatItShows)
{
    model.rowsMade = 0;
    view.viewport()->repaint();
    EXPECT_GT(model.rowsMade, 3);
    EXPECT_LT(model.rowsMade, 20);
}

TEST_F(QueueViewTest, ARowGrowsWithItsLines)
{
    const int before = rowRect(2).height();
    const int nextBefore = rowRect(3).top();
    items[2]->setStatus(DownloadStatus::downloading);
    turnEventLoop();
    EXPECT_GT(rowRect(2).height(), before);
    EXPECT_EQ(rowRect(3).top() - nextBefore, rowRect(2).height() - before);
}

TEST_F(QueueViewTest, SelectsOneRowAndMovesByKeyboard)
{
    EXPECT_EQ(view.selectionMode(), QAbstractItemView::SingleSelection);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, rowRect(1).center());
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_EQ(view.currentIndex().row(), 2);
    EXPECT_EQ(view.selectionModel()->selectedIndexes().size(), 1);
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(view.currentIndex().row(), 199);
    EXPECT_TRUE(view.viewport()->rect().contains(rowRect(199)));
}

TEST_F(QueueViewTest, GoesToAnItemAndSelectsIt)
{
    view.goTo(items[150]->id());
    EXPECT_EQ(view.selectedRow(), model.index(150, 0));
    EXPECT_TRUE(view.viewport()->rect().contains(rowRect(150)));
    view.goTo(ItemId::make());
    EXPECT_EQ(view.selectedRow(), model.index(150, 0));
}

TEST(QueueViewOfASetTest, GoesToThePartOfAnOpenGroupAndToTheHeaderOfAClosedOneWithoutSelectingIt)
{
    fixtures::SetAndFile list;
    const QModelIndex header = list.model.index(0, 0);
    list.view.goTo(list.items[1]->id());
    EXPECT_EQ(list.view.currentIndex(), header);
    EXPECT_FALSE(list.view.selectedRow().isValid());
    EXPECT_FALSE(list.view.isExpanded(header));
    list.view.expand(header);
    list.view.goTo(list.items[1]->id());
    EXPECT_EQ(list.view.selectedRow(), list.model.index(1, 0, header));
}

TEST_F(QueueViewTest, KeepsTheSelectedItemAndItsPlaceThroughAReset)
{
    view.setCurrentIndex(model.index(151, 0));
    QSet<ItemId> even;
    for (std::size_t i = 100; i < 200; i += 2)
        even << items[i]->id();
    engine.manager().commands().removeItems(even);
    turnEventLoop();
    EXPECT_EQ(view.currentIndex().data(QueueModel::idRole).value<ItemId>(), items[151]->id());
    EXPECT_TRUE(view.selectionModel()->isSelected(view.currentIndex()));
}

TEST_F(QueueViewTest, ScrollsByPixels)
{
    EXPECT_EQ(view.verticalScrollMode(), QAbstractItemView::ScrollPerPixel);
    view.verticalScrollBar()->setValue(5);
    EXPECT_EQ(rowRect(0).top(), -5);
}

TEST_F(QueueViewTest, ABarGlidesToItsValueAndRestsThere)
{
    view.setStyle(new LivelyStyle(&view)); // the view owns it
    items[1]->setStatus(DownloadStatus::downloading);
    items[1]->setProgress(0.2);
    turnEventLoop();
    view.repaint();
    ASSERT_TRUE(fixtures::waitUntil([this] { return !view.isMoving(); }));
    items[1]->setProgress(0.6);
    turnEventLoop();
    view.repaint();
    EXPECT_TRUE(view.isMoving());
    const QImage underWay = view.viewport()->grab(rowRect(1)).toImage();
    engine.clock.advance(std::chrono::milliseconds(400));
    EXPECT_TRUE(fixtures::waitUntil([this] { return !view.isMoving(); }));
    EXPECT_NE(view.viewport()->grab(rowRect(1)).toImage(), underWay);
}

TEST_F(QueueViewTest, TheIndicatorTurnsOnlyWhileARowInSightWaits)
{
    EXPECT_FALSE(view.isMoving());
    items[0]->setStatus(DownloadStatus::resolving);
    turnEventLoop();
    view.viewport()->repaint();
    EXPECT_TRUE(view.isMoving());
    items[0]->setStatus(DownloadStatus::stopped);
    EXPECT_TRUE(fixtures::waitUntil([this] { return !view.isMoving(); }));
}

TEST_F(QueueViewTest, ACountdownRepaintsTheRowsWhoseSecondIsOverAndNoOther)
{
    const SteadyTime begin = engine.clock.steadyNow();
    items[1]->setWait({ItemWait::nextTry, begin + 30s});
    items[2]->setWait({ItemWait::nextTry, begin + 30s + 400ms});
    items[3]->setWait({ItemWait::sameName});
    turnEventLoop();
    view.viewport()->repaint();
    PaintWatch watch(view.viewport());
    model.rowsMade = 0;
    engine.clock.advance(400ms); // the second row's edge
    EXPECT_EQ(watch.painted, QRegion(rowRect(2)));
    watch.painted = {};
    engine.clock.advance(599ms);
    EXPECT_TRUE(watch.painted.isEmpty());
    engine.clock.advance(1ms);
    EXPECT_EQ(watch.painted, QRegion(rowRect(1)));
    EXPECT_EQ(model.rowsMade, 2);
}

TEST_F(QueueViewTest, ACountdownOfManyRowsCostsOnlyThoseInSight)
{
    for (const ItemPtr& item : items)
        item->setWait({ItemWait::serverRest, engine.clock.steadyNow() + 10min});
    turnEventLoop();
    view.viewport()->repaint();
    const int timers = engine.clock.pendingTimers();
    model.rowsMade = 0;
    engine.clock.advance(1s);
    EXPECT_GT(model.rowsMade, 3);
    EXPECT_LT(model.rowsMade, 20);
    EXPECT_EQ(engine.clock.pendingTimers(), timers);
}

TEST_F(QueueViewTest, ACountdownEndsWithItsTime)
{
    const int timers = engine.clock.pendingTimers();
    items[1]->setWait({ItemWait::nextTry, engine.clock.steadyNow() + 2s});
    turnEventLoop();
    view.viewport()->repaint();
    EXPECT_GT(engine.clock.pendingTimers(), timers);
    engine.clock.advance(2s);
    EXPECT_EQ(engine.clock.pendingTimers(), timers);
    EXPECT_TRUE(model.index(1, 0).data(Qt::AccessibleTextRole).toString().contains(u"trying again soon"));
}

TEST_F(QueueViewTest, ACountdownThatIsScrolledAwayOrHiddenWakesNobodyAfterItsSecond)
{
    const int timers = engine.clock.pendingTimers();
    items[1]->setWait({ItemWait::nextTry, engine.clock.steadyNow() + 30s});
    turnEventLoop();
    view.viewport()->repaint();
    view.scrollToBottom();
    view.viewport()->repaint();
    PaintWatch watch(view.viewport());
    engine.clock.advance(1s);
    EXPECT_TRUE(watch.painted.isEmpty());
    EXPECT_EQ(engine.clock.pendingTimers(), timers);
    view.scrollToTop();
    view.viewport()->repaint();
    EXPECT_GT(engine.clock.pendingTimers(), timers);
    view.hide();
    engine.clock.advance(1s);
    EXPECT_EQ(engine.clock.pendingTimers(), timers);
}

TEST_F(QueueViewTest, ACountdownGoesOnWhenItsRowMovesOrIsRemoved)
{
    items[2]->setWait({ItemWait::nextTry, engine.clock.steadyNow() + 30s});
    turnEventLoop();
    view.viewport()->repaint();
    engine.manager().commands().removeItems({items[1]->id()});
    turnEventLoop();
    PaintWatch watch(view.viewport());
    engine.clock.advance(1s);
    EXPECT_EQ(watch.painted, QRegion(rowRect(1)));
    engine.manager().commands().removeItems({items[2]->id()});
    turnEventLoop();
    watch.painted = {};
    engine.clock.advance(1s);
    EXPECT_TRUE(watch.painted.isEmpty());
}

TEST_F(QueueViewTest, NothingMovesInAMinimisedWindow)
{
    items[0]->setStatus(DownloadStatus::resolving);
    turnEventLoop();
    view.viewport()->repaint();
    ASSERT_TRUE(view.isMoving());
    view.window()->showMinimized();
    EXPECT_TRUE(fixtures::waitUntil([this] { return !view.isMoving(); }));
    view.window()->showNormal();
    view.viewport()->repaint();
    EXPECT_TRUE(view.isMoving());
}

TEST_F(QueueViewTest, ACountdownGoesOnWhereNothingMayMove)
{
    view.setStyle(new StillStyle(&view)); // the view owns it
    items[1]->setWait({ItemWait::nextTry, engine.clock.steadyNow() + 30s});
    turnEventLoop();
    view.repaint();
    PaintWatch watch(view.viewport());
    engine.clock.advance(1s);
    EXPECT_EQ(watch.painted, QRegion(rowRect(1)));
    EXPECT_FALSE(view.isMoving());
}

TEST_F(QueueViewTest, TheLineBelowARowIsAsLongFromRightToLeft)
{
    const auto lineLength = [this] {
        const QImage line = view.viewport()->grab(rowRect(1)).toImage();
        const QColor ground = line.pixelColor(0, line.height() / 2);
        int length = 0;
        for (int x = 0; x < line.width(); ++x)
            length += line.pixelColor(x, line.height() - 1) == ground ? 0 : 1;
        return length;
    };
    const int usual = lineLength();
    EXPECT_GT(usual, 400);
    view.setLayoutDirection(Qt::RightToLeft);
    turnEventLoop();
    EXPECT_EQ(lineLength(), usual);
}

TEST_F(QueueViewTest, CopiesTheSelectedRow)
{
    QGuiApplication::clipboard()->setText(u"before"_s);
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"before"); // none is selected
    view.setCurrentIndex(model.index(3, 0));
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"https://host.example/file3.zip");
    items[3]->setStatus(DownloadStatus::failure(u"gone"_s));
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"file3.zip\nError: gone");
}

} // namespace
} // namespace vormel
