#pragma once

#include "app/update/Updater.h"

namespace vormel::fixtures {

/// Checks when it is told that it can, and counts how often it is asked to.
class FakeUpdater final : public Updater
{
public:
    [[nodiscard]] bool canCheckForUpdates() const override { return m_canCheck; }
    void checkForUpdates() override { ++checks; }

    void allow(bool canCheck)
    {
        m_canCheck = canCheck;
        Q_EMIT canCheckForUpdatesChanged(canCheck);
    }

    int checks = 0;

private:
    bool m_canCheck = false;
};

} // namespace vormel::fixtures
