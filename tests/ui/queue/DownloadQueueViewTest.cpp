#include "ui/queue/DownloadQueueView.h"

#include "config/Services.h"
#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "ui/FakeDesktop.h"
#include "ui/Part.h"
#include "ui/queue/RemovalQuestion.h"
#include "ui/queue/list/QueueView.h"
#include "ui/sheets/AddURLView.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDropEvent>
#include <QLabel>
#include <QLayout>
#include <QMimeData>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;

class DownloadQueueViewTest : public ::testing::Test
{
protected:
    DownloadQueueViewTest()
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
    bool enter(const QMimeData& data)
    {
        QDragEnterEvent event({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
        event.ignore();
        QApplication::sendEvent(&page, &event);
        return event.isAccepted();
    }
    /// What the other program is told of each step of a drag that proposes an action; no action where it is refused.
    QList<Qt::DropAction> answers(Qt::DropActions possible, const QMimeData& data)
    {
        QList<Qt::DropAction> told;
        const auto tell = [&](QDropEvent&& event) {
            event.ignore();
            QApplication::sendEvent(&page, &event);
            told << (event.isAccepted() ? event.dropAction() : Qt::IgnoreAction);
        };
        tell(QDragEnterEvent({50, 50}, possible, &data, Qt::LeftButton, {}));
        tell(QDragMoveEvent({60, 60}, possible, &data, Qt::LeftButton, {}));
        tell(QDropEvent({60, 60}, possible, &data, Qt::LeftButton, {}));
        turnEventLoop();
        return told;
    }
    bool drop(const QMimeData& data)
    {
        QDropEvent event({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, {});
        event.ignore();
        QApplication::sendEvent(&page, &event);
        turnEventLoop();
        return event.isAccepted();
    }
    QStringList queue()
    {
        QStringList all;
        for (const ItemPtr& item : engine.manager().items())
            all << item->originalURL().absoluteString();
        return all;
    }
    qint64 cap() { return engine.settings().maxDownloadSpeedKBps.value(); }

    fixtures::EngineOnScript engine;
    fixtures::FakeDesktop desktop{engine};
    DownloadQueueView page{desktop.ports()};
};

TEST_F(DownloadQueueViewTest, TheToolBarHasItsCommandsInOrderInBothLanguages)
{
    const auto texts = [this] {
        QStringList all;
        for (const char* name : {"addURLs", "startAll", "pauseAll", "clearCompleted", "clearExtracted"})
            all << part<QToolButton>(name).text() << part<QToolButton>(name).accessibleName();
        all.removeDuplicates();
        return all.join(u'|');
    };
    EXPECT_EQ(texts(), u"Add URLs|Start All|Pause All|Clear Completed|Clear Extracted");
    EXPECT_EQ(part<QToolButton>("startAll").toolTip(), u"Resume all paused downloads (stopped ones stay out)");
    EXPECT_EQ(part<QToolButton>("pauseAll").toolTip(), u"Pause all active downloads");
    EXPECT_EQ(part<QToolButton>("clearCompleted").toolTip(), u"Remove completed downloads from the list");
    EXPECT_EQ(part<QToolButton>("clearExtracted").toolTip(), u"Remove fully extracted groups from the list");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(texts(), u"Aggiungi URL|Avvia tutti|Metti in pausa|Rimuovi completati|Rimuovi estratti");
    EXPECT_EQ(part<QToolButton>("startAll").toolTip(), u"Riprendi tutti i download in pausa (i fermati restano fuori)");
    EXPECT_EQ(part<QToolButton>("pauseAll").toolTip(), u"Metti in pausa tutti i download attivi");
    EXPECT_EQ(part<QToolButton>("clearCompleted").toolTip(), u"Rimuovi i download completati dalla lista");
    EXPECT_EQ(part<QToolButton>("clearExtracted").toolTip(), u"Rimuovi i gruppi estratti dalla lista");
    int left = -1;
    for (const char* name :
         {"addURLs", "startAll", "pauseAll", "clearCompleted", "clearExtracted", "totalSpeed", "speedCap"}) {
        const int x = part(name).mapTo(&page, QPoint()).x();
        EXPECT_GT(x, left) << name;
        left = x;
    }
}

TEST_F(DownloadQueueViewTest, NoCommandIsEverDisabled)
{
    for (const char* name : {"addURLs", "startAll", "pauseAll", "clearCompleted", "clearExtracted"})
        EXPECT_TRUE(part(name).isEnabled()) << name;
}

TEST_F(DownloadQueueViewTest, TheCommandsReachTheQueue)
{
    const ItemPtr item = engine.add(u"https://h.example/a.zip"_s);
    const ItemPtr done = engine.add(u"https://h.example/b.zip"_s);
    done->setStatus(DownloadStatus::completed);
    click("startAll");
    EXPECT_NE(item->status().kind(), DownloadStatus::paused);
    turnEventLoop();
    click("pauseAll");
    EXPECT_EQ(item->status().kind(), DownloadStatus::paused);
    click("clearCompleted");
    EXPECT_EQ(queue(), QStringList{u"https://h.example/a.zip"_s});
}

TEST_F(DownloadQueueViewTest, ButtonsLoseTheirTextsFromTheLastWhereTheseHaveNoRoom)
{
    const auto texts = [this] {
        QString shown;
        for (const char* name : {"addURLs", "startAll", "pauseAll", "clearCompleted", "clearExtracted"})
            shown += part<QToolButton>(name).toolButtonStyle() == Qt::ToolButtonIconOnly ? u'-' : u'T';
        return shown;
    };
    page.resize(2000, 500);
    EXPECT_EQ(texts(), u"TTTTT");
    const int whole = part("queueToolBar").layout()->minimumSize().width();
    page.resize(whole, 500);
    EXPECT_EQ(texts(), u"TTTTT");
    page.resize(whole - 1, 500);
    EXPECT_EQ(texts(), u"TTTT-");
    page.resize(page.minimumSizeHint().width(), 500);
    EXPECT_EQ(texts(), u"-----");
    page.resize(2000, 500);
    EXPECT_EQ(texts(), u"TTTTT");
}

TEST_F(DownloadQueueViewTest, ControlNOpensOneSheet)
{
    QTest::keyClick(&page, Qt::Key_N, Qt::ControlModifier);
    ASSERT_EQ(page.findChildren<AddURLView*>().size(), 1);
    EXPECT_EQ(page.findChild<AddURLView*>()->windowModality(), Qt::WindowModal);
    page.showAddURLs();
    EXPECT_EQ(page.findChildren<AddURLView*>().size(), 1);
    page.findChild<AddURLView*>()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    click("addURLs");
    EXPECT_EQ(page.findChildren<AddURLView*>().size(), 1);
}

TEST_F(DownloadQueueViewTest, WhatTheSheetGivesEntersTheQueue)
{
    page.showAddURLs();
    Q_EMIT page.findChild<AddURLView*>()->added({fixtures::link(u"https://h.example/a.zip"_s)}, std::nullopt);
    EXPECT_EQ(queue(), QStringList{u"https://h.example/a.zip"_s});
}

TEST_F(DownloadQueueViewTest, SaysSoWhileNothingIsVisible)
{
    EXPECT_TRUE(part("queueEmptyState").isVisible());
    EXPECT_EQ(part<QLabel>("emptyTitle").text(), u"No Downloads");
    EXPECT_EQ(part<QLabel>("emptyText").text(), u"Press + to add URLs, or drag and drop links here.");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(part<QLabel>("emptyTitle").text(), u"Nessun download");
    EXPECT_EQ(part<QLabel>("emptyText").text(), u"Premi + per aggiungere URL, o trascina i link qui.");
    engine.add(u"https://h.example/a.rev"_s);
    EXPECT_TRUE(part("queueEmptyState").isVisible());
    const ItemPtr item = engine.add(u"https://h.example/a.zip"_s);
    EXPECT_FALSE(part("queueEmptyState").isVisible());
    EXPECT_TRUE(part("queueView").isVisible());
    engine.manager().commands().removeItems({item->id()});
    EXPECT_TRUE(part("queueEmptyState").isVisible());
}

TEST_F(DownloadQueueViewTest, DroppedTextAddsItsHttpLinks)
{
    QMimeData data;
    data.setText(u"see\nhttps://H.example/a.zip\n ftp://h.example/b\nhttp://h.example/c.zip"_s);
    EXPECT_TRUE(enter(data));
    EXPECT_TRUE(part("dropOverlay").isVisible());
    EXPECT_TRUE(drop(data));
    EXPECT_FALSE(part("dropOverlay").isVisible());
    EXPECT_EQ(queue(), (QStringList{u"https://H.example/a.zip"_s, u"http://h.example/c.zip"_s}));
}

TEST_F(DownloadQueueViewTest, NoDropIsEverAMove)
{
    // Where several are possible, Qt proposes to move.
    const std::pair<Qt::DropActions, Qt::DropAction> proposals[] = {
        {Qt::CopyAction, Qt::CopyAction},
        {Qt::CopyAction | Qt::MoveAction, Qt::CopyAction},
        {Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::CopyAction},
        {Qt::CopyAction | Qt::MoveAction | Qt::TargetMoveAction, Qt::CopyAction},
        {Qt::LinkAction, Qt::LinkAction},
        {Qt::MoveAction | Qt::LinkAction, Qt::LinkAction},
        {Qt::MoveAction, Qt::IgnoreAction},
    };
    qsizetype added = 0;
    for (const auto& [possible, taken] : proposals) {
        QMimeData data;
        data.setText(u"https://h.example/%1.zip"_s.arg(added));
        EXPECT_EQ(answers(possible, data), QList<Qt::DropAction>(3, taken)) << possible.toInt();
        added += taken == Qt::IgnoreAction ? 0 : 1;
        EXPECT_EQ(queue().size(), added) << possible.toInt();
        EXPECT_FALSE(part("dropOverlay").isVisible());
    }
}

TEST_F(DownloadQueueViewTest, DroppedAddressesAddTheirHttpLinksOnce)
{
    QMimeData data;
    data.setUrls({QUrl(u"file:///etc/passwd"_s), QUrl(u"https://h.example/a%20b.zip"_s)});
    data.setText(u"https://h.example/title-of-the-page"_s);
    EXPECT_TRUE(enter(data)); // without it no drop is delivered
    EXPECT_TRUE(drop(data));
    EXPECT_EQ(queue(), QStringList{u"https://h.example/a%20b.zip"_s});
}

TEST_F(DownloadQueueViewTest, ADropWithoutLinksAddsNothingAndSaysNothing)
{
    QMimeData data;
    data.setUrls({QUrl(u"file:///etc/passwd"_s)});
    EXPECT_TRUE(enter(data));
    EXPECT_TRUE(drop(data));
    EXPECT_FALSE(part("dropOverlay").isVisible());
    EXPECT_TRUE(queue().isEmpty());
}

TEST_F(DownloadQueueViewTest, RefusesDropsThatAreNeitherAddressesNorText)
{
    QMimeData data;
    data.setImageData(QImage(1, 1, QImage::Format_RGB32));
    EXPECT_FALSE(enter(data));
    EXPECT_FALSE(part("dropOverlay").isVisible());
    EXPECT_FALSE(drop(data));
}

TEST_F(DownloadQueueViewTest, TheMugOpensTheDonationPage)
{
    auto& mug = part<QToolButton>("donate");
    EXPECT_EQ(mug.accessibleName(), u"Buy me a beer");
    EXPECT_EQ(mug.toolTip(), u"Support Vormel — buy me a beer 🍺");
    EXPECT_GT(mug.mapTo(&page, QPoint()).x(), part("speedCap").mapTo(&page, QPoint()).x());
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(mug.accessibleName(), u"Offrimi una birra");
    EXPECT_EQ(mug.toolTip(), u"Supporta Vormel — offrimi una birra 🍺");
    click("donate");
    EXPECT_EQ(desktop.opener.opened, QList<QUrl>{QUrl(QString(donationUrl))});
}

TEST_F(DownloadQueueViewTest, TheOverlayLiesOverTheWholePageAndGoesWithTheDrag)
{
    engine.add(u"https://h.example/a.zip"_s);
    QMimeData data;
    data.setText(u"https://h.example/b.zip"_s);
    enter(data);
    EXPECT_EQ(part("dropOverlay").geometry(), page.rect());
    EXPECT_EQ(page.children().last(), &part("dropOverlay"));
    EXPECT_EQ(part<QLabel>("dropText").text(), u"Drop URLs to add");
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(part<QLabel>("dropText").text(), u"Trascina URL qui");
    QDragLeaveEvent leave;
    QApplication::sendEvent(&page, &leave);
    EXPECT_FALSE(part("dropOverlay").isVisible());
}

TEST_F(DownloadQueueViewTest, TheCapHasItsRowsAndWritesTheSetting)
{
    auto& combo = part<QComboBox>("speedCap");
    QStringList rows;
    for (int i = 0; i < combo.count(); ++i)
        rows << u"%1=%2"_s.arg(combo.itemText(i)).arg(combo.itemData(i).toLongLong());
    EXPECT_EQ(rows.join(u'|'),
              u"Unlimited=0|512 KB/s=512|1 MB/s=1024|2 MB/s=2048|5 MB/s=5120|10 MB/s=10240|20 MB/s=20480|"
              u"50 MB/s=51200");
    combo.setFocus();
    QTest::keyClick(&combo, Qt::Key_Down);
    EXPECT_EQ(cap(), 512);
    QTest::keyClick(&combo, Qt::Key_End);
    EXPECT_EQ(cap(), 51200);
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(combo.itemText(0), u"Illimitata");
    EXPECT_EQ(combo.currentData().toLongLong(), 51200);
}

TEST_F(DownloadQueueViewTest, TheCapFollowsTheSettingAndShowsForeignValues)
{
    auto& combo = part<QComboBox>("speedCap");
    engine.settings().maxDownloadSpeedKBps.set(2048);
    EXPECT_EQ(combo.currentText(), u"2 MB/s");
    engine.settings().maxDownloadSpeedKBps.set(777);
    EXPECT_EQ(combo.currentText(), u"777 KB/s");
    EXPECT_EQ(combo.count(), 9);
    EXPECT_EQ(cap(), 777);
    engine.settings().maxDownloadSpeedKBps.set(0);
    EXPECT_EQ(combo.currentText(), u"Unlimited");
    EXPECT_EQ(combo.count(), 8);
}

TEST_F(DownloadQueueViewTest, TheCapIsNamed)
{
    auto& combo = part<QComboBox>("speedCap");
    EXPECT_EQ(combo.accessibleName(), u"Current total speed / global speed cap");
    EXPECT_EQ(combo.toolTip(), combo.accessibleName());
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(combo.accessibleName(), u"Velocità totale attuale / limite globale");
}

TEST_F(DownloadQueueViewTest, TheReadOutShowsTheSpeedOfAllTransfers)
{
    EXPECT_EQ(part<QLabel>("totalSpeed").text(), u"");
    EXPECT_GE(part("totalSpeed").minimumWidth(), 64);
    const ItemPtr item = engine.start(u"https://h.example/a.zip"_s);
    engine.http.last().head(200, {{"Content-Length", "100000000"}});
    for (int i = 0; i < 8; ++i) {
        engine.http.last().data(QByteArray(1024 * 1024, 'x'));
        engine.clock.advance(std::chrono::milliseconds(500));
    }
    ASSERT_GT(engine.manager().totalSpeedBytesPerSec(), 100);
    EXPECT_EQ(part<QLabel>("totalSpeed").text(), item->speedText());
}

TEST_F(DownloadQueueViewTest, TheReadOutIsEmptyWhileNothingIsDownloading)
{
    const auto run = [this](const char* url) {
        const ItemPtr item = engine.start(QString::fromLatin1(url));
        engine.http.last().head(200, {{"Content-Length", "100000000"}});
        for (int i = 0; i < 4; ++i) {
            engine.http.last().data(QByteArray(1024 * 1024, 'x'));
            engine.clock.advance(std::chrono::milliseconds(500));
        }
        turnEventLoop();
        EXPECT_EQ(item->status().kind(), DownloadStatus::downloading);
        EXPECT_NE(part<QLabel>("totalSpeed").text(), u"");
        return item;
    };
    const ItemPtr first = run("https://h.example/a.zip");
    engine.manager().commands().stopItems({first});
    EXPECT_EQ(part<QLabel>("totalSpeed").text(), u"");
    EXPECT_GT(engine.manager().totalSpeedBytesPerSec(), 100); // keeps its last value
    first->setStatus(DownloadStatus::resolving);
    EXPECT_EQ(part<QLabel>("totalSpeed").text(), u"");
    const ItemPtr second = run("https://h.example/b.zip");
    engine.manager().commands().removeItems({second->id()});
    EXPECT_EQ(part<QLabel>("totalSpeed").text(), u"");
}

TEST_F(DownloadQueueViewTest, TabGoesThroughTheToolBarFromLeftToRightAndThenToTheList)
{
    engine.add(u"https://h.example/a.zip"_s);
    part("addURLs").setFocus();
    QStringList order;
    for (int i = 0; i < 8; ++i) {
        order << QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order.join(u' '), u"addURLs startAll pauseAll clearCompleted clearExtracted speedCap donate queueView");
}

TEST_F(DownloadQueueViewTest, ClearExtractedReachesTheQueue)
{
    const auto items = engine.add({u"https://h.example/a.part1.rar"_s, u"https://h.example/b.zip"_s});
    items[0]->setExtractionStatus(ExtractionStatus::done);
    click("clearExtracted");
    EXPECT_EQ(queue(), QStringList{u"https://h.example/b.zip"_s});
}

TEST_F(DownloadQueueViewTest, TheQuestionOfARemovalIsASheetAmongTheOthers)
{
    engine.add(u"https://h.example/a.zip"_s);
    part<QAction>("removeAll").trigger();
    ASSERT_NE(page.findChild<RemovalQuestion*>(), nullptr);
    page.showAddURLs();
    EXPECT_EQ(page.findChild<AddURLView*>(), nullptr);
    QTest::keyClick(page.findChild<RemovalQuestion*>(), Qt::Key_Escape);
    turnEventLoop();
    page.showAddURLs();
    part<QAction>("removeAll").trigger();
    EXPECT_EQ(page.findChild<RemovalQuestion*>(), nullptr);
    EXPECT_EQ(engine.manager().items().size(), 1U);
}

TEST_F(DownloadQueueViewTest, WhatTheToolBarClearsCanBePutBack)
{
    engine.add(u"https://h.example/a.zip"_s)->setStatus(DownloadStatus::completed);
    engine.add(u"https://h.example/b.zip"_s)->setExtractionStatus(ExtractionStatus::done);
    click("clearCompleted");
    click("clearExtracted");
    EXPECT_TRUE(engine.manager().items().empty());
    desktop.notices.run(u"removed"_s, 0);
    EXPECT_EQ(engine.manager().items().size(), 2U);
}

TEST_F(DownloadQueueViewTest, WhatIsAddedComesIntoSightAndTheSelectionStays)
{
    QStringList links;
    for (int i = 0; i < 60; ++i)
        links << u"https://h.example/%1.zip"_s.arg(i);
    engine.add(links);
    auto& list = part<QueueView>("queueView");
    list.setCurrentIndex(list.model()->index(3, 0));
    engine.add(
        {u"https://h.example/set.part1.rar"_s, u"https://h.example/set.part2.rar"_s, u"https://h.example/last.zip"_s});
    const QModelIndex header = list.model()->index(60, 0);
    EXPECT_TRUE(list.viewport()->rect().contains(list.visualRect(header))); // its group is closed
    EXPECT_EQ(list.selectedRow(), list.model()->index(3, 0));
    list.scrollToTop();
    engine.manager().addURLs({fixtures::link(u"https://h.example/0.zip"_s)}, std::nullopt);
    turnEventLoop();
    EXPECT_EQ(list.indexAt(QPoint(0, 0)).row(), 0); // nothing is new
}

TEST(QueueOfContainers, TheListStaysWhereItIsWhenTheyHaveBeenRead)
{
    const auto log = std::make_shared<fixtures::ServiceLog>();
    fixtures::EngineOnScript engine(fixtures::fakeServices(log));
    fixtures::FakeDesktop desktop(engine);
    DownloadQueueView page(desktop.ports());
    page.resize(900, 500);
    page.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&page));
    QStringList links;
    for (int i = 0; i < 60; ++i)
        links << u"https://h.example/%1.zip"_s.arg(i);
    engine.add(links);
    engine.manager().addURLs({fixtures::link(u"https://container.example/c/1"_s)}, std::nullopt);
    turnEventLoop();
    auto& list = fixtures::partOf<QueueView>(page, "queueView");
    EXPECT_GT(list.indexAt(QPoint(0, 0)).row(), 0); // its own row came into sight
    list.scrollToTop();
    log->containers[0].answer->deliver(std::vector{fixtures::link(u"https://h.example/new.zip"_s)});
    turnEventLoop();
    ASSERT_EQ(engine.manager().items().size(), 61U);
    EXPECT_EQ(list.indexAt(QPoint(0, 0)).row(), 0);
}

TEST_F(DownloadQueueViewTest, TheListIsNamedAndItsRowsSpeak)
{
    engine.add(u"https://h.example/a.zip"_s);
    auto& list = part<QueueView>("queueView");
    EXPECT_EQ(list.accessibleName(), u"Downloads");
    EXPECT_EQ(list.model()->index(0, 0).data(Qt::AccessibleTextRole).toString(), u"a.zip, Paused, h.example");
}

} // namespace
} // namespace vormel
