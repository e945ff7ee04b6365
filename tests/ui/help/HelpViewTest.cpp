#include "ui/help/HelpView.h"

#include "config/Services.h"
#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/Languages.h"
#include "kit/PlatformTexts.h"
#include "ui/Part.h"
#include "ui/help/HelpFeatureRow.h"
#include "ui/help/HelpFeatures.h"

#include <QLabel>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::english;
using fixtures::italian;

class HelpViewTest : public ::testing::Test
{
protected:
    HelpViewTest()
    {
        view.resize(500, 640);
        view.show();
        fixtures::turnEventLoop();
    }
    [[nodiscard]] QString text(const char* name) const { return fixtures::partOf<QLabel>(view, name).text(); }
    /// The texts of that name in all rows.
    [[nodiscard]] QStringList inRows(const char* name) const
    {
        QStringList all;
        for (const HelpFeatureRow* row : view.findChildren<HelpFeatureRow*>())
            all << fixtures::partOf<QLabel>(*row, name).text();
        return all;
    }

    fixtures::EngineOnScript engine;
    HelpView view{engine.settings(), filestoreDomain};
};

TEST_F(HelpViewTest, NamesTheProgramAndItsVersion)
{
    EXPECT_EQ(text("helpName"), u"Vormel");
    EXPECT_EQ(text("helpVersion"), u"v"_s + QString(programVersion));
    EXPECT_EQ(text("helpKind"), platformText(PlatformText::kindOfProgram, english));
    EXPECT_EQ(text("helpRequirement"), platformText(PlatformText::requirement, english));
}

TEST_F(HelpViewTest, TellsWhatItIsFor)
{
    EXPECT_TRUE(text("helpDescription").contains(QString(filestoreDomain) + u" and Terabytez."_s));
    EXPECT_FALSE(text("helpDescription").contains(u'%'));
}

TEST_F(HelpViewTest, ListsTwelveFeatures)
{
    EXPECT_EQ(
        inRows("featureTitle"),
        (QStringList{u"Add links"_s, u"Click'N'Load from browser"_s, u"Rearrange the queue"_s, u"Premium accounts"_s,
                     u"Multi-part RAR"_s, u"CRC Verify"_s, u".rev repair"_s, u"Auto-extract"_s,
                     u"Auto-rename extracted files"_s, u"Auto-resume"_s, u"Speed limit"_s, u"External tools"_s}));
}

TEST_F(HelpViewTest, AnOpenOneFollowsTheLanguage)
{
    engine.settings().language.set(italian);
    EXPECT_EQ(text("helpFeatures"), u"Funzionalità");
    EXPECT_EQ(text("helpKind"), platformText(PlatformText::kindOfProgram, italian));
    EXPECT_TRUE(text("helpDescription").startsWith(u"Vormel è un download manager"));
    EXPECT_EQ(inRows("featureTitle"),
              (QStringList{u"Aggiunta link"_s, u"Click'N'Load dal browser"_s, u"Riordina la coda"_s,
                           u"Account premium"_s, u"RAR multi-parte"_s, u"Verifica CRC"_s, u"Riparazione .rev"_s,
                           u"Estrazione automatica"_s, u"Rinomina automatica file estratti"_s, u"Ripresa automatica"_s,
                           u"Limite di velocità"_s, u"Strumenti esterni"_s}));
    engine.settings().language.set(english);
    EXPECT_EQ(text("helpFeatures"), u"Features");
}

TEST_F(HelpViewTest, EveryFeatureHasItsOwnIconAndDetail)
{
    for (const AppLanguage language : allLanguages) {
        QSet<Glyph> icons;
        QSet<QString> details;
        for (const HelpFeature& feature : helpFeatures(language, filestoreDomain)) {
            icons << feature.icon;
            details << feature.detail;
            EXPECT_FALSE(feature.detail.contains(u"%1")) << qPrintable(feature.title);
        }
        EXPECT_EQ(icons.size(), 12);
        EXPECT_EQ(details.size(), 12);
    }
    EXPECT_EQ(helpFeatures(english, filestoreDomain).at(3).detail,
              u"Add your "_s + QString(filestoreDomain) +
                  u" and Terabytez credentials in the Accounts tab to unlock full speed and exclusive "
                  u"content."_s);
    EXPECT_EQ(helpFeatures(italian, filestoreDomain).at(3).detail,
              u"Aggiungi le credenziali di "_s + QString(filestoreDomain) +
                  u" e Terabytez nella scheda Account per sbloccare la velocità massima e i contenuti "
                  u"esclusivi."_s);
}

TEST_F(HelpViewTest, KeysScrollIt)
{
    QTest::keyClick(&view, Qt::Key_PageDown);
    EXPECT_GT(view.verticalScrollBar()->value(), 0);
}

TEST_F(HelpViewTest, ANarrowOneWrapsItsTexts)
{
    view.resize(420, 400);
    engine.settings().language.set(italian);
    fixtures::turnEventLoop();
    EXPECT_LE(view.widget()->width(), view.viewport()->width());
    for (const QLabel* label : view.findChildren<QLabel*>()) {
        if (label->wordWrap()) {
            EXPECT_GE(label->height(), label->heightForWidth(label->width())) << qPrintable(label->text());
        }
    }
}

} // namespace
} // namespace vormel
