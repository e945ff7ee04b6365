#include "ui/queue/BulkCommands.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "ui/Part.h"

#include <QAction>
#include <QPushButton>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;

class BulkCommandsTest : public ::testing::Test
{
protected:
    BulkCommandsTest()
    {
        page.show();
        page.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&page));
        engine.settings().autoStartDownloads.set(false);
    }
    ItemPtr add(const QString& name, const DownloadStatus& status)
    {
        const ItemPtr item = engine.add(u"https://h.example/"_s + name);
        item->setStatus(status);
        return item;
    }
    QAction& action(const char* name) { return *commands.findChild<QAction*>(QString::fromLatin1(name)); }
    bool isEnabled(const char* name)
    {
        commands.refresh();
        return action(name).isEnabled();
    }
    RemovalQuestion* question() { return page.findChild<RemovalQuestion*>(); }
    [[nodiscard]] qsizetype count() { return static_cast<qsizetype>(engine.manager().items().size()); }

    fixtures::EngineOnScript engine;
    QWidget page;
    BulkCommands commands{engine.manager(),
                          [](QDialog* sheet) {
                              sheet->setAttribute(Qt::WA_DeleteOnClose);
                              sheet->open();
                          },
                          &page};
};

TEST_F(BulkCommandsTest, WhatWouldDoNothingIsDisabled)
{
    for (const char* name :
         {"tryFailedAgain", "removeFailed", "removeUnfinished", "removeAll", "undoAdd", "undoRemove"})
        EXPECT_FALSE(isEnabled(name)) << name;
    const ItemPtr item = add(u"a"_s, DownloadStatus::completed);
    EXPECT_TRUE(isEnabled("removeAll"));
    EXPECT_TRUE(isEnabled("undoAdd"));
    for (const char* name : {"tryFailedAgain", "removeFailed", "removeUnfinished"})
        EXPECT_FALSE(isEnabled(name)) << name;
    item->setStatus(DownloadStatus::paused);
    EXPECT_TRUE(isEnabled("removeUnfinished"));
    EXPECT_FALSE(isEnabled("removeFailed"));
    item->setStatus(DownloadStatus::failure({}));
    EXPECT_TRUE(isEnabled("removeFailed"));
    EXPECT_TRUE(isEnabled("tryFailedAgain"));
}

TEST_F(BulkCommandsTest, FailedRowsGoWithoutAQuestionAndComeBack)
{
    add(u"a"_s, DownloadStatus::paused);
    add(u"b"_s, DownloadStatus::failure({}));
    action("removeFailed").trigger();
    EXPECT_EQ(question(), nullptr);
    EXPECT_EQ(count(), 1);
    EXPECT_TRUE(action("undoRemove").isEnabled());
    action("undoRemove").trigger();
    EXPECT_EQ(count(), 2);
    EXPECT_FALSE(action("undoRemove").isEnabled());
}

TEST_F(BulkCommandsTest, UndoIsOverAfterTenSeconds)
{
    add(u"a"_s, DownloadStatus::failure({}));
    action("removeFailed").trigger();
    engine.clock.advance(std::chrono::seconds(10));
    EXPECT_FALSE(action("undoRemove").isEnabled());
}

TEST_F(BulkCommandsTest, ReturnAndEscapeKeepEverything)
{
    add(u"a"_s, DownloadStatus::paused);
    for (const char* name : {"removeAll", "removeUnfinished"}) {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
            action(name).trigger();
            ASSERT_NE(question(), nullptr);
            QTest::keyClick(question(), key);
            turnEventLoop();
            EXPECT_EQ(question(), nullptr);
            EXPECT_EQ(count(), 1);
        }
    }
}

TEST_F(BulkCommandsTest, TheButtonRemovesWhatWasAskedFor)
{
    add(u"a"_s, DownloadStatus::paused);
    add(u"b"_s, DownloadStatus::completed);
    action("removeUnfinished").trigger();
    EXPECT_EQ(question()->text(), u"Remove 1 unfinished download?");
    fixtures::partOf<QPushButton>(*question(), "confirmRemoval").click();
    turnEventLoop();
    EXPECT_EQ(count(), 1);
    engine.settings().language.set(AppLanguage::italian);
    add(u"c"_s, DownloadStatus::completed);
    action("removeAll").trigger();
    EXPECT_EQ(question()->text(), u"Rimuovere tutti i 2 download?");
    fixtures::partOf<QPushButton>(*question(), "confirmRemoval").click();
    EXPECT_EQ(count(), 0);
}

TEST_F(BulkCommandsTest, AQuestionIsAboutTheRowsOfItsMoment)
{
    const ItemPtr finishing = add(u"a"_s, DownloadStatus::paused);
    add(u"b"_s, DownloadStatus::paused);
    action("removeUnfinished").trigger();
    add(u"c"_s, DownloadStatus::paused);
    finishing->setStatus(DownloadStatus::completed);
    fixtures::partOf<QPushButton>(*question(), "confirmRemoval").click();
    ASSERT_EQ(count(), 2);
    EXPECT_EQ(engine.manager().items()[0], finishing);
    EXPECT_EQ(engine.manager().items()[1]->filename(), u"c");
}

TEST_F(BulkCommandsTest, UndoAddTakesTheLastAdditionBack)
{
    add(u"a"_s, DownloadStatus::paused);
    engine.add({u"https://h.example/b"_s, u"https://h.example/c"_s});
    action("undoAdd").trigger();
    EXPECT_EQ(count(), 1);
    EXPECT_FALSE(isEnabled("undoAdd"));
    action("undoRemove").trigger();
    EXPECT_EQ(count(), 3);
    EXPECT_TRUE(isEnabled("undoAdd"));
}

TEST_F(BulkCommandsTest, TriesWhatFailedAgain)
{
    const ItemPtr failed = add(u"a"_s, DownloadStatus::failure({}));
    const ItemPtr paused = add(u"b"_s, DownloadStatus::paused);
    action("tryFailedAgain").trigger();
    EXPECT_EQ(failed->status(), DownloadStatus::queued);
    EXPECT_EQ(paused->status(), DownloadStatus::paused);
}

} // namespace
} // namespace vormel
