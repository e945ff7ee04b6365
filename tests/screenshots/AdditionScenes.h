#pragma once

#include "screenshots/Scenes.h"

namespace vormel::screenshots {

/// Links on their way into the queue: the sheet, the questions, and what is told of them.
[[nodiscard]] std::vector<Scene> additionScenes();

} // namespace vormel::screenshots
