#include "ui/shell/Sidebar.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace vormel {
namespace {

class SidebarTest : public ::testing::Test
{
protected:
    SidebarTest()
    {
        sidebar.resize(180, 300);
        sidebar.show();
        sidebar.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&sidebar));
        sidebar.setFocus();
    }
    QPoint place(Page page) { return sidebar.visualItemRect(sidebar.item(static_cast<int>(page))).center(); }
    void click(QPoint point, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(sidebar.viewport(), Qt::LeftButton, modifiers, point);
    }
    void expectOnlySelected(Page page)
    {
        ASSERT_EQ(sidebar.selectedItems().size(), 1);
        EXPECT_EQ(sidebar.row(sidebar.selectedItems().front()), static_cast<int>(page));
        EXPECT_EQ(sidebar.page(), page);
    }

    fixtures::EngineOnScript engine;
    Sidebar sidebar{engine.settings()};
};

TEST_F(SidebarTest, AClickWithControlLeavesThePageSelected)
{
    click(place(Page::downloads), Qt::ControlModifier);
    expectOnlySelected(Page::downloads);
    click(place(Page::settings), Qt::ControlModifier);
    expectOnlySelected(Page::settings);
    click(place(Page::settings), Qt::ControlModifier);
    expectOnlySelected(Page::settings);
}

TEST_F(SidebarTest, KeysAndEmptyPlacesLeaveThePageSelected)
{
    QTest::keyClick(&sidebar, Qt::Key_Space, Qt::ControlModifier);
    expectOnlySelected(Page::downloads);
    QTest::keyClick(&sidebar, Qt::Key_Down, Qt::ControlModifier);
    expectOnlySelected(Page::accounts);
    click(QPoint(90, 280));
    expectOnlySelected(Page::accounts);
    click(QPoint(90, 280), Qt::ControlModifier);
    expectOnlySelected(Page::accounts);
}

TEST_F(SidebarTest, APageIsChosenOnce)
{
    const QSignalSpy chosen(&sidebar, &Sidebar::pageChosen);
    click(place(Page::accounts));
    click(place(Page::accounts), Qt::ControlModifier);
    EXPECT_EQ(chosen.count(), 1);
}

} // namespace
} // namespace vormel
