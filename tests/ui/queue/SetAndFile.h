#pragma once

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "ui/FakeDesktop.h"
#include "ui/queue/list/QueueView.h"
#include "ui/queue/tree/QueueModel.h"

#include <QTest>

#include <gtest/gtest.h>

namespace vormel::fixtures {

/// A list on the screen with the closed group "a" of two parts, and the plain row "b.zip" below it, all paused.
struct SetAndFile
{
    SetAndFile()
    {
        view.resize(700, 500);
        view.show();
        view.activateWindow();
        view.setFocus();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
        turnEventLoop();
    }

    EngineOnScript engine;
    std::vector<ItemPtr> items =
        engine.add({QStringLiteral("https://h.example/a.part1.rar"), QStringLiteral("https://h.example/a.part2.rar"),
                    QStringLiteral("https://h.example/b.zip")});
    FakeDesktop desktop{engine};
    QueueModel model{engine.manager(), engine.clock};
    QueueView view{model, RowCommands(desktop.ports())};
};

/// With its group open.
struct OpenSetAndFile : SetAndFile
{
    OpenSetAndFile()
    {
        view.expand(header());
        turnEventLoop();
    }
    [[nodiscard]] QModelIndex header() const { return model.index(0, 0); }
    [[nodiscard]] QModelIndex member(int row) const { return model.index(row, 0, header()); }
    [[nodiscard]] QModelIndex plain() const { return model.index(1, 0); }
};

} // namespace vormel::fixtures
