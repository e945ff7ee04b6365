#pragma once

#include "demo/FilmSet.h"
#include "demo/Stage.h"

#include <QObject>

#include <functional>

namespace vormel::demo {

/// One set in the running program, from the first link in the queue to the film on the disk. Remembers through what its
/// archive went, however short it was. The stage must outlive it.
class SetOnStage
{
public:
    /// How many of its recovery volumes its server was asked for so far.
    using RecoveryCount = std::function<std::size_t()>;

    SetOnStage(const Stage& stage, FilmSet set, RecoveryCount recoveryVolumesAskedFor);

    [[nodiscard]] const FilmSet& set() const { return m_set; }
    /// Members in the queue, recovery volumes included.
    [[nodiscard]] std::vector<ItemPtr> items() const;
    [[nodiscard]] int countRecoveryVolumes() const;
    /// How far it is, in one line.
    [[nodiscard]] QString progress() const;
    /// How often the archive went into that state so far.
    [[nodiscard]] int timesIn(ExtractionStatus::Kind status) const;

    // What speaks against a claim; nothing where it holds.
    [[nodiscard]] QString objectionToGroup() const;
    /// Several volumes come at once, and enough is here to be seen.
    [[nodiscard]] QString missingUnderWay() const;
    /// No recovery volume as long as all seemed well.
    [[nodiscard]] QString objectionToRecovery() const;
    /// Unpacked, and whatever was of use on the way is gone.
    [[nodiscard]] QString missingEnd() const;
    [[nodiscard]] QString objectionToFilm() const;
    [[nodiscard]] QString objectionToFolder() const;
    /// Are the recovery volumes in it?
    [[nodiscard]] QString objectionToTrash() const;

private:
    [[nodiscard]] int count(DownloadStatus::Kind status) const;
    /// Of the bytes of the volumes, recovery volumes left out.
    [[nodiscard]] double share() const;
    [[nodiscard]] QString folder() const;
    void note(const ItemPtr& item);

    Stage m_stage;
    FilmSet m_set;
    RecoveryCount m_recoveryVolumesAskedFor;
    std::vector<ExtractionStatus> m_history;
    std::size_t m_askedForTooEarly = 0; ///< by the time when the archive first was to be repaired
    QObject m_hearing;                  ///< the connections to the manager end with it
};

} // namespace vormel::demo
