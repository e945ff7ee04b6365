#include "MadeUpTree.h"
#include "Rules.h"
#include "SourceFile.h"

#include <gtest/gtest.h>

namespace vormel::architecture {

namespace {

const std::filesystem::path realSources = std::filesystem::path(VORMEL_SOURCE_ROOT) / "src";

/// One breach a line, so that a failure reads like a compiler's output.
std::string lines(const Breaches& breaches)
{
    std::string text;
    for (const auto& breach : breaches)
        text += breach + '\n';
    return text;
}

/// What the floor rule says of one include written in one file.
std::string floorVerdict(const std::string& path, const std::string& included)
{
    const MadeUpTree tree;
    tree.write(path, "#include \"" + included + "\"\n");
    return lines(floorBreaches(tree.root()));
}

} // namespace

TEST(Sources, AreThereToBeJudged)
{
    EXPECT_GT(readSources(realSources).size(), 10U);
}

TEST(Sources, IncludeOnlyDownward)
{
    EXPECT_EQ(lines(floorBreaches(realSources)), "");
}

TEST(Sources, KnowNoWidgetsBelowTheWindowFloors)
{
    EXPECT_EQ(lines(widgetBreaches(realSources)), "");
}

TEST(Sources, ReadTheEnvironmentOnlyInTheProgram)
{
    EXPECT_EQ(lines(environmentBreaches(realSources)), "");
}

TEST(Sources, AreNamedAfterTheirJob)
{
    EXPECT_EQ(lines(nameBreaches(realSources)), "");
}

TEST(Sources, GuardEveryHeader)
{
    EXPECT_EQ(lines(pragmaBreaches(realSources)), "");
}

TEST(Sources, LeanOnEachOtherOneWay)
{
    EXPECT_EQ(lines(circleBreaches(realSources)), "");
}

TEST(Sources, AreShort)
{
    for (const char* folder : {"src", "tests", "sites", "demo", "benchmarks"}) {
        const std::filesystem::path sources = std::filesystem::path(VORMEL_SOURCE_ROOT) / folder;
        EXPECT_FALSE(readSources(sources).empty()) << folder;
        EXPECT_EQ(lines(lengthBreaches(sources)), "");
    }
}

TEST(CircleRule, ReportsEveryIncludeOfACircleAlsoOverSeveralFolders)
{
    const MadeUpTree tree;
    tree.write("engine/a/A.h", "#include \"engine/b/B.h\"\n");
    tree.write("engine/b/B.h", "#include \"engine/c/C.h\"\n#include \"engine/d/D.h\"\n");
    tree.write("engine/c/C.h", "\n#include \"engine/a/A.h\"\n");
    tree.write("engine/d/D.h", "");
    EXPECT_EQ(lines(circleBreaches(tree.root())), "src/engine/a/A.h:1: engine/b leads back to engine/a\n"
                                                  "src/engine/b/B.h:1: engine/c leads back to engine/b\n"
                                                  "src/engine/c/C.h:2: engine/a leads back to engine/c\n");
}

TEST(CircleRule, AcceptsOneWayAndFilesOfOneFolder)
{
    const MadeUpTree tree;
    tree.write("engine/a/A.h", "#include \"engine/a/B.h\"\n#include \"engine/C.h\"\n#include \"text/a/D.h\"\n");
    tree.write("engine/a/B.h", "#include \"engine/a/A.h\"\n");
    tree.write("engine/C.h", "");
    tree.write("text/a/D.h", "");
    EXPECT_EQ(lines(circleBreaches(tree.root())), "");
}

TEST(LengthRule, AllowsFourHundredLines)
{
    const MadeUpTree tree;
    std::string text;
    for (int i = 0; i < 400; ++i)
        text += "int x;\n";
    tree.write("text/A.cpp", text);
    tree.write("text/B.cpp", text + "int y;\n");
    EXPECT_EQ(lines(lengthBreaches(tree.root())), "src/text/B.cpp:401: is the line that is too many\n");
}

TEST(FloorRule, ReportsAFloorThatReachesUpWithFileAndLine)
{
    const MadeUpTree tree;
    tree.write("engine/Queue.h", "#pragma once\n");
    tree.write("model/Download.cpp", "// A comment.\n#include <string>\n#include \"engine/Queue.h\"\n");

    EXPECT_EQ(lines(floorBreaches(tree.root())), "src/model/Download.cpp:3: model must not include engine/Queue.h\n");
}

TEST(FloorRule, AcceptsEveryWayDownAndTheOwnFloor)
{
    EXPECT_EQ(floorVerdict("platform/A.cpp", "text/B.h"), "");
    EXPECT_EQ(floorVerdict("engine/A.cpp", "archive/B.h"), "");
    EXPECT_EQ(floorVerdict("ui/main/A.cpp", "kit/B.h"), "");
    EXPECT_EQ(floorVerdict("app/A.cpp", "web/B.h"), "");
}

TEST(FloorRule, RefusesEveryFloorTheOneAboveIt)
{
    EXPECT_NE(floorVerdict("text/A.cpp", "platform/B.h"), "");
    EXPECT_NE(floorVerdict("platform/A.cpp", "model/B.h"), "");
    EXPECT_NE(floorVerdict("model/A.cpp", "archive/B.h"), "");
    EXPECT_NE(floorVerdict("archive/A.cpp", "engine/B.h"), "");
    EXPECT_NE(floorVerdict("resolvers/A.cpp", "engine/B.h"), "");
    EXPECT_NE(floorVerdict("engine/A.cpp", "ui/B.h"), "");
    EXPECT_NE(floorVerdict("kit/A.cpp", "ui/B.h"), "");
    EXPECT_NE(floorVerdict("ui/A.cpp", "web/B.h"), "");
    EXPECT_NE(floorVerdict("web/A.cpp", "app/B.h"), "");
}

TEST(FloorRule, KeepsArchiveAndResolversApart)
{
    EXPECT_NE(floorVerdict("archive/A.cpp", "resolvers/B.h"), "");
    EXPECT_NE(floorVerdict("resolvers/A.cpp", "archive/B.h"), "");
}

TEST(FloorRule, LetsNobodyKnowThePluginOfTheWebEngine)
{
    EXPECT_EQ(floorVerdict("webengine/A.cpp", "platform/web/B.h"), "");
    EXPECT_NE(floorVerdict("webengine/A.cpp", "model/B.h"), "");
    EXPECT_NE(floorVerdict("app/A.cpp", "webengine/B.h"), "");
    EXPECT_NE(floorVerdict("platform/A.cpp", "webengine/B.h"), "");
}

TEST(FloorRule, KeepsTheKitFreeOfTheEngine)
{
    EXPECT_EQ(floorVerdict("kit/A.cpp", "model/B.h"), "");
    EXPECT_NE(floorVerdict("kit/A.cpp", "engine/B.h"), "");
    EXPECT_NE(floorVerdict("engine/A.cpp", "kit/B.h"), "");
}

TEST(FloorRule, GivesTheWebFloorOnlyTheKitOfTheUserInterface)
{
    EXPECT_EQ(floorVerdict("web/A.cpp", "kit/B.h"), "");
    EXPECT_EQ(floorVerdict("web/A.cpp", "model/B.h"), "");
    EXPECT_NE(floorVerdict("web/A.cpp", "ui/main/B.h"), "");
    EXPECT_NE(floorVerdict("web/A.cpp", "engine/B.h"), "");
}

TEST(FloorRule, FollowsRelativePathsAndAngleBrackets)
{
    const MadeUpTree tree;
    tree.write("engine/Queue.h", "#pragma once\n");
    tree.write("model/A.cpp", "#include \"../engine/Queue.h\"\n");
    tree.write("model/B.cpp", "#  include <engine/Queue.h>\n");

    EXPECT_EQ(lines(floorBreaches(tree.root())), "src/model/A.cpp:1: model must not include engine/Queue.h\n"
                                                 "src/model/B.cpp:1: model must not include engine/Queue.h\n");
}

TEST(FloorRule, TakesAHeaderBesideTheFileForTheOwnFloor)
{
    const MadeUpTree tree;
    tree.write("model/parts/Item.h", "#pragma once\n");
    tree.write("model/parts/Item.cpp", "#include \"Item.h\"\n");

    EXPECT_EQ(lines(floorBreaches(tree.root())), "");
}

TEST(FloorRule, IgnoresIncludesThatAreCommentedOutOrGenerated)
{
    EXPECT_EQ(floorVerdict("model/A.cpp", "config/Services.h"), "");
    EXPECT_EQ(floorVerdict("model/A.cpp", "A.moc"), "");

    const MadeUpTree tree;
    tree.write("text/A.cpp", "// #include \"ui/B.h\"\n/*\n#include \"ui/B.h\"\n*/\n");
    EXPECT_EQ(lines(floorBreaches(tree.root())), "");
}

TEST(FloorRule, ReportsAFileOnNoKnownFloor)
{
    const MadeUpTree tree;
    tree.write("common/A.cpp", "#include \"text/B.h\"\n");
    tree.write("main.cpp", "");

    EXPECT_EQ(lines(floorBreaches(tree.root())), "src/common/A.cpp:1: stands on no known floor\n"
                                                 "src/main.cpp:1: stands on no known floor\n");
}

TEST(WidgetRule, ReportsWidgetHeadersBelowTheWindowFloorsOnly)
{
    const MadeUpTree tree;
    tree.write("engine/A.cpp", "#include <QWidget>\n#include <QtWidgets/QMessageBox>\n#include <QMessageBox>\n"
                               "#include <qapplication.h>\n#include <QtWidgets>\n");
    tree.write("ui/B.cpp", "#include <QWidget>\n");

    const Breaches breaches = widgetBreaches(tree.root());

    ASSERT_EQ(breaches.size(), 5U) << lines(breaches);
    EXPECT_EQ(breaches[0], "src/engine/A.cpp:1: engine must not know the widget header QWidget");
}

TEST(WidgetRule, AcceptsHeadersOfTheOtherQtModules)
{
    const MadeUpTree tree;
    tree.write("engine/A.cpp",
               "#include <QCoreApplication>\n#include <QStringView>\n#include <QtCore/QUrl>\n#include <QImage>\n");

    EXPECT_EQ(lines(widgetBreaches(tree.root())), "");
}

TEST(EnvironmentRule, ReportsEveryWayToReadItBelowTheProgram)
{
    const MadeUpTree tree;
    tree.write("platform/A.cpp", "std::getenv(\"HOME\");\nqgetenv(\"HOME\");\nqEnvironmentVariableIsSet(\"HOME\");\n");
    tree.write("app/B.cpp", "qgetenv(\"HOME\");\n");

    const Breaches breaches = environmentBreaches(tree.root());

    ASSERT_EQ(breaches.size(), 3U) << lines(breaches);
    EXPECT_EQ(breaches[2],
              "src/platform/A.cpp:3: platform must not read the environment with qEnvironmentVariableIsSet");
}

TEST(EnvironmentRule, LetsCommentsSpeakOfIt)
{
    const MadeUpTree tree;
    tree.write("platform/A.cpp", "// Never getenv here.\n");

    EXPECT_EQ(lines(environmentBreaches(tree.root())), "");
}

TEST(NameRule, ReportsDrawersAmongFilesAndFolders)
{
    const MadeUpTree tree;
    tree.write("text/StringUtils.h", "");
    tree.write("text/DownloadHelper.cpp", "");
    tree.write("text/Misc.cpp", "");
    tree.write("model/utils/Item.h", "");
    tree.write("model/Item.h", "");

    const Breaches breaches = nameBreaches(tree.root());

    ASSERT_EQ(breaches.size(), 4U) << lines(breaches);
    EXPECT_EQ(breaches[0], "src/model/utils:1: is named after a drawer, not after its job");
}

TEST(PragmaRule, ReportsHeadersThatLackIt)
{
    const MadeUpTree tree;
    tree.write("text/A.h", "#pragma once\n");
    tree.write("text/B.h", "// #pragma once\nclass B;\n");
    tree.write("text/C.cpp", "");

    EXPECT_EQ(lines(pragmaBreaches(tree.root())), "src/text/B.h:1: lacks #pragma once\n");
}

} // namespace vormel::architecture
