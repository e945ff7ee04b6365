#include "engine/intake/LinkIntake.h"

#include "archive/pipeline/PostDownload.h"
#include "engine/completion/FinishedFile.h"
#include "engine/intake/FilenamePrefetch.h"
#include "engine/intake/KnownLinks.h"
#include "engine/questions/Questions.h"
#include "model/AppSettings.h"
#include "model/DownloadPaths.h"
#include "model/HostGroups.h"
#include "model/NormalizeURL.h"
#include "platform/async/Spawn.h"
#include "resolvers/ResolverError.h"
#include "resolvers/ResolverTables.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString placeholderLabel(const Link& url)
{
    const QString host = url.host().isEmpty() ? u"Container"_s : url.host().toString();
    return host + u": "_s + url.lastPathComponent();
}

QString captchaLabel(const Link& url)
{
    return u"CAPTCHA: "_s + (url.host().isEmpty() ? url.lastPathComponent() : url.host().toString());
}

/// What came of reading a container.
struct Contents
{
    std::optional<std::vector<Link>> links;
    QString failure; ///< without links
    bool wantsCaptcha = false;
};

QCoro::Task<Contents> contentsOf(const ContainerResolver& resolver, Link url, std::optional<QString> password,
                                 std::stop_token stop)
{
    Contents contents;
    try {
        contents.links = co_await resolver.resolveContainer(url, password, stop);
    } catch (const ContainerError& error) {
        contents.wantsCaptcha = error.kind() == ContainerError::Kind::captchaRequired;
        contents.failure = error.errorDescription();
    } catch (const std::exception& error) {
        contents.failure = QString::fromUtf8(error.what());
    }
    co_return contents;
}

} // namespace

LinkIntake::LinkIntake(const Ports& ports)
    : m_ports(ports)
{}

LinkIntake::~LinkIntake()
{
    for (auto& [id, reading] : m_readings)
        reading.request_stop();
}

std::vector<Link> LinkIntake::filterNewURLs(const std::vector<Link>& urls) const
{
    return sift(urls).fresh;
}

LinkIntake::Sifted LinkIntake::sift(const std::vector<Link>& urls) const
{
    const KnownLinks queue(m_ports.table.items());
    KnownLinks met;
    Sifted sifted;
    for (const Link& url : urls) {
        if (!met.insert(url))
            continue;
        if (queue.contains(url))
            ++sifted.known;
        else
            sifted.fresh.push_back(normalizeURL(url));
    }
    return sifted;
}

void LinkIntake::addURLs(const std::vector<Link>& urls, const std::optional<QString>& containerPassword)
{
    const Additions::StrokePtr stroke = m_ports.additions.current();
    Sifted sifted = sift(urls);
    std::vector<Link> direct;
    std::vector<Link> containers;
    for (Link& url : sifted.fresh)
        (m_ports.resolvers.containerResolverForURL(url) ? containers : direct).push_back(std::move(url));
    m_ports.additions.noteKnown(stroke, sifted.known);
    addItems(direct, stroke);
    for (const Link& url : containers)
        m_ports.queue.later(
            [this, url, containerPassword, stroke] { expandContainer(url, containerPassword, stroke); });
    settle(stroke);
}

void LinkIntake::addDirectURLs(const std::vector<Link>& urls)
{
    addFiles(urls, m_ports.additions.current());
}

void LinkIntake::addFiles(const std::vector<Link>& urls, const Additions::StrokePtr& stroke)
{
    const Sifted sifted = sift(urls);
    m_ports.additions.noteKnown(stroke, sifted.known);
    addItems(sifted.fresh, stroke);
    settle(stroke);
}

void LinkIntake::addItems(const std::vector<Link>& urls, const Additions::StrokePtr& stroke)
{
    std::vector<ItemPtr> items;
    items.reserve(urls.size());
    for (const Link& url : urls) {
        items.push_back(std::make_shared<DownloadItem>(url, ItemId::make()));
        if (!m_ports.settings.autoStartDownloads.value())
            items.back()->setStatus(DownloadStatus::paused);
    }
    m_ports.table.append(items);
    m_ports.additions.noteItems(stroke, items);
    for (const ItemPtr& item : items)
        markCompletedIfPresent(*item);
}

void LinkIntake::settle(const Additions::StrokePtr& stroke)
{
    m_ports.additions.tellLater(stroke); // behind the rows of containers
    m_ports.queue.processQueue();
    m_ports.prefetch.prefetchFilenames();
    m_ports.queue.saveQueue();
}

void LinkIntake::markCompletedIfPresent(DownloadItem& item)
{
    const DownloadStatus::Kind status = item.status().kind();
    if (status != DownloadStatus::queued && status != DownloadStatus::paused && status != DownloadStatus::stopped)
        return;
    if (isNamelessFile(item.filename()))
        return;
    const DownloadPaths paths = m_ports.settings.paths();
    const std::optional<QString> file = finishedFileOf(item, m_ports.table, paths);
    if (!file)
        return;
    completeWithFile(item, *file);
    if (m_ports.settings.autoExtract.value())
        m_ports.queue.later([this, id = item.id()] { m_ports.postDownload.autoExtractAfterDownload(id); });
}

