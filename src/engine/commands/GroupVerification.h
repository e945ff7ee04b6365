#pragma once

#include "archive/tools/VolumeTest.h"
#include "engine/queue/ItemTable.h"
#include "platform/async/Lifetime.h"

#include <QCoroTask>
#include <QStringList>

#include <memory>

namespace vormel {

class ArchiveExtractor;
class PostDownload;
class QueueCommands;

/// The user's wish to have a set tested: what is damaged is fetched again, and what is sound is extracted. The item of
/// the first volume says what came of it. UI thread only; the tool runs beside it.
class GroupVerification
{
public:
    /// All must outlive this. A test that is under way when this goes comes to nothing.
    GroupVerification(const ItemTable& table, ArchiveExtractor& extractor, QueueCommands& commands,
                      PostDownload& postDownload);

    /// Nothing happens for items of which none has the file of a first volume, nor while the set is being tested.
    void verifyGroup(const std::vector<ItemPtr>& items);
    /// The item has no finished file any more. What a test that is under way will tell of its set is no longer true.
    void fileIsGone(const ItemId& id);

private:
    struct Run
    {
        std::vector<ItemPtr> items;
        ItemPtr first; ///< of the first volume
        QString archive;
    };

    using RunPtr = std::shared_ptr<const Run>;

    QCoro::Task<> verify(RunPtr run);
    [[nodiscard]] QCoro::Task<VolumeTest> test(RunPtr run);
    /// Without those that were removed meanwhile.
    [[nodiscard]] std::vector<ItemPtr> itemsLeft(const Run& run) const;
    void fetchAgain(const Run& run, const QStringList& bad);
    void extract(const Run& run);

    const ItemTable& m_table;
    ArchiveExtractor& m_extractor;
    QueueCommands& m_commands;
    PostDownload& m_postDownload;
    std::vector<RunPtr> m_running;
    Lifetime m_lifetime;
};

} // namespace vormel
