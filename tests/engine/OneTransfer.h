#pragma once

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

namespace vormel::fixtures {

inline const QString rarLink = QStringLiteral("http://h/x.rar");
inline const QString partFile = QStringLiteral("Downloads/x.rar.download");
inline const QString finalFile = QStringLiteral("Downloads/x.rar");

/// One item, fetched over a scripted network.
class OneTransfer : public ::testing::Test
{
protected:
    // Unpacking would work in the folder in which a test looks for what the transfer left.
    OneTransfer() { engine.settings().autoExtract.set(false); }

    ScriptedHttpClient::Exchange& server() { return engine.http.last(); }
    void say(int status, const std::vector<HttpHeader>& headers)
    {
        server().head(status, headers);
        turnEventLoop();
    }
    void send(const QByteArray& bytes, std::chrono::milliseconds after = std::chrono::milliseconds(0))
    {
        engine.clock.advance(after);
        server().data(bytes);
        turnEventLoop();
    }
    void close()
    {
        server().finish();
        turnEventLoop();
    }
    void startAll()
    {
        engine.manager().commands().startAll();
        turnEventLoop();
    }
    [[nodiscard]] QStringList downloads() const { return engine.sandbox.files(QStringLiteral("Downloads")); }

    EngineOnScript engine;
};

} // namespace vormel::fixtures
