#include "app/MainMenu.h"

#include "app/MainWindow.h"
#include "fixtures/EventLoop.h"
#include "ui/FakeDesktop.h"
#include "ui/FakeUpdater.h"
#include "ui/Part.h"
#include "ui/help/AboutWindow.h"
#include "ui/help/HelpView.h"
#include "ui/queue/list/QueueView.h"
#include "ui/sheets/AddURLView.h"

#include <QApplication>
#include <QMenuBar>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class MainMenuTest : public ::testing::Test
{
protected:
    MainMenuTest()
    {
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    }
    QMenu& menu(const char* name) { return fixtures::partOf<QMenu>(window, name); }
    static QString texts(const QMenu& menu)
    {
        QStringList all;
        for (const QAction* action : menu.actions())
            all << (action->isSeparator() ? u"-"_s : action->text());
        return all.join(u'|');
    }
    QString titles()
    {
        QStringList all;
        for (const QAction* action : window.menuBar()->actions())
            all << action->text();
        return all.join(u'|');
    }
    QString selectionTexts()
    {
        Q_EMIT menu("selectionMenu").aboutToShow();
        return texts(menu("selectionMenu"));
    }
    QList<HelpView*> helpViews()
    {
        QList<HelpView*> found;
        for (QWidget* widget : QApplication::topLevelWidgets())
            found << widget->findChildren<HelpView*>();
        return found;
    }

    fixtures::EngineOnScript engine;
    fixtures::FakeDesktop desktop{engine};
    fixtures::FakeUpdater updater;
    MainWindow window{desktop.ports(), updater};
};

TEST_F(MainMenuTest, HasItsMenusInBothLanguages)
{
    EXPECT_EQ(titles(), u"&Vormel|&Queue|&Selection|&Go|&Help");
    EXPECT_EQ(texts(menu("vormelMenu")), u"Check for Updates…|-|&Quit");
    EXPECT_EQ(texts(menu("queueMenu")),
              u"Add URLs|Start All|Pause All|Try Failed Again|-|Clear Completed|Clear Extracted|Remove Failed|"
              u"Remove Unfinished…|Remove All…|-|Undo Add|Undo Remove");
    EXPECT_EQ(texts(menu("pagesMenu")), u"Downloads|Accounts|Settings");
    EXPECT_EQ(texts(menu("helpMenu")), u"Vormel Help|-|About Vormel");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(titles(), u"&Vormel|&Coda|&Selezione|V&ai|A&iuto");
    EXPECT_EQ(texts(menu("vormelMenu")), u"Check for Updates…|-|&Esci"); // that one has no other language
    EXPECT_EQ(texts(menu("queueMenu")),
              u"Aggiungi URL|Avvia tutti|Metti in pausa|Riprova i falliti|-|Rimuovi completati|Rimuovi estratti|"
              u"Rimuovi falliti|Rimuovi non completati…|Rimuovi tutti…|-|Annulla aggiunta|Annulla rimozione");
    EXPECT_EQ(texts(menu("pagesMenu")), u"Download|Account|Impostazioni");
    EXPECT_EQ(texts(menu("helpMenu")), u"Vormel Help|-|Informazioni su Vormel");
}

TEST_F(MainMenuTest, ChecksForUpdatesOnlyWhileTheUpdaterCan)
{
    auto& check = fixtures::partOf<QAction>(window, "checkForUpdates");
    EXPECT_FALSE(check.isEnabled());
    updater.allow(true);
    EXPECT_TRUE(check.isEnabled());
    check.trigger();
    EXPECT_EQ(updater.checks, 1);
    updater.allow(false);
    EXPECT_FALSE(check.isEnabled());
}

TEST_F(MainMenuTest, ThereIsNoCommandForANewWindow)
{
    const QList<QAction*> actions = window.findChildren<QAction*>();
    EXPECT_GT(actions.size(), 10);
    for (const QAction* action : actions)
        EXPECT_FALSE(action->text().contains(u"Window")) << action->text().toStdString();
}

