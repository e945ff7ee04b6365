#include "platform/desktop/TerminalScript.h"

#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

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
    QString folder = sandbox.path(u"run/Vormel"_s);
    QString script = folder + u"/vormel_install.command"_s;
};

TEST_F(TerminalScriptTest, HoldsTheCommandAndNothingElse)
{
    EXPECT_EQ(write(u"brew install però"_s), script);
    EXPECT_EQ(sandbox.read(u"run/Vormel/vormel_install.command"_s), "#!/bin/bash\nbrew install però\n");
}

TEST_F(TerminalScriptTest, EverybodyMayRunItButOnlyTheUserGetsThere)
{
    write(u"true"_s);
    EXPECT_EQ(modeOf(script), 0755U);
    EXPECT_EQ(modeOf(folder), 0700U);
}

TEST_F(TerminalScriptTest, AnOpenFolderIsClosed)
{
    sandbox.write(u"run/Vormel/other"_s, {});
    ASSERT_EQ(::chmod(QFile::encodeName(folder).constData(), 0777), 0);
    write(u"true"_s);
    EXPECT_EQ(modeOf(folder), 0700U);
}

TEST_F(TerminalScriptTest, ASecondOneReplacesTheFirst)
{
    write(u"brew install rar and much more than that"_s);
    EXPECT_EQ(write(u"brew install sevenzip"_s), script);
    EXPECT_EQ(sandbox.read(u"run/Vormel/vormel_install.command"_s), "#!/bin/bash\nbrew install sevenzip\n");
    EXPECT_EQ(sandbox.files(), QStringList{u"run/Vormel/vormel_install.command"_s});
    EXPECT_EQ(modeOf(script), 0755U);
}

TEST_F(TerminalScriptTest, ALinkOfThatNameIsReplacedAndNotFollowed)
{
    const QString victim = sandbox.write(u"victim"_s, "mine");
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(QFile::link(victim, script));
    EXPECT_EQ(write(u"true"_s), script);
    EXPECT_EQ(sandbox.read(u"victim"_s), "mine");
    EXPECT_FALSE(QFileInfo(script).isSymLink());
}

TEST_F(TerminalScriptTest, AFailedWriteGivesNothing)
{
    sandbox.write(u"run"_s, "a file where the folder should be");
    EXPECT_EQ(write(u"true"_s), std::nullopt);
}

} // namespace
} // namespace vormel
