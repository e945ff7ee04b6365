#include "engine/QueueScene.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class AdditionsTest : public ::testing::Test, protected QueueScene
{
protected:
    AdditionsTest()
    {
        told.clear();
        QObject::connect(&engine.manager().additions(), &Additions::told, &context,
                         [this](const Addition& addition) { told.push_back(addition); });
    }
    void paste(const QStringList& urls, const std::optional<QString>& password = std::nullopt)
    {
        std::vector<Link> links;
        for (const QString& url : urls)
            links.push_back(link(url));
        engine.manager().addURLs(links, password);
    }
    [[nodiscard]] std::vector<ItemId> last() { return engine.manager().additions().last(); }
    [[nodiscard]] std::vector<ItemId> idsFrom(std::size_t first)
    {
        std::vector<ItemId> ids;
        for (std::size_t i = first; i < engine.manager().items().size(); ++i)
            ids.push_back(engine.manager().items()[i]->id());
        return ids;
    }

    QObject context;
    std::vector<Addition> told;
};

} // namespace

TEST_F(AdditionsTest, CountsWhatIsNewAndWhatWasThere)
{
    paste({u"http://h/a"_s, u"http://h/waiting.bin"_s, u"http://h/b"_s});
    turnEventLoop();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].items, idsFrom(1));
    EXPECT_EQ(told[0].known, 1);
}

TEST_F(AdditionsTest, ARepetitionWithinOnePasteCountsOnce)
{
    paste({u"http://h/a"_s, u"http://h/A"_s, u"http://h/waiting.bin"_s, u"http://h/waiting.bin."_s});
    turnEventLoop();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].items.size(), 1U);
    EXPECT_EQ(told[0].known, 1);
}

TEST_F(AdditionsTest, ADropInSeveralPiecesIsToldOnce)
{
    paste({u"http://h/a"_s, containerLink});
    paste({u"http://h/b"_s});
    paste({u"https://container.example/c/2"_s});
    turnEventLoop();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].items.size(), 4U);
    EXPECT_EQ(told[0].items, last());
}

TEST_F(AdditionsTest, PastesOfSeveralTurnsAreTold)
{
    paste({u"http://h/a"_s});
    turnEventLoop();
    paste({u"http://h/b"_s});
    turnEventLoop();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[1].items, idsFrom(2));
    EXPECT_EQ(last(), idsFrom(2));
}

TEST_F(AdditionsTest, NothingNewLeavesTheLastAdditionAsItWas)
{
    paste({u"http://h/a"_s});
    turnEventLoop();
    paste({u"http://h/a"_s});
    turnEventLoop();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_TRUE(told[1].items.empty());
    EXPECT_EQ(told[1].known, 1);
    EXPECT_EQ(last(), idsFrom(1));
}

TEST_F(AdditionsTest, WhatAContainerHeldBelongsToItsPaste)
{
    paste({u"http://h/a"_s, containerLink});
    turnEventLoop();
    paste({u"http://h/later"_s});
    turnEventLoop();
    answerContainer(std::vector{link(directLink), link(u"http://h/a"_s)});
    ASSERT_EQ(told.size(), 3U);
    EXPECT_EQ(told[2].items, idsFrom(3));
    EXPECT_EQ(told[2].known, 1);
    EXPECT_EQ(last(), std::vector{engine.manager().items()[2]->id()}); // the later one is the last still
}

TEST_F(AdditionsTest, TheLastPasteHasTheLinksOfItsContainers)
{
    openContainer();
    answerContainer(std::vector{link(directLink), link(u"http://h/y"_s)});
    const std::vector<ItemId> ids = last();
    for (const ItemId& id : idsFrom(1))
        EXPECT_TRUE(std::ranges::find(ids, id) != ids.end());
}

TEST_F(AdditionsTest, OnlyWhatIsToldAsItIsDoneIsTheFirstOfIt)
{
    paste({u"http://h/a"_s, containerLink});
    turnEventLoop();
    answerContainer(std::vector{link(directLink)});
    ASSERT_EQ(told.size(), 2U);
    EXPECT_TRUE(told[0].isFirst);
    EXPECT_FALSE(told[1].isFirst);
}

TEST_F(AdditionsTest, WhatAContainerOfFormerTimesHeldIsNoFirst)
{
    openContainer();
    engine.manager().removed().remove({engine.manager().items().back()->id()});
    engine.manager().removed().putBack(); // as a start of the program takes it up
    turnEventLoop();
    told.clear();
    log->containers.back().answer->deliver(std::vector{link(directLink)});
    turnEventLoop();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].items.size(), 1U);
    EXPECT_FALSE(told[0].isFirst);
}

TEST_F(AdditionsTest, LinksBehindACaptchaBelongToTheirPaste)
{
    openContainer();
    answerContainer(ContainerError::captchaRequired());
    paste({u"http://h/later"_s});
    turnEventLoop();
    const std::vector<ItemId> before = last();
    engine.manager().questions().addCaptchaLinks({link(directLink)});
    turnEventLoop();
    EXPECT_EQ(told.back().items.size(), 1U);
    EXPECT_EQ(last(), before);
}

TEST_F(AdditionsTest, LinksOfAChosenHostBelongToThePasteOfTheirContainer)
{
    paste({u"http://h/a"_s, containerLink});
    turnEventLoop();
    const int stroke = told.back().stroke;
    paste({u"http://h/later"_s});
    turnEventLoop();
    EXPECT_NE(told.back().stroke, stroke);
    const std::vector<ItemId> before = last();
    const ItemId container = engine.manager().items()[2]->id();
    answerContainer(std::vector{link(u"http://h/x"_s), link(u"http://other/x"_s)});
    engine.manager().questions().confirmHostSelection({link(u"http://h/x"_s)});
    turnEventLoop();
    EXPECT_EQ(told.back().stroke, stroke);
    EXPECT_EQ(told.back().items, idsFrom(3));
    EXPECT_EQ(told.back().read, std::vector{container});
    EXPECT_EQ(last(), before);
}

TEST_F(AdditionsTest, TheLastPasteHasTheLinksOfAChosenHost)
{
    paste({u"http://h/a"_s, containerLink});
    turnEventLoop();
    answerContainer(std::vector{link(u"http://h/x"_s), link(u"http://other/x"_s)});
    engine.manager().questions().confirmHostSelection({link(u"http://h/x"_s)});
    turnEventLoop();
    const std::vector<ItemId> ids = last();
    for (const ItemId& id : idsFrom(1))
        EXPECT_TRUE(std::ranges::find(ids, id) != ids.end());
}
