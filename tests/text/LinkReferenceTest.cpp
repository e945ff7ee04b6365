#include "text/LinkReference.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

struct ReferenceRow
{
    QString reference;
    const char* target; ///< "" for none
};

void expectTargets(const QString& page, const std::vector<ReferenceRow>& rows)
{
    const std::optional<Link> link = Link::parse(page);
    ASSERT_TRUE(link);
    for (const auto& [reference, expected] : rows) {
        const std::optional<Link> target = httpTarget(*link, reference);
        EXPECT_EQ(target ? target->absoluteString().toStdString() : std::string(), expected)
            << reference.left(100).toStdString();
    }
}

TEST(LinkReference, AnAddressOfItsOwnKeepsItsSpelling)
{
    expectTargets(u"https://h.example/a/b"_s,
                  {{u"HTTP://Files.Example:8080/A%2fb/../c?Q#F"_s, "HTTP://Files.Example:8080/A%2fb/../c?Q#F"},
                   {u" https://o.example/x y\n"_s, "https://o.example/x%20y"}});
}

TEST(LinkReference, ARelativeOneIsTakenRelativeToThePage)
{
    expectTargets(u"https://h.example:8443/a/b?q=1#f"_s, {{u"c"_s, "https://h.example:8443/a/c"},
                                                          {u"/c?x=1&y=%20"_s, "https://h.example:8443/c?x=1&y=%20"},
                                                          {u"../c"_s, "https://h.example:8443/c"},
                                                          {u"../../../c"_s, "https://h.example:8443/c"},
                                                          {u"?x"_s, "https://h.example:8443/a/b?x"},
                                                          {u"#x"_s, "https://h.example:8443/a/b?q=1#x"},
                                                          {u"//o.example/c"_s, "https://o.example/c"},
                                                          {u" c d "_s, "https://h.example:8443/a/c%20d"},
                                                          {u"c/x:y"_s, "https://h.example:8443/a/c/x:y"},
                                                          {u"\u00E9"_s, "https://h.example:8443/a/%C3%A9"}});
    expectTargets(u"http://h.example"_s, {{u"c"_s, "http://h.example/c"}, {u"/c"_s, "http://h.example/c"}});
}

TEST(LinkReference, OnlyHttpAndHttpsAreTargets)
{
    expectTargets(u"https://h.example/a/b"_s, {{u"javascript:void(0)"_s, ""},
                                               {u"JavaScript://h.example/%0Aalert(1)"_s, ""},
                                               {u"data:text/html,x"_s, ""},
                                               {u"file:///etc/passwd"_s, ""},
                                               {u"ftp://h.example/a"_s, ""},
                                               {u"mailto:a@h.example"_s, ""},
                                               {u"magnet:?xt=1"_s, ""}});
    expectTargets(u"file:///home/a/page.html"_s, {{u"b.html"_s, ""}, {u"/etc/passwd"_s, ""}});
    expectTargets(u"ftp://h.example/a"_s, {{u"b"_s, ""}, {u"http://h.example/b"_s, "http://h.example/b"}});
}

TEST(LinkReference, WhatIsNoAddressLeadsNowhere)
{
    expectTargets(u"https://h.example/a/b"_s, {{u""_s, ""},
                                               {u" \n"_s, ""},
                                               {u"http:"_s, ""},
                                               {u"https:///a"_s, ""},
                                               {u"http:c"_s, ""},
                                               {u"https://[bad/a"_s, ""},
                                               {u"https://h.example:99999/a"_s, ""},
                                               {u"//h.example:99999/a"_s, ""},
                                               {u"http\u017F://h.example/a"_s, ""}});
}

TEST(LinkReference, ControlCharactersNeverStayInATarget)
{
    const QString text = u"x"_s + QChar(0) + u"\r\nHost=evil"_s;
    for (const QString& reference :
         {text, u"/"_s + text, u"?"_s + text, u"#"_s + text, u"https://o.example/"_s + text}) {
        const std::optional<Link> target = httpTarget(*Link::parse(u"https://h.example/a"), reference);
        ASSERT_TRUE(target) << reference.toStdString();
        for (const QChar c : target->absoluteString())
            EXPECT_TRUE(c > u' ' && c < QChar(0x7F)) << reference.toStdString();
    }
}

TEST(LinkReference, WhatIsTooLongForAnAddressIsNone)
{
    expectTargets(u"https://h.example/a/b"_s, {{u"c"_s.repeated(70'000), ""},
                                               {u"https://h.example/"_s + u"c"_s.repeated(70'000), ""},
                                               {u"../"_s.repeated(400'000), ""}});
}

} // namespace
} // namespace vormel
