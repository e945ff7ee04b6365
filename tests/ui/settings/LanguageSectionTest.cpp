#include "kit/SegmentedPicker.h"
#include "ui/settings/SettingsPage.h"

#include <QGroupBox>

namespace vormel {
namespace {

class LanguageSectionTest : public fixtures::SettingsPage
{
protected:
    [[nodiscard]] QString heading() const { return part<QGroupBox>("languageSection").title(); }
    [[nodiscard]] bool isChosen(const char* language) const { return part<QAbstractButton>(language).isChecked(); }
};

TEST_F(LanguageSectionTest, AClickSpeaksTheOtherLanguage)
{
    EXPECT_EQ(heading(), u"Language");
    EXPECT_TRUE(isChosen("English"));
    click("Italiano");
    EXPECT_EQ(settings().language.value(), AppLanguage::italian);
    EXPECT_EQ(heading(), u"Lingua");
    EXPECT_FALSE(isChosen("English"));
    EXPECT_TRUE(isChosen("Italiano"));
}

TEST_F(LanguageSectionTest, ArrowsMoveTheChoice)
{
    activate();
    part("English").setFocus();
    press("English", Qt::Key_Right);
    EXPECT_EQ(settings().language.value(), AppLanguage::italian);
    press("Italiano", Qt::Key_Left);
    EXPECT_EQ(settings().language.value(), AppLanguage::english);
}

TEST_F(LanguageSectionTest, FollowsTheSetting)
{
    useItalian();
    EXPECT_TRUE(isChosen("Italiano"));
    EXPECT_EQ(part<SegmentedPicker>("language").chosen(), 1);
}

} // namespace
} // namespace vormel
