#include "demo/PremiumChapter.h"

#include "app/MainWindow.h"
#include "demo/DiskEvidence.h"
#include "demo/Hands.h"
#include "demo/LinkSheet.h"
#include "ui/sheets/HostButton.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace vormel::demo {

namespace {

using namespace std::chrono_literals;

constexpr qint64 slowKBps = qint64{5} * 1024; // until the set was seen on its way
constexpr qint64 fastKBps = qint64{50} * 1024;

QList<HostButton*> offeredHosts(const QWidget& window)
{
    const auto* const sheet = partInSight<QWidget>(window, u"hostSelectionSheet"_s);
    return sheet ? sheet->findChildren<HostButton*>() : QList<HostButton*>();
}

} // namespace

PremiumChapter::PremiumChapter(const Stage& stage, MainWindow& window, const FilmSet& film, const PremiumSites& sites)
    : m_stage(stage)
    , m_window(window)
    , m_sites(sites)
    , m_accounts(window)
    , m_list(window)
    , m_film(stage, film, [&sites] { return sites.recoveryVolumesAskedFor(); })
{}

std::vector<Step> PremiumChapter::steps()
{
    return {openAccounts(),  enterAccount(), saveAccount(), checkAccount(), pasteContainer(), enterPassword(),
            openContainer(), chooseHost(),   start(),       finish(),       clear()};
}

Step PremiumChapter::openAccounts()
{
    return {.title = u"Opening the page of the accounts, and its sheet"_s,
            .begin = [this] { m_accounts.openSheet(); },
            .goal = u"open: the sheet for a new account"_s,
            .missing = [this] { return m_accounts.missingSheet(); }};
}

Step PremiumChapter::enterAccount()
{
    const auto fillIn = [this] {
        m_accounts.fillIn({m_sites.hostDomain(), PremiumSites::username, PremiumSites::password});
    };
    return {.title = u"Typing user name and password"_s,
            .begin = fillIn,
            .goal = u"entered: the account can be saved"_s,
            .missing = [this] { return m_accounts.missingEntry(); },
            .screenshot = u"14-account.png"_s};
}

Step PremiumChapter::saveAccount()
{
    return {.title = u"Saving the account"_s,
            .begin = [this] { m_accounts.save(); },
            .goal = u"saved: the page lists the account"_s,
            .missing = [this] { return m_accounts.missingAccounts(1); },
            .checks = {{u"nobody has signed in with it yet"_s, [this] { return objectionToLogins(0); }}}};
}

Step PremiumChapter::checkAccount()
{
    return {.title = u"Checking the account at its host"_s,
            .begin = [this] { press(partInSight<QPushButton>(m_window, u"checkAccount"_s)); },
            .goal = u"checked: the row tells the plan"_s,
            .missing = [this] { return missingPlan(); },
            .checks = {{u"the check has signed in once"_s, [this] { return objectionToLogins(1); }}},
            .screenshot = u"15-accounts.png"_s};
}

Step PremiumChapter::pasteContainer()
{
    const auto missing = [this] {
        const bool isKnown = partInSight<QWidget>(m_window, u"containerCount"_s) != nullptr;
        return unless(isKnown, u"the sheet knows of no container"_s);
    };
    return {.title = u"Pasting the link of a container into the sheet for links"_s,
            .begin = [this] { pasteLink(); },
            .goal = u"pasted: the sheet knows that it is a container"_s,
            .missing = missing};
}

Step PremiumChapter::enterPassword()
{
    const auto field = [this] { return partInSight<QLineEdit>(m_window, u"containerPassword"_s); };
    const auto missing = [field] {
        return unless(field() && field()->text() == PremiumSites::containerPassword, u"it is not there"_s);
    };
    return {.title = u"Typing the container's password"_s,
            .begin = [field] { type(field(), PremiumSites::containerPassword); },
            .goal = u"typed: the password is in its field"_s,
            .missing = missing,
            .screenshot = u"16-container.png"_s};
}

Step PremiumChapter::openContainer()
{
    return {
        .title = u"Adding the container"_s,
        .begin = [this] { press(partInSight<QPushButton>(m_window, u"add"_s)); },
        .goal = u"opened: the window asks for one of the two hosts that have the film"_s,
        .missing = [this] { return missingHosts(); },
        .checks = {{u"no file has the password of the container"_s, [this] { return objectionToContainerPassword(); }}},
        .screenshot = u"17-host-chooser.png"_s};
}

Step PremiumChapter::chooseHost()
{
    const auto alone = [this] { return objectionToQueue(m_film.set().volumes.size()); };
    return {.title = u"Choosing %1"_s.arg(m_sites.hostName()),
            .begin = [this] { choose(m_sites.hostName()); },
            .goal = u"added: the host has told the names, and all volumes are one group"_s,
            .missing = [this] { return m_film.objectionToGroup(); },
            .checks = {{u"nothing but the volumes of this host was added"_s, alone}}};
}

Step PremiumChapter::start()
{
    const auto begin = [this] {
        m_list.setOpen(m_film.set(), true);
        pressStartAll(slowKBps);
    };
    return {.title = u"Starting the volumes, slowly"_s,
            .begin = begin,
            .goal = u"downloading: several volumes at once"_s,
            .missing = [this] { return m_film.missingUnderWay(); },
            .settling = 1500ms, // the cap lets the first second's bytes through at once
            .screenshot = u"18-premium-downloading.png"_s};
}

