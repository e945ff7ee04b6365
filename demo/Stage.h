#pragma once

#include "demo/DemoSites.h"
#include "engine/DownloadManager.h"
#include "platform/desktop/Folders.h"

namespace vormel::demo {

/// What a chapter of the demo plays on: the running program and the servers that it meets. All outlive the chapter.
struct Stage
{
    DownloadManager& manager;
    const DemoSites& sites;
    const Folders& folders;
    QString home;  ///< all that is written lies below it
    QString trash; ///< where thrown-away files go
};

} // namespace vormel::demo
