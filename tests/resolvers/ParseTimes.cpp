#include "ParseTimes.h"

#include <algorithm>
#include <ctime>

namespace vormel::tests {

namespace {

/// Side by side. To read them meets the same memory and the same busy machine as one page that is ten times as long.
std::vector<QString> tenCopiesOf(const QString& page)
{
    std::vector<QString> copies;
    for (int i = 0; i < 10; ++i)
        copies.emplace_back(page.constData(), page.size());
    return copies;
}

} // namespace

ParseTimes::ParseTimes(const Parse& parse, const QString& usual, const QString& tenfold)
{
    constexpr int tries = 20;
    const std::vector<QString> copies = tenCopiesOf(usual);
    for (int run = 0; run < tries && !areFine(); ++run) {
        m_usual = std::min(m_usual, timeOf(parse, copies) / static_cast<double>(copies.size()));
        m_tenfold = std::min(m_tenfold, timeOf(parse, {tenfold}));
    }
}

bool ParseTimes::areFine() const
{
    constexpr double most = 50;
    constexpr double leastMeasured = 2;
    constexpr double growth = 25; // what goes over a page anew takes a hundred times as long
    return (m_usual < most || !isOptimised) && m_tenfold <= growth * std::max(m_usual, leastMeasured);
}

std::string ParseTimes::shown() const
{
    return std::to_string(m_usual) + " ms, and " + std::to_string(m_tenfold) + " ms for ten times as much";
}

double ParseTimes::timeOf(const Parse& parse, const std::vector<QString>& pages)
{
    const std::clock_t start = std::clock();
    for (const QString& page : pages)
        parse(page);
    return static_cast<double>(std::clock() - start) * 1000 / CLOCKS_PER_SEC;
}

} // namespace vormel::tests
