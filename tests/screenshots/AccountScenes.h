#pragma once

#include "screenshots/Scenes.h"

namespace vormel::screenshots {

/// The page of the accounts and its sheet.
[[nodiscard]] std::vector<Scene> accountScenes();

} // namespace vormel::screenshots
