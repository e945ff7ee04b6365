#include "app/MainWindow.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "fixtures/QtTranslated.h"
#include "fixtures/RealTools.h"
#include "ui/FakeDesktop.h"
#include "ui/FakeUpdater.h"
#include "ui/Part.h"
#include "ui/accounts/AccountsView.h"
#include "ui/queue/DownloadQueueView.h"
#include "ui/settings/SettingsView.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class MainWindowTest : public ::testing::Test
{
protected:
    MainWindowTest()
    {
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    }
    template <typename T = QWidget>
    T& part(const char* name)
    {
        return fixtures::partOf<T>(window, name);
    }
    QString accounts(const char* name) { return fixtures::partOf<QLabel>(part("accountsView"), name).text(); }
    QStringList sidebarRows()
    {
        QStringList rows;
        for (int i = 0; i < part<QListWidget>("sidebar").count(); ++i)
            rows << part<QListWidget>("sidebar").item(i)->text();
        return rows;
    }

    fixtures::EngineOnScript engine;
    fixtures::FakeDesktop desktop{engine};
    fixtures::FakeUpdater updater;
    MainWindow window{desktop.ports(), updater};
};

TEST_F(MainWindowTest, BuildsAPageWhenItIsFirstShown)
{
    EXPECT_NE(window.findChild<DownloadQueueView*>(), nullptr);
    EXPECT_EQ(window.findChild<AccountsView*>(), nullptr);
    EXPECT_EQ(window.findChild<SettingsView*>(), nullptr);
    window.showPage(Page::settings);
    EXPECT_TRUE(window.findChild<SettingsView*>()->isVisible());
    window.showPage(Page::accounts);
    window.showPage(Page::settings);
    EXPECT_EQ(window.findChildren<SettingsView*>().size(), 1);
    EXPECT_FALSE(window.findChild<AccountsView*>()->isVisible());
}

TEST_F(MainWindowTest, ArrowKeysInTheSidebarChangeThePageAndItsTitle)
{
    auto& sidebar = part<QListWidget>("sidebar");
    EXPECT_EQ(window.windowTitle(), u"Downloads — Vormel");
    sidebar.setFocus();
    QTest::keyClick(&sidebar, Qt::Key_Down);
    EXPECT_EQ(window.windowTitle(), u"Premium Accounts — Vormel");
    QTest::keyClick(&sidebar, Qt::Key_Down);
    EXPECT_EQ(window.windowTitle(), u"Settings — Vormel");
    EXPECT_EQ(window.page(), Page::settings);
}

TEST_F(MainWindowTest, OfferedLinksComeWithTheirPage)
{
    window.showPage(Page::settings);
    window.offerLinks({fixtures::link(u"https://a.example/1"_s)});
    fixtures::turnEventLoop();
    EXPECT_EQ(window.page(), Page::downloads);
    EXPECT_EQ(part<QPlainTextEdit>("linkEditor").toPlainText(), u"https://a.example/1");
}

TEST_F(MainWindowTest, AnItemIsShownOnItsPageAndKeysAct)
{
    engine.add({u"https://a.example/1"_s, u"https://a.example/2"_s});
    fixtures::turnEventLoop();
    window.showPage(Page::settings);
    window.showItem(engine.manager().items().back()->id());
    EXPECT_EQ(window.page(), Page::downloads);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    ASSERT_EQ(engine.manager().items().size(), 1);
    EXPECT_EQ(engine.manager().items().front()->filename(), u"1");
}

TEST_F(MainWindowTest, AnItemLeavesThePageOfAnOpenSheetAlone)
{
    engine.add(u"https://a.example/1"_s);
    window.showPage(Page::accounts);
    part<QAbstractButton>("addAccount").click();
    window.showItem(engine.manager().items().front()->id());
    EXPECT_EQ(window.page(), Page::accounts);
}

TEST_F(MainWindowTest, OfferedLinksLeaveThePageOfAnOpenSheetAlone)
{
    window.showPage(Page::accounts);
    part<QAbstractButton>("addAccount").click();
    window.offerLinks({fixtures::link(u"https://a.example/1"_s)});
    fixtures::turnEventLoop();
    EXPECT_EQ(window.page(), Page::accounts);
    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
    fixtures::turnEventLoop();
    EXPECT_EQ(window.page(), Page::downloads);
    EXPECT_TRUE(part("linkEditor").isVisible());
}

TEST_F(MainWindowTest, TabGoesFromTheSidebarThroughTheToolBarToTheListAndItsNotice)
{
    engine.add(u"https://h.example/a.zip"_s);
    part("sidebar").setFocus();
    QStringList order;
    for (int i = 0; i < 11; ++i) {
        order << QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order.join(u' '),
              u"sidebar addURLs startAll pauseAll clearCompleted clearExtracted speedCap donate queueView "
              u"noticeAction0 closeNotice");
    EXPECT_EQ(QApplication::focusWidget(), &part("sidebar"));
}

