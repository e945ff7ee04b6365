#include "kit/StyledLabel.h"

#include "fixtures/EventLoop.h"
#include "fixtures/Palettes.h"
#include "kit/TextStyle.h"

#include <QApplication>
#include <QFontMetrics>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(StyledLabel, FollowsAChangeOfPalette)
{
    const QPalette before = QApplication::palette();
    QApplication::setPalette(fixtures::lightPalette());
    const StyledLabel label(StyledLabel::Style::body, Tint::secondary);
    const QColor onLight = label.palette().color(QPalette::WindowText);
    QApplication::setPalette(fixtures::darkPalette());
    fixtures::turnEventLoop();
    const QColor onDark = label.palette().color(QPalette::WindowText);
    QApplication::setPalette(before);
    EXPECT_EQ(onLight, Theme(fixtures::lightPalette()).color(Tint::secondary));
    EXPECT_EQ(onDark, Theme(fixtures::darkPalette()).color(Tint::secondary));
}

TEST(StyledLabel, FollowsAChangeOfFontSize)
{
    const QFont before = QApplication::font();
    const StyledLabel label(StyledLabel::Style::title);
    const double small = label.font().pointSizeF();
    QApplication::setFont(scaledFont(before, 2));
    fixtures::turnEventLoop();
    const double large = label.font().pointSizeF();
    QApplication::setFont(before);
    EXPECT_NEAR(large, 2 * small, 0.1);
}

TEST(StyledLabel, DoesNotReadMarkupFromOutside)
{
    StyledLabel label(StyledLabel::Style::body);
    label.setText(u"<b>x</b>"_s);
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
}

TEST(TextStyle, DigitsHaveOneWidth)
{
    const QFontMetrics metrics(digitsFont(QApplication::font()));
    for (const QChar digit : QStringView(u"0123456789"))
        EXPECT_EQ(metrics.horizontalAdvance(digit), metrics.horizontalAdvance(u'0'));
}

TEST(TextStyle, ScalesFontsThatAreGivenInPixels)
{
    QFont font;
    font.setPixelSize(20);
    EXPECT_EQ(scaledFont(font, 1.5).pixelSize(), 30);
}

} // namespace
} // namespace vormel
