#pragma once

#include <QDBusConnection>
#include <QString>

#include <optional>

namespace vormel {

/// Shows files in the desktop's file viewer.
class FileViewer
{
public:
    FileViewer() = default;
    FileViewer(const FileViewer&) = delete;
    FileViewer& operator=(const FileViewer&) = delete;
    virtual ~FileViewer() = default;

    /// Opens the folder of this absolute path, with the file chosen where the viewer can do that. Returns at once;
    /// failures are not reported.
    virtual void show(const QString& path) = 0;
};

/// Asks the running desktop over D-Bus, and where nobody answers there, has the folder opened by its default program.
/// UI thread only.
class DesktopFileViewer final : public FileViewer
{
public:
    /// On another bus than the session's, if one is given.
    explicit DesktopFileViewer(std::optional<QDBusConnection> bus = std::nullopt);

    void show(const QString& path) override;

private:
    std::optional<QDBusConnection> m_bus;
};

} // namespace vormel
