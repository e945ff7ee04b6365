#include "platform/desktop/TerminalScript.h"

#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace vormel {
namespace {

unsigned modeOf(const QString& path)
{
    struct stat facts = {};
    EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &facts), 0);
    return facts.st_mode & 07777U;
}

class TerminalScriptTest : public ::testing::Test
{
protected:
    std::optional<QString> write(const QString& command) { return writeTerminalScript(folder, command); }

    fixtures::Sandbox sandbox;
    QString folder = sandbox.path(QStringLiteral("run/Vormel"));
    QString script = folder + QStringLiteral("/vormel_install.command");
};

TEST_F(TerminalScriptTest, HoldsTheCommandAndNothingElse)
{
    EXPECT_EQ(write(QStringLiteral("brew install però")), script);
    EXPECT_EQ(sandbox.read(QStringLiteral("run/Vormel/vormel_install.command")), "#!/bin/bash\nbrew install però\n");
}

TEST_F(TerminalScriptTest, EverybodyMayRunItButOnlyTheUserGetsThere)
{
    write(QStringLiteral("true"));
    EXPECT_EQ(modeOf(script), 0755U);
    EXPECT_EQ(modeOf(folder), 0700U);
}

TEST_F(TerminalScriptTest, AnOpenFolderIsClosed)
{
    sandbox.write(QStringLiteral("run/Vormel/other"), {});
    ASSERT_EQ(::chmod(QFile::encodeName(folder).constData(), 0777), 0);
    write(QStringLiteral("true"));
    EXPECT_EQ(modeOf(folder), 0700U);
}

TEST_F(TerminalScriptTest, ASecondOneReplacesTheFirst)
{
    write(QStringLiteral("brew install rar and much more than that"));
    EXPECT_EQ(write(QStringLiteral("brew install sevenzip")), script);
    EXPECT_EQ(sandbox.read(QStringLiteral("run/Vormel/vormel_install.command")),
              "#!/bin/bash\nbrew install sevenzip\n");
    EXPECT_EQ(sandbox.files(), QStringList{QStringLiteral("run/Vormel/vormel_install.command")});
    EXPECT_EQ(modeOf(script), 0755U);
}

TEST_F(TerminalScriptTest, ALinkOfThatNameIsReplacedAndNotFollowed)
{
    const QString victim = sandbox.write(QStringLiteral("victim"), "mine");
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(QFile::link(victim, script));
    EXPECT_EQ(write(QStringLiteral("true")), script);
    EXPECT_EQ(sandbox.read(QStringLiteral("victim")), "mine");
    EXPECT_FALSE(QFileInfo(script).isSymLink());
}

TEST_F(TerminalScriptTest, AFailedWriteGivesNothing)
{
    sandbox.write(QStringLiteral("run"), "a file where the folder should be");
    EXPECT_EQ(write(QStringLiteral("true")), std::nullopt);
}

} // namespace
} // namespace vormel
