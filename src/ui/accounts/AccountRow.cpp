#include "ui/accounts/AccountRow.h"

#include "engine/DownloadManager.h"
#include "kit/BoundText.h"
#include "kit/Card.h"
#include "kit/ElidedLabel.h"
#include "kit/GlyphIcon.h"
#include "kit/TagLabel.h"
#include "resolvers/ResolverTables.h"
#include "ui/accounts/CheckButton.h"
#include "ui/accounts/PremiumBlock.h"
#include "ui/accounts/StatusDot.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QKeyEvent>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace vormel {

AccountRow::AccountRow(const ViewPorts& ports, HostAccount account, QString hostLabel, QWidget* parent)
    : QWidget(parent)
    , m_ports(ports)
    , m_account(std::move(account))
    , m_hostLabel(std::move(hostLabel))
    , m_check(new AccountCheck({ports.manager, ports.signIn}, m_account, this))
    , m_dot(new StatusDot(this))
    , m_host(new ElidedLabel(StyledLabel::Style::headline, Tint::text, this))
    , m_username(new ElidedLabel(StyledLabel::Style::body, Tint::secondary, this))
    , m_premium(new PremiumBlock(this))
    , m_disabled(new TagLabel(Tint::orange, this))
    , m_message(new StyledLabel(StyledLabel::Style::caption, Tint::red, this))
    , m_checkButton(new CheckButton(this))
    , m_signOut(new SheetButton(this))
    , m_edit(new SheetButton(this))
    , m_remove(new QToolButton(this))
    , m_line(new QHBoxLayout)
    , m_below(new QHBoxLayout)
    , m_lowest(new QHBoxLayout)
{
    nameParts();
    m_host->setWhole(m_hostLabel);
    m_username->setWhole(m_account.username);
    m_message->setWordWrap(true);
    setUpButtons();
    layOut();
    connect(m_check, &AccountCheck::changed, this, &AccountRow::showState);
    followLanguage(this, ports.manager.settings(), [this] { showTexts(); });
}

void AccountRow::nameParts()
{
    setObjectName(u"accountRow"_s);
    m_dot->setObjectName(u"statusDot"_s);
    m_host->setObjectName(u"accountHost"_s);
    m_username->setObjectName(u"accountUsername"_s);
    m_premium->setObjectName(u"premiumBlock"_s);
    m_disabled->setObjectName(u"accountDisabled"_s);
    m_message->setObjectName(u"checkMessage"_s);
    m_signOut->setObjectName(u"signOutAccount"_s);
    m_edit->setObjectName(u"editAccount"_s);
    m_remove->setObjectName(u"deleteAccount"_s);
}

void AccountRow::setUpButtons()
{
    constexpr int air = 10;
    m_checkButton->setAir(air);
    for (SheetButton* const button : {m_signOut, m_edit}) {
        button->setAir(air);
        button->setAutoDefault(true); // Return does what Space does
    }
    m_signOut->setVisible(m_ports.manager.resolvers().profiles().of(m_account.host).signsInInBrowser);
    m_remove->setIcon(glyphIcon(Glyph::trash, Tint::red));
    m_remove->setAutoRaise(true);
    m_remove->setFocusPolicy(Qt::StrongFocus);
    for (const Control each : allControls)
        control(each)->installEventFilter(this);
    connect(m_checkButton, &CheckButton::checkRequested, m_check, &AccountCheck::run);
    connect(m_signOut, &QPushButton::clicked, this, &AccountRow::signOutRequested);
    connect(m_edit, &QPushButton::clicked, this, &AccountRow::editRequested);
    connect(m_remove, &QToolButton::clicked, this, &AccountRow::deleteRequested);
}

void AccountRow::layOut()
{
    constexpr int spacing = 8;
    auto* names = new QVBoxLayout;
    names->setSpacing(2);
    names->addWidget(m_host);
    names->addWidget(m_username);
    m_disabled->setVisible(!m_account.isEnabled);
    m_line->setSpacing(spacing);
    m_line->addLayout(names, 1);
    for (QWidget* const each : {control(Control::check), control(Control::edit), control(Control::remove)})
        m_line->addWidget(each);
    m_below->setSpacing(spacing);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, Card::endOfRow, 0);
    grid->setHorizontalSpacing(spacing);
    grid->setVerticalSpacing(4);
    grid->addWidget(m_dot, 0, 0, Qt::AlignVCenter);
    grid->addLayout(m_line, 0, 1);
    grid->addWidget(m_premium, 1, 1);
    grid->addLayout(m_below, 2, 1);
    grid->addLayout(m_lowest, 3, 1);
    grid->setColumnStretch(1, 1);
    moveNotes(true);
}

