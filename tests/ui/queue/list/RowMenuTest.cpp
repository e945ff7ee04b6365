#include "ui/queue/SetAndFile.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;

class RowMenuTest : public ::testing::Test, protected fixtures::OpenSetAndFile
{
protected:
    QMenu* openMenu(const QModelIndex& index)
    {
        view.setCurrentIndex(index);
        QTest::keyClick(&view, Qt::Key_F10, Qt::ShiftModifier);
        return view.findChild<QMenu*>(u"rowMenu"_s);
    }
    void choose(const QModelIndex& index, const QString& text)
    {
        QMenu* const menu = openMenu(index);
        for (QAction* action : menu->actions()) {
            if (action->text() == text)
                action->trigger();
        }
        delete menu;
    }
    QStringList menuTexts(const QModelIndex& index)
    {
        QMenu* const menu = openMenu(index);
        QStringList texts;
        for (const QAction* action : menu->actions()) {
            if (!action->isSeparator())
                texts << action->text();
        }
        delete menu;
        return texts;
    }
};

TEST_F(RowMenuTest, HasTheCommandsOfTheRow)
{
    EXPECT_EQ(menuTexts(plain()).join(u'|'), u"Resume|Stop|Resync|Copy Link|Move Up|Move Down|Remove");
    items[2]->setStatus(DownloadStatus::completed);
    items[2]->setExtractionStatus(ExtractionStatus::failure(u"x"_s));
    turnEventLoop();
    EXPECT_EQ(menuTexts(plain()).front(), u"Retry");
}

TEST_F(RowMenuTest, SaysInToolTipsWhatItsWordsLeaveOut)
{
    QMenu* menu = openMenu(plain());
    EXPECT_TRUE(menu->toolTipsVisible());
    EXPECT_EQ(menu->actions().at(1)->toolTip(), u"Stop — stays out of the queue until you start it");
    EXPECT_EQ(menu->actions().back()->toolTip(), u"Remove from list (deletes partial file)");
    delete menu;
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(menuTexts(plain()).join(u'|'), u"Riprendi|Ferma|Risincronizza|Copia link|Sposta su|Sposta giù|Rimuovi");
    menu = openMenu(plain());
    EXPECT_EQ(menu->actions().at(1)->toolTip(), u"Ferma — resta fuori dalla coda finché non lo avvii");
    delete menu;
}

TEST_F(RowMenuTest, CopiesTheLinkOfARowAndAllOfAGroup)
{
    choose(plain(), u"Copy Link"_s);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"https://h.example/b.zip");
    choose(header(), u"Copy Links"_s);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"https://h.example/a.part1.rar\nhttps://h.example/a.part2.rar");
}

TEST_F(RowMenuTest, OfAGroupTriesWhatFailedAgainOnlyWhereSomethingDid)
{
    EXPECT_FALSE(menuTexts(header()).contains(u"Try Failed Again"));
    items[1]->setStatus(DownloadStatus::failure(u"gone"_s));
    turnEventLoop();
    EXPECT_FALSE(menuTexts(member(1)).contains(u"Try Failed Again"));
    choose(header(), u"Try Failed Again"_s);
    EXPECT_NE(items[1]->status(), DownloadStatus::failed);
    EXPECT_EQ(items[0]->status(), DownloadStatus::paused);
}

TEST_F(RowMenuTest, OfAHeaderRenamesAndOffersToResetOnlyAfterThat)
{
    const QStringList before = menuTexts(header());
    EXPECT_EQ(before.front(), u"Start Group");
    EXPECT_TRUE(before.contains(u"Rename group…"));
    EXPECT_FALSE(before.contains(u"Reset name"));
    EXPECT_EQ(before.back(), u"Remove Group");
    engine.manager().renameGroup(u"a"_s, u"My film"_s);
    choose(header(), u"Reset name"_s);
    EXPECT_EQ(header().data(QueueModel::nameRole).toString(), u"a");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_TRUE(menuTexts(header()).contains(u"Rinomina gruppo…"));
    EXPECT_FALSE(menuTexts(header()).contains(u"Ripristina nome"));
}

