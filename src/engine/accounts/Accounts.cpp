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
    if (std::exchange(m_isStoredUnreadable, false))
        keepUnreadable();
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
    if (!list) {
        m_isStoredUnreadable = m_store.objectForKey(accountsKey).has_value();
        return;
    }
    m_list = std::move(*list);
    // In today's form, whatever wrote it.
    saveAccounts();
}

void Accounts::keepUnreadable()
{
    const QString beside = accountsKey + u".unreadable"_s;
    QString free = beside;
    for (int number = 2; m_store.objectForKey(free); ++number)
        free = beside + u'.' + QString::number(number);
    m_store.setObject(free, *m_store.objectForKey(accountsKey));
}

void Accounts::saveAccounts()
{
    m_store.setObject(accountsKey, QString::fromUtf8(encodeAccounts(m_list, m_profiles)));
}

} // namespace vormel
