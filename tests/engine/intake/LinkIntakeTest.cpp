#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

const QString containerURL = u"https://container.example/c/XYZ"_s;

class LinkIntakeTest : public ::testing::Test
{
protected:
    void answer(std::size_t call, const std::variant<std::vector<Link>, ContainerError>& result)
    {
        log->containers.at(call).answer->deliver(result);
        turnEventLoop();
    }
    void paste(const QString& url, const std::optional<QString>& password = {})
    {
        engine.manager().addURLs({link(url)}, password);
        turnEventLoop();
    }
    [[nodiscard]] QStringList names() const
    {
        QStringList result;
        for (const ItemPtr& item : engine.manager().items())
            result.append(item->filename());
        return result;
    }

    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    mutable EngineOnScript engine{fakeServices(log)};
};

} // namespace

TEST_F(LinkIntakeTest, AddsPausedItemsUnlessToldToStartThem)
{
    EXPECT_EQ(engine.add(u"http://h/a"_s)->status(), DownloadStatus::paused);
    engine.settings().autoStartDownloads.set(true);
    EXPECT_EQ(engine.add(u"http://h/b"_s)->status(), DownloadStatus::downloading);
}

TEST_F(LinkIntakeTest, RefusesALinkThatIsThereInAnyLetterCase)
{
    engine.add(u"http://host/path/a.rar"_s);
    paste(u"HTTP://HOST/PATH/A.RAR."_s);
    EXPECT_EQ(engine.manager().items().size(), 1U);
}

TEST_F(LinkIntakeTest, TakesTwoEqualLinksOfOnePasteOnce)
{
    engine.manager().addURLs({link(u"http://h/a"_s), link(u"http://h/A,"_s)}, std::nullopt);
    ASSERT_EQ(engine.manager().items().size(), 1U);
    EXPECT_EQ(engine.manager().items()[0]->originalURL().absoluteString(), u"http://h/a"_s);
}

TEST_F(LinkIntakeTest, RefusesALinkWhateverTheStatusOfItsItem)
{
    engine.add(u"http://h/a"_s)->setStatus(DownloadStatus::failure(u"x"_s));
    paste(u"http://h/a"_s);
    EXPECT_EQ(engine.manager().items().size(), 1U);
    engine.manager().commands().removeItems({engine.manager().items()[0]->id()});
    paste(u"http://h/a"_s);
    EXPECT_EQ(engine.manager().items().size(), 1U);
}

TEST_F(LinkIntakeTest, CompletesALinkWhoseFileIsThere)
{
    engine.sandbox.write(u"Downloads/set/set.part1.rar"_s, "12345");
    const ItemPtr item = engine.add(u"http://h/set.part1.rar"_s);
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_DOUBLE_EQ(item->progress(), 1.0);
    EXPECT_EQ(item->totalBytes(), 5);
    EXPECT_EQ(item->bytesReceived(), 5);
    EXPECT_EQ(item->localPath(), engine.sandbox.path(u"Downloads/set/set.part1.rar"_s));
    EXPECT_FALSE(item->extractionStatus() == ExtractionStatus::idle);
}

TEST_F(LinkIntakeTest, MistakesNoFileNamedDownloadForANamelessItem)
{
    engine.sandbox.write(u"Downloads/download"_s, "x");
    EXPECT_EQ(engine.add(u"http://h/"_s)->status(), DownloadStatus::paused);
}

TEST_F(LinkIntakeTest, ShowsAPlaceholderWhileAContainerIsRead)
{
    engine.manager().addURLs({link(u"http://h/a"_s), link(containerURL)}, u"secret"_s);
    turnEventLoop();
    ASSERT_EQ(engine.manager().items().size(), 2U);
    const ItemPtr placeholder = engine.manager().items()[1];
    EXPECT_EQ(placeholder->status(), DownloadStatus::expanding);
    EXPECT_EQ(placeholder->filename(), u"container.example: XYZ"_s);
    EXPECT_EQ(log->containers.at(0).password, u"secret"_s);
    answer(0, std::vector{link(u"http://h/1.rar"_s), link(u"http://h/2.rar"_s)});
    EXPECT_EQ(names(), (QStringList{u"a"_s, u"1.rar"_s, u"2.rar"_s}));
}

