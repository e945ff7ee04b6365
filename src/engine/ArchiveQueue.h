#pragma once

#include "archive/pipeline/PostDownloadPipeline.h"
#include "engine/queue/ItemTable.h"

namespace vormel {

class GroupNames;
class Questions;
class QueueCommands;
class QueueTurn;
class RemovedItems;
class RevFiles;

/// The queue as the archive step sees it. UI thread only.
class ArchiveQueue final : public PostDownloadPipeline::Queue
{
public:
    /// All must outlive this.
    struct Ports
    {
        const ItemTable& table;
        const AppSettings& settings;
        const GroupNames& groupNames;
        RevFiles& revFiles;
        Questions& questions;
        QueueCommands& commands;
        const RemovedItems& removed;
        QueueTurn& queue;
    };
    explicit ArchiveQueue(const Ports& ports);

private:
    [[nodiscard]] const std::vector<ItemPtr>& items() const override;
    [[nodiscard]] ItemPtr item(const ItemId& id) const override;
    [[nodiscard]] std::size_t placeOf(const ItemId& id) const override;
    [[nodiscard]] std::span<const ItemPtr> itemsOfSet(const QString& base) const override;
    [[nodiscard]] bool isRevComing(const DownloadItem& item) const override;
    [[nodiscard]] bool mayVolumeComeBack(const QString& base) const override;
    [[nodiscard]] QString customGroupName(const QString& base) const override;
    [[nodiscard]] QSet<QString> filesOfItems(const QSet<ItemId>& leftOut) const override;
    bool allowRevFiles(const QString& base) override;
    void askExtractionPassword(PendingExtractionPassword question) override;
    [[nodiscard]] QStringList dropRevItems(const QString& base) override;
    void clearExtracted() override;
    void saveQueue() override;

    Ports m_ports;
};

} // namespace vormel
