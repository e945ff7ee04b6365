#include "ui/accounts/AccountList.h"

#include "engine/DownloadManager.h"
#include "kit/BoundText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// At once for the eyes; it may be in the middle of its own signal.
void dismiss(AccountRow* row)
{
    row->hide();
    row->deleteLater();
}

} // namespace

AccountList::AccountList(const ViewPorts& ports, std::vector<HostLabel> hosts, QWidget* parent)
    : Card(u"accountList"_s, parent)
    , m_ports(ports)
    , m_hosts(std::move(hosts))
{
    bindText(this, &QWidget::setAccessibleName, ports.manager.settings(), {u"Accounts", u"Account"});
}

void AccountList::setAccounts(const std::vector<HostAccount>& accounts)
{
    std::vector<AccountRow*> rows;
    for (const HostAccount& account : accounts) {
        AccountRow* const known = takeRow(account);
        rows.push_back(known ? known : makeRow(account));
    }
    for (AccountRow* const gone : std::exchange(m_rows, rows))
        dismiss(gone);
    int place = 0;
    for (AccountRow* const row : m_rows)
        insertRow(place++, row);
    orderFocus();
}

/// Nothing is left of a row that is dismissed here, so what the user has changed does not get its check back.
void AccountList::startOver(const QUuid& id)
{
    const int place = placeOf(id);
    if (place < 0)
        return;
    dismiss(m_rows.at(static_cast<std::size_t>(place)));
    m_rows.erase(m_rows.begin() + place);
}

void AccountList::signedOut(SupportedHost host)
{
    for (AccountRow* const row : m_rows) {
        if (row->account().host == host)
            row->signedOut();
    }
}

AccountRow* AccountList::takeRow(const HostAccount& account)
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
                                    [&account](const AccountRow* row) { return row->account() == account; });
    if (found == m_rows.end())
        return nullptr;
    AccountRow* const row = *found;
    m_rows.erase(found);
    return row;
}

AccountRow* AccountList::makeRow(const HostAccount& account)
{
    auto* row = new AccountRow(m_ports, account, labelOf(account.host), this);
    connect(row, &AccountRow::signOutRequested, this, [this, account] { Q_EMIT signOutRequested(account.host); });
    connect(row, &AccountRow::editRequested, this, [this, account] { Q_EMIT editRequested(account); });
    connect(row, &AccountRow::deleteRequested, this, [this, account] { Q_EMIT deleteRequested(account); });
    connect(row, &AccountRow::stepped, this, [this, id = account.id](int rows, AccountRow::Control control) {
        focusRow(std::max(placeOf(id) + rows, 0), control);
    });
    return row;
}

QString AccountList::labelOf(SupportedHost host) const
{
    const auto found =
        std::find_if(m_hosts.begin(), m_hosts.end(), [host](const HostLabel& label) { return label.host == host; });
    return found == m_hosts.end() ? QString() : found->text;
}

int AccountList::placeOf(const QUuid& id) const
{
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [&id](const AccountRow* row) { return row->account().id == id; });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

QWidget* AccountList::focusRow(int place, AccountRow::Control control)
{
    if (m_rows.empty())
        return nullptr;
    AccountRow* const row = m_rows.at(std::min(static_cast<std::size_t>(place), m_rows.size() - 1));
    row->show(); // the layout would do so later, and what is hidden gets no focus
    row->focusOn(control);
    return row;
}

/// Rows are not made in the order in which they stand.
void AccountList::orderFocus()
{
    QWidget* before = nullptr;
    for (const AccountRow* const row : m_rows) {
        for (const AccountRow::Control each : AccountRow::allControls) {
            if (before)
                setTabOrder(before, row->control(each));
            before = row->control(each);
        }
    }
}

} // namespace vormel
