#include "ui/settings/SettingsPage.h"
#include "ui/settings/ToolRow.h"

#include <QGroupBox>

using namespace Qt::StringLiterals;

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
            texts << (fixtures::partOf<QWidget>(*row, "toolThere").isVisible() ? u"there"_s : QString());
            texts << (fixtures::partOf<QWidget>(*row, "toolMissing").isVisible() ? u"missing"_s : QString());
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
    EXPECT_EQ(rows(), (QStringList{u"unzip|ZIP|built-in|Available|there|"_s,
                                   u"tar|TAR, TAR.GZ, TAR.BZ2, TAR.XZ|built-in|Available|there|"_s,
                                   u"unrar|RAR, multi-part RAR||Not installed||missing"_s,
                                   u"rar|Rebuild missing volumes from .rev files||Not "
                                   u"installed||missing"_s,
                                   u"7z / 7zz|7-Zip||Not installed||missing"_s}));
}

TEST_F(ToolsSectionTest, SpeaksItalian)
{
    install("rar");
    useItalian();
    EXPECT_EQ(part<QGroupBox>("toolsSection").title(), u"Strumenti disponibili");
    EXPECT_EQ(rows(), (QStringList{u"unzip|ZIP|integrato|Disponibile|there|"_s,
                                   u"tar|TAR, TAR.GZ, TAR.BZ2, TAR.XZ|integrato|Disponibile|there|"_s,
                                   u"unrar|RAR, RAR multi-parte||Non installato||missing"_s,
                                   u"rar|Ricostruisci volumi mancanti dai file .rev||Disponibile|there|"_s,
                                   u"7z / 7zz|7-Zip||Non installato||missing"_s}));
}

TEST_F(ToolsSectionTest, AToolTurnsUpWhenItIsInstalled)
{
    install("unrar");
    EXPECT_EQ(rows().at(2), u"unrar|RAR, multi-part RAR||Available|there|");
    EXPECT_EQ(rows().at(3), u"rar|Rebuild missing volumes from .rev files||Not installed||missing");
    engine.tools.remove(u"unrar"_s);
    desktop.tools.look();
    EXPECT_EQ(rows().at(2), u"unrar|RAR, multi-part RAR||Not installed||missing");
}

TEST_F(ToolsSectionTest, UnzipIsAvailableOnlyWhereItIs)
{
    EXPECT_EQ(rows().front(), u"unzip|ZIP|built-in|Available|there|");
    engine.tools.remove(u"unzip"_s);
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
    engine.tools.add(u"rar"_s);
    page.show();
    EXPECT_EQ(rows().at(3), u"rar|Rebuild missing volumes from .rev files||Available|there|");
}

} // namespace
} // namespace vormel
