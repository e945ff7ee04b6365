#include "ui/accounts/AccountsView.h"

#include "engine/DownloadManager.h"
#include "kit/BoundText.h"
#include "kit/EmptyState.h"
#include "kit/GlyphIcon.h"
#include "kit/ScrollPage.h"
#include "kit/Separator.h"
#include "platform/async/Spawn.h"
#include "platform/web/KeptCookies.h"
#include "resolvers/ResolverTables.h"
#include "ui/accounts/AccessibleAccounts.h"
#include "ui/accounts/AccountEditView.h"
#include "ui/accounts/AccountList.h"
#include "ui/accounts/PasswordPlaceNote.h"

#include <QHBoxLayout>
#include <QStackedLayout>
#include <QTimer>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr int widestList = 760; // what belongs together is not torn apart

/// Assistive technology may ask for the list as soon as it is there, and keeps what it gets.
AccountList* makeAccountList(const ViewPorts& ports, const std::vector<HostLabel>& hosts, QWidget* parent)
{
    installAccountsAccessibility();
    return new AccountList(ports, hosts, parent);
}

} // namespace

AccountsView::AccountsView(const ViewPorts& ports, QWidget* parent)
    : QWidget(parent)
    , m_ports(ports)
    , m_hosts(hostLabels(ports.manager.resolvers().profiles()))
    , m_add(new QToolButton(this))
    , m_page(new ScrollPage(widestList, this))
    , m_list(makeAccountList(ports, m_hosts, m_page->column()))
    , m_empty(new EmptyState(Glyph::personKey, this))
    , m_pages(new QStackedLayout)
{
    setObjectName(u"accountsView"_s);
    layOut();
    bindTexts();
    connect(m_add, &QToolButton::clicked, this, &AccountsView::add);
    connect(m_list, &AccountList::signOutRequested, this, &AccountsView::signOut);
    connect(m_list, &AccountList::editRequested, this, &AccountsView::edit);
    connect(m_list, &AccountList::deleteRequested, this, &AccountsView::remove);
    connect(&ports.manager.accounts(), &Accounts::changed, this, &AccountsView::showAccounts);
    showAccounts();
}

void AccountsView::layOut()
{
    m_page->setObjectName(u"accountsPage"_s);
    m_page->addPart(m_list);
    m_empty->setObjectName(u"accountsEmptyState"_s);
    m_empty->setAutoFillBackground(true);
    m_empty->setBackgroundRole(QPalette::Base);
    m_pages->addWidget(m_page);
    m_pages->addWidget(m_empty);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeToolBar());
    column->addWidget(new Separator(Qt::Horizontal, this));
    column->addLayout(m_pages, 1);
    column->addWidget(new PasswordPlaceNote(m_ports.manager.accounts(), m_ports.manager.settings(), this));
}

QWidget* AccountsView::makeToolBar()
{
    auto* bar = new QWidget(this);
    bar->setObjectName(u"accountsToolBar"_s);
    m_add->setObjectName(u"addAccount"_s);
    m_add->setIcon(glyphIcon(Glyph::plus));
    m_add->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_add->setAutoRaise(true);
    m_add->setFocusPolicy(Qt::TabFocus);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(10, 8, 10, 8);
    row->addWidget(m_add);
    row->addStretch();
    return bar;
}

void AccountsView::bindTexts()
{
    const AppSettings& settings = m_ports.manager.settings();
    bindText(m_add, &QToolButton::setText, settings, {u"Add Account", u"Aggiungi Account"});
    bindText(m_add, &QWidget::setAccessibleName, settings, {u"Add Account", u"Aggiungi Account"});
    bindText(m_empty, &EmptyState::setTitle, settings, {u"No Accounts", u"Nessun account"});
    bindText(m_empty, &EmptyState::setText, settings,
             {u"Add premium credentials to unlock downloads.",
              u"Aggiungi le credenziali premium per sbloccare i download."});
}

void AccountsView::showAccounts()
{
    const std::vector<HostAccount>& accounts = m_ports.manager.accounts().list();
    m_list->setAccounts(accounts);
    if (accounts.empty())
        m_pages->setCurrentWidget(m_empty);
    else
        m_pages->setCurrentWidget(m_page);
}

AccountEditView* AccountsView::openSheet()
{
    if (m_sheet)
        return nullptr;
    m_sheet = new AccountEditView(m_ports.manager.settings(), m_hosts, this);
    m_sheet->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_sheet, &AccountEditView::saved, this, &AccountsView::save);
    m_sheet->open();
    return m_sheet;
}

void AccountsView::add()
{
    static_cast<void>(openSheet());
}

void AccountsView::edit(const HostAccount& account)
{
    if (AccountEditView* const sheet = openSheet())
        sheet->edit(account, m_ports.manager.accounts());
}

void AccountsView::save(const HostAccount& account, const QString& password)
{
    const bool isNew = m_list->placeOf(account.id) < 0;
    m_list->startOver(account.id);
    spawn(m_ports.manager.accounts().put(account, password)); // the list changes at once
    scrollTo(
        m_list->focusRow(m_list->placeOf(account.id), isNew ? AccountRow::Control::check : AccountRow::Control::edit));
}

void AccountsView::signOut(SupportedHost host)
{
    spawn(m_ports.keptCookies.forget());
    m_list->signedOut(host);
}

/// The focus goes on to the next account, and not to a button that would delete it.
void AccountsView::remove(const HostAccount& account)
{
    const int place = m_list->placeOf(account.id);
    spawn(m_ports.manager.accounts().remove(account.id));
    if (QWidget* const row = m_list->focusRow(place, AccountRow::Control::check))
        scrollTo(row);
    else
        m_add->setFocus();
}

/// Behind the layout, which has yet to find a place for it.
void AccountsView::scrollTo(QWidget* row)
{
    const auto scroll = [this, shown = QPointer(row)] {
        if (shown)
            m_page->ensureWidgetVisible(shown);
    };
    QTimer::singleShot(0, this, scroll);
}

} // namespace vormel