Step PremiumChapter::finish()
{
    const auto untouched = [this] { return unless(m_sites.connectionsToOtherHost() == 0, u"it had connections"_s); };
    return {.title = u"Fetching the rest; one volume is damaged, and has to be rebuilt"_s,
            .begin = [this] { m_stage.manager.settings().maxDownloadSpeedKBps.set(fastKBps); },
            .goal = u"done: the volumes and the film with its clean name are there, and nothing else"_s,
            .missing = [this] { return m_film.missingEnd(); },
            .checks = {{u"same bytes: "_s + m_film.set().cleanName, [this] { return m_film.objectionToFilm(); }},
                       {u"the damage was found, and repaired with the recovery volumes"_s,
                        [this] { return objectionToRepair(); }},
                       {u"no recovery volume was asked for as long as all seemed well"_s,
                        [this] { return m_film.objectionToRecovery(); }},
                       {u"all volumes came over one login"_s, [this] { return objectionToLogins(2); }},
                       {u"the host that was not chosen has heard nothing"_s, untouched}},
            .screenshot = u"19-premium-done.png"_s};
}

Step PremiumChapter::clear()
{
    return {.title = u"Clearing what is extracted"_s,
            .begin = [this] { press(partInSight<QToolButton>(m_window, u"clearExtracted"_s)); },
            .goal = u"cleared: the film is out of the queue, and nothing else is"_s,
            .missing = [this] { return objectionToQueue(0); },
            .checks = {{u"it is still there"_s, [this] { return m_film.objectionToFilm(); }},
                       {u"no file but that of the passwords has the password of the account"_s,
                        [this] { return objectionToAccountPassword(); }},
                       {u"no file has the password of the container"_s,
                        [this] { return objectionToContainerPassword(); }}}};
}

void PremiumChapter::pasteLink()
{
    m_itemsBefore = m_stage.manager.items().size();
    m_stage.manager.settings().cleanExtractedNames.set(true);
    m_stage.manager.settings().extractedNamesDotsToSpaces.set(true);
    openLinkSheet(m_window, m_sites.containerLink());
}

void PremiumChapter::choose(const QString& host) const
{
    for (HostButton* button : offeredHosts(m_window)) {
        if (button->accessibleName().startsWith(host))
            return press(button);
    }
}

void PremiumChapter::pressStartAll(qint64 capKBps)
{
    m_stage.manager.settings().maxDownloadSpeedKBps.set(capKBps);
    press(partInSight<QToolButton>(m_window, u"startAll"_s));
}

QString PremiumChapter::missingPlan() const
{
    const auto* const plan = partInSight<QLabel>(m_window, u"premiumPlan"_s);
    if (plan)
        return unless(plan->text() == u"Premium"_s, u"the plan is "_s + plan->text());
    const auto* const trouble = partInSight<QLabel>(m_window, u"checkMessage"_s);
    return trouble ? trouble->text() : u"there is no plan"_s;
}

QString PremiumChapter::missingHosts() const
{
    QStringList offered;
    for (const HostButton* button : offeredHosts(m_window))
        offered << button->accessibleName();
    const QString files = u", %1 files"_s.arg(m_film.set().volumes.size());
    const QStringList expected{m_sites.otherHostName() + files, m_sites.hostName() + files};
    return unless(offered == expected, u"offered: "_s + offered.join(u"; "_s));
}

QString PremiumChapter::objectionToQueue(std::size_t itemsMore) const
{
    const std::size_t items = m_stage.manager.items().size();
    return unless(items == m_itemsBefore + itemsMore,
                  u"%1 items instead of %2"_s.arg(items).arg(m_itemsBefore + itemsMore));
}

QString PremiumChapter::objectionToLogins(int logins) const
{
    return unless(m_sites.logins() == logins, u"%1 logins instead of %2"_s.arg(m_sites.logins()).arg(logins));
}

QString PremiumChapter::objectionToRepair() const
{
    const std::size_t asked = m_sites.recoveryVolumesAskedFor();
    const int repairs = m_film.timesIn(ExtractionStatus::repairing);
    if (repairs < 1)
        return u"nothing was repaired"_s;
    return unless(asked == static_cast<std::size_t>(m_film.set().recoveryVolumes),
                  u"%1 recovery volumes were asked for"_s.arg(asked));
}

QString PremiumChapter::objectionToAccountPassword() const
{
    const QString file = m_stage.folders.applicationSupport + u"/secrets/passwords.json"_s;
    const QStringList found = filesWith(m_stage.home, PremiumSites::password);
    return unless(found == QStringList{QDir(m_stage.home).relativeFilePath(file)},
                  u"found in "_s + found.join(u", "_s));
}

QString PremiumChapter::objectionToContainerPassword() const
{
    const QStringList found = filesWith(m_stage.home, PremiumSites::containerPassword);
    return unless(found.isEmpty(), u"found in "_s + found.join(u", "_s));
}

} // namespace vormel::demo
