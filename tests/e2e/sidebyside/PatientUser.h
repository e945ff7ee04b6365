#pragma once

#include "e2e/sidebyside/Scene.h"

namespace vormel::e2e {

/// Somebody who waits until everything is there: starts what stands still, tries again what failed, and knows every
/// password.
class PatientUser
{
public:
    explicit PatientUser(Scene& scene);

    /// Until all that was promised is there, or patience ends. What is still missing then, a line each.
    [[nodiscard]] QStringList finishEverything();

private:
    void nudge();
    void nudge(DownloadItem& item);
    void nudge(const PackedArchive& archive);
    [[nodiscard]] bool areVolumesThere(const PackedArchive& archive);
    void answerQuestions();
    /// May the user do something more for it? Counts.
    [[nodiscard]] bool hasPatienceFor(const QString& what);
    /// Until nothing is at work, or a password is asked for. False if it gets nowhere.
    [[nodiscard]] bool waitForWork();
    [[nodiscard]] bool isAtWork();
    [[nodiscard]] bool isAllDone();
    [[nodiscard]] bool isDone(const DownloadItem& item);
    [[nodiscard]] bool isDone(const PackedArchive& archive);
    [[nodiscard]] QStringList missing();

    Scene& m_scene;
    QHash<QString, int> m_tries;
};

} // namespace vormel::e2e
