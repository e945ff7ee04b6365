#include "LinkTexts.h"
#include "RandomPages.h"
#include "resolvers/containers/ContainerForm.h"
#include "resolvers/containers/ContainerLinks.h"
#include "resolvers/containers/MetaRefresh.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

// The scanners against the patterns that they stand for, on pages so small that the patterns can be tried.
namespace vormel::tests {
namespace {

constexpr int pages = 10'000;

const std::vector<QString>& noise()
{
    static const std::vector<QString> texts{u" "_s,          u">"_s,      u"\""_s,     u"'"_s,     u"\n"_s,
                                            u"x"_s,          u"<"_s,      u"="_s,      u";"_s,     QString(QChar(0)),
                                            u"\U0001F600"_s, u"\u017f"_s, u"\u212a"_s, u"\u00a0"_s};
    return texts;
}

std::vector<QString> withNoise(std::vector<QString> texts)
{
    texts.insert(texts.end(), noise().begin(), noise().end());
    return texts;
}

QRegularExpression ignoringCase(const QString& pattern)
{
    return QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption);
}

std::vector<QRegularExpressionMatch> matchesOf(const QRegularExpression& pattern, const QString& page)
{
    std::vector<QRegularExpressionMatch> matches;
    for (QRegularExpressionMatchIterator all = pattern.globalMatch(page); all.hasNext();)
        matches.push_back(all.next());
    return matches;
}

FormFields expectedInputs(const QString& page)
{
    static const QRegularExpression input =
        ignoringCase(uR"re(<input[^>]+type=["']hidden["'][^>]+name=["']([^"']+)["'][^>]+value=["']([^"']*)["'])re"_s);
    FormFields fields;
    for (const QRegularExpressionMatch& match : matchesOf(input, page)) {
        const auto field = std::find_if(fields.begin(), fields.end(),
                                        [&match](const auto& known) { return known.first == match.captured(1); });
        if (field == fields.end())
            fields.emplace_back(match.captured(1), match.captured(2));
        else
            field->second = match.captured(2);
    }
    return fields;
}

TEST(PatternMeaning, HiddenInputsAreThoseOfThePattern)
{
    RandomPages random(
        {u"<input"_s, u" "_s, u"type=\"hidden\""_s, u" "_s, u"name=\"a\""_s, u" "_s, u"value=\"1\""_s, u">"_s},
        withNoise({u"<INPUT "_s, u"TYPE='Hidden'"_s, u"type=hidden"_s, u"type=\""_s, u"hidden\""_s, u"name='b>c'"_s,
                   u"NAME=\"d\""_s, u"name=\"\""_s, u"name=\""_s, u"name="_s, u"Value='2'"_s, u"value=\"\""_s,
                   u"value='"_s, u"value=3"_s, u"<input type='hidden' name='e' value='4'"_s}));
    std::size_t found = 0;
    for (int i = 0; i < pages; ++i) {
        const QString page = random.next();
        const FormFields expected = expectedInputs(page);
        ASSERT_EQ(parseFileCryptHiddenInputs(page), expected) << page.toStdString();
        found += expected.size();
    }
    EXPECT_GT(found, 1000U) << "the pages are no test";
}

TEST(PatternMeaning, ARefreshIsThatOfThePattern)
{
    RandomPages random(
        {u"<meta"_s, u" "_s, u"http-equiv=\"refresh\""_s, u" "_s, u"content=\"0"_s, u";"_s, u"url="_s, u"/next"_s,
         u"\">"_s},
        withNoise({u"<META\n"_s, u"HTTP-EQUIV='Refre\u017fh'"_s, u"http-equiv=\""_s, u"refresh\""_s, u"content='"_s,
                   u"Content=\""_s, u"; \n\tURL=x"_s, u";\u00a0url=y"_s, u"; url="_s, u"; url='z'"_s,
                   u";\vurl=\U0001F600"_s, u"<meta http-equiv='refresh' content='0; url=w"_s}));
    const QRegularExpression refresh =
        ignoringCase(uR"re(<meta[^>]+http-equiv=["']refresh["'][^>]+content=["'][^;]+;\s*url=([^"'>\s]+))re"_s);
    int found = 0;
    for (int i = 0; i < pages; ++i) {
        const QString page = random.next();
        const auto matches = matchesOf(refresh, page);
        const auto expected = matches.empty() ? std::nullopt : std::optional(matches.front().captured(1));
        ASSERT_EQ(metaRefreshAddress(page), expected) << page.toStdString();
        found += expected ? 1 : 0;
    }
    EXPECT_GT(found, 1000) << "the pages are no test";
}

std::vector<Link> expectedGoLinks(const QString& page)
{
    static const std::array patterns{
        ignoringCase(uR"re(href=["'](?:https?://[^"'/]*)?(/go/[A-Za-z0-9]+)["'])re"_s),
        ignoringCase(uR"re((?:open|window\.open)\(['"](?:https?://[^'"]*)?(/go/[A-Za-z0-9]+)['"])re"_s),
        ignoringCase(uR"re(data-href=["'](?:https?://[^"'/]*)?(/go/[A-Za-z0-9]+)["'])re"_s)};
    std::vector<Link> links;
    for (const QRegularExpression& pattern : patterns) {
        for (const QRegularExpressionMatch& match : matchesOf(pattern, page)) {
            const Link link = linkOf(u"https://box.example"_s + match.captured(1));
            if (std::find(links.begin(), links.end(), link) == links.end())
                links.push_back(link);
        }
    }
    return links;
}

TEST(PatternMeaning, GoLinksAreThoseOfTheThreePatterns)
{
    RandomPages random(
        {u"href="_s, u"\""_s, u"https://"_s, u"x"_s, u"/go/a1"_s, u"\""_s, u"open("_s, u"'"_s, u"/go/b2"_s, u"'"_s},
        withNoise({u"data-href="_s, u"data-"_s, u"window."_s, u"WINDOW.OPEN("_s, u"HREF=\""_s, u"http://"_s,
                   u"httpS://"_s, u"/"_s, u"/go/"_s, u"/GO/c"_s, u"href='/go/d'"_s, u"data-href=\"/go/e\""_s,
                   u"window.open('https://x/y/go/f'"_s, u"a-b"_s, u"//"_s}));
    std::size_t found = 0;
    for (int i = 0; i < pages; ++i) {
        const QString page = random.next();
        const std::vector<Link> expected = expectedGoLinks(page);
        ASSERT_EQ(textOf(extractGoLinks(page, linkOf(u"https://box.example/"_s))), textOf(expected))
            << page.toStdString();
        found += expected.size();
    }
    EXPECT_GT(found, 1000U) << "the pages are no test";
}

} // namespace
} // namespace vormel::tests
