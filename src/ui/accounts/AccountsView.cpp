#include "ui/accounts/AccountsView.h"

#include "kit/BoundText.h"
#include "kit/EmptyState.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

AccountsView::AccountsView(const AppSettings& settings, QWidget* parent)
    : QWidget(parent)
{
    setObjectName(u"accountsView"_s);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    auto* empty = new EmptyState(Glyph::personKey, this);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(empty);
    bindText(empty, &EmptyState::setTitle, settings, {u"No Accounts", u"Nessun account"});
    bindText(empty, &EmptyState::setText, settings,
             {u"Add premium credentials to unlock downloads.",
              u"Aggiungi le credenziali premium per sbloccare i download."});
}

} // namespace vormel
