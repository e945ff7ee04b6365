#pragma once

#include <QString>

namespace vormel {

class Clock;
class DownloadManager;
class FileViewer;
class PackageManagers;
class SignInSheet;
class Terminal;
class ToolWatch;
class UrlOpener;

/// What the pages work with. All outlive them.
struct ViewPorts
{
    DownloadManager& manager;
    const Clock& clock;
    FileViewer& fileViewer;
    UrlOpener& urlOpener;
    ToolWatch& tools;
    PackageManagers& packageManagers;
    Terminal& terminal;
    SignInSheet& signIn;
    QString downloadsFolder; ///< the user's, whatever the settings say
};

} // namespace vormel
