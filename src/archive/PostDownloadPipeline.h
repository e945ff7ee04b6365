#pragma once

#include "archive/PostDownload.h"
#include "archive/ReadyArchive.h"
#include "model/PendingQuestions.h"
#include "platform/async/Lifetime.h"

#include <QCoroTask>
#include <QHash>
#include <QSet>
#include <QThreadPool>

namespace vormel {

class AppSettings;
class ArchiveExtractor;
class Clock;
class Trash;

/// Unpacks what has come down: extracts, repairs where that fails, asks for passwords, cleans the names, and tidies up
/// as the settings say. Whatever goes wrong shows in the extraction status of the archive's item and nowhere else. UI
/// thread only; the tools run beside it.
class PostDownloadPipeline final : public PostDownload
{
public:
    /// What the pipeline needs of the queue.
    class Queue
    {
    public:
        [[nodiscard]] virtual const std::vector<ItemPtr>& items() const = 0;
        /// Null for an id that is not in the queue.
        [[nodiscard]] virtual ItemPtr item(const ItemId& id) const = 0;
        [[nodiscard]] virtual std::span<const ItemPtr> itemsOfSet(const QString& base) const = 0;
        /// Is this recovery volume on its way, or may it be fetched now?
        [[nodiscard]] virtual bool isRevComing(const DownloadItem& item) const = 0;
        /// The user's name for a set; empty if there is none.
        [[nodiscard]] virtual QString customGroupName(const QString& base) const = 0;
        /// False if there is nothing to let through.
        virtual bool allowRevFiles(const QString& base) = 0;
        virtual void askExtractionPassword(PendingExtractionPassword question) = 0;
        /// Ends the transfers of the recovery volumes, and takes them out of the queue for good.
        virtual void dropRevItems(const QSet<ItemId>& ids) = 0;
        virtual void clearExtracted() = 0;
        virtual void saveQueue() = 0;

    protected:
        ~Queue() = default;
    };

    /// All must outlive this. A run that is under way when this goes comes to nothing.
    struct Ports
    {
        const AppSettings& settings;
        Clock& clock;
        ArchiveExtractor& extractor;
        Trash& trash;
        Queue& queue;
    };
    explicit PostDownloadPipeline(const Ports& ports);

    void autoExtractAfterDownload(const ItemId& item) override;
    /// The answer to a question for the password. The password is not kept.
    void extractWithPassword(const ItemId& item, const QString& password);
    /// The user's wish to try a failed extraction once more.
    void retryExtraction(const ItemId& item);

private:
    struct Run
    {
        ReadyArchive archive;
        QString destination;
        QSet<QString> before; ///< what stood in the destination
        std::optional<QString> password;
    };
    struct Failure
    {
        QString message;
        bool wantsPassword = false;
        bool wasWrongPassword = false;
    };

    /// Brings the volumes that lie in other folders to the first one.
    [[nodiscard]] QCoro::Task<> gatherVolumes(ReadyArchive archive);
    QCoro::Task<> autoExtract(ItemPtr item, std::optional<QString> password);
    [[nodiscard]] Run begin(const ReadyArchive& archive, const std::optional<QString>& password);
    [[nodiscard]] QCoro::Task<std::optional<Failure>> tryExtract(Run run, bool showsProgress);
    [[nodiscard]] QCoro::Task<std::optional<Failure>> tryRepair(QString archive);
    QCoro::Task<> rescue(Run run);
    QCoro::Task<> finish(Run run);
    void giveUp(const Run& run, const Failure& failure);
    void askPassword(const Run& run, const Failure& failure);
    void noteLeftovers(const Run& run);
    void nameResults(const Run& run) const;
    [[nodiscard]] QString customName(const ReadyArchive& archive) const;
    [[nodiscard]] QString destinationOf(const ReadyArchive& archive) const;
    [[nodiscard]] QStringList removeRevItems(const QString& base);
    [[nodiscard]] QStringList spentSources(const Run& run) const;
    QCoro::Task<> moveToTrash(QStringList paths);

    Ports m_ports;
    Lifetime m_lifetime;
    /// By archive: what failed runs of it left in their destination. A later run takes that for its own.
    QHash<QString, QSet<QString>> m_leftovers;
    QThreadPool m_disposer; ///< its end waits for what is being moved
};

} // namespace vormel
