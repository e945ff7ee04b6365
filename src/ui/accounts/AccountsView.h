#pragma once

#include "ui/ViewPorts.h"
#include "ui/accounts/HostLabel.h"

#include <QPointer>
#include <QWidget>

class QStackedLayout;
class QToolButton;

namespace vormel {

class AccountEditView;
class AccountList;
class EmptyState;
class ScrollPage;
struct HostAccount;

/// The page of the premium accounts: its tool bar, the accounts or an empty state, where passwords are kept if that is
/// worth a word, and the sheet of one account at a time. The ports outlive it.
class AccountsView final : public QWidget
{
    Q_OBJECT

public:
    explicit AccountsView(const ViewPorts& ports, QWidget* parent = nullptr);

private:
    void layOut();
    [[nodiscard]] QWidget* makeToolBar();
    void bindTexts();
    void showAccounts();
    [[nodiscard]] AccountEditView* openSheet();
    void add();
    void edit(const HostAccount& account);
    void save(const HostAccount& account, const QString& password);
    void signOut(SupportedHost host);
    void remove(const HostAccount& account);
    void scrollTo(QWidget* row);

    ViewPorts m_ports;
    std::vector<HostLabel> m_hosts;
    QToolButton* m_add;
    ScrollPage* m_page;
    AccountList* m_list;
    EmptyState* m_empty;
    QStackedLayout* m_pages;
    QPointer<AccountEditView> m_sheet;
};

} // namespace vormel
