#include "ui/settings/CommandAlert.h"

#include "fixtures/Languages.h"
#include "ui/settings/SettingsPage.h"

#include <QPushButton>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::english;
using fixtures::italian;

class CommandAlertTest : public fixtures::SettingsPage
{
protected:
    /// Clicks the button of the row, and gives the alert that comes up.
    CommandAlert& ask(const char* row = "installSevenZip")
    {
        QTest::mouseClick(&fixtures::partOf<QWidget>(part(row), "openInTerminal"), Qt::LeftButton);
        return part<CommandAlert>("commandAlert");
    }
    static void answer(const CommandAlert& alert, const char* button)
    {
        QTest::mouseClick(&fixtures::partOf<QPushButton>(alert, button), Qt::LeftButton);
        fixtures::turnEventLoop();
    }
    [[nodiscard]] bool isAsking() const { return page.findChild<CommandAlert*>() != nullptr; }
};

TEST(CommandQuestion, IsShortForAnOrdinaryCommand)
{
    const QString command = u"brew install rar"_s;
    EXPECT_EQ(commandQuestion(command, english, Desktop::finder),
              u"This will run:\n\nbrew install rar\n\nmacOS may ask for your password.");
    EXPECT_EQ(commandQuestion(command, italian, Desktop::finder),
              u"Verrà eseguito:\n\nbrew install rar\n\nmacOS potrebbe chiedere la password.");
    EXPECT_EQ(commandQuestion(command, english, Desktop::freedesktop),
              u"This will run:\n\nbrew install rar\n\nYour system may ask for your password.");
    EXPECT_EQ(commandQuestion(command, italian, Desktop::freedesktop),
              u"Verrà eseguito:\n\nbrew install rar\n\nIl sistema potrebbe chiedere la password.");
}

TEST(CommandQuestion, IsLongForTheInstallerOfAPackageManager)
{
    const QString command = u"curl https://brew.example/Homebrew/install/HEAD/install.sh"_s;
    EXPECT_EQ(commandQuestion(command, english, Desktop::finder),
              u"This will run:\n\n"_s + command +
                  u"\n\nNote: the Homebrew installer will also install Xcode Command Line Tools (~1.5 GB) if not "
                  u"already present. macOS will ask for your password."_s);
    EXPECT_EQ(commandQuestion(command, italian, Desktop::finder),
              u"Verrà eseguito:\n\n"_s + command +
                  u"\n\nNota: il programma di installazione di Homebrew installerà anche gli Xcode Command Line Tools "
                  u"(~1.5 GB) se non già presenti. macOS chiederà la password."_s);
    EXPECT_TRUE(commandQuestion(command, english, Desktop::freedesktop).contains(u"git and a compiler"));
    EXPECT_TRUE(commandQuestion(command, italian, Desktop::freedesktop).contains(u"git e un compilatore"));
}

TEST_F(CommandAlertTest, AsksInTheLanguageOfTheSettings)
{
    CommandAlert& alert = ask();
    EXPECT_EQ(alert.text(), u"Open Terminal?");
    EXPECT_EQ(alert.informativeText(), commandQuestion(u"sudo apt install 7zip"_s, english));
    EXPECT_EQ(fixtures::partOf<QPushButton>(alert, "runCommand").text(), u"Open Terminal");
    EXPECT_EQ(fixtures::partOf<QPushButton>(alert, "cancelCommand").text(), u"Cancel");
    EXPECT_EQ(alert.windowModality(), Qt::WindowModal);
    answer(alert, "cancelCommand");
    useItalian();
    CommandAlert& italianAlert = ask();
    EXPECT_EQ(italianAlert.text(), u"Aprire il Terminale?");
    EXPECT_EQ(fixtures::partOf<QPushButton>(italianAlert, "runCommand").text(), u"Apri Terminale");
    EXPECT_EQ(fixtures::partOf<QPushButton>(italianAlert, "cancelCommand").text(), u"Annulla");
}

TEST_F(CommandAlertTest, AgreeingRunsTheCommandInATerminal)
{
    CommandAlert& alert = ask("installRar");
    EXPECT_EQ(page.pendingCommand(), u"sudo apt install rar unrar"_s);
    EXPECT_TRUE(desktop.terminal.commands.isEmpty());
    answer(alert, "runCommand");
    EXPECT_EQ(desktop.terminal.commands, QStringList{u"sudo apt install rar unrar"_s});
    EXPECT_EQ(page.pendingCommand(), std::nullopt);
    EXPECT_FALSE(isAsking());
}

TEST_F(CommandAlertTest, CancellingRunsNothing)
{
    answer(ask(), "cancelCommand");
    EXPECT_TRUE(desktop.terminal.commands.isEmpty());
    EXPECT_EQ(page.pendingCommand(), std::nullopt);
    EXPECT_FALSE(isAsking());
}

TEST_F(CommandAlertTest, EscapeCancelsAndReturnAgrees)
{
    QTest::keyClick(&ask(), Qt::Key_Escape);
    fixtures::turnEventLoop();
    EXPECT_TRUE(desktop.terminal.commands.isEmpty());
    EXPECT_EQ(page.pendingCommand(), std::nullopt);
    QTest::keyClick(&ask(), Qt::Key_Return);
    fixtures::turnEventLoop();
    EXPECT_EQ(desktop.terminal.commands, QStringList{u"sudo apt install 7zip"_s});
}

} // namespace
} // namespace vormel
