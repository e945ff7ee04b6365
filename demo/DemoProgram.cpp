#include "demo/DemoProgram.h"

#include "app/MainWindow.h"
#include "app/Program.h"
#include "demo/DiskEvidence.h"
#include "demo/DownloadsChapter.h"
#include "demo/PremiumChapter.h"
#include "demo/SetsChapter.h"
#include "demo/WebChapter.h"
#include "platform/web/WebBrowser.h"
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
    Show(const Folders& folders, const CurlHttpClient::Options& network)
        : m_program(folders, network, Program::Contacts(), QStringLiteral(VORMEL_WEB_PLUGIN))
        , m_window(m_program.viewPorts(), m_program.updater())
    {
        QObject::connect(qApp, &QApplication::aboutToQuit, &m_window, [this] { m_program.manager().shutDown(); });
        m_window.show();
    }

    [[nodiscard]] DownloadManager& manager() { return m_program.manager(); }
    [[nodiscard]] MainWindow& window() { return m_window; }
    [[nodiscard]] WebBrowser& browser() { return m_program.viewPorts().web; }

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

/// The chapter's steps come last, and while they are played it tells how far things are.
template <typename Chapter>
void append(std::vector<Step>& steps, Chapter& chapter)
{
    for (Step& step : chapter.steps()) {
        step.progress = [&chapter] { return chapter.progress(); };
        steps.push_back(std::move(step));
    }
}

} // namespace

DemoProgram::DemoProgram(const Places& places, BrowserWorld& world)
    : m_places(places)
    , m_folders(Folders::below(places.home))
    , m_world(world)
    , m_services(world.certificates())
{
    m_world.lead(m_services.places());
}

