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

/// The command that shows a file in its folder, by the name that people know the file viewer by.
[[nodiscard]] inline QString showInViewerText(Desktop desktop, AppLanguage language)
{
    return desktop == Desktop::finder ? pair(language, u"Show in Finder", u"Mostra nel Finder")
                                      : pair(language, u"Show in File Manager", u"Mostra nel gestore file");
}

} // namespace vormel
