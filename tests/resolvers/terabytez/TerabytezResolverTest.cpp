#include "resolvers/terabytez/TerabytezScene.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const QByteArray keptCookie = ".terabytez.example\tTRUE\t/\tTRUE\t0\txfss\tkept";

QString server(int number)
{
    return u"https://dl%1.any.example/file"_s.arg(number);
}

class TerabytezResolverTest : public TerabytezScene
{
protected:
    void keepsCookie() { secrets.kept[u"vormel_web_cookies"_s] = QString::fromUtf8(keptCookie); }
};

TEST_F(TerabytezResolverTest, IsOfTerabytez)
{
    EXPECT_EQ(resolver.supportedHost(), SupportedHost::terabytez);
}

TEST_F(TerabytezResolverTest, ThreeFilesAreWalkedToOneAfterAnotherAndAFourthThatCameLater)
{
    std::vector<WalkPtr> walks{start(), start(), start()};
    for (std::size_t number = 0; number < 4; ++number) {
        ASSERT_THAT(browser.pages, SizeIs(1));
        EXPECT_EQ(browser.pagesMade, static_cast<int>(number) + 1);
        if (number == 1)
            walks.push_back(start());
        EXPECT_FALSE(page().asks(server(static_cast<int>(number) + 1)));
        fixtures::turnEventLoop();
        EXPECT_EQ(walks.at(number)->url(), server(static_cast<int>(number) + 1).toStdString());
    }
    EXPECT_THAT(browser.pages, IsEmpty());
}

TEST_F(TerabytezResolverTest, AWalkThatFailsKeepsNobodyFromHis)
{
    const WalkPtr first = start();
    const WalkPtr second = start();
    page().arrivesAt(u"https://terabytez.example/login"_s);
    EXPECT_EQ(first->error, Kind::loginRequired);
    fixtures::turnEventLoop();
    EXPECT_FALSE(page().asks(server(1)));
    EXPECT_EQ(second->url(), server(1).toStdString());
}

TEST_F(TerabytezResolverTest, WhoIsStoppedAtWorkLetsTheNextOneGoOn)
{
    const WalkPtr first = start(u"https://terabytez.example/1"_s);
    const WalkPtr second = start(u"https://terabytez.example/2"_s);
    const WalkPtr third = start(u"https://terabytez.example/3"_s);
    first->stop.request_stop();
    EXPECT_TRUE(first->isOver);
    fixtures::turnEventLoop();
    ASSERT_THAT(browser.pages, SizeIs(1));
    EXPECT_EQ(page().loads.front(), fixtures::link(u"https://terabytez.example/2"_s));
    third->stop.request_stop();
    EXPECT_TRUE(third->isOver);
    EXPECT_FALSE(page().asks(server(2)));
    EXPECT_EQ(second->url(), server(2).toStdString());
    fixtures::turnEventLoop();
    EXPECT_EQ(browser.pagesMade, 2);
}

TEST_F(TerabytezResolverTest, WhoIsStoppedBeforehandGetsNoPage)
{
    const WalkPtr first = start();
    const WalkPtr second = start();
    second->stop.request_stop();
    EXPECT_FALSE(page().asks(server(1)));
    fixtures::turnEventLoop();
    EXPECT_TRUE(first->isOver && second->isOver);
    EXPECT_EQ(browser.pagesMade, 1);
}

TEST_F(TerabytezResolverTest, AnAccountIsCheckedBesideAWalk)
{
    const WalkPtr walk = start();
    const WalkPtr checked = check();
    EXPECT_THAT(browser.pages, SizeIs(2));
    EXPECT_FALSE(page().asks(server(1)));
    EXPECT_TRUE(walk->isOver);
    EXPECT_FALSE(checked->isOver);
    EXPECT_THAT(browser.pages, SizeIs(1));
}

TEST_F(TerabytezResolverTest, WithoutABrowserASignInIsWantedAndTheKeyringIsNotAsked)
{
    browser.missing = WebBrowser::Absence::notInstalled;
    secrets.lock();
    EXPECT_EQ(start()->error, Kind::loginRequired);
    EXPECT_EQ(check()->error, Kind::loginRequired);
}

TEST_F(TerabytezResolverTest, ABrowserThatTurnsOutNotToStartWantsASignInToo)
{
    secrets.lock();
    const WalkPtr walk = start();
    const WalkPtr checked = check();
    browser.missing = WebBrowser::Absence::doesNotStart;
    secrets.unlock();
    EXPECT_EQ(walk->error, Kind::loginRequired);
    EXPECT_EQ(checked->error, Kind::loginRequired);
}

TEST_F(TerabytezResolverTest, TheSignInOfAnEarlierRunIsThereBeforeTheFirstPage)
{
    keepsCookie();
    secrets.lock();
    QByteArrayList jarAtFirst;
    browser.onPage = [&](Page&) { jarAtFirst = browser.jar; };
    const WalkPtr walk = start();
    const WalkPtr checked = check();
    EXPECT_EQ(browser.pagesMade, 0);
    secrets.unlock();
    EXPECT_EQ(browser.pagesMade, 2);
    EXPECT_THAT(jarAtFirst, ElementsAre(keptCookie));
}

TEST_F(TerabytezResolverTest, WhoIsStoppedWhileTheKeyringIsLockedGetsNoPage)
{
    secrets.lock();
    const WalkPtr walk = start();
    const WalkPtr checked = check();
    const WalkPtr next = start();
    walk->stop.request_stop();
    checked->stop.request_stop();
    secrets.unlock();
    EXPECT_TRUE(walk->isOver && checked->isOver);
    EXPECT_FALSE(walk->error || checked->error);
    fixtures::turnEventLoop();
    EXPECT_EQ(browser.pagesMade, 1) << "the next one's";
    EXPECT_FALSE(next->isOver);
}

TEST_F(TerabytezResolverTest, ATransferOfAnEarlierAddressHasTheSignInToo)
{
    keepsCookie();
    const std::stop_source stop;
    bool isReady = false;
    const auto prepare = [](const TerabytezResolver* from, std::stop_token token, bool* mark) -> QCoro::Task<> {
        co_await from->prepareTransfer(token);
        *mark = true;
    };
    spawn(prepare(&resolver, stop.get_token(), &isReady));
    EXPECT_TRUE(isReady);
    EXPECT_THAT(transfers.cookies(), ElementsAre(keptCookie));
    EXPECT_EQ(browser.pagesMade, 0);

    transfers.clear();
    isReady = false;
    spawn(prepare(&resolver, stop.get_token(), &isReady));
    EXPECT_TRUE(isReady);
    EXPECT_THAT(transfers.cookies(), ElementsAre(keptCookie)) << "what the browser has by now";
}

TEST_F(TerabytezResolverTest, TheDefaultLookUpOfANameTakesTheWalks)
{
    std::optional<QString> name;
    const auto fetch = [](const TerabytezResolver* from, std::optional<QString>* told) -> QCoro::Task<> {
        const Link file = fixtures::link(u"https://terabytez.example/f1"_s);
        *told = co_await from->fetchFilename(file, fixtures::account(SupportedHost::terabytez), std::stop_token());
    };
    spawn(fetch(&resolver, &name));
    EXPECT_FALSE(page().asks(u"https://dl1.any.example/film.rar"_s));
    EXPECT_EQ(name, u"film.rar");
}

} // namespace
} // namespace vormel