TEST_F(RowMenuTest, MovesAGroupAndNotBeyondTheEnds)
{
    const auto isEnabled = [this](const QModelIndex& index, const char16_t* text) {
        QMenu* const menu = openMenu(index);
        bool isOn = false;
        for (const QAction* action : menu->actions())
            isOn |= action->text() == text && action->isEnabled();
        delete menu;
        return isOn;
    };
    EXPECT_FALSE(isEnabled(header(), u"Move Up"));
    EXPECT_TRUE(isEnabled(header(), u"Move Down"));
    EXPECT_TRUE(isEnabled(plain(), u"Move Up"));
    EXPECT_FALSE(isEnabled(plain(), u"Move Down"));
    choose(plain(), u"Move Up"_s);
    EXPECT_EQ(engine.manager().items().front(), items[2]);
}

TEST_F(RowMenuTest, OffersToExtractAFinishedArchiveThatNothingWasDoneWith)
{
    EXPECT_FALSE(menuTexts(plain()).contains(u"Extract"));
    items[2]->setLocalPath(engine.sandbox.write(u"b.zip"_s, "x"));
    items[2]->setStatus(DownloadStatus::completed);
    turnEventLoop();
    EXPECT_EQ(menuTexts(plain()).front(), u"Extract");
    engine.tools.add(u"unzip"_s, "exit 9");
    engine.tools.add(u"ditto"_s, "exit 9");
    choose(plain(), u"Extract"_s);
    EXPECT_TRUE(
        fixtures::waitUntil([this] { return items[2]->extractionStatus().kind() == ExtractionStatus::failed; }));
    turnEventLoop();
    EXPECT_FALSE(menuTexts(plain()).contains(u"Extract"));
    EXPECT_EQ(menuTexts(plain()).front(), u"Retry");
}

TEST_F(RowMenuTest, StopsARunAlsoOneThatWaitsForItsTurn)
{
    for (const bool isWaiting : {false, true}) {
        for (const ItemPtr& item : items) {
            item->setStatus(DownloadStatus::completed);
            item->setExtractionStatus(ExtractionStatus::extracting);
            item->setAwaitsExtractionTurn(isWaiting);
        }
        turnEventLoop();
        EXPECT_EQ(menuTexts(plain()).front(), u"Stop extracting");
        EXPECT_TRUE(menuTexts(header()).contains(u"Stop extracting"));
    }
}

TEST_F(RowMenuTest, OfAWholeGroupOffersToExtractIt)
{
    for (int part : {0, 1}) {
        items[static_cast<std::size_t>(part)]->setLocalPath(
            engine.sandbox.write(u"a/a.part%1.rar"_s.arg(part + 1), "x"));
        EXPECT_FALSE(menuTexts(header()).contains(u"Extract"));
        items[static_cast<std::size_t>(part)]->setStatus(DownloadStatus::completed);
        turnEventLoop();
    }
    engine.tools.add(u"unrar"_s, "exit 3");
    choose(header(), u"Extract"_s);
    EXPECT_TRUE(
        fixtures::waitUntil([this] { return items[0]->extractionStatus().kind() == ExtractionStatus::failed; }));
}

TEST_F(RowMenuTest, RunsTheCommandOnItsRowAlsoWhenThatHasMoved)
{
    QMenu* const menu = openMenu(plain());
    engine.manager().commands().removeGroup(u"a"_s);
    menu->actions().at(1)->trigger();
    EXPECT_EQ(items[2]->status().kind(), DownloadStatus::stopped);
}

TEST_F(RowMenuTest, ARightClickOpensTheMenuOfTheRowBeneath)
{
    const QPoint point = view.visualRect(member(0)).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, point, view.viewport()->mapToGlobal(point));
    QApplication::sendEvent(view.viewport(), &event);
    EXPECT_NE(view.findChild<QMenu*>(u"rowMenu"_s), nullptr);
    EXPECT_EQ(view.currentIndex(), member(0));
}

} // namespace
} // namespace vormel
