#include "ui/accounts/AccountRow.h"

#include "fixtures/Contrast.h"
#include "kit/Theme.h"
#include "ui/accounts/AccountsPage.h"
#include "ui/accounts/Plans.h"

#include <QAccessible>
#include <QApplication>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::goldPlan;

class AccountRowTest : public fixtures::AccountsPage
{
protected:
    [[nodiscard]] bool isShown(const char* name) const { return part(0, name).isVisible(); }
    [[nodiscard]] QRect place(const char* name) const
    {
        return {part(0, name).mapTo(&row(0), QPoint()), part(0, name).size()};
    }
    [[nodiscard]] AccountTestStatus::Kind kind(int place = 0) const { return row(place).state().testStatus().kind(); }
    [[nodiscard]] QColor dot() const { return part(0, "statusDot").grab().toImage().pixelColor(4, 4); }
    [[nodiscard]] QString name(const char* control) const { return part(0, control).accessibleName(); }
};

TEST_F(AccountRowTest, ShowsTheHostsDomainAndTheUserName)
{
    add(u"anna"_s);
    add(u"bert@mail.example"_s, SupportedHost::terabytez);
    EXPECT_EQ(text(0, "accountHost"), u"filestore.example");
    EXPECT_EQ(text(0, "accountUsername"), u"anna");
    EXPECT_EQ(text(1, "accountHost"), u"terabytez.example");
    EXPECT_EQ(text(1, "accountUsername"), u"bert@mail.example");
}

TEST_F(AccountRowTest, SpeaksBothLanguages)
{
    add(u"anna"_s, SupportedHost::filestore, false);
    const auto texts = [this] {
        return QStringList{text(0, "accountDisabled"), button(0), part<QAbstractButton>(0, "editAccount").text(),
                           part(0, "deleteAccount").toolTip()}
            .join(u'|');
    };
    EXPECT_EQ(texts(), u"Disabled|Check|Edit|Delete");
    useItalian();
    EXPECT_EQ(texts(), u"Disabilitato|Verifica|Modifica|Elimina");
}

TEST_F(AccountRowTest, TellsOnlyOfADisabledAccountThatItIsDisabled)
{
    add(u"anna"_s);
    EXPECT_FALSE(isShown("accountDisabled"));
    accounts().set({});
    add(u"anna"_s, SupportedHost::filestore, false);
    EXPECT_TRUE(isShown("accountDisabled"));
}

TEST_F(AccountRowTest, HasItsPartsInOrderFromLeftToRight)
{
    add(u"anna"_s, SupportedHost::filestore, false);
    click(0, "checkAccount");
    answer(0, ResolverError::authenticationFailed());
    int right = -1;
    for (const char* name : {"statusDot", "accountUsername", "accountDisabled", "checkMessage", "checkAccount",
                             "editAccount", "deleteAccount"}) {
        EXPECT_TRUE(isShown(name)) << name;
        EXPECT_GT(place(name).left(), right) << name;
        right = place(name).right();
    }
    EXPECT_LE(right, row(0).width());
}

TEST_F(AccountRowTest, TheButtonThatDeletesIsARedTrashCanWithoutABorder)
{
    add(u"anna"_s);
    auto& trash = part<QToolButton>(0, "deleteAccount");
    EXPECT_TRUE(trash.autoRaise());
    const QImage icon = trash.icon().pixmap(trash.iconSize()).toImage();
    const QColor red = Theme(QApplication::palette()).color(Tint::red);
    bool isRed = false;
    for (int i = 0; i < icon.width() * icon.height(); ++i)
        isRed = isRed || icon.pixelColor(i % icon.width(), i / icon.width()) == red;
    EXPECT_TRUE(isRed);
}

TEST_F(AccountRowTest, ACheckAsksTheHostAndShowsThatItDoes)
{
    const HostAccount anna = add(u"anna"_s);
    const Theme theme(QApplication::palette());
    click(0, "checkAccount");
    ASSERT_EQ(log->checks.size(), 1U);
    EXPECT_EQ(log->checks[0].account, anna);
    EXPECT_EQ(button(0), u"Checking...");
    EXPECT_EQ(dot(), theme.color(Tint::orange));
    EXPECT_FALSE(isShown("premiumBlock"));
    click(0, "checkAccount");
    EXPECT_EQ(log->checks.size(), 1U);
}

TEST_F(AccountRowTest, ASuccessShowsThePlanBeneathTheNames)
{
    add(u"anna"_s);
    click(0, "checkAccount");
    answer(0, goldPlan());
    EXPECT_EQ(button(0), u"Refresh");
    EXPECT_EQ(dot(), Theme(QApplication::palette()).color(Tint::green));
    EXPECT_EQ(text(0, "premiumPlan"), u"Gold");
    EXPECT_EQ(text(0, "premiumDetails"), u"· 1 GB traffic");
    EXPECT_GT(place("premiumBlock").top(), place("accountUsername").bottom());
    EXPECT_FALSE(isShown("checkMessage"));
    useItalian();
    EXPECT_EQ(text(0, "premiumDetails"), u"· 1 GB traffico");
}

