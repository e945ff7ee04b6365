#include "app/WindowPlace.h"

#include "fixtures/EventLoop.h"
#include "fixtures/Sandbox.h"
#include "platform/storage/FileWriter.h"
#include "platform/storage/UserDefaults.h"

#include <QMainWindow>
#include <QSplitter>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// A window as the program would make it at one of its starts.
struct Start
{
    explicit Start(UserDefaults& defaults)
        : splitter(new QSplitter(&window))
    {
        splitter->addWidget(new QWidget);
        splitter->addWidget(new QWidget);
        window.setCentralWidget(splitter);
        window.resize(500, 300);
        splitter->setSizes({180, 320});
        place = std::make_unique<WindowPlace>(window, *splitter, defaults);
        window.show();
        fixtures::turnEventLoop();
    }

    QMainWindow window;
    QSplitter* splitter;
    std::unique_ptr<WindowPlace> place;
};

class WindowPlaceTest : public ::testing::Test
{
protected:
    fixtures::Sandbox sandbox;
    FileWriter writer;
    UserDefaults defaults{sandbox.path(u"preferences.json"_s), writer};
};

TEST_F(WindowPlaceTest, TheFirstWindowIsAsItWasMade)
{
    const Start start(defaults);
    EXPECT_EQ(start.window.size(), QSize(500, 300));
}

TEST_F(WindowPlaceTest, SizeAndPlaceComeBack)
{
    {
        Start start(defaults);
        start.window.resize(640, 410);
        start.window.move(77, 55);
        start.splitter->setSizes({240, 400});
        fixtures::turnEventLoop();
        start.window.close();
    }
    const Start again(defaults);
    EXPECT_EQ(again.window.size(), QSize(640, 410));
    EXPECT_EQ(again.window.pos(), QPoint(77, 55));
    EXPECT_NEAR(again.splitter->sizes().front(), 240, 5);
}

TEST_F(WindowPlaceTest, AMaximisedWindowComesBackMaximised)
{
    {
        Start start(defaults);
        start.window.showMaximized();
        fixtures::turnEventLoop();
        start.window.close();
    }
    const Start again(defaults);
    EXPECT_TRUE(again.window.isMaximized());
}

TEST_F(WindowPlaceTest, WhatCannotBeUnderstoodIsPassedOver)
{
    defaults.setObject(u"windowGeometry"_s, u"AAAA////"_s);
    defaults.setObject(u"windowSplitter"_s, 12);
    const Start start(defaults);
    EXPECT_EQ(start.window.size(), QSize(500, 300));
}

} // namespace
} // namespace vormel
