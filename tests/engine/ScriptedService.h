#pragma once

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"

#include <gtest/gtest.h>

namespace vormel::fixtures {

inline const QString filestoreLink = QStringLiteral("https://filestore.example/f/abc");

/// Downloads from hosts whose services answer when the test says so.
class ScriptedService : public ::testing::Test
{
protected:
    void answer(std::size_t call, const std::variant<ResolvedDownload, ResolverError>& result)
    {
        log->resolves.at(call).answer->deliver(result);
        turnEventLoop();
    }
    void resolveTo(std::size_t call, const QString& url, const std::optional<QString>& name = {})
    {
        answerWithAddress(log->resolves.at(call), url, name);
        turnEventLoop();
    }
    ItemPtr startFilestore()
    {
        engine.manager().accounts().set({account(SupportedHost::filestore)});
        const ItemPtr item = engine.add(filestoreLink);
        // The name look-up of a fresh link asks the service too; it is answered and out of the way.
        resolveTo(0, QStringLiteral("https://cdn.example/none"));
        engine.manager().commands().startAll();
        turnEventLoop();
        return item;
    }

    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    EngineOnScript engine{fakeServices(log)};
};

} // namespace vormel::fixtures
