#pragma once

#include "resolvers/captcha/CaptchaPorts.h"

#include <QString>

namespace vormel {

class Clock;
class DownloadManager;
class FileViewer;
class KeptCookies;
class Notices;
class PackageManagers;
class SignInSheet;
class Terminal;
class ToolWatch;
class UrlOpener;
class WebBrowser;

/// What the pages work with. All outlive them.
struct ViewPorts
{
    DownloadManager& manager;
    Clock& clock;
    FileViewer& fileViewer;
    UrlOpener& urlOpener;
    ToolWatch& tools;
    PackageManagers& packageManagers;
    Terminal& terminal;
    SignInSheet& signIn;
    WebBrowser& web;
    KeptCookies& keptCookies;
    Notices& notices; ///< to the user, below the pages
    CaptchaPorts captcha;
    QString downloadsFolder; ///< the user's, whatever the settings say
};

} // namespace vormel
