#include "kit/BoundText.h"

#include "fixtures/EngineOnScript.h"

#include <QLabel>

#include <gtest/gtest.h>

namespace vormel {
namespace {

class BoundTextTest : public ::testing::Test
{
protected:
    AppSettings& settings() { return m_engine.settings(); }

private:
    fixtures::EngineOnScript m_engine;
};

TEST_F(BoundTextTest, IsThereAtOnceAndFollowsTheLanguage)
{
    QLabel label;
    bindText(&label, &QLabel::setText, settings(), {u"Cancel", u"Annulla"});
    EXPECT_EQ(label.text(), u"Cancel");
    settings().language.set(AppLanguage::italian);
    EXPECT_EQ(label.text(), u"Annulla");
}

TEST_F(BoundTextTest, GivesSeveralTextsToOneWidget)
{
    QLabel label;
    bindText(&label, &QLabel::setText, settings(), {u"Cancel", u"Annulla"});
    bindText(&label, &QWidget::setToolTip, settings(), {u"Ends it", u"Lo termina"});
    settings().language.set(AppLanguage::italian);
    EXPECT_EQ(label.text(), u"Annulla");
    EXPECT_EQ(label.toolTip(), u"Lo termina");
}

TEST_F(BoundTextTest, EndsWithItsWidget)
{
    int calls = 0;
    {
        const QLabel label;
        followLanguage(&label, settings(), [&calls] { ++calls; });
        EXPECT_EQ(calls, 1);
    }
    settings().language.set(AppLanguage::italian);
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace vormel
