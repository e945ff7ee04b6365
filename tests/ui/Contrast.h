#pragma once

#include <QColor>

#include <algorithm>
#include <cmath>

namespace vormel::fixtures {

inline constexpr double readable = 4.5; ///< the least for texts
inline constexpr double visible = 3;    ///< the least for icons, bars and rings

/// By the formula of the web's accessibility guidelines; the program's own function is held to it.
[[nodiscard]] inline double contrastOf(const QColor& a, const QColor& b)
{
    const auto linear = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    const auto luminance = [&linear](const QColor& color) {
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
    };
    const double la = luminance(a) + 0.05;
    const double lb = luminance(b) + 0.05;
    return std::max(la, lb) / std::min(la, lb);
}

/// What is seen of a colour with that share of another one laid over it.
[[nodiscard]] inline QColor under(const QColor& ground, const QColor& above, double share)
{
    const auto channel = [share](int a, int b) { return qRound(a + (b - a) * share); };
    return {channel(ground.red(), above.red()), channel(ground.green(), above.green()),
            channel(ground.blue(), above.blue())};
}

} // namespace vormel::fixtures
