#include "fixtures/Sandbox.h"
#include "platform/http/LoopbackTest.h"
#include "sites/TestCertificates.h"

#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using sites::Answer;
using sites::FileServer;

/// Servers with good and bad certificates, and a client that trusts their authority.
class CertificateTest : public LoopbackTest
{
protected:
    CertificateTest()
    {
        CurlHttpClient::Options options;
        options.extraCaFile =
            QString::fromStdString(m_certificates.writeAuthority(m_sandbox.root().toStdString()).string());
        trusting = std::make_unique<CurlHttpClient>(clock, options);
    }

    [[nodiscard]] std::unique_ptr<FileServer> serverWith(const sites::TlsIdentity& identity) const
    {
        auto secure = std::make_unique<FileServer>(FileServer::Options{.tls = identity});
        secure->serve("/f", {.content = "secret"});
        return secure;
    }
    [[nodiscard]] const sites::TestCertificates& certificates() const { return m_certificates; }

    Recorder::Heard fetch(const std::string& url, const std::set<QString>& trustedHosts = {})
    {
        Recorder recorder;
        recorder.trustedHosts = trustedHosts;
        return run(*trusting, requestFor(url), recorder);
    }

    std::unique_ptr<CurlHttpClient> trusting;

private:
    fixtures::Sandbox m_sandbox;
    sites::TestCertificates m_certificates;
};

TEST_F(CertificateTest, OfAKnownAuthorityIsTrusted)
{
    const auto secure = serverWith(certificates().valid());
    EXPECT_EQ(fetch(secure->url("/f")).body, "secret");
    EXPECT_EQ(fetch(secure->url("localhost", "/f")).body, "secret");
}

TEST_F(CertificateTest, OfAnAuthorityThatOnlyAnotherClientKnowsIsNot)
{
    const auto secure = serverWith(certificates().valid());
    EXPECT_EQ(fetch(secure->url("/f")).body, "secret");
    expectError(run(requestFor(secure->url("/f"))), Kind::certificateUntrusted);
}

TEST_F(CertificateTest, ThatIsBadIsUntrustedAndNothingIsAsked)
{
    for (const sites::TlsIdentity& identity :
         {certificates().wrongName(), certificates().expired(), certificates().selfSigned()}) {
        const auto secure = serverWith(identity);
        const Recorder::Heard heard = fetch(secure->url("/f"));
        expectError(heard, Kind::certificateUntrusted);
        EXPECT_FALSE(heard.head);
        EXPECT_TRUE(secure->requests().empty());
    }
}

TEST_F(CertificateTest, OfAnExceptedHostGoesUnexamined)
{
    for (const sites::TlsIdentity& identity :
         {certificates().wrongName(), certificates().expired(), certificates().selfSigned()}) {
        const auto secure = serverWith(identity);
        EXPECT_EQ(fetch(secure->url("/f"), {u"127.0.0.1"_s}).body, "secret");
        expectError(fetch(secure->url("/f"), {u"other.example"_s}), Kind::certificateUntrusted);
    }
}

TEST_F(CertificateTest, IsExaminedAnewAfterATransferThatDidNot)
{
    const auto secure = serverWith(certificates().selfSigned());
    EXPECT_EQ(fetch(secure->url("/f"), {u"127.0.0.1"_s}).body, "secret");
    expectError(fetch(secure->url("/f")), Kind::certificateUntrusted);
}

TEST_F(CertificateTest, IsDecidedAboutForEachHop)
{
    const auto bad = serverWith(certificates().selfSigned());
    const auto first = serverWith(certificates().selfSigned());
    first->serve("/from", {.answers = {Answer::redirect(302, bad->url("localhost", "/f"))}});

    Recorder recorder;
    recorder.trustedHosts = {u"127.0.0.1"_s};
    expectError(run(*trusting, requestFor(first->url("/from")), recorder), Kind::certificateUntrusted);
    EXPECT_EQ(recorder.askedHosts(), (std::vector{u"127.0.0.1"_s, u"localhost"_s}));
    EXPECT_TRUE(bad->requests().empty());

    EXPECT_EQ(fetch(first->url("/from"), {u"127.0.0.1"_s, u"localhost"_s}).body, "secret");
}

TEST_F(CertificateTest, ExceptionsAreAskedForInSmallLetters)
{
    const auto secure = serverWith(certificates().selfSigned());
    EXPECT_EQ(fetch(secure->url("LocalHost", "/f"), {u"localhost"_s}).body, "secret");
}

/// Greets whoever connects, once, in plain text.
class PlainGreeter
{
public:
    PlainGreeter()
        : m_listener(0)
        , m_thread([this] { greet(); })
    {}
    PlainGreeter(const PlainGreeter&) = delete;
    PlainGreeter& operator=(const PlainGreeter&) = delete;
    ~PlainGreeter()
    {
        m_interrupt.stop();
        m_thread.join();
    }

    [[nodiscard]] std::string url() const { return "https://127.0.0.1:" + std::to_string(m_listener.port()) + "/"; }

private:
    void greet()
    {
        sites::Channel client(m_listener.accept(m_interrupt), nullptr, m_interrupt);
        EXPECT_TRUE(client.write("220 hello\r\n"));
        client.finish();
    }

    sites::Interrupt m_interrupt;
    sites::Listener m_listener;
    std::thread m_thread;
};

TEST_F(CertificateTest, AServerThatSpeaksNoTlsIsNoSecureConnection)
{
    const PlainGreeter greeter;
    expectError(fetch(greeter.url()), Kind::secureConnectionFailed);
}

TEST_F(CertificateTest, AnEncryptedConnectionThatEndsEarlyIsLost)
{
    const auto secure = serverWith(certificates().valid());
    secure->serve("/f", {.content = sites::PatternContent(1, 100'000), .answers = {Answer::file().closeAfter(50'000)}});
    const Recorder::Heard heard = fetch(secure->url("/f"));
    expectError(heard, Kind::connectionLost);
    EXPECT_EQ(heard.body.size(), 50'000);
}

} // namespace
} // namespace vormel
