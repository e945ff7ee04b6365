#pragma once

#include "screenshots/Scenes.h"

namespace vormel::screenshots {

/// The page of the queue and its menus.
[[nodiscard]] std::vector<Scene> queueScenes();

/// A set under way, single files in every status, one with a name that fits nowhere.
void fillQueue(Stage& stage);

} // namespace vormel::screenshots
