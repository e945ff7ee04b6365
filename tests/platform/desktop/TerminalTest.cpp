#include "platform/desktop/Terminal.h"

#include "fixtures/EventLoop.h"
#include "fixtures/FakeTools.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

class TerminalTest : public ::testing::Test
{
protected:
    std::optional<TerminalCall> call(const char* preferred = "")
    {
        return terminalCall(QStringLiteral("/run/it"), QString::fromLatin1(preferred), {programs.folder()});
    }
    void install(const char* name) { programs.add(QString::fromLatin1(name)); }
    [[nodiscard]] QString pathOf(const char* name) const { return programs.folder() + QString::fromLatin1(name); }
    [[nodiscard]] QString folder() const { return sandbox.path(QStringLiteral("run")); }

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
        const QStringList expected{QString::fromLatin1(separator), QStringLiteral("/bin/bash"),
                                   QStringLiteral("--init-file"), QStringLiteral("/run/it"), QStringLiteral("-i")};
        EXPECT_EQ(call(name)->arguments, expected) << name;
    }
}

TEST_F(TerminalTest, StartsTheProgramWithTheScript)
{
    install("xterm");
    DesktopTerminal(folder(), {}, {programs.folder()}).run(QStringLiteral("sudo apt install 7zip"));
    ASSERT_TRUE(fixtures::waitUntil([this] { return !programs.calls(QStringLiteral("xterm")).isEmpty(); }));
    EXPECT_EQ(programs.calls(QStringLiteral("xterm")).first().at(3),
              folder() + QStringLiteral("/vormel_install.command"));
    EXPECT_EQ(sandbox.read(QStringLiteral("run/vormel_install.command")), "#!/bin/bash\nsudo apt install 7zip\n");
}

TEST_F(TerminalTest, RunsTheCommandAndStaysOpenWithAPrompt)
{
    // Does with its arguments what a terminal does; what is typed then comes from the pipe.
    const QByteArray result = sandbox.path(QStringLiteral("result")).toUtf8();
    programs.add(QStringLiteral("xterm"), "shift; echo 'echo still here >> " + result + "; exit' | \"$@\" 2>/dev/null");
    DesktopTerminal(folder(), {}, {programs.folder()})
        .run(QStringLiteral("echo installed >> ") + QString::fromUtf8(result));
    ASSERT_TRUE(fixtures::waitUntil([this] { return sandbox.read(QStringLiteral("result")).contains("still here"); }));
    EXPECT_EQ(sandbox.read(QStringLiteral("result")), "installed\nstill here\n");
}

TEST_F(TerminalTest, FailsInSilenceWithoutATerminalOrAFolder)
{
    DesktopTerminal(folder(), {}, {programs.folder()}).run(QStringLiteral("true"));
    EXPECT_TRUE(sandbox.exists(QStringLiteral("run/vormel_install.command")));
    install("xterm");
    sandbox.write(QStringLiteral("file"), {});
    DesktopTerminal(sandbox.path(QStringLiteral("file/run")), {}, {programs.folder()}).run(QStringLiteral("true"));
    EXPECT_TRUE(programs.calls(QStringLiteral("xterm")).isEmpty());
}

} // namespace
} // namespace vormel
