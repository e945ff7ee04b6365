#include "engine/accounts/Accounts.h"

#include "engine/accounts/AccountRecords.h"
#include "platform/secrets/SecretStore.h"
#include "platform/storage/UserDefaults.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

const QString accountsKey = u"vormel_accounts"_s;

} // namespace

Accounts::Accounts(UserDefaults& store, SecretStore& secrets, const HostProfiles& profiles)
    : m_store(store)
    , m_secrets(secrets)
    , m_profiles(profiles)
{
    loadAccounts();
}

const HostAccount* Accounts::firstEnabled(SupportedHost host) const
{
    return firstEnabledAccount(m_list, host);
}

void Accounts::set(std::vector<HostAccount> list)
{
    m_list = std::move(list);
    saveAccounts();
    Q_EMIT changed();
}

QCoro::Task<> Accounts::savePassword(const HostAccount& account, QString password)
{
    return m_secrets.save(keychainAccountKey(account, m_profiles), std::move(password));
}

QCoro::Task<QString> Accounts::loadPassword(const HostAccount& account)
{
    return m_secrets.load(keychainAccountKey(account, m_profiles));
}

QCoro::Task<> Accounts::deletePassword(const HostAccount& account)
{
    return m_secrets.remove(keychainAccountKey(account, m_profiles));
}

void Accounts::loadAccounts()
{
    const std::optional<QString> stored = m_store.stringForKey(accountsKey);
    std::optional<std::vector<HostAccount>> list = stored ? decodeAccounts(stored->toUtf8(), m_profiles) : std::nullopt;
    if (!list)
        return;
    m_list = std::move(*list);
    // In today's form, whatever wrote it.
    saveAccounts();
}

void Accounts::saveAccounts()
{
    m_store.setObject(accountsKey, QString::fromUtf8(encodeAccounts(m_list, m_profiles)));
}

} // namespace vormel
