#include "SourceFile.h"

#include "MadeUpTree.h"

#include <gtest/gtest.h>

namespace vormel::architecture {

TEST(SourceFile, CommentsAreBlankedAndLinesKept)
{
    EXPECT_EQ(withoutComments("a // getenv\nb"), "a          \nb");
    EXPECT_EQ(withoutComments("a /* x\ny */ b"), "a     \n     b");
}

TEST(SourceFile, SlashesInsideQuotesAreNoComment)
{
    EXPECT_EQ(withoutComments("f(\"http://x\"); g();"), "f(\"http://x\"); g();");
    EXPECT_EQ(withoutComments("f(\"\\\"// x\");"), "f(\"\\\"// x\");");
}

TEST(SourceFile, AQuotedCharacterOpensNoText)
{
    EXPECT_EQ(withoutComments("c = '\"'; // x"), "c = '\"';     ");
}

TEST(SourceFile, ADigitSeparatorOpensNoText)
{
    EXPECT_EQ(withoutComments("1'000 // x"), "1'000     ");
}

TEST(SourceFile, AnUnpairedQuoteHidesNoFurtherLine)
{
    EXPECT_EQ(withoutComments("R\"(\"\\)\"x\n// y"), "R\"(\"\\)\"x\n    ");
}

TEST(SourceFile, OnlySourcesAreReadInTheOrderOfTheirPaths)
{
    const MadeUpTree tree;
    tree.write("text/B.cpp", "one\ntwo");
    tree.write("text/A.h", "");
    tree.write("text/CMakeLists.txt", "");

    const auto sources = readSources(tree.root());

    ASSERT_EQ(sources.size(), 2U);
    EXPECT_EQ(sources[0].path, "text/A.h");
    EXPECT_EQ(sources[1].floor(), "text");
    EXPECT_EQ(sources[1].lines.size(), 2U);
    EXPECT_EQ(sources[1].position(2), "src/text/B.cpp:2");
}

TEST(SourceFile, AFileDirectlyInTheFolderHasNoFloor)
{
    EXPECT_EQ((SourceFile{"main.cpp", {}}).floor(), "");
}

} // namespace vormel::architecture
