#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "fixtures/EngineOnScript.h"

#include <gtest/gtest.h>

using namespace vormel;
using namespace vormel::fixtures;

namespace {

const QString containerLink = QStringLiteral("https://container.example/c/XYZ");

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
    EXPECT_EQ(engine.add(QStringLiteral("http://h/a"))->status(), DownloadStatus::paused);
    engine.settings().autoStartDownloads.set(true);
    EXPECT_EQ(engine.add(QStringLiteral("http://h/b"))->status(), DownloadStatus::downloading);
}

TEST_F(LinkIntakeTest, RefusesALinkThatIsThereInAnyLetterCase)
{
    engine.add(QStringLiteral("http://host/path/a.rar"));
    paste(QStringLiteral("HTTP://HOST/PATH/A.RAR."));
    EXPECT_EQ(engine.manager().items().size(), 1U);
}

TEST_F(LinkIntakeTest, TakesTwoEqualLinksOfOnePasteOnce)
{
    engine.manager().addURLs({link(QStringLiteral("http://h/a")), link(QStringLiteral("http://h/A,"))}, std::nullopt);
    ASSERT_EQ(engine.manager().items().size(), 1U);
    EXPECT_EQ(engine.manager().items()[0]->originalURL().absoluteString(), QStringLiteral("http://h/a"));
}

TEST_F(LinkIntakeTest, RefusesALinkWhateverTheStatusOfItsItem)
{
    engine.add(QStringLiteral("http://h/a"))->setStatus(DownloadStatus::failure(QStringLiteral("x")));
    paste(QStringLiteral("http://h/a"));
    EXPECT_EQ(engine.manager().items().size(), 1U);
    engine.manager().commands().removeItems({engine.manager().items()[0]->id()});
    paste(QStringLiteral("http://h/a"));
    EXPECT_EQ(engine.manager().items().size(), 1U);
}

TEST_F(LinkIntakeTest, CompletesALinkWhoseFileIsThere)
{
    engine.sandbox.write(QStringLiteral("Downloads/set/set.part1.rar"), "12345");
    const ItemPtr item = engine.add(QStringLiteral("http://h/set.part1.rar"));
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_DOUBLE_EQ(item->progress(), 1.0);
    EXPECT_EQ(item->totalBytes(), 5);
    EXPECT_EQ(item->bytesReceived(), 5);
    EXPECT_EQ(item->localPath(), engine.sandbox.path(QStringLiteral("Downloads/set/set.part1.rar")));
    EXPECT_FALSE(item->extractionStatus() == ExtractionStatus::idle);
}

TEST_F(LinkIntakeTest, MistakesNoFileNamedDownloadForANamelessItem)
{
    engine.sandbox.write(QStringLiteral("Downloads/download"), "x");
    EXPECT_EQ(engine.add(QStringLiteral("http://h/"))->status(), DownloadStatus::paused);
}

TEST_F(LinkIntakeTest, ShowsAPlaceholderWhileAContainerIsRead)
{
    engine.manager().addURLs({link(QStringLiteral("http://h/a")), link(containerLink)}, QStringLiteral("secret"));
    turnEventLoop();
    ASSERT_EQ(engine.manager().items().size(), 2U);
    const ItemPtr placeholder = engine.manager().items()[1];
    EXPECT_EQ(placeholder->status(), DownloadStatus::expanding);
    EXPECT_EQ(placeholder->filename(), QStringLiteral("container.example: XYZ"));
    EXPECT_EQ(log->containers.at(0).password, QStringLiteral("secret"));
    answer(0, std::vector{link(QStringLiteral("http://h/1.rar")), link(QStringLiteral("http://h/2.rar"))});
    EXPECT_EQ(names(), (QStringList{QStringLiteral("a"), QStringLiteral("1.rar"), QStringLiteral("2.rar")}));
}

