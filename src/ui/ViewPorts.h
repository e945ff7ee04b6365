#pragma once

namespace vormel {

class Clock;
class DownloadManager;
class FileViewer;
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
};

} // namespace vormel