TEST_F(LinkIntakeTest, RefusesAContainerWhileItIsReadAndReadsItAgainLater)
{
    paste(containerURL);
    paste(containerURL);
    EXPECT_EQ(log->containers.size(), 1U);
    answer(0, std::vector{link(u"http://h/1.rar"_s)});
    paste(containerURL);
    EXPECT_EQ(log->containers.size(), 2U);
    answer(1, std::vector{link(u"http://h/1.rar"_s), link(u"http://h/2.rar"_s)});
    EXPECT_EQ(names(), (QStringList{u"1.rar"_s, u"2.rar"_s}));
}

TEST_F(LinkIntakeTest, ReadsContainersTogetherWhateverTheLimit)
{
    engine.settings().maxConcurrentDownloads.set(1);
    engine.manager().addURLs({link(containerURL), link(u"https://container.example/c/2"_s)}, std::nullopt);
    turnEventLoop();
    EXPECT_EQ(log->containers.size(), 2U);
    // Links are appended as the answers come.
    answer(1, std::vector{link(u"http://h/second"_s)});
    answer(0, std::vector{link(u"http://h/first"_s)});
    EXPECT_EQ(names(), (QStringList{u"second"_s, u"first"_s}));
}

TEST_F(LinkIntakeTest, EndsWithNothingWhenAContainerYieldsNothing)
{
    paste(containerURL);
    answer(0, std::vector<Link>{});
    EXPECT_TRUE(engine.manager().items().empty());
    EXPECT_EQ(engine.manager().questions().pendingHostSelection(), std::nullopt);
}

TEST_F(LinkIntakeTest, KeepsAFailedContainerWithItsText)
{
    paste(containerURL);
    answer(0, ContainerError::noLinksFound());
    ASSERT_EQ(engine.manager().items().size(), 1U);
    EXPECT_EQ(engine.manager().items()[0]->status(), DownloadStatus::failure(u"No links found in the container"_s));
    EXPECT_EQ(names(), QStringList{u"container.example: XYZ"_s});
}

TEST_F(LinkIntakeTest, AsksWhichHostWhenAContainerHasSeveral)
{
    paste(containerURL);
    const std::vector<Link> links{link(u"http://other.example/1"_s), link(u"http://www.terabytez.example/1"_s),
                                  link(u"http://filestore.example/1"_s)};
    answer(0, links);
    EXPECT_TRUE(engine.manager().items().empty());
    const auto& question = engine.manager().questions().pendingHostSelection();
    ASSERT_TRUE(question);
    ASSERT_EQ(question->groups.size(), 3U);
    EXPECT_EQ(question->groups[0].displayName, u"Terabytez"_s);
    EXPECT_EQ(question->groups[1].displayName, u"Filestore.example"_s);
    EXPECT_EQ(question->groups[2].displayName, u"other.example"_s);
    EXPECT_EQ(question->allURLs, links);
    engine.manager().questions().confirmHostSelection({links[0]});
    EXPECT_EQ(engine.manager().questions().pendingHostSelection(), std::nullopt);
    EXPECT_EQ(engine.manager().items().size(), 1U);
}

TEST_F(LinkIntakeTest, DropsTheLinksWhenTheQuestionIsCancelled)
{
    paste(containerURL);
    answer(0, std::vector{link(u"http://a/1"_s), link(u"http://b/1"_s)});
    engine.manager().questions().cancelHostSelection();
    EXPECT_TRUE(engine.manager().items().empty());
    EXPECT_EQ(engine.manager().questions().pendingHostSelection(), std::nullopt);
}

