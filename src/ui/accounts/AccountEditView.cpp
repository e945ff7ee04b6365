#include "ui/accounts/AccountEditView.h"

#include "engine/accounts/Accounts.h"
#include "kit/BoundText.h"
#include "kit/SheetButton.h"
#include "kit/StyledLabel.h"
#include "kit/ToggleSwitch.h"
#include "platform/async/Spawn.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Above the field that it names.
void addField(QVBoxLayout& column, StyledLabel* label, QWidget* field)
{
    constexpr int gap = 4;
    auto* both = new QVBoxLayout;
    both->setSpacing(gap);
    both->addWidget(label);
    both->addWidget(field);
    label->setBuddy(field);
    column.addLayout(both);
}

} // namespace

AccountEditView::AccountEditView(AppSettings& settings, const std::vector<HostLabel>& hosts, QWidget* parent)
    : QDialog(parent)
    , m_settings(settings)
    , m_title(new StyledLabel(StyledLabel::Style::title, Tint::text, this))
    , m_hostLabel(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
    , m_host(new QComboBox(this))
    , m_usernameLabel(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
    , m_username(new QLineEdit(this))
    , m_passwordLabel(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
    , m_password(new QLineEdit(this))
    , m_enabledLabel(new StyledLabel(StyledLabel::Style::body, Tint::text, this))
    , m_enabled(new ToggleSwitch(this))
    , m_cancel(new SheetButton(this))
    , m_save(new SheetButton(this))
{
    setObjectName(u"accountEditView"_s);
    setWindowModality(Qt::WindowModal);
    setUpParts(hosts);
    layOut();
    connectParts();
    bindTexts();
    judge();
    m_username->setFocus();
}

void AccountEditView::setUpParts(const std::vector<HostLabel>& hosts)
{
    m_title->setObjectName(u"accountTitle"_s);
    m_host->setObjectName(u"accountHost"_s);
    m_username->setObjectName(u"accountUsername"_s);
    m_password->setObjectName(u"accountPassword"_s);
    m_enabled->setObjectName(u"accountEnabled"_s);
    m_enabledLabel->setObjectName(u"accountEnabledLabel"_s);
    m_cancel->setObjectName(u"cancelAccount"_s);
    m_save->setObjectName(u"saveAccount"_s);
    for (const HostLabel& host : hosts)
        m_host->addItem(host.text, static_cast<int>(host.host));
    m_password->setEchoMode(QLineEdit::Password);
    for (QLineEdit* field : {m_username, m_password})
        field->setTextMargins(4, 3, 4, 3);
    m_enabled->setChecked(true);
    m_cancel->setAutoDefault(false);
    m_save->setDefault(true);
}

void AccountEditView::layOut()
{
    constexpr int width = 360;
    constexpr int margin = 24;
    auto* toggle = new QHBoxLayout;
    toggle->addWidget(m_enabledLabel, 1);
    toggle->addWidget(m_enabled);
    m_enabledLabel->setBuddy(m_enabled);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addStretch();
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_save);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(14);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(m_title);
    addField(*column, m_hostLabel, m_host);
    addField(*column, m_usernameLabel, m_username);
    addField(*column, m_passwordLabel, m_password);
    column->addLayout(toggle);
    column->addSpacing(4);
    column->addLayout(buttons);
    m_username->setFixedWidth(width - 2 * margin);
}

void AccountEditView::connectParts()
{
    connect(m_username, &QLineEdit::textChanged, this, &AccountEditView::judge);
    connect(m_password, &QLineEdit::textChanged, this, &AccountEditView::judge);
    connect(m_password, &QLineEdit::textEdited, this, [this] { m_isPasswordTouched = true; });
    connect(m_cancel, &QPushButton::clicked, this, &AccountEditView::reject);
    connect(m_save, &QPushButton::clicked, this, &AccountEditView::save);
}

void AccountEditView::bindTexts()
{
    constexpr TextPair host{u"Host", u"Host"};
    constexpr TextPair username{u"Username / Email", u"Nome utente / Email"};
    constexpr TextPair password{u"Password", u"Password"};
    constexpr TextPair enabled{u"Account enabled", u"Account abilitato"};
    bindText(m_hostLabel, &QLabel::setText, m_settings, host);
    bindText(m_host, &QWidget::setAccessibleName, m_settings, host);
    // The name of a combo box is its value for some screen readers.
    bindText(m_host, &QWidget::setAccessibleDescription, m_settings, host);
    bindText(m_usernameLabel, &QLabel::setText, m_settings, username);
    bindText(m_username, &QWidget::setAccessibleName, m_settings, username);
    bindText(m_passwordLabel, &QLabel::setText, m_settings, password);
    bindText(m_password, &QWidget::setAccessibleName, m_settings, password);
    bindText(m_enabledLabel, &QLabel::setText, m_settings, enabled);
    bindText(m_enabled, &QWidget::setAccessibleName, m_settings, enabled);
    bindText(m_cancel, &QPushButton::setText, m_settings, {u"Cancel", u"Annulla"});
    bindText(m_save, &QPushButton::setText, m_settings, {u"Save", u"Salva"});
    followLanguage(this, m_settings, [this] { showTitle(); });
}

void AccountEditView::showTitle()
{
    const AppLanguage language = m_settings.language.value();
    const QString title = m_id.isNull() ? pair(language, u"New Account", u"Nuovo Account")
                                        : pair(language, u"Edit Account", u"Modifica Account");
    setWindowTitle(title);
    m_title->setText(title);
    m_password->setPlaceholderText(
        m_isAwaitingPassword ? pair(language, u"Waiting for the stored password…", u"In attesa della password salvata…")
                             : QString());
}

void AccountEditView::edit(const HostAccount& existingAccount, Accounts& accounts)
{
    m_id = existingAccount.id;
    m_host->setCurrentIndex(m_host->findData(static_cast<int>(existingAccount.host)));
    m_username->setText(existingAccount.username);
    m_enabled->setChecked(existingAccount.isEnabled);
    setAwaitingPassword(true);
    spawn(fillPassword(accounts, existingAccount, m_lifetime.watch()));
}

// A locked keyring asks the user first, who may take minutes.
QCoro::Task<> AccountEditView::fillPassword(Accounts& accounts, HostAccount account, Lifetime::Watch lifetime)
{
    const QString password = co_await accounts.loadPassword(account);
    if (lifetime.isOver())
        co_return;
    setAwaitingPassword(false);
    if (!m_isPasswordTouched)
        m_password->setText(password);
}

void AccountEditView::setAwaitingPassword(bool isAwaiting)
{
    m_isAwaitingPassword = isAwaiting;
    showTitle();
}

void AccountEditView::judge()
{
    m_save->setEnabled(!m_username->text().isEmpty() && !m_password->text().isEmpty());
}

void AccountEditView::save()
{
    const HostAccount account{m_id.isNull() ? QUuid::createUuid() : m_id,
                              static_cast<SupportedHost>(m_host->currentData().toInt()), m_username->text(),
                              m_enabled->isChecked()};
    const QString password = m_password->text();
    accept();
    Q_EMIT saved(account, password);
}

} // namespace vormel
