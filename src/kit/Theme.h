#pragma once

#include <QColor>
#include <QPalette>

namespace vormel {

/// What a colour is for. The theme says which one that is on the palette at hand.
enum class Tint
{
    text,
    secondary,
    tertiary,
    highlight,       ///< the ground of what is chosen
    highlightedText, ///< on that ground
    accent,          ///< texts and lines in the highlight's colour on all other grounds, rings of the focus among them
    blue,
    orange,
    green,
    red,
    cyan,
    purple,
    teal,
    yellow,
    indigo,
    pink,
    mint,
    gray,
    beer,     ///< the mug's, the same on light and dark
    hairline, ///< between rows
    track,    ///< the empty part of a bar
    hover,    ///< the ground of a row under the pointer
};

/// All colours of the program, read from a palette; the status colours have one form for light and one for dark
/// windows. Where the palette's own cannot be told from each other, they are moved apart. A value; make a new one when
/// the palette changes.
class Theme
{
public:
    explicit Theme(const QPalette& palette, QPalette::ColorGroup group = QPalette::Active);

    [[nodiscard]] bool isDark() const;
    [[nodiscard]] QColor color(Tint tint) const;

private:
    [[nodiscard]] QColor towardsBase(double share) const;
    [[nodiscard]] QColor highlight() const;
    [[nodiscard]] QColor accent() const;

    QPalette m_palette;
    QPalette::ColorGroup m_group;
};

} // namespace vormel
