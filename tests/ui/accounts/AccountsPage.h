#pragma once

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "ui/FakeDesktop.h"
#include "ui/Part.h"
#include "ui/accounts/AccountEditView.h"
#include "ui/accounts/AccountRow.h"
#include "ui/accounts/AccountsView.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

namespace vormel::fixtures {

/// The page of the accounts, shown, over hosts whose answers the test gives.
class AccountsPage : public ::testing::Test
{
protected:
    AccountsPage()
    {
        page.resize(800, 500);
        page.show();
        page.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&page));
    }
    [[nodiscard]] Accounts& accounts() { return engine.manager().accounts(); }
    void useItalian() { engine.settings().language.set(AppLanguage::italian); }
    HostAccount add(const QString& username, SupportedHost host = SupportedHost::filestore, bool isEnabled = true)
    {
        const HostAccount account{QUuid::createUuid(), host, username, isEnabled};
        std::vector<HostAccount> list = accounts().list();
        list.push_back(account);
        accounts().set(list);
        turnEventLoop();
        return account;
    }

    /// From the top down.
    [[nodiscard]] QList<AccountRow*> rows() const
    {
        QList<AccountRow*> found = page.findChildren<AccountRow*>();
        found.removeIf([](const AccountRow* row) { return row->isHidden(); });
        std::sort(found.begin(), found.end(),
                  [](const AccountRow* one, const AccountRow* other) { return one->y() < other->y(); });
        return found;
    }
    [[nodiscard]] AccountRow& row(int place) const { return *rows().at(place); }
    template <typename T = QWidget>
    [[nodiscard]] T& part(int place, const char* name) const
    {
        return partOf<T>(row(place), name);
    }
    [[nodiscard]] QString text(int place, const char* name) const { return part<QLabel>(place, name).text(); }
    [[nodiscard]] QString button(int place) const { return part<QAbstractButton>(place, "checkAccount").text(); }
    void click(int place, const char* name) const
    {
        QTest::mouseClick(&part(place, name), Qt::LeftButton);
        turnEventLoop();
    }
    template <typename Result>
    void answer(std::size_t check, const Result& result)
    {
        log->checks.at(check).answer->deliver(result);
        turnEventLoop();
    }

    /// Of one account; there must be one.
    [[nodiscard]] AccountEditView& sheet() const { return partOf<AccountEditView>(page, "accountEditView"); }
    [[nodiscard]] bool isSheetOpen() const { return page.findChild<AccountEditView*>() != nullptr; }
    void clickInSheet(const char* name)
    {
        QTest::mouseClick(&partOf<QAbstractButton>(sheet(), name), Qt::LeftButton);
        turnEventLoop();
        page.activateWindow(); // as window managers do
        turnEventLoop();
    }

    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    EngineOnScript engine{fakeServices(log)};
    FakeDesktop desktop{engine};
    AccountsView page{desktop.ports()};
};

} // namespace vormel::fixtures
