#include "e2e/sidebyside/RandomUser.h"

#include "fixtures/EventLoop.h"
#include "model/SetName.h"

using namespace Qt::StringLiterals;

namespace vormel::e2e {

using namespace std::chrono_literals;

RandomUser::RandomUser(Scene& scene, unsigned seed)
    : m_scene(scene)
    , m_random(seed)
{}

void RandomUser::act()
{
    struct Row
    {
        unsigned weight;
        Deed deed;
    };
    static constexpr Row rows[]{
        {12, &RandomUser::startAll},      {1, &RandomUser::pauseAll},    {6, &RandomUser::pauseRow},
        {8, &RandomUser::startRow},       {4, &RandomUser::stopRow},     {4, &RandomUser::startGroup},
        {2, &RandomUser::stopGroup},      {5, &RandomUser::retryRow},    {5, &RandomUser::redownloadRow},
        {1, &RandomUser::removeRow},      {1, &RandomUser::removeGroup}, {3, &RandomUser::moveGroup},
        {5, &RandomUser::renameGroup},    {7, &RandomUser::resyncRow},   {2, &RandomUser::resyncAll},
        {2, &RandomUser::verifyGroup},    {5, &RandomUser::extractRow},  {3, &RandomUser::stopExtraction},
        {8, &RandomUser::answerPassword}, {8, &RandomUser::saveFile},    {5, &RandomUser::holdTools},
        {10, &RandomUser::releaseServer}, {1, &RandomUser::restart},     {3, &RandomUser::kill},
    };
    unsigned total = 0;
    for (const Row& row : rows)
        total += row.weight;
    unsigned choice = below(total);
    const Row* row = rows;
    for (; choice >= row->weight; ++row)
        choice -= row->weight;
    (this->*row->deed)();
    let();
}

/// Time goes on: until something changes in the queue, or nothing seems to; and on the engine's clock.
void RandomUser::let()
{
    constexpr unsigned longest = 25;
    const int before = m_scene.changes();
    (void)fixtures::waitUntil([&] { return m_scene.changes() != before; }, std::chrono::milliseconds(below(longest)));
    constexpr unsigned often = 3;
    constexpr unsigned seldom = 30;
    if (below(often) == 0)
        m_scene.clock().advance(std::chrono::milliseconds(below(4000)));
    if (below(seldom) == 0)
        m_scene.clock().advance(61s);
}

unsigned RandomUser::below(std::size_t limit)
{
    return static_cast<unsigned>(m_random() % limit);
}

ItemPtr RandomUser::anyItem()
{
    const std::vector<ItemPtr> group = anyGroup();
    return group.empty() ? nullptr : group[below(group.size())];
}

std::vector<ItemPtr> RandomUser::anyGroup()
{
    const std::vector<DownloadGroup> groups = m_scene.manager().visibleGroups();
    return groups.empty() ? std::vector<ItemPtr>() : groups[below(groups.size())].items;
}

void RandomUser::note(const QString& deed)
{
    m_journal << deed;
}

void RandomUser::note(const QString& deed, const DownloadItem& item)
{
    m_journal << u"%1 %2 (%3, %4)"_s.arg(deed, item.filename(), statusLabel(item.status(), AppLanguage::english))
                     .arg(item.extractionStatus().kind());
}

void RandomUser::startAll()
{
    note(u"start all"_s);
    m_scene.manager().commands().startAll();
}

void RandomUser::pauseAll()
{
    note(u"pause all"_s);
    m_scene.manager().commands().pauseAll();
}

void RandomUser::pauseRow()
{
    if (const ItemPtr item = anyItem()) {
        note(u"pause"_s, *item);
        m_scene.manager().commands().pauseItems({item});
    }
}

void RandomUser::startRow()
{
    if (const ItemPtr item = anyItem()) {
        note(u"start"_s, *item);
        m_scene.manager().commands().startItems({item});
    }
}

void RandomUser::stopRow()
{
    if (const ItemPtr item = anyItem()) {
        note(u"stop"_s, *item);
        m_scene.manager().commands().stopItems({item});
    }
}

void RandomUser::startGroup()
{
    const std::vector<ItemPtr> group = anyGroup();
    if (group.empty())
        return;
    note(u"start the group of"_s, *group.front());
    m_scene.manager().commands().startItems(group);
}

void RandomUser::stopGroup()
{
    const std::vector<ItemPtr> group = anyGroup();
    if (group.empty())
        return;
    note(u"stop the group of"_s, *group.front());
    m_scene.manager().commands().stopItems(group);
}

/// Only a failed row has the button.
void RandomUser::retryRow()
{
    for (const ItemPtr& item : m_scene.manager().items()) {
        if (item->status() != DownloadStatus::failed)
            continue;
        note(u"retry"_s, *item);
        m_scene.manager().commands().retryItem(*item);
        return;
    }
}

void RandomUser::redownloadRow()
{
    if (const ItemPtr item = anyItem()) {
        note(u"re-download"_s, *item);
        m_scene.manager().commands().redownloadItem(*item);
    }
}

void RandomUser::removeRow()
{
    if (const ItemPtr item = anyItem()) {
        note(u"remove"_s, *item);
        m_scene.giveUp(*item);
        m_scene.manager().commands().removeItems({item->id()});
    }
}

void RandomUser::removeGroup()
{
    const std::vector<DownloadGroup> groups = m_scene.manager().visibleGroups();
    if (groups.empty())
        return;
    const DownloadGroup& group = groups[below(groups.size())];
    note(u"remove the group of"_s, *group.items.front());
    // With what is hidden of it, and with every plain file of that name.
    for (const ItemPtr& item : m_scene.manager().items())
        if (setBaseName(item->filename()) == group.id)
            m_scene.giveUp(*item);
    m_scene.manager().commands().removeGroup(group.id);
}

void RandomUser::moveGroup()
{
    const std::vector<DownloadGroup> groups = m_scene.manager().visibleGroups();
    if (groups.empty())
        return;
    QStringList ids;
    for (const DownloadGroup& group : groups)
        ids << group.id;
    const unsigned from = below(groups.size());
    const unsigned to = below(groups.size() + 1);
    note(u"move group %1 to %2"_s.arg(from).arg(to));
    m_scene.manager().commands().moveGroups({from}, to, ids);
}

void RandomUser::renameGroup()
{
    const std::vector<DownloadGroup> groups = m_scene.manager().visibleGroups();
    if (groups.empty())
        return;
    const QStringList& names = groupNames();
    const QString id = groups[below(groups.size())].id;
    const QString name = names[below(static_cast<std::size_t>(names.size()))];
    note(u"rename the group %1 to \"%2\""_s.arg(id, name));
    m_scene.renameGroup(id, name);
}

const QStringList& RandomUser::groupNames()
{
    // One of a folder of the user's, one of another set's, and one that several sets may get.
    static const QStringList names{QString(),      u"Film: one/two"_s, u"Same name"_s,
                                   u"Same name"_s, u"Album"_s,         u"fine2"_s};
    return names;
}

void RandomUser::resyncRow()
{
    if (const ItemPtr item = anyItem()) {
        note(u"resync"_s, *item);
        m_scene.manager().commands().resyncItems({item});
    }
}

void RandomUser::resyncAll()
{
    note(u"resync all"_s);
    const std::vector<ItemPtr> all = m_scene.manager().items();
    m_scene.manager().commands().resyncItems(all);
}

void RandomUser::verifyGroup()
{
    const std::vector<ItemPtr> group = anyGroup();
    if (group.empty())
        return;
    note(u"verify the group of"_s, *group.front());
    m_scene.manager().commands().verifyGroup(group);
}

void RandomUser::extractRow()
{
    if (const ItemPtr item = anyItem()) {
        note(u"extract"_s, *item);
        m_scene.manager().commands().retryExtraction(item->id());
    }
}

void RandomUser::stopExtraction()
{
    for (const ItemPtr& item : m_scene.manager().items()) {
        if (item->extractionStatus() != ExtractionStatus::extracting)
            continue;
        note(u"stop unpacking"_s, *item);
        m_scene.manager().commands().stopExtraction(item->id());
        return;
    }
}

void RandomUser::answerPassword()
{
    const auto question = m_scene.manager().questions().pendingExtractionPassword();
    if (!question)
        return;
    const unsigned choice = below(4);
    note(u"answer %1 for the password of %2"_s.arg(choice).arg(question->archiveName));
    if (choice == 0)
        m_scene.manager().questions().cancelExtractionPassword();
    else if (choice == 1)
        m_scene.manager().questions().submitExtractionPassword(u"-wrong"_s);
    else
        m_scene.manager().questions().submitExtractionPassword(
            m_scene.catalogue().archives().value(question->archiveName).password);
}

void RandomUser::saveFile()
{
    note(u"save "_s + m_scene.saveSomething(m_random));
}

void RandomUser::holdTools()
{
    const bool isHeld = below(2) == 0;
    note(isHeld ? u"hold the tools"_s : u"let the tools go"_s);
    if (isHeld)
        m_scene.tools().hold();
    else
        m_scene.tools().letGo();
}

void RandomUser::releaseServer()
{
    note(u"let the server go on"_s);
    m_scene.server().release();
}

void RandomUser::restart()
{
    note(u"quit and start"_s);
    m_scene.restart(false);
    goOn();
}

void RandomUser::kill()
{
    note(u"kill and start"_s);
    m_scene.restart(true);
    goOn();
}

/// After a start everything is paused, and who started the program mostly wants it to go on.
void RandomUser::goOn()
{
    if (below(4) != 0)
        startAll();
}

} // namespace vormel::e2e
