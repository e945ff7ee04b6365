#pragma once

#include "app/MainWindow.h"
#include "app/Program.h"

#include <QTemporaryDir>

#include <functional>

namespace vormel::bench {

/// The real program with its window, in a profile that goes with it.
class ProgramInProfile
{
public:
    /// `furnish` may put things into the profile before the program starts on it.
    using Furnish = std::function<void(const Folders&)>;
    explicit ProgramInProfile(
        const CurlHttpClient::Options& network = {}, const Furnish& furnish = [](const Folders&) {});

    [[nodiscard]] MainWindow& window() { return m_window; }
    [[nodiscard]] DownloadManager& manager() { return m_program.manager(); }
    [[nodiscard]] QString downloads() const { return m_folders.downloads; }

    /// Adds the links, starts them all and returns when each is complete.
    void fetch(const QStringList& urls);

private:
    [[nodiscard]] static Folders furnished(const QString& path, const Furnish& furnish);

    QTemporaryDir m_directory;
    Folders m_folders;
    Program m_program;
    MainWindow m_window;
};

/// Where large files of a run go: a folder on a real disk.
[[nodiscard]] QString scratchTemplate();

} // namespace vormel::bench
