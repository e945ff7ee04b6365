#include "ui/help/HelpWindowController.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "kit/GlyphIcon.h"
#include "ui/Part.h"
#include "ui/help/HelpView.h"

#include <QApplication>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

QList<QWidget*> helpWindows()
{
    QList<QWidget*> windows;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->objectName() == u"helpWindow")
            windows << window;
    }
    return windows;
}

class HelpWindowControllerTest : public ::testing::Test
{
protected:
    QWidget& shownWindow()
    {
        help->showWindow();
        EXPECT_EQ(helpWindows().size(), 1);
        return *helpWindows().constFirst();
    }

    fixtures::EngineOnScript engine;
    QWidget owner;
    HelpWindowController* help =
        new HelpWindowController(engine.settings(), u"filestore.example"_s, owner); // the owner's
};

TEST_F(HelpWindowControllerTest, ShowsAWindowOfItsOwn)
{
    const QWidget& window = shownWindow();
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(window.isModal());
    EXPECT_EQ(window.windowTitle(), u"Vormel");
    EXPECT_EQ(window.size(), QSize(500, 640));
    EXPECT_EQ(window.minimumSize(), QSize(420, 400));
    EXPECT_EQ(window.windowIcon().pixmap(32, 32).toImage(), programIcon().pixmap(32, 32).toImage());
}

TEST_F(HelpWindowControllerTest, ASecondCallBringsTheOpenOneForward)
{
    QWidget& first = shownWindow();
    first.showMinimized();
    EXPECT_EQ(&shownWindow(), &first);
    EXPECT_FALSE(first.isMinimized());
}

TEST_F(HelpWindowControllerTest, AfterClosingItIsMadeAnew)
{
    const QPointer<QWidget> first = &shownWindow();
    first->close();
    fixtures::turnEventLoop();
    EXPECT_TRUE(first.isNull());
    EXPECT_TRUE(shownWindow().isVisible());
}

TEST_F(HelpWindowControllerTest, ACallRightAfterClosingShowsANewOne)
{
    const QPointer<QWidget> first = &shownWindow();
    first->close();
    help->showWindow();
    fixtures::turnEventLoop();
    EXPECT_TRUE(first.isNull());
    ASSERT_EQ(helpWindows().size(), 1);
    EXPECT_TRUE(helpWindows().constFirst()->isVisible());
}

TEST_F(HelpWindowControllerTest, KeysCloseIt)
{
    for (const auto& [key, modifiers] : {std::pair(Qt::Key_Escape, Qt::NoModifier), {Qt::Key_W, Qt::ControlModifier}}) {
        QWidget& window = shownWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(&window, key, modifiers);
        fixtures::turnEventLoop();
        EXPECT_TRUE(helpWindows().isEmpty());
    }
}

TEST_F(HelpWindowControllerTest, AnOpenOneFollowsTheLanguageAtOnce)
{
    const auto& heading = fixtures::partOf<QLabel>(shownWindow(), "helpFeatures");
    EXPECT_EQ(heading.text(), u"Features");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(heading.text(), u"Funzionalità");
}

TEST_F(HelpWindowControllerTest, GoesWithItsOwner)
{
    shownWindow();
    delete help;
    EXPECT_TRUE(helpWindows().isEmpty());
}

} // namespace
} // namespace vormel
