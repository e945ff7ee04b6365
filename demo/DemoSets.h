#pragma once

#include "demo/FilmSet.h"

namespace vormel::demo {

/// The sets of the demo.
struct DemoSets
{
    FilmSet spoilt;  ///< one volume is of no use, and there are recovery volumes
    FilmSet secret;  ///< with a password
    FilmSet premium; ///< at hosts for which one needs an account; one volume is damaged there
    FilmSet shared;  ///< some volumes at one of these hosts, the rest at the other
};

/// As they are meant to be, without their volumes.
[[nodiscard]] DemoSets plannedSets();

/// What the sets take up at most.
[[nodiscard]] qint64 bytesToCome(const DemoSets& sets);

/// Makes the volumes of all of them; what it needs of the folder is gone afterwards. False if there are none.
[[nodiscard]] bool pack(DemoSets& sets, const QString& folder);

} // namespace vormel::demo
