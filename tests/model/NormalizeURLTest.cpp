#include "model/NormalizeURL.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/ProcessorTime.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace vormel {
namespace {

struct Row
{
    const char* url;
    const char* normalized;
};

void expectNormalized(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        const Link url = fixtures::link(QString::fromUtf8(row.url));
        EXPECT_EQ(normalizeURL(url).absoluteString().toStdString(), row.normalized) << row.url;
    }
}

void expectKept(const std::vector<const char*>& urls)
{
    for (const char* url : urls)
        expectNormalized({{url, url}});
}

TEST(NormalizeURL, TheEndOfASentenceIsLost)
{
    expectNormalized({{"http://a/x.zip.", "http://a/x.zip"},
                      {"http://a/x.zip...", "http://a/x.zip"},
                      {"http://a/x.zip)", "http://a/x.zip"},
                      {"http://a/x.zip,", "http://a/x.zip"},
                      {"http://a/x.zip';!", "http://a/x.zip"},
                      {"http://a/x.zip]*", "http://a/x.zip"},
                      {"http://a/x_", "http://a/x"}});
}

TEST(NormalizeURL, ALetterANumberOrASlashAtTheEndStays)
{
    expectKept({"http://a/x", "http://a/x2", "http://a/x/", "http://a/x//", "http://a/", "HTTP://A.Example/X.ZIP"});
    expectNormalized({{"http://a/x/...", "http://a/x/"}, {"http://a/...", "http://a/"}});
}

TEST(NormalizeURL, AnAddressWithoutAPathStaysAsItIs)
{
    expectKept({"http://a", "http://a.example.", "http://a?q=1.", "http://a#f."});
}

TEST(NormalizeURL, APathOfNothingButPunctuationIsLostWhole)
{
    expectNormalized({{"x:...", "x:"}, {"x:..?q", "x:?q"}});
}

TEST(NormalizeURL, QueryAndFragmentAreLeftAlone)
{
    expectKept({"http://a/x?q=1.", "http://a/x#f...", "http://a/x?q=)#f)"});
    expectNormalized({{"http://a/x.?q=(1.)#f!", "http://a/x?q=(1.)#f!"}});
}

TEST(NormalizeURL, EncodedPunctuationAtTheEndIsLostWithoutReencodingTheRest)
{
    expectNormalized({{"http://a/x%22", "http://a/x"},
                      {"http://a/x%E2%80%9D", "http://a/x"},
                      {"http://a/x%e2%80%9d%22.%20", "http://a/x"},
                      {"http://a/%41%2f(b)%c3%a8%22", "http://a/%41%2f(b)%c3%a8"},
                      {"http://a/x”.", "http://a/x"},
                      {"http://a/x🍺", "http://a/x"}});
}

TEST(NormalizeURL, EncodedLettersNumbersAndSlashesStay)
{
    expectKept({"http://a/x%41", "http://a/%C3%A8", "http://a/x%2F", "http://a/%E6%97%A5%E6%9C%AC", "http://a/%D9%A3"});
}

TEST(NormalizeURL, LettersAndNumbersOfOtherScriptsStay)
{
    expectNormalized({{"http://a/日本", "http://a/%E6%97%A5%E6%9C%AC"},
                      {"http://a/Привет.", "http://a/%D0%9F%D1%80%D0%B8%D0%B2%D0%B5%D1%82"},
                      {"http://a/٣!", "http://a/%D9%A3"},
                      {"http://a/𝔘.", "http://a/%F0%9D%94%98"}});
}

TEST(NormalizeURL, WhatIsNoEscapeIsReadAsItStands)
{
    expectKept({"http://a/x%zz", "http://a/x%4"});
    expectNormalized({{"http://a/x%", "http://a/x"}, {"http://a/x%FF", "http://a/x"}});
}

TEST(NormalizeURL, ASecondTimeChangesNothing)
{
    for (const char* url : {"http://a/x%E2%80%9D).", "x:...", "http://a/%C3%A8%22?q."}) {
        const Link once = normalizeURL(fixtures::link(QString::fromUtf8(url)));
        EXPECT_EQ(normalizeURL(once), once) << url;
    }
}

TEST(NormalizeURL, ALongTailIsLostAtOnce)
{
    const fixtures::ProcessorTime timer;
    for (const char* tail : {".", "%22", "%E2%80%9D", "%F0%9F%8D%BA"}) {
        const QString url = u"http://a/x"_s + QString::fromLatin1(tail).repeated(5000);
        EXPECT_EQ(normalizeURL(fixtures::link(url)).absoluteString(), u"http://a/x");
    }
    EXPECT_LT(timer.elapsed(), 1500ms);
}

} // namespace
} // namespace vormel
