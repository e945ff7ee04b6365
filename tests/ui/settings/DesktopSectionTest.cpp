#include "ui/settings/SettingsPage.h"

#include <QGroupBox>

namespace vormel {
namespace {

class DesktopSectionTest : public fixtures::SettingsPage
{};

TEST_F(DesktopSectionTest, SpeaksBothLanguages)
{
    EXPECT_EQ(part<QGroupBox>("desktopSection").title(), u"Desktop");
    EXPECT_EQ(text("notifyWhenDoneLabel"), u"Notify when downloads end");
    EXPECT_EQ(text("keepAwakeLabel"), u"Keep the computer awake");
    EXPECT_EQ(text("showLauncherProgressLabel"), u"Show progress on the launcher icon");
    EXPECT_EQ(text("watchClipboardLabel"), u"Watch the clipboard for links");
    useItalian();
    EXPECT_EQ(part<QGroupBox>("desktopSection").title(), u"Desktop");
    EXPECT_EQ(text("notifyWhenDoneLabel"), u"Avvisa quando i download terminano");
    EXPECT_EQ(text("keepAwakeLabel"), u"Tieni sveglio il computer");
    EXPECT_EQ(text("showLauncherProgressLabel"), u"Mostra l'avanzamento sull'icona");
    EXPECT_EQ(text("watchClipboardLabel"), u"Controlla gli appunti in cerca di link");
}

TEST_F(DesktopSectionTest, EachSwitchWritesItsSettingAtOnce)
{
    press("notifyWhenDone", Qt::Key_Space);
    EXPECT_FALSE(settings().notifyWhenDone.value());
    click("keepAwake");
    EXPECT_FALSE(settings().keepAwake.value());
    click("showLauncherProgressLabel");
    EXPECT_FALSE(settings().showLauncherProgress.value());
    click("watchClipboard");
    EXPECT_TRUE(settings().watchClipboard.value());
}

TEST_F(DesktopSectionTest, NotesTellWhatASwitchDoes)
{
    EXPECT_TRUE(isShown("notifyWhenDoneNote"));
    EXPECT_TRUE(isShown("keepAwakeNote"));
    EXPECT_TRUE(isShown("showLauncherProgressNote"));
    EXPECT_TRUE(isShown("watchClipboardNote"));
    click("watchClipboard");
    EXPECT_FALSE(isShown("watchClipboardNote"));
}

} // namespace
} // namespace vormel
