#pragma once

#include "platform/async/SharedEventual.h"
#include "platform/async/Spawn.h"

#include <QCoroTask>

#include <functional>
#include <optional>
#include <utility>

namespace vormel {

/// Work that is under way once for all who ask for it meanwhile. Whoever owns this sees to it that the work ends
/// before. UI thread only.
template <typename T>
class SharedWork
{
public:
    /// Begins the work, which must not throw, unless it is under way.
    [[nodiscard]] SharedEventual<T> join(const std::function<QCoro::Task<T>()>& begin)
    {
        if (m_underWay)
            return *m_underWay;
        SharedEventual<T> result;
        m_underWay = result;
        spawn(finish(begin(), result));
        return result;
    }

private:
    QCoro::Task<> finish(QCoro::Task<T> work, SharedEventual<T> result)
    {
        T value = co_await work;
        // Before anybody goes on: who asks from now on wants it done anew.
        m_underWay.reset();
        result.deliver(std::move(value));
    }

    std::optional<SharedEventual<T>> m_underWay;
};

} // namespace vormel
