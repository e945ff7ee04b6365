#include "resolvers/filestore/FilestoreNames.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

struct NameRow
{
    QString text;
    QString name;
};

void expectTitleNames(const std::vector<NameRow>& rows)
{
    for (const auto& [html, name] : rows)
        EXPECT_EQ(extractTitleName(html).toStdString(), name.toStdString()) << html.toStdString();
}

void expectNormalized(const std::vector<NameRow>& rows)
{
    for (const auto& [text, name] : rows)
        EXPECT_EQ(normalizeTitleName(text).toStdString(), name.toStdString()) << text.toStdString();
}

TEST(FilestoreNames, TheHeadingNamesTheFile)
{
    expectTitleNames({{u"<title>Title</title><h1>Film.mkv</h1>"_s, u"Film.mkv"_s},
                      {u"<H1 class=\"x\">Film.mkv</H1>"_s, u"Film.mkv"_s},
                      {u"<h1\n>\n Film.mkv\t\u00A0</h1>"_s, u"Film.mkv"_s},
                      {u"<h1>One</h1><h1>Two</h1>"_s, u"One"_s},
                      {u"<h1>a > b &amp; c | d</h1>"_s, u"a > b &amp; c | d"_s}});
}

TEST(FilestoreNames, AHeadingWithTagsInItIsNone)
{
    expectTitleNames({{u"<h1><b>Film</b></h1><title>Title</title>"_s, u"Title"_s},
                      {u"<h1>Film <b>x</b></h1><h1>Two</h1>"_s, u"Two"_s},
                      {u"<h1></h1><h1>Two</h1>"_s, u"Two"_s},
                      {u"<h1>Film</h2><title>Title</title>"_s, u"Title"_s},
                      {u"<h1>Film<title>Title</title>"_s, u"Title"_s},
                      {u"<h1 <h1>Film</h1>"_s, u"Film"_s},
                      {u"<h1>Film"_s, u""_s}});
}

TEST(FilestoreNames, TheTitleIsNextUpToItsFirstBar)
{
    expectTitleNames({{u"<title>Film.mkv</title>"_s, u"Film.mkv"_s},
                      {u"<TITLE> Film.mkv | Download | Site</TITLE>"_s, u"Film.mkv"_s},
                      {u"<title>Film.mkv"_s, u"Film.mkv"_s},
                      {u"<title></title><title>Film</title>"_s, u"Film"_s},
                      {u"<title>| x</title>"_s, u""_s},
                      {u"<title lang=\"en\">Film</title>"_s, u""_s},
                      {u""_s, u""_s}});
}

TEST(FilestoreNames, ABlankHeadingGivesWayToTheTitle)
{
    expectTitleNames({{u"<h1> \n</h1><h1>Second</h1><title>Title</title>"_s, u"Title"_s},
                      {u"<h1>\u00A0</h1><title> </title>"_s, u""_s}});
}

TEST(FilestoreNames, WhatNamesTheServiceIsNoName)
{
    expectTitleNames({{u"<h1>FileStore</h1><title>Film.mkv</title>"_s, u"Film.mkv"_s},
                      {u"<h1>My FILESTORE page</h1><title>Film.mkv | Filestore</title>"_s, u"Film.mkv"_s},
                      {u"<h1>filestore</h1><h1>Film</h1><title>Filestore: Film</title>"_s, u""_s}});
}

TEST(FilestoreNames, AFoundNameIsNormalized)
{
    expectTitleNames({{u"<h1>Download Film part3 rar</h1>"_s, u"Film.part3.rar"_s},
                      {u"<title>Download Film part03 REV | Site</title>"_s, u"Film.part03.rev"_s}});
}

TEST(FilestoreNames, TheWordDownloadBeforeANameGoes)
{
    expectNormalized({{u"Download Film"_s, u"Film"_s},
                      {u"DOWNLOAD \t\n\u00A0Film"_s, u"Film"_s},
                      {u"Download Download Film"_s, u"Download Film"_s},
                      {u"Downloads Film"_s, u"Downloads Film"_s},
                      {u"Download"_s, u"Download"_s},
                      {u"Free Download Film"_s, u"Free Download Film"_s},
                      {u"Free\nDownload Film"_s, u"Free\nDownload Film"_s}});
}

TEST(FilestoreNames, AVolumeInWordsBecomesAnEnding)
{
    expectNormalized({{u"Film part3 rar"_s, u"Film.part3.rar"_s},
                      {u"Film PART03 RAR"_s, u"Film.part03.rar"_s},
                      {u"Film \t part12\n Rev"_s, u"Film.part12.rev"_s},
                      {u"Film\u00A0part1\u2003rar"_s, u"Film.part1.rar"_s},
                      {u"Film part1 rar part2 rar"_s, u"Film part1 rar.part2.rar"_s},
                      {u"Download Film part1 rar"_s, u"Film.part1.rar"_s},
                      {u"Download  part1 rar"_s, u"part1 rar"_s},
                      {u" part1 rar"_s, u".part1.rar"_s},
                      {u"Film part1 rar\n"_s, u"Film.part1.rar\n"_s}});
}

TEST(FilestoreNames, WhatIsNoVolumeStaysAsItIs)
{
    expectNormalized({{u"Film.part3.rar"_s, u"Film.part3.rar"_s},
                      {u"Film part3.rar"_s, u"Film part3.rar"_s},
                      {u"Film part3rar"_s, u"Film part3rar"_s},
                      {u"Film part 3 rar"_s, u"Film part 3 rar"_s},
                      {u"Film part rar"_s, u"Film part rar"_s},
                      {u"Filmpart3 rar"_s, u"Filmpart3 rar"_s},
                      {u"Film part3 rars"_s, u"Film part3 rars"_s},
                      {u"Film part3 rar "_s, u"Film part3 rar "_s},
                      {u"Film part3 zip"_s, u"Film part3 zip"_s},
                      {u""_s, u""_s}});
}

} // namespace
} // namespace vormel
