#include "kit/ElidedLabel.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class ElidedLabelTest : public ::testing::Test
{
protected:
    void show(const QString& text, int width)
    {
        label.setWhole(text);
        label.resize(width, 30);
        label.show();
    }

    ElidedLabel label{StyledLabel::Style::body};
};

TEST_F(ElidedLabelTest, ShowsATextThatFitsAsItIs)
{
    label.setWhole(u"anna@mail.example"_s);
    show(u"anna@mail.example"_s, label.sizeHint().width());
    EXPECT_EQ(label.text(), u"anna@mail.example");
    EXPECT_EQ(label.toolTip(), u"");
}

TEST_F(ElidedLabelTest, LeavesOutTheMiddleOfALongerOneAndHasItAsToolTip)
{
    const QString whole = u"anna@"_s + u"long."_s.repeated(40) + u"example"_s;
    show(whole, 120);
    EXPECT_TRUE(label.text().startsWith(u"an") && label.text().contains(u'…') && label.text().endsWith(u"le"));
    EXPECT_LE(label.fontMetrics().horizontalAdvance(label.text()), 120);
    EXPECT_EQ(label.toolTip(), whole);
    EXPECT_EQ(label.accessibleName(), whole);
    label.resize(label.sizeHint());
    EXPECT_EQ(label.text(), whole);
    EXPECT_EQ(label.toolTip(), u"");
}

TEST_F(ElidedLabelTest, MayBecomeAsNarrowAsItMust)
{
    show(u"anna@mail.example"_s, 60);
    EXPECT_EQ(label.minimumSizeHint().width(), 0);
    EXPECT_EQ(label.sizeHint().width(), label.fontMetrics().horizontalAdvance(u"anna@mail.example"_s) + 1);
}

TEST_F(ElidedLabelTest, DoesNotReadMarkupOrMnemonics)
{
    show(u"<b>a</b>&b"_s, 400);
    EXPECT_EQ(label.text(), u"<b>a</b>&b");
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
}

} // namespace
} // namespace vormel
