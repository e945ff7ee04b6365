#pragma once

#include "screenshots/Scenes.h"

namespace vormel::screenshots {

/// The sheet in which the user signs in on a host's page.
[[nodiscard]] std::vector<Scene> signInScenes();

} // namespace vormel::screenshots
