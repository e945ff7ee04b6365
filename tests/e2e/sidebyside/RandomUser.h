#pragma once

#include "e2e/sidebyside/Scene.h"

namespace vormel::e2e {

/// Somebody who presses everything that can be pressed, in the middle of everything. What is done next follows from the
/// seed; what it meets does not quite, as transfers and tools go at their own pace.
class RandomUser
{
public:
    RandomUser(Scene& scene, unsigned seed);

    /// Does one thing and lets the engine react.
    void act();
    /// What was done so far, a line each.
    [[nodiscard]] const QStringList& journal() const { return m_journal; }

private:
    using Deed = void (RandomUser::*)();
    void let();
    [[nodiscard]] unsigned below(std::size_t limit);
    /// A row on the screen, as a user would pick it; null if there is none.
    [[nodiscard]] ItemPtr anyItem();
    [[nodiscard]] std::vector<ItemPtr> anyGroup();
    [[nodiscard]] static const QStringList& groupNames();
    void note(const QString& deed);
    void note(const QString& deed, const DownloadItem& item);

    void startAll();
    void pauseAll();
    void pauseRow();
    void startRow();
    void stopRow();
    void startGroup();
    void stopGroup();
    void retryRow();
    void redownloadRow();
    void removeRow();
    void removeGroup();
    void moveGroup();
    void renameGroup();
    void resyncRow();
    void resyncAll();
    void verifyGroup();
    void extractRow();
    void stopExtraction();
    void answerPassword();
    void saveFile();
    void holdTools();
    void releaseServer();
    void restart();
    void kill();
    void goOn();

    Scene& m_scene;
    std::mt19937 m_random;
    QStringList m_journal;
};

} // namespace vormel::e2e
