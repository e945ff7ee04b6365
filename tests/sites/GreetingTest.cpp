#include "sites/Greeting.h"

#include <gtest/gtest.h>
#include <openssl/ssl.h>

#include <algorithm>
#include <array>
#include <memory>

namespace vormel::sites {
namespace {

// What a client of OpenSSL says first; without a name if that is empty.
std::string clientHello(std::string name)
{
    const std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context(SSL_CTX_new(TLS_client_method()), &SSL_CTX_free);
    const std::unique_ptr<SSL, decltype(&SSL_free)> session(SSL_new(context.get()), &SSL_free);
    BIO* const written = BIO_new(BIO_s_mem());
    SSL_set_bio(session.get(), BIO_new(BIO_s_mem()), written); // the session owns both
    if (!name.empty())
        SSL_ctrl(session.get(), SSL_CTRL_SET_TLSEXT_HOSTNAME, TLSEXT_NAMETYPE_host_name, name.data());
    SSL_connect(session.get());
    std::array<char, 4096> bytes{};
    const int count = BIO_read(written, bytes.data(), bytes.size());
    return {bytes.data(), static_cast<std::size_t>(std::max(count, 0))};
}

TEST(GreetingTest, NamesTheServerOfATlsClient)
{
    const Greeting greeting = Greeting::read(clientHello("site.example"));
    EXPECT_TRUE(greeting.isWhole);
    EXPECT_EQ(greeting.place, "site.example:443");
}

TEST(GreetingTest, WaitsForAllOfATlsGreeting)
{
    const std::string hello = clientHello("site.example");
    ASSERT_GT(hello.size(), 100U);
    for (std::size_t size = 0; size < hello.size(); ++size)
        EXPECT_FALSE(Greeting::read(hello.substr(0, size)).isWhole) << size;
}

TEST(GreetingTest, FindsNoNameWhereNoneIs)
{
    const Greeting greeting = Greeting::read(clientHello(""));
    EXPECT_TRUE(greeting.isWhole);
    EXPECT_EQ(greeting.place, std::nullopt);
}

TEST(GreetingTest, ReadsNothingBehindTheEndOfABrokenOne)
{
    std::string hello = clientHello("site.example");
    for (std::size_t at = 5; at < hello.size(); ++at) {
        std::string broken = hello;
        broken[at] = '\xff';
        EXPECT_TRUE(Greeting::read(broken).isWhole) << at;
    }
    EXPECT_TRUE(Greeting::read(std::string("\x16\x03\x01\x00\x00", 5)).isWhole);
}

TEST(GreetingTest, NamesTheServerOfAnHttpClient)
{
    EXPECT_FALSE(Greeting::read("GET / HTTP/1.1\r\nHost: site.example\r\n").isWhole);
    EXPECT_EQ(Greeting::read("GET / HTTP/1.1\r\nhOst: Site.example\r\n\r\n").place, "site.example:80");
    EXPECT_EQ(Greeting::read("GET / HTTP/1.1\r\nA: b\r\nHost:site.example:81\r\n\r\n").place, "site.example:81");
    const Greeting nameless = Greeting::read("GET / HTTP/1.0\r\n\r\n");
    EXPECT_TRUE(nameless.isWhole);
    EXPECT_EQ(nameless.place, std::nullopt);
}

TEST(GreetingTest, GivesUpOnWhatNeverEnds)
{
    EXPECT_FALSE(Greeting::read(std::string(1000, 'x')).isWhole);
    EXPECT_TRUE(Greeting::read(std::string(100'000, 'x')).isWhole);
}

} // namespace
} // namespace vormel::sites
