#include "demo/WebChapter.h"

#include "app/MainWindow.h"
#include "demo/DiskEvidence.h"
#include "demo/Hands.h"
#include "demo/LinkSheet.h"

#include <QDir>
#include <QPushButton>
#include <QToolButton>

#include <span>

using namespace Qt::StringLiterals;

namespace vormel::demo {

namespace {

using namespace std::chrono_literals;

constexpr qint64 slowKBps = 1024; // until the sign-in is made and the set was seen on its way
constexpr qint64 fastKBps = qint64{50} * 1024;
constexpr auto drawingTime = 1s; // what a page holds is known before it is seen

// As the program calls the sheets.
const QString captchaSheet = u"captchaSheet"_s;
const QString signInSheet = u"terabytezLoginSheet"_s;

} // namespace

WebChapter::WebChapter(const Stage& stage, const Surroundings& surroundings, const FilmSet& film)
    : m_stage(stage)
    , m_surroundings(surroundings)
    , m_accounts(surroundings.window)
    , m_list(surroundings.window)
    , m_page(surroundings.window)
    , m_film(stage, film, [] { return std::size_t{0}; })
{}

std::vector<Step> WebChapter::steps()
{
    return {openAccounts(), enterAccount(), saveAccount(),     pasteContainer(), openContainer(), solve(),  extract(),
            start(),        signIn(),       openAccountPage(), leaveSheet(),     open(),          finish(), clear()};
}

Step WebChapter::openAccounts()
{
    return {.title = u"Opening the sheet for an account at the other host"_s,
            .begin = [this] { m_accounts.openSheet(); },
            .goal = u"open: the sheet for a new account"_s,
            .missing = [this] { return m_accounts.missingSheet(); }};
}

Step WebChapter::enterAccount()
{
    const auto fillIn = [this] {
        m_accounts.fillIn({m_surroundings.sites.hostDomain(), WebSites::username, WebSites::password});
    };
    return {.title = u"Typing user name and password"_s,
            .begin = fillIn,
            .goal = u"entered: the account can be saved"_s,
            .missing = [this] { return m_accounts.missingEntry(); }};
}

Step WebChapter::saveAccount()
{
    return {.title = u"Saving the account"_s,
            .begin = [this] { m_accounts.save(); },
            .goal = u"saved: the page lists both accounts"_s,
            .missing = [this] { return m_accounts.missingAccounts(2); }};
}

Step WebChapter::pasteContainer()
{
    const auto begin = [this] {
        m_itemsBefore = m_stage.manager.items().size();
        m_otherLoginsBefore = m_surroundings.sites.loginsAtOtherHost();
        openLinkSheet(m_surroundings.window, m_surroundings.sites.containerLink());
    };
    return {.title = u"Pasting the link of a container behind a CAPTCHA into the sheet for links"_s,
            .begin = begin,
            .goal = u"pasted: the sheet knows that it is a container"_s,
            .missing = [this] { return unless(isInSight(u"containerCount"_s), u"the sheet knows of none"_s); }};
}

Step WebChapter::openContainer()
{
    const auto missing = [this] { return missingPage(captchaSheet, u"!!document.querySelector('#challenge')"_s); };
    return {.title = u"Adding the container"_s,
            .begin = [this] { press(partInSight<QPushButton>(m_surroundings.window, u"add"_s)); },
            .goal = u"asked: a sheet shows the container's own page with its CAPTCHA"_s,
            .missing = missing,
            .settling = drawingTime,
            .screenshot = u"20-captcha.png"_s};
}

Step WebChapter::solve()
{
    const QString isSolved = u"!document.querySelector('#challenge') && !!document.querySelector('a')"_s;
    return {.title = u"Solving the CAPTCHA with a click"_s,
            .begin = [this] { m_page.click(u"#challenge"_s); },
            .goal = u"solved: the page lists the files"_s,
            .missing = [this, isSolved] { return missingPage(captchaSheet, isSolved); },
            .settling = drawingTime,
            .screenshot = u"21-captcha-solved.png"_s};
}

Step WebChapter::extract()
{
    const auto missing = [this] {
        const QString objection = objectionToQueue(m_film.set().volumes.size());
        return isInSight(captchaSheet) ? u"the sheet is open"_s : objection;
    };
    return {.title = u"Having the links read out of the page"_s,
            .begin = [this] { press(partInSight<QPushButton>(m_surroundings.window, u"extractLinks"_s)); },
            .goal = u"added: the volumes of both hosts, and nothing else"_s,
            .missing = missing,
            .checks = {{u"nobody has signed in yet"_s, [this] { return objectionToSignIns(0); }}}};
}

Step WebChapter::start()
{
    const QString isFilledIn =
        u"(document.querySelector('input[name=password]') || {}).value == '%1'"_s.arg(WebSites::password);
    return {
        .title = u"Starting the volumes, slowly"_s,
        .begin = [this] { startAll(); },
        .goal = u"asked: a sheet shows the host's own sign-in, filled in with what is stored"_s,
        .missing = [this, isFilledIn] { return missingPage(signInSheet, isFilledIn); },
        .settling = drawingTime,
        .checks = {{u"nothing was submitted by itself"_s, [this] { return objectionToSignIns(0); }},
                   {u"the volumes of this host wait, and none has failed"_s, [this] { return objectionToWaiting(); }}},
        .screenshot = u"22-sign-in.png"_s};
}

Step WebChapter::signIn()
{
    const QString isSignedIn = u"document.documentElement.innerHTML.includes('logout')"_s;
    return {.title = u"Signing in with a click"_s,
            .begin = [this] { m_page.click(u"#submit-login"_s); },
            .goal = u"signed in: the page offers to sign out"_s,
            .missing = [this, isSignedIn] { return missingPage(signInSheet, isSignedIn); },
            .checks = {{u"that was one sign-in"_s, [this] { return objectionToSignIns(1); }}}};
}

Step WebChapter::openAccountPage()
{
    const QString isShown = u"document.documentElement.innerHTML.includes('Premium account')"_s;
    return {.title = u"Opening the page of the account, as the sheet says"_s,
            .begin = [this] { m_page.click(u"a[href*=account]"_s); },
            .goal = u"open: the page tells of the account"_s,
            .missing = [this, isShown] { return missingPage(signInSheet, isShown); },
            .settling = drawingTime,
            .screenshot = u"23-signed-in.png"_s};
}

/// Only now does the program know what the volumes there are called.
Step WebChapter::leaveSheet()
{
    const auto missing = [this] {
        if (isInSight(signInSheet))
            return u"the sheet is open"_s;
        return m_film.objectionToGroup();
    };
    return {.title = u"Pressing Done"_s,
            .begin = [this] { press(partInSight<QPushButton>(m_surroundings.window, u"signInDone"_s)); },
            .goal = u"gone: the sheet; all volumes are one group"_s,
            .missing = missing};
}

Step WebChapter::open()
{
    const auto missing = [this] {
        return m_list.isOpen(m_film.set()) ? m_film.missingUnderWay() : u"the group is not open"_s;
    };
    return {.title = u"Opening its group in the list"_s,
            .begin = [this] { m_list.setOpen(m_film.set(), true); },
            .goal = u"downloading: several volumes at once"_s,
            .missing = missing,
            .screenshot = u"24-both-hosts.png"_s};
}

Step WebChapter::finish()
{
    const WebSites& sites = m_surroundings.sites;
    const auto kept = [this] {
        const int logins = m_surroundings.sites.loginsAtOtherHost();
        return unless(logins == m_otherLoginsBefore, u"%1 instead of %2"_s.arg(logins).arg(m_otherLoginsBefore));
    };
    return {.title = u"Fetching the rest and unpacking it"_s,
            .begin = [this] { m_stage.manager.settings().maxDownloadSpeedKBps.set(fastKBps); },
            .goal = u"done: the volumes and the film with its clean name are there, and nothing else"_s,
            .missing = [this] { return m_film.missingEnd(); },
            .checks = {{u"same bytes: "_s + m_film.set().cleanName, [this] { return m_film.objectionToFilm(); }},
                       {u"one sign-in was enough"_s, [this] { return objectionToSignIns(1); }},
                       {u"the form of each file was sent once"_s, [&sites] { return sites.objectionToForms(); }},
                       {u"only transfers asked the file servers, once for each volume"_s,
                        [&sites] { return sites.objectionToTransfers(); }},
                       {u"the other host still knows the login of before"_s, kept},
                       {u"the pages asked for nothing elsewhere"_s, [this] { return objectionToPlaces(); }}},
            .screenshot = u"25-both-done.png"_s};
}

Step WebChapter::clear()
{
    return {.title = u"Clearing what is extracted"_s,
            .begin = [this] { press(partInSight<QToolButton>(m_surroundings.window, u"clearExtracted"_s)); },
            .goal = u"cleared: the film is out of the queue, and nothing else is"_s,
            .missing = [this] { return objectionToQueue(0); },
            .checks = {{u"it is still there"_s, [this] { return m_film.objectionToFilm(); }},
                       {u"no file but that of the passwords has the password of the account"_s,
                        [this] { return objectionToPassword(); }}}};
}

void WebChapter::startAll()
{
    m_stage.manager.settings().maxDownloadSpeedKBps.set(slowKBps);
    press(partInSight<QToolButton>(m_surroundings.window, u"startAll"_s));
}

bool WebChapter::isInSight(const QString& name) const
{
    return partInSight<QWidget>(m_surroundings.window, name) != nullptr;
}

QString WebChapter::missingPage(const QString& sheet, const QString& condition)
{
    if (!isInSight(sheet))
        return u"there is no sheet"_s;
    return unless(m_page.holds(condition), u"the page in the sheet is not so far"_s);
}

QString WebChapter::objectionToQueue(std::size_t itemsMore) const
{
    const std::size_t items = m_stage.manager.items().size();
    return unless(items == m_itemsBefore + itemsMore,
                  u"%1 items instead of %2"_s.arg(items).arg(m_itemsBefore + itemsMore));
}

QString WebChapter::objectionToSignIns(int signIns) const
{
    const int made = m_surroundings.sites.signIns();
    return unless(made == signIns, u"%1 instead of %2"_s.arg(made).arg(signIns));
}

QString WebChapter::objectionToWaiting() const
{
    int waiting = 0;
    for (const ItemPtr& item : std::span(m_stage.manager.items()).subspan(m_itemsBefore)) {
        if (item->status() == DownloadStatus::failed)
            return u"%1 has failed: %2"_s.arg(item->filename(), item->status().message());
        const bool isThere = item->originalURL().host() == m_surroundings.sites.hostDomain();
        waiting += isThere && item->status() == DownloadStatus::queued ? 1 : 0;
    }
    return unless(waiting > 0, u"none waits"_s);
}

QString WebChapter::objectionToPlaces() const
{
    const QStringList places = m_surroundings.world.unknownPlaces();
    return unless(places.isEmpty(), u"asked for: "_s + places.join(u", "_s));
}

QString WebChapter::objectionToPassword() const
{
    const QString file = m_stage.folders.applicationSupport + u"/secrets/passwords.json"_s;
    const QStringList found = filesWith(m_stage.home, WebSites::password);
    return unless(found == QStringList{QDir(m_stage.home).relativeFilePath(file)},
                  u"found in "_s + found.join(u", "_s));
}

} // namespace vormel::demo
