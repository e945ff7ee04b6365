#include "Benchmarks.h"
#include "LongQueue.h"
#include "Measure.h"
#include "ProgramInProfile.h"
#include "sites/FileServer.h"
#include "ui/queue/list/QueueView.h"
#include "ui/queue/tree/QueueModel.h"

#include <QCoreApplication>
#include <QEvent>

using namespace Qt::StringLiterals;

namespace vormel::bench {

namespace {

constexpr int itemCount = 10000;
constexpr int firstSet = 500;

/// The page of the queue, and when it has caught up.
class Page final : public QObject
{
public:
    explicit Page(MainWindow& window)
        : m_list(window.findChild<QueueView*>())
    {
        if (!m_list)
            giveUp(u"there is no list"_s);
        m_list->viewport()->installEventFilter(this);
        rest();
    }

    [[nodiscard]] QueueModel& model() const { return *qobject_cast<QueueModel*>(m_list->model()); }
    [[nodiscard]] const std::vector<ItemPtr>& group(int row) const
    {
        return model().group(model().index(row, 0)).items;
    }
    void showOpen(int row)
    {
        m_list->setExpanded(model().index(row, 0), true);
        m_list->scrollTo(model().index(row, 0), QAbstractItemView::PositionAtTop);
        rest();
    }

    /// Back from here on only what comes from now on counts.
    void rest()
    {
        for (int turn = 0; turn < turnsToRest; ++turn)
            QCoreApplication::processEvents();
        m_isPainted = false;
    }
    /// The model has gathered the changes in a call to itself.
    void tellChanges() const { QCoreApplication::sendPostedEvents(&model(), QEvent::MetaCall); }
    void waitUntilPainted()
    {
        turnUntil([this] { return m_isPainted; });
    }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        m_isPainted |= event->type() == QEvent::Paint;
        return QObject::eventFilter(object, event);
    }

private:
    static constexpr int turnsToRest = 20;

    QueueView* m_list;
    bool m_isPainted = false;
};

/// Flips a volume of a group in sight, so that its row and the header over it have to change: until the list knows, and
/// until it has painted them.
void benchUpdate(Report& report, Page& page, int row)
{
    page.showOpen(row);
    const ItemPtr item = page.group(row)[2];
    const auto flip = [&item] {
        const bool isPaused = item->status() == DownloadStatus::paused;
        item->setStatus(isPaused ? DownloadStatus::stopped : DownloadStatus::paused);
    };
    const auto update = [&] {
        flip();
        page.tellChanges();
    };
    const auto paint = [&] {
        flip();
        page.waitUntilPainted();
    };
    const auto rest = [&page] { page.rest(); };
    const QString name = row == 0 ? u"group500_%1_ms"_s : u"queue10k_groups_%1_ms"_s;
    report.add(name.arg(u"update"), medianMilliseconds(update, rest), 1);
    report.add(name.arg(u"paint"), medianMilliseconds(paint, rest));
}

void benchStart(Report& report, DownloadManager& manager, Page& page)
{
    const std::vector<ItemPtr> volumes = page.group(0);
    const auto start = [&] {
        manager.commands().startItems(volumes);
        page.waitUntilPainted();
    };
    const auto stop = [&] {
        manager.commands().stopItems(volumes);
        page.rest();
    };
    report.add(u"group500_start_ms"_s, medianMilliseconds(start, stop));
    stop();
}

void benchReorder(Report& report, DownloadManager& manager, Page& page)
{
    const auto moveLastToFront = [&] {
        const QStringList ids = page.model().groupIds();
        manager.commands().moveGroups({ids.size() - 1}, 0, ids);
        page.waitUntilPainted();
    };
    report.add(u"reorder10k_ms"_s, medianMilliseconds(moveLastToFront, [&page] { page.rest(); }));
}

} // namespace

void benchGroups(Report& report)
{
    report.note(u"A queue of 10,000 items, a set of 500 volumes and smaller ones among them:"_s);
    const sites::FileServer server; // has nothing; nobody outside is to be asked
    CurlHttpClient::Options network;
    network.connectTo.insert("*", "127.0.0.1:" + QByteArray::number(server.port()));
    ProgramInProfile program(network,
                             [](const Folders& folders) { writeLongQueueOfSets(folders, itemCount, firstSet); });
    if (program.manager().items().size() != itemCount)
        giveUp(u"the queue was not restored"_s);
    Page page(program.window());
    if (page.group(0).size() != firstSet)
        giveUp(u"the large set is not at the top of the list"_s);
    benchUpdate(report, page, 1);
    benchUpdate(report, page, 0);
    benchStart(report, program.manager(), page);
    benchReorder(report, program.manager(), page);
}

} // namespace vormel::bench
