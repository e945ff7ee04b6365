#pragma once

#include "platform/async/GlibCalls.h"
#include "platform/clock/Clock.h"
#include "platform/secrets/KeyringEnd.h"

#include <QCoroTask>
#include <QString>

#include <chrono>
#include <libsecret/secret.h>
#include <memory>
#include <optional>
#include <vector>

namespace vormel {

class GlibContext;

/// The items under one key in an open Secret Service, and what is done with them, one thing after the other. When the
/// user has not answered a prompt within the patience, everything ends as refused; the prompt stays. UI thread only.
class KeyringItems
{
public:
    /// How long the user may take over the keyring's prompts.
    static constexpr std::chrono::minutes patience{5};

    struct Password
    {
        QString text; ///< empty without an item, and of one that is locked
        bool isLocked = false;
    };

    /// Context and clock must outlive this.
    KeyringItems(GlibContext& glib, Clock& clock, std::shared_ptr<SecretService> service, const QString& key);

    /// Of one of the items, if possible of one that is not locked. Asks the user nothing. Nothing if nobody answers.
    [[nodiscard]] QCoro::Task<std::optional<Password>> load();
    /// Unlocks the item that was found locked: the keyring asks the user.
    [[nodiscard]] QCoro::Task<KeyringEnd> unlock();
    /// Unlocks all items and deletes those that are unlocked then. Refused if all of them stay locked.
    [[nodiscard]] QCoro::Task<KeyringEnd> removeAll();
    /// Puts an item into the default collection, which may have to be unlocked or made.
    [[nodiscard]] QCoro::Task<KeyringEnd> add(QString secret);

private:
    using Item = std::shared_ptr<SecretItem>;

    [[nodiscard]] QCoro::Task<std::optional<std::vector<Item>>> find(SecretSearchFlags flags);
    [[nodiscard]] QCoro::Task<KeyringEnd> remove(Item item);

    std::shared_ptr<SecretService> m_service;
    QByteArray m_key;
    Item m_locked;
    GlibCalls m_calls;
    Timer m_limit;
};

} // namespace vormel
