#pragma once

#include "screenshots/Scenes.h"

namespace vormel::screenshots {

/// The sheet in which the user solves a container's CAPTCHA.
[[nodiscard]] std::vector<Scene> captchaScenes();

} // namespace vormel::screenshots
