#pragma once

#include <QString>

#include <functional>
#include <random>
#include <vector>

namespace vormel::tests {

/// Small pages of the fragments that a pattern is about: half of the time the next one that it wants, else any, so that
/// matches, near misses and overlaps all come. The same ones in every run.
class RandomPages
{
public:
    /// What the pattern wants, in its order, and what may stand anywhere.
    RandomPages(std::vector<QString> wanted, std::vector<QString> others);

    [[nodiscard]] QString next();

private:
    [[nodiscard]] std::size_t below(std::size_t bound);

    std::vector<QString> m_wanted;
    std::vector<QString> m_all;
    std::mt19937 m_random;
};

} // namespace vormel::tests