TEST_F(MainMenuTest, ControlAndSlashOpenTheOneHelpWindowWhicheverPageIsShowing)
{
    for (const Page page : allPages) {
        window.showPage(page);
        QTest::keyClick(&window, Qt::Key_Slash, Qt::ControlModifier);
        fixtures::turnEventLoop();
        EXPECT_EQ(helpViews().size(), 1);
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
}

TEST_F(MainMenuTest, TheUsualKeyOpensTheHelpToo)
{
    QTest::keyClick(&window, Qt::Key_F1);
    EXPECT_EQ(helpViews().size(), 1);
    EXPECT_EQ(fixtures::partOf<QAction>(window, "vormelHelp").shortcut(),
              QKeySequence(Qt::CTRL | Qt::Key_Slash)); // the one that is shown
}

TEST_F(MainMenuTest, AboutOpensOneWindowThatCanBeOpenedAgain)
{
    auto& about = fixtures::partOf<QAction>(window, "about");
    const auto shown = [this] {
        QList<AboutWindow*> all = window.findChildren<AboutWindow*>();
        all.removeIf([](const AboutWindow* one) { return !one->isVisible(); });
        return all;
    };
    about.trigger();
    about.trigger();
    ASSERT_EQ(shown().size(), 1);
    shown().constFirst()->close();
    about.trigger();
    fixtures::turnEventLoop();
    EXPECT_EQ(shown().size(), 1);
}

TEST_F(MainMenuTest, ControlAndADigitChangeThePage)
{
    QTest::keyClick(&window, Qt::Key_3, Qt::ControlModifier);
    EXPECT_EQ(window.page(), Page::settings);
    QTest::keyClick(&window, Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(window.page(), Page::accounts);
    QTest::keyClick(&window, Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(window.page(), Page::downloads);
}

TEST_F(MainMenuTest, AddingFromAnotherPageGoesToTheQueue)
{
    window.showPage(Page::settings);
    QTest::keyClick(&window, Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(window.page(), Page::downloads);
    EXPECT_NE(window.findChild<AddURLView*>(), nullptr);
}

TEST_F(MainMenuTest, ControlAndZPutsBackWhateverPageIsShowing)
{
    const ItemPtr item = engine.add(u"https://h.example/a.zip"_s);
    engine.manager().removed().remove({item->id()});
    window.showPage(Page::settings);
    QTest::keyClick(&window, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(engine.manager().items(), std::vector{item});
}

TEST_F(MainMenuTest, TheQueueMenuLooksWhatItCanDoWhenItOpens)
{
    auto& again = fixtures::partOf<QAction>(window, "tryFailedAgain");
    Q_EMIT menu("queueMenu").aboutToShow();
    EXPECT_FALSE(again.isEnabled());
    engine.add(u"https://h.example/a.zip"_s)->setStatus(DownloadStatus::failure({}));
    Q_EMIT menu("queueMenu").aboutToShow();
    EXPECT_TRUE(again.isEnabled());
}

TEST_F(MainMenuTest, TheSelectionMenuHasTheCommandsOfTheSelectedRow)
{
    EXPECT_EQ(selectionTexts(), u"No Selection");
    EXPECT_FALSE(menu("selectionMenu").actions().front()->isEnabled());
    const ItemPtr item = engine.add(u"https://h.example/a.zip"_s);
    auto& list = fixtures::partOf<QueueView>(window, "queueView");
    list.setCurrentIndex(list.model()->index(0, 0));
    EXPECT_TRUE(selectionTexts().startsWith(u"Resume|Stop|"));
    menu("selectionMenu").actions().at(1)->trigger();
    EXPECT_EQ(item->status().kind(), DownloadStatus::stopped);
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_TRUE(selectionTexts().startsWith(u"Avvia|"));
    list.clearSelection(); // the row stays the current one
    EXPECT_EQ(selectionTexts(), u"Nessuna selezione");
    engine.manager().commands().removeItems({item->id()});
    EXPECT_EQ(selectionTexts(), u"Nessuna selezione");
}

TEST_F(MainMenuTest, TheKeysOfTheListAreShownAndNotTaken)
{
    engine.add(u"https://h.example/a.zip"_s);
    auto& list = fixtures::partOf<QueueView>(window, "queueView");
    list.setCurrentIndex(list.model()->index(0, 0));
    EXPECT_FALSE(selectionTexts().isEmpty());
    EXPECT_EQ(menu("selectionMenu").actions().back()->shortcut(), QKeySequence(Qt::Key_Delete));
    fixtures::partOf<QWidget>(window, "sidebar").setFocus();
    QTest::keyClick(&fixtures::partOf<QWidget>(window, "sidebar"), Qt::Key_Delete);
    EXPECT_EQ(engine.manager().items().size(), 1U);
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Delete);
    EXPECT_TRUE(engine.manager().items().empty());
}

} // namespace
} // namespace vormel
