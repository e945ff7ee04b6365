#include "ProgramOnWeb.h"
#include "WebWorld.h"
#include "sites/services/ClickNLoadCall.h"
#include "sites/services/LinkPage.h"

#include <QAbstractItemModel>
#include <QListView>

using namespace Qt::StringLiterals;

using namespace vormel;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using namespace vormel::fixtures;

namespace {

using sites::LinkPage;

const QString captchaSheet = u"captchaSheet"_s;

class CaptchaOnWeb : public ProgramOnWeb
{
protected:
    CaptchaOnWeb() { manager().settings().autoStartDownloads.set(false); }

    /// Adds a container that shows this once its challenge is solved.
    void addContainer(const std::string& body)
    {
        const std::string url = services.containers.add({.body = body, .hasCaptcha = true});
        manager().addURLs({Link::parse(QString::fromStdString(url)).value()}, std::nullopt);
    }
    void solve()
    {
        ASSERT_TRUE(waitInPage(u"!!document.querySelector('#challenge')"_s));
        static_cast<void>(inPage(u"document.querySelector('#challenge').click()"_s));
        ASSERT_TRUE(waitInPage(u"document.readyState == 'complete' && !document.querySelector('#challenge')"_s));
    }
    void solveAndExtract()
    {
        solve();
        press(u"extractLinks"_s);
    }
    /// The addresses in the queue, once the sheet is gone.
    [[nodiscard]] std::vector<std::string> added()
    {
        EXPECT_TRUE(waitUntilGone(captchaSheet));
        std::vector<std::string> urls;
        for (const ItemPtr& item : manager().items())
            urls.push_back(item->originalURL().absoluteString().toStdString());
        return urls;
    }
};

const std::string onFirstHost = "https://rapidgator.net/file/1/film1.rar";
const std::string onSecondHost = "https://turbobit.net/file/2/film2.rar";

} // namespace

TEST_F(CaptchaOnWeb, TheLinksComeFromThePagesOwnCall)
{
    addContainer(sites::clickNLoadCall(onFirstHost + "\r\n") +
                 sites::anchorTo(services.containers.addTextList(onSecondHost)));
    solveAndExtract();
    EXPECT_THAT(added(), ElementsAre(onFirstHost));
}

TEST_F(CaptchaOnWeb, TheLinksComeFromAField)
{
    addContainer(sites::urlsField(onFirstHost + "\n"));
    solveAndExtract();
    EXPECT_THAT(added(), ElementsAre(onFirstHost));
}

TEST_F(CaptchaOnWeb, TheLinksComeFromATextThatWantsThePagesCookies)
{
    addContainer(sites::anchorTo(services.containers.addTextList(onFirstHost)));
    solveAndExtract();
    EXPECT_THAT(added(), ElementsAre(onFirstHost));
}

TEST_F(CaptchaOnWeb, TheLinksComeFromPagesOfEveryKind)
{
    std::string body;
    std::vector<std::string> targets;
    int number = 0;
    for (const LinkPage kind : {LinkPage::redirect, LinkPage::newTab, LinkPage::newWindow, LinkPage::refresh,
                                LinkPage::script, LinkPage::moving, LinkPage::link}) {
        const std::string target = "https://rapidgator.net/file/" + std::to_string(++number) + "/film.rar";
        body += sites::anchorTo(services.containers.addLinkPage(kind, target));
        targets.push_back(target);
    }
    addContainer(body);
    solveAndExtract();
    EXPECT_THAT(added(), ElementsAreArray(targets));
    EXPECT_THAT(webWorld().switchboard.unknownPlaces(),
                testing::Not(testing::Contains(testing::HasSubstr("rapidgator.net"))))
        << "a host of files was asked for something";
}

