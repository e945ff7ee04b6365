#include "kit/Glyph.h"

#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <array>

using namespace Qt::StringLiterals;

/// The linker drops the drawings of a static library unless somebody asks for them by name. Outside all namespaces,
/// where their name is.
static void requireIcons()
{
    Q_INIT_RESOURCE(icons);
}

namespace vormel {

namespace {

/// In the order of Glyph.
constexpr std::array<QLatin1StringView, 49> fileNames{
    QLatin1StringView("plus"),
    QLatin1StringView("xmark"),
    QLatin1StringView("play.fill"),
    QLatin1StringView("pause.fill"),
    QLatin1StringView("checkmark.circle"),
    QLatin1StringView("arrow.down.circle"),
    QLatin1StringView("arrow.down.circle.fill"),
    QLatin1StringView("clock"),
    QLatin1StringView("archivebox.fill"),
    QLatin1StringView("pause.circle.fill"),
    QLatin1StringView("stop.circle.fill"),
    QLatin1StringView("checkmark.circle.fill"),
    QLatin1StringView("exclamationmark.circle.fill"),
    QLatin1StringView("gauge.medium"),
    QLatin1StringView("person.badge.key"),
    QLatin1StringView("person.badge.key.fill"),
    QLatin1StringView("gearshape.fill"),
    QLatin1StringView("server.rack"),
    QLatin1StringView("lock"),
    QLatin1StringView("stop.fill"),
    QLatin1StringView("arrow.clockwise"),
    QLatin1StringView("arrow.triangle.2.circlepath"),
    QLatin1StringView("folder"),
    QLatin1StringView("doc.on.doc.fill"),
    QLatin1StringView("bandage"),
    QLatin1StringView("bandage.fill"),
    QLatin1StringView("checkmark.seal"),
    QLatin1StringView("archivebox"),
    QLatin1StringView("exclamationmark.triangle.fill"),
    QLatin1StringView("chevron.right"),
    QLatin1StringView("chevron.down"),
    QLatin1StringView("mug.fill"),
    QLatin1StringView("lock.fill"),
    QLatin1StringView("xmark.circle.fill"),
    QLatin1StringView("trash"),
    QLatin1StringView("checkmark.shield"),
    QLatin1StringView("link.badge.plus"),
    QLatin1StringView("globe"),
    QLatin1StringView("arrow.up.arrow.down"),
    QLatin1StringView("doc.zipper"),
    QLatin1StringView("checkmark.seal.fill"),
    QLatin1StringView("wrench.and.screwdriver.fill"),
    QLatin1StringView("pencil.and.outline"),
    QLatin1StringView("bolt.fill"),
    QLatin1StringView("speedometer"),
    QLatin1StringView("terminal.fill"),
    QLatin1StringView("desktopcomputer"),
    QLatin1StringView("arrow.clockwise.circle.fill"),
    QLatin1StringView("vormel"),
};
static_assert(fileNames.size() == static_cast<std::size_t>(Glyph::program) + 1);

QPixmap drawn(Glyph glyph, const QColor& color, int pixels)
{
    requireIcons();
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QSvgRenderer drawing(glyphPath(glyph));
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    if (color.isValid()) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(pixmap.rect(), color);
    }
    return pixmap;
}

} // namespace

QString glyphPath(Glyph glyph)
{
    return u":/kit/icons/%1.svg"_s.arg(fileNames.at(static_cast<std::size_t>(glyph)));
}

QPixmap glyphPixmap(Glyph glyph, const QColor& color, int size, qreal pixelRatio)
{
    const int pixels = qMax(1, qRound(size * pixelRatio));
    const quint64 tint = color.isValid() ? color.rgba() : 0;
    const QString key = u"vormel-%1-%2-%3"_s.arg(static_cast<int>(glyph)).arg(tint, 0, 16).arg(pixels);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = drawn(glyph, color, pixels);
        QPixmapCache::insert(key, pixmap);
    }
    pixmap.setDevicePixelRatio(pixelRatio);
    return pixmap;
}

} // namespace vormel