TEST_F(AccountRowTest, AFailureShowsItsMessageBesideTheButton)
{
    add(u"anna"_s);
    click(0, "checkAccount");
    answer(0, ResolverError::networkError(u"The server could not be found."_s));
    const QColor red = Theme(QApplication::palette()).color(Tint::red);
    EXPECT_EQ(button(0), u"Retry");
    EXPECT_EQ(dot(), red);
    EXPECT_EQ(text(0, "checkMessage"), u"Network error: The server could not be found.");
    EXPECT_EQ(part(0, "checkMessage").palette().color(QPalette::WindowText), red);
    EXPECT_LT(place("checkMessage").right(), place("checkAccount").left());
    EXPECT_LT(place("checkMessage").top(), place("checkAccount").bottom());
    EXPECT_FALSE(isShown("premiumBlock"));
}

TEST_F(AccountRowTest, AnotherCheckForgetsWhatTheLastOneTold)
{
    add(u"anna"_s);
    click(0, "checkAccount");
    answer(0, goldPlan());
    click(0, "checkAccount");
    EXPECT_FALSE(isShown("premiumBlock"));
    EXPECT_EQ(button(0), u"Checking...");
    answer(1, ResolverError::authenticationFailed());
    click(0, "checkAccount");
    EXPECT_FALSE(isShown("checkMessage"));
    answer(2, goldPlan());
    EXPECT_TRUE(isShown("premiumBlock"));
}

TEST_F(AccountRowTest, ADisabledAccountCanStillBeChecked)
{
    add(u"anna"_s, SupportedHost::filestore, false);
    click(0, "checkAccount");
    answer(0, goldPlan());
    EXPECT_EQ(kind(), AccountTestStatus::success);
}

TEST_F(AccountRowTest, AFailedCheckChangesOnlyItsRow)
{
    const HostAccount anna = add(u"anna"_s);
    add(u"bert"_s);
    click(0, "checkAccount");
    answer(0, ResolverError::authenticationFailed());
    EXPECT_EQ(kind(0), AccountTestStatus::failed);
    EXPECT_EQ(kind(1), AccountTestStatus::idle);
    ASSERT_TRUE(accounts().firstEnabled(SupportedHost::filestore));
    EXPECT_EQ(*accounts().firstEnabled(SupportedHost::filestore), anna);
}

TEST_F(AccountRowTest, ALongUserNameIsCutInTheMiddleAndWholeInTheToolTip)
{
    const QString name = u"a"_s + u"long."_s.repeated(80) + u"z"_s;
    add(name);
    const QString shown = text(0, "accountUsername");
    EXPECT_TRUE(shown.startsWith(u'a') && shown.contains(u'…') && shown.endsWith(u'z')) << qPrintable(shown);
    EXPECT_EQ(part(0, "accountUsername").toolTip(), name);
    EXPECT_LE(place("deleteAccount").right(), row(0).width());
}

TEST_F(AccountRowTest, NamesItsControlsAfterTheAccount)
{
    add(u"anna"_s);
    EXPECT_EQ(row(0).accessibleName(), u"filestore.example, anna");
    EXPECT_EQ(name("checkAccount"), u"filestore.example, anna: Check");
    EXPECT_EQ(name("editAccount"), u"filestore.example, anna: Edit");
    EXPECT_EQ(name("deleteAccount"), u"filestore.example, anna: Delete");
    useItalian();
    EXPECT_EQ(name("checkAccount"), u"filestore.example, anna: Verifica");
    EXPECT_EQ(name("editAccount"), u"filestore.example, anna: Modifica");
    EXPECT_EQ(name("deleteAccount"), u"filestore.example, anna: Elimina");
}

TEST_F(AccountRowTest, TellsAssistiveTechnologyHowTheCheckStands)
{
    add(u"anna"_s, SupportedHost::filestore, false);
    const auto told = [this] { return part(0, "checkAccount").accessibleDescription(); };
    EXPECT_EQ(told(), u"Disabled");
    click(0, "checkAccount");
    EXPECT_EQ(name("checkAccount"), u"filestore.example, anna: Checking...");
    answer(0, ResolverError::authenticationFailed());
    EXPECT_EQ(name("checkAccount"), u"filestore.example, anna: Retry");
    EXPECT_EQ(told(), u"Disabled, Authentication failed");
    click(0, "checkAccount");
    answer(1, goldPlan());
    EXPECT_EQ(told(), u"Disabled, Gold, · 1 GB traffic");
    EXPECT_EQ(row(0).accessibleDescription(), told());
}

TEST_F(AccountRowTest, KeepsTheFocusOnTheButtonThroughACheck)
{
    add(u"anna"_s);
    part(0, "checkAccount").setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(button(0), u"Checking...");
    EXPECT_TRUE(part(0, "checkAccount").hasFocus());
    answer(0, goldPlan());
    EXPECT_TRUE(part(0, "checkAccount").hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_EQ(log->checks.size(), 2U);
}

} // namespace
} // namespace vormel
