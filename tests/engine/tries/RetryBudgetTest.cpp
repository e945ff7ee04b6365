#include "engine/tries/RetryBudget.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using namespace vormel;

namespace {

struct Attempt
{
    int number;
    std::optional<std::chrono::seconds> delay;
};

/// What each attempt in a row without progress waits for.
const Attempt attempts[] = {
    {1, 2s}, {2, 4s}, {3, 6s}, {4, 8s}, {5, 10s}, {6, 10s}, {7, 10s}, {8, 10s}, {9, std::nullopt}, {10, std::nullopt},
};

void spendAll(RetryBudget& budget, const ItemId& id)
{
    for (int attempt = 0; attempt < RetryBudget::maxNetworkRetries; ++attempt)
        (void)budget.spend(id);
}

} // namespace

TEST(RetryBudget, GrowsItsDelaysUpToTenSecondsAndEndsAfterEight)
{
    RetryBudget budget;
    const ItemId id = ItemId::make();
    for (const Attempt& attempt : attempts)
        EXPECT_EQ(budget.spend(id), attempt.delay) << attempt.number;
}

TEST(RetryBudget, CountsWhatIsSpentAndNothingBeyond)
{
    RetryBudget budget;
    const ItemId id = ItemId::make();
    EXPECT_EQ(budget.spent(id), 0);
    for (const Attempt& attempt : attempts) {
        (void)budget.spend(id);
        EXPECT_EQ(budget.spent(id), std::min(attempt.number, 8)) << attempt.number;
    }
}

TEST(RetryBudget, BeginsAnewWhenRestoredHoweverMuchWasSpent)
{
    for (int spent = 0; spent <= 9; ++spent) {
        RetryBudget budget;
        const ItemId id = ItemId::make();
        for (int attempt = 0; attempt < spent; ++attempt)
            (void)budget.spend(id);
        budget.restore(id);
        EXPECT_EQ(budget.spent(id), 0) << spent;
        for (const Attempt& attempt : attempts)
            EXPECT_EQ(budget.spend(id), attempt.delay) << spent << " spent before, attempt " << attempt.number;
    }
}

TEST(RetryBudget, IsEachItemsOwn)
{
    RetryBudget budget;
    const ItemId unlucky = ItemId::make();
    const ItemId other = ItemId::make();
    spendAll(budget, unlucky);
    EXPECT_EQ(budget.spend(other), 2s);
    budget.restore(other);
    EXPECT_EQ(budget.spend(unlucky), std::nullopt);
    budget.restore(unlucky);
    EXPECT_EQ(budget.spend(other), 2s);
    EXPECT_EQ(budget.spend(other), 4s);
}
