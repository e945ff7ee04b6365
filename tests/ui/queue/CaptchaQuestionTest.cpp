#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "ui/FakeDesktop.h"
#include "ui/Part.h"
#include "ui/queue/DownloadQueueView.h"
#include "ui/sheets/captcha/CaptchaSheetView.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::link;
using fixtures::turnEventLoop;
using fixtures::waitUntil;

/// A container wants its CAPTCHA solved, and the page of the queue asks for it.
class CaptchaQuestionTest : public ::testing::Test
{
protected:
    CaptchaQuestionTest()
    {
        desktop.web.onPage = [this](fixtures::ScriptedPage& opened) {
            opened.onScript = [this](const QString&) {
                const QJsonObject told{{u"cnlUrls"_s, links}};
                return QVariant(QString::fromUtf8(QJsonDocument(told).toJson()));
            };
        };
        page.show();
    }
    void openContainer(const QString& url = u"https://container.example/c/1"_s)
    {
        engine.manager().addURLs({link(url)}, std::nullopt);
        turnEventLoop();
        const std::variant<std::vector<Link>, ContainerError> wall = ContainerError::captchaRequired();
        log->containers.back().answer->deliver(wall);
        turnEventLoop();
    }
    CaptchaSheetView* sheet()
    {
        for (auto* candidate : page.findChildren<CaptchaSheetView*>()) {
            if (candidate->isVisible())
                return candidate;
        }
        return nullptr;
    }
    void click(const char* name) { QTest::mouseClick(&fixtures::partOf<QPushButton>(*sheet(), name), Qt::LeftButton); }
    [[nodiscard]] bool isSolved()
    {
        return waitUntil([this] { return !engine.manager().questions().pendingCaptcha(); });
    }
    QStringList queue()
    {
        QStringList all;
        for (const ItemPtr& item : engine.manager().items())
            all << item->originalURL().absoluteString();
        return all;
    }

    std::shared_ptr<fixtures::ServiceLog> log = std::make_shared<fixtures::ServiceLog>();
    fixtures::EngineOnScript engine{fixtures::fakeServices(log)};
    fixtures::FakeDesktop desktop{engine};
    QString links;
    DownloadQueueView page{desktop.ports()};
};

TEST_F(CaptchaQuestionTest, OpensTheContainersPage)
{
    openContainer();
    ASSERT_NE(sheet(), nullptr);
    EXPECT_EQ(sheet()->windowModality(), Qt::WindowModal);
    ASSERT_EQ(desktop.web.pages.size(), 1U);
    EXPECT_EQ(desktop.web.pages.front()->loads, std::vector{link(u"https://container.example/c/1"_s)});
}

TEST_F(CaptchaQuestionTest, PutsTheLinksInThePlaceOfTheContainer)
{
    openContainer();
    links = u"https://a.example/1 https://a.example/2"_s;
    click("extractLinks");
    ASSERT_TRUE(isSolved());
    EXPECT_EQ(queue(), (QStringList{u"https://a.example/1"_s, u"https://a.example/2"_s}));
    EXPECT_EQ(sheet(), nullptr);
    turnEventLoop();
    EXPECT_TRUE(desktop.web.pages.empty());
}

TEST_F(CaptchaQuestionTest, OnlyAccountsThatAreUsedSpareTheChoice)
{
    HostAccount unused = fixtures::account(SupportedHost::filestore);
    unused.isEnabled = false;
    engine.manager().accounts().set({unused, fixtures::account(SupportedHost::terabytez)});
    openContainer();
    links = u"https://filestore.example/1 https://terabytez.example/2"_s;
    click("extractLinks");
    ASSERT_TRUE(isSolved());
    EXPECT_EQ(queue(), QStringList{u"https://terabytez.example/2"_s});
}

TEST_F(CaptchaQuestionTest, CancellingFailsTheContainer)
{
    openContainer();
    click("cancelCaptcha");
    ASSERT_EQ(engine.manager().items().size(), 1U);
    EXPECT_EQ(engine.manager().items().front()->status(), DownloadStatus::failure(u"CAPTCHA cancelled"_s));
    EXPECT_EQ(engine.manager().questions().pendingCaptcha(), std::nullopt);
    EXPECT_EQ(sheet(), nullptr);
}

TEST_F(CaptchaQuestionTest, ClosingTheSheetCancelsToo)
{
    openContainer();
    sheet()->close();
    EXPECT_EQ(engine.manager().questions().pendingCaptcha(), std::nullopt);
}

TEST_F(CaptchaQuestionTest, TheSheetGoesWithItsContainer)
{
    openContainer();
    engine.manager().commands().removeItems({engine.manager().items().front()->id()});
    turnEventLoop();
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_TRUE(queue().isEmpty());
    EXPECT_TRUE(desktop.web.pages.empty());
}

TEST_F(CaptchaQuestionTest, ASecondContainerWaitsForItsTurn)
{
    openContainer();
    const CaptchaSheetView* const first = sheet();
    openContainer(u"https://container.example/c/2"_s);
    EXPECT_EQ(sheet(), first);
    EXPECT_EQ(desktop.web.pagesMade, 1);
    links = u"https://a.example/1"_s;
    click("extractLinks");
    ASSERT_TRUE(waitUntil([this] { return desktop.web.pagesMade == 2; }));
    ASSERT_NE(sheet(), nullptr);
    EXPECT_EQ(desktop.web.pages.back()->loads, std::vector{link(u"https://container.example/c/2"_s)});
    links = u"https://a.example/2"_s;
    click("extractLinks");
    ASSERT_TRUE(isSolved());
    EXPECT_EQ(queue(), (QStringList{u"https://a.example/1"_s, u"https://a.example/2"_s}));
}

TEST_F(CaptchaQuestionTest, WaitsUntilThePageIsShowing)
{
    page.hide();
    openContainer();
    EXPECT_EQ(sheet(), nullptr);
    page.show();
    EXPECT_TRUE(waitUntil([this] { return sheet() != nullptr; }));
}

} // namespace
} // namespace vormel