void LinkIntake::expandContainer(const Link& url, const std::optional<QString>& password,
                                 const Additions::StrokePtr& stroke)
{
    auto placeholder = std::make_shared<DownloadItem>(url, ItemId::make());
    placeholder->setStatus(DownloadStatus::expanding);
    placeholder->setFilename(placeholderLabel(url));
    m_ports.table.append({placeholder});
    m_ports.additions.noteContainer(stroke, *placeholder);
    takeUpContainer(placeholder, password);
}

void LinkIntake::takeUpContainer(const ItemPtr& row, const std::optional<QString>& password)
{
    if (password)
        m_passwords.insert(row->id(), *password);
    if (row->status() == DownloadStatus::expanding)
        spawn(readContainer(row));
}

std::optional<QString> LinkIntake::passwordOf(const ItemId& id) const
{
    const auto password = m_passwords.constFind(id);
    return password == m_passwords.cend() ? std::nullopt : std::optional(*password);
}

bool LinkIntake::isContainer(const DownloadItem& item) const
{
    return m_ports.resolvers.containerResolverForURL(item.originalURL()) != nullptr;
}

bool LinkIntake::isFailedContainer(const DownloadItem& item) const
{
    return item.status() == DownloadStatus::failed && isContainer(item);
}

bool LinkIntake::readAgain(const DownloadItem& item)
{
    const ItemPtr placeholder = m_ports.table.find(item.id());
    // What is being read, or waits for its CAPTCHA, is no file either.
    if (item.status() == DownloadStatus::expanding && isContainer(item))
        return true;
    if (!placeholder || !isFailedContainer(item))
        return false;
    placeholder->setStatus(DownloadStatus::expanding);
    placeholder->setFilename(placeholderLabel(item.originalURL()));
    spawn(readContainer(placeholder));
    return true;
}

void LinkIntake::stopReading(const ItemId& id)
{
    if (auto reading = m_readings.extract(id))
        reading.mapped().request_stop();
}

void LinkIntake::forget(const QSet<ItemId>& ids)
{
    for (const ItemId& id : ids) {
        stopReading(id);
        m_passwords.remove(id);
    }
}

QCoro::Task<> LinkIntake::readContainer(ItemPtr placeholder)
{
    const std::optional<QString> password = passwordOf(placeholder->id());
    const Link url = placeholder->originalURL();
    const ContainerResolver* const resolver = m_ports.resolvers.containerResolverForURL(url);
    if (!resolver) {
        placeholder->setStatus(DownloadStatus::failure(u"No resolver found"_s));
        co_return;
    }
    const Lifetime::Watch lifetime = m_lifetime.watch();
    stopReading(placeholder->id());
    const std::stop_source reading;
    m_readings.emplace(placeholder->id(), reading);
    const Contents contents = co_await contentsOf(*resolver, url, password, reading.get_token());
    // The user may have stopped or removed the row meanwhile, and with it the wish for its links.
    if (lifetime.isOver() || reading.stop_requested())
        co_return;
    m_readings.erase(placeholder->id());
    if (contents.links)
        containerOpened(placeholder, *contents.links);
    else if (contents.wantsCaptcha)
        askForCaptcha(*placeholder, password);
    else
        placeholder->setStatus(DownloadStatus::failure(contents.failure));
}

void LinkIntake::askForCaptcha(DownloadItem& placeholder, const std::optional<QString>& password)
{
    const Link url = placeholder.originalURL();
    placeholder.setStatus(DownloadStatus::expanding);
    placeholder.setFilename(captchaLabel(url));
    m_ports.questions.ask(PendingCaptcha{placeholder.id(), url, password});
}

void LinkIntake::containerOpened(const ItemPtr& placeholder, const std::vector<Link>& urls)
{
    const Additions::StrokePtr stroke = m_ports.additions.ofContainer(placeholder->id());
    m_ports.table.remove({placeholder->id()});
    m_ports.additions.noteRead(stroke, placeholder->id());
    std::vector<PendingHostSelection::HostGroup> groups = groupURLsByHost(urls, m_ports.resolvers.profiles());
    if (groups.size() < 2)
        return addFiles(urls, stroke);
    m_ports.additions.noteQuestion(stroke, placeholder->id());
    m_ports.questions.ask(PendingHostSelection{std::move(groups), urls, placeholder->id()});
}

void LinkIntake::addChosenLinks(const PendingHostSelection& answered, const std::vector<Link>& urls)
{
    const Additions::StrokePtr stroke = m_ports.additions.ofContainer(answered.containerID);
    m_ports.additions.forget({answered.containerID});
    addFiles(urls, stroke);
}

void LinkIntake::addCaptchaLinks(const PendingCaptcha& answered, const std::vector<Link>& urls)
{
    const Additions::StrokePtr stroke = m_ports.additions.ofContainer(answered.placeholderID);
    m_ports.table.remove({answered.placeholderID});
    m_ports.additions.noteRead(stroke, answered.placeholderID);
    addFiles(urls, stroke);
}

void LinkIntake::cancelCaptcha(const PendingCaptcha& question) const
{
    if (const ItemPtr placeholder = m_ports.table.find(question.placeholderID))
        placeholder->setStatus(DownloadStatus::failure(u"CAPTCHA cancelled"_s));
}

} // namespace vormel
