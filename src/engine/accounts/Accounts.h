#pragma once

#include "model/HostAccount.h"

#include <QCoroTask>
#include <QObject>

namespace vormel {

class SecretStore;
class UserDefaults;

/// The user's logins at the premium hosts: the list is stored in the preferences, each password apart from it. UI
/// thread only.
class Accounts final : public QObject
{
    Q_OBJECT

public:
    /// Reads the stored list. One that cannot be understood counts as empty and stays as it is until the user changes
    /// the list; then it is kept beside. All must outlive this, and whatever it is still asked for.
    Accounts(UserDefaults& store, SecretStore& secrets, const HostProfiles& profiles);

    [[nodiscard]] const std::vector<HostAccount>& list() const { return m_list; }
    /// The account that the host's links are resolved with. Null without one; points into the list.
    [[nodiscard]] const HostAccount* firstEnabled(SupportedHost host) const;

    /// Takes another list and stores it.
    void set(std::vector<HostAccount> list);

    // By host and user name, not by the record's identity: two records of one login share their password.
    [[nodiscard]] QCoro::Task<> savePassword(const HostAccount& account, QString password);
    /// Empty where there is none.
    [[nodiscard]] QCoro::Task<QString> loadPassword(const HostAccount& account);
    [[nodiscard]] QCoro::Task<> deletePassword(const HostAccount& account);

Q_SIGNALS:
    void changed();

private:
    void loadAccounts();
    void saveAccounts();
    void keepUnreadable();

    UserDefaults& m_store;
    SecretStore& m_secrets;
    const HostProfiles& m_profiles;
    std::vector<HostAccount> m_list;
    bool m_isStoredUnreadable = false;
};

} // namespace vormel
