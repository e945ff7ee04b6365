#pragma once

#include <QBasicTimer>
#include <QModelIndexList>
#include <QObject>

namespace vormel {

class QueueDelegate;
class QueueView;

/// Paints the rows in sight that turn, glide or count time, on one timer that runs only while there are any. UI thread
/// only.
class RowMotion final : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive it.
    RowMotion(QueueView& view, QueueDelegate& delegate);

    /// Rows have been painted.
    void await();
    [[nodiscard]] bool isGoing() const { return m_timer.isActive(); }

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    [[nodiscard]] QModelIndexList movingRows() const;

    QueueView& m_view;
    QueueDelegate& m_delegate;
    QBasicTimer m_timer;
};

} // namespace vormel
