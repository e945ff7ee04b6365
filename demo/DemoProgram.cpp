#include "demo/DemoProgram.h"

#include "app/MainWindow.h"
#include "app/Program.h"
#include "demo/DemoScript.h"
#include "demo/DiskEvidence.h"
#include "demo/DownloadsChapter.h"
#include "demo/SetsChapter.h"
#include "text/ByteCount.h"

#include <QApplication>
#include <QDir>
#include <QStorageInfo>
#include <QTimer>

#include <algorithm>
#include <iostream>

using namespace Qt::StringLiterals;

namespace vormel::demo {

namespace {

using namespace std::chrono_literals;

constexpr qint64 capToWatchKBps = qint64{20} * 1024; // the files then take about a quarter of a minute
constexpr auto timeToReadTheList = 2s;
constexpr auto timeToClose = 60s;

void print(const QString& line)
{
    std::cout << line.toStdString() << std::endl;
}

/// The window and all that has to happen for it to end in order, as in the program itself.
class Show
{
public:
    Show(const Folders& folders, const DemoSites& sites)
        : m_program(folders, sites.network())
        , m_window(m_program.viewPorts(), m_program.updater())
    {
        QObject::connect(qApp, &QApplication::aboutToQuit, &m_window, [this] { m_program.manager().shutDown(); });
        m_window.show();
    }

    [[nodiscard]] DownloadManager& manager() { return m_program.manager(); }
    [[nodiscard]] MainWindow& window() { return m_window; }

private:
    Program m_program;
    MainWindow m_window;
};

void closeAndEnd(MainWindow& window)
{
    window.close();
    // A window that will not close must not hold up an unattended run.
    QTimer::singleShot(timeToClose, qApp, [] { QApplication::exit(EXIT_FAILURE); });
}

} // namespace

DemoProgram::DemoProgram(const Places& places)
    : m_places(places)
    , m_folders(Folders::below(places.home))
{}

int DemoProgram::present()
{
    if (!hasRoom())
        return EXIT_FAILURE;
    const QString objection = packSets();
    introduce();
    if (!objection.isEmpty())
        print(u"There are no sets of archives to be seen: %1."_s.arg(objection));
    Show show(m_folders, m_sites);
    show.manager().settings().maxDownloadSpeedKBps.set(capToWatchKBps);
    show.manager().addURLs(linksToWatch(), std::nullopt);
    QTimer::singleShot(timeToReadTheList, &show.window(), [&show] { show.manager().commands().startAll(); });
    return QApplication::exec();
}

std::vector<Link> DemoProgram::linksToWatch() const
{
    std::vector<Link> links = m_sites.links();
    if (m_sets) {
        for (const FilmSet* set : {&m_sets->spoilt, &m_sets->secret})
            std::ranges::copy(set->links(), std::back_inserter(links));
    }
    return links;
}

int DemoProgram::perform(const QString& output, bool mustPlayAll)
{
    if (!hasRoom())
        return EXIT_FAILURE;
    m_report.say(u"Playing with servers on 127.0.0.1 in %1; screenshots go to %2"_s.arg(m_places.home, output));
    prepareSets(mustPlayAll);
    play(output);
    if (m_report.allHeld())
        checkNewStart();
    return m_report.conclude();
}

/// Gives what stands in the way.
QString DemoProgram::packSets()
{
    const QStringList missing = missingSetTools();
    if (!missing.isEmpty())
        return u"not installed: "_s + missing.join(u", "_s);
    DemoSets sets = plannedSets();
    if (!pack(sets.spoilt, m_places.home) || !pack(sets.secret, m_places.home))
        return u"rar did not make them"_s;
    m_sites.serve(sets.spoilt);
    m_sites.serve(sets.secret);
    m_sets = std::move(sets);
    return {};
}

void DemoProgram::prepareSets(bool mustPlayAll)
{
    const QString objection = packSets();
    const bool areToolsMissing = !missingSetTools().isEmpty();
    if (areToolsMissing && !mustPlayAll)
        m_report.say(u"LEFT OUT: everything about sets of archives; "_s + objection);
    else
        m_report.check(u"rar has made the sets of archives"_s, objection);
}

void DemoProgram::play(const QString& output)
{
    Show show(m_folders, m_sites);
    const Stage stage{show.manager(), m_sites, m_folders, m_places.trash};
    DownloadsChapter downloads(stage);
    std::vector<Step> steps = downloads.steps();
    std::optional<SetsChapter> sets;
    if (m_sets) {
        sets.emplace(stage, show.window(), *m_sets);
        std::ranges::move(sets->steps(), std::back_inserter(steps));
    }
    const auto progress = [&] { return sets && sets->hasBegun() ? sets->progress() : downloads.progress(); };
    DemoScript script(std::move(steps), {show.window(), m_report, output, progress});
    bool isPlayedToEnd = false;
    QObject::connect(&script, &DemoScript::ended, &show.window(), [&] {
        isPlayedToEnd = true;
        m_report.say(u"Closing the window"_s);
        closeAndEnd(show.window());
    });
    script.start();
    const int code = QApplication::exec();
    m_report.check(u"the window was closed at the end and the program ended with it in order"_s,
                   isPlayedToEnd && code == EXIT_SUCCESS ? QString() : u"it did not"_s);
    m_report.check(u"the queue file lists all items after that"_s,
                   objectionToStoredQueue(show.manager().queueFileURL(), m_sites.samples()));
}

void DemoProgram::checkNewStart()
{
    m_report.say(u"Starting the program anew"_s);
    Program program(m_folders, m_sites.network());
    const std::size_t restored = program.manager().items().size();
    m_report.check(u"a new start finds the whole queue again"_s,
                   restored == m_sites.samples().size() ? QString() : u"%1 items"_s.arg(restored));
}

bool DemoProgram::hasRoom() const
{
    const DemoSets sets = plannedSets();
    const qint64 needed = m_sites.bytesToCome() + m_sites.spareFile().content.size() + sets.spoilt.bytesToCome() +
                          sets.secret.bytesToCome();
    const qint64 available = std::max<qint64>(QStorageInfo(m_places.home).bytesAvailable(), 0); // -1 for no folder
    if (available >= needed)
        return true;
    print(u"The demo needs %1 in %2, where %3 are free. Set TMPDIR to another folder."_s.arg(
        byteCountText(needed), QDir::tempPath(), byteCountText(available)));
    return false;
}

void DemoProgram::introduce() const
{
    print(u"Vormel with its queue filled: a large file whose connection is cut once in the middle, smaller ones,\n"
          u"a link that fails, a set of archives that has to be repaired, and one whose password is \"%3\".\n"
          u"The speed is capped so that there is time to watch.\n"
          u"Every address leads to the demo's own server on 127.0.0.1. To add a download yourself, press\n"
          u"Add URLs, paste %1 and press Start All.\n"
          u"The files lie in %2 until the window is closed, which ends the demo."_s.arg(
              m_sites.spareFile().link().absoluteString(), m_folders.downloads, plannedSets().secret.password));
}

} // namespace vormel::demo
