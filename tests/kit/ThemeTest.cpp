#include "kit/Theme.h"

#include "fixtures/Contrast.h"
#include "fixtures/Palettes.h"
#include "kit/Contrast.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

using fixtures::contrastOf;
using fixtures::readable;
using fixtures::under;
using fixtures::visible;

/// Everything that the program paints upon.
enum class Ground
{
    base,     ///< rows, cards, the help, empty pages
    window,   ///< tool bar, sidebar, sheets
    button,   ///< the buttons for hosts
    hairline, ///< a row of the sidebar under the pointer, the picker of the language
    hot,      ///< a button of a row under the pointer
    pressed,  ///< the same while the mouse is down
    rowUnderPointer,
    buttonUnderPointer,  ///< in that row
    pressedUnderPointer, ///< the same while the mouse is down
    banner,              ///< of the missing tools
    track,               ///< the empty part of a bar
    highlight,           ///< what is chosen
    highlightHot,
    highlightPressed,
    highlightTrack, ///< of a bar in a chosen row
};

QColor groundColor(const QPalette& palette, Ground ground)
{
    const Theme theme(palette);
    const QColor base = palette.color(QPalette::Base);
    const QColor highlight = theme.color(Tint::highlight);
    const QColor onHighlight = theme.color(Tint::highlightedText);
    switch (ground) {
    case Ground::base:
        return base;
    case Ground::window:
        return palette.color(QPalette::Window);
    case Ground::button:
        return palette.color(QPalette::Button);
    case Ground::hairline:
        return theme.color(Tint::hairline);
    case Ground::hot:
        return under(base, theme.color(Tint::text), 0.10);
    case Ground::pressed:
        return under(base, theme.color(Tint::text), 0.20);
    case Ground::rowUnderPointer:
        return theme.color(Tint::hover);
    case Ground::buttonUnderPointer:
        return under(theme.color(Tint::hover), theme.color(Tint::text), 0.10);
    case Ground::pressedUnderPointer:
        return under(theme.color(Tint::hover), theme.color(Tint::text), 0.20);
    case Ground::banner:
        return under(base, theme.color(Tint::orange), 0.12);
    case Ground::track:
        return theme.color(Tint::track);
    case Ground::highlight:
        return highlight;
    case Ground::highlightHot:
        return under(highlight, onHighlight, 0.10);
    case Ground::highlightPressed:
        return under(highlight, onHighlight, 0.20);
    case Ground::highlightTrack:
        return under(highlight, onHighlight, 0.2);
    }
    Q_UNREACHABLE();
}

struct Use
{
    const char* name;
    Tint tint;
    double least;
    std::vector<Ground> grounds;
};

class ContrastOnEveryGround : public ::testing::TestWithParam<Use>
{};

using G = Ground;

const Use uses[] = {
    {"texts", Tint::text, readable, {G::base, G::window, G::button, G::hairline, G::banner, G::rowUnderPointer}},
    {"secondaryTexts", Tint::secondary, readable, {G::base, G::window, G::button, G::rowUnderPointer}},
    {"tertiaryTexts", Tint::tertiary, readable, {G::base, G::window, G::rowUnderPointer}},
    {"textsOfFailures", Tint::red, readable, {G::base, G::window, G::rowUnderPointer}},
    {"textsOfRecovery", Tint::orange, readable, {G::base, G::rowUnderPointer}},
    {"textsOfSuccess", Tint::green, readable, {G::base, G::rowUnderPointer}},
    {"textsOnHighlights", Tint::highlightedText, readable, {G::highlight}},
    {"textsOfDrops", Tint::accent, readable, {G::base, G::window}},
    {"ringsOfTheFocus", Tint::accent, visible, {G::base, G::window, G::button, G::hairline, G::rowUnderPointer}},
    {"ringsOnHighlights", Tint::highlightedText, visible, {G::highlight}},
    {"plainIcons", Tint::text, visible, {G::window, G::button, G::hot, G::pressed, G::pressedUnderPointer}},
    {"quietIcons", Tint::secondary, visible, {G::base, G::window, G::hairline, G::rowUnderPointer}},
    {"triangles", Tint::tertiary, visible, {G::base, G::hairline, G::rowUnderPointer}},
    {"iconsOfTransfers", Tint::blue, visible, {G::base, G::window, G::button, G::rowUnderPointer}},
    {"iconsOfPauses",
     Tint::orange,
     visible,
     {G::base, G::window, G::banner, G::hot, G::pressed, G::buttonUnderPointer, G::pressedUnderPointer}},
    {"iconsOfSuccess", Tint::green, visible, {G::base}},
    {"iconsOfRemoval",
     Tint::red,
     visible,
     {G::base, G::hot, G::pressed, G::buttonUnderPointer, G::pressedUnderPointer}},
    {"iconsOnHighlights", Tint::highlightedText, visible, {G::highlight, G::highlightHot, G::highlightPressed}},
    {"mug", Tint::beer, visible, {G::base, G::window, G::button}},
    {"bars", Tint::blue, visible, {G::track}},
    {"barsOfRepairs", Tint::orange, visible, {G::track}},
    {"barsOnHighlights", Tint::highlightedText, visible, {G::highlightTrack}},
    {"cyan", Tint::cyan, visible, {G::base}},
    {"purple", Tint::purple, visible, {G::base}},
    {"teal", Tint::teal, visible, {G::base}},
    {"yellow", Tint::yellow, visible, {G::base}},
    {"indigo", Tint::indigo, visible, {G::base}},
    {"pink", Tint::pink, visible, {G::base}},
    {"mint", Tint::mint, visible, {G::base}},
    {"gray", Tint::gray, visible, {G::base}},
};

