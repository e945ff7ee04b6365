#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "ui/queue/tree/QueueModel.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

#include <random>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::turnEventLoop;

/// Changes of the queue in any order, several in one turn of the event loop.
class QueueModelWalk : public ::testing::TestWithParam<unsigned>
{
protected:
    [[nodiscard]] std::size_t below(std::size_t limit)
    {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random);
    }
    [[nodiscard]] QString anyName()
    {
        static const std::array<QStringView, 9> names{u"a.part1.rar", u"a.part2.rar", u"a.part3.rar",
                                                      u"a.part1.rev", u"b.part1.rar", u"b.part2.rar",
                                                      u"b.part2.rev", u"plain.zip",   u"other.zip"};
        return names[below(names.size())].toString();
    }
    [[nodiscard]] ItemPtr anyItem()
    {
        const std::vector<ItemPtr>& items = engine.manager().items();
        return items.empty() ? nullptr : items[below(items.size())];
    }
    void add()
    {
        std::vector<Link> links;
        for (std::size_t i = 0; i <= below(3); ++i)
            links.push_back(fixtures::link(u"http://h/%1/"_s.arg(++m_lastLink) + anyName()));
        engine.manager().addDirectURLs(links);
    }
    void rename()
    {
        if (const ItemPtr item = anyItem())
            item->setFilename(anyName());
    }
    void remove()
    {
        if (const ItemPtr item = anyItem())
            engine.manager().commands().removeItems({item->id()});
    }
    void takeOut()
    {
        QSet<ItemId> ids;
        for (const ItemPtr& item : engine.manager().items()) {
            if (below(3) == 0)
                ids.insert(item->id());
        }
        engine.manager().removed().remove(ids);
    }
    void changeStatus()
    {
        const std::array kinds{DownloadStatus::queued, DownloadStatus::stopped, DownloadStatus::completed};
        if (const ItemPtr item = anyItem())
            item->setStatus(kinds[below(kinds.size())]);
    }
    void step()
    {
        switch (below(7)) {
        case 0:
            return add();
        case 1:
            return remove();
        case 2:
            return changeStatus();
        case 3:
            return takeOut();
        case 4:
            return engine.manager().removed().putBack();
        default:
            return rename();
        }
    }
    [[nodiscard]] static QStringList namesOf(const DownloadGroup& group)
    {
        QStringList names;
        for (const ItemPtr& item : group.items)
            names << item->id().toString() + item->filename();
        return names;
    }
    [[nodiscard]] QStringList namesAt(int row) const
    {
        const QModelIndex top = model.index(row, 0);
        QStringList names;
        for (int member = 0; member < std::max(model.rowCount(top), 1); ++member) {
            const ItemPtr item = model.item(model.isHeader(top) ? model.index(member, 0, top) : top);
            names << item->id().toString() + item->filename();
        }
        return names;
    }
    void expectWhatTheQueueHas() const
    {
        const std::vector<DownloadGroup> groups = engine.manager().visibleGroups();
        ASSERT_EQ(model.rowCount(), std::ssize(groups));
        for (int row = 0; row < model.rowCount(); ++row)
            EXPECT_EQ(namesAt(row), namesOf(groups[static_cast<std::size_t>(row)])) << row;
    }

    mutable fixtures::EngineOnScript engine;
    QueueModel model{engine.manager(), engine.clock};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};

private:
    std::mt19937 m_random{GetParam()};
    int m_lastLink = 0;
};

TEST_P(QueueModelWalk, EndsAtTheRowsOfTheQueue)
{
    for (int turn = 0; turn < 12; ++turn) {
        for (std::size_t steps = below(6); steps > 0; --steps)
            step();
        turnEventLoop();
        expectWhatTheQueueHas();
        if (HasFailure())
            return;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, QueueModelWalk, ::testing::Range(0U, 40U));

} // namespace
} // namespace vormel