TEST_F(LinkIntakeTest, RefusesAContainerWhileItIsReadAndReadsItAgainLater)
{
    paste(containerLink);
    paste(containerLink);
    EXPECT_EQ(log->containers.size(), 1U);
    answer(0, std::vector{link(QStringLiteral("http://h/1.rar"))});
    paste(containerLink);
    EXPECT_EQ(log->containers.size(), 2U);
    answer(1, std::vector{link(QStringLiteral("http://h/1.rar")), link(QStringLiteral("http://h/2.rar"))});
    EXPECT_EQ(names(), (QStringList{QStringLiteral("1.rar"), QStringLiteral("2.rar")}));
}

TEST_F(LinkIntakeTest, ReadsContainersTogetherWhateverTheLimit)
{
    engine.settings().maxConcurrentDownloads.set(1);
    engine.manager().addURLs({link(containerLink), link(QStringLiteral("https://container.example/c/2"))}, std::nullopt);
    turnEventLoop();
    EXPECT_EQ(log->containers.size(), 2U);
    // Links are appended as the answers come.
    answer(1, std::vector{link(QStringLiteral("http://h/second"))});
    answer(0, std::vector{link(QStringLiteral("http://h/first"))});
    EXPECT_EQ(names(), (QStringList{QStringLiteral("second"), QStringLiteral("first")}));
}

TEST_F(LinkIntakeTest, EndsWithNothingWhenAContainerYieldsNothing)
{
    paste(containerLink);
    answer(0, std::vector<Link>{});
    EXPECT_TRUE(engine.manager().items().empty());
    EXPECT_EQ(engine.manager().questions().pendingHostSelection(), std::nullopt);
}

TEST_F(LinkIntakeTest, KeepsAFailedContainerWithItsText)
{
    paste(containerLink);
    answer(0, ContainerError::noLinksFound());
    ASSERT_EQ(engine.manager().items().size(), 1U);
    EXPECT_EQ(engine.manager().items()[0]->status(),
              DownloadStatus::failure(QStringLiteral("No links found in the container")));
    EXPECT_EQ(names(), QStringList{QStringLiteral("container.example: XYZ")});
}

TEST_F(LinkIntakeTest, AsksWhichHostWhenAContainerHasSeveral)
{
    paste(containerLink);
    const std::vector<Link> links{link(QStringLiteral("http://other.example/1")),
                                  link(QStringLiteral("http://www.terabytez.example/1")),
                                  link(QStringLiteral("http://filestore.example/1"))};
    answer(0, links);
    EXPECT_TRUE(engine.manager().items().empty());
    const auto& question = engine.manager().questions().pendingHostSelection();
    ASSERT_TRUE(question);
    ASSERT_EQ(question->groups.size(), 3U);
    EXPECT_EQ(question->groups[0].displayName, QStringLiteral("Terabytez"));
    EXPECT_EQ(question->groups[1].displayName, QStringLiteral("Filestore.example"));
    EXPECT_EQ(question->groups[2].displayName, QStringLiteral("other.example"));
    EXPECT_EQ(question->allURLs, links);
    engine.manager().questions().confirmHostSelection({links[0]});
    EXPECT_EQ(engine.manager().questions().pendingHostSelection(), std::nullopt);
    EXPECT_EQ(engine.manager().items().size(), 1U);
}

TEST_F(LinkIntakeTest, DropsTheLinksWhenTheQuestionIsCancelled)
{
    paste(containerLink);
    answer(0, std::vector{link(QStringLiteral("http://a/1")), link(QStringLiteral("http://b/1"))});
    engine.manager().questions().cancelHostSelection();
    EXPECT_TRUE(engine.manager().items().empty());
    EXPECT_EQ(engine.manager().questions().pendingHostSelection(), std::nullopt);
}

