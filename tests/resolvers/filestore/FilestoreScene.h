#pragma once

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "fixtures/FakeSecrets.h"
#include "fixtures/ManualClock.h"
#include "fixtures/Sandbox.h"
#include "platform/async/Background.h"
#include "platform/async/Spawn.h"
#include "platform/http/CurlHttpClient.h"
#include "resolvers/Transcript.h"
#include "resolvers/filestore/FilestoreResolver.h"
#include "sites/services/FilestoreSite.h"

#include <gtest/gtest.h>

namespace vormel {

/// The resolver with the real network client, against a stand-in of the service, on a clock that only the test moves.
class FilestoreScene : public testing::Test
{
protected:
    using Shape = sites::FilestoreSite::Shape;
    using Kind = ResolverError::Kind;

    /// What a walk has come to.
    struct Walk
    {
        std::stop_source stop;
        std::optional<ResolvedDownload> found;
        std::optional<ResolverError> error;

        [[nodiscard]] bool isOver() const { return found || error; }
        [[nodiscard]] QString url() const { return found ? found->url.absoluteString() : QString(); }
    };
    using WalkPtr = std::shared_ptr<Walk>;

    FilestoreScene()
    {
        site.addAccount("ann", "s3cret");
        secrets.kept.insert(keychainAccountKey(ann, profiles), QStringLiteral("s3cret"));
    }
    ~FilestoreScene() override
    {
        client.reset();
        fixtures::turnEventLoop();
    }

    WalkPtr start(const QString& url)
    {
        auto walk = std::make_shared<Walk>();
        spawn(walking(resolver, fixtures::link(url), ann, walk));
        return walk;
    }
    /// The clock goes on while nothing else does, as long as the walk sleeps.
    bool end(const WalkPtr& walk)
    {
        return fixtures::waitUntil([this, &walk] {
            if (clock.pendingTimers() > 0)
                clock.advance(std::chrono::milliseconds(10));
            return walk->isOver();
        });
    }
    WalkPtr resolve(const QString& url)
    {
        const WalkPtr walk = start(url);
        EXPECT_TRUE(end(walk));
        return walk;
    }
    WalkPtr resolve(const std::string& url) { return resolve(QString::fromStdString(url)); }
    [[nodiscard]] QByteArrayList asked() const { return fixtures::transcript(site.requests()); }
    [[nodiscard]] QByteArrayList keptCookies() const { return client->sharedCookies()->cookies(); }

    HostProfiles profiles;
    sites::TestCertificates certificates;
    sites::FilestoreSite site{certificates};
    fixtures::Sandbox sandbox;
    fixtures::ManualClock clock;
    fixtures::FakeSecrets secrets;
    Background background;
    std::unique_ptr<CurlHttpClient> client = std::make_unique<CurlHttpClient>(clock, options());
    FilestoreLoginCache logins{clock};
    FilestoreResolver resolver{{*client, *client->sharedCookies(), secrets, clock, background, logins}, profiles};
    HostAccount ann = fixtures::account(SupportedHost::filestore, QStringLiteral("ann"));

private:
    [[nodiscard]] CurlHttpClient::Options options()
    {
        CurlHttpClient::Options options;
        options.extraCaFile =
            QString::fromStdString(certificates.writeAuthority(sandbox.root().toStdString()).string());
        for (const auto& [from, to] : site.connectTo())
            options.connectTo.insert(QByteArray::fromStdString(from), QByteArray::fromStdString(to));
        return options;
    }
    static QCoro::Task<> walking(const FilestoreResolver& resolver, Link url, HostAccount account, WalkPtr walk)
    {
        try {
            walk->found = co_await resolver.resolveDownload(url, account, walk->stop.get_token());
        } catch (const ResolverError& error) {
            walk->error = error;
        }
    }
};

} // namespace vormel
