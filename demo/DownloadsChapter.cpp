#include "demo/DownloadsChapter.h"

#include "demo/DiskEvidence.h"
#include "model/DownloadPaths.h"
#include "text/ByteCount.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel::demo {

namespace {

using namespace std::chrono_literals;

/// Slow until the pause, whatever the order in which the transfers are served, so that the pause comes mid-way.
constexpr qint64 slowKBps = qint64{10} * 1024;
constexpr qint64 fastKBps = qint64{50} * 1024;
constexpr double shareBeforePause = 0.03;

} // namespace

DownloadsChapter::DownloadsChapter(const Stage& stage)
    : m_stage(stage)
{}

std::vector<Step> DownloadsChapter::steps()
{
    return {add(), start(), pause(), resume(), loseConnection(), finish(), compareFiles(), storeQueue()};
}

Step DownloadsChapter::add()
{
    const auto askedNothing = [this] { return unless(m_stage.sites.requestCount() == 0, u"it was asked already"_s); };
    return {.title = u"Adding %1 links"_s.arg(m_stage.sites.links().size()),
            .begin = [this] { m_stage.manager.addURLs(m_stage.sites.links(), std::nullopt); },
            .goal = u"added: all links are in the queue, in their order, paused and with their names"_s,
            .missing = [this] { return objectionToAddedItems(); },
            .checks = {{u"no server was asked for anything yet"_s, askedNothing}},
            .screenshot = u"1-added.png"_s};
}

Step DownloadsChapter::start()
{
    const auto keptLimit = [this] {
        const qint64 limit = m_stage.manager.settings().maxConcurrentDownloads.value();
        return unless(m_mostAtWork <= limit, u"%1 instead of at most %2"_s.arg(m_mostAtWork).arg(limit));
    };
    return {.title = u"Starting all, slowly"_s,
            .begin = [this] { startAll(slowKBps); },
            .goal = u"downloading: several files at once, a piece of the large one is here"_s,
            .missing = [this] { return missingUnderWay(); },
            .checks = {{u"never more at once than the setting allows"_s, keptLimit},
                       {u"failed as intended: the web page instead of a file is told"_s,
                        [this] { return objectionToFailure(); }}},
            .screenshot = u"2-downloading.png"_s};
}

Step DownloadsChapter::pause()
{
    const auto stop = [this] {
        m_stage.manager.commands().pauseAll();
        m_pausedAt = sizeOfLargePartFile();
    };
    const auto stands = [this] {
        const qint64 size = sizeOfLargePartFile();
        return unless(size == m_pausedAt, u"it went from %1 to %2 bytes"_s.arg(m_pausedAt).arg(size));
    };
    const auto showsNoMore = [this] {
        const qint64 shown = item(m_stage.sites.largeFile())->bytesReceived();
        return unless(shown <= m_pausedAt, u"%1 shown, %2 there"_s.arg(shown).arg(m_pausedAt));
    };
    return {.title = u"Pausing all mid-way"_s,
            .begin = stop,
            .goal = u"paused: nothing has run for a second"_s,
            .missing = [this] { return unless(countAtWork() == 0, u"%1 still run"_s.arg(countAtWork())); },
            .settling = 1s,
            .checks = {{u"the large file did not grow by one byte meanwhile"_s, stands},
                       {u"no more bytes are shown for it than are on disk"_s, showsNoMore}},
            .screenshot = u"3-paused.png"_s};
}

Step DownloadsChapter::resume()
{
    const auto wentOn = [this] { return objectionToStart(1, m_pausedAt); };
    return {.title = u"Resuming all, with a higher speed cap"_s,
            .begin = [this] { startAll(fastKBps); },
            .goal = u"resumed: the server was asked for the large file again"_s,
            .missing = [this] { return missingRequests(2); },
            .checks = {{u"it was asked for the rest alone, from the very byte of the pause on"_s, wentOn}}};
}

Step DownloadsChapter::loseConnection()
{
    const auto wentOn = [this] { return objectionToStart(2, m_stage.sites.middleOfLargeFile()); };
    return {.title = u"The server will cut the large file's connection in its middle"_s,
            .goal = u"cut and resumed: the server was asked for the large file a third time"_s,
            .missing = [this] { return missingRequests(3); },
            .checks = {{u"it was asked for the rest alone, from the very byte of the cut on"_s, wentOn}}};
}

Step DownloadsChapter::finish()
{
    const auto askedThrice = [this] {
        const std::size_t requests = m_stage.sites.rangesAskedFor(m_stage.sites.largeFile()).size();
        return unless(requests == 3, u"%1 requests"_s.arg(requests));
    };
    return {.title = u"Downloading the rest"_s,
            .goal = u"completed: every file but the one that is gone"_s,
            .missing = [this] { return unfinished(); },
            .checks = {{u"three requests were enough for the large file"_s, askedThrice},
                       {u"the failed link still says why"_s, [this] { return objectionToFailure(); }}},
            .screenshot = u"4-finished.png"_s};
}

Step DownloadsChapter::compareFiles()
{
    Step step{.title = u"Comparing every file with its source"_s,
              .goal = u"the download folder is there"_s,
              .missing = [this] { return unless(QFileInfo::exists(m_stage.folders.downloads), u"no folder"_s); }};
    for (const Sample& sample : m_stage.sites.samples()) {
        if (!sample.isGone)
            step.checks.push_back({u"same bytes: "_s + sample.name,
                                   [this, &sample] { return objectionToFile(finalFile(sample), sample.content); }});
    }
    step.checks.push_back({u"nothing else lies there: no part file, nothing of the failed link"_s,
                           [this] { return objectionToFolder(); }});
    return step;
}

