#include "kit/Contrast.h"

#include <algorithm>
#include <cmath>

namespace vormel {

namespace {

double luminance(const QColor& color)
{
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

double contrast(const QColor& a, const QColor& b)
{
    constexpr double glare = 0.05; // what a screen reflects
    const double first = luminance(a) + glare;
    const double second = luminance(b) + glare;
    return std::max(first, second) / std::min(first, second);
}

QColor mixed(const QColor& from, const QColor& to, double share)
{
    const auto channel = [share](int a, int b) { return qRound(a + (b - a) * share); };
    return {channel(from.red(), to.red()), channel(from.green(), to.green()), channel(from.blue(), to.blue())};
}

QColor standingOut(const QColor& color, const QColor& goal, const QList<QColor>& grounds, double least)
{
    constexpr int steps = 50;
    for (int step = 0; step < steps; ++step) {
        const QColor candidate = mixed(color, goal, static_cast<double>(step) / steps);
        if (std::all_of(grounds.begin(), grounds.end(),
                        [&](const QColor& ground) { return contrast(candidate, ground) >= least; }))
            return candidate;
    }
    return goal;
}

} // namespace vormel
