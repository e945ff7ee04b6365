#include "ui/queue/BulkCommands.h"

#include "engine/DownloadManager.h"
#include "kit/BoundText.h"

#include <QAction>
#include <QWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

BulkCommands::BulkCommands(DownloadManager& manager, Show show, QWidget* page)
    : QObject(page)
    , m_manager(manager)
    , m_show(std::move(show))
    , m_page(page)
    , m_tryFailedAgain(makeAction("tryFailedAgain", &BulkCommands::retryFailed))
    , m_removeFailed(makeAction("removeFailed", &BulkCommands::removeFailed))
    , m_removeUnfinished(makeAction("removeUnfinished", &BulkCommands::askForUnfinished))
    , m_removeAll(makeAction("removeAll", &BulkCommands::askForAll))
    , m_undoAdd(makeAction("undoAdd", &BulkCommands::undoAdd))
    , m_undoRemove(makeAction("undoRemove", &BulkCommands::undoRemove))
{
    m_undoRemove->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z));
    const auto followRemovals = [this] { m_undoRemove->setEnabled(m_manager.removed().count() > 0); };
    connect(&m_manager.removed(), &RemovedItems::changed, this, followRemovals);
    followRemovals();
    followLanguage(this, m_manager.settings(), [this] { showTexts(); });
}

QAction* BulkCommands::makeAction(const char* name, void (BulkCommands::*run)())
{
    auto* action = new QAction(this);
    action->setObjectName(QString::fromLatin1(name));
    connect(action, &QAction::triggered, this, run);
    return action;
}

void BulkCommands::refresh()
{
    bool isAnyFailed = false;
    bool isAnyUnfinished = false;
    for (const ItemPtr& item : m_manager.items()) {
        isAnyFailed |= item->status() == DownloadStatus::failed;
        isAnyUnfinished |= item->status() != DownloadStatus::completed;
    }
    m_tryFailedAgain->setEnabled(isAnyFailed);
    m_removeFailed->setEnabled(isAnyFailed);
    m_removeUnfinished->setEnabled(isAnyUnfinished);
    m_removeAll->setEnabled(!m_manager.items().empty());
    m_undoAdd->setEnabled(isAnyLeftOfLastAddition());
}

bool BulkCommands::isAnyLeftOfLastAddition() const
{
    return std::ranges::any_of(m_manager.additions().last(),
                               [this](const ItemId& id) { return m_manager.item(id) != nullptr; });
}

void BulkCommands::retryFailed()
{
    m_manager.commands().tryFailedAgain(m_manager.items());
}

void BulkCommands::removeFailed()
{
    m_manager.removed().remove(m_manager.removed().failed());
}

void BulkCommands::askForUnfinished()
{
    ask(RemovalQuestion::Kind::unfinished, m_manager.removed().unfinished());
}

void BulkCommands::askForAll()
{
    ask(RemovalQuestion::Kind::all, m_manager.removed().all());
}

void BulkCommands::ask(RemovalQuestion::Kind kind, const QSet<ItemId>& ids)
{
    if (ids.isEmpty())
        return;
    auto* question = new RemovalQuestion(kind, ids.size(), m_manager.settings().language.value(), m_page->window());
    connect(question, &RemovalQuestion::confirmed, this, [this, kind, ids] {
        RemovedItems& removed = m_manager.removed();
        // What was completed meanwhile is not unfinished any more.
        removed.remove(kind == RemovalQuestion::Kind::all ? ids : QSet(ids) & removed.unfinished());
    });
    m_show(question);
}

void BulkCommands::undoAdd()
{
    const std::vector<ItemId> ids = m_manager.additions().last();
    m_manager.removed().remove({ids.begin(), ids.end()});
}

void BulkCommands::undoRemove()
{
    m_manager.removed().putBack();
}

void BulkCommands::showTexts()
{
    const AppLanguage language = m_manager.settings().language.value();
    m_tryFailedAgain->setText(pair(language, u"Try Failed Again", u"Riprova i falliti"));
    m_tryFailedAgain->setToolTip(pair(language, u"Queue everything that failed; what is on disk is kept",
                                      u"Rimetti in coda ciò che è fallito; quanto è su disco resta"));
    m_removeFailed->setText(pair(language, u"Remove Failed", u"Rimuovi falliti"));
    m_removeUnfinished->setText(pair(language, u"Remove Unfinished…", u"Rimuovi non completati…"));
    m_removeAll->setText(pair(language, u"Remove All…", u"Rimuovi tutti…"));
    m_undoAdd->setText(pair(language, u"Undo Add", u"Annulla aggiunta"));
    m_undoAdd->setToolTip(
        pair(language, u"Take back the links that were added last", u"Ritira i link aggiunti per ultimi"));
    m_undoRemove->setText(pair(language, u"Undo Remove", u"Annulla rimozione"));
}

} // namespace vormel