/// What is told of the account stands before the controls; where there is too little room for that, below the names. So
/// does the control that not all rows have.
void AccountRow::moveNotes(bool areBeside)
{
    constexpr int behindNames = 1;
    constexpr int behindCheck = 4;
    m_areNotesBeside = areBeside;
    for (QBoxLayout* const line : {m_line, m_below, m_lowest}) {
        line->removeWidget(m_disabled);
        line->removeWidget(m_message);
        line->removeWidget(m_signOut);
    }
    QBoxLayout* const line = areBeside ? m_line : m_below;
    const int place = areBeside ? behindNames : 0;
    line->insertWidget(place, m_disabled, 0, Qt::AlignLeading | Qt::AlignVCenter);
    line->insertWidget(place + 1, m_message, areBeside ? 0 : 1);
    if (areBeside)
        m_line->insertWidget(behindCheck, m_signOut);
    else
        m_lowest->addWidget(m_signOut, 0, Qt::AlignTrailing);
    m_message->setAlignment((areBeside ? Qt::AlignTrailing : Qt::AlignLeading) | Qt::AlignVCenter);
}

QWidget* AccountRow::control(Control control) const
{
    switch (control) {
    case Control::check:
        return m_checkButton;
    case Control::signOut:
        return m_signOut;
    case Control::edit:
        return m_edit;
    case Control::remove:
        return m_remove;
    }
    Q_UNREACHABLE();
}

void AccountRow::focusOn(Control control)
{
    const bool isThere = control != Control::signOut || !m_signOut->isHidden();
    this->control(isThere ? control : Control::edit)->setFocus();
}

void AccountRow::showTexts()
{
    const AppLanguage language = m_ports.manager.settings().language.value();
    const QString name = m_hostLabel + u", "_s + m_account.username;
    const auto named = [&name](const QString& action) { return name + u": "_s + action; };
    setAccessibleName(name);
    m_disabled->setText(pair(language, u"Disabled", u"Disabilitato"));
    m_signOut->setText(pair(language, u"Sign out", u"Esci"));
    m_signOut->setAccessibleName(named(m_signOut->text()));
    m_edit->setText(pair(language, u"Edit", u"Modifica"));
    m_edit->setAccessibleName(named(m_edit->text()));
    m_remove->setToolTip(pair(language, u"Delete", u"Elimina"));
    m_remove->setAccessibleName(named(m_remove->toolTip()));
    showState();
}

void AccountRow::showState()
{
    const AppLanguage language = m_ports.manager.settings().language.value();
    const AccountTestStatus& status = state().testStatus();
    m_dot->setKind(status.kind());
    m_checkButton->showKind(status.kind(), language);
    m_checkButton->setAccessibleName(accessibleName() + u": "_s + m_checkButton->text());
    m_message->setText(status.message(language));
    m_message->setHidden(m_message->text().isEmpty());
    m_premium->setVisible(state().premiumInfo().has_value());
    if (state().premiumInfo())
        m_premium->showInfo(*state().premiumInfo(), language, m_ports.clock.wallNow());
    setAccessibleDescription(stateInWords());
    m_checkButton->setAccessibleDescription(stateInWords());
}

QString AccountRow::stateInWords() const
{
    const AppLanguage language = m_ports.manager.settings().language.value();
    QStringList words;
    if (!m_account.isEnabled)
        words << m_disabled->text();
    if (const std::optional<PremiumAccountInfo>& info = state().premiumInfo())
        words << info->plan << premiumDetails(*info, language);
    words << state().testStatus().message(language);
    words.removeAll(QString());
    return words.join(u", "_s);
}

bool AccountRow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto* const key = static_cast<QKeyEvent*>(event);
    const bool isPlain = (key->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    return (isPlain && takesKey(watched, key->key(), key->isAutoRepeat())) || QWidget::eventFilter(watched, event);
}

bool AccountRow::takesKey(QObject* watched, int key, bool isAutoRepeat)
{
    Control at = Control::check;
    for (const Control each : allControls) {
        if (control(each) == watched)
            at = each;
    }
    switch (key) {
    case Qt::Key_Delete:
        if (!isAutoRepeat) // or a key that is held would delete one account after the other
            Q_EMIT deleteRequested();
        return true;
    case Qt::Key_Up:
        Q_EMIT stepped(-1, at);
        return true;
    case Qt::Key_Down:
        Q_EMIT stepped(1, at);
        return true;
    default:
        return false;
    }
}

void AccountRow::resizeEvent(QResizeEvent* event)
{
    constexpr int roomy = 560;
    QWidget::resizeEvent(event);
    const int taken = m_signOut->isHidden() ? 0 : m_signOut->sizeHint().width();
    const bool areBeside = width() >= roomy + taken;
    if (areBeside != m_areNotesBeside)
        moveNotes(areBeside);
}

/// A plan may have ended since.
void AccountRow::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    showState();
}

} // namespace vormel
