#include "kit/TagLabel.h"

#include "fixtures/Contrast.h"
#include "fixtures/Palettes.h"

#include <QApplication>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class TagLabelTest : public ::testing::Test
{
protected:
    ~TagLabelTest() override { QApplication::setPalette(QPalette()); }
    QImage painted(Tint tint)
    {
        TagLabel tag(tint);
        tag.setText(u"Premium"_s);
        tag.resize(tag.sizeHint());
        return tag.grab().toImage();
    }
};

TEST_F(TagLabelTest, HasATouchOfItsColourWithRoundCorners)
{
    for (const QPalette& palette : fixtures::allPalettes()) {
        QApplication::setPalette(palette);
        const QImage tag = painted(Tint::orange);
        const QColor orange = Theme(palette).color(Tint::orange);
        const QColor ground = fixtures::under(palette.color(QPalette::Base), orange, 0.15);
        EXPECT_EQ(tag.pixelColor(3, tag.height() / 2), ground);
        EXPECT_NE(tag.pixelColor(0, 0), ground);
    }
}

TEST_F(TagLabelTest, CanBeReadOnEveryDesktop)
{
    for (const QPalette& palette : fixtures::allPalettes()) {
        QApplication::setPalette(palette);
        for (const Tint tint : {Tint::orange, Tint::green, Tint::red}) {
            const QImage tag = painted(tint);
            const QColor ground = tag.pixelColor(3, tag.height() / 2);
            double best = 0;
            for (int y = 3; y < tag.height() - 3; ++y) {
                for (int x = 3; x < tag.width() - 3; ++x)
                    best = std::max(best, fixtures::contrastOf(tag.pixelColor(x, y), ground));
            }
            EXPECT_GE(best, fixtures::readable);
        }
    }
}

TEST_F(TagLabelTest, HasAirAroundItsWord)
{
    TagLabel tag(Tint::green);
    tag.setText(u"Gold"_s);
    EXPECT_EQ(tag.sizeHint().width(), tag.fontMetrics().size(Qt::TextSingleLine, tag.text()).width() + 12);
    EXPECT_EQ(tag.sizeHint().height(), tag.fontMetrics().height() + 4);
}

} // namespace
} // namespace vormel
