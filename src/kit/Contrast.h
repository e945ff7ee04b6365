#pragma once

#include <QColor>
#include <QList>

namespace vormel {

/// What the web's accessibility guidelines ask for.
inline constexpr double readableContrast = 4.5; ///< of texts
inline constexpr double visibleContrast = 3;    ///< of icons, and of what shows where the focus is

/// How well two colours can be told apart, from 1 to 21.
[[nodiscard]] double contrast(const QColor& a, const QColor& b);

/// A colour on the way to another one: all of the first for a share of 0, all of the second for 1.
[[nodiscard]] QColor mixed(const QColor& from, const QColor& to, double share);

/// The first colour on the way to the goal that stands out from all grounds by at least that much; the goal itself
/// where none does.
[[nodiscard]] QColor standingOut(const QColor& color, const QColor& goal, const QList<QColor>& grounds, double least);

} // namespace vormel