TEST_F(LinkIntakeTest, AsksForACaptchaAndPutsItsLinksInThePlaceholdersStead)
{
    paste(containerLink, QStringLiteral("pw"));
    answer(0, ContainerError::captchaRequired());
    const ItemPtr placeholder = engine.manager().items().at(0);
    EXPECT_EQ(placeholder->status(), DownloadStatus::expanding);
    EXPECT_EQ(placeholder->filename(), QStringLiteral("CAPTCHA: container.example"));
    EXPECT_EQ(engine.manager().questions().pendingCaptcha(),
              (PendingCaptcha{placeholder->id(), link(containerLink), QStringLiteral("pw")}));
    engine.manager().questions().addCaptchaLinks(
        {link(QStringLiteral("http://a/1")), link(QStringLiteral("http://b/1"))});
    EXPECT_EQ(engine.manager().questions().pendingCaptcha(), std::nullopt);
    EXPECT_EQ(engine.manager().questions().pendingHostSelection(), std::nullopt);
    EXPECT_EQ(engine.manager().items().size(), 2U);
    EXPECT_EQ(engine.manager().item(placeholder->id()), nullptr);
}

TEST_F(LinkIntakeTest, FailsThePlaceholderWhenTheCaptchaIsCancelled)
{
    paste(containerLink);
    answer(0, ContainerError::captchaRequired());
    engine.manager().questions().cancelCaptcha();
    EXPECT_EQ(engine.manager().items().at(0)->status(), DownloadStatus::failure(QStringLiteral("CAPTCHA cancelled")));
    EXPECT_EQ(engine.manager().questions().pendingCaptcha(), std::nullopt);
    engine.manager().questions().cancelCaptcha();
    engine.manager().questions().addCaptchaLinks({link(QStringLiteral("http://a/1"))});
    EXPECT_EQ(engine.manager().items().size(), 1U);
}

TEST_F(LinkIntakeTest, PutsTheCaptchaOfASecondContainerBehindThatOfTheFirst)
{
    engine.manager().addURLs({link(containerLink), link(QStringLiteral("https://container.example/c/2"))}, std::nullopt);
    turnEventLoop();
    answer(0, ContainerError::captchaRequired());
    answer(1, ContainerError::captchaRequired());
    const auto asked = [this] { return engine.manager().questions().pendingCaptcha()->containerURL.lastPathComponent(); };
    EXPECT_EQ(asked(), link(containerLink).lastPathComponent());
    engine.manager().questions().cancelCaptcha();
    EXPECT_EQ(asked(), QStringLiteral("2"));
    EXPECT_EQ(engine.manager().items().size(), 2U);
}

TEST_F(LinkIntakeTest, AddsNothingOfAContainerWhoseRowWasRemovedMeanwhile)
{
    paste(containerLink);
    engine.manager().commands().removeItems({engine.manager().items().at(0)->id()});
    answer(0, std::vector{link(QStringLiteral("http://h/1.rar"))});
    EXPECT_TRUE(engine.manager().items().empty());
}

TEST_F(LinkIntakeTest, AddsContainersAsFilesWhenToldSo)
{
    engine.manager().addDirectURLs({link(containerLink)});
    turnEventLoop();
    EXPECT_TRUE(log->containers.empty());
    EXPECT_EQ(names(), QStringList{QStringLiteral("XYZ")});
}

TEST_F(LinkIntakeTest, GivesPlaceholdersNoSlotAndNoPlaceInTheFile)
{
    engine.settings().maxConcurrentDownloads.set(1);
    for (int i = 0; i < 10; ++i)
        paste(QStringLiteral("https://container.example/c/%1").arg(i));
    const ItemPtr direct = engine.start(QStringLiteral("http://h/a"));
    EXPECT_EQ(direct->status(), DownloadStatus::downloading);
    engine.restart();
    EXPECT_EQ(names(), QStringList{QStringLiteral("a")});
}

TEST_F(LinkIntakeTest, IsSavedBeforeItReturns)
{
    engine.manager().addURLs({link(QStringLiteral("http://h/a"))}, std::nullopt);
    engine.restart(true);
    EXPECT_EQ(names(), QStringList{QStringLiteral("a")});
}
