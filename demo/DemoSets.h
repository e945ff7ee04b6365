#pragma once

#include "demo/FilmSet.h"

namespace vormel::demo {

/// The sets of the demo.
struct DemoSets
{
    FilmSet spoilt; ///< one volume is of no use, and there are recovery volumes
    FilmSet secret; ///< with a password
};

/// As they are meant to be, without their volumes.
[[nodiscard]] DemoSets plannedSets();

} // namespace vormel::demo
