#include "engine/intake/LinkIntake.h"

#include "archive/pipeline/PostDownload.h"
#include "engine/completion/FinishedFile.h"
#include "engine/intake/FilenamePrefetch.h"
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

QString duplicateKey(const Link& url)
{
    return url.absoluteString().toLower();
}

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
    QSet<QString> known;
    known.reserve(static_cast<qsizetype>(m_ports.table.items().size()) + static_cast<qsizetype>(urls.size()));
    for (const ItemPtr& item : m_ports.table.items())
        known.insert(duplicateKey(normalizeURL(item->originalURL())));
    std::vector<Link> fresh;
    for (const Link& url : urls) {
        Link normalised = normalizeURL(url);
        const qsizetype before = known.size();
        known.insert(duplicateKey(normalised));
        if (known.size() > before)
            fresh.push_back(std::move(normalised));
    }
    return fresh;
}

void LinkIntake::addURLs(const std::vector<Link>& urls, const std::optional<QString>& containerPassword)
{
    std::vector<Link> direct;
    std::vector<Link> containers;
    for (Link& url : filterNewURLs(urls))
        (m_ports.resolvers.containerResolverForURL(url) ? containers : direct).push_back(std::move(url));
    addItems(direct);
    for (const Link& url : containers)
        m_ports.queue.later([this, url, containerPassword] { expandContainer(url, containerPassword); });
    settle();
}

void LinkIntake::addDirectURLs(const std::vector<Link>& urls)
{
    addItems(filterNewURLs(urls));
    settle();
}

void LinkIntake::addItems(const std::vector<Link>& urls)
{
    std::vector<ItemPtr> items;
    items.reserve(urls.size());
    for (const Link& url : urls) {
        items.push_back(std::make_shared<DownloadItem>(url, ItemId::make()));
        if (!m_ports.settings.autoStartDownloads.value())
            items.back()->setStatus(DownloadStatus::paused);
    }
    m_ports.table.append(items);
    for (const ItemPtr& item : items)
        markCompletedIfPresent(*item);
}

void LinkIntake::settle()
{
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

void LinkIntake::expandContainer(const Link& url, const std::optional<QString>& password)
{
    auto placeholder = std::make_shared<DownloadItem>(url, ItemId::make());
    placeholder->setStatus(DownloadStatus::expanding);
    placeholder->setFilename(placeholderLabel(url));
    m_ports.table.append({placeholder});
    spawn(readContainer(placeholder, password));
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
    const auto password = m_passwords.constFind(item.id());
    spawn(readContainer(placeholder, password == m_passwords.cend() ? std::nullopt : std::optional(*password)));
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

QCoro::Task<> LinkIntake::readContainer(ItemPtr placeholder, std::optional<QString> password)
{
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
    if (password && !contents.links)
        m_passwords.insert(placeholder->id(), *password);
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
    m_ports.table.remove({placeholder->id()});
    std::vector<PendingHostSelection::HostGroup> groups = groupURLsByHost(urls, m_ports.resolvers.profiles());
    if (groups.size() < 2)
        addDirectURLs(urls);
    else
        m_ports.questions.ask(PendingHostSelection{std::move(groups), urls});
}

void LinkIntake::addCaptchaLinks(const PendingCaptcha& answered, const std::vector<Link>& urls)
{
    m_ports.table.remove({answered.placeholderID});
    addItems(filterNewURLs(urls));
    settle();
}

void LinkIntake::cancelCaptcha(const PendingCaptcha& question) const
{
    if (const ItemPtr placeholder = m_ports.table.find(question.placeholderID))
        placeholder->setStatus(DownloadStatus::failure(u"CAPTCHA cancelled"_s));
}

} // namespace vormel
