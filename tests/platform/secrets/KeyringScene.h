#pragma once

#include "Call.h"
#include "RealKeyring.h"
#include "fixtures/ManualClock.h"
#include "fixtures/RealTools.h"
#include "platform/secrets/KeyringSecrets.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace vormel::fixtures {

inline const QString keyOfPassword = QStringLiteral("vormel_filestore_somebody@example.com");

inline Call<QString> load(KeyringSecrets& secrets, const QString& which = keyOfPassword)
{
    return Call<QString>(secrets.load(which));
}

inline Call<bool> save(KeyringSecrets& secrets, const QString& secret)
{
    return Call<bool>(endOf(secrets.save(keyOfPassword, secret)));
}

/// A bus without a keyring. Whatever is started on it ends with the test.
class KeyringScene : public ::testing::Test
{
protected:
    void SetUp() override
    {
        VORMEL_NEEDS_TOOL("dbus-daemon");
        VORMEL_NEEDS_TOOL("gnome-keyring-daemon");
    }

    /// The store of the program, and where it has said it is since.
    struct Store
    {
        Store(ManualClock& clock, const QString& address)
            : secrets(clock, address)
        {
            QObject::connect(&secrets, &SecretStore::placeChanged, &secrets,
                             [this] { places.push_back(secrets.place()); });
        }

        KeyringSecrets secrets;
        std::vector<SecretStore::Place> places;
    };

    Sandbox sandbox;
    ManualClock clock;
};

/// And one with a keyring that is unlocked.
class UnlockedKeyring : public KeyringScene
{
protected:
    void SetUp() override
    {
        KeyringScene::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        bus.emplace(sandbox);
        keyring.emplace(sandbox, *bus);
        ASSERT_TRUE(keyring->start());
        store.emplace(clock, bus->address());
    }

    std::optional<PrivateBus> bus;
    std::optional<RealKeyring> keyring;
    std::optional<Store> store;
};

} // namespace vormel::fixtures
