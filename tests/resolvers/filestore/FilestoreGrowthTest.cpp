#include "resolvers/ParseTimes.h"
#include "resolvers/filestore/FilestoreForms.h"
#include "resolvers/filestore/FilestoreLinks.h"
#include "resolvers/filestore/FilestoreLogin.h"
#include "resolvers/filestore/FilestoreNames.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

using namespace Qt::StringLiterals;

namespace vormel::tests {
namespace {

/// A page of that size at least; two of them differ in size alone.
using PageOfSize = std::function<QString(qsizetype)>;

PageOfSize repeating(const QString& piece, const QString& begin = {}, const QString& end = {})
{
    return [=](qsizetype size) { return begin + piece.repeated(size / piece.size() + 1) + end; };
}

/// Half of the one, and then half of the other.
PageOfSize halves(const QString& first, const QString& second)
{
    return [=](qsizetype size) {
        return first.repeated(size / 2 / first.size()) + second.repeated(size / 2 / second.size());
    };
}

/// The piece with another number each time.
PageOfSize numbered(const QString& piece)
{
    return [=](qsizetype size) {
        QString page;
        for (int i = 0; page.size() < size; ++i)
            page += piece.arg(i);
        return page;
    };
}

std::vector<PageOfSize> linkPages()
{
    const QString domain = u"filestore.example"_s;
    return {
        repeating(u"href="_s),
        repeating(u"href=\""_s),
        repeating(u"href=\"https://"_s),
        repeating(u"https://"_s, u"href=\""_s),
        repeating(u"href=\"http://"_s + domain + u"/dl/\""_s),
        repeating(u"<a href=\"https://o.example/x\">x</a>"_s),
        repeating(u"href=\"https://"_s + domain + u"/dl/x "_s),
        repeating(domain + u"/dl/"_s, u"href=\"https://"_s),
        repeating(domain + u"/dl"_s, u"href=\"https://"_s, u"\""_s),
        repeating(u"."_s, u"href=\"https://x"_s, u"\""_s),
        repeating(u".zi"_s, u"href=\"https://x"_s),
        repeating(u"\u00E9"_s, u"href=\"https://"_s, domain + u"/dl/x\""_s),
        repeating(u"a."_s, u"href=\"https://"_s, domain + u"/dl/x\""_s),
        repeating(u"\u00E9."_s, u"href=\"https://"_s, domain + u"/dl/x\""_s),
        repeating(u"../"_s, u"data-url=\""_s, u"\""_s),
        repeating(u"data-url=\"\""_s),
        repeating(u"data-url="_s),
        repeating(u"location.href='filestore'"_s),
        repeating(u"location.href='"_s),
        repeating(u"filestore"_s, u"location.href='"_s),
        halves(u"href=\"https://"_s, u"/dl/"_s),
        halves(u"location.href="_s, u"'"_s),
    };
}

std::vector<PageOfSize> namePages()
{
    return {
        repeating(u"<h1"_s),
        repeating(u"<h1>"_s),
        repeating(u"<h1>x"_s),
        repeating(u"<h1>x</h1"_s),
        repeating(u"<h1></h1>"_s),
        repeating(u"x"_s, u"<h1>"_s),
        repeating(u"<title>"_s),
        repeating(u"<title>|"_s),
        repeating(u" "_s, u"<h1>"_s, u"</h1>"_s),
        repeating(u"\u0130"_s, u"<h1>"_s, u"</h1>"_s),
        repeating(u" "_s, u"<h1>Download "_s, u"</h1>"_s),
        repeating(u" "_s, u"<h1>x"_s, u"y</h1>"_s),
        repeating(u" part"_s, u"<h1>x"_s, u"</h1>"_s),
        repeating(u" part1 "_s, u"<title>x"_s, u"y"_s),
        repeating(u"1"_s, u"<h1>x part"_s, u" rax</h1>"_s),
        repeating(u"Download "_s, u"<title>"_s, u"</title>"_s),
        halves(u"<h1"_s, u">"_s),
        halves(u"<h1 "_s, u"<h1>x</h1 "_s),
    };
}

std::vector<PageOfSize> formPages()
{
    return {
        numbered(u"<input type='hidden' name='n%1' value='v'>"_s),
        repeating(u"<input type='hidden' name='a' value='v'>"_s),
        repeating(u"<input type='hidden' name='a' value='v'>"_s, u"<form>"_s, u"</form>"_s),
        repeating(u"<input"_s),
        repeating(u"<input "_s, {}, u">"_s),
        repeating(u"<input type='hidden'"_s),
        repeating(u"type='hidden"_s, u"<input "_s, u">"_s),
        repeating(u"type='hidden "_s, u"<input "_s),
        repeating(u"a='b' "_s, u"<input type='hidden' "_s, u">"_s),
        repeating(u"name="_s, u"<input type='hidden' "_s, u">"_s),
        repeating(u"name=\"value='"_s, u"<input "_s, u">"_s),
        repeating(u"<form"_s),
        repeating(u"<formx"_s),
        repeating(u"<form>"_s),
        repeating(u"<form action='x'>"_s),
        repeating(u"<form></form>"_s),
        repeating(u"<form><input type='hidden' name='id' value='1'></form>"_s),
        repeating(u"<form><form>"_s, {}, u"</form>"_s),
        repeating(u"action="_s, u"<form "_s, u"></form>"_s),
        repeating(u"x"_s, u"<form action='"_s, u"'><input type='hidden' name='id' value='1'></form>"_s),
        repeating(u"../"_s, u"<form action='"_s, u"'><input type='hidden' name='id' value='1'></form>"_s),
        repeating(u"</form>"_s),
        repeating(u"\u0130"_s, u"<form><input type='hidden' name='op' value='"_s, u"'></form>"_s),
        numbered(u"<form><input type='hidden' name='n%1' value='download'></form>"_s),
        halves(u"<form"_s, u">"_s),
        halves(u"<form>"_s, u"</form"_s),
        halves(u"<input type='hidden' "_s, u"name='a' value='b'>"_s),
    };
}

std::vector<PageOfSize> otherPages()
{
    return {
        repeating(QString(QChar(0))),
        repeating(u"\uFFFD"_s),
        repeating(QString::fromUtf8(QByteArrayView("\xff\xfe\xc3(\xed\xa0\x80"))),
        repeating(QString(QChar(0xD800))),
        repeating(u"\u0130"_s),
        repeating(u"<"_s),
        repeating(u">"_s),
        repeating(u"'"_s),
        repeating(u"\""_s),
        repeating(u"&amp;"_s),
        repeating(u"wrong passwor"_s),
        repeating(u"invalid "_s),
    };
}

struct FilestoreParser
{
    const char* name;
    std::function<void(const QString&)> parse;
};

/// The hidden inputs are read by each that makes a form of them.
std::vector<FilestoreParser> parsers()
{
    static const Link page = *Link::parse(u"https://filestore.example/abc/file.html");
    return {
        {"extractDirectLink", [](const QString& html) { (void)extractDirectLink(html, page, u"filestore.example"_s); }},
        {"extractTitleName", [](const QString& html) { (void)extractTitleName(html); }},
        {"normalizeTitleName", [](const QString& html) { (void)normalizeTitleName(html); }},
        {"the login's form", [](const QString& html) { (void)encodeFormFields(loginFields(html, u"a"_s, u"b"_s)); }},
        {"the premium form",
         [](const QString& html) {
             FormFields fields = parseHiddenInputs(html);
             applyPremiumFields(fields);
         }},
        {"findDownloadForm", [](const QString& html) { (void)findDownloadForm(html, page); }},
        {"resolveFormAction", [](const QString& html) { (void)resolveFormAction(html, page); }},
        {"tellsRefusedLogin", [](const QString& html) { (void)tellsRefusedLogin(html); }},
    };
}

void expectNearlyLinearTime(const std::vector<PageOfSize>& pages)
{
    for (const PageOfSize& page : pages) {
        const QString usual = page(ParseTimes::usualSize);
        const QString tenfold = page(ParseTimes::tenfoldSize);
        for (const FilestoreParser& parser : parsers()) {
            const ParseTimes times(parser.parse, usual, tenfold);
            EXPECT_TRUE(times.areFine()) << parser.name << " on " << usual.left(60).toStdString() << ": "
                                         << times.shown();
        }
    }
}

TEST(FilestoreGrowth, PagesOfLinksTakeTimeInProportionToTheirLength)
{
    expectNearlyLinearTime(linkPages());
}

TEST(FilestoreGrowth, PagesOfHeadingsTakeTimeInProportionToTheirLength)
{
    expectNearlyLinearTime(namePages());
}

TEST(FilestoreGrowth, PagesOfFormsTakeTimeInProportionToTheirLength)
{
    expectNearlyLinearTime(formPages());
}

TEST(FilestoreGrowth, PagesOfNoSenseTakeTimeInProportionToTheirLength)
{
    expectNearlyLinearTime(otherPages());
}

} // namespace
} // namespace vormel::tests
