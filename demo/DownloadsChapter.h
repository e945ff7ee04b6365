#pragma once

#include "demo/DemoScript.h"
#include "demo/Stage.h"

namespace vormel::demo {

/// Plain links from adding to the finished files: a pause, a cut connection and a link that fails among them. Must
/// outlive its steps.
class DownloadsChapter
{
public:
    explicit DownloadsChapter(const Stage& stage);

    [[nodiscard]] std::vector<Step> steps();
    /// How far things are, in one line.
    [[nodiscard]] QString progress() const;

private:
    [[nodiscard]] Step add();
    [[nodiscard]] Step start();
    [[nodiscard]] Step pause();
    [[nodiscard]] Step resume();
    [[nodiscard]] Step loseConnection();
    [[nodiscard]] Step finish();
    [[nodiscard]] Step compareFiles();
    [[nodiscard]] Step storeQueue();

    void startAll(qint64 capKBps);
    [[nodiscard]] ItemPtr item(const Sample& sample) const;
    [[nodiscard]] int count(DownloadStatus::Kind kind) const;
    [[nodiscard]] int countAtWork() const;
    [[nodiscard]] qint64 sizeOfLargePartFile() const;
    [[nodiscard]] QString finalFile(const Sample& sample) const;

    [[nodiscard]] QString objectionToAddedItems() const;
    [[nodiscard]] QString missingUnderWay();
    [[nodiscard]] QString objectionToFailure() const;
    [[nodiscard]] QString missingRequests(std::size_t count) const;
    [[nodiscard]] QString objectionToStart(std::size_t request, qint64 start) const;
    [[nodiscard]] QString unfinished() const;
    [[nodiscard]] QString objectionToFolder() const;

    Stage m_stage;
    int m_mostAtWork = 0;
    qint64 m_pausedAt = 0; ///< size of the large file's part file right after the pause
};

} // namespace vormel::demo
