#pragma once

namespace vormel {

class Clock;
class DownloadManager;
class FileViewer;

/// What the page of the queue works with. All outlive it.
struct QueuePorts
{
    DownloadManager& manager;
    const Clock& clock;
    FileViewer& fileViewer;
};

} // namespace vormel
