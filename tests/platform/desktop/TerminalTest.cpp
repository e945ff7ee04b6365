#include "platform/desktop/Terminal.h"

#include "fixtures/EventLoop.h"
#include "fixtures/FakeTools.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class TerminalTest : public ::testing::Test
{
protected:
    std::optional<TerminalCall> call(const char* preferred = "")
    {
        return terminalCall(u"/run/it"_s, QString::fromLatin1(preferred), {programs.folder()});
    }
    void install(const char* name) { programs.add(QString::fromLatin1(name)); }
    [[nodiscard]] QString pathOf(const char* name) const { return programs.folder() + QString::fromLatin1(name); }
    [[nodiscard]] QString folder() const { return sandbox.path(u"run"_s); }

    fixtures::FakeTools programs;
    fixtures::Sandbox sandbox;
};

TEST_F(TerminalTest, TheDesktopsChoiceComesBeforeTheOthers)
{
    install("xterm");
    EXPECT_EQ(call()->program, pathOf("xterm"));
    install("konsole");
    EXPECT_EQ(call()->program, pathOf("konsole"));
    install("gnome-terminal");
    EXPECT_EQ(call()->program, pathOf("gnome-terminal"));
    install("x-terminal-emulator");
    EXPECT_EQ(call()->program, pathOf("x-terminal-emulator"));
}

TEST_F(TerminalTest, TheUsersChoiceComesFirst)
{
    install("x-terminal-emulator");
    install("konsole");
    install("myterm");
    EXPECT_EQ(call("konsole")->program, pathOf("konsole"));
    EXPECT_EQ(call("myterm")->program, pathOf("myterm"));
    EXPECT_EQ(call("myterm")->arguments.first(), u"-e");
    EXPECT_EQ(call("not-there")->program, pathOf("x-terminal-emulator"));
}

TEST_F(TerminalTest, AMachineMayHaveNone)
{
    EXPECT_EQ(call(), std::nullopt);
}

TEST_F(TerminalTest, EachTakesTheCommandInItsOwnWay)
{
    const std::pair<const char*, const char*> separators[] = {
        {"x-terminal-emulator", "-e"}, {"gnome-terminal", "--"}, {"konsole", "-e"},
        {"xfce4-terminal", "-x"},      {"mate-terminal", "-x"},  {"xterm", "-e"},
    };
    for (const auto& [name, separator] : separators) {
        install(name);
        const QStringList expected{QString::fromLatin1(separator), u"/bin/bash"_s, u"--init-file"_s, u"/run/it"_s,
                                   u"-i"_s};
        EXPECT_EQ(call(name)->arguments, expected) << name;
    }
}

TEST_F(TerminalTest, StartsTheProgramWithTheScript)
{
    install("xterm");
    DesktopTerminal(folder(), {}, {programs.folder()}).run(u"sudo apt install 7zip"_s);
    ASSERT_TRUE(fixtures::waitUntil([this] { return !programs.calls(u"xterm"_s).isEmpty(); }));
    EXPECT_EQ(programs.calls(u"xterm"_s).first().at(3), folder() + u"/vormel_install.command"_s);
    EXPECT_EQ(sandbox.read(u"run/vormel_install.command"_s), "#!/bin/bash\nsudo apt install 7zip\n");
}

TEST_F(TerminalTest, RunsTheCommandAndStaysOpenWithAPrompt)
{
    // Does with its arguments what a terminal does; what is typed then comes from the pipe.
    const QByteArray result = sandbox.path(u"result"_s).toUtf8();
    programs.add(u"xterm"_s, "shift; echo 'echo still here >> " + result + "; exit' | \"$@\" 2>/dev/null");
    DesktopTerminal(folder(), {}, {programs.folder()}).run(u"echo installed >> "_s + QString::fromUtf8(result));
    ASSERT_TRUE(fixtures::waitUntil([this] { return sandbox.read(u"result"_s).contains("still here"); }));
    EXPECT_EQ(sandbox.read(u"result"_s), "installed\nstill here\n");
}

TEST_F(TerminalTest, FailsInSilenceWithoutATerminalOrAFolder)
{
    DesktopTerminal(folder(), {}, {programs.folder()}).run(u"true"_s);
    EXPECT_TRUE(sandbox.exists(u"run/vormel_install.command"_s));
    install("xterm");
    sandbox.write(u"file"_s, {});
    DesktopTerminal(sandbox.path(u"file/run"_s), {}, {programs.folder()}).run(u"true"_s);
    EXPECT_TRUE(programs.calls(u"xterm"_s).isEmpty());
}

} // namespace
} // namespace vormel
