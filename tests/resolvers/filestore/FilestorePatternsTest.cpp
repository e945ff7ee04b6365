#include "ToldPatterns.h"
#include "resolvers/filestore/FilestoreLinks.h"
#include "resolvers/filestore/FilestoreNames.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <array>
#include <random>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

// The scanners are held to the plain patterns that they stand for, on small pages made of what the patterns look at.

const QString site = u"filestore.example"_s;
constexpr int pages = 40'000;
/// What at least must have been found in them, so that to agree means something.
constexpr int telling = 100;

Link somePage()
{
    return *Link::parse(u"https://filestore.example/d/x.zip");
}

/// Makes pages that repeat a few pieces each: what is rare among all pieces is then common on some pages.
class RandomPages
{
public:
    explicit RandomPages(QStringList pieces)
        : m_pieces(std::move(pieces))
    {}

    [[nodiscard]] QString next()
    {
        QStringList few;
        while (few.size() < 9)
            few << m_pieces[below(m_pieces.size())];
        QString page;
        for (qsizetype count = below(24); count >= 0; --count)
            page += few[below(few.size())];
        return page;
    }

private:
    qsizetype below(qsizetype limit) { return static_cast<qsizetype>(m_random()) % limit; }

    QStringList m_pieces;
    std::mt19937 m_random{20260101};
};

const QStringList linkPieces{u"href="_s,
                             u"HREF="_s,
                             u"href=\""_s,
                             u"href=\""_s,
                             u"\""_s,
                             u"\""_s,
                             u"'"_s,
                             u"<a href=\"https://"_s,
                             u"data-url=\""_s,
                             u"data-url=\"/"_s,
                             u"DATA-url="_s,
                             u"location.href='"_s,
                             u"location.href=\"http://"_s,
                             u"locationxhref='"_s,
                             u"http://"_s,
                             u"https://"_s,
                             u"HTTPS://"_s,
                             u"http"_s,
                             u"http\u017F://"_s,
                             u"s://"_s,
                             site,
                             u"FileStore.EXAMPLE"_s,
                             u"filestoreXexample"_s,
                             u"filestore"_s,
                             u"file\u017Ftore"_s,
                             u"/dl/"_s,
                             u"/DL/"_s,
                             u"/d/"_s,
                             u"/d/x.zip"_s,
                             u"x"_s,
                             u"a.example"_s,
                             u".zip"_s,
                             u".ra"_s,
                             u"r"_s,
                             u".7Z"_s,
                             u".m\u212Av"_s,
                             u"."_s,
                             u"/"_s,
                             u"#"_s,
                             u" "_s,
                             u"\n"_s,
                             u"<"_s,
                             u">"_s,
                             u"https://filestore.example/d/x.zip"_s,
                             u"href=\"https://filestore.example/dl/"_s,
                             u"href=\"http://filestore.example/d/"_s,
                             u"y\""_s,
                             u"[bad"_s,
                             u"javascript:"_s,
                             QString(QChar(0)),
                             u"\uFFFD"_s,
                             u"\U0001F37A"_s};

const QStringList namePieces{u"<h1"_s,
                             u"<H1>"_s,
                             u"<h1 class=x>"_s,
                             u"<h1>"_s,
                             u"</h1>"_s,
                             u"</H1>"_s,
                             u"<title>"_s,
                             u"<TITLE>"_s,
                             u"</title>"_s,
                             u">"_s,
                             u"<"_s,
                             u"|"_s,
                             u" "_s,
                             u"\n"_s,
                             u"\u00A0"_s,
                             u"Download"_s,
                             u"download "_s,
                             u"part"_s,
                             u" part1"_s,
                             u"3"_s,
                             u"\u0663"_s,
                             u"rar"_s,
                             u" RAR"_s,
                             u" part12  rev"_s,
                             u"Film"_s,
                             u"\u00E9"_s,
                             u"FileStore"_s,
                             u"file\u017Ftore"_s,
                             u"\u0130"_s,
                             QString(QChar(0)),
                             u"\uFFFD"_s,
                             u"\U0001F37A"_s};

const QStringList volumePieces{u"Download"_s, u"download "_s, u"part"_s, u" part"_s,  u" PART1"_s, u"\u2003part7 "_s,
                               u"3"_s,        u"\u0663 "_s,   u"rar"_s,  u" RAR"_s,   u"rev"_s,    u" part12  rev"_s,
                               u"ra"_s,       u" "_s,         u"\n"_s,   u"\u00A0"_s, u"x"_s,      u"\U0001F37A"_s};

