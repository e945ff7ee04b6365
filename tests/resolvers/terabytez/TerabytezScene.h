#pragma once

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "fixtures/FakeSecrets.h"
#include "fixtures/ManualClock.h"
#include "fixtures/ScriptedBrowser.h"
#include "platform/async/Background.h"
#include "platform/async/Spawn.h"
#include "platform/http/CookieStore.h"
#include "platform/web/KeptCookies.h"
#include "resolvers/terabytez/TerabytezResolver.h"
#include "resolvers/terabytez/TerabytezScripts.h"

#include <QThread>

#include <gtest/gtest.h>

#include <future>

namespace vormel {

/// The resolver with pages that the test acts for, on a clock that only the test moves.
class TerabytezScene : public testing::Test
{
protected:
    using Kind = ResolverError::Kind;
    using Page = fixtures::ScriptedPage;

    /// What a walk has come to.
    struct Walk
    {
        std::stop_source stop;
        std::optional<ResolvedDownload> found;
        std::optional<PremiumAccountInfo> account;
        std::optional<Kind> error;
        bool isOver = false; ///< without any of these: it was stopped

        [[nodiscard]] std::string url() const { return found ? found->url.absoluteString().toStdString() : "-"; }
        [[nodiscard]] std::string name() const
        {
            return found && found->filename ? found->filename->toStdString() : "-";
        }
    };
    using WalkPtr = std::shared_ptr<Walk>;

    /// Keeps all threads busy that read pages, for as long as it lives.
    class HeldReading
    {
    public:
        explicit HeldReading(Background& background)
        {
            for (int thread = 0; thread < QThread::idealThreadCount(); ++thread)
                spawn(hold(background, m_released));
        }
        HeldReading(const HeldReading&) = delete;
        HeldReading& operator=(const HeldReading&) = delete;
        ~HeldReading() { m_release.set_value(); }

    private:
        static QCoro::Task<> hold(Background& background, std::shared_future<void> release)
        {
            const auto wait = [release] { release.wait(); };
            co_await background.run(wait);
        }
        std::promise<void> m_release;
        std::shared_future<void> m_released = m_release.get_future().share();
    };

    /// What every page shows, and what happens on it. To be set before a walk begins, as reading may take no time.
    struct Shown
    {
        bool hasForm = false;
        QVariant isSubmitted = true;
        QString heading;
        QString html;
        std::function<void(Page&)> onLoad;
        std::function<void(Page&)> onSubmit;
        std::function<void(Page&)> onOpenAccount;
        std::function<void(Page&)> onRead;
    };

    TerabytezScene()
    {
        browser.onPage = [this](Page& page) { act(page); };
    }
    ~TerabytezScene() override
    {
        secrets.unlock();
        for (const WalkPtr& walk : m_walks)
            walk->stop.request_stop();
        EXPECT_TRUE(fixtures::waitUntil([this] {
            return std::all_of(m_walks.begin(), m_walks.end(), [](const WalkPtr& walk) { return walk->isOver; });
        }));
    }

    /// The file's page comes at once.
    void loadsAtOnce()
    {
        shown.onLoad = [this](Page& page) { page.arrivesAt(filePage); };
    }
    /// Its file has the name that its heading tells.
    void loadsWithForm()
    {
        loadsAtOnce();
        shown.hasForm = true;
        shown.heading = QStringLiteral("Download: film.rar (2 GB)");
    }
    WalkPtr start() { return start(filePage); }
    WalkPtr start(const QString& url)
    {
        const WalkPtr walk = newWalk();
        spawn(resolving(resolver, fixtures::link(url), walk));
        return walk;
    }
    WalkPtr check()
    {
        const WalkPtr walk = newWalk();
        spawn(checking(resolver, walk));
        return walk;
    }
    /// Pages are read on other threads; this waits until whoever is to go on has.
    static bool comes(const std::function<bool()>& condition) { return fixtures::waitUntil(condition); }
    bool ends(const WalkPtr& walk)
    {
        return comes([&walk] { return walk->isOver; });
    }
    /// Somebody waits for a page or for time.
    bool waits(int timers = 1)
    {
        return comes([this, timers] { return clock.pendingTimers() == timers; });
    }
    void expectFound(const WalkPtr& walk, const std::string& name = "film.rar", const QString& url = fileAddress)
    {
        ASSERT_TRUE(ends(walk));
        EXPECT_EQ(walk->url(), url.toStdString());
        EXPECT_EQ(walk->name(), name);
        EXPECT_TRUE(browser.pages.empty());
    }
    void expectError(const WalkPtr& walk, Kind kind)
    {
        ASSERT_TRUE(ends(walk));
        EXPECT_EQ(walk->error, kind);
        EXPECT_TRUE(browser.pages.empty());
    }
    [[nodiscard]] Page& page(std::size_t number = 0) const { return *browser.pages.at(number); }
    [[nodiscard]] qsizetype timesRun(const QString& script) const { return page().scripts.count(script); }
    [[nodiscard]] static QString formQuestion() { return terabytezScripts::hasElement(QStringLiteral("form")); }

    static inline const QString fileAddress = QStringLiteral("https://dl7.any.example/x/film.rar");
    const QString filePage = QStringLiteral("https://terabytez.example/f1");
    Shown shown;
    fixtures::ScriptedBrowser browser;
    fixtures::FakeSecrets secrets;
    CookieStore transfers;
    KeptCookies kept{{browser, secrets, transfers},
                     [](const QByteArray& domain) { return domain.contains("terabytez"); }};
    fixtures::ManualClock clock;
    Background background;
    TerabytezResolver resolver{{browser, kept, transfers, clock, background}, HostProfiles()};

private:
    WalkPtr newWalk()
    {
        m_walks.push_back(std::make_shared<Walk>());
        return m_walks.back();
    }
    void act(Page& page)
    {
        page.onLoad = [this, &page](const Link&) {
            if (shown.onLoad)
                shown.onLoad(page);
        };
        page.onScript = [this, &page](const QString& script) -> std::optional<QVariant> {
            if (script == formQuestion())
                return shown.hasForm;
            if (script == terabytezScripts::heading())
                return shown.heading;
            if (script == terabytezScripts::html()) {
                happen(shown.onRead, page);
                return shown.html;
            }
            if (script == terabytezScripts::submitForm()) {
                happen(shown.onSubmit, page);
                return shown.isSubmitted;
            }
            happen(shown.onOpenAccount, page);
            return true;
        };
    }
    static void happen(std::function<void(Page&)> what, Page& page)
    {
        if (what)
            what(page);
    }
    static QCoro::Task<> resolving(const TerabytezResolver& resolver, Link url, WalkPtr walk)
    {
        const HostAccount account = fixtures::account(SupportedHost::terabytez);
        try {
            walk->found = co_await resolver.resolveDownload(url, account, walk->stop.get_token());
        } catch (const ResolverError& error) {
            walk->error = error.kind();
        } catch (const std::exception&) {
            EXPECT_TRUE(walk->stop.stop_requested());
        }
        walk->isOver = true;
    }
    static QCoro::Task<> checking(const TerabytezResolver& resolver, WalkPtr walk)
    {
        const HostAccount account = fixtures::account(SupportedHost::terabytez);
        try {
            walk->account = co_await resolver.checkAccount(account, walk->stop.get_token());
        } catch (const ResolverError& error) {
            walk->error = error.kind();
        } catch (const std::exception&) {
            EXPECT_TRUE(walk->stop.stop_requested());
        }
        walk->isOver = true;
    }

    std::vector<WalkPtr> m_walks;
};

} // namespace vormel
