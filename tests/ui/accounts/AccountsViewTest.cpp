#include "ui/accounts/AccountsView.h"

#include "ui/accounts/AccountsPage.h"
#include "ui/accounts/Plans.h"

#include <QApplication>
#include <QLineEdit>
#include <QScrollArea>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::goldPlan;

class AccountsViewTest : public fixtures::AccountsPage
{
protected:
    [[nodiscard]] QToolButton& addButton() const { return fixtures::partOf<QToolButton>(page, "addAccount"); }
    [[nodiscard]] QWidget& emptyState() const { return fixtures::partOf<QWidget>(page, "accountsEmptyState"); }
    [[nodiscard]] QString emptyText(const char* name) const { return fixtures::partOf<QLabel>(page, name).text(); }
    [[nodiscard]] QStringList names() const
    {
        QStringList all;
        for (const AccountRow* row : rows())
            all << row->account().username;
        return all;
    }
    void type(const char* field, const QString& text) const
    {
        auto& line = fixtures::partOf<QLineEdit>(sheet(), field);
        line.selectAll();
        QTest::keyClicks(&line, text);
    }
    void openNew()
    {
        QTest::mouseClick(&addButton(), Qt::LeftButton);
        fixtures::turnEventLoop();
    }
    void addByForm(const QString& username, const QString& password)
    {
        openNew();
        type("accountUsername", username);
        type("accountPassword", password);
        clickInSheet("saveAccount");
    }
    [[nodiscard]] QString secretOf(const HostAccount& account) const
    {
        return engine.secrets.kept.value(keychainAccountKey(account, HostProfiles()));
    }
    [[nodiscard]] QString focus() const
    {
        const QWidget* const focused = page.window()->focusWidget();
        for (int place = 0; place < rows().size(); ++place) {
            if (focused && row(place).isAncestorOf(focused))
                return names().at(place) + u' ' + focused->objectName();
        }
        return focused ? focused->objectName() : QString();
    }
    [[nodiscard]] bool isInSight(const QWidget& part) const
    {
        const QWidget& view = *fixtures::partOf<QScrollArea>(page, "accountsPage").viewport();
        return view.rect().contains(QRect(part.mapTo(&view, QPoint()), part.size()));
    }
};

TEST_F(AccountsViewTest, SaysThatThereIsNoAccount)
{
    EXPECT_TRUE(emptyState().isVisible());
    EXPECT_EQ(emptyText("emptyTitle"), u"No Accounts");
    EXPECT_EQ(emptyText("emptyText"), u"Add premium credentials to unlock downloads.");
    useItalian();
    EXPECT_EQ(emptyText("emptyTitle"), u"Nessun account");
    EXPECT_EQ(emptyText("emptyText"), u"Aggiungi le credenziali premium per sbloccare i download.");
    add(u"anna"_s);
    EXPECT_FALSE(emptyState().isVisible());
    accounts().set({});
    EXPECT_TRUE(emptyState().isVisible());
    EXPECT_TRUE(rows().isEmpty());
}

TEST_F(AccountsViewTest, TheToolBarOffersToAddAnAccount)
{
    EXPECT_EQ(addButton().text(), u"Add Account");
    EXPECT_FALSE(addButton().icon().isNull());
    useItalian();
    EXPECT_EQ(addButton().text(), u"Aggiungi Account");
    EXPECT_EQ(addButton().accessibleName(), addButton().text());
}

TEST_F(AccountsViewTest, HasARowForEachAccountInTheStoredOrder)
{
    for (const QString& name : {u"one"_s, u"two"_s, u"three"_s})
        add(name);
    EXPECT_EQ(names().join(u' '), u"one two three");
    std::vector<HostAccount> list = accounts().list();
    std::swap(list[0], list[2]);
    accounts().set(list);
    fixtures::turnEventLoop();
    EXPECT_EQ(names().join(u' '), u"three two one");
}

TEST_F(AccountsViewTest, ShowsTheAccountsOfAnEarlierRunAtOnce)
{
    add(u"anna"_s);
    const AccountsView another(desktop.ports());
    EXPECT_EQ(another.findChildren<AccountRow*>().size(), 1);
}

TEST_F(AccountsViewTest, AFilledFormAddsAnAccountWithItsPassword)
{
    addByForm(u"anna"_s, u"first"_s);
    addByForm(u"bert"_s, u"second"_s);
    EXPECT_FALSE(isSheetOpen());
    EXPECT_EQ(names().join(u' '), u"anna bert");
    ASSERT_EQ(accounts().list().size(), 2U);
    EXPECT_EQ(secretOf(accounts().list()[0]), u"first");
    EXPECT_EQ(secretOf(accounts().list()[1]), u"second");
}

TEST_F(AccountsViewTest, OneSheetIsOpenAtATime)
{
    add(u"anna"_s);
    openNew();
    EXPECT_TRUE(sheet().isModal());
    addButton().click();
    part<QAbstractButton>(0, "editAccount").click();
    EXPECT_EQ(page.findChildren<AccountEditView*>().size(), 1);
    clickInSheet("cancelAccount");
    EXPECT_FALSE(isSheetOpen());
    EXPECT_EQ(accounts().list().size(), 1U);
}

