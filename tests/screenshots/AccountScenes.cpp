#include "screenshots/AccountScenes.h"

#include "ui/accounts/AccountRow.h"

#include <QAbstractButton>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace vormel::screenshots {

namespace {

constexpr qint64 gibibyte = 1024LL * 1024 * 1024;

using Answer = std::variant<PremiumAccountInfo, ResolverError>;

HostAccount account(SupportedHost host, const QString& username, bool isEnabled = true)
{
    return {QUuid::createUuid(), host, username, isEnabled};
}

void show(Stage& stage, const std::vector<HostAccount>& accounts)
{
    stage.engine.manager().accounts().set(accounts);
    stage.window.showPage(Page::accounts);
    stage.settle();
}

/// Checks the account of that place; without an answer the check goes on.
void check(Stage& stage, const HostAccount& account, const std::optional<Answer>& answer = {})
{
    for (const AccountRow* const row : stage.window.findChildren<AccountRow*>()) {
        if (row->account() == account)
            static_cast<QAbstractButton*>(row->control(AccountRow::Control::check))->click();
    }
    if (answer)
        stage.log->checks.back().answer->deliver(*answer);
    stage.settle();
}

PremiumAccountInfo premium(const Stage& stage, int days)
{
    const auto now = std::chrono::floor<std::chrono::seconds>(stage.engine.clock.wallNow().time_since_epoch());
    return {u"Premium"_s, QDateTime::fromSecsSinceEpoch(now.count() + days * 86400LL), 431 * gibibyte, 500 * gibibyte};
}

void one(Stage& stage)
{
    show(stage, {account(SupportedHost::filestore, u"anna.moretti@mail.example"_s)});
}

void states(Stage& stage)
{
    const std::vector<HostAccount> all{
        account(SupportedHost::filestore, u"anna.moretti@mail.example"_s),
        account(SupportedHost::filestore, u"bert"_s, false),
        account(SupportedHost::filestore, u"old-account"_s),
        account(SupportedHost::terabytez, u"anna.moretti@mail.example"_s),
        account(SupportedHost::filestore, u"a.user.name.that.is.so.long.that.it.fits.nowhere.in.any.window.of.any."
                                          u"width.that.a.desktop.may.have@a.mail.provider.with.a.long.name.example"_s),
        account(SupportedHost::filestore, u"carl"_s, false)};
    show(stage, all);
    check(stage, all[0], premium(stage, 112));
    check(stage, all[2], premium(stage, -3));
    check(stage, all[3], fixtures::loginRequired(SupportedHost::terabytez));
    stage.desktop.signIn.calls.back().answer->deliver({});
    check(stage, all[4], ResolverError::networkError(u"The server did not answer in time."_s));
    check(stage, all[5]);
}

void many(Stage& stage)
{
    std::vector<HostAccount> all;
    for (int i = 1; i <= 50; ++i)
        all.push_back(account(i % 3 == 0 ? SupportedHost::terabytez : SupportedHost::filestore,
                              u"member-%1"_s.arg(i, 2, 10, QChar(u'0')), i % 7 != 0));
    stage.engine.secrets.moveTo(SecretStore::Place::ownFile);
    show(stage, all);
}

void editSheet(Stage& stage)
{
    const HostAccount anna = account(SupportedHost::terabytez, u"anna.moretti@mail.example"_s);
    stage.engine.secrets.kept.insert(keychainAccountKey(anna, HostProfiles()), u"only a picture"_s);
    show(stage, {anna});
    stage.part<QAbstractButton>("editAccount").click();
}

void lockedSheet(Stage& stage)
{
    stage.engine.secrets.lock();
    editSheet(stage);
}

void newSheet(Stage& stage)
{
    one(stage);
    stage.part<QAbstractButton>("addAccount").click();
}

} // namespace

std::vector<Scene> accountScenes()
{
    return {
        {"accounts-empty", [](Stage& stage) { stage.window.showPage(Page::accounts); }},
        {"accounts-one", one},
        {"accounts-states", states},
        {"accounts-many", many},
        {"accounts-nowhere",
         [](Stage& stage) {
             stage.engine.secrets.moveTo(SecretStore::Place::nowhere);
             one(stage);
         }},
        {"sheet-account-new", newSheet},
        {"sheet-account-edit", editSheet},
        {"sheet-account-locked", lockedSheet},
    };
}

} // namespace vormel::screenshots
