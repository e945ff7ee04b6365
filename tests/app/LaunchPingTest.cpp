#include "app/LaunchPing.h"

#include "fixtures/EventLoop.h"
#include "fixtures/Sandbox.h"
#include "fixtures/ScriptedHttpClient.h"
#include "platform/storage/FileWriter.h"
#include "platform/storage/UserDefaults.h"

#include <QUrlQuery>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

const QString key = u"hasPingedFirstLaunch"_s;

class LaunchPingTest : public ::testing::Test
{
protected:
    LaunchPing ping() { return {client, defaults, facts}; }
    /// One start of the program, as far as the ping goes, to the end of the answer.
    void startAndAnswer(int status)
    {
        LaunchPing started = ping();
        started.start();
        client.last().head(status);
        turnEventLoop();
    }

    Sandbox sandbox;
    FileWriter writer;
    ScriptedHttpClient client;
    UserDefaults defaults{sandbox.path(u"preferences.json"_s), writer};
    LaunchPing::Facts facts{u"https://count.example/v1"_s, u"0.1.0"_s, u"Debian GNU/Linux 12 (bookworm)"_s};
};

TEST_F(LaunchPingTest, APlainGetCarriesFourItemsInTheirOrder)
{
    startAndAnswer(200);
    ASSERT_EQ(client.exchanges().size(), 1U);
    const HttpRequest& request = client.last().request;
    EXPECT_EQ(request.method, "GET");
    EXPECT_TRUE(request.headers.empty());
    EXPECT_TRUE(request.body.isEmpty());
    EXPECT_EQ(request.url.adjusted(QUrl::RemoveQuery), QUrl(u"https://count.example/v1"_s));
    const QList<std::pair<QString, QString>> items = QUrlQuery(request.url).queryItems(QUrl::FullyDecoded);
    const QList<std::pair<QString, QString>> expected{{u"action"_s, u"record_launch"_s},
                                                      {u"app"_s, u"Vormel"_s},
                                                      {u"version"_s, u"0.1.0"_s},
                                                      {u"os"_s, u"Debian GNU/Linux 12 (bookworm)"_s}};
    EXPECT_EQ(items, expected);
}

TEST_F(LaunchPingTest, NothingInTheNameOfTheSystemMakesAnotherItem)
{
    facts.system = u"A&B=C #1 100%25 + è"_s;
    startAndAnswer(200);
    EXPECT_EQ(QUrlQuery(client.last().request.url).queryItems(QUrl::FullyDecoded).size(), 4);
    EXPECT_TRUE(client.last().request.url.toEncoded().endsWith("&os=A%26B%3DC%20%231%20100%2525%20%2B%20%C3%A8"));
}

TEST_F(LaunchPingTest, AnAnswerMeansThatItIsNeverSentAgain)
{
    startAndAnswer(200);
    EXPECT_TRUE(defaults.boolForKey(key));
    LaunchPing next = ping();
    next.start();
    EXPECT_EQ(client.exchanges().size(), 1U);
}

TEST_F(LaunchPingTest, AServersFailureIsAnAnswerToo)
{
    startAndAnswer(500);
    EXPECT_TRUE(defaults.boolForKey(key));
}

TEST_F(LaunchPingTest, TheBodyIsNotRead)
{
    LaunchPing started = ping();
    started.start();
    EXPECT_FALSE(client.last().head(200)) << "the head must be the end of it";
}

TEST_F(LaunchPingTest, WithoutANetworkNothingIsStoredAndTheNextStartSendsIt)
{
    LaunchPing first = ping();
    first.start();
    client.last().fail(HttpError::Kind::cannotFindHost);
    turnEventLoop();
    EXPECT_FALSE(defaults.objectForKey(key));
    startAndAnswer(200);
    EXPECT_EQ(client.exchanges().size(), 2U);
    EXPECT_TRUE(defaults.boolForKey(key));
}

TEST_F(LaunchPingTest, NothingIsStoredBeforeTheAnswer)
{
    LaunchPing started = ping();
    started.start();
    turnEventLoop();
    EXPECT_FALSE(defaults.objectForKey(key));
}

TEST_F(LaunchPingTest, AnUnknownVersionIsSentAsAnEmptyValue)
{
    facts.version.reset();
    startAndAnswer(200);
    EXPECT_TRUE(client.last().request.url.toEncoded().contains("&version=&os="));
    EXPECT_TRUE(defaults.boolForKey(key));
}

TEST_F(LaunchPingTest, WithoutAnEndpointNothingIsSentOrStored)
{
    for (const QString& endpoint : {QString(), u"https://["_s, u"ht tp://x y"_s}) {
        facts.endpoint = endpoint;
        LaunchPing started = ping();
        started.start();
        turnEventLoop();
    }
    EXPECT_TRUE(client.exchanges().empty());
    EXPECT_FALSE(defaults.objectForKey(key));
}

TEST_F(LaunchPingTest, AnAnswerAfterTheEndOfTheProgramTouchesNothing)
{
    {
        LaunchPing gone = ping();
        gone.start();
    }
    client.last().head(200);
    turnEventLoop();
    EXPECT_FALSE(defaults.objectForKey(key));
}

} // namespace
