#include "sites/TestCertificates.h"

#include "CurlClient.h"
#include "RawClient.h"
#include "TemporaryFolder.h"
#include "sites/FileServer.h"
#include "sites/TextFile.h"
#include "sites/TlsContext.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>

namespace vormel::sites {
namespace {

using namespace std::chrono_literals;

class TestCertificatesTest : public testing::Test
{
protected:
    TestCertificatesTest() { m_client.trust(m_certificates.writeAuthority(m_folder.path())); }

    [[nodiscard]] Fetched fetchFrom(const TlsIdentity& identity, const std::string& host = "127.0.0.1")
    {
        FileServer server(FileServer::Options{.tls = identity});
        server.serve("/f", {.content = m_pattern});
        m_client.resolveLocally(host, server.port());
        return m_client.fetch(server.url(host, "/f"));
    }

    TemporaryFolder m_folder;
    TestCertificates m_certificates;
    PatternContent m_pattern{21, 2'000'000};
    CurlClient m_client;
};

TEST_F(TestCertificatesTest, ValidOnesAreAccepted)
{
    const auto byAddress = fetchFrom(m_certificates.valid());
    EXPECT_EQ(byAddress.code, CURLE_OK);
    EXPECT_EQ(std::ssize(byAddress.body), m_pattern.size());
    EXPECT_FALSE(m_pattern.firstMismatch(0, byAddress.body));
    EXPECT_EQ(fetchFrom(m_certificates.valid({"files.example"}), "files.example").code, CURLE_OK);
}

TEST_F(TestCertificatesTest, BadOnesAreRefused)
{
    EXPECT_EQ(fetchFrom(m_certificates.expired()).code, CURLE_PEER_FAILED_VERIFICATION);
    EXPECT_EQ(fetchFrom(m_certificates.wrongName()).code, CURLE_PEER_FAILED_VERIFICATION);
    EXPECT_EQ(fetchFrom(m_certificates.selfSigned()).code, CURLE_PEER_FAILED_VERIFICATION);
    EXPECT_EQ(fetchFrom(TestCertificates().valid()).code, CURLE_PEER_FAILED_VERIFICATION);
}

TEST_F(TestCertificatesTest, EachIsRefusedForItsOwnFault)
{
    EXPECT_EQ(fetchFrom(m_certificates.wrongName(), "elsewhere.example").code, CURLE_OK);
    const auto identity = m_certificates.selfSigned();
    writeIdentity(identity, m_folder.path());
    m_client.trust(m_folder.path() / "certificate.pem");
    EXPECT_EQ(fetchFrom(identity).code, CURLE_OK);
    EXPECT_EQ(readTextFile(m_folder.path() / "key.pem"), identity.key);
}

TEST_F(TestCertificatesTest, ANameIsNeeded)
{
    EXPECT_THROW(static_cast<void>(m_certificates.valid({})), std::invalid_argument);
}

TEST_F(TestCertificatesTest, AServerNeedsAFittingKey)
{
    auto identity = m_certificates.valid();
    identity.key = m_certificates.valid().key;
    EXPECT_THROW(FileServer(FileServer::Options{.tls = identity}), std::runtime_error);
}

TEST_F(TestCertificatesTest, FaultsWorkBehindTlsToo)
{
    FileServer server(FileServer::Options{.tls = m_certificates.valid()});
    server.serve("/f", {.content = m_pattern,
                        .answers = {Answer::file().closeAfter(1'000'000), Answer::file().resetAfter(1'000'000),
                                    Answer::file().untilClose(), Answer::file()}});
    const auto closed = m_client.fetch(server.url("/f"));
    EXPECT_EQ(closed.code, CURLE_PARTIAL_FILE);
    EXPECT_EQ(closed.body.size(), 1'000'000U);
    const auto reset = m_client.fetch(server.url("/f"));
    EXPECT_EQ(reset.code, CURLE_RECV_ERROR);
    EXPECT_EQ(reset.body.size(), 1'000'000U);
    const auto untilClose = m_client.fetch(server.url("/f"));
    EXPECT_EQ(untilClose.code, CURLE_OK);
    EXPECT_EQ(std::ssize(untilClose.body), m_pattern.size());
    EXPECT_EQ(m_client.fetch(server.url("/f")).code, CURLE_OK);
    EXPECT_EQ(m_client.fetch(server.url("/f")).connectionsMade, 0) << "kept alive";
}

TEST_F(TestCertificatesTest, AnEndBehindTlsIsAnnounced)
{
    FileServer server(FileServer::Options{.tls = m_certificates.valid()});
    server.serve("/f", {.content = "the file", .answers = {Answer::file().untilClose()}});
    const RawClient client(server.port());
    const std::unique_ptr<SSL_CTX, SslDeleter> context(SSL_CTX_new(TLS_client_method()));
    const SslSession session(SSL_new(context.get()));
    SSL_set_fd(session.get(), client.socket());
    ASSERT_EQ(SSL_connect(session.get()), 1);
    const std::string request = "GET /f HTTP/1.1\r\n\r\n";
    ASSERT_GT(SSL_write(session.get(), request.data(), static_cast<int>(request.size())), 0);
    std::string received(10'000, '\0');
    int result = 1;
    while (result > 0)
        result = SSL_read(session.get(), received.data(), static_cast<int>(received.size()));
    EXPECT_EQ(SSL_get_error(session.get(), result), SSL_ERROR_ZERO_RETURN);
}

TEST_F(TestCertificatesTest, AStallBehindTlsStopsAtOnce)
{
    auto server = std::make_unique<FileServer>(FileServer::Options{.tls = m_certificates.valid()});
    server->serve("/f", {.content = m_pattern, .answers = {Answer::file().stallAfter(10)}});
    Fetched fetched;
    std::thread fetching([&] { fetched = m_client.fetch(server->url("/f")); });
    EXPECT_TRUE(server->waitForStalled(1, 5s));
    const auto start = std::chrono::steady_clock::now();
    server.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 30s);
    fetching.join();
    EXPECT_NE(fetched.code, CURLE_OK);
    EXPECT_EQ(fetched.body.size(), 10U);
}

} // namespace
} // namespace vormel::sites
