#pragma once

#include "screenshots/Stage.h"

#include <functional>

namespace vormel::screenshots {

struct Scene
{
    const char* name;
    std::function<void(Stage&)> set;
};

/// Every page, sheet and state of the program.
[[nodiscard]] std::vector<Scene> allScenes();

} // namespace vormel::screenshots
