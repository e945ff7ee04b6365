#include "kit/Glyph.h"

#include "fixtures/Palettes.h"
#include "kit/GlyphIcon.h"

#include <QApplication>
#include <QFile>
#include <QSvgRenderer>

#include <gtest/gtest.h>

namespace vormel {
namespace {

QList<Glyph> allGlyphs()
{
    QList<Glyph> glyphs;
    for (int i = 0; i <= static_cast<int>(Glyph::program); ++i)
        glyphs << static_cast<Glyph>(i);
    return glyphs;
}

/// The colour of the first pixel that is fully covered.
QColor inkOf(const QPixmap& pixmap)
{
    const QImage image = pixmap.toImage();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() == 255)
                return image.pixelColor(x, y);
        }
    }
    return {};
}

TEST(Glyph, EachDrawingIsThereAndSound)
{
    static_cast<void>(glyphPixmap(Glyph::plus, Qt::black, 16, 1)); // brings the resources in
    for (const Glyph glyph : allGlyphs()) {
        EXPECT_TRUE(QFile::exists(glyphPath(glyph))) << qPrintable(glyphPath(glyph));
        EXPECT_TRUE(QSvgRenderer(glyphPath(glyph)).isValid()) << qPrintable(glyphPath(glyph));
    }
}

TEST(Glyph, IsDrawnInTheColourThatIsAskedFor)
{
    for (const Glyph glyph : allGlyphs())
        EXPECT_EQ(inkOf(glyphPixmap(glyph, QColor(0x12, 0x34, 0x56), 48, 1)), QColor(0x12, 0x34, 0x56));
}

TEST(Glyph, HasAsManyPixelsAsTheScreenNeeds)
{
    const QPixmap pixmap = glyphPixmap(Glyph::clock, Qt::black, 18, 2);
    EXPECT_EQ(pixmap.size(), QSize(36, 36));
    EXPECT_EQ(pixmap.devicePixelRatio(), 2);
    EXPECT_EQ(glyphPixmap(Glyph::clock, Qt::black, 18, 1).size(), QSize(18, 18));
}

TEST(Glyph, IconFollowsAChangeOfPalette)
{
    const QPalette before = QApplication::palette();
    const QIcon icon = glyphIcon(Glyph::archiveboxFill);
    QApplication::setPalette(fixtures::lightPalette());
    const QColor onLight = inkOf(icon.pixmap(32));
    QApplication::setPalette(fixtures::darkPalette());
    const QColor onDark = inkOf(icon.pixmap(32));
    QApplication::setPalette(before);
    EXPECT_EQ(onLight, QColor(Qt::black));
    EXPECT_EQ(onDark, QColor(Qt::white));
}

TEST(Glyph, ProgramIconKeepsItsOwnColours)
{
    EXPECT_GT(inkOf(programIcon().pixmap(64)).saturation(), 50);
}

} // namespace
} // namespace vormel
