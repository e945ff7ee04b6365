#include "ProgramOnWeb.h"
#include "WebWorld.h"
#include "sites/services/ClickNLoadCall.h"
#include "sites/services/LinkPage.h"

#include <QAbstractItemModel>
#include <QListView>

using namespace Qt::StringLiterals;

using namespace vormel;
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
    [[nodiscard]] QStringList added()
    {
        EXPECT_TRUE(waitUntilGone(captchaSheet));
        QStringList urls;
        for (const ItemPtr& item : manager().items())
            urls << item->originalURL().absoluteString();
        return urls;
    }
};

const std::string onFirstHost = "https://rapidgator.net/file/1/film1.rar";
const std::string onSecondHost = "https://turbobit.net/file/2/film2.rar";

QString text(const std::string& url)
{
    return QString::fromStdString(url);
}

} // namespace

TEST_F(CaptchaOnWeb, TheLinksComeFromThePagesOwnCall)
{
    addContainer(sites::clickNLoadCall(onFirstHost + "\r\n") +
                 sites::anchorTo(services.containers.addTextList(onSecondHost)));
    solveAndExtract();
    EXPECT_EQ(added(), QStringList{text(onFirstHost)});
}

TEST_F(CaptchaOnWeb, TheLinksComeFromAField)
{
    addContainer(sites::urlsField(onFirstHost + "\n"));
    solveAndExtract();
    EXPECT_EQ(added(), QStringList{text(onFirstHost)});
}

TEST_F(CaptchaOnWeb, TheLinksComeFromATextThatWantsThePagesCookies)
{
    addContainer(sites::anchorTo(services.containers.addTextList(onFirstHost)));
    solveAndExtract();
    EXPECT_EQ(added(), QStringList{text(onFirstHost)});
}

TEST_F(CaptchaOnWeb, TheLinksComeFromPagesOfEveryKind)
{
    std::string body;
    QStringList targets;
    int number = 0;
    for (const LinkPage kind : {LinkPage::redirect, LinkPage::newTab, LinkPage::newWindow, LinkPage::refresh,
                                LinkPage::script, LinkPage::moving, LinkPage::link}) {
        const std::string target = "https://rapidgator.net/file/" + std::to_string(++number) + "/film.rar";
        body += sites::anchorTo(services.containers.addLinkPage(kind, target));
        targets << text(target);
    }
    addContainer(body);
    solveAndExtract();
    EXPECT_EQ(added(), targets);
    EXPECT_TRUE(webWorld().switchboard.unknownPlaces().empty()) << "a host of files was asked for something";
}

TEST_F(CaptchaOnWeb, APageThatLeadsNowhereIsPassedOver)
{
    addContainer(sites::anchorTo(services.containers.addLinkPage(LinkPage::nothing)) +
                 sites::anchorTo(services.containers.addLinkPage(LinkPage::redirect, onFirstHost)));
    solveAndExtract();
    EXPECT_EQ(added(), QStringList{text(onFirstHost)});
}

TEST_F(CaptchaOnWeb, TheSheetStaysOpenUntilTheCaptchaIsSolved)
{
    addContainer(sites::urlsField(onFirstHost + "\n"));
    ASSERT_TRUE(waitInPage(u"!!document.querySelector('#challenge')"_s));
    press(u"extractLinks"_s);
    ASSERT_NE(waitFor(u"captchaError"_s), nullptr);
    solveAndExtract();
    EXPECT_EQ(added(), QStringList{text(onFirstHost)});
}

TEST_F(CaptchaOnWeb, ThePremiumHostOfTheUserIsPreferred)
{
    addTerabytezAccount();
    const Link own = services.newFile();
    addContainer(sites::urlsField(onFirstHost + "\n" + own.absoluteString().toStdString() + "\n"));
    solveAndExtract();
    EXPECT_EQ(added(), QStringList{own.absoluteString()});
}

TEST_F(CaptchaOnWeb, TheUserChoosesAmongTheHosts)
{
    addContainer(sites::urlsField(onFirstHost + "\n" + onSecondHost + "\n"));
    solveAndExtract();
    auto* const hosts = waitFor<QListView>(u"captchaHosts"_s);
    ASSERT_NE(hosts, nullptr);
    EXPECT_EQ(hosts->model()->rowCount(), 2);
    press(u"addAllCaptchaHosts"_s);
    EXPECT_EQ(added(), (QStringList{text(onFirstHost), text(onSecondHost)}));
}

TEST_F(CaptchaOnWeb, ACancelledSheetFailsTheContainerAndAddsNothing)
{
    addContainer(sites::urlsField(onFirstHost + "\n"));
    ASSERT_NE(waitFor(captchaSheet), nullptr);
    press(u"cancelCaptcha"_s);
    ASSERT_EQ(added().size(), 1);
    EXPECT_EQ(manager().items().front()->status(), DownloadStatus::failure(u"CAPTCHA cancelled"_s));
}

TEST_F(CaptchaOnWeb, ASecondContainerWaitsBehindTheFirst)
{
    addContainer(sites::urlsField(onFirstHost + "\n"));
    ASSERT_NE(waitFor(captchaSheet), nullptr);
    addContainer(sites::urlsField(onSecondHost + "\n"));
    solveAndExtract();
    solveAndExtract();
    EXPECT_EQ(added(), (QStringList{text(onFirstHost), text(onSecondHost)}));
}
