#include "resolvers/ResolverError.h"

#include "fixtures/FakeResolvers.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

struct Row
{
    QString description;
    const char* what;
    const char* expected;
};

void expectTexts(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        EXPECT_EQ(row.description.toStdString(), row.expected);
        EXPECT_STREQ(row.what, row.expected);
    }
}

TEST(ResolverError, EachReasonHasItsMessage)
{
    const ResolverError noAccount = ResolverError::noAccountConfigured(u"Terabytez"_s);
    const ResolverError login = fixtures::loginRequired(SupportedHost::terabytez);
    const ResolverError network = ResolverError::networkError(u"no route to host"_s);
    const ResolverError refused = ResolverError::authenticationFailed();
    const ResolverError missing = ResolverError::linkNotFound();
    const ResolverError unsupported = ResolverError::unsupportedHost();
    expectTexts({{noAccount.errorDescription(), noAccount.what(), "No account configured for Terabytez"},
                 {login.errorDescription(), login.what(), "Sign in to Terabytez required"},
                 {network.errorDescription(), network.what(), "Network error: no route to host"},
                 {refused.errorDescription(), refused.what(), "Authentication failed"},
                 {missing.errorDescription(), missing.what(), "Direct link not found"},
                 {unsupported.errorDescription(), unsupported.what(), "Unsupported host"}});
}

TEST(ResolverError, EachReasonCanBeToldFromTheOthers)
{
    using Kind = ResolverError::Kind;
    EXPECT_EQ(ResolverError::noAccountConfigured({}).kind(), Kind::noAccountConfigured);
    EXPECT_EQ(fixtures::loginRequired(SupportedHost::filestore).kind(), Kind::loginRequired);
    EXPECT_EQ(ResolverError::networkError({}).kind(), Kind::networkError);
    EXPECT_EQ(ResolverError::authenticationFailed().kind(), Kind::authenticationFailed);
    EXPECT_EQ(ResolverError::linkNotFound().kind(), Kind::linkNotFound);
    EXPECT_EQ(ResolverError::unsupportedHost().kind(), Kind::unsupportedHost);
}

TEST(ResolverError, ARequiredLoginNamesItsHostByItsLabel)
{
    const ResolverError error = fixtures::loginRequired(SupportedHost::filestore);
    EXPECT_EQ(error.host(), SupportedHost::filestore);
    EXPECT_EQ(error.errorDescription(), u"Sign in to Filestore.example required");
    EXPECT_EQ(fixtures::loginRequired(SupportedHost::terabytez).host(), SupportedHost::terabytez);
}

TEST(ResolverError, TheMessageOutlivesACatchByTheCommonBase)
{
    try {
        throw ResolverError::networkError(u"caffè"_s);
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(), "Network error: caffè");
    }
}

TEST(ContainerError, EachReasonHasItsMessage)
{
    const ContainerError network = ContainerError::networkError(u"timed out"_s);
    const ContainerError empty = ContainerError::noLinksFound();
    const ContainerError password = ContainerError::wrongPassword();
    const ContainerError captcha = ContainerError::captchaRequired();
    expectTexts({{network.errorDescription(), network.what(), "Network error: timed out"},
                 {empty.errorDescription(), empty.what(), "No links found in the container"},
                 {password.errorDescription(), password.what(), "Wrong or missing password"},
                 {captcha.errorDescription(), captcha.what(), "CAPTCHA required — solve it in the browser window"}});
}

TEST(ContainerError, EachReasonCanBeToldFromTheOthers)
{
    using Kind = ContainerError::Kind;
    EXPECT_EQ(ContainerError::networkError({}).kind(), Kind::networkError);
    EXPECT_EQ(ContainerError::noLinksFound().kind(), Kind::noLinksFound);
    EXPECT_EQ(ContainerError::wrongPassword().kind(), Kind::wrongPassword);
    EXPECT_EQ(ContainerError::captchaRequired().kind(), Kind::captchaRequired);
}

} // namespace
} // namespace vormel
