#pragma once

#include <functional>

namespace vormel {

/// What any part of the engine may ask of the whole queue. UI thread only.
class QueueTurn
{
public:
    /// Starts what may start now.
    virtual void processQueue() = 0;
    virtual void saveQueue() = 0;
    /// Runs the action in a later turn of the event loop, if the queue is still there then.
    virtual void later(std::function<void()> action) = 0;

protected:
    ~QueueTurn() = default;
};

} // namespace vormel
