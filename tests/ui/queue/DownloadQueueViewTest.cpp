#include "ui/queue/DownloadQueueView.h"

#include "fixtures/FakeResolvers.h"
#include "ui/queue/QueuePage.h"
#include "ui/queue/RemovalQuestion.h"
#include "ui/queue/list/QueueView.h"
#include "ui/sheets/AddURLView.h"

#include <QAction>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;

class DownloadQueueViewTest : public fixtures::QueuePage
{};

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
