#include "ui/sheets/signin/SignInFill.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// As it stands between the quotes of a script's text, which no line end may be in.
QString escaped(QString value)
{
    value.replace(u'\\', u"\\\\"_s).replace(u'\'', u"\\'"_s);
    value.replace(u'\n', u"\\n"_s).replace(u'\r', u"\\r"_s);
    return value.replace(QChar(QChar::LineSeparator), u"\\u2028"_s)
        .replace(QChar(QChar::ParagraphSeparator), u"\\u2029"_s);
}

} // namespace

QString fillScript(const Credentials& credentials)
{
    // Joined and not put in place of marks, which a user name may look like.
    return u"(function(){\n"
           u"    var loginEl=document.querySelector('input[name=\"login\"]');\n"
           u"    var passEl=document.querySelector('input[name=\"password\"]');\n"
           u"    if(loginEl && !loginEl.value) loginEl.value='"_s +
           escaped(credentials.username) +
           u"';\n"
           u"    if(passEl && !passEl.value) passEl.value='"_s +
           escaped(credentials.password) +
           u"';\n"
           u"})();"_s;
}

} // namespace vormel