Step DownloadsChapter::storeQueue()
{
    return {
        .title = u"Reading the queue file"_s,
        .goal = u"the queue file on disk lists all items and how they ended"_s,
        .missing = [this] { return objectionToStoredQueue(m_stage.manager.queueFileURL(), m_stage.sites.samples()); }};
}

void DownloadsChapter::startAll(qint64 capKBps)
{
    m_stage.manager.settings().maxDownloadSpeedKBps.set(capKBps);
    m_stage.manager.commands().startAll();
}

QString DownloadsChapter::progress() const
{
    const ItemPtr large = item(m_stage.sites.largeFile());
    constexpr double hundred = 100;
    const int percent = large ? static_cast<int>(large->progress() * hundred) : 0;
    return u"%1 completed, %2 at work, %3/s, large file at %4 %"_s.arg(count(DownloadStatus::completed))
        .arg(countAtWork())
        .arg(byteCountText(static_cast<qint64>(m_stage.manager.totalSpeedBytesPerSec())))
        .arg(percent);
}

ItemPtr DownloadsChapter::item(const Sample& sample) const
{
    const std::vector<ItemPtr>& items = m_stage.manager.items();
    const auto found = std::find_if(items.begin(), items.end(),
                                    [&sample](const ItemPtr& each) { return each->originalURL() == sample.link(); });
    return found == items.end() ? nullptr : *found;
}

int DownloadsChapter::count(DownloadStatus::Kind kind) const
{
    const std::vector<ItemPtr>& items = m_stage.manager.items();
    return static_cast<int>(
        std::count_if(items.begin(), items.end(), [kind](const ItemPtr& each) { return each->status() == kind; }));
}

int DownloadsChapter::countAtWork() const
{
    return count(DownloadStatus::resolving) + count(DownloadStatus::downloading);
}

QString DownloadsChapter::finalFile(const Sample& sample) const
{
    return DownloadPaths(m_stage.folders.downloads).finalFile(sample.name);
}

qint64 DownloadsChapter::sizeOfLargePartFile() const
{
    return QFileInfo(DownloadPaths(m_stage.folders.downloads).partFile(m_stage.sites.largeFile().name)).size();
}

QString DownloadsChapter::objectionToAddedItems() const
{
    const std::vector<Sample>& samples = m_stage.sites.samples();
    const std::vector<ItemPtr>& items = m_stage.manager.items();
    if (items.size() != samples.size())
        return u"%1 items instead of %2"_s.arg(items.size()).arg(samples.size());
    for (std::size_t row = 0; row < samples.size(); ++row) {
        const bool isRight = items[row]->originalURL() == samples[row].link() &&
                             items[row]->filename() == samples[row].name &&
                             items[row]->status() == DownloadStatus::paused;
        if (!isRight)
            return u"row %1 is not %2, paused"_s.arg(row + 1).arg(samples[row].name);
    }
    return {};
}

QString DownloadsChapter::missingUnderWay()
{
    m_mostAtWork = std::max(m_mostAtWork, countAtWork());
    if (item(m_stage.sites.goneFile())->status() != DownloadStatus::failed)
        return u"the link that is gone has not failed"_s;
    if (count(DownloadStatus::downloading) < 2)
        return u"%1 downloading instead of several"_s.arg(count(DownloadStatus::downloading));
    const double share = item(m_stage.sites.largeFile())->progress();
    return unless(share >= shareBeforePause, u"only a share of %1 of the large file is here"_s.arg(share));
}

QString DownloadsChapter::objectionToFailure() const
{
    const DownloadStatus& status = item(m_stage.sites.goneFile())->status();
    if (status != DownloadStatus::failed)
        return u"the item is not failed"_s;
    return unless(status.message().contains(u"Server returned a web page, not the file"), status.message());
}

QString DownloadsChapter::missingRequests(std::size_t count) const
{
    const std::size_t requests = m_stage.sites.rangesAskedFor(m_stage.sites.largeFile()).size();
    return unless(requests >= count, u"%1 of %2 requests"_s.arg(requests).arg(count));
}

QString DownloadsChapter::objectionToStart(std::size_t request, qint64 start) const
{
    const std::string range = m_stage.sites.rangesAskedFor(m_stage.sites.largeFile()).at(request);
    const std::string wanted = "bytes=" + std::to_string(start) + '-';
    return unless(start > 0 && range == wanted,
                  QString::fromStdString("\"" + range + "\" instead of \"" + wanted + '"'));
}

QString DownloadsChapter::unfinished() const
{
    QStringList names;
    for (const Sample& sample : m_stage.sites.samples()) {
        const DownloadStatus status = item(sample)->status();
        if (!sample.isGone && status != DownloadStatus::completed)
            names.append(u"%1 (%2)"_s.arg(sample.name, statusLabel(status, AppLanguage::english)));
    }
    return names.join(u", "_s);
}

QString DownloadsChapter::objectionToFolder() const
{
    QStringList expected;
    for (const Sample& sample : m_stage.sites.samples()) {
        if (!sample.isGone)
            expected.append(QDir(m_stage.folders.downloads).relativeFilePath(finalFile(sample)));
    }
    expected.sort();
    const QStringList found = filesBelow(m_stage.folders.downloads);
    return unless(found == expected, u"found "_s + found.join(u", "_s));
}

} // namespace vormel::demo