TEST_F(AccountsViewTest, AnEditedAccountKeepsItsPlaceAndId)
{
    const HostAccount anna = add(u"anna"_s);
    add(u"bert"_s);
    engine.secrets.kept.insert(keychainAccountKey(anna, HostProfiles()), u"first"_s);
    click(0, "editAccount");
    type("accountUsername", u"anne"_s);
    type("accountPassword", u"second"_s);
    clickInSheet("saveAccount");
    EXPECT_EQ(names().join(u' '), u"anne bert");
    const HostAccount& edited = accounts().list()[0];
    EXPECT_EQ(edited.id, anna.id);
    EXPECT_EQ(secretOf(edited), u"second");
    EXPECT_FALSE(engine.secrets.kept.contains(keychainAccountKey(anna, HostProfiles())));
}

TEST_F(AccountsViewTest, AnEditedAccountStartsOverAlsoIfOnlyItsPasswordIsAnother)
{
    const HostAccount anna = add(u"anna"_s);
    add(u"bert"_s);
    engine.secrets.kept.insert(keychainAccountKey(anna, HostProfiles()), u"first"_s);
    for (int place : {0, 1})
        click(place, "checkAccount");
    answer(0, goldPlan());
    answer(1, goldPlan());
    click(0, "editAccount");
    clickInSheet("saveAccount");
    EXPECT_EQ(row(0).state().testStatus(), AccountTestStatus::idle);
    EXPECT_EQ(row(1).state().testStatus(), AccountTestStatus::success);
}

TEST_F(AccountsViewTest, EditingStopsACheckThatIsUnderWay)
{
    const HostAccount anna = add(u"anna"_s);
    engine.secrets.kept.insert(keychainAccountKey(anna, HostProfiles()), u"first"_s);
    click(0, "checkAccount");
    click(0, "editAccount");
    EXPECT_FALSE(log->checks[0].stop.stop_requested());
    clickInSheet("saveAccount");
    EXPECT_TRUE(log->checks[0].stop.stop_requested());
    answer(0, goldPlan());
    EXPECT_EQ(row(0).state().testStatus(), AccountTestStatus::idle);
}

TEST_F(AccountsViewTest, ACancelledFormChangesNothing)
{
    add(u"anna"_s);
    click(0, "checkAccount");
    answer(0, goldPlan());
    click(0, "editAccount");
    type("accountUsername", u"anne"_s);
    clickInSheet("cancelAccount");
    EXPECT_EQ(names().join(u' '), u"anna");
    EXPECT_EQ(row(0).state().testStatus(), AccountTestStatus::success);
    EXPECT_TRUE(engine.secrets.kept.isEmpty());
}

TEST_F(AccountsViewTest, DeletesWithoutAQuestionWithThePassword)
{
    const HostAccount anna = add(u"anna"_s);
    add(u"bert"_s);
    engine.secrets.kept.insert(keychainAccountKey(anna, HostProfiles()), u"first"_s);
    click(0, "deleteAccount");
    EXPECT_EQ(names().join(u' '), u"bert");
    EXPECT_EQ(accounts().list().size(), 1U);
    EXPECT_TRUE(engine.secrets.kept.isEmpty());
}

TEST_F(AccountsViewTest, DeletingAnAccountDuringItsCheckLeavesTheOtherRowsAlone)
{
    for (const QString& name : {u"one"_s, u"two"_s, u"three"_s})
        add(name);
    for (int place : {0, 1, 2})
        click(place, "checkAccount");
    answer(2, goldPlan());
    click(1, "deleteAccount");
    EXPECT_TRUE(log->checks[1].stop.stop_requested());
    EXPECT_FALSE(log->checks[0].stop.stop_requested());
    answer(1, ResolverError::authenticationFailed());
    EXPECT_EQ(names().join(u' '), u"one three");
    EXPECT_EQ(row(0).state().testStatus(), AccountTestStatus::testing);
    EXPECT_EQ(row(1).state().testStatus(), AccountTestStatus::success);
    answer(0, goldPlan());
    EXPECT_EQ(row(0).state().testStatus(), AccountTestStatus::success);
}

TEST_F(AccountsViewTest, ACancelledSignInLeavesARedDotAndSaysSo)
{
    add(u"anna"_s, SupportedHost::terabytez);
    click(0, "checkAccount");
    answer(0, fixtures::loginRequired(SupportedHost::terabytez));
    EXPECT_EQ(button(0), u"Checking...");
    desktop.signIn.calls.at(0).answer->deliver({});
    EXPECT_EQ(text(0, "checkMessage"), u"Sign-in cancelled");
    EXPECT_EQ(row(0).state().testStatus().kind(), AccountTestStatus::failed);
    useItalian();
    EXPECT_EQ(text(0, "checkMessage"), u"Accesso annullato");
}

