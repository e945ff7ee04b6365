#include "sites/services/StrangePages.h"

#include "CurlClient.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>

namespace vormel::sites {
namespace {

using Kind = StrangePages::Kind;

class StrangePagesTest : public testing::Test
{
protected:
    StrangePagesTest()
    {
        m_client.trust(m_certificates.writeAuthority(m_folder.path()));
        m_client.connectTo(m_pages.connectTo());
    }

    TemporaryFolder m_folder;
    TestCertificates m_certificates;
    StrangePages m_pages{m_certificates};
    CurlClient m_client;
};

TEST_F(StrangePagesTest, AreServedOverBothProtocols)
{
    for (const bool isPlain : {false, true}) {
        const std::string address = m_pages.url(Kind::alerts, isPlain);
        EXPECT_TRUE(address.starts_with(isPlain ? "http://" : "https://"));
        EXPECT_THAT(m_client.fetch(address).body, testing::HasSubstr("alert('a')"));
    }
    EXPECT_EQ(m_pages.requests(Kind::alerts), 2U);
    EXPECT_EQ(m_pages.requests(Kind::prints), 0U);
}

TEST_F(StrangePagesTest, RedirectWhereNobodyShouldGo)
{
    EXPECT_EQ(m_client.fetch(m_pages.url(Kind::redirectToFile)).header("Location"), "file:///etc/passwd");
    m_client.followRedirects(10);
    EXPECT_EQ(m_client.fetch(m_pages.url(Kind::redirectsForEver)).code, CURLE_TOO_MANY_REDIRECTS);
}

TEST_F(StrangePagesTest, AskForAName)
{
    const Fetched asked = m_client.fetch(m_pages.url(Kind::loginQuestion));
    EXPECT_EQ(asked.status, 401);
    EXPECT_EQ(asked.header("WWW-Authenticate"), "Basic realm=\"strange\"");
}

TEST_F(StrangePagesTest, HaveCertificatesThatNobodyShouldTrust)
{
    for (const Kind kind : {Kind::expiredCertificate, Kind::wrongCertificate, Kind::unknownCertificate}) {
        const Fetched fetched = m_client.fetch(m_pages.url(kind));
        EXPECT_EQ(fetched.code, CURLE_PEER_FAILED_VERIFICATION) << m_pages.url(kind);
        EXPECT_EQ(m_pages.requests(kind), 0U);
    }
}

TEST_F(StrangePagesTest, CountWhatTheirScriptsFetch)
{
    EXPECT_THAT(m_client.fetch(m_pages.url(Kind::serviceWorker)).body, testing::HasSubstr("/worker.js"));
    EXPECT_EQ(m_client.fetch("https://strange.example/worker.js").header("Content-Type"), "text/javascript");
    EXPECT_EQ(m_pages.pings(), 0U);
    EXPECT_EQ(m_client.fetch("https://strange.example/ping").body, "pong");
    EXPECT_EQ(m_pages.pings(), 1U);
    EXPECT_EQ(m_client.fetch("https://strange.example/file.zip").header("Content-Type"), "application/zip");
    EXPECT_EQ(m_pages.downloads(), 1U);
}

} // namespace
} // namespace vormel::sites
