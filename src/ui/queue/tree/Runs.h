#pragma once

#include <algorithm>
#include <vector>

namespace vormel {

/// Consecutive numbers.
struct Run
{
    int first;
    int last;
};

/// Cuts ascending numbers into runs.
[[nodiscard]] inline std::vector<Run> runsOf(const std::vector<int>& ascending)
{
    std::vector<Run> runs;
    for (const int number : ascending) {
        if (!runs.empty() && runs.back().last + 1 == number)
            runs.back().last = number;
        else
            runs.push_back({number, number});
    }
    return runs;
}

[[nodiscard]] inline std::vector<Run> fromTheBack(std::vector<Run> runs)
{
    std::reverse(runs.begin(), runs.end());
    return runs;
}

} // namespace vormel
