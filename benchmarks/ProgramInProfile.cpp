#include "ProgramInProfile.h"

#include "Measure.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel::bench {

QString scratchTemplate()
{
    QDir().mkpath(u"build/bench"_s);
    return u"build/bench/scratch-XXXXXX"_s;
}

Folders ProgramInProfile::furnished(const QString& path, const Furnish& furnish)
{
    Folders folders = Folders::below(QDir(path).absolutePath());
    furnish(folders);
    return folders;
}

ProgramInProfile::ProgramInProfile(const CurlHttpClient::Options& network, const Furnish& furnish)
    : m_directory(scratchTemplate())
    , m_folders(furnished(m_directory.path(), furnish))
    , m_program(m_folders, network)
    , m_window(m_program.viewPorts(), m_program.updater())
{
    m_window.show();
    QCoreApplication::processEvents();
}

void ProgramInProfile::fetch(const QStringList& urls)
{
    std::vector<Link> links;
    for (const QString& url : urls)
        links.push_back(*Link::parse(url));
    manager().addURLs(links, std::nullopt);
    manager().commands().startAll();
    const auto& items = manager().items();
    turnUntil([&items] {
        return std::all_of(items.begin(), items.end(), [](const ItemPtr& item) {
            if (item->status() == DownloadStatus::failed)
                giveUp(item->status().message());
            return item->status() == DownloadStatus::completed;
        });
    });
}

} // namespace vormel::bench
