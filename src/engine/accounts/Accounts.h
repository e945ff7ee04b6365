#pragma once

#include "model/HostAccount.h"
#include "platform/async/Lifetime.h"
#include "platform/secrets/SecretStore.h"

#include <QCoroTask>
#include <QObject>

namespace vormel {

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
    /// Takes the place of the account with that id, else comes last; the list changes at once. The password that it had
    /// under another host or user name goes, unless another account has that login.
    [[nodiscard]] QCoro::Task<> put(HostAccount account, QString password);
    /// At once, and behind that its password, unless another account has the same login.
    [[nodiscard]] QCoro::Task<> remove(QUuid id);

    /// Where the passwords of this machine are.
    [[nodiscard]] SecretStore::Place passwordPlace() const { return m_secrets.place(); }
    // By host and user name, not by the record's identity: two records of one login share their password.
    [[nodiscard]] QCoro::Task<> savePassword(HostAccount account, QString password);
    /// Empty where there is none.
    [[nodiscard]] QCoro::Task<QString> loadPassword(const HostAccount& account);
    [[nodiscard]] QCoro::Task<> deletePassword(const HostAccount& account);

Q_SIGNALS:
    void changed();
    /// Its password was saved, or it has gone: who keeps a login of this host and user name must forget it.
    void credentialsChanged(const vormel::HostAccount& account);
    void passwordPlaceChanged();

private:
    [[nodiscard]] QCoro::Task<> dropPassword(HostAccount former);
    [[nodiscard]] std::vector<HostAccount>::iterator find(const QUuid& id);
    void loadAccounts();
    void saveAccounts();
    void keepUnreadable();

    UserDefaults& m_store;
    SecretStore& m_secrets;
    const HostProfiles& m_profiles;
    std::vector<HostAccount> m_list;
    bool m_isStoredUnreadable = false;
    Lifetime m_lifetime;
};

} // namespace vormel
