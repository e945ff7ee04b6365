#pragma once

#include "kit/Card.h"
#include "ui/accounts/AccountRow.h"
#include "ui/accounts/HostLabel.h"

namespace vormel {

/// The accounts, a row each, in their order. A row stays as it is for as long as its account is there unchanged. The
/// ports outlive it.
class AccountList final : public Card
{
    Q_OBJECT

public:
    AccountList(const ViewPorts& ports, std::vector<HostLabel> hosts, QWidget* parent);

    void setAccounts(const std::vector<HostAccount>& accounts);
    /// The row is made anew when the accounts are set next, even if its account is the same.
    void startOver(const QUuid& id);
    /// What the checks of its accounts told holds no more.
    void signedOut(SupportedHost host);
    /// Gives a control of the row at that place the focus, or the last row's where there are not so many. The row; null
    /// if there is none.
    QWidget* focusRow(int place, AccountRow::Control control);
    /// That of the account; -1 if there is none.
    [[nodiscard]] int placeOf(const QUuid& id) const;

Q_SIGNALS:
    void signOutRequested(vormel::SupportedHost host);
    void editRequested(const vormel::HostAccount& account);
    void deleteRequested(const vormel::HostAccount& account);

private:
    [[nodiscard]] QString labelOf(SupportedHost host) const;
    [[nodiscard]] AccountRow* takeRow(const HostAccount& account);
    [[nodiscard]] AccountRow* makeRow(const HostAccount& account);
    void orderFocus();

    ViewPorts m_ports;
    std::vector<HostLabel> m_hosts;
    std::vector<AccountRow*> m_rows; ///< as they stand in the card
};

} // namespace vormel