TEST_F(LinkIntakeTest, AsksForACaptchaAndPutsItsLinksInThePlaceholdersStead)
{
    paste(containerURL, u"pw"_s);
    answer(0, ContainerError::captchaRequired());
    const ItemPtr placeholder = engine.manager().items().at(0);
    EXPECT_EQ(placeholder->status(), DownloadStatus::expanding);
    EXPECT_EQ(placeholder->filename(), u"CAPTCHA: container.example"_s);
    EXPECT_EQ(engine.manager().questions().pendingCaptcha(),
              (PendingCaptcha{placeholder->id(), link(containerURL), u"pw"_s}));
    engine.manager().questions().addCaptchaLinks({link(u"http://a/1"_s), link(u"http://b/1"_s)});
    EXPECT_EQ(engine.manager().questions().pendingCaptcha(), std::nullopt);
    EXPECT_EQ(engine.manager().questions().pendingHostSelection(), std::nullopt);
    EXPECT_EQ(engine.manager().items().size(), 2U);
    EXPECT_EQ(engine.manager().item(placeholder->id()), nullptr);
}

TEST_F(LinkIntakeTest, FailsThePlaceholderWhenTheCaptchaIsCancelled)
{
    paste(containerURL);
    answer(0, ContainerError::captchaRequired());
    engine.manager().questions().cancelCaptcha();
    EXPECT_EQ(engine.manager().items().at(0)->status(), DownloadStatus::failure(u"CAPTCHA cancelled"_s));
    EXPECT_EQ(engine.manager().questions().pendingCaptcha(), std::nullopt);
    engine.manager().questions().cancelCaptcha();
    engine.manager().questions().addCaptchaLinks({link(u"http://a/1"_s)});
    EXPECT_EQ(engine.manager().items().size(), 1U);
}

TEST_F(LinkIntakeTest, PutsTheCaptchaOfASecondContainerBehindThatOfTheFirst)
{
    engine.manager().addURLs({link(containerURL), link(u"https://container.example/c/2"_s)}, std::nullopt);
    turnEventLoop();
    answer(0, ContainerError::captchaRequired());
    answer(1, ContainerError::captchaRequired());
    const auto asked = [this] {
        return engine.manager().questions().pendingCaptcha()->containerURL.lastPathComponent();
    };
    EXPECT_EQ(asked(), link(containerURL).lastPathComponent());
    engine.manager().questions().cancelCaptcha();
    EXPECT_EQ(asked(), u"2"_s);
    EXPECT_EQ(engine.manager().items().size(), 2U);
}

TEST_F(LinkIntakeTest, AddsNothingOfAContainerWhoseRowWasRemovedMeanwhile)
{
    paste(containerURL);
    engine.manager().commands().removeItems({engine.manager().items().at(0)->id()});
    answer(0, std::vector{link(u"http://h/1.rar"_s)});
    EXPECT_TRUE(engine.manager().items().empty());
}

TEST_F(LinkIntakeTest, AddsContainersAsFilesWhenToldSo)
{
    engine.manager().addDirectURLs({link(containerURL)});
    turnEventLoop();
    EXPECT_TRUE(log->containers.empty());
    EXPECT_EQ(names(), QStringList{u"XYZ"_s});
}

TEST_F(LinkIntakeTest, GivesPlaceholdersNoSlotAndNoPlaceInTheFile)
{
    engine.settings().maxConcurrentDownloads.set(1);
    for (int i = 0; i < 10; ++i)
        paste(u"https://container.example/c/%1"_s.arg(i));
    const ItemPtr direct = engine.start(u"http://h/a"_s);
    EXPECT_EQ(direct->status(), DownloadStatus::downloading);
    engine.restart();
    EXPECT_EQ(names(), QStringList{u"a"_s});
}

TEST_F(LinkIntakeTest, IsSavedBeforeItReturns)
{
    engine.manager().addURLs({link(u"http://h/a"_s)}, std::nullopt);
    engine.restart(true);
    EXPECT_EQ(names(), QStringList{u"a"_s});
}
