#include "demo/SetsChapter.h"

#include "demo/DiskEvidence.h"

#include <QTreeView>

namespace vormel::demo {

namespace {

using namespace std::chrono_literals;

constexpr qint64 slowKBps = qint64{6} * 1024; // until the set was seen on its way
constexpr qint64 fastKBps = qint64{50} * 1024;
constexpr double shareToShow = 0.1;

} // namespace

SetsChapter::SetsChapter(const Stage& stage, const QWidget& window, const DemoSets& sets)
    : m_stage(stage)
    , m_list(window.findChild<QTreeView*>(QStringLiteral("queueView")))
    , m_spoilt(stage, sets.spoilt)
    , m_secret(stage, sets.secret)
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
    return {.title = QStringLiteral("Adding a set of archives with recovery volumes"),
            .begin = addSet,
            .goal = QStringLiteral("added: all volumes are one group, the recovery volumes are out of sight"),
            .missing = [this] { return m_spoilt.objectionToGroup(); }};
}

Step SetsChapter::start()
{
    return {.title = QStringLiteral("Starting the set, slowly"),
            .begin = [this] { startAll(slowKBps); },
            .goal = QStringLiteral("downloading: several volumes at once"),
            .missing = [this] { return missingUnderWay(); },
            .screenshot = QStringLiteral("5-set-downloading.png")};
}

Step SetsChapter::open()
{
    const auto missing = [this] {
        const bool isOpen = m_list && m_list->isExpanded(header(m_spoilt.set()));
        return isOpen ? missingUnderWay() : QStringLiteral("the group is not open");
    };
    return {.title = QStringLiteral("Opening its group in the list"),
            .begin = [this] { setOpen(m_spoilt.set(), true); },
            .goal = QStringLiteral("open, and still downloading"),
            .missing = missing,
            .screenshot = QStringLiteral("6-set-open.png")};
}

Step SetsChapter::fail()
{
    const auto askedLate = [this] {
        return unless(m_spoilt.askedForTooEarly() == 0,
                      QStringLiteral("%1 were asked for").arg(m_spoilt.askedForTooEarly()));
    };
    const auto missing = [this] {
        return unless(m_spoilt.timesIn(ExtractionStatus::repairing) > 0, QStringLiteral("no repair was begun"));
    };
    return {.title = QStringLiteral("Fetching the rest; one volume turns out to be a web page"),
            .begin = [this] { startAll(fastKBps); },
            .goal = QStringLiteral("failing: the archive cannot be unpacked and is to be repaired"),
            .missing = missing,
            .settling = 0ms,
            .checks = {{QStringLiteral("no recovery volume was asked for as long as all seemed well"), askedLate}},
            .screenshot = QStringLiteral("7-set-failing.png")};
}

Step SetsChapter::repair()
{
    const auto fetched = [this] {
        const std::size_t asked = m_stage.sites.recoveryVolumesAskedFor(m_spoilt.set());
        return unless(asked == static_cast<std::size_t>(m_spoilt.set().recoveryVolumes),
                      QStringLiteral("%1 were asked for").arg(asked));
    };
    const auto missing = [this] {
        return unless(m_spoilt.timesIn(ExtractionStatus::repairing) > 1, QStringLiteral("no second repair was begun"));
    };
    return {.title = QStringLiteral("Fetching the recovery volumes"),
            .goal = QStringLiteral("repairing: with the recovery volumes this time"),
            .missing = missing,
            .settling = 0ms,
            .checks = {{QStringLiteral("all recovery volumes were fetched"), fetched}},
            .screenshot = QStringLiteral("8-set-repairing.png")};
}

Step SetsChapter::finish()
{
    const auto withoutRecovery = [this] {
        const int left = m_spoilt.countRecoveryVolumes();
        return unless(left == 0, QStringLiteral("%1 are left").arg(left));
    };
    const auto inTrash = [this] { return m_spoilt.objectionToTrash(); };
    return {.title = QStringLiteral("Rebuilding the volume and unpacking the set"),
            .goal = QStringLiteral("done: the volumes and the film with its clean name are there, and nothing else"),
            .missing = [this] { return m_spoilt.missingEnd(); },
            .checks = {{QStringLiteral("same bytes: ") + m_spoilt.set().cleanName,
                        [this] { return m_spoilt.objectionToFilm(); }},
                       {QStringLiteral("the recovery volumes are out of the queue"), withoutRecovery},
                       {QStringLiteral("their files are in the Trash"), inTrash}},
            .screenshot = QStringLiteral("9-set-done.png")};
}

Step SetsChapter::askPassword()
{
    const auto begin = [this] {
        setOpen(m_spoilt.set(), false);
        add(m_secret.set());
        startAll(fastKBps);
    };
    return {.title = QStringLiteral("Adding and starting a set with a password"),
            .begin = begin,
            .goal = QStringLiteral("asked: the window wants the password"),
            .missing = [this] { return missingQuestion(false); },
            .screenshot = QStringLiteral("10-password.png")};
}