const QStringList inputPieces{u"<input"_s,
                              u"<INPUT "_s,
                              u"<input "_s,
                              u"<inpu"_s,
                              u"<input type=\"hidden\" "_s,
                              u"type="_s,
                              u" type='"_s,
                              u"hidden"_s,
                              u"type=\"hidden\""_s,
                              u"type='HIDDEN\""_s,
                              u"type=hidden"_s,
                              u"type=\"text\" "_s,
                              u"name="_s,
                              u" name=\"a\""_s,
                              u" NAME='b\" "_s,
                              u"name=\"id\" "_s,
                              u" name='c' value=\"5\">"_s,
                              u"<input type='hidden' value=\"6\" "_s,
                              u"name=\"d\">"_s,
                              u"value="_s,
                              u" value=\"1\""_s,
                              u" Value='2' "_s,
                              u" value='a>b'"_s,
                              u"\""_s,
                              u"'"_s,
                              u">"_s,
                              u"/>"_s,
                              u"<"_s,
                              u"x"_s,
                              u" "_s,
                              u"\n"_s,
                              u"\u0130"_s,
                              QString(QChar(0)),
                              u"\uFFFD"_s,
                              u"\U0001F37A"_s};

const QStringList formPieces{u"<form"_s,
                             u"<form>"_s,
                             u"<FORM "_s,
                             u"<formx"_s,
                             u"<form\u00E9>"_s,
                             u"<form\U0001D400>"_s,
                             u"<form_>"_s,
                             u"<form-"_s,
                             u"<form action=\"/a\">"_s,
                             u"</form>"_s,
                             u"</FORM>"_s,
                             u"</form"_s,
                             u"action="_s,
                             u" action='b'"_s,
                             u"ACTION=\"#\""_s,
                             u" data-action=\"http:c\""_s,
                             u">"_s,
                             u"<"_s,
                             u"\""_s,
                             u"'"_s,
                             u" "_s,
                             u"\n"_s,
                             u"<input type=\"hidden\" name=\"id\" value=\"1\">"_s,
                             u"<input type='hidden' name='rand' value='2'>"_s,
                             u"<input value='3' "_s,
                             u"name='op' type='hidden'>"_s,
                             u"<input type='hidden' name='op' value='Download1'>"_s,
                             u"<input type='hidden' name='op' value='view'>"_s,
                             u"<input type='hidden' name='a' value='</form>'>"_s,
                             u"x"_s,
                             u"\U0001F37A"_s};

TEST(FilestorePatterns, LinksAreThoseOfTheFivePatterns)
{
    RandomPages random(linkPieces);
    std::array<int, 5> found{};
    for (int i = 0; i < pages; ++i) {
        const QString page = random.next();
        const std::optional<told::DirectLink> expected = told::extractDirectLink(page, somePage(), site);
        ASSERT_EQ(extractDirectLink(page, somePage(), site), expected ? std::optional(expected->url) : std::nullopt)
            << page.toStdString();
        if (expected)
            ++found[expected->kind];
    }
    for (std::size_t kind = 0; kind < found.size(); ++kind)
        EXPECT_GT(found[kind], telling) << "of kind " << kind;
}

TEST(FilestorePatterns, NamesAreThoseOfHeadingAndTitle)
{
    RandomPages random(namePieces);
    int found = 0;
    for (int i = 0; i < pages; ++i) {
        const QString page = random.next();
        const QString expected = told::extractTitleName(page);
        ASSERT_EQ(extractTitleName(page), expected) << page.toStdString();
        found += expected.isEmpty() ? 0 : 1;
    }
    EXPECT_GT(found, telling);
}

TEST(FilestorePatterns, NamesAreNormalizedByTheTwoPatterns)
{
    RandomPages random(volumePieces);
    int commands = 0;
    int volumes = 0;
    for (int i = 0; i < pages; ++i) {
        const QString text = random.next();
        const QString expected = told::normalizeTitleName(text);
        ASSERT_EQ(normalizeTitleName(text), expected) << text.toStdString();
        volumes += expected.contains(u".part") ? 1 : 0;
        commands += expected != text && !expected.contains(u".part") ? 1 : 0;
    }
    EXPECT_GT(commands, telling);
    EXPECT_GT(volumes, telling);
}

TEST(FilestorePatterns, HiddenInputsAreThoseOfTheThreePatterns)
{
    RandomPages random(inputPieces);
    int found = 0;
    for (int i = 0; i < pages; ++i) {
        const QString page = random.next();
        const FormFields expected = told::parseHiddenInputs(page);
        ASSERT_EQ(parseHiddenInputs(page), expected) << page.toStdString();
        found += expected.empty() ? 0 : 1;
    }
    EXPECT_GT(found, telling);
}

TEST(FilestorePatterns, FormsAreThoseOfTheirPatterns)
{
    RandomPages random(formPieces);
    int found = 0;
    for (int i = 0; i < pages; ++i) {
        const QString page = random.next();
        const std::optional<DownloadForm> expected = told::findDownloadForm(page, somePage());
        const std::optional<DownloadForm> form = findDownloadForm(page, somePage());
        ASSERT_EQ(form.has_value(), expected.has_value()) << page.toStdString();
        if (!expected)
            continue;
        ++found;
        ASSERT_EQ(form->fields, expected->fields) << page.toStdString();
        ASSERT_EQ(form->action, expected->action) << page.toStdString();
    }
    EXPECT_GT(found, telling);
}

} // namespace
} // namespace vormel
