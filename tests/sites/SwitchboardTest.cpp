#include "sites/Switchboard.h"

#include "CurlClient.h"
#include "RawClient.h"
#include "TemporaryFolder.h"
#include "sites/FileServer.h"
#include "sites/TestCertificates.h"

#include <gmock/gmock.h>

#include <chrono>
#include <memory>

namespace vormel::sites {
namespace {

using namespace std::chrono_literals;

class SwitchboardTest : public testing::Test
{
protected:
    SwitchboardTest()
    {
        m_secure.serve("/f", {.content = m_film});
        m_plain.serve("/f", {.content = "plain"});
        m_board->lead({{"site.example:443", placeOf(m_secure)},
                       {"site.example:80", placeOf(m_plain)},
                       {"test:80", placeOf(m_plain)}}); // which is what a RawClient asks for
        m_client.trust(m_certificates.writeAuthority(m_folder.path()));
        // All that a client knows of any name.
        const std::string here = "127.0.0.1:" + std::to_string(m_board->port());
        m_client.connectTo({{":443", here}, {":80", here}});
    }

    [[nodiscard]] static std::string placeOf(const FileServer& server)
    {
        return "127.0.0.1:" + std::to_string(server.port());
    }

    TemporaryFolder m_folder;
    TestCertificates m_certificates;
    const PatternContent m_film{7, 3'000'000};
    FileServer m_secure{FileServer::Options{.tls = m_certificates.valid({"site.example"})}};
    FileServer m_plain;
    std::unique_ptr<Switchboard> m_board = std::make_unique<Switchboard>();
    CurlClient m_client;
};

TEST_F(SwitchboardTest, PutsClientsThroughByNameAndProtocol)
{
    const Fetched film = m_client.fetch("https://site.example/f");
    EXPECT_EQ(std::ssize(film.body), m_film.size());
    EXPECT_FALSE(m_film.firstMismatch(0, film.body));
    EXPECT_EQ(m_client.fetch("http://site.example/f").body, "plain");
    EXPECT_EQ(m_secure.connectionsAccepted(), 1);
    EXPECT_EQ(m_plain.connectionsAccepted(), 1);
    EXPECT_EQ(m_board->resolverRules(), "MAP * 127.0.0.1:" + std::to_string(m_board->port()));
}

TEST_F(SwitchboardTest, KeepsConnectionsAndSendsBodies)
{
    for (int time = 0; time < 3; ++time) {
        m_client.post(std::string(300'000, 'x'));
        EXPECT_EQ(m_client.fetch("https://site.example/f").connectionsMade, time == 0 ? 1 : 0);
    }
    EXPECT_EQ(m_secure.requests().back().body.size(), 300'000U);
}

TEST_F(SwitchboardTest, HangsUpOnWhoeverAsksForAnUnknownName)
{
    EXPECT_NE(m_client.fetch("https://other.example/f").code, CURLE_OK);
    EXPECT_NE(m_client.fetch("http://third.example/f").code, CURLE_OK);
    EXPECT_THAT(m_board->unknownPlaces(), testing::ElementsAre("other.example:443", "third.example:80"));
    EXPECT_EQ(m_secure.connectionsAccepted() + m_plain.connectionsAccepted(), 0);
}

TEST_F(SwitchboardTest, ForgetsServersThatGo)
{
    m_board->forget({{"site.example:443", placeOf(m_secure)}});
    EXPECT_NE(m_client.fetch("https://site.example/f").code, CURLE_OK);
    EXPECT_EQ(m_client.fetch("http://site.example/f").body, "plain");
}

TEST_F(SwitchboardTest, FollowsAServerThatComesAnew)
{
    FileServer other;
    other.serve("/f", {.content = "other"});
    EXPECT_EQ(m_client.fetch("http://site.example/f").body, "plain");
    m_board->lead({{"site.example:80", placeOf(other)}});
    CurlClient another;
    another.connectTo({{":80", "127.0.0.1:" + std::to_string(m_board->port())}});
    EXPECT_EQ(another.fetch("http://site.example/f").body, "other");
}

TEST_F(SwitchboardTest, PassesOnHowAConnectionEnds)
{
    m_plain.setAnswers("/f", {Answer::file().resetAfter(2), Answer::file().untilClose()});
    for (const RawClient::End end : {RawClient::End::reset, RawClient::End::fin}) {
        RawClient client(m_board->port());
        client.get("/f");
        EXPECT_EQ(client.receiveAll().end, end);
    }
}

TEST_F(SwitchboardTest, LetsGoOfTheServerWhenTheClientLeaves)
{
    m_plain.setAnswers("/f", {Answer::file().stallAfter(1)});
    RawClient client(m_board->port());
    client.get("/f");
    ASSERT_TRUE(m_plain.waitForStalled(1, 5s));
    client.hangUp();
    const auto end = std::chrono::steady_clock::now() + 5s;
    while (m_plain.connectionsOpen() > 0 && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    EXPECT_EQ(m_plain.connectionsOpen(), 0);
}

TEST_F(SwitchboardTest, StopsAtOnceWhateverItsClientsDo)
{
    m_plain.setAnswers("/f", {Answer::file().stallAfter(1)});
    RawClient silent(m_board->port());
    RawClient half(m_board->port());
    half.send("GET /f HT");
    RawClient waiting(m_board->port());
    waiting.get("/f");
    ASSERT_TRUE(m_plain.waitForStalled(1, 5s));
    const auto start = std::chrono::steady_clock::now();
    m_board.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 30s);
}

} // namespace
} // namespace vormel::sites