TEST_P(ContrastOnEveryGround, IsEnough)
{
    const QList<QPalette> palettes = fixtures::allPalettes();
    for (qsizetype i = 0; i < palettes.size(); ++i) {
        for (const Ground ground : GetParam().grounds) {
            EXPECT_GE(contrastOf(Theme(palettes[i]).color(GetParam().tint), groundColor(palettes[i], ground)),
                      GetParam().least)
                << "ground " << static_cast<int>(ground) << " of palette " << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Theme, ContrastOnEveryGround, ::testing::ValuesIn(uses),
                         [](const auto& use) { return use.param.name; });

TEST(Theme, TellsLightFromDark)
{
    EXPECT_FALSE(Theme(fixtures::lightPalette()).isDark());
    EXPECT_TRUE(Theme(fixtures::darkPalette()).isDark());
}

TEST(Theme, WhatIsChosenStandsOutFromTheRest)
{
    for (const QPalette& palette : fixtures::allPalettes()) {
        for (const auto role : {QPalette::Base, QPalette::Window})
            EXPECT_GE(contrastOf(Theme(palette).color(Tint::highlight), palette.color(role)), visible);
    }
}

TEST(Theme, ARowUnderThePointerIsMarkedAndDoesNotLookChosen)
{
    for (const QPalette& palette : fixtures::allPalettes()) {
        const Theme theme(palette);
        const QColor marked = theme.color(Tint::hover);
        EXPECT_GE(contrastOf(marked, palette.color(QPalette::Base)), 1.05);
        EXPECT_LE(contrastOf(marked, palette.color(QPalette::Base)), 1.25);
        EXPECT_GE(contrastOf(marked, theme.color(Tint::highlight)), 2);
    }
}

TEST(Theme, AHighlightThatCanBeReadIsLeftAsItIs)
{
    const QPalette palette = fixtures::brightHighlightPalette();
    EXPECT_EQ(Theme(palette).color(Tint::highlight), palette.color(QPalette::Highlight));
}

TEST(Theme, TheMugHasOneColourOnLightAndDark)
{
    EXPECT_EQ(Theme(fixtures::lightPalette()).color(Tint::beer), Theme(fixtures::darkPalette()).color(Tint::beer));
}

TEST(Contrast, IsThatOfTheGuidelines)
{
    EXPECT_DOUBLE_EQ(contrast(Qt::black, Qt::white), 21);
    EXPECT_DOUBLE_EQ(contrast(Qt::white, Qt::white), 1);
    EXPECT_NEAR(contrast(QColor(0x30, 0x8c, 0xc6), Qt::white), 3.7, 0.05);
    for (const QColor& color : {QColor(0x12, 0x34, 0x56), QColor(0xc9, 0x85, 0x00), QColor(0x05, 0x05, 0x05)})
        EXPECT_DOUBLE_EQ(contrast(color, Qt::gray), contrastOf(color, Qt::gray));
}

TEST(Contrast, AColourGoesNoFurtherThanItMust)
{
    const QColor blue(0x30, 0x8c, 0xc6);
    EXPECT_EQ(standingOut(blue, Qt::black, {Qt::white}, 3), blue);
    const QColor darker = standingOut(blue, Qt::black, {Qt::white}, 4.5);
    EXPECT_GE(contrastOf(darker, Qt::white), 4.5);
    EXPECT_LT(contrastOf(darker, Qt::white), 4.8);
    EXPECT_EQ(standingOut(blue, Qt::black, {Qt::white, Qt::black}, 6), QColor(Qt::black)); // there is none
}

} // namespace
} // namespace vormel
