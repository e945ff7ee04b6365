#include "resolvers/containers/ContainerPage.h"

#include "text/BoundedRegex.h"
#include "text/SmallLetters.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace vormel {

bool containsCaptcha(const QString& html)
{
    constexpr std::array<QStringView, 4> signs{u"h-captcha", u"hcaptcha", u"g-recaptcha", u"data-sitekey"};
    const QString page = withSmallLetters(html);
    return std::any_of(signs.begin(), signs.end(), [&page](QStringView sign) { return page.contains(sign); });
}

bool hasPasswordField(const QString& html)
{
    static const BoundedRegex field(uR"(type=["']password["'])"_s);
    return bool(field.search(html));
}

bool saysWrongPassword(const QString& html)
{
    static const BoundedRegex refusal =
        BoundedRegex::ignoringCase(u"wrong.?pass|falsches.?pass|incorrect.?pass|passwort.?falsch"_s);
    return bool(refusal.search(html));
}

bool saysKeeplinksWrongPassword(const QString& html)
{
    static const BoundedRegex refusal = BoundedRegex::ignoringCase(u"wrong.?pass|incorrect.?pass|invalid.?pass"_s);
    return bool(refusal.search(html));
}

} // namespace vormel
