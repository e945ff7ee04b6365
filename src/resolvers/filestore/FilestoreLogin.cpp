#include "resolvers/filestore/FilestoreLogin.h"

#include "resolvers/filestore/FilestoreForms.h"
#include "text/SmallLetters.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace vormel {

FormFields loginFields(const QString& loginPage, const QString& username, const QString& password)
{
    FormFields fields = parseHiddenInputs(loginPage);
    setField(fields, u"login"_s, username);
    setField(fields, u"password"_s, password);
    if (!fieldValue(fields, u"redirect"))
        setField(fields, u"redirect"_s, u"/"_s);
    return fields;
}

bool tellsRefusedLogin(const QString& html)
{
    constexpr std::array<QLatin1StringView, 9> refusals{
        "wrong login"_L1, "invalid login"_L1, "incorrect password"_L1, "wrong password"_L1, "invalid credentials"_L1,
        "login error"_L1, "invalid email"_L1, "wrong email"_L1,        "incorrect email"_L1};
    const QString smallHtml = withSmallLetters(html);
    return std::any_of(refusals.begin(), refusals.end(),
                       [&smallHtml](QLatin1StringView refusal) { return smallHtml.contains(refusal); });
}

bool isLoginAddress(const Link& finalUrl)
{
    return finalUrl.path().contains("login"_L1);
}

bool isLoggedOutAddress(const Link& finalUrl)
{
    if (finalUrl.isEmpty())
        return false;
    const QString path = finalUrl.path();
    // Who asks for no path asks for the root.
    return path.isEmpty() || path == "/"_L1 || isLoginAddress(finalUrl);
}

} // namespace vormel
