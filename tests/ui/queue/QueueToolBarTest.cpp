#include "ui/queue/QueueToolBar.h"

#include "config/Services.h"
#include "ui/queue/QueuePage.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLayout>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;

class QueueToolBarTest : public fixtures::QueuePage
{
protected:
    qint64 cap() { return engine.settings().maxDownloadSpeedKBps.value(); }
};

TEST_F(QueueToolBarTest, TheToolBarHasItsCommandsInOrderInBothLanguages)
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

TEST_F(QueueToolBarTest, NoCommandIsEverDisabled)
{
    for (const char* name : {"addURLs", "startAll", "pauseAll", "clearCompleted", "clearExtracted"})
        EXPECT_TRUE(part(name).isEnabled()) << name;
}

TEST_F(QueueToolBarTest, TheCommandsReachTheQueue)
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

TEST_F(QueueToolBarTest, ClearExtractedReachesTheQueue)
{
    const auto items = engine.add({u"https://h.example/a.part1.rar"_s, u"https://h.example/b.zip"_s});
    items[0]->setExtractionStatus(ExtractionStatus::done);
    click("clearExtracted");
    EXPECT_EQ(queue(), QStringList{u"https://h.example/b.zip"_s});
}

TEST_F(QueueToolBarTest, WhatTheToolBarClearsCanBePutBack)
{
    engine.add(u"https://h.example/a.zip"_s)->setStatus(DownloadStatus::completed);
    engine.add(u"https://h.example/b.zip"_s)->setExtractionStatus(ExtractionStatus::done);
    click("clearCompleted");
    click("clearExtracted");
    EXPECT_TRUE(engine.manager().items().empty());
    desktop.notices.run(u"removed"_s, 0);
    EXPECT_EQ(engine.manager().items().size(), 2U);
}

TEST_F(QueueToolBarTest, ButtonsLoseTheirTextsFromTheLastWhereTheseHaveNoRoom)
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

TEST_F(QueueToolBarTest, TheMugOpensTheDonationPage)
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

TEST_F(QueueToolBarTest, TheCapHasItsRowsAndWritesTheSetting)
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

TEST_F(QueueToolBarTest, TheCapFollowsTheSettingAndShowsForeignValues)
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

TEST_F(QueueToolBarTest, TheCapIsNamed)
{
    auto& combo = part<QComboBox>("speedCap");
    EXPECT_EQ(combo.accessibleName(), u"Current total speed / global speed cap");
    EXPECT_EQ(combo.toolTip(), combo.accessibleName());
    engine.settings().language.set(AppLanguage::italian);
    EXPECT_EQ(combo.accessibleName(), u"Velocità totale attuale / limite globale");
}

TEST_F(QueueToolBarTest, TheReadOutShowsTheSpeedOfAllTransfers)
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

TEST_F(QueueToolBarTest, TheReadOutIsEmptyWhileNothingIsDownloading)
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

TEST_F(QueueToolBarTest, TabGoesThroughTheToolBarFromLeftToRightAndThenToTheList)
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

} // namespace
} // namespace vormel
