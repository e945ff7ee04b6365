#include "ui/settings/SettingsPage.h"
#include "ui/settings/ToolRow.h"

#include <QGroupBox>

namespace vormel {
namespace {

class ToolsSectionTest : public fixtures::SettingsPage
{
protected:
    /// Name, formats, tag and state of each row that are to be seen.
    [[nodiscard]] QStringList rows() const
    {
        QStringList all;
        for (const ToolRow* row : page.findChildren<ToolRow*>()) {
            QStringList texts;
            for (const char* name : {"toolName", "toolFormats", "toolBuiltIn", "toolState"}) {
                const auto& label = fixtures::partOf<QLabel>(*row, name);
                texts << (label.isVisible() ? label.text() : QString());
            }
            texts << (fixtures::partOf<QWidget>(*row, "toolThere").isVisible() ? QStringLiteral("there") : QString());
            texts << (fixtures::partOf<QWidget>(*row, "toolMissing").isVisible() ? QStringLiteral("missing")
                                                                                 : QString());
            all << texts.join(u'|');
        }
        return all;
    }
    ToolsSectionTest() { install("unzip"); }
    void install(const char* tool)
    {
        engine.tools.add(QString::fromLatin1(tool));
        desktop.tools.look();
    }
};

TEST_F(ToolsSectionTest, ListsTheToolsInTheirOrder)
{
    EXPECT_EQ(part<QGroupBox>("toolsSection").title(), u"Available Tools");
    EXPECT_EQ(rows(), (QStringList{QStringLiteral("unzip|ZIP|built-in|Available|there|"),
                                   QStringLiteral("tar|TAR, TAR.GZ, TAR.BZ2, TAR.XZ|built-in|Available|there|"),
                                   QStringLiteral("unrar|RAR, multi-part RAR||Not installed||missing"),
                                   QStringLiteral("rar|Rebuild missing volumes from .rev files||Not "
                                                  "installed||missing"),
                                   QStringLiteral("7z / 7zz|7-Zip||Not installed||missing")}));
}

TEST_F(ToolsSectionTest, SpeaksItalian)
{
    install("rar");
    useItalian();
    EXPECT_EQ(part<QGroupBox>("toolsSection").title(), u"Strumenti disponibili");
    EXPECT_EQ(rows(), (QStringList{QStringLiteral("unzip|ZIP|integrato|Disponibile|there|"),
                                   QStringLiteral("tar|TAR, TAR.GZ, TAR.BZ2, TAR.XZ|integrato|Disponibile|there|"),
                                   QStringLiteral("unrar|RAR, RAR multi-parte||Non installato||missing"),
                                   QStringLiteral("rar|Ricostruisci volumi mancanti dai file .rev||Disponibile|there|"),
                                   QStringLiteral("7z / 7zz|7-Zip||Non installato||missing")}));
}

TEST_F(ToolsSectionTest, AToolTurnsUpWhenItIsInstalled)
{
    install("unrar");
    EXPECT_EQ(rows().at(2), u"unrar|RAR, multi-part RAR||Available|there|");
    EXPECT_EQ(rows().at(3), u"rar|Rebuild missing volumes from .rev files||Not installed||missing");
    engine.tools.remove(QStringLiteral("unrar"));
    desktop.tools.look();
    EXPECT_EQ(rows().at(2), u"unrar|RAR, multi-part RAR||Not installed||missing");
}

TEST_F(ToolsSectionTest, UnzipIsAvailableOnlyWhereItIs)
{
    EXPECT_EQ(rows().front(), u"unzip|ZIP|built-in|Available|there|");
    engine.tools.remove(QStringLiteral("unzip"));
    desktop.tools.look();
    EXPECT_EQ(rows().front(), u"unzip|ZIP||Not installed||missing");
    useItalian();
    EXPECT_EQ(rows().front(), u"unzip|ZIP||Non installato||missing");
    install("unzip");
    EXPECT_EQ(rows().front(), u"unzip|ZIP|integrato|Disponibile|there|");
}

TEST_F(ToolsSectionTest, AnyNameOfSevenZipWillDo)
{
    for (const char* name : {"7z", "7za", "7zz"}) {
        install(name);
        EXPECT_EQ(rows().at(4), u"7z / 7zz|7-Zip||Available|there|") << name;
        engine.tools.remove(QString::fromLatin1(name));
        desktop.tools.look();
    }
}

TEST_F(ToolsSectionTest, LooksAgainWhenThePageIsShown)
{
    page.hide();
    engine.tools.add(QStringLiteral("rar"));
    page.show();
    EXPECT_EQ(rows().at(3), u"rar|Rebuild missing volumes from .rev files||Available|there|");
}

} // namespace
} // namespace vormel
