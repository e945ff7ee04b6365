#pragma once

#include "app/MainWindow.h"
#include "app/Program.h"

#include <QTemporaryDir>

namespace vormel::bench {

/// The real program with its window, in a profile that goes with it.
class Shop
{
public:
    explicit Shop(const CurlHttpClient::Options& network = {});

    [[nodiscard]] DownloadManager& manager() { return m_program.manager(); }
    [[nodiscard]] QString downloads() const { return m_folders.downloads; }

    /// Adds the links, starts them all and returns when each is complete.
    void fetch(const QStringList& urls);

private:
    QTemporaryDir m_directory;
    Folders m_folders;
    Program m_program;
    MainWindow m_window;
};

/// Where large files of a run go: a folder on a real disk.
[[nodiscard]] QString scratchTemplate();

} // namespace vormel::bench