int DemoProgram::present()
{
    if (!hasRoom())
        return EXIT_FAILURE;
    const QString objection = packSets();
    introduce();
    if (!objection.isEmpty())
        print(u"There are no sets of archives to be seen: %1."_s.arg(objection));
    Show show(m_folders, network());
    if (m_web && objectionToPages(show.browser()).isEmpty())
        introduceWeb();
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
    play(output, mustPlayAll);
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
    if (!pack(sets, m_places.home))
        return u"rar did not make them"_s;
    m_sites.serve(sets.spoilt);
    m_sites.serve(sets.secret);
    m_premium.emplace(sets.premium, m_services);
    m_web.emplace(sets.shared, m_services);
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

QString DemoProgram::objectionToPages(const WebBrowser& browser) const
{
    if (!m_world.objection().isEmpty())
        return m_world.objection();
    const std::optional<WebBrowser::Absence> absence = browser.absence();
    if (!absence)
        return {};
    return *absence == WebBrowser::Absence::notInstalled ? u"the browser engine is not installed"_s
                                                         : u"the browser engine does not start"_s;
}

void DemoProgram::preparePages(const WebBrowser& browser, bool mustPlayAll)
{
    if (!m_web)
        return;
    const QString objection = objectionToPages(browser);
    m_hasPages = objection.isEmpty();
    if (!objection.isEmpty() && !mustPlayAll)
        m_report.say(u"LEFT OUT: everything about pages in the window; "_s + objection);
    else
        m_report.check(u"pages can be shown in the window"_s, objection);
}

void DemoProgram::play(const QString& output, bool mustPlayAll)
{
    Show show(m_folders, network());
    preparePages(show.browser(), mustPlayAll);
    const Stage stage{show.manager(), m_sites, m_folders, m_places.home, m_places.trash};
    std::vector<Step> steps;
    DownloadsChapter downloads(stage);
    append(steps, downloads);
    std::optional<SetsChapter> sets;
    std::optional<PremiumChapter> premium;
    std::optional<WebChapter> web;
    if (m_sets) {
        append(steps, sets.emplace(stage, show.window(), *m_sets));
        append(steps, premium.emplace(stage, show.window(), m_sets->premium, *m_premium));
    }
    if (m_hasPages)
        append(steps, web.emplace(stage, WebChapter::Surroundings{show.window(), *m_web, m_world}, m_sets->shared));
    playScript(show.window(), std::move(steps), output);
    m_report.check(u"the queue file lists all items after that"_s,
                   objectionToStoredQueue(show.manager().queueFileURL(), m_sites.samples()));
}

void DemoProgram::playScript(MainWindow& window, std::vector<Step> steps, const QString& output)
{
    DemoScript script(std::move(steps), {window, m_report, output});
    bool isPlayedToEnd = false;
    QObject::connect(&script, &DemoScript::ended, &window, [&] {
        isPlayedToEnd = true;
        m_report.say(u"Closing the window"_s);
        closeAndEnd(window);
    });
    script.start();
    const int code = QApplication::exec();
    m_report.check(u"the window was closed at the end and the program ended with it in order"_s,
                   isPlayedToEnd && code == EXIT_SUCCESS ? QString() : u"it did not"_s);
}

void DemoProgram::checkNewStart()
{
    m_report.say(u"Starting the program anew"_s);
    Program program(m_folders, network(), Program::Contacts(), QStringLiteral(VORMEL_WEB_PLUGIN));
    const std::size_t restored = program.manager().items().size();
    m_report.check(u"a new start finds the whole queue again"_s,
                   restored == m_sites.samples().size() ? QString() : u"%1 items"_s.arg(restored));
    const std::size_t accounts = program.manager().accounts().list().size();
    const std::size_t entered = m_hasPages ? 2 : 1;
    if (m_premium)
        m_report.check(u"and the accounts"_s, unless(accounts == entered, u"%1 of %2"_s.arg(accounts).arg(entered)));
}

bool DemoProgram::hasRoom() const
{
    const qint64 needed = m_sites.bytesToCome() + m_sites.spareFile().content.size() + demo::bytesToCome(plannedSets());
    const qint64 available = std::max<qint64>(QStorageInfo(m_places.home).bytesAvailable(), 0); // -1 for no folder
    if (available >= needed)
        return true;
    print(u"The demo needs %1 in %2, where %3 are free. Set TMPDIR to another folder."_s.arg(
        byteCountText(needed), QDir::tempPath(), byteCountText(available)));
    return false;
}

CurlHttpClient::Options DemoProgram::network() const
{
    CurlHttpClient::Options options = m_sites.network();
    options.extraCaFile = m_world.authority();
    m_services.joinIn(options);
    return options;
}

void DemoProgram::introduce() const
{
    print(u"Vormel with its queue filled: a large file whose connection is cut once in the middle, smaller ones,\n"
          u"a link that fails, a set of archives that has to be repaired, and one whose password is \"%3\".\n"
          u"The speed is capped so that there is time to watch.\n"
          u"Every address leads to the demo's own servers on 127.0.0.1. To add a download yourself, press\n"
          u"Add URLs, paste %1 and press Start All.\n"
          u"The files lie in %2 until the window is closed, which ends the demo."_s.arg(
              m_sites.spareFile().link().absoluteString(), m_folders.downloads, plannedSets().secret.password));
    if (m_premium)
        introducePremium();
}

void DemoProgram::introducePremium() const
{
    print(u"There is a premium host, too. On the page Accounts, press Add Account, choose %1, enter\n"
          u"%2 with the password %3, press Save, and then Check in its row. Then add the container\n"
          u"%4 with the password %5\n"
          u"and choose %6: its film has a damaged volume, which is rebuilt."_s.arg(
              m_premium->hostDomain(), PremiumSites::username, PremiumSites::password, m_premium->containerLink(),
              PremiumSites::containerPassword, m_premium->hostName()));
}

void DemoProgram::introduceWeb() const
{
    print(u"And there are pages in the window: enter an account for %1, too, %2 with the password\n"
          u"%3, and add the container %4.\n"
          u"Click on its CAPTCHA, then on Extract Links, and press Start All. The sign-in that opens is\n"
          u"filled in; click on Login, then on Done."_s.arg(m_web->hostDomain(), WebSites::username, WebSites::password,
                                                            m_web->containerLink()));
}

} // namespace vormel::demo
