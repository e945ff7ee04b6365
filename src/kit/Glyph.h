#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

namespace vormel {

/// The program's own icons: each a drawing of one colour on a grid of 24, except the program icon.
enum class Glyph
{
    plus,
    xmark,
    play,
    pause,
    checkmarkCircle,
    arrowDownCircle,
    arrowDownCircleFill,
    clock,
    archiveboxFill,
    pauseCircleFill,
    stopCircleFill,
    checkmarkCircleFill,
    exclamationmarkCircleFill,
    gauge,
    personKey,
    personKeyFill,
    gearFill,
    serverRack,
    lock,
    stop,
    arrowClockwise,
    arrowTriangle2Circlepath,
    folder,
    docOnDocFill,
    bandage,
    bandageFill,
    checkmarkSeal,
    archivebox,
    exclamationmarkTriangleFill,
    chevronRight,
    chevronDown,
    mugFill,
    lockFill,
    xmarkCircleFill,
    trash,
    checkmarkShield,
    linkBadgePlus,
    globe,
    arrowUpArrowDown,
    docZipper,
    checkmarkSealFill,
    wrenchAndScrewdriverFill,
    pencilAndOutline,
    boltFill,
    speedometer,
    terminalFill,
    desktopcomputer,
    arrowClockwiseCircleFill,
    program,
};

/// Where the drawing lies among the resources.
[[nodiscard]] QString glyphPath(Glyph glyph);

/// The drawing as a square of `size` points in one colour, sharp at that pixel ratio. An invalid colour leaves the
/// drawing's own. Pixmaps are kept in Qt's pixmap cache, so asking again is cheap.
[[nodiscard]] QPixmap glyphPixmap(Glyph glyph, const QColor& color, int size, qreal pixelRatio);

} // namespace vormel
