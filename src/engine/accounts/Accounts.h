#pragma once

#include "model/HostAccount.h"

#include <QObject>

namespace vormel {

class UserDefaults;

/// The user's logins at the premium hosts, as they are stored in the preferences. UI thread only.
class Accounts final : public QObject
{
    Q_OBJECT

public:
    /// Reads the stored list. One that cannot be understood counts as empty and stays as it is until the next save. The
    /// store must outlive this.
    explicit Accounts(UserDefaults& store);

    [[nodiscard]] const std::vector<HostAccount>& list() const { return m_list; }
    /// The account that the host's links are resolved with. Null without one; points into the list.
    [[nodiscard]] const HostAccount* firstEnabled(SupportedHost host) const;

    /// Takes another list and stores it.
    void set(std::vector<HostAccount> list);

Q_SIGNALS:
    void changed();

private:
    void loadAccounts();
    void saveAccounts();

    UserDefaults& m_store;
    std::vector<HostAccount> m_list;
};

} // namespace vormel
