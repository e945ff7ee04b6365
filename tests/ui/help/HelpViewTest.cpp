#include "ui/help/HelpView.h"

#include "config/Services.h"
#include "fixtures/EventLoop.h"
#include "fixtures/EngineOnScript.h"
#include "kit/PlatformTexts.h"
#include "ui/Part.h"
#include "ui/help/HelpFeatureRow.h"
#include "ui/help/HelpFeatures.h"

#include <QLabel>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

namespace vormel {
namespace {

constexpr AppLanguage english = AppLanguage::english;
constexpr AppLanguage italian = AppLanguage::italian;

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
    HelpView view{engine.settings()};
};

TEST_F(HelpViewTest, NamesTheProgramAndItsVersion)
{
    EXPECT_EQ(text("helpName"), u"Vormel");
    EXPECT_EQ(text("helpVersion"), QStringLiteral("v") + QString(programVersion));
    EXPECT_EQ(text("helpKind"), platformText(PlatformText::kindOfProgram, english));
    EXPECT_EQ(text("helpRequirement"), platformText(PlatformText::requirement, english));
}

TEST_F(HelpViewTest, TellsWhatItIsFor)
{
    EXPECT_TRUE(text("helpDescription").contains(QString(filestoreDomain) + QStringLiteral(" and Terabytez.")));
    EXPECT_FALSE(text("helpDescription").contains(u'%'));
}

TEST_F(HelpViewTest, ListsTwelveFeatures)
{
    EXPECT_EQ(
        inRows("featureTitle"),
        (QStringList{QStringLiteral("Add links"), QStringLiteral("Click'N'Load from browser"),
                     QStringLiteral("Rearrange the queue"), QStringLiteral("Premium accounts"),
                     QStringLiteral("Multi-part RAR"), QStringLiteral("CRC Verify"), QStringLiteral(".rev repair"),
                     QStringLiteral("Auto-extract"), QStringLiteral("Auto-rename extracted files"),
                     QStringLiteral("Auto-resume"), QStringLiteral("Speed limit"), QStringLiteral("External tools")}));
}

TEST_F(HelpViewTest, AnOpenOneFollowsTheLanguage)
{
    engine.settings().language.set(italian);
    EXPECT_EQ(text("helpFeatures"), u"Funzionalità");
    EXPECT_EQ(text("helpKind"), platformText(PlatformText::kindOfProgram, italian));
    EXPECT_TRUE(text("helpDescription").startsWith(u"Vormel è un download manager"));
    EXPECT_EQ(inRows("featureTitle"),
              (QStringList{QStringLiteral("Aggiunta link"), QStringLiteral("Click'N'Load dal browser"),
                           QStringLiteral("Riordina la coda"), QStringLiteral("Account premium"),
                           QStringLiteral("RAR multi-parte"), QStringLiteral("Verifica CRC"),
                           QStringLiteral("Riparazione .rev"), QStringLiteral("Estrazione automatica"),
                           QStringLiteral("Rinomina automatica file estratti"), QStringLiteral("Ripresa automatica"),
                           QStringLiteral("Limite di velocità"), QStringLiteral("Strumenti esterni")}));
    engine.settings().language.set(english);
    EXPECT_EQ(text("helpFeatures"), u"Features");
}

TEST_F(HelpViewTest, EveryFeatureHasItsOwnIconAndDetail)
{
    for (const AppLanguage language : allLanguages) {
        QSet<Glyph> icons;
        QSet<QString> details;
        for (const HelpFeature& feature : helpFeatures(language)) {
            icons << feature.icon;
            details << feature.detail;
            EXPECT_FALSE(feature.detail.contains(u"%1")) << qPrintable(feature.title);
        }
        EXPECT_EQ(icons.size(), 12);
        EXPECT_EQ(details.size(), 12);
    }
    EXPECT_EQ(helpFeatures(english).at(3).detail,
              QStringLiteral("Add your ") + QString(filestoreDomain) +
                  QStringLiteral(" and Terabytez credentials in the Accounts tab to unlock full speed and exclusive "
                                 "content."));
    EXPECT_EQ(helpFeatures(italian).at(3).detail,
              QStringLiteral("Aggiungi le credenziali di ") + QString(filestoreDomain) +
                  QStringLiteral(" e Terabytez nella scheda Account per sbloccare la velocità massima e i contenuti "
                                 "esclusivi."));
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
