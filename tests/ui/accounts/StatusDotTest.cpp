#include "ui/accounts/StatusDot.h"

#include "fixtures/Palettes.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

using Status = AccountTestStatus;

TEST(StatusDot, HasTheColourOfTheStatus)
{
    const Theme theme(fixtures::lightPalette());
    EXPECT_EQ(dotColor(Status::testing, theme), theme.color(Tint::orange));
    EXPECT_EQ(dotColor(Status::success, theme), theme.color(Tint::green));
    EXPECT_EQ(dotColor(Status::failed, theme), theme.color(Tint::red));
    QColor quiet = theme.color(Tint::secondary);
    quiet.setAlphaF(0.4F);
    EXPECT_EQ(dotColor(Status::idle, theme), quiet);
}

TEST(StatusDot, IsASmallRoundSpotOfThatColour)
{
    StatusDot dot(nullptr);
    EXPECT_EQ(dot.size(), QSize(8, 8));
    dot.setKind(Status::success);
    const QImage picture = dot.grab().toImage();
    EXPECT_EQ(picture.pixelColor(4, 4), dotColor(Status::success, Theme(dot.palette())));
    EXPECT_NE(picture.pixelColor(0, 0), picture.pixelColor(4, 4));
}

} // namespace
} // namespace vormel
