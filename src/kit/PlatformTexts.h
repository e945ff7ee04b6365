#pragma once

#include "model/AppLanguage.h"

#include <QtGlobal>

namespace vormel {

/// Which desktop the program is built for.
enum class Desktop
{
    finder,
    freedesktop,
};

#ifdef Q_OS_MACOS
inline constexpr Desktop thisDesktop = Desktop::finder;
#else
inline constexpr Desktop thisDesktop = Desktop::freedesktop;
#endif

/// The texts that name something of the platform, and so are others on each.
enum class PlatformText
{
    showInViewer,            ///< the command that shows a file in its folder
    openInViewer,            ///< the command that opens a folder
    packageManagerMissing,   ///< title of the warning
    packageManagerMissingIs, ///< what that means
    installerNote,           ///< before the installer of a package manager runs
    passwordNote,            ///< before any other command runs
    kindOfProgram,
    description,      ///< "%1" stands for the first of the services
    requirement,      ///< the system that the program needs
    webEngineCommand, ///< installs what shows pages
    externalTools,
};

[[nodiscard]] TextPair platformTexts(PlatformText text, Desktop desktop = thisDesktop);
[[nodiscard]] QString platformText(PlatformText text, AppLanguage language, Desktop desktop = thisDesktop);

} // namespace vormel
