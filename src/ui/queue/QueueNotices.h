#pragma once

#include "engine/intake/Additions.h"

namespace vormel {

class DownloadManager;
class Notices;

/// Says below the pages what was added and what was removed, and offers to undo it: as long as that can be done for a
/// removal, for a moment after an addition. Both must outlive it.
class QueueNotices final : public QObject
{
    Q_OBJECT

public:
    QueueNotices(DownloadManager& manager, Notices& notices, QObject* parent);

private:
    void tellRemoval();
    void tellAddition(const Addition& addition);
    void showAddition();
    void followAddition();

    DownloadManager& m_manager;
    Notices& m_notices;
    int m_stroke = 0;     ///< that the notice of an addition is about
    QSet<ItemId> m_added; ///< what it counts
    qsizetype m_known = 0;
    bool m_isTelling = false; ///< the notice of a removal goes because another one comes, or for nothing is left
};

} // namespace vormel
