#include "config/Services.h"
#include "ui/settings/SettingsPage.h"

#include <QGroupBox>

namespace vormel {
namespace {

class SupportSectionTest : public fixtures::SettingsPage
{};

TEST_F(SupportSectionTest, SpeaksBothLanguages)
{
    EXPECT_EQ(part<QGroupBox>("supportSection").title(), u"Support");
    EXPECT_EQ(text("supportFree"), u"Vormel is free and ad-free.");
    EXPECT_EQ(text("supportPlease"), u"If it saves you time, buy me a beer!");
    EXPECT_EQ(button("buyBeer"), u"Buy me a beer");
    EXPECT_EQ(text("supportFees"), u"Sending as “Friends & Family” means 100% reaches me.");
    useItalian();
    EXPECT_EQ(part<QGroupBox>("supportSection").title(), u"Supporto");
    EXPECT_EQ(text("supportFree"), u"Vormel è gratuito e senza pubblicità.");
    EXPECT_EQ(text("supportPlease"), u"Se ti fa risparmiare tempo, offrimi una birra!");
    EXPECT_EQ(button("buyBeer"), u"Offrimi una birra");
    EXPECT_EQ(text("supportFees"), u"Inviando come “Amici e familiari” ricevo il 100%.");
}

TEST_F(SupportSectionTest, TheButtonOpensThePageOfDonations)
{
    click("buyBeer");
    EXPECT_EQ(desktop.opener.opened, QList<QUrl>{QUrl(QString(donationUrl))});
}

} // namespace
} // namespace vormel