TEST_F(CaptchaOnWeb, APageThatLeadsNowhereIsPassedOver)
{
    addContainer(sites::anchorTo(services.containers.addLinkPage(LinkPage::nothing)) +
                 sites::anchorTo(services.containers.addLinkPage(LinkPage::redirect, onFirstHost)));
    solveAndExtract();
    EXPECT_THAT(added(), ElementsAre(onFirstHost));
}

TEST_F(CaptchaOnWeb, TheSheetStaysOpenUntilTheCaptchaIsSolved)
{
    addContainer(sites::urlsField(onFirstHost + "\n"));
    ASSERT_TRUE(waitInPage(u"!!document.querySelector('#challenge')"_s));
    press(u"extractLinks"_s);
    ASSERT_NE(waitFor(u"captchaError"_s), nullptr);
    solveAndExtract();
    EXPECT_THAT(added(), ElementsAre(onFirstHost));
}

TEST_F(CaptchaOnWeb, ThePremiumHostOfTheUserIsPreferred)
{
    addTerabytezAccount();
    const Link own = services.newFile();
    addContainer(sites::urlsField(onFirstHost + "\n" + own.absoluteString().toStdString() + "\n"));
    solveAndExtract();
    EXPECT_THAT(added(), ElementsAre(own.absoluteString().toStdString()));
}

TEST_F(CaptchaOnWeb, TheUserChoosesAmongTheHosts)
{
    addContainer(sites::urlsField(onFirstHost + "\n" + onSecondHost + "\n"));
    solveAndExtract();
    auto* const hosts = waitFor<QListView>(u"captchaHosts"_s);
    ASSERT_NE(hosts, nullptr);
    EXPECT_EQ(hosts->model()->rowCount(), 2);
    press(u"addAllCaptchaHosts"_s);
    EXPECT_THAT(added(), ElementsAre(onFirstHost, onSecondHost));
}

TEST_F(CaptchaOnWeb, ACancelledSheetFailsTheContainerAndAddsNothing)
{
    addContainer(sites::urlsField(onFirstHost + "\n"));
    ASSERT_NE(waitFor(captchaSheet), nullptr);
    press(u"cancelCaptcha"_s);
    ASSERT_EQ(added().size(), 1U);
    EXPECT_EQ(manager().items().front()->status(), DownloadStatus::failure(u"CAPTCHA cancelled"_s));
}

TEST_F(CaptchaOnWeb, ASecondContainerWaitsBehindTheFirst)
{
    addContainer(sites::urlsField(onFirstHost + "\n"));
    ASSERT_NE(waitFor(captchaSheet), nullptr);
    addContainer(sites::urlsField(onSecondHost + "\n"));
    solveAndExtract();
    solveAndExtract();
    EXPECT_THAT(added(), ElementsAre(onFirstHost, onSecondHost));
}

TEST_F(CaptchaOnWeb, HundredsOfPagesAreReadWhileDownloadsGoOn)
{
    constexpr int count = 200;
    std::string body;
    std::vector<std::string> targets;
    for (int i = 0; i < count; ++i) {
        targets.push_back("https://rapidgator.net/file/" + std::to_string(i) + "/film.rar");
        body += sites::anchorTo(services.containers.addLinkPage(LinkPage::redirect, targets.back()));
    }
    manager().settings().maxDownloadSpeedKBps.set(100);
    const ItemPtr download = add(services.newDirectFile(40'000'000));
    manager().commands().startItems({download});
    addContainer(body);
    solve();
    const qint64 before = download->bytesReceived();
    press(u"extractLinks"_s);
    EXPECT_TRUE(waitUntil([&] { return !inSight<QWidget>(captchaSheet); }, std::chrono::seconds(60)));
    EXPECT_GT(download->bytesReceived(), before);
    EXPECT_EQ(download->status(), DownloadStatus::downloading);
    std::vector<std::string> urls = added();
    ASSERT_EQ(urls.size(), targets.size() + 1);
    urls.erase(urls.begin());
    EXPECT_EQ(urls, targets);
}
