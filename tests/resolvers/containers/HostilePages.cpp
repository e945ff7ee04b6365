#include "HostilePages.h"

#include "CnlPages.h"

using namespace Qt::StringLiterals;

namespace vormel::tests {

namespace {

const QString brokenUtf8 = QString::fromUtf8("\xff\xc3\xed\xa0\x80\xf0\x9f a");

std::vector<HostilePage> pagesOfTags()
{
    return {
        {"text", {}, u"a"_s, {}},
        {"brackets", {}, u">"_s, {}},
        {"open brackets", {}, u"<"_s, {}},
        {"quotes", {}, u"\"'"_s, {}},
        {"NUL", {}, QString(QChar(0)), {}},
        {"broken UTF-8", {}, brokenUtf8, {}},
        {"characters of two halves", {}, u"\U0001F600"_s, {}},
        {"semicolons", {}, u";"_s, {}},
        {"space", u"<meta http-equiv='refresh' content='0;"_s, u" "_s, {}},
        {"space behind semicolons", u"<meta http-equiv='refresh' "_s, u"content='0;         "_s, {}},
        {"unclosed inputs", {}, u"<input "_s, {}},
        {"unclosed hidden inputs", {}, u"<input type='hidden' "_s, {}},
        {"unclosed inputs without a value", {}, u"<input type='hidden' name='a' "_s, {}},
        {"one input of many types", u"<input "_s, u"type='hidden' "_s, u"name='a'"_s},
        {"one input of many names", u"<input type='hidden' "_s, u"name='a' "_s, {}},
        {"one input of many values", u"<input type='hidden' name='a' "_s, u"value='a' "_s, u"value='"_s},
        {"inputs whose name never ends", {}, u"<input type='hidden' name="_s, u"\""_s},
        {"hidden inputs", {}, u"<input type='hidden' name='n%1' value='v%1'>"_s, {}},
        {"hidden inputs of one name", {}, u"<input type='hidden' name='n' value='v%1'>"_s, {}},
        {"endless attributes", u"<input type='hidden' "_s, u"a%1='b' "_s, u"name='a' value='b'"_s},
        {"nested forms", {}, u"<form action='x'><input type='hidden' name='a' value='b'>"_s, {}},
        {"unclosed metas", {}, u"<meta "_s, {}},
        {"unclosed refreshes", {}, u"<meta http-equiv='refresh' "_s, {}},
        {"refreshes to nowhere", {}, u"<meta http-equiv='refresh' content='0' "_s, {}},
        {"refreshes to one semicolon", {}, u"<meta http-equiv='refresh' content='0' "_s, u"; url="_s},
        {"one refresh of many contents", u"<meta http-equiv='refresh' "_s, u"content='0;url=/x' "_s, {}},
        {"a long address of a refresh", u"<meta http-equiv='refresh' content='0;url=/x"_s, u"\u00e4"_s, {}},
    };
}

std::vector<HostilePage> pagesOfLinks()
{
    return {
        {"files", {}, u"<a href=\"https://filestore.example/f/%1\">"_s, {}},
        {"files by http", {}, u"<a href='http://filestore.example/f/%1'>"_s, {}},
        {"one file", {}, u"href=\"https://filestore.example/f\""_s, {}},
        {"short links", {}, u"href=\"http://a\" "_s, {}},
        {"short addresses", {}, u"http://a "_s, {}},
        {"go links", {}, u"href='/go/%1'"_s, {}},
        {"go links that are opened", {}, u"open('/go/%1')"_s, {}},
        {"unclosed hrefs", {}, u"href=\""_s, {}},
        {"unclosed links", {}, u"href=\"https://"_s, {}},
        {"one endless link", u"href=\"https://filestore.example/"_s, u"a"_s, u"\""_s},
        {"one endless link to go", u"open('https://"_s, u"/go/a"_s, u"-'"_s},
        {"an endless go link", u"href='/go/"_s, u"a"_s, {}},
        {"links in links", {}, u"https://filestore.example/f?"_s, {}},
        {"links one behind the other", {}, u"https://filestore.example/f%1]"_s, {}},
        {"entities", u"href='https://filestore.example/f?"_s, u"&amp;"_s, u"'"_s},
        {"links of entities", {}, u"href=\"https://filestore.example/f?%1&amp;&lt;&gt;&amp;\" "_s, {}},
        {"ampersands", u"href='https://filestore.example/f"_s, u"&"_s, u"'"_s},
        {"punctuation", u"https://filestore.example/f"_s, u".,;&"_s, {}},
        {"a host of foreign letters", u"href=\"https://"_s, u"\u00e4"_s, u".filestore.example/f\""_s},
        {"hosts of foreign letters",
         {},
         u"href=\"https://%1"_s + QString(2000, u'\u00e4') + u".filestore.example/f\" "_s,
         {}},
        {"hosts of foreign names", {}, u"href=\"https://\u4e2d\u00e4%1.filestore.example/f\" "_s, {}},
        {"a host of many names", u"href=\"https://"_s, u"\u00e4."_s, u"filestore.example/f\""_s},
        {"hosts of many names",
         {},
         u"href=\"https://%1."_s + u"\u00e4."_s.repeated(1000) + u"filestore.example/f\" "_s,
         {}},
        {"escaped hosts", {}, u"href=\"https://%61%62%1.filestore.example/f\" "_s, {}},
        {"addresses with NUL", u"href=\"https://filestore.example/f"_s, QString(QChar(0)), u"\""_s},
        {"addresses of broken UTF-8", {}, u"href=\"https://filestore.example/%1"_s + brokenUtf8 + u"\" "_s, {}},
    };
}

std::vector<HostilePage> pagesOfSigns()
{
    return {
        {"calls that begin", {}, u"CNLPOP("_s, {}},
        {"calls within calls", {}, u"CNLPOP('"_s, {}},
        {"a call and space", u"CNLPOP"_s, u" "_s, {}},
        {"calls of three texts", {}, u"CNLPOP('a','ab','"_s, {}},
        {"an endless key", u"CNLPOP('a','"_s, u"ab"_s, {}},
        {"an endless cipher text", u"CNLPOP('a','30313233343536373839616263646566','"_s, u"AAAA"_s, u"')"_s},
        {"an unclosed cipher text", u"CNLPOP('a','ab','"_s, u"AAAA"_s, {}},
        {"calls of one link", {}, cnlCallWith("http://filestore.example/f"), {}},
        {"calls of empty lines", {}, cnlCallWith(QByteArray(10'000, '\n')), {}},
        {"calls of ampersands", {}, cnlCallWith("http://filestore.example/f" + QByteArray(5000, '&')), {}},
        {"calls of NUL", {}, cnlCallWith(QByteArray(5000, '\0')), {}},
        {"nearly wrong passwords", {}, u"wrong pas falsches incorrect invalid passwort "_s, {}},
        {"nearly password fields", {}, u"type='passwor"_s, {}},
        {"nearly captchas", {}, u"h-captch data-sitekeg-recaptch"_s, {}},
    };
}

} // namespace

QString HostilePage::ofSize(qsizetype size) const
{
    QString page = before;
    const bool counts = repeated.contains(u"%1");
    if (!counts)
        page += repeated.repeated(size / repeated.size());
    for (qsizetype number = 0; counts && page.size() < size; ++number)
        page += QString(repeated).replace(u"%1"_s, QString::number(number));
    return page + after;
}

std::vector<HostilePage> hostilePages()
{
    std::vector<HostilePage> pages;
    for (const std::vector<HostilePage>& some : {pagesOfTags(), pagesOfLinks(), pagesOfSigns()})
        pages.insert(pages.end(), some.begin(), some.end());
    return pages;
}

} // namespace vormel::tests
