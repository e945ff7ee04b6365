#pragma once

#include "engine/queue/QueueTurn.h"
#include "model/DownloadItem.h"

#include <QObject>
#include <QSet>

#include <unordered_map>
#include <vector>

namespace vormel {

/// What came of links that the user handed over.
struct Addition
{
    std::vector<ItemId> items; ///< in queue order; rows of containers among them
    std::vector<ItemId> read;  ///< rows of containers that are gone, as these have been read
    qsizetype known = 0;       ///< links that the queue had already, each once
    int stroke = 0;            ///< the number of the stroke that all this came with
    bool isFirst = false;      ///< what is told of a stroke as it is done; not what its containers turn out to hold
};

/// Remembers which items came with one stroke of the user's: all links of one turn of the event loop, as a drop comes
/// in several pieces, and later on what the containers among them held. UI thread only.
class Additions final : public QObject
{
    Q_OBJECT

public:
    class Stroke;
    using StrokePtr = std::shared_ptr<Stroke>;

    /// The queue must outlive this.
    explicit Additions(QueueTurn& queue);
    ~Additions() override;

    /// The stroke of this turn.
    [[nodiscard]] StrokePtr current();
    /// The one that the row of a container came with; where nobody knows, one of its own that was done long ago.
    [[nodiscard]] StrokePtr ofContainer(const ItemId& id);

    void noteItems(const StrokePtr& stroke, const std::vector<ItemPtr>& items);
    void noteContainer(const StrokePtr& stroke, const DownloadItem& placeholder);
    /// Its row is gone. What it held is still to be noted.
    void noteRead(const StrokePtr& stroke, const ItemId& container);
    /// The user is asked which of its links to take, and the answer belongs to that stroke until it is forgotten.
    void noteQuestion(const StrokePtr& stroke, const ItemId& container);
    void noteKnown(const StrokePtr& stroke, qsizetype count);
    /// Tells of what was noted since the last time, in a later turn: once for all of this one.
    void tellLater(const StrokePtr& stroke);

    /// The rows are gone, or the questions answered.
    void forget(const QSet<ItemId>& ids);

    /// All items of the last stroke that brought any, with those that its containers held. Some may have gone.
    [[nodiscard]] std::vector<ItemId> last() const;

Q_SIGNALS:
    void told(const vormel::Addition& addition);

private:
    [[nodiscard]] StrokePtr makeStroke();
    void tell(const StrokePtr& stroke);

    QueueTurn& m_queue;
    StrokePtr m_current; ///< null between the turns
    StrokePtr m_last;
    std::unordered_map<ItemId, StrokePtr> m_containers; ///< that have a row, or are asked about
    int m_strokes = 0;                                  ///< that there have been
};

} // namespace vormel
