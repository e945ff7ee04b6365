#include "fixtures/EventLoop.h"
#include "kit/Theme.h"
#include "ui/queue/SetAndFile.h"

#include <QPaintEvent>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;

/// Collects what a viewport is asked to paint.
class RepaintWatch final : public QObject
{
public:
    explicit RepaintWatch(QWidget* watched) { watched->installEventFilter(this); }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            painted += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

    QRegion painted;
};

class RowUnderPointer : public ::testing::Test, protected fixtures::OpenSetAndFile
{
protected:
    RowUnderPointer()
    {
        view.setCurrentIndex({});
        turnEventLoop();
    }
    void send(QEvent::Type type, QPoint point, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, point, view.viewport()->mapToGlobal(point), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(view.viewport(), &event);
        turnEventLoop();
    }
    void moveTo(QPoint point) { send(QEvent::MouseMove, point, Qt::NoButton, Qt::NoButton); }
    void dragTo(QPoint point) { send(QEvent::MouseMove, point, Qt::NoButton, Qt::LeftButton); }
    void leave()
    {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(view.viewport(), &event);
        turnEventLoop();
    }
    QPoint name(const QModelIndex& index) const { return view.visualRect(index).topLeft() + QPoint(120, 15); }
    /// The ground at the start of the row, where nothing else is painted.
    QColor ground(const QModelIndex& index) const
    {
        const QRect row = view.visualRect(index);
        return view.viewport()->grab(QRect(row.left() + 12, row.bottom() - 8, 1, 1)).toImage().pixelColor(0, 0);
    }
    bool isMarked(const QModelIndex& index) const { return ground(index) == Theme(view.palette()).color(Tint::hover); }
};

TEST_F(RowUnderPointer, IsMarkedAndNoOther)
{
    moveTo(name(member(0)));
    EXPECT_TRUE(isMarked(member(0)));
    for (const QModelIndex& other : {header(), member(1), plain()})
        EXPECT_FALSE(isMarked(other));
    moveTo(name(header()));
    EXPECT_TRUE(isMarked(header()));
    EXPECT_FALSE(isMarked(member(0)));
}

TEST_F(RowUnderPointer, ChangesByARepaintOfTheTwoRowsAlone)
{
    moveTo(name(member(0)));
    RepaintWatch watch(view.viewport());
    moveTo(name(member(0)) + QPoint(40, 0));
    EXPECT_TRUE(watch.painted.isEmpty());
    moveTo(name(plain()));
    EXPECT_EQ(watch.painted, QRegion(view.visualRect(member(0))) + QRegion(view.visualRect(plain())));
}

TEST_F(RowUnderPointer, IsPlainAgainWhenThePointerLeaves)
{
    moveTo(name(plain()));
    leave();
    EXPECT_FALSE(isMarked(plain()));
}

TEST_F(RowUnderPointer, LooksAsItDoesWithoutThePointerWhereItIsSelected)
{
    view.setCurrentIndex(plain());
    turnEventLoop();
    const QImage selected = view.viewport()->grab(view.visualRect(plain())).toImage();
    moveTo(name(plain()));
    EXPECT_EQ(view.viewport()->grab(view.visualRect(plain())).toImage(), selected);
}

TEST_F(RowUnderPointer, IsAnotherOneWhenTheListScrollsBelowThePointer)
{
    view.resize(700, 150);
    turnEventLoop();
    moveTo(name(header()));
    const QPoint place = name(header());
    view.verticalScrollBar()->setValue(view.visualRect(header()).height());
    turnEventLoop();
    ASSERT_EQ(view.indexAt(place), member(0));
    EXPECT_TRUE(isMarked(member(0)));
}

TEST_F(RowUnderPointer, IsTheOneThatComesThereWhenRowsGo)
{
    const QPoint place = name(member(0));
    moveTo(place);
    engine.manager().commands().removeItems({items[1]->id()}); // and with it the header
    turnEventLoop();
    ASSERT_EQ(view.indexAt(place), plain());
    EXPECT_TRUE(isMarked(plain()));
    EXPECT_FALSE(isMarked(model.index(0, 0)));
}

TEST_F(RowUnderPointer, IsMarkedAgainAfterItsPageWentWithAButtonDown)
{
    const QPoint button = view.buttonsOf(plain()).front().rect.center();
    moveTo(button);
    send(QEvent::MouseButtonPress, button, Qt::LeftButton, Qt::LeftButton);
    view.hide(); // and the button comes up elsewhere
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    moveTo(name(member(0)));
    EXPECT_TRUE(isMarked(member(0)));
}

TEST_F(RowUnderPointer, IsNoneWhileAGroupIsDragged)
{
    moveTo(name(plain()));
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, name(plain()));
    view.clearSelection();
    dragTo(name(member(0)));
    for (const QModelIndex& row : {header(), member(0), member(1)})
        EXPECT_FALSE(isMarked(row));
    EXPECT_EQ(ground(plain()), view.palette().color(QPalette::Base)); // which is dimmed
    QTest::keyClick(&view, Qt::Key_Escape);
    turnEventLoop();
    EXPECT_TRUE(isMarked(member(0)));
    send(QEvent::MouseButtonRelease, name(member(0)), Qt::LeftButton, Qt::NoButton);
}

} // namespace
} // namespace vormel
