#include "Benchmarks.h"
#include "Measure.h"
#include "ProgramInProfile.h"
#include "sites/services/ClickNLoadCall.h"
#include "sites/services/ContainerSite.h"
#include "sites/services/FilestoreSite.h"
#include "ui/queue/list/QueueView.h"

#include <QCoroTask>
#include <QDir>
#include <QElapsedTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel::bench {

namespace {

constexpr int rounds = 5;

/// A premium host and a container service that leads to it.
class Services
{
public:
    Services()
    {
        m_site.addAccount("ann", "secret");
        m_network.extraCaFile = QString::fromStdString(
            m_certificates.writeAuthority(QDir(m_folder.path()).absolutePath().toStdString()).string());
        auto connectTo = m_site.connectTo();
        connectTo.merge(m_containers.connectTo());
        for (const auto& [from, to] : connectTo)
            m_network.connectTo.insert(QByteArray::fromStdString(from), QByteArray::fromStdString(to));
    }

    [[nodiscard]] const CurlHttpClient::Options& network() const { return m_network; }
    [[nodiscard]] Link newFile()
    {
        constexpr qint64 size = 64 * 1024;
        const int number = ++m_files;
        const std::string url =
            m_site.addFile("film." + std::to_string(number) + ".mkv", sites::FilestoreSite::Shape::oneForm,
                           sites::PatternContent(static_cast<std::uint64_t>(number), size));
        return *Link::parse(QString::fromStdString(url));
    }
    [[nodiscard]] Link containerOf(int links)
    {
        std::string lines;
        for (int i = 0; i < links; ++i)
            lines += "https://filestore.example/film." + std::to_string(i) + ".mkv\r\n";
        return container(sites::clickNLoadCall(lines));
    }
    /// Each of its links is a page of the service that redirects to the host.
    [[nodiscard]] Link containerOfPages(int links)
    {
        std::string body;
        for (int i = 0; i < links; ++i) {
            const std::string word = "word" + std::to_string(i);
            m_containers.addGoLink(
                word, sites::Answer::redirect(302, "https://filestore.example/film." + std::to_string(i) + ".mkv"));
            body += "<a onclick=\"open('/go/" + word + "')\">";
        }
        return container(body);
    }

private:
    [[nodiscard]] Link container(const std::string& body)
    {
        return *Link::parse(QString::fromStdString(m_containers.add({.body = body})));
    }

    QTemporaryDir m_folder;
    sites::TestCertificates m_certificates;
    sites::FilestoreSite m_site{m_certificates};
    sites::ContainerSite m_containers{m_certificates, "filecrypt.example"};
    CurlHttpClient::Options m_network;
    int m_files = 0;
};

/// The longest time that the window could not have painted.
class LongestTurn final : public QObject
{
public:
    LongestTurn()
    {
        m_since.start();
        startTimer(0);
    }
    [[nodiscard]] double milliseconds() const { return static_cast<double>(m_longest) / 1e6; }

protected:
    void timerEvent(QTimerEvent* /*event*/) override
    {
        m_longest = std::max(m_longest, m_since.nsecsElapsed());
        m_since.restart();
    }

private:
    QElapsedTimer m_since;
    qint64 m_longest = 0;
};

void signIn(DownloadManager& manager)
{
    QCoro::waitFor(
        manager.accounts().put({QUuid::createUuid(), SupportedHost::filestore, u"ann"_s, true}, u"secret"_s));
}

/// No file is there before, nor anything that was learnt about it.
Cost firstBytes(Services& services)
{
    constexpr int files = 30;
    ProgramInProfile program(services.network());
    DownloadManager& manager = program.manager();
    signIn(manager);
    manager.settings().maxConcurrentDownloads.set(files);
    std::vector<Link> links;
    for (int i = 0; i < files; ++i)
        links.push_back(services.newFile());
    manager.addURLs(links, std::nullopt);
    return costOf([&manager] {
        manager.commands().startAll();
        turnUntil([&manager] {
            return std::ranges::all_of(manager.items(), [](const ItemPtr& item) {
                if (item->status() == DownloadStatus::failed)
                    giveUp(item->status().message());
                return item->bytesReceived() > 0;
            });
        });
    });
}

/// From the links' arrival at the program until the list has painted their rows.
Cost rowsOf(const Services& services, const Link& container, std::size_t links)
{
    ProgramInProfile program(services.network());
    auto* const list = program.window().findChild<QueueView*>();
    return costOf([&] {
        program.manager().addURLs({container}, std::nullopt);
        turnUntil([&] { return program.manager().items().size() == links; });
        list->viewport()->repaint();
    });
}

} // namespace

void benchPremium(Report& report)
{
    report.note(u"A premium host and a container service over https on this machine, median of %1 runs:"_s.arg(rounds));
    Services services;
    std::vector<Cost> starts;
    for (int round = 0; round < rounds; ++round)
        starts.push_back(firstBytes(services));
    report.add(u"filestore30_first_bytes_ms"_s, median(starts).wall * 1000);

    constexpr int rows = 500;
    const Link container = services.containerOf(rows);
    std::vector<Cost> openings;
    for (int round = 0; round < rounds; ++round)
        openings.push_back(rowsOf(services, container, rows));
    report.add(u"container500_rows_ms"_s, median(openings).wall * 1000);

    constexpr int pages = 2000;
    const Link containerOfPages = services.containerOfPages(pages);
    LongestTurn turns;
    const Cost reading = rowsOf(services, containerOfPages, pages);
    report.note(u"  A container of %1 pages that redirect took %2 s."_s.arg(pages).arg(reading.wall, 0, 'f', 1));
    report.add(u"container2000_longest_turn_ms"_s, turns.milliseconds());
}

} // namespace vormel::bench
