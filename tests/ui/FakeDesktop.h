#pragma once

#include "archive/tools/ToolWatch.h"
#include "fixtures/EngineOnScript.h"
#include "fixtures/ScriptedBrowser.h"
#include "kit/SignInSheet.h"
#include "model/Services.h"
#include "platform/async/Background.h"
#include "platform/async/Eventual.h"
#include "platform/desktop/FileViewer.h"
#include "platform/desktop/PackageManager.h"
#include "platform/desktop/Terminal.h"
#include "platform/desktop/UrlOpener.h"
#include "platform/web/KeptCookies.h"
#include "ui/ViewPorts.h"
#include "ui/notices/Notices.h"

#include <QStringList>
#include <QUrl>

namespace vormel::fixtures {

/// Writes down what it is asked to show.
class FakeViewer final : public FileViewer
{
public:
    void show(const QString& path) override { shown << path; }

    QStringList shown;
};

/// Writes down what it is asked to open.
class FakeOpener final : public UrlOpener
{
public:
    void open(const QUrl& url) override { opened << url; }

    QList<QUrl> opened;
};

/// Has what it is told to have.
class FakePackageManagers final : public PackageManagers
{
public:
    [[nodiscard]] std::optional<PackageManager> present() const override { return manager; }

    std::optional<PackageManager> manager;
};

/// Writes down what it is asked to run.
class FakeTerminal final : public Terminal
{
public:
    void run(const QString& command) override { commands << command; }

    QStringList commands;
};

/// Keeps the sign-ins that it is asked for open until the test answers them.
class FakeSignIn final : public SignInSheet
{
public:
    struct Call
    {
        SignInRequest request;
        std::stop_token stop;
        std::shared_ptr<EventualSource<SignInAnswer>> answer;
    };

    [[nodiscard]] QCoro::Task<SignInAnswer> open(SignInRequest request, std::stop_token stop) override
    {
        auto answer = std::make_shared<EventualSource<SignInAnswer>>(SignInAnswer());
        Eventual<SignInAnswer> eventual = answer->eventual();
        calls.push_back({request, stop, std::move(answer)}); // its end is an answer, too
        co_return co_await eventual;
    }

    std::vector<Call> calls;
};

/// Everything that pages work with, around the engine's engine and its folder of tools. The engine must outlive it.
struct FakeDesktop
{
    explicit FakeDesktop(EngineOnScript& owner)
        : engine(owner)
    {}

    [[nodiscard]] ViewPorts ports()
    {
        return {engine.manager(),
                engine.clock,
                viewer,
                opener,
                tools,
                managers,
                terminal,
                signIn,
                web,
                keptCookies,
                notices,
                {engine.http, background, engine.clock, web, services},
                engine.sandbox.folders().downloads};
    }

    EngineOnScript& engine;
    FakeViewer viewer;
    FakeOpener opener;
    FakePackageManagers managers;
    FakeTerminal terminal;
    FakeSignIn signIn;
    ScriptedBrowser web;
    KeptCookies keptCookies{{web, engine.secrets, engine.cookies},
                            [](const QByteArray& domain) { return domain.contains("terabytez"); }};
    Notices notices{engine.clock};
    Services services = Services::builtIn();
    Background background;
    ToolRunner runner{engine.tools.folders()};
    ToolWatch tools{runner};
};

} // namespace vormel::fixtures
