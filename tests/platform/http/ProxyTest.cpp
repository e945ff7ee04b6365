#include "fixtures/Sandbox.h"
#include "platform/http/LoopbackTest.h"
#include "platform/http/TunnelProxy.h"
#include "sites/TestCertificates.h"

#include <cstdlib>

namespace vormel {
namespace {

/// A client that reaches an https server only through a proxy, as its environment says.
class ProxyTest : public LoopbackTest
{
protected:
    ProxyTest()
    {
        const std::string address = "http://127.0.0.1:" + std::to_string(proxy.port());
        ::setenv("https_proxy", address.c_str(), 1);
        CurlHttpClient::Options options;
        options.extraCaFile =
            QString::fromStdString(certificates.writeAuthority(sandbox.root().toStdString()).string());
        proxied = std::make_unique<CurlHttpClient>(clock, options);
    }
    ~ProxyTest() override
    {
        proxied.reset();
        ::unsetenv("https_proxy");
    }

    Recorder::Heard get(const std::string& path, const std::string& range = {})
    {
        Recorder recorder;
        HttpRequest request = requestFor(secure.url(path));
        if (!range.empty())
            request.headers = {{"Range", QByteArray::fromStdString(range)}};
        return run(*proxied, std::move(request), recorder);
    }

    fixtures::Sandbox sandbox;
    sites::TestCertificates certificates;
    sites::FileServer secure{sites::FileServer::Options{.tls = certificates.valid()}};
    TunnelProxy proxy;
    std::unique_ptr<CurlHttpClient> proxied;
};

TEST_F(ProxyTest, WhatItSaysOfTheTunnelIsNoAnswerOfTheServer)
{
    secure.serve("/f", {.content = "0123456789"});
    const Recorder::Heard whole = get("/f");
    ASSERT_TRUE(whole.head);
    EXPECT_EQ(whole.head->header("X-Proxy"), std::nullopt);
    EXPECT_EQ(whole.head->header("Content-Length"), "10");
    EXPECT_EQ(whole.body, "0123456789");
    const Recorder::Heard rest = get("/f", "bytes=4-");
    ASSERT_TRUE(rest.head);
    EXPECT_EQ(rest.head->statusCode, 206);
    EXPECT_EQ(rest.body, "456789");
}

TEST_F(ProxyTest, TheServersRefusalIsHeard)
{
    const Recorder::Heard heard = get("/missing");
    ASSERT_TRUE(heard.head);
    EXPECT_EQ(heard.head->statusCode, 404);
}

} // namespace
} // namespace vormel
