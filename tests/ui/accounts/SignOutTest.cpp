#include "ui/accounts/AccountsPage.h"
#include "ui/accounts/Plans.h"

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

const QByteArray signInCookie = "#HttpOnly_.terabytez.example\tTRUE\t/\tTRUE\t4102444800\txfss\tabc";
const QByteArray otherCookie = "other.example\tFALSE\t/\tTRUE\t4102444800\tkept\tyes";

/// Signing out of a host that signs in in the browser.
class SignOutTest : public fixtures::AccountsPage
{};

TEST_F(SignOutTest, IsOfferedForAccountsOfSuchHosts)
{
    add(u"anna"_s, SupportedHost::filestore);
    add(u"anna"_s, SupportedHost::terabytez);
    EXPECT_FALSE(part(0, "signOutAccount").isVisible());
    auto& button = part<QAbstractButton>(1, "signOutAccount");
    EXPECT_TRUE(button.isVisible());
    EXPECT_EQ(button.text(), u"Sign out");
    EXPECT_TRUE(button.accessibleName().endsWith(u", anna: Sign out")) << qPrintable(button.accessibleName());
    useItalian();
    EXPECT_EQ(button.text(), u"Esci");
}

TEST_F(SignOutTest, LeavesNoCookieOfTheHost)
{
    add(u"anna"_s, SupportedHost::terabytez);
    desktop.web.setCookies({signInCookie, otherCookie});
    engine.cookies.add(signInCookie);
    click(0, "signOutAccount");
    EXPECT_EQ(desktop.web.jar, QByteArrayList{otherCookie});
    EXPECT_TRUE(engine.cookies.cookies().isEmpty());
}

TEST_F(SignOutTest, DoesNoHarmWhereNobodyIsSignedIn)
{
    add(u"anna"_s, SupportedHost::terabytez);
    desktop.web.setCookies({otherCookie});
    click(0, "signOutAccount");
    EXPECT_EQ(desktop.web.jar, QByteArrayList{otherCookie});
    EXPECT_EQ(button(0), u"Check");
}

TEST_F(SignOutTest, TakesBackWhatTheChecksOfTheHostTold)
{
    add(u"anna"_s, SupportedHost::terabytez);
    add(u"bert"_s, SupportedHost::terabytez);
    add(u"carl"_s, SupportedHost::filestore);
    for (int place = 0; place < 3; ++place) {
        click(place, "checkAccount");
        answer(static_cast<std::size_t>(place), fixtures::goldPlan());
    }
    click(0, "signOutAccount");
    EXPECT_EQ(button(0), u"Check");
    EXPECT_EQ(button(1), u"Check");
    EXPECT_FALSE(part(1, "premiumBlock").isVisible());
    EXPECT_EQ(button(2), u"Refresh");
}

TEST_F(SignOutTest, LeavesACheckThatIsUnderWayToItsEnd)
{
    add(u"anna"_s, SupportedHost::terabytez);
    click(0, "checkAccount");
    click(0, "signOutAccount");
    EXPECT_EQ(button(0), u"Checking...");
    answer(0, ResolverError::linkNotFound());
    EXPECT_EQ(button(0), u"Retry");
}

TEST_F(SignOutTest, IsReachedByTheKeyboardAndPassedWhereItIsNot)
{
    add(u"anna"_s, SupportedHost::terabytez);
    add(u"bert"_s, SupportedHost::filestore);
    part(0, "checkAccount").setFocus();
    QTest::keyClick(&part(0, "checkAccount"), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &part(0, "signOutAccount"));
    QTest::keyClick(&part(0, "signOutAccount"), Qt::Key_Down);
    EXPECT_EQ(QApplication::focusWidget(), &part(1, "editAccount"));
    part(1, "checkAccount").setFocus();
    QTest::keyClick(&part(1, "checkAccount"), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &part(1, "editAccount"));
}

} // namespace
} // namespace vormel
