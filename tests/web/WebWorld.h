#pragma once

#include "sites/Switchboard.h"
#include "sites/TestCertificates.h"

namespace vormel::fixtures {

/// What the engine of a process is told once and for all: whose certificates count, and where every name leads.
struct WebWorld
{
    sites::TestCertificates certificates;
    sites::Switchboard switchboard;
};

/// That of this process; main() makes it.
[[nodiscard]] WebWorld& webWorld();

} // namespace vormel::fixtures
