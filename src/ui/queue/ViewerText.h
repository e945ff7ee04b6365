#pragma once

#include "ui/kit/PlatformTexts.h"

namespace vormel {

/// The command that shows a file in its folder, by the name that people know the file viewer by.
[[nodiscard]] inline QString showInViewerText(Desktop desktop, AppLanguage language)
{
    return platformText(PlatformText::showInViewer, language, desktop);
}

} // namespace vormel
