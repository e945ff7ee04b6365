#include "ui/kit/Theme.h"

#include "ui/Palettes.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vormel {
namespace {

double luminance(const QColor& color)
{
    const auto linear = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b)
{
    const double la = luminance(a) + 0.05;
    const double lb = luminance(b) + 0.05;
    return std::max(la, lb) / std::min(la, lb);
}

TEST(Theme, TellsLightFromDark)
{
    EXPECT_FALSE(Theme(fixtures::lightPalette()).isDark());
    EXPECT_TRUE(Theme(fixtures::darkPalette()).isDark());
}

TEST(Theme, EveryTextAndStatusColourIsReadableOnItsBackground)
{
    constexpr double readable = 4.5;
    for (const QPalette& palette : {fixtures::lightPalette(), fixtures::darkPalette()}) {
        for (const Tint tint :
             {Tint::text, Tint::secondary, Tint::tertiary, Tint::blue, Tint::orange, Tint::green, Tint::red}) {
            EXPECT_GE(contrast(Theme(palette).color(tint), palette.color(QPalette::Base)), readable)
                << "tint " << static_cast<int>(tint) << (Theme(palette).isDark() ? " on dark" : " on light");
        }
    }
}

TEST(Theme, EveryColourOfAnIconStandsOutFromItsBackground)
{
    constexpr double visible = 3;
    for (const QPalette& palette : {fixtures::lightPalette(), fixtures::darkPalette()}) {
        for (const Tint tint : {Tint::cyan, Tint::purple, Tint::teal, Tint::yellow, Tint::indigo, Tint::pink,
                                Tint::mint, Tint::gray, Tint::beer}) {
            EXPECT_GE(contrast(Theme(palette).color(tint), palette.color(QPalette::Base)), visible)
                << "tint " << static_cast<int>(tint) << (Theme(palette).isDark() ? " on dark" : " on light");
        }
    }
}

TEST(Theme, TheMugHasOneColourOnLightAndDark)
{
    EXPECT_EQ(Theme(fixtures::lightPalette()).color(Tint::beer), Theme(fixtures::darkPalette()).color(Tint::beer));
}

} // namespace
} // namespace vormel