TEST_F(MainWindowTest, TabBringsWhatItReachesOnAScrolledPageIntoSight)
{
    window.showPage(Page::settings);
    fixtures::turnEventLoop();
    auto& page = part<SettingsView>("settingsView");
    const auto isInSight = [&page] {
        const QWidget& focused = *QApplication::focusWidget();
        return page.viewport()->rect().contains(QRect(focused.mapTo(page.viewport(), QPoint()), focused.size()));
    };
    page.verticalScrollBar()->setValue(page.verticalScrollBar()->maximum());
    part("sidebar").setFocus();
    QTest::keyClick(&part("sidebar"), Qt::Key_Tab);
    ASSERT_TRUE(page.isAncestorOf(QApplication::focusWidget()));
    EXPECT_TRUE(isInSight());
    EXPECT_LT(page.verticalScrollBar()->value(), page.verticalScrollBar()->maximum());
    part("sidebar").setFocus();
    page.verticalScrollBar()->setValue(0);
    QTest::keyClick(&part("sidebar"), Qt::Key_Backtab); // to the last of the page
    ASSERT_TRUE(page.isAncestorOf(QApplication::focusWidget()));
    EXPECT_TRUE(isInSight());
}

TEST_F(MainWindowTest, SpeaksItalian)
{
    EXPECT_EQ(sidebarRows().join(u'|'), u"Downloads|Accounts|Settings");
    window.showPage(Page::accounts);
    EXPECT_EQ(accounts("emptyTitle"), u"No Accounts");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(sidebarRows().join(u'|'), u"Download|Account|Impostazioni");
    EXPECT_EQ(window.windowTitle(), u"Account Premium — Vormel");
    EXPECT_EQ(accounts("emptyTitle"), u"Nessun account");
    EXPECT_EQ(accounts("emptyText"), u"Aggiungi le credenziali premium per sbloccare i download.");
}

TEST_F(MainWindowTest, WhatQtItselfSaysIsItalianToo)
{
    if (!fixtures::isQtTranslated() && !fixtures::areToolsRequired())
        GTEST_SKIP() << "Qt's own translation is not installed";
    const auto paste = [] { return QCoreApplication::translate("QLineEdit", "&Paste"); };
    EXPECT_EQ(paste(), u"&Paste");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(paste(), u"&Incolla");
    engine.settings().language.set(AppLanguage::english);
    EXPECT_EQ(paste(), u"&Paste");
}

TEST_F(MainWindowTest, HasItsSmallestSizeAndSidebarWidths)
{
    EXPECT_EQ(window.minimumSize(), QSize(700, 450));
    EXPECT_EQ(part("sidebar").minimumWidth(), 150);
    EXPECT_EQ(part("sidebar").width(), 180);
    window.resize(1, 1);
    fixtures::turnEventLoop();
    EXPECT_EQ(window.size(), QSize(700, 450));
}

TEST_F(MainWindowTest, EverythingFitsAtTheSmallestSize)
{
    engine.add(u"https://h.example/a.zip"_s);
    engine.manager().accounts().set({fixtures::account(SupportedHost::terabytez, u"a.long.name@mail.example"_s)});
    for (const AppLanguage language : allLanguages) {
        engine.settings().language.set(language);
        for (const Page page : allPages) {
            window.showPage(page);
            window.resize(700, 450);
            fixtures::turnEventLoop();
            EXPECT_EQ(window.size(), QSize(700, 450));
            for (const auto* button : window.findChildren<QAbstractButton*>()) {
                if (!button->isVisible())
                    continue;
                QRect place(button->mapTo(&window, QPoint()), button->size());
                if (page == Page::settings && window.findChild<SettingsView*>()->isAncestorOf(button))
                    place.moveTop(window.height() / 2); // that page scrolls up and down, but not sideways
                EXPECT_TRUE(window.rect().contains(place)) << qPrintable(button->objectName());
                EXPECT_GE(button->width(), button->minimumSizeHint().width()) << qPrintable(button->objectName());
            }
        }
    }
}

TEST_F(MainWindowTest, ControlQIsQuit)
{
    EXPECT_EQ(part<QAction>("quit").shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
    EXPECT_EQ(part<QAction>("quit").text(), u"&Quit");
    QTimer::singleShot(0, &window, [this] { QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier); });
    QTimer::singleShot(std::chrono::seconds(20), &window, [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QApplication::exec(), 0);
}

TEST_F(MainWindowTest, EveryControlHasANameForAssistiveTechnology)
{
    for (const Page page : allPages) {
        window.showPage(page);
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            const bool isControl = widget->isVisible() && widget->focusPolicy() != Qt::NoFocus &&
                                   !widget->objectName().startsWith(u"qt_") && !widget->focusProxy();
            if (isControl) {
                EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->metaObject()->className();
            }
        }
    }
}

} // namespace
} // namespace vormel
