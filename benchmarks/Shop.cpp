#include "Shop.h"

#include "Measure.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>

namespace vormel::bench {

QString scratchTemplate()
{
    QDir().mkpath(QStringLiteral("build/bench"));
    return QStringLiteral("build/bench/scratch-XXXXXX");
}

Shop::Shop(const CurlHttpClient::Options& network)
    : m_directory(scratchTemplate())
    , m_folders(Folders::below(QDir(m_directory.path()).absolutePath()))
    , m_program(m_folders, network)
    , m_window(m_program.queuePorts())
{
    m_window.show();
    QCoreApplication::processEvents();
}

void Shop::fetch(const QStringList& urls)
{
    std::vector<Link> links;
    for (const QString& url : urls)
        links.push_back(*Link::parse(url));
    manager().addURLs(links, std::nullopt);
    manager().startAll();
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
