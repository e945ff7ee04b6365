#pragma once

#include "screenshots/Scenes.h"

namespace vormel::screenshots {

/// The page of the queue and what opens above it.
[[nodiscard]] std::vector<Scene> queueScenes();

} // namespace vormel::screenshots
