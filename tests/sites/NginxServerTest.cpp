#include "sites/NginxServer.h"

#include "CurlClient.h"
#include "TemporaryFolder.h"
#include "sites/PatternContent.h"
#include "sites/TestCertificates.h"
#include "sites/TextFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace vormel::sites {
namespace {

class NginxServerTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!NginxServer::isAvailable()) {
            if (std::getenv("VORMEL_REQUIRE_TOOLS"))
                FAIL() << "nginx is missing";
            GTEST_SKIP() << "nginx is not installed";
        }
        std::string bytes(static_cast<std::size_t>(m_pattern.size()), '\0');
        m_pattern.fill(0, bytes);
        std::filesystem::create_directory(m_root);
        writeTextFile(m_root / "file.bin", bytes);
    }

    [[nodiscard]] NginxServer::Options options() const
    {
        return {.folder = m_folder.path() / "server", .documentRoot = m_root};
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_root = m_folder.path() / "the root";
    PatternContent m_pattern{31, 1'000'000};
    CurlClient m_client;
};

TEST_F(NginxServerTest, ServesFilesAndRanges)
{
    const NginxServer server(options());
    const auto whole = m_client.fetch(server.url("/file.bin"));
    EXPECT_EQ(whole.status, 200);
    EXPECT_EQ(std::ssize(whole.body), m_pattern.size());
    EXPECT_FALSE(m_pattern.firstMismatch(0, whole.body));
    m_client.setRange("1000-1999");
    const auto part = m_client.fetch(server.url("/file.bin"));
    EXPECT_EQ(part.status, 206);
    EXPECT_EQ(part.body.size(), 1000U);
    EXPECT_FALSE(m_pattern.firstMismatch(1000, part.body));
}

TEST_F(NginxServerTest, ServesWithTls)
{
    const TestCertificates certificates;
    auto secure = options();
    secure.tls = certificates.valid();
    const NginxServer server(secure);
    EXPECT_EQ(m_client.fetch(server.url("/file.bin")).code, CURLE_PEER_FAILED_VERIFICATION);
    m_client.trust(certificates.writeAuthority(m_folder.path()));
    EXPECT_EQ(m_client.fetch(server.url("/file.bin")).status, 200);
}

TEST_F(NginxServerTest, TwoRunSideBySide)
{
    const NginxServer first(options());
    auto others = options();
    others.folder = m_folder.path() / "second";
    const NginxServer second(others);
    EXPECT_NE(first.port(), second.port());
    EXPECT_EQ(m_client.fetch(first.url("/file.bin")).status, 200);
    EXPECT_EQ(m_client.fetch(second.url("/file.bin")).status, 200);
}

TEST_F(NginxServerTest, IsGoneAfterItsDestruction)
{
    pid_t process = -1;
    std::string url;
    {
        const NginxServer server(options());
        process = server.processId();
        url = server.url("/file.bin");
        EXPECT_EQ(kill(process, 0), 0);
    }
    EXPECT_EQ(kill(process, 0), -1);
    EXPECT_EQ(errno, ESRCH);
    EXPECT_EQ(m_client.fetch(url).code, CURLE_COULDNT_CONNECT);
}

TEST_F(NginxServerTest, TellsWhyItDoesNotStart)
{
    auto broken = options();
    broken.tls = TlsIdentity{.certificate = "no", .key = "no"};
    try {
        const NginxServer server(broken);
        FAIL() << "it started with a broken certificate";
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find("cannot load certificate"), std::string::npos) << error.what();
    }
}

TEST_F(NginxServerTest, RefusesPathsItCannotName)
{
    auto odd = options();
    odd.documentRoot = "/tmp/$HOME";
    EXPECT_THROW(NginxServer{odd}, std::invalid_argument);
}

TEST(NginxAvailabilityTest, NeedsAnExecutable)
{
    EXPECT_FALSE(NginxServer::isAvailable("/nonexistent/nginx"));
}

} // namespace
} // namespace vormel::sites
