#include "ui/queue/QueueNotices.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "ui/notices/Notices.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class QueueNoticesTest : public ::testing::Test
{
protected:
    QString text(const QString& key, AppLanguage language = AppLanguage::english)
    {
        const Notice* const notice = notices.find(key);
        return notice ? notice->text(language) : QString();
    }
    void remove(std::size_t row) { engine.manager().removed().remove({engine.manager().items().at(row)->id()}); }
    [[nodiscard]] std::size_t count() { return engine.manager().items().size(); }

    void openContainers()
    {
        for (int i = 0; i < 3; ++i)
            containers.push_back(fixtures::link(u"https://container.example/c/%1"_s.arg(i)));
        engine.manager().addURLs(containers, std::nullopt);
        fixtures::turnEventLoop();
    }
    void answerContainer(std::size_t index, const QStringList& urls)
    {
        std::vector<Link> held;
        for (const QString& url : urls)
            held.push_back(fixtures::link(url));
        log->containers.at(index).answer->deliver(std::move(held));
        fixtures::turnEventLoop();
    }
    /// As the command of the menu does.
    void undoAdd()
    {
        const std::vector<ItemId> ids = engine.manager().additions().last();
        engine.manager().removed().remove({ids.begin(), ids.end()});
    }

    std::shared_ptr<fixtures::ServiceLog> log = std::make_shared<fixtures::ServiceLog>();
    std::vector<Link> containers;
    fixtures::EngineOnScript engine{fixtures::fakeServices(log)};
    Notices notices{engine.clock};
    QObject parent;
    QueueNotices* told = new QueueNotices(engine.manager(), notices, &parent);
    QStringList links{u"http://h/a"_s, u"http://h/b"_s, u"http://h/c"_s};
    std::vector<ItemPtr> items = engine.add(links);
};

TEST_F(QueueNoticesTest, SaysHowManyWereRemovedAsLongAsTheyCanComeBack)
{
    remove(0);
    EXPECT_EQ(text(u"removed"_s), u"1 download removed");
    EXPECT_EQ(text(u"removed"_s, AppLanguage::italian), u"1 download rimosso");
    engine.clock.advance(std::chrono::seconds(6));
    remove(0);
    EXPECT_EQ(text(u"removed"_s), u"2 downloads removed");
    EXPECT_EQ(text(u"removed"_s, AppLanguage::italian), u"2 download rimossi");
    EXPECT_EQ(engine.manager().removed().count(), 2); // the first notice went for the second
    engine.clock.advance(std::chrono::seconds(9));
    EXPECT_FALSE(text(u"removed"_s).isEmpty());
    engine.clock.advance(std::chrono::seconds(1));
    EXPECT_TRUE(text(u"removed"_s).isEmpty());
}

TEST_F(QueueNoticesTest, UndoBringsTheRowsBackAndTheNoticeGoes)
{
    remove(1);
    notices.run(u"removed"_s, 0);
    EXPECT_EQ(engine.manager().items(), items);
    EXPECT_EQ(notices.find(u"removed"_s), nullptr);
}

TEST_F(QueueNoticesTest, WhoeverPutsTheNoticeAwayNeedsNoUndo)
{
    remove(1);
    notices.takeBack(u"removed"_s);
    EXPECT_EQ(engine.manager().removed().count(), 0);
    EXPECT_EQ(count(), 2U);
}

TEST_F(QueueNoticesTest, SaysWhatWasAddedAndWhatWasThere)
{
    EXPECT_EQ(text(u"added"_s), u"3 added");
    EXPECT_EQ(text(u"added"_s, AppLanguage::italian), u"3 aggiunti");
    engine.add({u"http://h/a"_s, u"http://h/d"_s});
    EXPECT_EQ(text(u"added"_s), u"1 added, 1 already there");
    EXPECT_EQ(text(u"added"_s, AppLanguage::italian), u"1 aggiunto, 1 già presente");
    engine.clock.advance(std::chrono::seconds(8));
    EXPECT_EQ(notices.find(u"added"_s), nullptr);
    EXPECT_EQ(count(), 4U);
}

TEST_F(QueueNoticesTest, SaysThatNothingIsNewAndOffersNothingThen)
{
    std::vector<Link> same;
    for (const QString& url : links)
        same.push_back(fixtures::link(url));
    engine.manager().addURLs(same, std::nullopt);
    fixtures::turnEventLoop();
    EXPECT_EQ(text(u"added"_s), u"Nothing new: 3 already there");
    EXPECT_EQ(text(u"added"_s, AppLanguage::italian), u"Niente di nuovo: 3 già presenti");
    EXPECT_TRUE(notices.find(u"added"_s)->actions.empty());
    notices.takeBack(u"added"_s);
    engine.manager().addURLs({}, std::nullopt);
    fixtures::turnEventLoop();
    EXPECT_EQ(notices.find(u"added"_s), nullptr);
}

TEST_F(QueueNoticesTest, UndoOfAnAdditionTakesItsRowsBack)
{
    engine.add(u"http://h/d"_s);
    notices.run(u"added"_s, 0);
    EXPECT_EQ(engine.manager().items(), items);
    EXPECT_EQ(text(u"removed"_s), u"1 download removed");
}

TEST_F(QueueNoticesTest, CountsWhatContainersHeldInTheNoticeOfTheirPaste)
{
    openContainers();
    EXPECT_EQ(text(u"added"_s), u"3 added");
    answerContainer(0, {u"http://h/d"_s, u"http://h/e"_s, u"http://h/a"_s});
    EXPECT_EQ(text(u"added"_s), u"4 added, 1 already there");
    answerContainer(1, {u"http://h/f"_s});
    answerContainer(2, {u"http://h/g"_s, u"http://h/b"_s});
    EXPECT_EQ(text(u"added"_s), u"4 added, 2 already there");
    notices.run(u"added"_s, 0);
    EXPECT_EQ(engine.manager().items(), items);
}

TEST_F(QueueNoticesTest, BeginsAnewWhereTheNoticeOfThePasteHasGone)
{
    openContainers();
    engine.clock.advance(std::chrono::seconds(8));
    answerContainer(0, {u"http://h/d"_s});
    EXPECT_EQ(text(u"added"_s), u"1 added");
    engine.add(u"http://h/e"_s); // of another paste
    EXPECT_EQ(text(u"added"_s), u"1 added");
    answerContainer(1, {u"http://h/f"_s});
    EXPECT_EQ(text(u"added"_s), u"1 added");
}

TEST_F(QueueNoticesTest, TheNoticeOfAnAdditionGoesWhenAllOfItIsTakenBackElsewhere)
{
    engine.add({u"http://h/d"_s, u"http://h/e"_s});
    remove(4);
    EXPECT_EQ(text(u"added"_s), u"2 added");
    undoAdd();
    EXPECT_EQ(count(), 3U);
    EXPECT_EQ(notices.find(u"added"_s), nullptr);
}

TEST_F(QueueNoticesTest, ARemovalLeavesWordOfLinksThatWereThere)
{
    engine.manager().addURLs({fixtures::link(u"http://h/a"_s)}, std::nullopt);
    fixtures::turnEventLoop();
    ASSERT_EQ(text(u"added"_s), u"Nothing new: 1 already there");
    remove(0);
    EXPECT_EQ(text(u"added"_s), u"Nothing new: 1 already there");
}

TEST_F(QueueNoticesTest, ItsEndIsNoWordAboutTheRows)
{
    remove(1);
    delete told;
    notices.takeBack(u"removed"_s);
    EXPECT_EQ(engine.manager().removed().count(), 1);
}

} // namespace
} // namespace vormel
