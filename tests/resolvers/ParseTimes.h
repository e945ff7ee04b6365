#pragma once

#include <QString>

#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace vormel::tests {

/// Sanitizers make everything slower, each part by another measure.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
inline constexpr bool isOptimised = false;
#else
inline constexpr bool isOptimised = true;
#endif

/// How long a parser takes over a page of 100 KB, and over one that is ten times as long: of several runs the least
/// processor time, so that neither other programs nor a busy machine count.
class ParseTimes
{
public:
    static constexpr qsizetype usualSize = 100 * 1024;
    static constexpr qsizetype tenfoldSize = 10 * usualSize;

    using Parse = std::function<void(const QString&)>;

    /// Measures until the times are fine, or it has been tried often enough.
    ParseTimes(const Parse& parse, const QString& usual, const QString& tenfold);

    [[nodiscard]] bool areFine() const;
    [[nodiscard]] std::string shown() const;

private:
    [[nodiscard]] static double timeOf(const Parse& parse, const std::vector<QString>& pages);

    double m_usual = std::numeric_limits<double>::max(); ///< in milliseconds
    double m_tenfold = std::numeric_limits<double>::max();
};

} // namespace vormel::tests
