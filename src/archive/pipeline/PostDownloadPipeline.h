#pragma once

#include "archive/pipeline/PasswordTrials.h"
#include "archive/pipeline/PostDownload.h"
#include "archive/pipeline/ReadyArchive.h"
#include "archive/pipeline/ToolTurns.h"
#include "archive/pipeline/VolumeGathering.h"
#include "model/PendingQuestions.h"
#include "platform/async/Background.h"
#include "platform/async/Lifetime.h"

#include <QCoroTask>
#include <QSet>

#include <stop_token>

namespace vormel {

class AppSettings;
class ArchiveExtractor;
class Clock;
class ExtractionError;
class Trash;
class WorkFolder;
struct PlacementResult;

/// Unpacks what has come down: extracts, repairs where that fails, asks for passwords, cleans the names, and tidies up
/// as the settings say. Whatever goes wrong shows in the extraction status of the archive's item and nowhere else. Two
/// archives are worked on at a time; the others are extracting, too, and await their turn. UI thread only; the tools
/// run beside it.
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
        /// Where the item stands; behind all others if it is not in the queue.
        [[nodiscard]] virtual std::size_t placeOf(const ItemId& id) const = 0;
        [[nodiscard]] virtual std::span<const ItemPtr> itemsOfSet(const QString& base) const = 0;
        /// Is this recovery volume on its way, or may it be fetched now?
        [[nodiscard]] virtual bool isRevComing(const DownloadItem& item) const = 0;
        /// Was a volume of the set taken out that was to come, and may still be put back?
        [[nodiscard]] virtual bool mayVolumeComeBack(const QString& base) const = 0;
        /// The user's name for a set; empty if there is none.
        [[nodiscard]] virtual QString customGroupName(const QString& base) const = 0;
        /// Where the files and part files of the items lie, or will, leaving out some items.
        [[nodiscard]] virtual QSet<QString> filesOfItems(const QSet<ItemId>& leftOut) const = 0;
        /// False if there is nothing to let through.
        virtual bool allowRevFiles(const QString& base) = 0;
        virtual void askExtractionPassword(PendingExtractionPassword question) = 0;
        /// Ends the transfers of the set's recovery volumes, and takes them out of the queue for good. Their finished
        /// files come back.
        [[nodiscard]] virtual QStringList dropRevItems(const QString& base) = 0;
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
    PostDownloadPipeline(const PostDownloadPipeline&) = delete;
    PostDownloadPipeline& operator=(const PostDownloadPipeline&) = delete;
    ~PostDownloadPipeline() override;

    void autoExtractAfterDownload(const ItemId& item) override;
    void retryExtraction(const ItemId& item) override;
    [[nodiscard]] bool isWorkingOn(const ItemId& item) const override;
    void stopWorkOn(const ItemId& item) override;

    /// The answer to a question for the password. The password is not kept.
    void extractWithPassword(const ItemId& item, const QString& password);
    /// Removes what a killed program left of its runs in these folders and those directly below them.
    void removeAbandonedRuns(const QStringList& folders);

private:
    /// Who wants an archive unpacked.
    enum class Wish
    {
        ofUser,
        ofNobody, ///< it is there, and so it is unpacked
    };
    /// What is to be done when a run has ended: somebody has asked for the archive meanwhile.
    struct Next
    {
        ItemId by;
        std::optional<QString> password;
        Wish wish;
    };
    /// One archive being worked on. Its names and sources are those that it had at the start.
    struct Run
    {
        ReadyArchive archive;
        QSet<ItemId> members;
        QString customName;
        QString destination;
        std::optional<QString> password;
        QStringList sources;
        std::stop_source stopping;
        std::optional<Next> next;
        bool isSettled = false; ///< all is in its place, and only what was spent is tidied up
    };
    using RunPtr = std::shared_ptr<Run>;
    struct Failure
    {
        QString message;
        bool wantsPassword = false;
        bool wasWrongPassword = false;
    };
    /// The finished work folder, or why there is none.
    struct Unpacked
    {
        std::shared_ptr<WorkFolder> folder;
        Failure failure;
    };

    /// Nothing as long as the item completes none.
    [[nodiscard]] std::optional<ReadyArchive> archiveOf(const ItemPtr& item, Wish wish) const;
    QCoro::Task<> autoExtract(ItemPtr item, std::optional<QString> password, Wish wish);
    [[nodiscard]] RunPtr begin(const ReadyArchive& archive, const std::optional<QString>& password);
    QCoro::Task<> work(RunPtr run);
    QCoro::Task<> extractAndFinish(RunPtr run);
    [[nodiscard]] QCoro::Task<Unpacked> tryExtract(RunPtr run, bool showsProgress);
    [[nodiscard]] Failure failureOf(const Run& run, const ExtractionError& error);
    [[nodiscard]] QCoro::Task<std::optional<Failure>> tryRepair(RunPtr run);
    QCoro::Task<> rescue(RunPtr run);
    QCoro::Task<> finish(RunPtr run, std::shared_ptr<WorkFolder> unpacked);
    void end(const RunPtr& run);
    void settle(DownloadItem& target, const ExtractionStatus& status);
    void fail(const Run& run, const QString& message);
    [[nodiscard]] bool isMoreToCome(const Run& run) const;
    [[nodiscard]] QSet<ItemId> finishedMembers(const Run& run) const;
    [[nodiscard]] static bool isStopped(const Run& run) { return run.stopping.stop_requested(); }
    void askPassword(Run& run, const Failure& failure);
    [[nodiscard]] std::function<PlacementResult()> delivery(const Run& run, std::shared_ptr<WorkFolder> unpacked) const;
    [[nodiscard]] std::function<void()> disposal(const Run& run, const QStringList& placed);
    /// The run on the item's archive, or that has its file.
    [[nodiscard]] RunPtr runOf(const ItemId& id) const;

    Ports m_ports;
    Background m_background;
    VolumeGathering m_gathering;
    std::vector<RunPtr> m_runs;
    ToolTurns m_turns;
    PasswordTrials m_passwordTrials;
    Lifetime m_lifetime; ///< ends first: what goes on when the others end must know
};

} // namespace vormel
