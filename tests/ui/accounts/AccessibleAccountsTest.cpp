#include "ui/accounts/AccessibleAccounts.h"

#include "ui/accounts/AccountsPage.h"

#include <QAccessible>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class AccessibleAccountsTest : public fixtures::AccountsPage
{
protected:
    [[nodiscard]] QAccessibleInterface& seen(const char* name) const
    {
        return *QAccessible::queryAccessibleInterface(&fixtures::partOf<QWidget>(page, name));
    }
};

TEST_F(AccessibleAccountsTest, AreAListWithAnItemForEachAccount)
{
    add(u"anna"_s);
    add(u"bert"_s, SupportedHost::terabytez);
    QAccessibleInterface& list = seen("accountList");
    EXPECT_EQ(list.role(), QAccessible::List);
    EXPECT_EQ(list.text(QAccessible::Name), u"Accounts");
    QStringList names;
    for (int i = 0; i < list.childCount(); ++i) {
        EXPECT_EQ(list.child(i)->role(), QAccessible::ListItem);
        names << list.child(i)->text(QAccessible::Name);
    }
    EXPECT_EQ(names.join(u'|'), u"filestore.example, anna|terabytez.example, bert");
    useItalian();
    EXPECT_EQ(list.text(QAccessible::Name), u"Account");
}

TEST_F(AccessibleAccountsTest, AnItemHasItsButtonsWhichCanBePressed)
{
    add(u"anna"_s);
    QAccessibleInterface* const check = QAccessible::queryAccessibleInterface(&part(0, "checkAccount"));
    EXPECT_EQ(check->parent(), seen("accountList").child(0));
    for (const char* name : {"checkAccount", "editAccount", "deleteAccount"})
        EXPECT_EQ(QAccessible::queryAccessibleInterface(&part(0, name))->role(), QAccessible::Button) << name;
    ASSERT_NE(check->actionInterface(), nullptr);
    check->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(fixtures::waitUntil([this] { return log->checks.size() == 1; })); // it shows the press first
}

TEST_F(AccessibleAccountsTest, TheFormSaysWhatItsFieldsAre)
{
    fixtures::partOf<QAbstractButton>(page, "addAccount").click();
    const auto role = [this](const char* name) {
        return QAccessible::queryAccessibleInterface(&fixtures::partOf<QWidget>(sheet(), name))->role();
    };
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&sheet())->text(QAccessible::Name), u"New Account");
    EXPECT_EQ(role("accountHost"), QAccessible::ComboBox);
    EXPECT_EQ(role("accountUsername"), QAccessible::EditableText);
    EXPECT_EQ(role("accountEnabled"), QAccessible::CheckBox);
    EXPECT_TRUE(QAccessible::queryAccessibleInterface(&fixtures::partOf<QWidget>(sheet(), "accountPassword"))
                    ->state()
                    .passwordEdit);
}

} // namespace
} // namespace vormel
