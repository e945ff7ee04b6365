#include "ui/accounts/AccessibleAccounts.h"

#include "ui/accounts/AccountList.h"

#include <QAccessibleWidget>

namespace vormel {

void installAccountsAccessibility()
{
    QAccessible::installFactory([](const QString& /*className*/, QObject* object) -> QAccessibleInterface* {
        if (auto* const list = qobject_cast<AccountList*>(object))
            return new QAccessibleWidget(list, QAccessible::List);
        if (auto* const row = qobject_cast<AccountRow*>(object))
            return new QAccessibleWidget(row, QAccessible::ListItem);
        return nullptr;
    });
}

} // namespace vormel
