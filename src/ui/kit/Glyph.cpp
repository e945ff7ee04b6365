#include "ui/kit/Glyph.h"

#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

/// The linker drops the drawings of a static library unless somebody asks for them by name. Outside all namespaces,
/// where their name is.
static void requireIcons()
{
    Q_INIT_RESOURCE(icons);
}

namespace vormel {

namespace {

QLatin1StringView fileName(Glyph glyph)
{
    switch (glyph) {
    case Glyph::plus:
        return QLatin1StringView("plus");
    case Glyph::xmark:
        return QLatin1StringView("xmark");
    case Glyph::play:
        return QLatin1StringView("play.fill");
    case Glyph::pause:
        return QLatin1StringView("pause.fill");
    case Glyph::checkmarkCircle:
        return QLatin1StringView("checkmark.circle");
    case Glyph::arrowDownCircle:
        return QLatin1StringView("arrow.down.circle");
    case Glyph::arrowDownCircleFill:
        return QLatin1StringView("arrow.down.circle.fill");
    case Glyph::clock:
        return QLatin1StringView("clock");
    case Glyph::archiveboxFill:
        return QLatin1StringView("archivebox.fill");
    case Glyph::pauseCircleFill:
        return QLatin1StringView("pause.circle.fill");
    case Glyph::stopCircleFill:
        return QLatin1StringView("stop.circle.fill");
    case Glyph::checkmarkCircleFill:
        return QLatin1StringView("checkmark.circle.fill");
    case Glyph::exclamationmarkCircleFill:
        return QLatin1StringView("exclamationmark.circle.fill");
    case Glyph::gauge:
        return QLatin1StringView("gauge.medium");
    case Glyph::personKey:
        return QLatin1StringView("person.badge.key");
    case Glyph::personKeyFill:
        return QLatin1StringView("person.badge.key.fill");
    case Glyph::gearFill:
        return QLatin1StringView("gearshape.fill");
    case Glyph::serverRack:
        return QLatin1StringView("server.rack");
    case Glyph::lock:
        return QLatin1StringView("lock");
    case Glyph::program:
        return QLatin1StringView("vormel");
    }
    Q_UNREACHABLE();
}

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
    return QStringLiteral(":/kit/icons/%1.svg").arg(fileName(glyph));
}

QPixmap glyphPixmap(Glyph glyph, const QColor& color, int size, qreal pixelRatio)
{
    const int pixels = qMax(1, qRound(size * pixelRatio));
    const quint64 tint = color.isValid() ? color.rgba() : 0;
    const QString key = QStringLiteral("vormel-%1-%2-%3").arg(static_cast<int>(glyph)).arg(tint, 0, 16).arg(pixels);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = drawn(glyph, color, pixels);
        QPixmapCache::insert(key, pixmap);
    }
    pixmap.setDevicePixelRatio(pixelRatio);
    return pixmap;
}

} // namespace vormel