Step SetsChapter::tryWrongPassword()
{
    return {
        .title = QStringLiteral("Answering with a wrong password"),
        .begin = [this] { m_stage.manager.questions().submitExtractionPassword(m_secret.set().password.toUpper()); },
        .goal = QStringLiteral("asked again: the window says that it was wrong"),
        .missing = [this] { return missingQuestion(true); },
        .screenshot = QStringLiteral("11-wrong-password.png")};
}

Step SetsChapter::extract()
{
    const auto missing = [this] {
        const int runs = m_secret.timesIn(ExtractionStatus::extracting); // the first two wanted a password
        return unless(runs > 2, QStringLiteral("the archive is not being unpacked"));
    };
    const auto begin = [this] {
        setOpen(m_secret.set(), true);
        m_stage.manager.questions().submitExtractionPassword(m_secret.set().password);
    };
    return {.title = QStringLiteral("Answering with the right password"),
            .begin = begin,
            .goal = QStringLiteral("extracting: the archive is unpacked"),
            .missing = missing,
            .settling = 0ms,
            .screenshot = QStringLiteral("12-extracting.png")};
}

Step SetsChapter::finishSecret()
{
    return {.title = QStringLiteral("Unpacking the set"),
            .goal = QStringLiteral("done: the volumes and the film with its clean name are there, and nothing else"),
            .missing = [this] { return m_secret.missingEnd(); },
            .checks = {{QStringLiteral("same bytes: ") + m_secret.set().cleanName,
                        [this] { return m_secret.objectionToFilm(); }}},
            .screenshot = QStringLiteral("13-all-done.png")};
}

Step SetsChapter::clear()
{
    const auto missing = [this] {
        const std::size_t items = m_stage.manager.items().size();
        return unless(items == m_itemsBefore, QStringLiteral("%1 instead of %2 items").arg(items).arg(m_itemsBefore));
    };
    return {.title = QStringLiteral("Clearing what is extracted"),
            .begin = [this] { m_stage.manager.commands().clearExtracted(); },
            .goal = QStringLiteral("cleared: both sets are out of the queue, and nothing else is"),
            .missing = missing,
            .checks = {{QStringLiteral("the first film is still there"), [this] { return m_spoilt.objectionToFilm(); }},
                       {QStringLiteral("so is the second"), [this] { return m_secret.objectionToFilm(); }}}};
}

QString SetsChapter::progress() const
{
    constexpr double hundred = 100;
    const SetOnStage& current = m_secret.items().empty() ? m_spoilt : m_secret;
    return QStringLiteral("%1 volumes of %2 completed, %3 at work, %4 % of the bytes")
        .arg(current.count(DownloadStatus::completed))
        .arg(current.set().volumes.size())
        .arg(current.count(DownloadStatus::downloading))
        .arg(static_cast<int>(current.share() * hundred));
}

void SetsChapter::add(const FilmSet& set)
{
    m_stage.manager.addURLs(set.links(), std::nullopt);
    setOpen(set, false);
}

void SetsChapter::startAll(qint64 capKBps)
{
    m_stage.manager.settings().maxDownloadSpeedKBps.set(capKBps);
    m_stage.manager.commands().startAll();
}

QModelIndex SetsChapter::header(const FilmSet& set) const
{
    const QAbstractItemModel& model = *m_list->model();
    const QModelIndexList found = model.match(model.index(0, 0), Qt::DisplayRole, set.name, 1, Qt::MatchExactly);
    return found.isEmpty() ? QModelIndex() : found.first();
}

/// In sight in either case.
void SetsChapter::setOpen(const FilmSet& set, bool isOpen)
{
    if (!m_list)
        return;
    m_list->setExpanded(header(set), isOpen);
    m_list->scrollTo(header(set), isOpen ? QAbstractItemView::PositionAtTop : QAbstractItemView::EnsureVisible);
}

QString SetsChapter::missingUnderWay() const
{
    const int atWork = m_spoilt.count(DownloadStatus::downloading);
    if (atWork < 2)
        return QStringLiteral("%1 downloading instead of several").arg(atWork);
    return unless(m_spoilt.share() >= shareToShow, QStringLiteral("only a share of %1 is here").arg(m_spoilt.share()));
}

QString SetsChapter::missingQuestion(bool afterWrongPassword) const
{
    const std::optional<PendingExtractionPassword> question = m_stage.manager.questions().pendingExtractionPassword();
    if (!question)
        return QStringLiteral("there is no question");
    if (question->archiveName != m_secret.set().name)
        return QStringLiteral("it is for ") + question->archiveName;
    return unless(question->wasWrongPassword == afterWrongPassword, QStringLiteral("it is another question"));
}

} // namespace vormel::demo
