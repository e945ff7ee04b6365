#include "engine/accounts/Accounts.h"

#include "engine/accounts/AccountRecords.h"
#include "platform/storage/UserDefaults.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

const QString accountsKey = u"vormel_accounts"_s;

/// Such accounts share their password.
bool isSameLogin(const HostAccount& one, const HostAccount& other)
{
    return one.host == other.host && one.username == other.username;
}

} // namespace

Accounts::Accounts(UserDefaults& store, SecretStore& secrets, const HostProfiles& profiles)
    : m_store(store)
    , m_secrets(secrets)
    , m_profiles(profiles)
{
    connect(&secrets, &SecretStore::placeChanged, this, &Accounts::passwordPlaceChanged);
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

std::vector<HostAccount>::iterator Accounts::find(const QUuid& id)
{
    return std::find_if(m_list.begin(), m_list.end(), [&id](const HostAccount& account) { return account.id == id; });
}

QCoro::Task<> Accounts::put(HostAccount account, QString password)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    std::optional<HostAccount> former;
    if (const auto known = find(account.id); known != m_list.end())
        former = std::exchange(*known, account);
    else
        m_list.push_back(account);
    set(m_list);
    const bool hasOtherLogin = former && !isSameLogin(*former, account);
    if (hasOtherLogin)
        Q_EMIT credentialsChanged(*former);
    co_await savePassword(account, password);
    if (hasOtherLogin && !lifetime.isOver())
        co_await dropPassword(*former);
}

QCoro::Task<> Accounts::remove(QUuid id)
{
    const auto known = find(id);
    if (known == m_list.end())
        co_return;
    const HostAccount gone = *known;
    m_list.erase(known);
    set(m_list);
    Q_EMIT credentialsChanged(gone);
    co_await dropPassword(gone);
}

QCoro::Task<> Accounts::dropPassword(HostAccount former)
{
    const bool isShared = std::any_of(m_list.begin(), m_list.end(),
                                      [&former](const HostAccount& account) { return isSameLogin(account, former); });
    if (!isShared)
        co_await deletePassword(former);
}

QCoro::Task<> Accounts::savePassword(HostAccount account, QString password)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    co_await m_secrets.save(keychainAccountKey(account, m_profiles), password);
    if (!lifetime.isOver())
        Q_EMIT credentialsChanged(account); // a login that began meanwhile has the old password
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