TEST_F(AccountsViewTest, ChecksStopWhenThePageGoes)
{
    auto* another = new AccountsView(desktop.ports());
    add(u"anna"_s);
    another->findChild<QAbstractButton*>(u"checkAccount"_s)->click();
    ASSERT_EQ(log->checks.size(), 1U);
    delete another;
    EXPECT_TRUE(log->checks[0].stop.stop_requested());
    answer(0, goldPlan());
}

TEST_F(AccountsViewTest, NeverWaitsForALockedKeyring)
{
    engine.secrets.lock();
    addByForm(u"anna"_s, u"first"_s);
    EXPECT_EQ(names().join(u' '), u"anna");
    click(0, "editAccount");
    type("accountPassword", u"second"_s);
    clickInSheet("saveAccount");
    click(0, "deleteAccount");
    EXPECT_TRUE(emptyState().isVisible());
    engine.secrets.unlock();
    EXPECT_TRUE(engine.secrets.kept.isEmpty());
}

TEST_F(AccountsViewTest, TwoAccountsOfOneLoginAreAllowedAndShareTheirPassword)
{
    addByForm(u"anna"_s, u"first"_s);
    addByForm(u"anna"_s, u"second"_s);
    EXPECT_EQ(names().join(u' '), u"anna anna");
    EXPECT_EQ(engine.secrets.kept.size(), 1);
    click(0, "deleteAccount");
    EXPECT_EQ(secretOf(accounts().list().at(0)), u"second");
}

TEST_F(AccountsViewTest, TheFocusFollowsTheWork)
{
    addByForm(u"anna"_s, u"x"_s);
    EXPECT_EQ(focus(), u"anna checkAccount");
    addByForm(u"bert"_s, u"x"_s);
    addByForm(u"carl"_s, u"x"_s);
    EXPECT_EQ(focus(), u"carl checkAccount");
    click(1, "editAccount");
    clickInSheet("saveAccount");
    EXPECT_EQ(focus(), u"bert editAccount");
    click(1, "deleteAccount");
    EXPECT_EQ(focus(), u"carl checkAccount");
    click(1, "deleteAccount");
    EXPECT_EQ(focus(), u"anna checkAccount");
    click(0, "deleteAccount");
    EXPECT_EQ(focus(), u"addAccount");
}

TEST_F(AccountsViewTest, DeleteAndArrowKeysWorkInARow)
{
    for (const QString& name : {u"one"_s, u"two"_s, u"three"_s})
        add(name);
    const auto press = [this](Qt::Key key) {
        QTest::keyClick(page.window()->focusWidget(), key);
        fixtures::turnEventLoop();
        return focus();
    };
    part(0, "editAccount").setFocus();
    EXPECT_EQ(press(Qt::Key_Up), u"one editAccount");
    EXPECT_EQ(press(Qt::Key_Down), u"two editAccount");
    EXPECT_EQ(press(Qt::Key_Down), u"three editAccount");
    EXPECT_EQ(press(Qt::Key_Down), u"three editAccount");
    EXPECT_EQ(press(Qt::Key_Up), u"two editAccount");
    EXPECT_EQ(press(Qt::Key_Delete), u"three checkAccount");
    EXPECT_EQ(names().join(u' '), u"one three");
    QTest::keyClick(page.window()->focusWidget(), Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_EQ(rows().size(), 2);
}

TEST_F(AccountsViewTest, AHeldDeleteKeyDeletesOneAccount)
{
    for (const QString& name : {u"one"_s, u"two"_s, u"three"_s})
        add(name);
    part(0, "checkAccount").setFocus();
    for (const bool isRepeated : {false, true, true}) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, QString(), isRepeated);
        QApplication::sendEvent(page.window()->focusWidget(), &held);
        fixtures::turnEventLoop();
    }
    EXPECT_EQ(names().join(u' '), u"two three");
}

TEST_F(AccountsViewTest, FiftyAccountsScrollAndAreReachedInTheirOrder)
{
    for (int i = 0; i < 50; ++i)
        add(u"user%1"_s.arg(i));
    EXPECT_EQ(rows().size(), 50);
    click(20, "editAccount"); // which makes this row anew
    type("accountPassword", u"x"_s);
    clickInSheet("saveAccount");
    part(18, "deleteAccount").setFocus();
    QStringList order;
    for (int i = 0; i < 9; ++i) {
        QTest::keyClick(page.window()->focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(isInSight(*page.window()->focusWidget())) << qPrintable(focus());
        order << focus();
    }
    EXPECT_EQ(order.join(u','), u"user19 checkAccount,user19 editAccount,user19 deleteAccount,"
                                u"user20 checkAccount,user20 editAccount,user20 deleteAccount,"
                                u"user21 checkAccount,user21 editAccount,user21 deleteAccount");
    addByForm(u"last"_s, u"x"_s);
    EXPECT_TRUE(isInSight(row(50)));
}

} // namespace
} // namespace vormel
