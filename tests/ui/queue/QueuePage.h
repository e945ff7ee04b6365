#pragma once

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "ui/FakeDesktop.h"
#include "ui/Part.h"
#include "ui/queue/DownloadQueueView.h"

#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

namespace vormel::fixtures {

/// The page of the queue, shown on its own.
class QueuePage : public ::testing::Test
{
protected:
    QueuePage()
    {
        page.resize(900, 500);
        page.show();
        page.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&page));
    }
    template <typename T = QWidget>
    T& part(const char* name)
    {
        return fixtures::partOf<T>(page, name);
    }
    void click(const char* name) { QTest::mouseClick(&part<QToolButton>(name), Qt::LeftButton); }
    QStringList queue()
    {
        QStringList all;
        for (const ItemPtr& item : engine.manager().items())
            all << item->originalURL().absoluteString();
        return all;
    }

    EngineOnScript engine;
    FakeDesktop desktop{engine};
    DownloadQueueView page{desktop.ports()};
};

} // namespace vormel::fixtures
