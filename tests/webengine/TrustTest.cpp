#include "EngineTest.h"

namespace vormel {
namespace {

using sites::FileServer;
using testing::HasSubstr;
using testing::Not;

class TrustTest : public EngineTest
{
protected:
    [[nodiscard]] static std::unique_ptr<FileServer> serverWith(const sites::TlsIdentity& identity)
    {
        auto secure = std::make_unique<FileServer>(FileServer::Options{.tls = identity});
        secure->serve("/page", {.content = "<input type=password>", .contentType = "text/html"});
        return secure;
    }
    [[nodiscard]] static const sites::TestCertificates& certificates() { return world().certificates(); }
};

TEST_F(TrustTest, APageWithAGoodCertificateIsVerified)
{
    const auto secure = serverWith(certificates().valid({"good.example"}));
    EXPECT_EQ(load(secure->url("good.example", "/page")), End::loaded);
    EXPECT_EQ(page->connection(), Connection::verified);
    EXPECT_EQ(shownUrl(), "/page");
}

TEST_F(TrustTest, NoPageWithABadOneIsShownOrAskedFor)
{
    const sites::TestCertificates strangers;
    for (const auto& identity : {certificates().expired({"bad.example"}), certificates().wrongName(),
                                 certificates().selfSigned({"bad.example"}), strangers.valid({"bad.example"})}) {
        const auto secure = serverWith(identity);
        EXPECT_EQ(load(secure->url("bad.example", "/page")), End::failed);
        EXPECT_EQ(shownUrl(), "nothing");
        EXPECT_EQ(page->connection(), Connection::none);
        EXPECT_EQ(answer(QStringLiteral("document.title")), QVariant());
        EXPECT_TRUE(secure->requests().empty());
    }
}

TEST_F(TrustTest, APictureWithABadOneLeavesThePageVerified)
{
    const auto bad = serverWith(certificates().expired({"bad.example"}));
    const auto good = serverWith(certificates().valid({"good.example"}));
    good->serve("/framed", {.content = "<img src='" + bad->url("bad.example", "/page") + "'><iframe src='" +
                                       bad->url("bad.example", "/page") + "'></iframe>",
                            .contentType = "text/html"});
    EXPECT_EQ(load(good->url("good.example", "/framed")), End::loaded);
    EXPECT_EQ(page->connection(), Connection::verified);
    EXPECT_TRUE(bad->requests().empty());
}

TEST_F(TrustTest, SitesSeeAnOrdinaryBrowserInEachRequest)
{
    servePage("/page", "<script>fetch('/fetched')</script><iframe src=/frame></iframe>");
    servePage("/frame", "frame");
    servePage("/fetched", "fetched");
    EXPECT_EQ(open("/page"), End::loaded);
    const std::string agent = answer(QStringLiteral("navigator.userAgent"))->toString().toStdString();
    EXPECT_THAT(agent, HasSubstr("Chrome/"));
    EXPECT_THAT(agent, Not(HasSubstr("Qt")));
    ASSERT_TRUE(isAsked("/fetched"));
    EXPECT_EQ(server.requests().size(), 3U);
    for (const auto& request : server.requests()) {
        EXPECT_EQ(request.header("User-Agent"), agent) << request.target;
        EXPECT_TRUE(request.header("Accept-Language")) << request.target;
    }
}

} // namespace
} // namespace vormel
