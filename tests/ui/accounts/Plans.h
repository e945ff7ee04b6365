#pragma once

#include "model/PremiumAccountInfo.h"

namespace vormel::fixtures {

inline constexpr qint64 gibibyte = 1024LL * 1024 * 1024;

/// A plan without an end, with a gibibyte left.
[[nodiscard]] inline PremiumAccountInfo goldPlan()
{
    return {QStringLiteral("Gold"), {}, gibibyte, {}};
}

} // namespace vormel::fixtures
