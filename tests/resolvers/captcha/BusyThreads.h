#pragma once

#include "platform/async/Background.h"
#include "platform/async/Spawn.h"

#include <QThread>

#include <latch>
#include <memory>

namespace vormel::tests {

/// Keeps all threads of the background busy, so that work waits, until this ends. Must end before the background.
class BusyThreads
{
public:
    explicit BusyThreads(Background& background)
    {
        const auto wait = [over = m_over] { over->wait(); };
        for (int i = 0; i < QThread::idealThreadCount(); ++i)
            spawn(background.run(wait));
    }
    BusyThreads(const BusyThreads&) = delete;
    BusyThreads& operator=(const BusyThreads&) = delete;
    ~BusyThreads() { m_over->count_down(); }

private:
    std::shared_ptr<std::latch> m_over = std::make_shared<std::latch>(1);
};

} // namespace vormel::tests
