#include "demo/AccountsOnScreen.h"

#include "app/MainWindow.h"
#include "demo/DemoScript.h"
#include "demo/Hands.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel::demo {

void AccountsOnScreen::openSheet() const
{
    m_window.showPage(Page::accounts);
    press(partInSight<QToolButton>(m_window, u"addAccount"_s));
}

void AccountsOnScreen::fillIn(const Login& login) const
{
    type(partInSight<QComboBox>(m_window, u"accountHost"_s), login.hostDomain);
    type(partInSight<QLineEdit>(m_window, u"accountUsername"_s), login.username);
    type(partInSight<QLineEdit>(m_window, u"accountPassword"_s), login.password);
}

void AccountsOnScreen::save() const
{
    press(partInSight<QPushButton>(m_window, u"saveAccount"_s));
}

QString AccountsOnScreen::missingSheet() const
{
    return unless(partInSight<QWidget>(m_window, u"accountEditView"_s), u"there is no sheet"_s);
}

QString AccountsOnScreen::missingEntry() const
{
    const auto* const button = partInSight<QPushButton>(m_window, u"saveAccount"_s);
    return unless(button && button->isEnabled(), u"there is nothing to be saved"_s);
}

QString AccountsOnScreen::missingAccounts(qsizetype accounts) const
{
    const QList<QWidget*> rows = m_window.findChildren<QWidget*>(u"accountRow"_s);
    const auto shown = std::ranges::count_if(rows, &QWidget::isVisible);
    return unless(shown == accounts && !missingSheet().isEmpty(), u"it is not in the list"_s);
}

} // namespace vormel::demo
