#pragma once

#include "archive/VolumeTest.h"
#include "engine/queue/ItemTable.h"
#include "platform/async/Lifetime.h"

#include <QCoroTask>
#include <QSet>
#include <QStringList>

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

private:
    struct Run
    {
        std::vector<ItemPtr> items;
        ItemPtr first; ///< of the first volume
        QString archive;
    };

    QCoro::Task<> verify(Run run);
    [[nodiscard]] QCoro::Task<VolumeTest> test(QString archive);
    void dropRemoved(Run& run) const;
    void fetchAgain(const Run& run, const QStringList& bad);
    void extract(const Run& run);

    const ItemTable& m_table;
    ArchiveExtractor& m_extractor;
    QueueCommands& m_commands;
    PostDownload& m_postDownload;
    QSet<QString> m_running; ///< archives
    Lifetime m_lifetime;
};

} // namespace vormel
