#include "demo/SetsChapter.h"

using namespace Qt::StringLiterals;

namespace vormel::demo {

namespace {

using namespace std::chrono_literals;

constexpr qint64 slowKBps = qint64{6} * 1024; // until the set was seen on its way
constexpr qint64 fastKBps = qint64{50} * 1024;

} // namespace

SetsChapter::SetsChapter(const Stage& stage, const QWidget& window, const DemoSets& sets)
    : m_stage(stage)
    , m_list(window)
    , m_spoilt(stage, sets.spoilt,
               [&sites = stage.sites, &set = sets.spoilt] { return sites.recoveryVolumesAskedFor(set); })
    , m_secret(stage, sets.secret, [] { return std::size_t{0}; })
{}

std::vector<Step> SetsChapter::steps()
{
    return {add(),     start(),        open(), fail(), repair(), finish(), askPassword(), tryWrongPassword(),
            extract(), finishSecret(), clear()};
}

Step SetsChapter::add()
{
    const auto addSet = [this] {
        m_itemsBefore = m_stage.manager.items().size();
        m_stage.manager.settings().cleanExtractedNames.set(true);
        m_stage.manager.settings().extractedNamesDotsToSpaces.set(true);
        add(m_spoilt.set());
    };
    return {.title = u"Adding a set of archives with recovery volumes"_s,
            .begin = addSet,
            .goal = u"added: all volumes are one group, the recovery volumes are out of sight"_s,
            .missing = [this] { return m_spoilt.objectionToGroup(); }};
}

Step SetsChapter::start()
{
    return {.title = u"Starting the set, slowly"_s,
            .begin = [this] { startAll(slowKBps); },
            .goal = u"downloading: several volumes at once"_s,
            .missing = [this] { return m_spoilt.missingUnderWay(); },
            .screenshot = u"5-set-downloading.png"_s};
}

Step SetsChapter::open()
{
    const auto missing = [this] {
        return m_list.isOpen(m_spoilt.set()) ? m_spoilt.missingUnderWay() : u"the group is not open"_s;
    };
    return {.title = u"Opening its group in the list"_s,
            .begin = [this] { m_list.setOpen(m_spoilt.set(), true); },
            .goal = u"open, and still downloading"_s,
            .missing = missing,
            .screenshot = u"6-set-open.png"_s};
}

Step SetsChapter::fail()
{
    const auto missing = [this] {
        return unless(m_spoilt.timesIn(ExtractionStatus::repairing) > 0, u"no repair was begun"_s);
    };
    return {.title = u"Fetching the rest; one volume turns out to be a web page"_s,
            .begin = [this] { startAll(fastKBps); },
            .goal = u"failing: the archive cannot be unpacked and is to be repaired"_s,
            .missing = missing,
            .settling = 0ms,
            .checks = {{u"no recovery volume was asked for as long as all seemed well"_s,
                        [this] { return m_spoilt.objectionToRecovery(); }}},
            .screenshot = u"7-set-failing.png"_s};
}

Step SetsChapter::repair()
{
    const auto fetched = [this] {
        const std::size_t asked = m_stage.sites.recoveryVolumesAskedFor(m_spoilt.set());
        return unless(asked == static_cast<std::size_t>(m_spoilt.set().recoveryVolumes),
                      u"%1 were asked for"_s.arg(asked));
    };
    const auto missing = [this] {
        return unless(m_spoilt.timesIn(ExtractionStatus::repairing) > 1, u"no second repair was begun"_s);
    };
    return {.title = u"Fetching the recovery volumes"_s,
            .goal = u"repairing: with the recovery volumes this time"_s,
            .missing = missing,
            .settling = 0ms,
            .checks = {{u"all recovery volumes were fetched"_s, fetched}},
            .screenshot = u"8-set-repairing.png"_s};
}

Step SetsChapter::finish()
{
    const auto withoutRecovery = [this] {
        const int left = m_spoilt.countRecoveryVolumes();
        return unless(left == 0, u"%1 are left"_s.arg(left));
    };
    const auto inTrash = [this] { return m_spoilt.objectionToTrash(); };
    return {.title = u"Rebuilding the volume and unpacking the set"_s,
            .goal = u"done: the volumes and the film with its clean name are there, and nothing else"_s,
            .missing = [this] { return m_spoilt.missingEnd(); },
            .checks = {{u"same bytes: "_s + m_spoilt.set().cleanName, [this] { return m_spoilt.objectionToFilm(); }},
                       {u"the recovery volumes are out of the queue"_s, withoutRecovery},
                       {u"their files are in the Trash"_s, inTrash}},
            .screenshot = u"9-set-done.png"_s};
}

Step SetsChapter::askPassword()
{
    const auto begin = [this] {
        m_list.setOpen(m_spoilt.set(), false);
        add(m_secret.set());
        startAll(fastKBps);
    };
    return {.title = u"Adding and starting a set with a password"_s,
            .begin = begin,
            .goal = u"asked: the window wants the password"_s,
            .missing = [this] { return missingQuestion(false); },
            .screenshot = u"10-password.png"_s};
}

Step SetsChapter::tryWrongPassword()
{
    return {
        .title = u"Answering with a wrong password"_s,
        .begin = [this] { m_stage.manager.questions().submitExtractionPassword(m_secret.set().password.toUpper()); },
        .goal = u"asked again: the window says that it was wrong"_s,
        .missing = [this] { return missingQuestion(true); },
        .screenshot = u"11-wrong-password.png"_s};
}

Step SetsChapter::extract()
{
    const auto missing = [this] {
        const int runs = m_secret.timesIn(ExtractionStatus::extracting); // the first two wanted a password
        return unless(runs > 2, u"the archive is not being unpacked"_s);
    };
    const auto begin = [this] {
        m_list.setOpen(m_secret.set(), true);
        m_stage.manager.questions().submitExtractionPassword(m_secret.set().password);
    };
    return {.title = u"Answering with the right password"_s,
            .begin = begin,
            .goal = u"extracting: the archive is unpacked"_s,
            .missing = missing,
            .settling = 0ms,
            .screenshot = u"12-extracting.png"_s};
}

Step SetsChapter::finishSecret()
{
    return {.title = u"Unpacking the set"_s,
            .goal = u"done: the volumes and the film with its clean name are there, and nothing else"_s,
            .missing = [this] { return m_secret.missingEnd(); },
            .checks = {{u"same bytes: "_s + m_secret.set().cleanName, [this] { return m_secret.objectionToFilm(); }}},
            .screenshot = u"13-all-done.png"_s};
}

Step SetsChapter::clear()
{
    const auto missing = [this] {
        const std::size_t items = m_stage.manager.items().size();
        return unless(items == m_itemsBefore, u"%1 instead of %2 items"_s.arg(items).arg(m_itemsBefore));
    };
    return {.title = u"Clearing what is extracted"_s,
            .begin = [this] { m_stage.manager.commands().clearExtracted(); },
            .goal = u"cleared: both sets are out of the queue, and nothing else is"_s,
            .missing = missing,
            .checks = {{u"the first film is still there"_s, [this] { return m_spoilt.objectionToFilm(); }},
                       {u"so is the second"_s, [this] { return m_secret.objectionToFilm(); }}}};
}

QString SetsChapter::progress() const
{
    return m_secret.items().empty() ? m_spoilt.progress() : m_secret.progress();
}

void SetsChapter::add(const FilmSet& set)
{
    m_stage.manager.addURLs(set.links(), std::nullopt);
    m_list.setOpen(set, false);
}

void SetsChapter::startAll(qint64 capKBps)
{
    m_stage.manager.settings().maxDownloadSpeedKBps.set(capKBps);
    m_stage.manager.commands().startAll();
}

QString SetsChapter::missingQuestion(bool afterWrongPassword) const
{
    const std::optional<PendingExtractionPassword> question = m_stage.manager.questions().pendingExtractionPassword();
    if (!question)
        return u"there is no question"_s;
    if (question->archiveName != m_secret.set().name)
        return u"it is for "_s + question->archiveName;
    return unless(question->wasWrongPassword == afterWrongPassword, u"it is another question"_s);
}

} // namespace vormel::demo
