#pragma once

#include "platform/async/SharedWork.h"
#include "platform/clock/Clock.h"
#include "platform/secrets/KeyringEnd.h"
#include "platform/secrets/SecretStore.h"

#include <chrono>
#include <memory>
#include <optional>

namespace vormel {

class GlibContext;
class KeyringItems;
class KeyringService;

/// Passwords in the desktop's keyring, which may ask the user to unlock it. A prompt that is dismissed, or not answered
/// within KeyringItems::patience, is a missing password; so is a service that goes away and does not come back at once.
/// What is saved takes the place of all items that are under the key; whoever changes a key again waits for the first
/// change.
class KeyringSecrets final : public SecretStore
{
public:
    /// A user who has dismissed the prompt is asked for no other password for so long: a queue of items that all want
    /// one would ask for each.
    static constexpr std::chrono::seconds peace{10};

    /// Looks at once whether there is a keyring on the bus, but starts none. An empty address is a machine without a
    /// bus. The clock must outlive this; calls under way end with it as if nobody had answered.
    KeyringSecrets(Clock& clock, const QString& busAddress);
    ~KeyringSecrets() override;

    /// The keyring until it is known that none answers, then nowhere.
    [[nodiscard]] Place place() const override;
    [[nodiscard]] QCoro::Task<> save(QString key, QString secret) override;
    [[nodiscard]] QCoro::Task<QString> load(QString key) override;
    [[nodiscard]] QCoro::Task<> remove(QString key) override;

private:
    [[nodiscard]] QCoro::Task<std::optional<QString>> tryToLoad(QString key);
    [[nodiscard]] QCoro::Task<KeyringEnd> tryToReplace(QString key, std::optional<QString> secret);
    [[nodiscard]] QCoro::Task<> replace(QString key, std::optional<QString> secret);
    [[nodiscard]] QCoro::Task<KeyringEnd> askToUnlock(KeyringItems& items);
    void noteEnd(KeyringEnd end);

    Clock& m_clock;
    std::unique_ptr<GlibContext> m_glib;
    std::unique_ptr<KeyringService> m_service;
    SharedWork<KeyringEnd> m_unlocking;
    std::optional<SteadyTime> m_refusedAt;
};

} // namespace vormel
