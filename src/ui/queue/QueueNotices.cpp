#include "ui/queue/QueueNotices.h"

#include "engine/DownloadManager.h"
#include "ui/notices/Notices.h"

#include <QPointer>
#include <QScopedValueRollback>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

const QString removedKey = u"removed"_s;
const QString addedKey = u"added"_s;
constexpr std::chrono::seconds additionLife{8};
constexpr TextPair undoText{u"Undo", u"Annulla"};

QString removedText(qsizetype count, AppLanguage language)
{
    if (count == 1)
        return pair(language, u"1 download removed", u"1 download rimosso");
    return pair(language, u"%1 downloads removed", u"%1 download rimossi").arg(count);
}

QString knownText(qsizetype count, AppLanguage language)
{
    return (count == 1 ? pair(language, u"%1 already there", u"%1 già presente")
                       : pair(language, u"%1 already there", u"%1 già presenti"))
        .arg(count);
}

QString addedText(qsizetype added, qsizetype known, AppLanguage language)
{
    if (added == 0)
        return pair(language, u"Nothing new: ", u"Niente di nuovo: ") + knownText(known, language);
    const QString text =
        (added == 1 ? pair(language, u"%1 added", u"%1 aggiunto") : pair(language, u"%1 added", u"%1 aggiunti"))
            .arg(added);
    return known == 0 ? text : text + u", "_s + knownText(known, language);
}

} // namespace

QueueNotices::QueueNotices(DownloadManager& manager, Notices& notices, QObject* parent)
    : QObject(parent)
    , m_manager(manager)
    , m_notices(notices)
{
    connect(&manager.removed(), &RemovedItems::changed, this, &QueueNotices::tellRemoval);
    connect(&manager.removed(), &RemovedItems::changed, this, &QueueNotices::followAddition);
    connect(&manager.additions(), &Additions::told, this, &QueueNotices::tellAddition);
}

void QueueNotices::tellRemoval()
{
    const QScopedValueRollback telling(m_isTelling, true);
    const qsizetype count = m_manager.removed().count();
    if (count == 0)
        return m_notices.takeBack(removedKey);
    Notice notice;
    notice.key = removedKey;
    notice.glyph = Glyph::checkmarkCircle; // a cross would look like the one that puts it away
    notice.text = [count](AppLanguage language) { return removedText(count, language); };
    notice.actions.push_back({undoText, [&removed = m_manager.removed()] { removed.putBack(); }});
    notice.onGone = [that = QPointer(this)] {
        const QueueNotices* const self = that.data();
        if (self && !self->m_isTelling)
            self->m_manager.removed().finish();
    };
    m_notices.show(std::move(notice));
}

/// One notice for all that comes with a stroke while it is there, so that it takes back what the menu would.
void QueueNotices::tellAddition(const Addition& addition)
{
    if (addition.stroke != std::exchange(m_stroke, addition.stroke) || !m_notices.find(addedKey)) {
        m_added.clear();
        m_known = 0;
    }
    for (const ItemId& container : addition.read)
        m_added.remove(container);
    m_added.unite({addition.items.begin(), addition.items.end()});
    m_known += addition.known;
    if (!addition.items.empty() || addition.known > 0)
        showAddition();
}

void QueueNotices::showAddition()
{
    Notice notice;
    notice.key = addedKey;
    notice.glyph = m_added.isEmpty() ? Glyph::checkmarkCircle : Glyph::plus;
    notice.life = additionLife;
    notice.text = [added = m_added.size(), known = m_known](AppLanguage language) {
        return addedText(added, known, language);
    };
    if (!m_added.isEmpty())
        notice.actions.push_back({undoText, [&removed = m_manager.removed(), ids = m_added] { removed.remove(ids); }});
    m_notices.show(std::move(notice));
}

/// Nothing is left to undo where all has been taken back by other ways.
void QueueNotices::followAddition()
{
    const bool isAnyThere =
        std::ranges::any_of(m_added, [this](const ItemId& id) { return m_manager.item(id) != nullptr; });
    if (!m_added.isEmpty() && !isAnyThere)
        m_notices.takeBack(addedKey);
}

} // namespace vormel
