#pragma once

#include "engine/queue/ItemTable.h"
#include "platform/async/Lifetime.h"

#include <QCoroTask>

namespace vormel {

class ArchiveExtractor;
class PostDownload;
class QueueCommands;

/// The user's wish to have a set tested: what is damaged is fetched again, and what is sound is extracted. UI thread
/// only; the tool runs beside it.
class GroupVerification
{
public:
    /// All must outlive this. A test that is under way when this goes comes to nothing.
    GroupVerification(const ItemTable& table, ArchiveExtractor& extractor, QueueCommands& commands,
                      PostDownload& postDownload);

    /// Nothing happens for items of which none has the file of a first volume.
    void verifyGroup(const std::vector<ItemPtr>& items);

private:
    QCoro::Task<> verify(std::vector<ItemPtr> items, QString archive);

    const ItemTable& m_table;
    ArchiveExtractor& m_extractor;
    QueueCommands& m_commands;
    PostDownload& m_postDownload;
    Lifetime m_lifetime;
};

} // namespace vormel
