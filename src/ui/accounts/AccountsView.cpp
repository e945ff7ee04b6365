#include "ui/accounts/AccountsView.h"

#include "model/AppSettings.h"
#include "ui/kit/EmptyState.h"

#include <QVBoxLayout>

namespace vormel {

AccountsView::AccountsView(AppSettings& settings, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_empty(new EmptyState(Glyph::personKey, this))
{
    setObjectName(QStringLiteral("accountsView"));
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_empty);
    connect(&settings, &AppSettings::languageSet, this, &AccountsView::retranslate);
    retranslate();
}

void AccountsView::retranslate()
{
    const AppLanguage language = m_settings.language.value();
    m_empty->setTexts(pair(language, u"No Accounts", u"Nessun account"),
                      pair(language, u"Add premium credentials to unlock downloads.",
                           u"Aggiungi le credenziali premium per sbloccare i download."));
}

} // namespace vormel
