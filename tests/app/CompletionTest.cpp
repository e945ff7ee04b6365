#include "fixtures/PrivateBus.h"
#include "fixtures/RealTools.h"

#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// What bash makes of the script, without a terminal.
class CompletionTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (QStandardPaths::findExecutable(u"bash"_s).isEmpty() && !fixtures::areToolsRequired())
            GTEST_SKIP() << "bash is not there";
    }
    static QString outputOf(const QString& script)
    {
        QProcess bash;
        fixtures::endWithTheTest(bash);
        bash.start(u"bash"_s,
                   {u"--norc"_s, u"-c"_s, u"source \"$0\" && "_s + script, QStringLiteral(VORMEL_COMPLETION)});
        EXPECT_TRUE(bash.waitForFinished());
        EXPECT_EQ(bash.readAllStandardError(), "");
        return QString::fromUtf8(bash.readAllStandardOutput()).trimmed();
    }
    /// Of the last of the words, as the shell would have them.
    static QString completionsOf(const QString& words)
    {
        return outputOf(u"COMP_WORDS=(vormel %1); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _vormel; "
                        "echo \"${COMPREPLY[*]}\""_s.arg(words));
    }
};

TEST_F(CompletionTest, OptionsAreCompletedBeforeTwoDashes)
{
    EXPECT_EQ(completionsOf(u"--h"_s), u"--help");
    EXPECT_EQ(completionsOf(u"a --"_s), u"--help --version --");
    EXPECT_EQ(completionsOf(u"-- --h"_s), u"");
}

TEST_F(CompletionTest, NamesOfFilesAreLeftToTheShell)
{
    EXPECT_EQ(completionsOf(u"/"_s), u"");
    EXPECT_EQ(outputOf(u"complete -p vormel"_s), u"complete -o default -F _vormel vormel");
}

} // namespace
} // namespace vormel
