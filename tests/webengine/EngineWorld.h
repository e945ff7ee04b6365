#pragma once

#include "fixtures/ManualClock.h"
#include "fixtures/Sandbox.h"
#include "platform/clock/SystemClock.h"
#include "sites/TestCertificates.h"
#include "webengine/EngineBrowser.h"

#include <gtest/gtest.h>

#include <memory>

namespace vormel {

/// The one start of the engine that all tests share, in a home of its own where an authority of ours is trusted.
class EngineWorld final : public testing::Environment
{
public:
    /// Before the application is there. Names below "example" are this machine.
    EngineWorld();
    void TearDown() override;

    [[nodiscard]] static EngineWorld& instance();

    [[nodiscard]] EngineBrowser& browser();
    /// Another profile, on a clock that only the tests move.
    [[nodiscard]] EngineBrowser& slowBrowser();
    [[nodiscard]] fixtures::ManualClock& clock() { return m_manualClock; }
    [[nodiscard]] const sites::TestCertificates& certificates() const { return m_certificates; }
    [[nodiscard]] const fixtures::Sandbox& home() const { return m_home; }

private:
    [[nodiscard]] EngineBrowser& made(std::unique_ptr<EngineBrowser>& browser, const QString& folder,
                                      Clock& clock) const;

    fixtures::Sandbox m_home;
    sites::TestCertificates m_certificates;
    SystemClock m_systemClock;
    fixtures::ManualClock m_manualClock;
    std::unique_ptr<EngineBrowser> m_browser;
    std::unique_ptr<EngineBrowser> m_slowBrowser;
};

} // namespace vormel
